// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

namespace offline
{

/// One file of data/rules/, which describes a rule to users, gives examples and
/// names the class that does the work. data/rules/README.md has the notation.
struct RuleFile {
    QString id; ///< the file's name without its ending, such as "33-its"
    QString name;
    QString about;
    QString engine;
    QList<std::pair<QString, QString>> wrong; ///< texts and their corrections
    QStringList right;                        ///< texts that stay
    QStringList patterns;
};

/// All of them, in the order in which the rules take precedence.
const QList<RuleFile> &ruleFiles();

} // namespace offline
