// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/text/Document.h"

#include "backend/offline/words/LanguageDetector.h"
#include "backend/offline/words/Lexicon.h"

#include <QSet>

#include <algorithm>

namespace offline
{

namespace
{

constexpr qsizetype maxWordLength = 40;

/// Words that end with a full stop inside a sentence.
bool isAbbreviation(const QString &lower)
{
    static const QSet<QString> abbreviations = [] {
        const auto list = QStringLiteral(
            "cent mr mrs ms dr prof sr jr st vs etc eg ie cf al fig figs no nos vol pp ed eds "
            "approx "
            "dept est inc ltd co corp gen col sgt capt lt rev hon pres gov sen rep jan feb mar apr "
            "jun jul aug sep sept oct nov dec mon tue wed thu fri sat sun tel ext min max resp "
            "ca viz op ibid ch sec sect para ref refs ver rel misc incl excl e.g i.e a.m p.m u.s "
            "u.k ii iii iv vi vii viii ix xi xii ave blvd rd mt ft lb oz hr hrs");
        const QStringList words = list.split(u' ');
        return QSet<QString>(words.begin(), words.end());
    }();
    return lower.size() == 1 || abbreviations.contains(lower);
}

bool isTerminal(QChar c)
{
    return c == u'.' || c == u'!' || c == u'?';
}

} // namespace

Document::Document(const QString &text, const Lexicon &lexicon, const LanguageDetector &detector)
    : m_text(text)
    , m_protected(protectedSpans(text))
{
    findWords();
    findSentences();
    findEnglish(lexicon, detector);
}

QStringView Document::gapBefore(int index) const
{
    const qsizetype from = index == 0 ? 0 : m_words[size_t(index) - 1].end();
    const qsizetype to = size_t(index) == m_words.size() ? m_text.size() : word(index).start;
    return QStringView(m_text).mid(from, to - from);
}

bool Document::isMentioned(int index) const
{
    static constexpr QStringView opening = u"\"'([*_<\u201c\u2018\u00ab\u2039";
    const QStringView before = gapBefore(index);
    const QStringView after = gapBefore(index + 1);
    return !before.isEmpty() && !after.isEmpty() && opening.contains(before.back()) &&
           !after.front().isSpace() && !QStringView(u".,;:!?").contains(after.front());
}

void Document::findWords()
{
    const auto isLetter = [this](qsizetype i) {
        return m_text.at(i).isLetter() || m_text.at(i).isMark();
    };
    auto span = m_protected.cbegin();
    qsizetype at = 0;
    while (at < m_text.size()) {
        if (span != m_protected.cend() && at == span->start) {
            Word stand;
            stand.start = at;
            stand.length = span->length;
            m_words.push_back(stand);
            at = span->end();
            ++span;
            continue;
        }
        const qsizetype limit = span != m_protected.cend() ? span->start : m_text.size();
        const bool digit = m_text.at(at).isDigit();
        if (!digit && !isLetter(at)) {
            ++at;
            continue;
        }
        qsizetype end = at + 1;
        while (end < limit) {
            const bool inner = digit ? m_text.at(end).isDigit() : isLetter(end);
            const bool apostrophe =
                !digit && isApostrophe(m_text.at(end)) && end + 1 < limit && isLetter(end + 1);
            if (!inner && !apostrophe)
                break;
            ++end;
        }
        addWord(at, end);
        at = end;
    }
}

void Document::addWord(qsizetype start, qsizetype end)
{
    Word word;
    word.start = start;
    word.length = end - start;
    const auto hyphen = [this](qsizetype i) {
        return i >= 0 && i < m_text.size() && (m_text.at(i) == u'-' || m_text.at(i) == u'\u2010');
    };
    word.hyphenated = hyphen(start - 1) || hyphen(end);
    const QStringView spelt = QStringView(m_text).mid(start, word.length);
    const bool readable =
        word.length <= maxWordLength && std::all_of(spelt.begin(), spelt.end(), [](QChar c) {
            return isApostrophe(c) || (c.isLetter() && c.script() == QChar::Script_Latin);
        });
    if (readable) {
        word.lower = spelt.toString().toLower().replace(u'\u2019', u'\'');
        word.letters = letterCase(spelt);
    }
    m_words.push_back(word);
}

bool Document::endsSentence(int index) const
{
    const QStringView gap = gapBefore(index + 1);
    qsizetype terminal = -1;
    int breaks = 0;
    for (qsizetype i = 0; i < gap.size(); ++i) {
        if (isTerminal(gap[i]))
            terminal = i;
        // CR LF is one line break
        if (isLineBreak(gap[i]) && !(gap[i] == u'\n' && i > 0 && gap[i - 1] == u'\r'))
            ++breaks;
    }
    if (breaks > 1)
        return true;
    if (breaks == 1) {
        const Word &following = m_words[size_t(index) + 1];
        if (!gap.back().isSpace() || following.lower.isEmpty() ||
            following.letters != LetterCase::Lower)
            return true;
    }
    if (terminal < 0)
        return false;
    // "What a cake!" she said
    const Word &next = m_words[size_t(index) + 1];
    const bool goesOn = next.letters == LetterCase::Lower && !next.lower.isEmpty();
    if (goesOn && terminal + 1 < gap.size() &&
        QStringView(u"\"'\u201d\u2019)").contains(gap[terminal + 1]))
        return false;
    const bool spaceAfter =
        terminal + 1 < gap.size() && (gap[terminal + 1].isSpace() || gap.back().isSpace());
    if (gap[terminal] == u'.') {
        if (terminal > 0 && gap[terminal - 1] == u'.')
            return spaceAfter && next.letters == LetterCase::Capital;
        const Word &last = word(index);
        if (terminal == 0 && isAbbreviation(last.lower))
            return false;
        // "5.": only a capital shows that the sentence is over; not even that
        // after "E.H." or "U.S."
        const QStringView spelt = QStringView(m_text).mid(last.start, last.length);
        const bool initials = spelt.size() >= 3 && spelt.size() <= 6 && spelt[1] == u'.';
        if (last.lower.isEmpty() && (goesOn || initials))
            return false;
    }
    return spaceAfter;
}

void Document::findSentences()
{
    const int count = int(m_words.size());
    bool startsParagraph = true;
    for (int first = 0; first < count;) {
        Sentence sentence;
        sentence.first = first;
        sentence.startsParagraph = startsParagraph;
        int last = first;
        while (last + 1 < count && !endsSentence(last)) {
            m_words[size_t(last)].sentence = int(m_sentences.size());
            ++last;
            const QStringView gap = gapBefore(last);
            m_words[size_t(last)].joined =
                std::all_of(gap.begin(), gap.end(), [](QChar c) { return c.isSpace(); });
        }
        m_words[size_t(last)].sentence = int(m_sentences.size());
        sentence.end = last + 1;
        const QStringView gap = gapBefore(last + 1);
        sentence.terminated = std::any_of(gap.begin(), gap.end(), isTerminal);
        startsParagraph = std::any_of(gap.begin(), gap.end(), isLineBreak);
        m_sentences.push_back(sentence);
        first = last + 1;
    }
}

void Document::findEnglish(const Lexicon &lexicon, const LanguageDetector &detector)
{
    struct Count {
        int words = 0;
        int known = 0;
        LanguageDetector::Evidence evidence;

        bool isEnglish() const
        {
            const double english = evidence.of(0);
            if (words == 0 || (evidence.best() != 0 && evidence.of(evidence.best()) > english))
                return false;
            const double share = double(known) / words;
            return english > 0 ? share >= 0.4 : share >= 0.7;
        }
    };
    QHash<QString, bool> seen;
    const auto add = [&](Count &count, const Word &word) {
        if (word.lower.isEmpty())
            return;
        auto known = seen.constFind(word.lower);
        if (known == seen.constEnd()) {
            known = seen.insert(word.lower, lexicon.knows(word.lower) ||
                                                lexicon.isCommonMisspelling(word.lower));
        }
        ++count.words;
        count.known += *known ? 1 : 0;
        detector.weigh(word.lower, count.evidence);
    };

    std::vector<Count> counts(m_sentences.size());
    Count whole;
    for (const Word &word : m_words) {
        add(counts[size_t(word.sentence)], word);
        add(whole, word);
    }
    const bool mostlyEnglish = whole.isEnglish();
    for (size_t i = 0; i < counts.size(); ++i) {
        // A few words say too little: there the text as a whole decides too.
        const bool own = counts[i].isEnglish();
        m_sentences[i].english = counts[i].words < 4 ? own && mostlyEnglish : own;
    }
}

} // namespace offline
