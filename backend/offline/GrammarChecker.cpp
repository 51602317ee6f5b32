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
#include "backend/offline/rules/OtherLanguagesRule.h"
#include "backend/offline/rules/PatternRule.h"
#include "backend/offline/rules/ProperNounRule.h"
#include "backend/offline/rules/SpacingRule.h"
#include "backend/offline/rules/SpellingRule.h"
#include "backend/offline/rules/SplitWordRule.h"
#include "backend/offline/rules/TenseRule.h"
#include "backend/offline/rules/VerbFormRule.h"
#include "backend/offline/text/EditReview.h"

#include <functional>

namespace offline
{

namespace
{

/// The stages, in their order.
enum Stage : size_t { Words, Patterns, Finish, StageCount };

} // namespace

GrammarChecker::GrammarChecker(const Lexicon &lexicon, const LanguageDetector &detector,
                               const Verbs &verbs, const QStringList &off)
    : m_inflections(m_tagger, verbs, lexicon)
    , m_lexicon(lexicon)
    , m_detector(detector)
    , m_stages(StageCount)
{
    for (const RuleFile &file : ruleFiles()) {
        if (!off.contains(file.id))
            addRule(file, verbs);
    }
}

void GrammarChecker::addRule(const RuleFile &file, const Verbs &verbs)
{
    using Engine = std::function<std::unique_ptr<Rule>()>;
    using LanguageEngine = std::function<std::unique_ptr<LanguageRule>()>;
    const QHash<QString, std::pair<Stage, Engine>> engines = {
        {u"spelling"_qs,
         {Words, [this] { return std::make_unique<SpellingRule>(m_lexicon, m_model); }}},
        {u"other-languages"_qs,
         {Words, [this] { return std::make_unique<OtherLanguagesRule>(m_lexicon, m_detector); }}},
        {u"spacing"_qs, {Patterns, [this] { return std::make_unique<SpacingRule>(m_lexicon); }}},
        {u"doubled-words"_qs, {Patterns, [] { return std::make_unique<DoubledWordRule>(); }}},
        {u"patterns"_qs,
         {Patterns, [&] { return std::make_unique<PatternRule>(file.patterns, verbs); }}},
        {u"article-sound"_qs,
         {Finish, [this] { return std::make_unique<ArticleRule>(m_lexicon); }}},
        {u"capitals"_qs, {Finish, [this] { return std::make_unique<CapitalRule>(m_lexicon); }}},
    };
    const QHash<QString, LanguageEngine> languageEngines = {
        {u"confusions"_qs, [] { return std::make_unique<ConfusionRule>(); }},
        {u"tense"_qs, [] { return std::make_unique<TenseRule>(); }},
        {u"agreement"_qs, [] { return std::make_unique<AgreementRule>(); }},
        {u"number"_qs, [] { return std::make_unique<NounNumberRule>(); }},
        {u"verb-forms"_qs, [] { return std::make_unique<VerbFormRule>(); }},
        {u"missing-article"_qs, [] { return std::make_unique<MissingArticleRule>(); }},
        {u"hyphens"_qs, [] { return std::make_unique<HyphenRule>(); }},
        {u"split-words"_qs, [this] { return std::make_unique<SplitWordRule>(m_lexicon); }},
        {u"names"_qs, [this] { return std::make_unique<ProperNounRule>(m_lexicon); }},
        {u"introductions"_qs, [] { return std::make_unique<IntroductionRule>(); }},
    };
    const auto engine = engines.constFind(file.engine);
    if (engine != engines.constEnd())
        m_stages[engine->first].push_back(engine->second());
    else
        m_languageRules.push_back(languageEngines.value(file.engine)());
}

QString GrammarChecker::corrected(const QString &text, const std::stop_token &stop) const
{
    // What one correction makes right may show another mistake; and the result of
    // all of them must be one that they leave alone.
    constexpr int maxPasses = 3;
    QString result = text;
    for (int pass = 0; pass < maxPasses; ++pass) {
        const QString before = result;
        for (size_t i = 0; i < m_stages.size(); ++i) {
            if (i == Finish)
                result = afterLanguageRules(result, stop);
            result = afterStage(m_stages[i], result, stop);
        }
        if (result == before || stop.stop_requested())
            break;
    }
    return result;
}

QString GrammarChecker::afterLanguageRules(const QString &text, const std::stop_token &stop) const
{
    if (stop.stop_requested())
        return text;
    const Document document(text, m_lexicon, m_detector);
    const std::vector<Tag> tags = m_tagger.tags(document);
    const Context context(m_model, document);
    const Analysis analysis{document, context, tags, m_inflections};
    EditList edits;
    for (const auto &rule : m_languageRules) {
        if (stop.stop_requested())
            return text;
        rule->check(analysis, edits);
    }
    dropNewMistakes(document, edits);
    return edits.applied(text);
}

QString GrammarChecker::withArticles(const QString &text) const
{
    EditList edits;
    ArticleRule(m_lexicon).check(Document(text, m_lexicon, m_detector), edits);
    return edits.applied(text);
}

QString GrammarChecker::afterStage(const Rules &rules, const QString &text,
                                   const std::stop_token &stop) const
{
    if (stop.stop_requested())
        return text;
    const Document document(text, m_lexicon, m_detector);
    EditList edits;
    for (const auto &rule : rules) {
        if (stop.stop_requested())
            return text;
        rule->check(document, edits);
    }
    dropNewMistakes(document, edits);
    return edits.applied(text);
}

} // namespace offline
