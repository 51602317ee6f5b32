// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/PatternRule.h"

#include "backend/offline/Resources.h"

namespace offline
{

namespace
{

/// "<base>" and its like, or nothing for another notation.
std::optional<VerbForm> verbForm(const QString &notation)
{
    static const QHash<QString, VerbForm> forms = {
        {QStringLiteral("<base>"), VerbForm::Base},
        {QStringLiteral("<third>"), VerbForm::Third},
        {QStringLiteral("<past>"), VerbForm::Past},
        {QStringLiteral("<participle>"), VerbForm::Participle},
        {QStringLiteral("<gerund>"), VerbForm::Gerund},
    };
    const auto found = forms.constFind(notation);
    return found != forms.constEnd() ? std::optional(*found) : std::nullopt;
}

} // namespace

PatternRule::PatternRule(const QStringList &patterns, const Verbs &verbs)
    : m_verbs(verbs)
{
    QHash<QString, QSet<QString>> classes;
    for (const QList<QString> &row : resourceTable(u"classes.txt")) {
        const QString line = row.at(0).simplified();
        const qsizetype colon = line.indexOf(u':');
        const QStringList words = line.mid(colon + 2).split(u' ');
        classes.insert(line.left(colon), QSet<QString>(words.begin(), words.end()));
    }
    for (const QString &pattern : patterns)
        addPattern(pattern.simplified(), classes);
}

void PatternRule::addPattern(const QString &line, const QHash<QString, QSet<QString>> &classes)
{
    Pattern pattern;
    for (const QString &notation : line.split(u' ')) {
        if (notation == u"^")
            pattern.opensSentence = true;
        else if (notation == u"$")
            pattern.closesSentence = true;
        else
            pattern.elements.push_back(element(notation, classes));
    }
    const int index = int(m_patterns.size());
    const Element &first = pattern.elements.at(pattern.elements.front().negated ? 1 : 0);
    for (const QString &word : first.words)
        m_byFirstWord[word].push_back(index);
    if (first.form)
        m_byFirstForm[size_t(*first.form)].push_back(index);
    m_patterns.push_back(std::move(pattern));
}

PatternRule::Element PatternRule::element(const QString &notation,
                                          const QHash<QString, QSet<QString>> &classes) const
{
    Element result;
    QString match = notation;
    if (match.startsWith(u'!')) {
        result.negated = true;
        match.remove(0, 1);
    }
    const qsizetype equals = match.indexOf(u'=');
    if (equals >= 0) {
        result.changes = true;
        result.replacement = match.mid(equals + 1).replace(u'_', u' ');
        result.toForm = verbForm(result.replacement);
        match.truncate(equals);
    }
    result.form = verbForm(match);
    if (result.form)
        return result;
    for (const QString &word : match.split(u'|')) {
        if (!word.startsWith(u'@')) {
            result.words.insert(word);
            continue;
        }
        if (!classes.contains(word))
            qFatal("a pattern names a class that the file has not defined");
        result.words.unite(classes.value(word));
    }
    return result;
}

/// The base form of a verb that has this form and only it: "put" and "read" are
/// past forms too, "found" is a base form of its own.
std::optional<QString> PatternRule::verbIn(const Element &element, const Word &word) const
{
    std::optional<QString> base = m_verbs.baseOf(word.lower, *element.form);
    const VerbForm other = *element.form == VerbForm::Base ? VerbForm::Past : VerbForm::Base;
    if (base && m_verbs.baseOf(word.lower, other))
        return std::nullopt;
    return base;
}

bool PatternRule::accepts(const Element &element, const Word &word) const
{
    // "A" may be a mark or a name; "I" is the pronoun.
    const bool letter =
        word.length == 1 && word.letters == LetterCase::Capital && word.lower != u"i";
    if (word.lower.isEmpty() || word.letters == LetterCase::Mixed ||
        word.letters == LetterCase::Upper || letter)
        return false;
    return element.form ? verbIn(element, word).has_value() : element.words.contains(word.lower);
}

/// Not a part of a compound, a word that is spoken about, or a name: "Ms. Im".
bool PatternRule::mayChange(const Document &document, int at) const
{
    const Word &word = document.word(at);
    const bool name = word.letters == LetterCase::Capital && !document.isFirstOfSentence(at);
    return !word.hyphenated && !name && !document.isMentioned(at);
}

bool PatternRule::matches(const Pattern &pattern, const Document &document, int at) const
{
    const Sentence &sentence = document.sentenceOf(document.word(at));
    const std::vector<Element> &elements = pattern.elements;
    size_t i = 0;
    if (elements.front().negated) {
        const bool before = at > sentence.first && document.word(at).joined;
        if (before && accepts(elements.front(), document.word(at - 1)))
            return false;
        i = 1;
    }
    if (pattern.opensSentence && at != sentence.first)
        return false;
    bool start = true;
    for (; i < elements.size(); ++i) {
        const bool there = at < sentence.end && (start || document.word(at).joined);
        if (elements[i].negated) {
            if (there && accepts(elements[i], document.word(at)))
                return false;
            continue;
        }
        if (!there || !accepts(elements[i], document.word(at)))
            return false;
        if (elements[i].changes && !mayChange(document, at))
            return false;
        start = false;
        ++at;
    }
    return !pattern.closesSentence || at == sentence.end;
}

void PatternRule::apply(const Pattern &pattern, const Document &document, int at,
                        EditList &edits) const
{
    for (const Element &element : pattern.elements) {
        if (element.negated)
            continue;
        const Word &word = document.word(at++);
        if (!element.changes)
            continue;
        const QStringView original = QStringView(document.text()).mid(word.start, word.length);
        if (element.toForm) {
            edits.replace(word.start, word.length,
                          inCaseOf(original, m_verbs.form(baseOf(word), *element.toForm)));
        } else if (element.replacement.isEmpty()) {
            edits.replace(word.start, document.word(at).start - word.start, QString());
        } else {
            edits.replace(word.start, word.length, inCaseOf(original, element.replacement));
        }
    }
}

QString PatternRule::baseOf(const Word &word) const
{
    for (int form = 0; form < 5; ++form) {
        if (const auto base = m_verbs.baseOf(word.lower, VerbForm(form)))
            return *base;
    }
    return word.lower;
}

void PatternRule::check(const Document &document, EditList &edits) const
{
    const int count = int(document.words().size());
    const auto tryAll = [&](const std::vector<int> &patterns, int at) {
        for (const int index : patterns) {
            if (matches(m_patterns[size_t(index)], document, at))
                apply(m_patterns[size_t(index)], document, at, edits);
        }
    };
    for (int at = 0; at < count; ++at) {
        const Word &word = document.word(at);
        if (word.lower.isEmpty() || !document.isEnglish(word))
            continue;
        const auto byWord = m_byFirstWord.constFind(word.lower);
        if (byWord != m_byFirstWord.constEnd())
            tryAll(*byWord, at);
        for (size_t form = 0; form < m_byFirstForm.size(); ++form) {
            if (!m_byFirstForm[form].empty() && m_verbs.baseOf(word.lower, VerbForm(form)))
                tryAll(m_byFirstForm[form], at);
        }
    }
}

} // namespace offline
