// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <array>
#include <vector>

namespace offline
{

/// Tells languages apart by their function words and by their script. Constant
/// after construction; any thread may ask.
class LanguageDetector
{
public:
    LanguageDetector();

    /// How strongly some words speak for each language, in the order of
    /// languages(). A word that several languages share counts less.
    class Evidence
    {
    public:
        double of(int language) const { return m_scores[size_t(language)]; }
        int best() const;

    private:
        friend class LanguageDetector;
        std::array<double, 24> m_scores{};
    };

    /// Adds what one lower-case word says.
    void weigh(const QString &lower, Evidence &evidence) const;

    /// English names of the languages in lower case; the first is "english".
    const QStringList &languages() const { return m_languages; }

    /// The language of a text by name, or an empty string when nothing speaks
    /// for one of languages() (another script, no words).
    QString languageOf(const QString &text) const;

private:
    QStringList m_languages;
    QHash<QString, std::vector<quint8>> m_words;
};

} // namespace offline
