// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "commands/OwnCommands.h"

#include <QWidget>

#include <functional>

class QKeySequenceEdit;
class QLabel;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

/// The commands that the user makes: their list, the fields of the chosen one, and a trial of it.
/// A change is kept when the user leaves its field. Main thread.
class OwnCommandsSection : public QWidget
{
    Q_OBJECT

public:
    struct Collaborators {
        /// The file of the commands.
        QString file;
        /// Has a sentence of ours worked on by a command. `told` hears how that went.
        std::function<void(QObject *context, const QString &identifier,
                           std::function<void(const QString &)> told)>
            tryIt = {};
    };

    explicit OwnCommandsSection(Collaborators collaborators, QWidget *parent = nullptr);

protected:
    /// The file may have been edited or replaced while another window was in front.
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void reload();
    void showList(int row);
    void showChosen();
    void add();
    void remove();
    void keep();
    /// Writes the file, and says so where that fails.
    void save();
    void tryIt();
    int chosen() const;

    Collaborators m_collaborators;
    /// Those of the file, and perhaps a new one that is not complete and thus not kept yet.
    QList<OwnCommand> m_commands;
    QListWidget *m_list = nullptr;
    QPushButton *m_remove = nullptr;
    QWidget *m_fields = nullptr;
    QLineEdit *m_name = nullptr;
    QPlainTextEdit *m_instruction = nullptr;
    QLineEdit *m_model = nullptr;
    QKeySequenceEdit *m_keys = nullptr;
    QPushButton *m_try = nullptr;
    QLabel *m_outcome = nullptr;
};
