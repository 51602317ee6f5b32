// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/AgreementRule.h"

#include <QSet>

namespace offline
{

namespace
{

enum class Number { Unknown, Singular, Plural, FirstPerson };

constexpr TagSet nounPhrase = {Tag::Nn, Tag::Nns, Tag::Jj,  Tag::Jjr, Tag::Jjs, Tag::Dt,
                               Tag::Cd, Tag::Pos, Tag::Vbn, Tag::Vbg, Tag::Nnp};

/// Words after which a clause begins.
bool opensClause(const Analysis &analysis, int index)
{
    static const QSet<QString> openers = {
        QStringLiteral("because"), QStringLiteral("if"),       QStringLiteral("when"),
        QStringLiteral("while"),   QStringLiteral("although"), QStringLiteral("though"),
        QStringLiteral("that"),    QStringLiteral("but"),      QStringLiteral("so"),
        QStringLiteral("where"),   QStringLiteral("whether"),  QStringLiteral("unless"),
        QStringLiteral("since"),   QStringLiteral("think"),    QStringLiteral("believe")};
    if (index < 0 || analysis.document.isFirstOfSentence(index + 1))
        return true;
    // "2,500 customers": that comma opens nothing.
    if (!analysis.joins(index + 1))
        return analysis.document.gapBefore(index + 1).endsWith(u' ');
    return openers.contains(analysis.lower(index));
}

/// The number of the subject whose last word is at `last`, if it is plain.
Number numberOf(const Analysis &analysis, int last)
{
    static const QSet<QString> doubtful = [] {
        const QStringList words =
            QStringLiteral("number lot majority minority variety range rest half part percent "
                           "percentage team staff family group committee couple pair series "
                           "police government company data media means kind sort type species "
                           "none all some more most any both each what dollars years "
                           "miles pounds euros metres meters hours minutes days weeks months us "
                           "news politics mathematics physics economics others other many few")
                .split(u' ');
        return QSet<QString>(words.begin(), words.end());
    }();
    const QString &word = analysis.lower(last);
    if (word.isEmpty() || doubtful.contains(word))
        return Number::Unknown;
    const auto isPlain = [&](int first) { return opensClause(analysis, first - 1); };
    if (word == u"he" || word == u"she" || word == u"it")
        return isPlain(last) ? Number::Singular : Number::Unknown;
    // Whatever "and" joins them to, these are a plural subject.
    const bool added = last > 0 && analysis.joins(last) && analysis.lower(last - 1) == u"and";
    if (added && (word == u"we" || word == u"they"))
        return Number::Plural;
    if (word == u"we" || word == u"they" || word == u"you")
        return isPlain(last) ? Number::Plural : Number::Unknown;
    if (word == u"i")
        return isPlain(last) ? Number::FirstPerson : Number::Unknown;
    if (word == u"everyone" || word == u"everybody" || word == u"someone" || word == u"nobody" ||
        word == u"everything" || word == u"nothing" || word == u"something")
        return isPlain(last) ? Number::Singular : Number::Unknown;
    // "people who is": the noun before decides.
    if ((word == u"who" || word == u"which" || word == u"that") && last > 0 &&
        analysis.joins(last) && analysis.document.word(last - 1).letters == LetterCase::Lower &&
        !doubtful.contains(analysis.lower(last - 1))) {
        const bool ofPhrase =
            last > 2 && (analysis.tag(last - 2) == Tag::Of || analysis.tag(last - 3) == Tag::Of ||
                         analysis.tag(last - 2) == Tag::Cc);
        if (ofPhrase || word == u"that")
            return Number::Unknown;
        return analysis.tag(last - 1) == Tag::Nns  ? Number::Plural
               : analysis.tag(last - 1) == Tag::Nn ? Number::Singular
                                                   : Number::Unknown;
    }
    const Tag head = analysis.tag(last);
    if (analysis.document.word(last).letters != LetterCase::Lower)
        return Number::Unknown;
    if (head != Tag::Nn && head != Tag::Nns)
        return Number::Unknown;
    int first = last;
    while (first > 0 && analysis.joins(first) && !doubtful.contains(analysis.lower(first - 1)) &&
           (nounPhrase.has(analysis.tag(first - 1)) || analysis.tag(first - 1) == Tag::Prp) &&
           !opensClause(analysis, first - 1))
        --first;
    // "Tapping one's feet lowers it": the gerund is the subject.
    for (int i = first; i < last; ++i) {
        if (analysis.tag(i) == Tag::Vbg || (head == Tag::Nn && analysis.tag(i) == Tag::Nns))
            return Number::Unknown;
    }
    const QString &opening = analysis.lower(first);
    if (head == Tag::Nn && (opening == u"these" || opening == u"those"))
        return Number::Unknown;
    if (!isPlain(first) || doubtful.contains(analysis.lower(first)))
        return Number::Unknown;
    return head == Tag::Nns ? Number::Plural : Number::Singular;
}

QString agreeing(const Analysis &analysis, const QString &verb, Number number)
{
    const bool singular = number == Number::Singular;
    if (verb == u"is" || verb == u"are" || verb == u"am")
        return number == Number::FirstPerson ? QStringLiteral("am")
               : singular                    ? QStringLiteral("is")
                                             : QStringLiteral("are");
    if (verb == u"was" || verb == u"were")
        return number == Number::Plural ? QStringLiteral("were") : QStringLiteral("was");
    if (verb == u"isn't" || verb == u"aren't")
        return singular ? QStringLiteral("isn't") : QStringLiteral("aren't");
    if (verb == u"wasn't" || verb == u"weren't")
        return number == Number::Plural ? QStringLiteral("weren't") : QStringLiteral("wasn't");
    if (verb == u"doesn't" || verb == u"don't")
        return singular ? QStringLiteral("doesn't") : QStringLiteral("don't");
    if (verb == u"hasn't" || verb == u"haven't")
        return singular ? QStringLiteral("hasn't") : QStringLiteral("haven't");
    if (verb.contains(u'\''))
        return {};
    const auto base = analysis.inflections.verbBase(verb);
    // A past form that the tagger took for a present one agrees with everything.
    if (!base || (analysis.inflections.verbForm(*base, VerbForm::Base) != verb &&
                  analysis.inflections.verbForm(*base, VerbForm::Third) != verb))
        return {};
    return analysis.inflections.verbForm(*base, singular ? VerbForm::Third : VerbForm::Base)
        .value_or(QString());
}

/// Words whose clause has the base form.
bool asksFor(const QString &word)
{
    static const QStringList words =
        QStringLiteral("suggest suggests suggested recommend recommends recommended insist insists "
                       "insisted demand demands demanded propose proposes proposed request "
                       "requests requested ask asked require requires required important "
                       "essential vital necessary imperative")
            .split(u' ');
    return words.contains(word);
}

/// "is" or "are" after "there", by the noun that follows.
QString afterThere(const Analysis &analysis, int verb)
{
    const QString &word = analysis.lower(verb);
    const bool past = word == u"was" || word == u"were";
    if (!past && word != u"is" && word != u"are")
        return {};
    int at = verb + 1;
    while (analysis.joins(at) && TagSet{Tag::Jj, Tag::Cd, Tag::Rb, Tag::Jjr}.has(analysis.tag(at)))
        ++at;
    if (!analysis.joins(at) || analysis.document.word(at).hyphenated ||
        (analysis.joins(at + 1) && TagSet{Tag::Nn, Tag::Nns, Tag::Cc}.has(analysis.tag(at + 1))))
        return {};
    if (analysis.tag(at) == Tag::Nns)
        return past ? QStringLiteral("were") : QStringLiteral("are");
    if (at == verb + 1 && (analysis.lower(at) == u"a" || analysis.lower(at) == u"an"))
        return past ? QStringLiteral("was") : QStringLiteral("is");
    return {};
}

/// "this are my first try", "this are my friends": the noun after the verb decides.
void agreeThis(const Analysis &analysis, int verb, EditList &edits)
{
    int at = verb + 1;
    while (analysis.joins(at) &&
           TagSet{Tag::Dt, Tag::Prp, Tag::Jj, Tag::Jjs, Tag::Cd, Tag::Rb, Tag::Ls}.has(
               analysis.tag(at)))
        ++at;
    constexpr TagSet goesOn = {Tag::In, Tag::Of, Tag::To, Tag::Cc};
    if (at == verb + 1 || !analysis.joins(at) ||
        (analysis.joins(at + 1) && !goesOn.has(analysis.tag(at + 1))))
        return;
    // "my first try": the tagger may take a noun after an adjective for a verb.
    const bool plural = analysis.tag(at) == Tag::Nns;
    const bool pluralVerb = analysis.lower(verb) == u"are";
    const bool pluralSubject = analysis.lower(verb - 1) == u"these";
    if (pluralVerb == pluralSubject)
        return;
    if (pluralSubject != plural)
        analysis.replaceWord(edits, verb - 1,
                             plural ? QStringLiteral("these") : QStringLiteral("this"));
    if (pluralVerb != plural)
        analysis.replaceWord(edits, verb, plural ? QStringLiteral("are") : QStringLiteral("is"));
}

} // namespace

void AgreementRule::check(const Analysis &analysis, EditList &edits) const
{
    constexpr double needed = -0.5;
    constexpr double neededNoun = 0.0;
    for (int i = 1; i < int(analysis.tags.size()); ++i) {
        const Tag tag = analysis.tag(i);
        const QString &verb = analysis.lower(i);
        const bool past =
            verb == u"was" || verb == u"were" || verb == u"wasn't" || verb == u"weren't";
        if (!analysis.mayChange(i) || !analysis.joins(i) ||
            !(tag == Tag::Vbz || tag == Tag::Vbp || tag == Tag::Vb || past))
            continue;
        constexpr TagSet finite = {Tag::Vbd, Tag::Vbz, Tag::Vbp, Tag::Md};
        if (verb == u"be" || (analysis.joins(i + 1) && finite.has(analysis.tag(i + 1))))
            continue;
        if (analysis.lower(i - 1) == u"there") {
            const QString right = afterThere(analysis, i);
            if (!right.isEmpty() && right != verb && analysis.context.gain(i, 1, {right}) >= needed)
                analysis.replaceWord(edits, i, right);
            continue;
        }
        if ((analysis.lower(i - 1) == u"this" || analysis.lower(i - 1) == u"these") &&
            (verb == u"is" || verb == u"are") && opensClause(analysis, i - 2)) {
            agreeThis(analysis, i, edits);
            continue;
        }
        int subject = i - 1;
        if (analysis.tag(subject) == Tag::Rb && analysis.joins(subject) &&
            analysis.lower(subject) != u"not")
            --subject;
        const Number number = numberOf(analysis, subject);
        if (number == Number::Unknown)
            continue;
        // "if he were": a wish.
        if (verb == u"were" && subject > 0 &&
            (analysis.lower(subject - 1) == u"if" || analysis.lower(subject - 1) == u"though" ||
             analysis.lower(subject - 1) == u"as"))
            continue;
        // "I suggest that he go".
        if (number == Number::Singular && tag != Tag::Vbz && subject > 1 &&
            analysis.lower(subject - 1) == u"that" && asksFor(analysis.lower(subject - 2)))
            continue;
        const QString right = agreeing(analysis, verb, number);
        if (right.isEmpty() || right == verb)
            continue;
        const Tag head = analysis.tag(subject);
        const bool noun = head == Tag::Nn || head == Tag::Nns;
        const double gain = analysis.context.gain(i, 1, {right});
        if (gain >= (noun ? neededNoun : needed))
            analysis.replaceWord(edits, i, right);
    }
}

} // namespace offline
