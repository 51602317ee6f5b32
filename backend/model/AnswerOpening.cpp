// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/AnswerOpening.h"

#include <QRegularExpression>

namespace
{

struct Section {
    QStringView opening;
    QStringView closing;
};

/// How models and their chat templates mark what is not the answer.
constexpr Section thoughts[] = {
    {u"<think>", u"</think>"},
    {u"<thinking>", u"</thinking>"},
    {u"<thought>", u"</thought>"},
    {u"<reasoning>", u"</reasoning>"},
    {u"<seed:think>", u"</seed:think>"},
    {u"[THINK]", u"[/THINK]"},
    {u"\u25c1think\u25b7", u"\u25c1/think\u25b7"},
    {u"<|channel|>analysis", u"<|channel|>final<|message|>"},
    {u"<|channel|>commentary", u"<|channel|>final<|message|>"},
    {u"<|channel>thought", u"<channel|>"},
};

/// The longest line that announces an answer.
constexpr qsizetype maxAnnouncement = 160;

QRegularExpression expression(const QString &pattern)
{
    return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption);
}

/// Tokens of chat templates that were not taken for what they are.
qsizetype tokenLength(QStringView text, const QString &delimiter)
{
    static const QRegularExpression token = expression(
        QStringLiteral("^(?:<\\|im_start\\|>assistant|<\\|start\\|>assistant|<\\|channel\\|>final|"
                       "<\\|[a-z_]+\\|>|<start_of_turn>(?:model)?|</?s>|\\[/?INST\\]|</?text>)"));
    for (const char16_t *format : {u"<text-%1>", u"</text-%1>"}) {
        const QString line = QString::fromUtf16(format).arg(delimiter);
        if (text.startsWith(line))
            return line.size();
    }
    return token.match(text.first(std::min<qsizetype>(text.size(), 40))).capturedLength();
}

/// The length of a line that announces the text, such as "Sure! Here is the corrected version:".
qsizetype announcementLength(QStringView text, const QString &source)
{
    static const QRegularExpression line = expression(QStringLiteral(
        "^(?:(?:sure(?: thing)?|certainly|of course|okay|ok|absolutely|great|gladly)\\b[!,.]*\\s*)?"
        "(?:here(?:'s|\u2019s| is| are| you go)\\b|below is\\b)[^\\n]{0,140}:[*_]*[ \\t]*\\n\\s*"));
    static const QRegularExpression label = expression(QStringLiteral(
        "^[*#_ ]*(?:the )?(?:improved|corrected|revised|rewritten|edited|polished|final|translated|"
        "translation|rephrased|concise|output|answer|result|response|resulting)"
        "(?: (?:text|version|translation|answer|message|output|reply|sentence))?[*_]*:[*_]*\\s+"));
    for (const QRegularExpression *kind : {&line, &label}) {
        const auto match =
            kind->match(text.first(std::min<qsizetype>(text.size(), 2 * maxAnnouncement)));
        if (!match.hasMatch())
            continue;
        // A text that begins so itself keeps it.
        return kind->match(source).hasMatch() ? 0 : match.capturedLength();
    }
    return 0;
}

/// Whether `text`, which may not be whole, could turn out to begin with something that goes.
bool mayBegin(QStringView text)
{
    while (!text.isEmpty() && QStringView(u"*#_ ").contains(text.front()))
        text = text.sliced(1);
    static const QRegularExpression words = expression(QStringLiteral(
        "^(?:sure|certainly|of "
        "course|ok|okay|absolutely|great|gladly|here|below|the|improved|"
        "corrected|revised|rewritten|edited|polished|final|transla|rephrased|concise|output|answer|"
        "result|response)"));
    if (text.size() < 12 && !text.contains(u'\n')) {
        // One word: wait for what follows it.
        for (const char16_t *word :
             {u"sure",      u"certainly", u"of course", u"okay",     u"absolutely", u"great",
              u"gladly",    u"here",      u"below",     u"improved", u"corrected",  u"revised",
              u"rewritten", u"edited",    u"polished",  u"final",    u"translat",   u"rephrased",
              u"concise",   u"output",    u"answer",    u"result",   u"response"}) {
            if (QStringView(word).startsWith(text, Qt::CaseInsensitive))
                return true;
        }
    }
    return words.match(text).hasMatch();
}

} // namespace

std::optional<qsizetype> textStart(QStringView answer, const QString &source,
                                   const QString &delimiter, bool complete)
{
    qsizetype start = 0;
    bool announced = false;
    for (;;) {
        while (start < answer.size() && answer[start].isSpace())
            ++start;
        const QStringView rest = answer.sliced(start);
        const qsizetype before = start;
        for (const Section &section : thoughts) {
            if (source.contains(section.opening) || source.contains(section.closing))
                continue;
            if (!complete && section.opening.startsWith(rest) && rest != section.opening)
                return std::nullopt;
            const auto end = rest.indexOf(section.closing);
            // Some templates open the section themselves, so that the answer has only its end.
            const bool opened = rest.startsWith(section.opening);
            if (end >= 0 && (opened || !rest.contains(section.opening)))
                start += end + section.closing.size();
            else if (opened && !complete)
                return std::nullopt;
            else if (opened)
                return answer.size(); // thoughts without an end have no answer behind them
            if (start != before)
                break;
        }
        if (start != before)
            continue;
        if (!complete && (rest.startsWith(u'<') || rest.startsWith(u'[')) && rest.size() < 40 &&
            !rest.contains(u'>') && !rest.contains(u']') && !rest.contains(u'\n')) {
            return std::nullopt;
        }
        for (const QStringView token : {u"<|im_start|>assistant", u"<|start|>assistant"}) {
            if (!complete && token.startsWith(rest) && rest != token)
                return std::nullopt;
        }
        if (const auto length = tokenLength(rest, delimiter); length > 0) {
            start += length;
            continue;
        }
        if (!announced) {
            if (const auto length = announcementLength(rest, source); length > 0) {
                announced = true;
                start += length;
                continue;
            }
            if (!complete && (rest.isEmpty() || (mayBegin(rest) && rest.size() < maxAnnouncement &&
                                                 !rest.contains(u'\n') && !rest.contains(u'.')))) {
                return std::nullopt;
            }
        }
        return start;
    }
}

Wrapping wrappingOf(QStringView text, const QString &source)
{
    const QStringView fence = u"```";
    if (text.startsWith(fence) && !source.contains(fence)) {
        const auto lineEnd = text.indexOf(u'\n');
        // The first line may name the language of the "code".
        if (lineEnd >= 0 && !text.sliced(3, lineEnd - 3).trimmed().contains(u' '))
            return {lineEnd + 1, fence.toString()};
        return {};
    }
    static constexpr QStringView quotes[] = {u"\"\"", u"\u201c\u201d", u"\u00ab\u00bb",
                                             u"\u201e\u201c"};
    const QStringView begun = QStringView(source).trimmed();
    for (const QStringView pair : quotes) {
        if (text.startsWith(pair[0]) && !begun.startsWith(pair[0]) && !begun.endsWith(pair[1]))
            return {1, QString(pair[1])};
    }
    return {};
}
