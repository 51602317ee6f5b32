// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/language/Context.h"

#include <algorithm>

namespace offline
{

namespace
{

/// Words on each side that a word's probability reaches to.
constexpr int reach = 2;

} // namespace

Context::Context(const LanguageModel &model, const Document &document)
    : m_model(model)
    , m_document(document)
{
    m_ids.reserve(document.words().size());
    for (const Word &word : document.words())
        m_ids.push_back(model.idOf(word.lower));
}

float Context::score(const Sentence &sentence, int first, int count,
                     const std::vector<WordId> &words) const
{
    std::vector<WordId> window;
    window.reserve(words.size() + 2 * reach);
    for (int i = first - reach; i < first; ++i)
        window.push_back(i < sentence.first ? m_model.sentenceStart() : m_ids[size_t(i)]);
    window.insert(window.end(), words.begin(), words.end());
    for (int i = first + count; i < first + count + reach && i <= sentence.end; ++i) {
        if (i < sentence.end)
            window.push_back(m_ids[size_t(i)]);
        else if (sentence.terminated)
            window.push_back(m_model.sentenceEnd());
    }
    return m_model.score(window);
}

float Context::score(int first, int count, const QStringList &words) const
{
    std::vector<WordId> ids;
    ids.reserve(size_t(words.size()));
    for (const QString &word : words)
        ids.push_back(m_model.idOf(word));
    return score(m_document.sentenceOf(m_document.word(first)), first, count, ids);
}

float Context::gain(int first, int count, const QStringList &words) const
{
    const std::vector<WordId> before(m_ids.begin() + first, m_ids.begin() + first + count);
    return score(first, count, words) -
           score(m_document.sentenceOf(m_document.word(first)), first, count, before);
}

} // namespace offline
