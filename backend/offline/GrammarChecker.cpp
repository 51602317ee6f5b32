// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/GrammarChecker.h"

#include "backend/offline/rules/ArticleRule.h"
#include "backend/offline/rules/CapitalRule.h"
#include "backend/offline/rules/DoubledWordRule.h"
#include "backend/offline/rules/PatternRule.h"
#include "backend/offline/rules/SpacingRule.h"
#include "backend/offline/rules/SpellingRule.h"

namespace offline
{

GrammarChecker::GrammarChecker(const Lexicon &lexicon, const LanguageDetector &detector,
                               const Verbs &verbs)
    : m_lexicon(lexicon)
    , m_detector(detector)
{
    m_stages.resize(3);
    m_stages[0].push_back(std::make_unique<SpellingRule>(lexicon));
    m_stages[1].push_back(std::make_unique<SpacingRule>(lexicon));
    m_stages[1].push_back(std::make_unique<DoubledWordRule>());
    m_stages[1].push_back(std::make_unique<PatternRule>(verbs));
    m_stages[2].push_back(std::make_unique<ArticleRule>(lexicon));
    m_stages[2].push_back(std::make_unique<CapitalRule>(lexicon));
}

QString GrammarChecker::corrected(const QString &text) const
{
    QString result = text;
    for (const Stage &stage : m_stages)
        result = afterStage(stage, result);
    return result;
}

QString GrammarChecker::withArticles(const QString &text) const
{
    EditList edits;
    ArticleRule(m_lexicon).check(Document(text, m_lexicon, m_detector), edits);
    return edits.applied(text);
}

QString GrammarChecker::afterStage(const Stage &stage, const QString &text) const
{
    const Document document(text, m_lexicon, m_detector);
    EditList edits;
    for (const auto &rule : stage)
        rule->check(document, edits);
    return edits.applied(text);
}

} // namespace offline
