// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/GrammarChecker.h"

#include "backend/offline/rules/AgreementRule.h"
#include "backend/offline/rules/ArticleRule.h"
#include "backend/offline/rules/CapitalRule.h"
#include "backend/offline/rules/ConfusionRule.h"
#include "backend/offline/rules/DoubledWordRule.h"
#include "backend/offline/rules/HyphenRule.h"
#include "backend/offline/rules/IntroductionRule.h"
#include "backend/offline/rules/MissingArticleRule.h"
#include "backend/offline/rules/NounNumberRule.h"
#include "backend/offline/rules/PatternRule.h"
#include "backend/offline/rules/ProperNounRule.h"
#include "backend/offline/rules/SpacingRule.h"
#include "backend/offline/rules/SpellingRule.h"
#include "backend/offline/rules/VerbFormRule.h"
#include "backend/offline/text/EditReview.h"

namespace offline
{

GrammarChecker::GrammarChecker(const Lexicon &lexicon, const LanguageDetector &detector,
                               const Verbs &verbs)
    : m_inflections(m_tagger, verbs, lexicon)
    , m_lexicon(lexicon)
    , m_detector(detector)
{
    m_stages.resize(3);
    m_stages[0].push_back(std::make_unique<SpellingRule>(lexicon, m_model));
    m_stages[1].push_back(std::make_unique<SpacingRule>(lexicon));
    m_stages[1].push_back(std::make_unique<DoubledWordRule>());
    m_stages[1].push_back(std::make_unique<PatternRule>(verbs));
    m_stages[2].push_back(std::make_unique<ArticleRule>(lexicon));
    m_stages[2].push_back(std::make_unique<CapitalRule>(lexicon));
    m_languageRules.push_back(std::make_unique<ConfusionRule>());
    m_languageRules.push_back(std::make_unique<AgreementRule>());
    m_languageRules.push_back(std::make_unique<NounNumberRule>());
    m_languageRules.push_back(std::make_unique<VerbFormRule>());
    m_languageRules.push_back(std::make_unique<MissingArticleRule>());
    m_languageRules.push_back(std::make_unique<HyphenRule>());
    m_languageRules.push_back(std::make_unique<ProperNounRule>());
    m_languageRules.push_back(std::make_unique<IntroductionRule>());
}

QString GrammarChecker::corrected(const QString &text) const
{
    // What one correction makes right may show another mistake; and the result of
    // all of them must be one that they leave alone.
    constexpr int maxPasses = 3;
    QString result = text;
    for (int pass = 0; pass < maxPasses; ++pass) {
        const QString before = result;
        for (size_t i = 0; i < m_stages.size(); ++i) {
            if (i + 1 == m_stages.size())
                result = afterLanguageRules(result);
            result = afterStage(m_stages[i], result);
        }
        if (result == before)
            break;
    }
    return result;
}

QString GrammarChecker::afterLanguageRules(const QString &text) const
{
    const Document document(text, m_lexicon, m_detector);
    const std::vector<Tag> tags = m_tagger.tags(document);
    const Context context(m_model, document);
    const Analysis analysis{document, context, tags, m_inflections};
    EditList edits;
    for (const auto &rule : m_languageRules)
        rule->check(analysis, edits);
    dropNewMistakes(document, edits);
    return edits.applied(text);
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
    dropNewMistakes(document, edits);
    return edits.applied(text);
}

} // namespace offline
