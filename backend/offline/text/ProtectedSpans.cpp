// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/offline/text/ProtectedSpans.h"

#include "backend/offline/text/Letters.h"

#include <algorithm>
#include <iterator>

namespace offline
{

namespace
{

constexpr qsizetype maxTagLength = 300;

/// Walks a text line by line and notes what is not prose.
class Scanner
{
public:
    explicit Scanner(QStringView text)
        : m_text(text)
    {
    }

    std::vector<Span> scan()
    {
        qsizetype start = 0;
        while (start < m_text.size()) {
            qsizetype end = start;
            while (end < m_text.size() && !isLineBreak(m_text[end]))
                ++end;
            scanLine(start, end);
            start = end + 1;
        }
        return std::move(m_spans);
    }

private:
    void scanLine(qsizetype start, qsizetype end)
    {
        const QStringView whole = m_text.mid(start, end - start);
        const QStringView line = whole.trimmed();
        const bool sample = m_sampleMayFollow && whole.startsWith(u"    ") && !isListItem(line);
        if (!line.isEmpty())
            m_sampleMayFollow = sample || line.endsWith(u':') || line.startsWith(u"$ ");
        const bool fence = line.startsWith(u"```") || line.startsWith(u"~~~");
        if (m_fence.isNull() && fence) {
            m_fence = line.front();
        } else if (!m_fence.isNull()) {
            if (fence && line.front() == m_fence)
                m_fence = QChar();
        } else if (!sample && !looksLikeCode(line)) {
            scanProse(start, end);
            return;
        }
        protect(start, end);
    }

    static bool isListItem(QStringView line)
    {
        if (line.isEmpty() || QStringView(u"-*+\u2022").contains(line.front()))
            return !line.isEmpty();
        const QStringView after = line.mid(1, 1);
        return line.front().isLetterOrNumber() && (after == u")" || after == u".");
    }

    static bool looksLikeCode(QStringView line)
    {
        static constexpr QStringView openings[] = {u"#include", u"$ ",    u"import ", u"def ",
                                                   u"#!/",      u"// ",   u"/*",      u">>> ",
                                                   u"SELECT ",  u"sudo ", u"@@ "};
        static constexpr QStringView signs[] = {u"();", u"==", u" = ", u" += ", u"->",   u"::",
                                                u"=>",  u"</", u"&&",  u"||",   u" := ", u"){"};
        if (line.isEmpty() || line.size() > 2000)
            return false;
        if (line.endsWith(u'{') || line.endsWith(u'}') || line.endsWith(u"};") ||
            line.endsWith(u");") || line.endsWith(u"\\"))
            return true;
        const auto opens = [line](QStringView s) { return line.startsWith(s); };
        const auto contains = [line](QStringView s) { return line.contains(s); };
        return std::any_of(std::begin(openings), std::end(openings), opens) ||
               std::any_of(std::begin(signs), std::end(signs), contains);
    }

    void scanProse(qsizetype start, qsizetype end)
    {
        qsizetype at = start;
        while (at < end) {
            const QChar c = m_text[at];
            qsizetype stop = at;
            if (c == u'`')
                stop = inlineCodeEnd(at, end);
            else if (c == u'<')
                stop = tagEnd(at, end);
            if (stop > at) {
                protect(at, stop);
                at = stop;
            } else if (c.isSpace()) {
                ++at;
            } else {
                stop = at + 1;
                while (stop < end && !m_text[stop].isSpace() && m_text[stop] != u'`')
                    ++stop;
                scanChunk(at, stop);
                at = stop;
            }
        }
    }

    /// The end of the code that a run of backticks opens, or `at` for none. The
    /// next run must close it, so that no text is searched twice.
    qsizetype inlineCodeEnd(qsizetype at, qsizetype end) const
    {
        const auto run = [this, end](qsizetype from) {
            qsizetype to = from;
            while (to < end && m_text[to] == u'`')
                ++to;
            return to - from;
        };
        const qsizetype ticks = run(at);
        qsizetype close = at + ticks;
        while (close < end && m_text[close] != u'`')
            ++close;
        return close < end && run(close) == ticks ? close + ticks : at;
    }

    qsizetype tagEnd(qsizetype at, qsizetype end) const
    {
        if (at + 1 >= end)
            return at;
        const QChar next = m_text[at + 1];
        if (!next.isLetter() && next != u'/' && next != u'!')
            return at;
        const qsizetype limit = std::min(end, at + maxTagLength);
        for (qsizetype i = at + 1; i < limit; ++i) {
            if (m_text[i] == u'>')
                return i + 1;
        }
        return at;
    }

    /// Decides about a run of characters between two spaces.
    void scanChunk(qsizetype start, qsizetype end)
    {
        static constexpr QStringView opening = u"\"'([{<*_\u201c\u2018\u00ab\u00a1\u00bf";
        static constexpr QStringView closing = u"\"')]}>*_.,;:!?\u201d\u2019\u00bb\u2026";
        while (start < end && opening.contains(m_text[start]))
            ++start;
        while (end > start && closing.contains(m_text[end - 1]))
            --end;
        if (end > start && !isProse(m_text.mid(start, end - start)))
            protect(start, end);
    }

    static bool isProse(QStringView chunk)
    {
        static constexpr QStringView technical = u"/\\_@=$%^|&#~*+<>{}[]()";
        if (chunk.front() == u'-' && chunk.size() > 1)
            return false; // an option or a negative number
        if (chunk.front() == u'.' && chunk.size() > 1 && chunk[1].isLetter())
            return false;
        bool digit = false;
        bool letter = false;
        for (qsizetype i = 0; i < chunk.size(); ++i) {
            const QChar c = chunk[i];
            const bool inner = i > 0 && i + 1 < chunk.size();
            digit = digit || c.isDigit();
            letter = letter || c.isLetter();
            if (technical.contains(c))
                return false;
            if (inner && c == u':' && chunk[i + 1].isLetterOrNumber())
                return false;
            if (inner && c == u'.' && !isMissingSpace(chunk, i))
                return false;
            if (i > 0 && c.isUpper() && chunk[i - 1].isLower())
                return false;
        }
        return !(digit && letter);
    }

    /// Whether the full stop at `dot` ends a sentence whose successor follows
    /// without a space ("end.The"), rather than a part of a name ("file.txt").
    static bool isMissingSpace(QStringView chunk, qsizetype dot)
    {
        if (chunk[dot - 1] == u'.' || chunk[dot + 1] == u'.')
            return true; // an ellipsis
        if (chunk.lastIndexOf(u'.') != dot || chunk.indexOf(u'.') != dot || dot < 2)
            return false;
        return chunk[dot - 1].isLower() && chunk[dot - 2].isLower() && chunk[dot + 1].isUpper() &&
               (dot + 2 == chunk.size() || chunk[dot + 2].isLower());
    }

    void protect(qsizetype start, qsizetype end)
    {
        if (end > start)
            m_spans.push_back({start, end - start});
    }

    QStringView m_text;
    std::vector<Span> m_spans;
    QChar m_fence;                  // the character of the fence that is open
    bool m_sampleMayFollow = false; // an indented line belongs to what was announced
};

} // namespace

std::vector<Span> protectedSpans(QStringView text)
{
    return Scanner(text).scan();
}

} // namespace offline
