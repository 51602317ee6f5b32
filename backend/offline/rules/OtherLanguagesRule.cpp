// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/OtherLanguagesRule.h"

#include <QSet>

#include <algorithm>

namespace offline
{

namespace
{

/// The names of the dictionaries' files, the most general first.
QStringList filesOf(const QString &language)
{
    static const QHash<QString, QStringList> files = {
        {QStringLiteral("german"), {QStringLiteral("de_DE")}},
        {QStringLiteral("french"), {QStringLiteral("fr"), QStringLiteral("fr_FR")}},
        {QStringLiteral("spanish"), {QStringLiteral("es_ES"), QStringLiteral("es")}},
        {QStringLiteral("italian"), {QStringLiteral("it_IT")}},
        {QStringLiteral("portuguese"), {QStringLiteral("pt_PT"), QStringLiteral("pt_BR")}},
        {QStringLiteral("dutch"), {QStringLiteral("nl"), QStringLiteral("nl_NL")}},
        {QStringLiteral("polish"), {QStringLiteral("pl_PL")}},
        {QStringLiteral("catalan"), {QStringLiteral("ca"), QStringLiteral("ca_ES")}},
        {QStringLiteral("swedish"), {QStringLiteral("sv_SE")}},
    };
    return files.value(language);
}

/// Whether one letter more, less or other, or two swapped ones, part the words.
bool isOneSlipAway(const QString &a, const QString &b)
{
    qsizetype start = 0;
    const qsizetype shorter = std::min(a.size(), b.size());
    while (start < shorter && a.at(start) == b.at(start))
        ++start;
    qsizetype end = 0;
    while (end < shorter - start && a.at(a.size() - 1 - end) == b.at(b.size() - 1 - end))
        ++end;
    const qsizetype restA = a.size() - start - end;
    const qsizetype restB = b.size() - start - end;
    if (restA == 2 && restB == 2)
        return a.at(start) == b.at(start + 1) && a.at(start + 1) == b.at(start);
    return restA <= 1 && restB <= 1;
}

QString withoutAccents(const QString &word)
{
    QString result;
    for (const QChar c : word.normalized(QString::NormalizationForm_D)) {
        if (!c.isMark())
            result += c;
    }
    return result;
}

/// A missing accent, swapped letters, a doubled letter: the slips of which the
/// dictionary's first proposal is right even where others are as near.
bool isPlainSlip(const QString &typed, const QString &meant)
{
    if (withoutAccents(typed) == withoutAccents(meant))
        return true;
    const auto sorted = [](QString word) {
        std::sort(word.begin(), word.end());
        return word;
    };
    if (typed.size() == meant.size())
        return sorted(typed) == sorted(meant);
    const auto undoubled = [](const QString &word) {
        QString result;
        for (const QChar c : word) {
            if (result.isEmpty() || result.back() != c)
                result += c;
        }
        return result;
    };
    return undoubled(typed) == undoubled(meant);
}

/// "Ich glaube, das es regnet".
bool isConjunction(const Document &document, int index)
{
    static const QSet<QString> before = {
        QStringLiteral("glaube"), QStringLiteral("glauben"), QStringLiteral("denke"),
        QStringLiteral("denken"), QStringLiteral("hoffe"),   QStringLiteral("hoffen"),
        QStringLiteral("finde"),  QStringLiteral("finden"),  QStringLiteral("meine"),
        QStringLiteral("sagt"),   QStringLiteral("sagte"),   QStringLiteral("wei\u00df"),
        QStringLiteral("wissen")};
    static const QSet<QString> after = {
        QStringLiteral("ich"), QStringLiteral("du"),  QStringLiteral("er"),  QStringLiteral("sie"),
        QStringLiteral("es"),  QStringLiteral("wir"), QStringLiteral("ihr"), QStringLiteral("man")};
    return index > 0 && index + 1 < int(document.words().size()) &&
           document.word(index).lower == u"das" && document.gapBefore(index) == u", " &&
           before.contains(document.word(index - 1).lower) && document.word(index + 1).joined &&
           after.contains(document.word(index + 1).lower);
}

} // namespace

Dictionary *OtherLanguagesRule::dictionaryOf(const QString &language) const
{
    const std::lock_guard lock(m_mutex);
    auto found = m_dictionaries.find(language);
    if (found == m_dictionaries.end()) {
        std::shared_ptr<Dictionary> dictionary;
        for (const QString &file : filesOf(language)) {
            if (!dictionary || !dictionary->isOpen())
                dictionary = std::make_shared<Dictionary>(m_lexicon.dictionaries(), file);
        }
        found = m_dictionaries.insert(language, dictionary);
    }
    return *found && (*found)->isOpen() ? found->get() : nullptr;
}

QString OtherLanguagesRule::correction(Dictionary &dictionary, const QString &language,
                                       const QString &word) const
{
    constexpr qsizetype shortest = 4;
    const bool capital = word.front().isUpper();
    const bool german = language == u"german";
    if (word.size() < shortest || dictionary.knows(word) || (capital && !german) ||
        m_lexicon.knows(word.toLower()))
        return {};
    QString noun = word;
    noun[0] = noun.at(0).toUpper();
    if (german && !capital && dictionary.knows(noun))
        return noun;
    QString only;
    const QStringList suggestions = dictionary.suggestions(word);
    const auto plain =
        std::find_if(suggestions.begin(), suggestions.end(), [&](const QString &suggestion) {
            return isOneSlipAway(word, suggestion) && isPlainSlip(word, suggestion);
        });
    if (plain != suggestions.end() && !capital)
        return *plain;
    for (const QString &suggestion : suggestions) {
        if (suggestion.contains(u' ') || suggestion.contains(u'-') ||
            !isOneSlipAway(word, suggestion))
            continue;
        if (!only.isEmpty())
            return {};
        only = suggestion;
    }
    // A capital word may be a name; a long one seldom is so near to another word.
    constexpr qsizetype longName = 8;
    return capital && word.size() < longName ? QString() : only;
}

void OtherLanguagesRule::check(const Document &document, EditList &edits) const
{
    constexpr int shortestSentence = 3;
    constexpr int maxSuggestions = 40; // they are slow
    int asked = 0;
    for (const Sentence &sentence : document.sentences()) {
        if (sentence.english || sentence.end - sentence.first < shortestSentence)
            continue;
        const qsizetype start = document.word(sentence.first).start;
        const QString language = m_detector.languageOf(
            document.text().mid(start, document.word(sentence.end - 1).end() - start));
        Dictionary *dictionary = filesOf(language).isEmpty() ? nullptr : dictionaryOf(language);
        if (!dictionary)
            continue;
        for (int i = sentence.first; i < sentence.end; ++i) {
            const Word &word = document.word(i);
            if (word.lower.isEmpty() || word.hyphenated || document.isMentioned(i) ||
                word.letters == LetterCase::Mixed || word.letters == LetterCase::Upper ||
                word.lower.contains(u'\''))
                continue;
            if (language == u"german" && isConjunction(document, i)) {
                edits.replace(word.end(), 0, QStringLiteral("s"));
                continue;
            }
            const QString spelt = document.text().mid(word.start, word.length);
            if (dictionary->knows(spelt) || dictionary->knows(word.lower) ||
                ++asked > maxSuggestions)
                continue;
            const QString right = correction(*dictionary, language, spelt);
            if (!right.isEmpty())
                edits.replace(word.start, word.length, right);
        }
    }
}

} // namespace offline
