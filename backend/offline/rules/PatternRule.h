// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/rules/Rule.h"
#include "backend/offline/words/Verbs.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <optional>
#include <vector>

namespace offline
{

/// Mistakes that show in the words around them: contractions without their
/// apostrophe, words taken for each other, agreement. The patterns stand in
/// data/rules/, where README.md describes their notation.
class PatternRule : public Rule
{
public:
    /// `verbs` must outlive the rule.
    PatternRule(const QStringList &patterns, const Verbs &verbs);

    void check(const Document &document, EditList &edits) const override;

private:
    struct Element {
        QSet<QString> words;            ///< what the element matches ...
        std::optional<VerbForm> form;   ///< ... or any verb in this form
        bool negated = false;           ///< a neighbour that must not be there
        bool changes = false;           ///< else it is only context
        QString replacement;            ///< empty: the word goes
        std::optional<VerbForm> toForm; ///< the same verb in this form instead
    };
    struct Pattern {
        std::vector<Element> elements;
        bool opensSentence = false;
        bool closesSentence = false;
    };

    void addPattern(const QString &line, const QHash<QString, QSet<QString>> &classes);
    Element element(const QString &notation, const QHash<QString, QSet<QString>> &classes) const;
    std::optional<QString> verbIn(const Element &element, const Word &word) const;
    QString baseOf(const Word &word) const;
    bool accepts(const Element &element, const Word &word) const;
    bool mayChange(const Document &document, int at) const;
    bool matches(const Pattern &pattern, const Document &document, int at) const;
    void apply(const Pattern &pattern, const Document &document, int at, EditList &edits) const;

    const Verbs &m_verbs;
    std::vector<Pattern> m_patterns;
    QHash<QString, std::vector<int>> m_byFirstWord;
    std::array<std::vector<int>, 5> m_byFirstForm;
};

} // namespace offline
