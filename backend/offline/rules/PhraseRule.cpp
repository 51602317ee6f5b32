// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/PhraseRule.h"

#include "backend/offline/Resources.h"

#include <QSet>

#include <algorithm>

namespace offline
{

namespace
{

const QString verbMark = QStringLiteral("/v");
const QString nounMark = QStringLiteral("/n");

/// Every word of `phrase` that carries `mark`, in the form that `inflect` gives.
template <typename Inflect>
QString inflected(const QString &phrase, const QString &mark, Inflect inflect)
{
    QStringList words = phrase.split(u' ');
    for (QString &word : words) {
        if (word.endsWith(mark))
            word = inflect(word.chopped(mark.size()));
    }
    return words.join(u' ');
}

/// "doesn't it" and "why can't he" do not come apart as "does not it".
bool isInversion(const Document &document, int at)
{
    static const QSet<QString> around = {
        QStringLiteral("i"),    QStringLiteral("you"),   QStringLiteral("he"),
        QStringLiteral("she"),  QStringLiteral("it"),    QStringLiteral("we"),
        QStringLiteral("they"), QStringLiteral("there"), QStringLiteral("why"),
        QStringLiteral("how"),  QStringLiteral("what"),  QStringLiteral("where"),
        QStringLiteral("who")};
    const Word &word = document.word(at);
    if (!word.lower.endsWith(u"n't"))
        return false;
    const Sentence &sentence = document.sentenceOf(word);
    if (at + 1 < sentence.end && around.contains(document.word(at + 1).lower) &&
        document.word(at + 1).joined)
        return true;
    if (at == sentence.first)
        return word.lower != u"don't";
    const QString &before = document.word(at - 1).lower;
    return !word.joined ? word.lower != u"don't"
                        : before == u"why" || before == u"how" || before == u"what" ||
                              before == u"where" || before == u"who";
}

/// Whether a verb here is a participle: "was soon prohibited", "they've come to".
bool followsAuxiliary(const Document &document, int at)
{
    static const QSet<QString> auxiliaries = {
        QStringLiteral("have"), QStringLiteral("has"),  QStringLiteral("had"),
        QStringLiteral("be"),   QStringLiteral("been"), QStringLiteral("being"),
        QStringLiteral("is"),   QStringLiteral("are"),  QStringLiteral("was"),
        QStringLiteral("were"), QStringLiteral("get"),  QStringLiteral("having")};
    const int first = document.sentenceOf(document.word(at)).first;
    for (int i = at - 1; i >= std::max(first, at - 2) && document.word(i + 1).joined; --i) {
        QString word = document.word(i).lower;
        if (word.endsWith(u"n't"))
            word.chop(3);
        if (auxiliaries.contains(word) || word.endsWith(u"'ve"))
            return true;
    }
    return false;
}

/// Whether a "not" stands shortly before.
bool isDenied(const Document &document, int at)
{
    constexpr int near = 4;
    const int first = document.sentenceOf(document.word(at)).first;
    for (int i = at - 1; i >= std::max(first, at - near) && document.word(i + 1).joined; --i) {
        const QString &word = document.word(i).lower;
        if (word == u"not" || word == u"never" || word.endsWith(u"n't"))
            return true;
    }
    return false;
}

/// The white space inside the phrase that breaks a line, if any.
QString lineBreakWithin(const Document &document, int at, int after)
{
    for (int i = at + 1; i < after; ++i) {
        const QStringView gap = document.gapBefore(i);
        if (std::any_of(gap.begin(), gap.end(), isLineBreak))
            return gap.toString();
    }
    return {};
}

/// "a number of them" is "several of them", "a number of cars" only "several".
bool keepsOf(const QString &replacement, const QString &next)
{
    static const QSet<QString> quantities = {QStringLiteral("many"), QStringLiteral("few"),
                                             QStringLiteral("most"), QStringLiteral("several"),
                                             QStringLiteral("much"), QStringLiteral("enough")};
    static const QSet<QString> definite = {
        QStringLiteral("the"),   QStringLiteral("these"), QStringLiteral("those"),
        QStringLiteral("this"),  QStringLiteral("that"),  QStringLiteral("them"),
        QStringLiteral("us"),    QStringLiteral("you"),   QStringLiteral("it"),
        QStringLiteral("my"),    QStringLiteral("your"),  QStringLiteral("his"),
        QStringLiteral("her"),   QStringLiteral("its"),   QStringLiteral("our"),
        QStringLiteral("their"), QStringLiteral("which"), QStringLiteral("whom"),
        QStringLiteral("what")};
    return quantities.contains(replacement) && definite.contains(next);
}

} // namespace

PhraseRule::PhraseRule(QStringView table, Rows rows, const Verbs &verbs)
    : m_verbs(verbs)
{
    for (const QList<QString> &row : resourceTable(table)) {
        if (rows == Rows::Safe && row.value(2) != u"safe")
            continue;
        const QString &phrase = row.at(0);
        const QString replacement = row.value(1);
        const QStringList words = phrase.split(u' ');
        const auto choice = std::find_if(words.begin(), words.end(),
                                         [](const QString &word) { return word.contains(u'|'); });
        if (choice == words.end()) {
            addRow(phrase, replacement);
            continue;
        }
        for (const QString &word : choice->split(u'|'))
            addRow(QString(phrase).replace(*choice, word),
                   QString(replacement).replace(u'*', word));
    }
    for (auto &phrases : m_byFirstWord) {
        std::stable_sort(phrases.begin(), phrases.end(), [](const Phrase &a, const Phrase &b) {
            return a.words.size() > b.words.size();
        });
    }
}

void PhraseRule::addRow(const QString &phrase, const QString &replacement)
{
    if (phrase.contains(verbMark)) {
        for (int form = 0; form < 5; ++form) {
            const auto verb = [&](const QString &base) {
                return m_verbs.form(base, VerbForm(form));
            };
            add(inflected(phrase, verbMark, verb), inflected(replacement, verbMark, verb),
                VerbForm(form));
        }
    } else if (phrase.contains(nounMark)) {
        const auto singular = [](const QString &noun) { return noun; };
        add(inflected(phrase, nounMark, singular), inflected(replacement, nounMark, singular));
        add(inflected(phrase, nounMark, regularPlural),
            inflected(replacement, nounMark, regularPlural));
    } else {
        add(phrase, replacement);
    }
}

void PhraseRule::add(const QString &phrase, const QString &replacement, VerbForm form)
{
    Phrase entry;
    entry.words = phrase.split(u' ');
    entry.replacement = replacement;
    if (entry.words.first() == u"^") {
        entry.opensSentence = true;
        entry.words.removeFirst();
    }
    std::vector<Phrase> &phrases = m_byFirstWord[entry.words.first()];
    if (form == VerbForm::Participle) {
        // "prohibited" is a past form too, "come" a base form
        const auto same = std::find_if(phrases.begin(), phrases.end(), [&](const Phrase &other) {
            return other.words == entry.words;
        });
        if (same != phrases.end()) {
            same->participle = replacement;
            return;
        }
    }
    phrases.push_back(entry);
}

/// Whether the phrase has the meaning here that the table gives it.
bool PhraseRule::mayChange(const Phrase &phrase, const Document &document, int at) const
{
    const Word &first = document.word(at);
    const int after = at + int(phrase.words.size());
    if (phrase.words.size() == 1) {
        // "it's taken" is "it has taken", "it's called" is "it is called"
        const bool participle = first.lower.endsWith(u"'s") &&
                                after < document.sentenceOf(first).end &&
                                (document.word(after).lower.endsWith(u"ed") ||
                                 m_verbs.baseOf(document.word(after).lower, VerbForm::Participle));
        return !participle && !isInversion(document, at) && !document.isMentioned(at);
    }
    if (document.isFirstOfSentence(at))
        return true;
    // "not a very good one" is not "not an excellent one"
    const bool degree =
        first.lower == u"very" || first.lower == u"really" || first.lower == u"pretty";
    if (degree && isDenied(document, at))
        return false;
    // "the New Innovation Centre"
    for (int i = at; i < after; ++i) {
        if (document.word(i).letters != LetterCase::Capital)
            return true;
    }
    return !first.joined;
}

bool PhraseRule::matches(const Phrase &phrase, const Document &document, int at) const
{
    const Sentence &sentence = document.sentenceOf(document.word(at));
    if (phrase.opensSentence && at != sentence.first)
        return false;
    for (qsizetype i = 0; i < phrase.words.size(); ++i) {
        const int index = at + int(i);
        if (index >= sentence.end)
            return false;
        const Word &word = document.word(index);
        if (word.lower != phrase.words.at(i) || word.hyphenated || (i > 0 && !word.joined) ||
            word.letters == LetterCase::Mixed || word.letters == LetterCase::Upper)
            return false;
    }
    return mayChange(phrase, document, at);
}

void PhraseRule::apply(const Phrase &phrase, const Document &document, int at,
                       EditList &edits) const
{
    const QString &text = document.text();
    const Word &first = document.word(at);
    const int after = at + int(phrase.words.size());
    const Word &last = document.word(after - 1);
    const bool sentenceGoesOn = after < document.sentenceOf(first).end;
    // A line break moves behind the phrase, or the phrase stays.
    const QString lineBreak = lineBreakWithin(document, at, after);
    if (!lineBreak.isEmpty() && (phrase.replacement.isEmpty() || document.gapBefore(after) != u" "))
        return;

    if (!phrase.replacement.isEmpty()) {
        const bool participle = !phrase.participle.isEmpty() && followsAuxiliary(document, at);
        QString replacement = participle ? phrase.participle : phrase.replacement;
        if (sentenceGoesOn && phrase.words.last() == u"of" &&
            keepsOf(replacement, document.word(after).lower))
            replacement += QStringLiteral(" of");
        // "I" is a capital anywhere
        const bool capital = first.letters == LetterCase::Capital &&
                             (first.lower.size() == 1 || first.lower.startsWith(u"i'")
                                  ? document.isFirstOfSentence(at)
                                  : true);
        if (capital)
            replacement = capitalised(replacement);
        const qsizetype length = last.end() - first.start + (lineBreak.isEmpty() ? 0 : 1);
        replacement += lineBreak;
        if (text.mid(first.start, length) != replacement)
            edits.replace(first.start, length, replacement);
        return;
    }

    if (!sentenceGoesOn)
        return;
    const Word &next = document.word(after);
    const QStringView gap = document.gapBefore(after);
    const bool plain = next.joined || gap == u", ";
    if (!plain)
        return;
    const bool opens = document.isFirstOfSentence(at) && first.letters == LetterCase::Capital;
    if (opens && next.lower.isEmpty())
        return;
    const QString nextLetter = text.mid(next.start, 1);
    edits.replace(first.start, next.start + 1 - first.start,
                  opens ? nextLetter.toUpper() : nextLetter);
}

void PhraseRule::check(const Document &document, EditList &edits) const
{
    const int count = int(document.words().size());
    for (int at = 0; at < count; ++at) {
        const Word &word = document.word(at);
        if (word.lower.isEmpty() || !document.isEnglish(word))
            continue;
        const auto phrases = m_byFirstWord.constFind(word.lower);
        if (phrases == m_byFirstWord.constEnd())
            continue;
        const auto found =
            std::find_if(phrases->begin(), phrases->end(),
                         [&](const Phrase &phrase) { return matches(phrase, document, at); });
        if (found != phrases->end()) {
            apply(*found, document, at, edits);
            at += int(found->words.size()) - 1;
        }
    }
}

} // namespace offline
