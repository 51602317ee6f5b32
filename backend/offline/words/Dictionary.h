// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QString>
#include <QStringList>

#include <memory>
#include <mutex>

class Hunspell;

namespace offline
{

/// A Hunspell dictionary. Any thread may ask; the library's look-ups are not
/// reentrant, so one waits for the other.
class Dictionary
{
public:
    /// `folder`/`language`.aff and .dic; without them it knows nothing.
    Dictionary(const QString &folder, const QString &language);
    ~Dictionary();

    bool isOpen() const { return m_hunspell != nullptr; }
    bool knows(const QString &word);

    /// What the dictionary proposes for an unknown word, the best first. Takes
    /// milliseconds.
    QStringList suggestions(const QString &word);

private:
    std::string encoded(const QString &word) const;

    std::unique_ptr<Hunspell> m_hunspell;
    bool m_utf8 = false;
    std::mutex m_mutex;
};

} // namespace offline
