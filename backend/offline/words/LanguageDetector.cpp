// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/words/LanguageDetector.h"

#include "backend/offline/Resources.h"
#include "backend/offline/text/Letters.h"

#include <algorithm>

namespace offline
{

namespace
{

constexpr qsizetype charactersThatDecide = 20'000;

} // namespace

LanguageDetector::LanguageDetector()
{
    for (const QList<QString> &row : resourceTable(u"function-words.tsv")) {
        const auto language = quint8(m_languages.size());
        m_languages.append(row.at(0));
        for (const QString &word : row.at(1).split(u' '))
            m_words[word].push_back(language);
    }
    Q_ASSERT(m_languages.size() <= qsizetype(std::tuple_size_v<decltype(Evidence::m_scores)>));
}

int LanguageDetector::Evidence::best() const
{
    return int(std::max_element(m_scores.begin(), m_scores.end()) - m_scores.begin());
}

void LanguageDetector::weigh(const QString &lower, Evidence &evidence) const
{
    const auto found = m_words.constFind(lower);
    if (found == m_words.constEnd())
        return;
    for (const quint8 language : *found)
        evidence.m_scores[size_t(language)] += 1.0 / double(found->size());
}

QString LanguageDetector::languageOf(const QString &text) const
{
    Evidence evidence;
    qsizetype latin = 0;
    qsizetype letters = 0;
    QString word;
    const qsizetype end = std::min(text.size(), charactersThatDecide);
    for (qsizetype i = 0; i <= end; ++i) {
        const QChar c = i < end ? text.at(i) : QChar(u' ');
        if (c.isLetter()) {
            ++letters;
            latin += c.script() == QChar::Script_Latin ? 1 : 0;
            word += c.toLower();
        } else if (isApostrophe(c) && !word.isEmpty()) {
            // "l'home", "qu'il": the elided word ends here
            weigh(word + u'\'', evidence);
            word.clear();
        } else if (!word.isEmpty()) {
            weigh(word, evidence);
            word.clear();
        }
    }
    if (letters == 0 || latin * 2 < letters)
        return {};
    const int best = evidence.best();
    return evidence.of(best) > 0 ? m_languages.at(best) : QString();
}

} // namespace offline
