// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Measures false alarms: runs a command of the offline engine over prose that is
// believed correct and reports what it would change.
//
//   offline_changes COMMAND FILE...
//
// A file is read as paragraphs with a blank line between them. Prints every
// changed line with its new form, then the number of changed words for each
// 1,000 words read.

#include "backend/offline/OfflineEngine.h"

#include <QFile>
#include <QStringList>

#include <algorithm>
#include <cstdio>

namespace
{

void print(const QString &line)
{
    std::printf("%s\n", line.toUtf8().constData());
}

/// Words in which two versions of a line differ, without their common start and
/// end: close enough for lines with few changes.
qsizetype differingWords(const QString &before, const QString &after)
{
    QStringList a = before.split(u' ');
    QStringList b = after.split(u' ');
    if (a.size() == b.size()) {
        qsizetype count = 0;
        for (qsizetype i = 0; i < a.size(); ++i)
            count += a.at(i) != b.at(i) ? 1 : 0;
        return count;
    }
    while (!a.isEmpty() && !b.isEmpty() && a.last() == b.last()) {
        a.removeLast();
        b.removeLast();
    }
    while (!a.isEmpty() && !b.isEmpty() && a.first() == b.first()) {
        a.removeFirst();
        b.removeFirst();
    }
    return std::max<qsizetype>({a.size(), b.size(), 1});
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: offline_changes COMMAND FILE...\n");
        return 2;
    }
    const OfflineEngine engine;
    const QString command = QString::fromLocal8Bit(argv[1]);
    qsizetype words = 0;
    qsizetype changes = 0;
    for (int i = 2; i < argc; ++i) {
        QFile file(QString::fromLocal8Bit(argv[i]));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QString &text :
             QString::fromUtf8(file.readAll()).split(QStringLiteral("\n\n"))) {
            words += text.simplified().split(u' ').size();
            const OfflineAnswer answer = engine.answer(command, text);
            if (answer.text == text)
                continue;
            const QStringList before = text.split(u'\n');
            const QStringList after = answer.text.split(u'\n');
            for (qsizetype line = 0; line < before.size() && line < after.size(); ++line) {
                if (before.at(line) == after.at(line))
                    continue;
                changes += differingWords(before.at(line), after.at(line));
                print(QStringLiteral("- ") + before.at(line));
                print(QStringLiteral("+ ") + after.at(line));
            }
        }
    }
    std::printf("%lld changed words in %lld words: %.3f for each 1,000\n", (long long)changes,
                (long long)words, words > 0 ? 1000.0 * double(changes) / double(words) : 0.0);
    return 0;
}
