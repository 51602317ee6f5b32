// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/ArticleRule.h"

#include <QSet>

#include <algorithm>
#include <optional>

namespace offline
{

namespace
{

QSet<QString> setOf(const QString &words)
{
    const QStringList list = words.split(u' ');
    return QSet<QString>(list.begin(), list.end());
}

template <size_t N> bool startsWithAny(const QString &word, const QStringView (&prefixes)[N])
{
    return std::any_of(std::begin(prefixes), std::end(prefixes),
                       [&](QStringView prefix) { return word.startsWith(prefix); });
}

std::optional<bool> wordOpensWithVowel(const QString &lower)
{
    static constexpr QStringView likeYou[] = {
        u"unic", u"unif", u"unil", u"unio", u"uniq", u"unis", u"unit", u"univ",  u"unip",
        u"usa",  u"use",  u"usu",  u"usi",  u"util", u"uten", u"uter", u"utop",  u"ubiq",
        u"ukul", u"uran", u"urin", u"urol", u"eu",   u"ewe",  u"uni-", u"usurp", u"unix"};
    static constexpr QStringView silentH[] = {u"hour", u"honest", u"honor", u"honour", u"heir"};
    static const QSet<QString> likeWon = setOf(QStringLiteral("one ones once oneself one's"));
    // Both articles are in use.
    static const QSet<QString> open = setOf(QStringLiteral(
        "herb herbs herbal historic historical historian historically hotel habitual hysterical "
        "hereditary heroic hilarious hypothesis hallucination h unionized unionised unidentified"));
    const bool pronounceable = std::any_of(
        lower.begin(), lower.end(), [](QChar c) { return QStringView(u"aeiouy").contains(c); });
    if (open.contains(lower) || !pronounceable)
        return std::nullopt;
    if (likeWon.contains(lower) || startsWithAny(lower, likeYou))
        return false;
    if (startsWithAny(lower, silentH))
        return true;
    return QStringView(u"aeiou").contains(lower.front());
}

/// Initialisms that cannot be pronounced are spelt out; of the others, only those that
/// are known to be.
std::optional<bool> initialsOpenWithVowel(const QString &initials)
{
    static const QSet<QString> spelt = setOf(QStringLiteral(
        "mri fbi uk us usa eu un ufo api ip ai led ide os ui ux usb utc ngo ceo iq atm suv mba eeg "
        "hiv nsa rsa isp irs iou emi mvp cpu gpu pdf html xml http lcd ssd dvd cd tv pc sms fm"));
    // Said as a word or as letters, as the speaker likes.
    static const QSet<QString> open = setOf(QStringLiteral("sql url faq lan ssl sms"));
    const QString lower = initials.toLower();
    const bool pronounceable = std::any_of(
        lower.begin(), lower.end(), [](QChar c) { return QStringView(u"aeiouy").contains(c); });
    if (open.contains(lower) || lower.size() > 5 || (pronounceable && !spelt.contains(lower)))
        return std::nullopt;
    return QStringView(u"aefhilmnorsx").contains(lower.front());
}

std::optional<bool> numberOpensWithVowel(QStringView digits)
{
    qsizetype length = 0;
    while (length < digits.size() && digits[length].isDigit())
        ++length;
    const bool grouped = length < digits.size() && QStringView(u",.").contains(digits[length]);
    if (digits.front() == u'8')
        return true;
    if (digits.startsWith(u"11") || digits.startsWith(u"18"))
        return length == 2 && !grouped ? std::optional(true) : std::nullopt;
    return false;
}

} // namespace

void ArticleRule::check(const Document &document, EditList &edits) const
{
    // After these "a" is a name or a letter: "vitamin a and", "from a to b".
    static const QSet<QString> noArticleBefore = setOf(QStringLiteral(
        "and or in is are of on at if as it its into over under up out onto off also am i us our "
        "unto upon e u o a an was were to"));
    const int count = int(document.words().size());
    for (int i = 0; i + 1 < count; ++i) {
        const Word &article = document.word(i);
        const Word &next = document.word(i + 1);
        const bool an = article.lower == u"an";
        if ((!an && article.lower != u"a") || article.hyphenated || !next.joined ||
            !document.isEnglish(article))
            continue;
        const bool capital = article.letters != LetterCase::Lower;
        if (capital &&
            (!document.isFirstOfSentence(i) || (an && article.letters == LetterCase::Upper)))
            continue;

        const QStringView spelt = QStringView(document.text()).mid(next.start, next.length);
        std::optional<bool> vowel;
        if (spelt.front() >= u'0' && spelt.front() <= u'9')
            vowel = numberOpensWithVowel(spelt);
        else if (next.lower.isEmpty() || next.lower.size() < 2 ||
                 noArticleBefore.contains(next.lower))
            continue;
        else if (next.letters == LetterCase::Upper)
            vowel = initialsOpenWithVowel(spelt.toString());
        else if (next.letters != LetterCase::Mixed &&
                 (m_lexicon.knows(next.lower) || m_lexicon.knows(spelt.toString())))
            vowel = wordOpensWithVowel(next.lower);

        if (vowel && *vowel != an) {
            const QString right = *vowel ? QStringLiteral("an") : QStringLiteral("a");
            edits.replace(article.start, article.length, capital ? capitalised(right) : right);
        }
    }
}

} // namespace offline
