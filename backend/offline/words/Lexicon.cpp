// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/words/Lexicon.h"

#include "backend/offline/Resources.h"
#include "backend/offline/words/Dictionary.h"

#include <QDir>

namespace offline
{

struct Lexicon::Data {
    explicit Data(const QString &dictionaries)
        : american(dictionaries, QStringLiteral("en_US"))
        , m_folder(dictionaries)
    {
        trie.load(resource(u"words.txt"));
        for (const QList<QString> &row : resourceTable(u"misspellings.tsv")) {
            for (const QString &wrong : row.at(1).split(u' '))
                misspellings.insert(wrong, row.at(0));
        }
        for (const QList<QString> &row : resourceTable(u"extra-words.tsv")) {
            for (const QString &word : row.at(0).split(u' '))
                extra.insert(word);
        }
    }

    /// The British dictionary is needed for few words and slow to load.
    Dictionary &britishDictionary()
    {
        std::call_once(m_britishOnce, [this] {
            m_british = std::make_unique<Dictionary>(m_folder, QStringLiteral("en_GB"));
        });
        return *m_british;
    }

    WordTrie trie;
    Dictionary american;
    QHash<QString, QString> misspellings;
    QSet<QString> extra;

private:
    QString m_folder;
    std::once_flag m_britishOnce;
    std::unique_ptr<Dictionary> m_british;
};

Lexicon::Lexicon(const QString &dictionaries)
    : m_dictionaries(dictionaries)
{
}

Lexicon::~Lexicon() = default;

const Lexicon::Data &Lexicon::data() const
{
    std::call_once(m_once, [this] { m_data = std::make_unique<Data>(m_dictionaries); });
    return *m_data;
}

void Lexicon::load() const
{
    data();
    m_data->britishDictionary();
}

/// "rulesets", "manpage", "unmapped": words that writers build from others, and
/// that no dictionary lists.
bool Lexicon::isCompound(const QString &lower) const
{
    constexpr int wellKnown = 6;
    constexpr qsizetype shortestPart = 3;
    static constexpr QStringView prefixes[] = {u"un",    u"re",    u"non",   u"sub",  u"pre",
                                               u"multi", u"micro", u"super", u"over", u"under",
                                               u"anti",  u"inter", u"auto",  u"co",   u"meta"};
    const WordTrie &words = data().trie;
    const QStringView whole(lower);
    for (const QStringView prefix : prefixes) {
        if (lower.startsWith(prefix) && lower.size() > prefix.size() + shortestPart &&
            words.level(whole.mid(prefix.size())) >= 0)
            return true;
    }
    const bool plural = lower.endsWith(u's') && !lower.endsWith(u"ss") && !lower.endsWith(u"ys");
    if (plural && words.level(whole.chopped(1)) >= 0)
        return true;
    // "changeups", "trainable"
    static constexpr QStringView endings[] = {u"up",  u"ups",  u"er",   u"ers", u"able",
                                              u"ish", u"like", u"wise", u"fest"};
    for (const QStringView ending : endings) {
        if (lower.endsWith(ending) && words.level(whole.chopped(ending.size())) >= wellKnown)
            return true;
    }
    if (lower.endsWith(u"full"))
        return false; // "wonderfull"
    for (qsizetype i = shortestPart; i <= lower.size() - shortestPart; ++i) {
        if (words.level(whole.left(i)) >= wellKnown && words.level(whole.mid(i)) >= wellKnown)
            return true;
    }
    return false;
}

bool Lexicon::knows(const QString &lower) const
{
    const Data &known = data();
    if (known.trie.level(lower) >= 0 || known.extra.contains(lower))
        return true;
    if (known.misspellings.contains(lower))
        return false;
    if (m_data->american.knows(lower))
        return true;
    return m_data->britishDictionary().knows(lower);
}

bool Lexicon::isName(const QString &lower) const
{
    constexpr qsizetype shortest = 4;
    const Data &known = data();
    if (lower.size() < shortest || known.trie.level(lower) >= 0 || known.extra.contains(lower) ||
        m_data->american.knows(lower))
        return false;
    return m_data->american.knows(lower.left(1).toUpper() + lower.mid(1));
}

int Lexicon::level(QStringView lower) const
{
    return data().trie.level(lower);
}

std::vector<WordTrie::Candidate> Lexicon::candidates(const QString &lower) const
{
    const Data &known = data();
    const auto common = known.misspellings.constFind(lower);
    if (common != known.misspellings.constEnd())
        return {{*common, 0, 15}};
    // Without a dictionary every rarer word would count as a mistake.
    if (!known.american.isOpen() || knows(lower) || isCompound(lower))
        return {};
    return known.trie.candidates(lower);
}

bool Lexicon::isCommonMisspelling(const QString &lower) const
{
    return data().misspellings.contains(lower);
}

} // namespace offline
