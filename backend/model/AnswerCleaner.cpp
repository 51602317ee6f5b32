// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/AnswerCleaner.h"

#include "backend/model/AnswerOpening.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace
{

/// Characters that cannot be seen and that a writer of the text did not use: control characters,
/// what turns the order of the letters around, zero-width spaces.
bool isUnwanted(char32_t c)
{
    return (c < U' ' && c != U'\n' && c != U'\r' && c != U'\t') || (c >= 0x7f && c < 0xa0) ||
           c == 0x061c || c == 0x200b || (c >= 0x202a && c <= 0x202e) ||
           (c >= 0x2066 && c <= 0x2069) || c == 0xfeff || (c >= 0xd800 && c < 0xe000);
}

bool isTag(char32_t c)
{
    return c >= 0xe0000 && c <= 0xe007f;
}

/// Without characters that cannot be seen, unless the source has them. Tag characters stay where
/// they belong to the emoji of a flag: behind a black flag, up to the cancelling tag.
QString visible(const QString &answer, const QString &source)
{
    constexpr char32_t blackFlag = 0x1f3f4;
    constexpr char32_t cancelTag = 0xe007f;
    const auto points = answer.toUcs4();
    const auto known = source.toUcs4();
    QList<uint> kept;
    kept.reserve(points.size());
    for (qsizetype i = 0; i < points.size(); ++i) {
        const char32_t c = points[i];
        if (c == blackFlag) {
            auto end = i + 1;
            while (end < points.size() && isTag(points[end]) && points[end] != cancelTag)
                ++end;
            if (end > i + 1 && end < points.size() && points[end] == cancelTag) {
                kept += points.mid(i, end + 1 - i);
                i = end;
                continue;
            }
        }
        if (!(isUnwanted(c) || isTag(c)) || known.contains(c))
            kept += c;
    }
    return QString::fromUcs4(reinterpret_cast<const char32_t *>(kept.constData()), kept.size());
}

QString withLineEndsOf(const QString &source, QString text)
{
    const auto lineFeeds = source.count(u'\n');
    const auto pairs = source.count(u"\r\n"_qs);
    if (pairs == 0 || pairs == lineFeeds) {
        text.replace(u"\r\n"_qs, u"\n"_qs);
        if (pairs > 0)
            text.replace(u"\n"_qs, u"\r\n"_qs);
    }
    return text;
}

/// Tokens and remarks that follow a text.
QString withoutEnding(QString answer, const QString &source, const QString &delimiter)
{
    static const QRegularExpression token(
        QStringLiteral("(?:<\\|[a-z_]+\\|>|<end_of_turn>|</?s>|\\[/?INST\\]|</?text>)\\s*$"));
    static const QRegularExpression remark(
        QStringLiteral(
            "\\n[ \\t\\r]*\\n(?:---+\\s*\\n\\s*)?[(*_]*(?:let me know\\b|please let me "
            "know\\b|feel free "
            "to\\b|"
            "(?:i )?hope this helps\\b|i hope this\\b|note:|note that i\\b|explanation:|"
            "(?:key |main )?changes(?: made)?:|i(?:'ve| have)? (?:made|changed|corrected|improved|"
            "kept|fixed|replaced|removed)\\b)[\\s\\S]{0,1500}$"),
        QRegularExpression::CaseInsensitiveOption);
    answer.remove(QStringLiteral("<text-%1>").arg(delimiter));
    answer.remove(QStringLiteral("</text-%1>").arg(delimiter));
    answer = answer.trimmed();
    for (auto match = token.match(answer);
         match.hasMatch() && !source.contains(match.captured().trimmed());
         match = token.match(answer)) {
        answer = answer.first(match.capturedStart()).trimmed();
    }
    if (const auto match = remark.match(answer); match.hasMatch() && match.capturedStart() > 0 &&
                                                 !remark.match(u"x\n\n"_qs + source).hasMatch() &&
                                                 !remark.match(source).hasMatch()) {
        answer = answer.first(match.capturedStart()).trimmed();
    }
    return answer;
}

/// The one string of a JSON object that wraps the text.
QString withoutJson(const QString &answer, const QString &source)
{
    if (!answer.startsWith(u'{') || source.trimmed().startsWith(u'{'))
        return answer;
    const QJsonObject object = QJsonDocument::fromJson(answer.toUtf8()).object();
    return object.size() == 1 && object.begin()->isString() ? object.begin()->toString() : answer;
}

} // namespace

