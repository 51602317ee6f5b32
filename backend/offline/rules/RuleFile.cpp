// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/rules/RuleFile.h"

#include "backend/offline/Resources.h"

namespace offline
{

namespace
{

RuleFile parsed(const QString &file)
{
    RuleFile rule;
    rule.id = file.chopped(5);
    bool inPatterns = false;
    for (const QList<QString> &row : resourceTable(QString(QStringLiteral("rules/") + file))) {
        const QString line = row.at(0).trimmed();
        const QString key = line.section(u':', 0, 0);
        const QString value = line.section(u':', 1).trimmed();
        if (inPatterns)
            rule.patterns.append(line);
        else if (key == u"name")
            rule.name = value;
        else if (key == u"about")
            rule.about = value;
        else if (key == u"engine")
            rule.engine = value;
        else if (key == u"wrong")
            rule.wrong.append(
                {value.section(u"=>"_qs, 0, 0).trimmed(), value.section(u"=>"_qs, 1).trimmed()});
        else if (key == u"right")
            rule.right.append(value);
        else
            inPatterns = key == u"patterns";
    }
    return rule;
}

} // namespace

const QList<RuleFile> &ruleFiles()
{
    static const QList<RuleFile> files = [] {
        QList<RuleFile> result;
        for (const QString &file : resourceNames(u"rules"))
            result.append(parsed(file));
        return result;
    }();
    return files;
}

} // namespace offline
