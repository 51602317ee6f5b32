// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <stop_token>

/// Where the engine finds what is installed beside it.
struct OfflinePaths {
    /// The folder with the Hunspell dictionaries "en_US" and "en_GB".
    QString dictionaries = QStringLiteral("/usr/share/hunspell");
    /// Apertium's program; a name without a folder is looked up in PATH.
    QString apertium = QStringLiteral("apertium");
    /// The folder with Apertium's translation modes.
    QString apertiumModes = QStringLiteral("/usr/share/apertium/modes");
    /// Rules of the grammar check that are not to be used, by the names of their
    /// files in data/rules/ without the ending.
    QStringList rulesOff;
};

/// What the engine has to say to one command.
struct OfflineAnswer {
    /// Whether the engine can do what was asked. If not, `text` is one sentence
    /// for the user that says so and what would help. A text that begins with "ⓘ " is a note, shown
    /// in the place of a result.
    bool supported = false;
    QString text;
    /// A sentence for the user beside a text that is good to use. Not a part of it.
    QString remark = {};
};

/// Rewrites texts with rules, dictionaries and tables, without a network and
/// without a model. The same text always gets the same answer, and a text that
/// needs no change comes back unit for unit. Nothing of a text is kept.
///
/// Construction is cheap: tables and dictionaries load on first use. Any thread
/// may ask for answers, several at once.
class OfflineEngine
{
public:
    explicit OfflineEngine(OfflinePaths paths = {});
    ~OfflineEngine();
    OfflineEngine(const OfflineEngine &) = delete;
    OfflineEngine &operator=(const OfflineEngine &) = delete;

    /// Answers a writing command such as "check-grammar" or "french". An empty
    /// text has an empty answer. Never throws; a translation may block for the
    /// time that Apertium takes, at most 20 seconds for each of at most three
    /// steps. After a stop is requested it returns soon, and what it returns is
    /// of no use.
    OfflineAnswer answer(const QString &command, const QString &text,
                         const std::stop_token &stop = {}) const;

    /// Loads the dictionaries and tables now, for instance on a thread of their
    /// own, so that the first answer need not wait for them.
    void warmUp() const;

private:
    class Private;
    std::unique_ptr<Private> d;
};
