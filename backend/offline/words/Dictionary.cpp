// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/words/Dictionary.h"

#include <QFile>

#include <hunspell.hxx>

namespace offline
{

Dictionary::Dictionary(const QString &folder, const QString &language)
{
    const QString affixes = folder + u'/' + language + QStringLiteral(".aff");
    const QString words = folder + u'/' + language + QStringLiteral(".dic");
    if (QFile::exists(affixes) && QFile::exists(words)) {
        m_hunspell = std::make_unique<Hunspell>(QFile::encodeName(affixes).constData(),
                                                QFile::encodeName(words).constData());
        m_utf8 = m_hunspell->get_dict_encoding() == "UTF-8";
    }
}

Dictionary::~Dictionary() = default;

std::string Dictionary::encoded(const QString &word) const
{
    return (m_utf8 ? word.toUtf8() : word.toLatin1()).toStdString();
}

bool Dictionary::knows(const QString &word)
{
    if (!m_hunspell)
        return false;
    const std::lock_guard lock(m_mutex);
    return m_hunspell->spell(encoded(word));
}

QStringList Dictionary::suggestions(const QString &word)
{
    QStringList result;
    if (!m_hunspell)
        return result;
    const std::lock_guard lock(m_mutex);
    for (const std::string &suggestion : m_hunspell->suggest(encoded(word)))
        result.append(m_utf8 ? QString::fromStdString(suggestion)
                             : QString::fromLatin1(suggestion.c_str()));
    return result;
}

} // namespace offline
