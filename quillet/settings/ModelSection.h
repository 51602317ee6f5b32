// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QWidget>

#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

/// Which language model writes: one that was found on this computer, or a server that the user
/// names; and how it writes. Each change is in force at once. Main thread.
class ModelSection : public QWidget
{
    Q_OBJECT

public:
    struct Collaborators {
        /// The file that the writing backend reads: address, name and key of a language model.
        QString file;
        /// Looks for a language model's server on this computer. `told` hears, only where there is
        /// one to choose, how it is called and whether texts may go to it.
        std::function<void(QObject *context, std::function<void(const QString &, bool)> told)>
            findServer = {};
        /// Keeps the user's answer about the server that was found last.
        std::function<void(bool agreed)> agreeToServer = {};
        /// Has a sentence of ours written, with what is set now. `told` hears how that went.
        std::function<void(QObject *context, std::function<void(const QString &)> told)> tryIt = {};
    };

    explicit ModelSection(Collaborators collaborators, QWidget *parent = nullptr);

private:
    QLineEdit *makeField(const char *key);
    void lookForServer();
    void save();
    void tryIt();

    Collaborators m_collaborators;
    QCheckBox *m_foundServer = nullptr;
    QLineEdit *m_address = nullptr;
    QLineEdit *m_name = nullptr;
    QLineEdit *m_key = nullptr;
    QPushButton *m_try = nullptr;
    QLabel *m_trial = nullptr;
};
