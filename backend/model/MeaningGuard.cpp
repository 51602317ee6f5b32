// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/MeaningGuard.h"

#include <QHash>
#include <QRegularExpression>

#include <algorithm>

namespace
{

/// Texts beyond this are compared by the words that both have, whatever their order.
constexpr qsizetype maxCompared = 2000;

QStringList wordsOf(const QString &text)
{
    static const QRegularExpression word(QStringLiteral("[\\p{L}\\p{N}]+(?:['\u2019][\\p{L}]+)*"));
    QStringList words;
    for (auto matches = word.globalMatch(text); matches.hasNext();)
        words += matches.next().captured().toLower().replace(u'\u2019', u'\'');
    return words;
}

/// The length of the longest common subsequence.
qsizetype commonInOrder(const QStringList &a, const QStringList &b)
{
    QList<int> row(b.size() + 1, 0);
    for (const QString &word : a) {
        int diagonal = 0;
        for (qsizetype k = 1; k <= b.size(); ++k) {
            const int above = row[k];
            row[k] = word == b[k - 1] ? diagonal + 1 : std::max(above, row[k - 1]);
            diagonal = above;
        }
    }
    return row.last();
}

qsizetype commonInAnyOrder(const QStringList &a, const QStringList &b)
{
    QHash<QString, int> counts;
    for (const QString &word : a)
        ++counts[word];
    qsizetype common = 0;
    for (const QString &word : b) {
        if (auto count = counts.find(word); count != counts.end() && *count > 0) {
            --*count;
            ++common;
        }
    }
    return common;
}

/// Whether `fact` stands in `text` by itself: not as a part of a longer number or word.
bool has(const QString &text, const QString &fact)
{
    const auto belongs = [&](qsizetype at) {
        return at >= 0 && at < text.size() && text[at].isLetterOrNumber();
    };
    for (auto at = text.indexOf(fact); at >= 0; at = text.indexOf(fact, at + 1)) {
        const bool begins = !fact.front().isLetterOrNumber() || !belongs(at - 1);
        const bool ends = !fact.back().isLetterOrNumber() || !belongs(at + fact.size());
        if (begins && ends)
            return true;
    }
    return false;
}

} // namespace

QStringList lostFacts(const QString &text, const QString &answer)
{
    static const QRegularExpression fact(QStringLiteral(
        "`[^`\\n]+`|https?://[^\\s<>\"]+[^\\s<>\".,;:!?)]|[\\w.+-]+@[\\w-]+\\.[\\w.-]*\\w|"
        // A number with its separators; a digit of a longer one does not count for it.
        "(?<![\\p{L}\\p{N}])\\d+(?:[.,:/-]\\d+)*(?![\\p{L}\\p{N}])|"
        // A name: a capitalised word that does not begin a sentence or a line.
        "(?<=[\\p{Ll}\\p{N},;] )(?!I\\b)\\p{Lu}[\\p{L}'\u2019-]*\\p{L}(?: "
        "\\p{Lu}[\\p{L}'\u2019-]*\\p{L})*"));
    QStringList lost;
    for (auto matches = fact.globalMatch(text); matches.hasNext();) {
        const QString found = matches.next().captured();
        if (!has(answer, found) && !lost.contains(found))
            lost += found;
    }
    return lost;
}

double changedShare(const QString &text, const QString &answer)
{
    const QStringList before = wordsOf(text);
    const QStringList after = wordsOf(answer);
    const auto longer = std::max(before.size(), after.size());
    if (longer == 0)
        return 0;
    const auto common =
        longer <= maxCompared ? commonInOrder(before, after) : commonInAnyOrder(before, after);
    return 1 - double(common) / double(longer);
}

QString withoutEmoji(const QString &text)
{
    static const QRegularExpression emoji(
        QStringLiteral(
            "\\s*[\\x{1F000}-\\x{1FAFF}\\x{2600}-\\x{27BF}\\x{2B00}-\\x{2BFF}\\x{2190}-"
            "\\x{21FF}\\x{2300}-\\x{23FF}\\x{FE0F}\\x{200D}\\x{20E3}\\x{E0000}-\\x{E007F}]+"),
        QRegularExpression::UseUnicodePropertiesOption);
    QString result = text;
    return result.remove(emoji).simplified();
}
