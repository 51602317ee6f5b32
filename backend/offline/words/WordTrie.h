// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <vector>

namespace offline
{

/// The common English words with how common they are, and the search for the
/// word that a misspelling most probably stands for. Constant once loaded; any
/// thread may ask.
class WordTrie
{
public:
    /// Loads the front-coded list that data/make-words.py describes.
    void load(QByteArrayView list);

    /// How common a lower-case word is: 15 (as "the") to 0 (rare), or -1 when
    /// the list does not have it.
    int level(QStringView word) const;

    /// A word that a misspelling may stand for.
    struct Candidate {
        QString word;
        int cost = 0;  ///< of the mistake, in tenths of an arbitrary letter
        int level = 0; ///< as level() gives it
    };

    /// The words that `misspelling` (lower case, a-z) may stand for, the best
    /// first, at most a dozen. They are ranked by the kind of mistake that they
    /// take (swapped letters, doubled or missing letters, sound-alikes,
    /// neighbouring keys) and by how common they are.
    std::vector<Candidate> candidates(QStringView misspelling) const;

private:
    struct Node {
        char letter;
        qint8 level = -1;
        qint32 child = 0;
        qint32 sibling = 0;
    };
    struct Search;

    qint32 childOf(qint32 node, char letter) const;
    void insert(const char *word, qsizetype length, int level);
    void descend(Search &search, qint32 node, int depth) const;

    std::vector<Node> m_nodes;
};

} // namespace offline
