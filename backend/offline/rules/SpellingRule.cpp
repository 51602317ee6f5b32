// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/SpellingRule.h"

#include <QHash>

#include <algorithm>

namespace offline
{

namespace
{

bool isVowel(QChar c)
{
    return QStringView(u"aeiouy").contains(c);
}

/// Written so on purpose: initials, "goin", "maketh".
bool isDeliberate(const QString &lower)
{
    return std::none_of(lower.begin(), lower.end(), isVowel) || lower.endsWith(u"eth") ||
           lower.size() < 3;
}

/// Short words that are written together with the next one: "ofcourse".
bool runsTogether(const QString &word)
{
    static const QStringList words =
        QStringLiteral("an the in of on at to for as by with from is it no every each any some so "
                       "this that very more not do up")
            .split(u' ');
    return words.contains(word);
}

/// An article or preposition that another language's words follow: "la contenance".
bool isForeignArticle(const QString &lower)
{
    static const QStringList words =
        QStringLiteral("la le les un une el los las il der das des dem den von du de della")
            .split(u' ');
    return words.contains(lower);
}

/// Contractions that "doens't" or "did'nt" stand for.
QStringList contractionsLike(const QString &lower)
{
    static const QStringList contractions =
        QStringLiteral("don't doesn't didn't can't couldn't won't wouldn't shouldn't isn't aren't "
                       "wasn't weren't haven't hasn't hadn't they're we're you're i'm it's that's "
                       "let's there's i've we've you've they've they'll we'll you'll")
            .split(u' ');
    const auto letters = [](QString word) {
        word.remove(u'\'');
        std::sort(word.begin(), word.end());
        return word;
    };
    const QString own = letters(lower);
    QStringList result;
    for (const QString &contraction : contractions) {
        if (contraction.front() == lower.front() && letters(contraction) == own)
            result.append(contraction);
    }
    return result;
}

} // namespace

bool SpellingRule::isCandidate(const Document &document, int index) const
{
    const Word &word = document.word(index);
    if (word.lower.isEmpty() || word.hyphenated || !document.isEnglish(word))
        return false;
    if (word.letters == LetterCase::Capital)
        return document.sentenceOf(word).end > document.sentenceOf(word).first + 1;
    return word.letters == LetterCase::Lower;
}

/// Whether the two are common words that often follow one another: "coffee table".
bool SpellingRule::makePhrase(const QString &left, const QString &right) const
{
    constexpr qsizetype shortest = 3;
    constexpr int common = 9;
    constexpr double attracted = 2.0; // factors of ten over its share of all words
    if (left.size() < shortest || right.size() < shortest || m_lexicon.level(left) < common ||
        m_lexicon.level(right) < common)
        return false;
    const LanguageModel::WordId second = m_model.idOf(right);
    const LanguageModel::WordId first = m_model.idOf(left);
    if (first == LanguageModel::unknown || second == LanguageModel::unknown)
        return false;
    return m_model.probability(second, first, LanguageModel::unknown) -
               m_model.wordProbability(second) >=
           attracted;
}

QString SpellingRule::correction(const Document &document, const Context &context, int index,
                                 bool doubtful) const
{
    constexpr double costWeight = 0.25; // factors of ten for a tenth of a letter
    constexpr double clear = 0.15;      // of the best candidate over the second
    constexpr double sure = -1.0;
    constexpr double surer = 0.6;
    constexpr double sureOfTwo = 0.0; // mistakes in one word
    constexpr double frequency = 0.1; // for each level of the word list
    constexpr int commonPart = 9;
    constexpr int smallSlip = 14;
    const Word &word = document.word(index);
    if (word.lower.contains(u'\'')) {
        const QStringList forms = contractionsLike(word.lower);
        return forms.size() == 1 ? forms.front() : QString();
    }
    const std::vector<WordTrie::Candidate> candidates = m_lexicon.candidates(word.lower);
    double best = -1000;
    double second = -1000;
    QString chosen;
    int cost = 0;
    for (const WordTrie::Candidate &candidate : candidates) {
        const double likely = context.score(index, 1, {candidate.word});
        const double score = likely - costWeight * candidate.cost + frequency * candidate.level;
        if (score > best) {
            second = best;
            best = score;
            chosen = candidate.word;
            cost = candidate.cost;
        } else {
            second = std::max(second, score);
        }
    }
    for (qsizetype at = 2; at + 2 <= word.lower.size(); ++at) {
        const QString left = word.lower.left(at);
        const QString right = word.lower.mid(at);
        if ((!runsTogether(left) || m_lexicon.level(right) < commonPart) &&
            !(word.letters == LetterCase::Lower && makePhrase(left, right)))
            continue;
        const double score = context.score(index, 1, {left, right});
        if (score > best) {
            second = best;
            best = score;
            chosen = left + u' ' + right;
        } else {
            second = std::max(second, score);
        }
    }
    if (chosen.isEmpty())
        return {};
    if (m_lexicon.isCommonMisspelling(word.lower))
        return chosen;
    const double gain = best - context.score(index, 1, {word.lower});
    // A short word is like many others by chance, a long one like few.
    double needed = sure;
    if (doubtful || word.lower.size() <= 5)
        needed = surer;
    else if (cost > smallSlip)
        needed = sureOfTwo;
    else if (word.lower.size() >= 9)
        needed = sure - 1.5;
    if (isDeliberate(word.lower) || chosen == word.lower + u'g')
        return {};
    if (best - second < clear || gain < needed)
        return {};
    return chosen;
}

void SpellingRule::check(const Document &document, EditList &edits) const
{
    const int count = int(document.words().size());
    std::optional<Context> context;
    QHash<QString, bool> known;
    for (int i = 0; i < count; ++i) {
        if (!isCandidate(document, i) || document.isMentioned(i))
            continue;
        const Word &word = document.word(i);
        if (i > 0 && word.joined && isForeignArticle(document.word(i - 1).lower))
            continue;
        auto found = known.constFind(word.lower);
        if (found == known.constEnd())
            found = known.insert(word.lower, m_lexicon.knows(word.lower) ||
                                                 (!m_lexicon.isCommonMisspelling(word.lower) &&
                                                  m_model.knows(word.lower)));
        if (*found)
            continue;
        if (!context)
            context.emplace(m_model, document);
        const bool capital = word.letters == LetterCase::Capital;
        if (capital && !document.isFirstOfSentence(i) && !m_lexicon.isCommonMisspelling(word.lower))
            continue;
        const QString right = correction(document, *context, i, capital);
        if (right.isEmpty())
            continue;
        const QStringView original = QStringView(document.text()).mid(word.start, word.length);
        edits.replace(word.start, word.length, inCaseOf(original, right));
    }
}

} // namespace offline
