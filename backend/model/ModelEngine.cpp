// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/model/ModelEngine.h"

#include "backend/model/AnswerCleaner.h"
#include "backend/model/Prompts.h"
#include "backend/model/TextSplitter.h"
#include "backend/process/ProgramLog.h"
#include "commands/Catalogue.h"

namespace
{

/// What the prompt around a text takes, on the safe side.
constexpr int promptTokens = 850;

class ModelJob : public PendingWork
{
public:
    ModelJob(NetworkPool &pool, const ModelSettings &settings, const EngineRequest &request,
             ModelEngine::Done done)
        : m_pool(pool)
        , m_settings(settings)
        , m_command(request.command)
        , m_done(std::move(done))
    {
        const int room = int((settings.window - promptTokens) / (1 + expectedGrowth(m_command)));
        // A message is answered once, not part by part.
        m_parts = commandKind(m_command) == CommandKind::Reply
                      ? QList<TextPart>{{shortened(request.text, room), true}}
                      : splitText(request.text, room);
        later();
    }

private:
    void askNext()
    {
        while (m_index < m_parts.size() && !m_parts[m_index].forModel)
            m_result += m_parts[m_index++].text;
        if (m_index == m_parts.size()) {
            m_done({200, m_result, {}, false});
            return;
        }
        const QString text = m_parts[m_index].text;
        const QString delimiter = makeDelimiter(text);
        m_completion = std::make_unique<ChatCompletion>(
            m_pool, m_settings, makePrompt(m_command, text, delimiter),
            [this, delimiter](const ChatResult &result) { take(result, delimiter); });
    }

    void take(ChatResult result, const QString &delimiter)
    {
        if (result.status == 200) {
            result.text = cleanedAnswer(result.text, m_parts[m_index].text, delimiter);
            if (result.text.isEmpty()) {
                result = {502,
                          QStringLiteral("The language model gave an empty answer. Try again."),
                          QStringLiteral("empty answer"), false};
            }
        }
        if (result.status != 200) {
            logLine(QStringLiteral("model at %1: %2").arg(m_settings.server(), result.cause));
            m_done(result);
            return;
        }
        m_result += result.text;
        ++m_index;
        later();
    }

    /// Asks from the event loop: a completion must not be destroyed inside its
    /// own callback, nor the job end inside its constructor.
    void later()
    {
        QMetaObject::invokeMethod(
            &m_context, [this] { askNext(); }, Qt::QueuedConnection);
    }

    NetworkPool &m_pool;
    ModelSettings m_settings;
    QString m_command;
    ModelEngine::Done m_done;
    QList<TextPart> m_parts;
    qsizetype m_index = 0;
    QString m_result;
    std::unique_ptr<ChatCompletion> m_completion;
    QObject m_context;
};

} // namespace

std::unique_ptr<PendingWork> ModelEngine::answer(const ModelSettings &settings,
                                                 const EngineRequest &request, Done done)
{
    return std::make_unique<ModelJob>(m_pool, settings, request, std::move(done));
}
