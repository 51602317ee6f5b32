// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/text/Letters.h"
#include "backend/offline/text/ProtectedSpans.h"

#include <QString>

#include <vector>

namespace offline
{

class Lexicon;
class LanguageDetector;

/// One word of a document, or a protected span standing in its place.
struct Word {
    qsizetype start = 0;  ///< UTF-16 units
    qsizetype length = 0; ///< UTF-16 units
    /// Lower case with straight apostrophes; empty for what rules must not read
    /// as a word: protected spans, numbers, other scripts, overlong runs.
    QString lower;
    LetterCase letters = LetterCase::Lower;
    bool hyphenated = false; ///< touches a hyphen
    bool joined = false;     ///< nothing but white space between the word before and this one
    int sentence = 0;        ///< index into Document::sentences()

    qsizetype end() const { return start + length; }
};

/// One sentence, as a range of words.
struct Sentence {
    int first = 0;
    int end = 0;
    bool english = false;
    bool terminated = false;     ///< ends with . ! or ?
    bool startsParagraph = true; ///< else it follows a sentence on the same line
};

/// A text taken apart: words with their places, sentences, and which of them
/// are English. Everything is found in one pass over the text. One thread at a
/// time; the text must outlive it.
class Document
{
public:
    Document(const QString &text, const Lexicon &lexicon, const LanguageDetector &detector);

    const QString &text() const { return m_text; }
    const std::vector<Word> &words() const { return m_words; }
    const std::vector<Sentence> &sentences() const { return m_sentences; }
    const std::vector<Span> &protectedParts() const { return m_protected; }

    const Word &word(int index) const { return m_words[size_t(index)]; }
    const Sentence &sentenceOf(const Word &word) const
    {
        return m_sentences[size_t(word.sentence)];
    }
    bool isEnglish(const Word &word) const { return sentenceOf(word).english; }
    bool isFirstOfSentence(int index) const { return sentenceOf(word(index)).first == index; }

    /// Whether the word stands alone in quotation marks or brackets: it is spoken
    /// about, or is foreign.
    bool isMentioned(int index) const;

    /// The characters between two neighbouring words (or the text's edges: index
    /// 0 is before the first word).
    QStringView gapBefore(int index) const;

private:
    void findWords();
    void addWord(qsizetype start, qsizetype end);
    void findSentences();
    void findEnglish(const Lexicon &lexicon, const LanguageDetector &detector);
    bool endsSentence(int index) const;

    const QString &m_text;
    std::vector<Span> m_protected;
    std::vector<Word> m_words;
    std::vector<Sentence> m_sentences;
};

} // namespace offline
