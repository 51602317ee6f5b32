// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QWidget>

#include <functional>

class QPlainTextEdit;
class QPushButton;

/// Says whether Quillet can do its job on this desktop, with a remedy for each line, and copies
/// that for a bug report. Main thread.
class DoctorSection : public QWidget
{
    Q_OBJECT

public:
    /// Starts an examination. `told` hears the report, which holds no text of the user, later.
    using Examine =
        std::function<void(QObject *context, std::function<void(const QString &)> told)>;

    explicit DoctorSection(Examine examine, QWidget *parent = nullptr);

    /// Examines again; what the report says then replaces what it says now.
    void examine();

private:
    void showReport(const QString &report);
    void copy();

    Examine m_examine;
    QPlainTextEdit *m_report = nullptr;
    QPushButton *m_copy = nullptr;
};
