// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/language/LanguageModel.h"
#include "backend/offline/rules/LanguageRule.h"
#include "backend/offline/rules/Rule.h"
#include "backend/offline/rules/RuleFile.h"
#include "backend/offline/words/LanguageDetector.h"
#include "backend/offline/words/Lexicon.h"
#include "backend/offline/words/Verbs.h"

#include <memory>
#include <stop_token>
#include <vector>

namespace offline
{

/// Corrects spelling, grammar, punctuation and capitals of English text. The
/// rules run in stages: each reads the text that the stage before has left, so
/// that an article sees the word after it spelt right. Constant after
/// construction; any thread may use it.
class GrammarChecker
{
public:
    /// `off` has the ids of rules that are not to be used, such as "33-its". The
    /// other arguments must outlive the checker.
    GrammarChecker(const Lexicon &lexicon, const LanguageDetector &detector, const Verbs &verbs,
                   const QStringList &off);

    /// After a stop is requested it leaves off between two rules.
    QString corrected(const QString &text, const std::stop_token &stop = {}) const;

    /// Only the articles, for a text whose words have been replaced.
    QString withArticles(const QString &text) const;

private:
    using Rules = std::vector<std::unique_ptr<Rule>>;

    void addRule(const RuleFile &file, const Verbs &verbs);
    QString afterStage(const Rules &rules, const QString &text, const std::stop_token &stop) const;
    QString afterLanguageRules(const QString &text, const std::stop_token &stop) const;

    LanguageModel m_model;
    Tagger m_tagger;
    Inflections m_inflections;
    const Lexicon &m_lexicon;
    const LanguageDetector &m_detector;
    std::vector<Rules> m_stages;
    std::vector<std::unique_ptr<LanguageRule>> m_languageRules;
};

} // namespace offline
