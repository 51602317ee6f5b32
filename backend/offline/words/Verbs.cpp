// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/words/Verbs.h"

#include "backend/offline/Resources.h"

namespace offline
{

namespace
{

bool isVowel(QChar c)
{
    return QStringView(u"aeiou").contains(c);
}

bool endsConsonantY(const QString &word)
{
    return word.size() > 1 && word.endsWith(u'y') && !isVowel(word.at(word.size() - 2));
}

/// "stop" doubles its last letter before -ed; only one-syllable words are told.
bool doubles(const QString &word)
{
    const qsizetype n = word.size();
    if (n < 3 || n > 4 || QStringView(u"wxy").contains(word.back()) || isVowel(word.back()))
        return false;
    return isVowel(word.at(n - 2)) && !isVowel(word.at(n - 3));
}

} // namespace

QString regularPlural(const QString &noun)
{
    if (endsConsonantY(noun))
        return noun.chopped(1) + QStringLiteral("ies");
    for (const QStringView ending : {u"s", u"x", u"z", u"ch", u"sh"}) {
        if (noun.endsWith(ending))
            return noun + QStringLiteral("es");
    }
    return noun + u's';
}

QString regularVerbForm(const QString &base, VerbForm form)
{
    switch (form) {
    case VerbForm::Base:
        return base;
    case VerbForm::Third:
        return base.endsWith(u'o') ? base + QStringLiteral("es") : regularPlural(base);
    case VerbForm::Past:
    case VerbForm::Participle:
        if (base.endsWith(u'e'))
            return base + u'd';
        if (endsConsonantY(base))
            return base.chopped(1) + QStringLiteral("ied");
        return (doubles(base) ? base + base.back() : base) + QStringLiteral("ed");
    case VerbForm::Gerund:
        if (base.endsWith(u"ie"))
            return base.chopped(2) + QStringLiteral("ying");
        if (base.endsWith(u'e') && !base.endsWith(u"ee"))
            return base.chopped(1) + QStringLiteral("ing");
        return (doubles(base) ? base + base.back() : base) + QStringLiteral("ing");
    }
    return base;
}

Verbs::Verbs()
{
    for (const QList<QString> &row : resourceTable(u"verbs.tsv")) {
        for (const QString &entry : row.at(0).split(u' ')) {
            std::array<QString, 5> forms;
            for (int i = 0; i < 5; ++i) {
                forms[size_t(i)] = i > 0 && i < row.size() && !row.at(i).isEmpty()
                                       ? row.at(i)
                                       : regularVerbForm(entry, VerbForm(i));
                m_bases[size_t(i)].insert(forms[size_t(i)], entry);
            }
            m_forms.insert(entry, forms);
        }
    }
}

QString Verbs::form(const QString &base, VerbForm form) const
{
    const auto found = m_forms.constFind(base);
    return found != m_forms.constEnd() ? (*found)[size_t(form)] : regularVerbForm(base, form);
}

std::optional<QString> Verbs::baseOf(const QString &word, VerbForm form) const
{
    const auto &bases = m_bases[size_t(form)];
    const auto found = bases.constFind(word);
    return found != bases.constEnd() ? std::optional(*found) : std::nullopt;
}

} // namespace offline
