// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/ModelEngine.h"

#include "backend/model/AnswerCleaner.h"
#include "backend/model/MeaningGuard.h"
#include "backend/model/Prompts.h"
#include "backend/model/TextSplitter.h"
#include "backend/process/ProgramLog.h"
#include "commands/Catalogue.h"

#include <QTimer>

#include <algorithm>

namespace
{

/// What the prompt around a text takes, on the safe side.
constexpr int promptTokens = 850;
/// An answer gets this much however long the text is.
constexpr int minAnswerTokens = 256;
/// What a correction may change of a text, and of one with few words.
constexpr double maxCorrected = 0.45;
constexpr int fewWords = 8;
constexpr double maxCorrectedOfFew = 0.75;
/// An answer with emoji is the text itself but for them.
constexpr double maxChangedByEmoji = 0.05;

/// Why an answer to a command that may change little is not used; empty when it is.
QString excessOf(const QString &command, const QString &text, const QString &answer)
{
    const double changed = changedShare(text, withoutEmoji(answer));
    const bool isShort = text.count(u' ') < fewWords;
    if (command == u"check-grammar" && changed > (isShort ? maxCorrectedOfFew : maxCorrected)) {
        return QStringLiteral(
            "The language model rewrote the text instead of correcting it, so its "
            "answer is not used. Try again, or with another model.");
    }
    if (command == u"emojify" && changed > maxChangedByEmoji) {
        return QStringLiteral(
            "The language model changed the words instead of adding emoji, so its "
            "answer is not used. Try again, or with another model.");
    }
    return {};
}

/// What a person should look at before using a rewriting; empty when nothing is missing.
QString remarkOn(const QString &command, const QString &text, const QString &answer)
{
    constexpr qsizetype maxNamed = 5;
    const auto kind = commandKind(command);
    if (kind == CommandKind::Translate || kind == CommandKind::Reply)
        return {};
    const QStringList lost = lostFacts(text, answer);
    if (lost.isEmpty())
        return {};
    QString list = QStringList(lost.first(std::min(maxNamed, lost.size()))).join(u", ");
    if (lost.size() > maxNamed)
        list += QStringLiteral(" and %1 more").arg(lost.size() - maxNamed);
    return QStringLiteral("Not in the new text as it was: %1.").arg(list);
}

bool isWorthRetrying(int httpStatus)
{
    return httpStatus == 429 || (httpStatus >= 500 && httpStatus != 501);
}

} // namespace

/// One command on one text, part by part.
class ModelEngine::Job : public PendingWork
{
public:
    Job(ModelEngine &engine, const ModelSettings &settings, const EngineRequest &request, Done done)
        : m_engine(engine)
        , m_settings(settings)
        , m_request(request)
        , m_done(std::move(done))
    {
        const int room =
            int((settings.window - promptTokens) / (1 + expectedGrowth(request.command)));
        // A message is answered once, not part by part.
        m_parts = commandKind(request.command) == CommandKind::Reply
                      ? QList<TextPart>{{shortened(request.text, room), true}}
                      : splitText(request.text, room);
        m_wait.setSingleShot(true);
        QObject::connect(&m_wait, &QTimer::timeout, &m_wait, [this] { askNext(); });
        later();
    }

private:
    void askNext()
    {
        QString between;
        while (m_index < m_parts.size() && !m_parts[m_index].forModel)
            between += m_parts[m_index++].text;
        m_result += between;
        if (m_index == m_parts.size()) {
            finish({200, m_result, {}, false});
            return;
        }
        tell({between, false});
        const QString text = m_parts[m_index].text;
        m_delimiter = makeDelimiter(text);
        ChatPrompt prompt = makePrompt(m_request.command, text, m_delimiter, m_request.instruction);
        prompt.plain = m_engine.m_plainServers.contains(m_settings.server());
        prompt.maxTokens =
            std::max(minAnswerTokens, m_settings.window - promptTokens - estimatedTokens(text));
        m_stream.emplace(text, m_delimiter);
        if (!m_told.isEmpty()) // of a try that failed
            tell({m_result, true});
        m_told.clear();
        m_completion = std::make_unique<ChatCompletion>(
            m_engine.m_pool, m_settings, prompt, text,
            [this](const QString &piece) {
                const QString added = m_stream->feed(piece);
                m_told += added;
                tell({added, false});
            },
            [this, plain = prompt.plain](const ChatResult &result) { take(result, plain); });
    }