QString cleanedAnswer(const QString &answer, const QString &text, const QString &delimiter)
{
    QString result = answer.sliced(*textStart(answer, text, delimiter, true));
    result = withoutJson(withoutEnding(result, text, delimiter), text);
    const Wrapping wrapping = wrappingOf(result, text);
    // Around the whole and nowhere inside it.
    const QString inner =
        result.mid(wrapping.length, result.size() - wrapping.length - wrapping.end.size());
    if (wrapping.length > 0 && result.size() > wrapping.length && result.endsWith(wrapping.end) &&
        !inner.contains(wrapping.end) && !inner.contains(result[0])) {
        result = inner.trimmed();
    }
    return withLineEndsOf(text, visible(result, text));
}

bool isRefusal(const QString &answer, const QString &text)
{
    static const QRegularExpression refusal(
        QStringLiteral(
            "^(?:i['\u2019]?m (?:really |very |so )?sorry|i am (?:really |very )?sorry|sorry|"
            "i apologi[sz]e|unfortunately|as an? (?:ai|large language)|i (?:can(?:no|['\u2019])t|"
            "cannot|am unable|am not able|won['\u2019]t|will not|must decline|do not feel)|"
            "i['\u2019]m (?:unable|not able|not comfortable|just an? ))"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression task(
        QStringLiteral("\\b(?:assist|help|comply|fulfil|fulfill|provide|generate|create|produce|"
                       "rewrite|translate|request|content|language model|AI|guidelines?)\\b"),
        QRegularExpression::CaseInsensitiveOption);
    return answer.size() < 600 && refusal.match(answer.trimmed()).hasMatch() &&
           task.match(answer).hasMatch() && !refusal.match(text.trimmed()).hasMatch();
}

bool isLooping(QStringView answer, const QString &text)
{
    constexpr qsizetype length = 1200;
    constexpr qsizetype maxPeriod = 240;
    if (answer.size() < 2 * length)
        return false;
    const QStringView end = answer.last(length);
    for (qsizetype period = 1; period <= maxPeriod; ++period) {
        if (end.sliced(period) != end.first(length - period))
            continue;
        // A text with long rules or filled tables has such ends itself.
        return !text.contains(end.first(std::max<qsizetype>(3 * period, 24)));
    }
    return false;
}

AnswerStream::AnswerStream(QString text, QString delimiter)
    : m_text(std::move(text))
    , m_delimiter(std::move(delimiter))
{
}

QString AnswerStream::feed(const QString &piece)
{
    m_raw += piece;
    if (m_done < 0) {
        const auto start = textStart(m_raw, m_text, m_delimiter, false);
        // One character may be the first of a fence.
        if (!start || m_raw.size() - *start < 4)
            return {};
        const auto text = QStringView(m_raw).sliced(*start);
        if (text.startsWith(u'{') || (text.startsWith(u"```") && !text.contains(u'\n')))
            return {};
        m_done = *start + wrappingOf(text, m_text).length;
    }
    // White space, and what may be the beginning of a token or a wrapping, waits for what follows.
    constexpr qsizetype maxHeld = 48;
    auto end = m_raw.size();
    const auto first = std::max(m_done, end - maxHeld);
    for (auto i = first; i < end; ++i) {
        if (QStringView(u"<`\"\u201d\u00bb\u201c[").contains(m_raw[i]))
            end = i;
    }
    while (end > m_done && (m_raw[end - 1].isSpace() || m_raw[end - 1].isHighSurrogate()))
        --end;
    if (end <= m_done)
        return {};
    const QString added = m_raw.sliced(m_done, end - m_done);
    m_done = end;
    return withLineEndsOf(m_text, visible(added, m_text));
}
