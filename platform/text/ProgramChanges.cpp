// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/text/ProgramChanges.h"

namespace platform
{

namespace
{

/// The text with one spelling for what programs write differently. White space never vanishes
/// between two words.
QString plain(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        // Characters that only hold a place open.
        if (c == QChar(0x200b) || c == QChar(0xfeff))
            continue;
        if (c.isSpace()) {
            if (!result.isEmpty() && !result.endsWith(u' '))
                result += u' ';
            continue;
        }
        switch (c.unicode()) {
        case 0x2018: // ‘ ’ ‚ ‛ ‹ ›
        case 0x2019:
        case 0x201a:
        case 0x201b:
        case 0x2039:
        case 0x203a:
            result += u'\'';
            break;
        case 0x201c: // “ ” „ ‟ « »
        case 0x201d:
        case 0x201e:
        case 0x201f:
        case 0x00ab:
        case 0x00bb:
            result += u'"';
            break;
        case 0x2010: // ‐ ‑ ‒ – — ―
        case 0x2011:
        case 0x2012:
        case 0x2013:
        case 0x2014:
        case 0x2015:
        case u'-':
            // Two hyphens become one dash.
            if (!result.endsWith(u'-'))
                result += u'-';
            break;
        case 0x2026:
            result += QStringLiteral("...");
            break;
        default:
            result += i == 0 || !text.at(i - 1).isLetterOrNumber() ? c.toLower() : c;
        }
    }
    return result.trimmed();
}

} // namespace

bool isProgramsOwnChange(const QString &wanted, const QString &found)
{
    return plain(wanted) == plain(found);
}

} // namespace platform