    void take(ChatResult result, bool plain)
    {
        const QString &text = m_parts[m_index].text;
        if (result.status == 200) {
            result.text = cleanedAnswer(result.text, text, m_delimiter);
            result = checked(result, text);
        }
        if (result.status != 200) {
            logLine(QStringLiteral("model at %1: %2").arg(m_settings.server(), result.cause));
            if (!tryAgain(result, plain))
                finish(result);
            return;
        }
        if (!result.text.startsWith(m_told)) {
            tell({m_result + result.text, true});
        } else {
            tell({result.text.sliced(m_told.size()), false});
        }
        m_told.clear();
        m_result += result.text;
        m_retries = 0;
        ++m_index;
        later();
    }

    /// The result, or a failure where the answer cannot be used.
    ChatResult checked(const ChatResult &result, const QString &text) const
    {
        if (result.text.isEmpty()) {
            return {502, QStringLiteral("The language model gave an empty answer. Try again."),
                    QStringLiteral("empty answer"), false};
        }
        if (isRefusal(result.text, text)) {
            ChatResult refused{
                502,
                QStringLiteral("The language model refused to work on this text. Try "
                               "again, or with another model."),
                QStringLiteral("refused by the model"), false};
            refused.refused = true;
            return refused;
        }
        const QString excess = excessOf(m_request.command, text, result.text);
        if (excess.isEmpty())
            return result;
        return {502, excess, QStringLiteral("answer differs more than the command may"), false};
    }

    /// Whether the part is asked for once more.
    bool tryAgain(const ChatResult &result, bool plain)
    {
        const bool isUnknownField = !plain &&
                                    (result.httpStatus == 400 || result.httpStatus == 422) &&
                                    !result.cause.contains(u"context");
        if (isUnknownField) {
            m_engine.m_plainServers.insert(m_settings.server());
            later();
            return true;
        }
        const RetryPolicy &policy = m_engine.m_retries;
        if (!isWorthRetrying(result.httpStatus) || m_retries >= policy.maxRetries ||
            result.retryAfter > policy.maxPatience) {
            return false;
        }
        const auto pause = policy.pause * (1 << m_retries++);
        m_wait.start(std::max<std::chrono::milliseconds>(pause, result.retryAfter));
        return true;
    }

    void finish(const ChatResult &result)
    {
        Result whole{result, {}};
        if (result.status == 200)
            whole.remark = remarkOn(m_request.command, m_request.text, result.text);
        m_done(whole);
    }

    void tell(const EnginePiece &piece)
    {
        if (m_request.piece && (piece.startsOver || !piece.text.isEmpty()))
            m_request.piece(piece);
    }

    /// Asks from the event loop: a completion must not be destroyed inside its
    /// own callback, nor the job end inside its constructor.
    void later() { m_wait.start(std::chrono::milliseconds(0)); }

    ModelEngine &m_engine;
    ModelSettings m_settings;
    EngineRequest m_request;
    Done m_done;
    QList<TextPart> m_parts;
    qsizetype m_index = 0;
    QString m_result;
    QString m_delimiter;
    std::optional<AnswerStream> m_stream;
    /// What was reported of the part that is being worked on.
    QString m_told;
    int m_retries = 0;
    std::unique_ptr<ChatCompletion> m_completion;
    QTimer m_wait;
};

std::unique_ptr<PendingWork> ModelEngine::answer(const ModelSettings &settings,
                                                 const EngineRequest &request, Done done)
{
    return std::make_unique<Job>(*this, settings, request, std::move(done));
}
