// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QKeySequence>
#include <QObject>
#include <QStringList>

class QSettings;

/// What the user has chosen, kept as readable text in the application's own settings file. With
/// nothing chosen, only the shortcut has a value. Main thread.
class UserSettings : public QObject
{
    Q_OBJECT

public:
    /// `store` must outlive this object.
    explicit UserSettings(QSettings &store, QObject *parent = nullptr);

    /// Opens the popup for the focused input; empty where the user wants none.
    QKeySequence shortcut() const;
    void setShortcut(const QKeySequence &shortcut);

    /// The names of the programs that Quillet stays out of, as the desktop shows them.
    QStringList excludedPrograms() const;
    bool isExcluded(const QString &program) const;
    void setExcluded(const QString &program, bool excluded);

    /// Whether the offer to start at login has been made; it is made once.
    bool wasLoginStartOffered() const;
    void setLoginStartOffered();

Q_SIGNALS:
    void shortcutChanged();
    void excludedProgramsChanged();

private:
    QSettings &m_store;
};
