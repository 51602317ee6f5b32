// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QHash>
#include <QString>

#include <array>
#include <optional>

namespace offline
{

enum class VerbForm { Base, Third, Past, Participle, Gerund };

/// Regular English inflection of a lower-case base form.
QString regularVerbForm(const QString &base, VerbForm form);
QString regularPlural(const QString &noun);

/// The verbs of data/verbs.tsv and their forms. Constant after construction;
/// any thread may ask.
class Verbs
{
public:
    Verbs();

    /// `base` in the given form; irregular where the table says so.
    QString form(const QString &base, VerbForm form) const;

    /// The base form of a word that is this form of a verb in the table.
    std::optional<QString> baseOf(const QString &word, VerbForm form) const;

private:
    QHash<QString, std::array<QString, 5>> m_forms;
    std::array<QHash<QString, QString>, 5> m_bases;
};

} // namespace offline
