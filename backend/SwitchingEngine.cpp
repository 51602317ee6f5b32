// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/SwitchingEngine.h"

#include "backend/ServerConsent.h"
#include "backend/engine/CommonCommands.h"
#include "backend/model/ModelEngine.h"
#include "commands/Note.h"

namespace
{

QString nameOf(const ModelSettings &model)
{
    return model.name.isEmpty() ? QStringLiteral("default") : model.name;
}

/// Whose server it is, for a sentence.
QString describe(const FoundServer &server)
{
    return QStringLiteral("\"%1\" of the Ollama on this computer (%2, run by the user \"%3\")")
        .arg(server.model, server.address, server.ownerName);
}

QString settingsAnswer(const std::optional<FoundServer> &found, const Configuration &configuration,
                       const QString &path)
{
    using Consent = FoundServer::Consent;
    QString text;
    if (configuration.model) {
        text = QStringLiteral("Quillet writes with the language model \"%1\" at %2.")
                   .arg(nameOf(*configuration.model), configuration.model->server());
    } else if (found && found->consent == Consent::Agreed) {
        text = QStringLiteral("Quillet writes with the language model %1.").arg(describe(*found));
    } else {
        text = QStringLiteral("Quillet writes offline: your text stays on this computer. "
                              "With a language model it can do more.");
        if (found && found->consent == Consent::Foreign) {
            text += QStringLiteral(" The language model %1 is not used, because it belongs to "
                                   "another person.")
                        .arg(describe(*found));
        } else if (found) {
            text += QStringLiteral(" The language model %1 is not used until you agree: put "
                                   "\"found-server = %2, %3, yes\" below [model].")
                        .arg(describe(*found), found->address)
                        .arg(found->owner);
        }
    }
    for (const QString &problem : configuration.problems)
        text += QStringLiteral("\n\n⚠️ ") + problem;
    text += QStringLiteral("\n\nTo change it, edit %1:\n\n"
                           "[model]\n"
                           "url = http://127.0.0.1:11434/v1\n"
                           "name = llama3.1\n"
                           "# key = …, if the server asks for one\n\n"
                           "It holds from the next command on. Without a url, Quillet looks for an "
                           "Ollama on this computer and asks before it uses it; "
                           "\"find-ollama = false\" turns that off.")
                .arg(path);
    return text;
}

} // namespace

/// Goes from "is there a model?" to the engine that answers.
class SwitchingEngine::Job : public PendingWork
{
public:
    Job(SwitchingEngine &engine, EngineRequest request, Done done)
        : m_engine(engine)
        , m_request(std::move(request))
        , m_done(std::move(done))
    {
        const Configuration &configuration = engine.m_configuration.current();
        if (const QString text = commonCommandAnswer(m_request.command); !text.isEmpty()) {
            later([this, text] { m_done({200, asNote(text)}); });
        } else if (configuration.findServer) {
            engine.m_found.find(&m_context,
                                [this](const std::optional<FoundServer> &found,
                                       const ModelSettings &settings) { take(found, settings); });
        } else if (m_request.command == u"settings") {
            later([this] { answerSettings(std::nullopt); });
        } else if (configuration.model) {
            later([this, model = *configuration.model] { askModel(model); });
        } else {
            later([this] { askOffline({}); });
        }
    }

private:
    template <class Function> void later(Function function)
    {
        QMetaObject::invokeMethod(&m_context, std::move(function), Qt::QueuedConnection);
    }

    void take(const std::optional<FoundServer> &found, const ModelSettings &settings)
    {
        m_wasFound = true;
        if (m_request.command == u"settings")
            answerSettings(found);
        else if (found && found->consent == FoundServer::Consent::Agreed)
            askModel(settings);
        else
            askOffline({});
    }

    void answerSettings(const std::optional<FoundServer> &found)
    {
        m_done({200, asNote(settingsAnswer(found, m_engine.m_configuration.current(),
                                           m_engine.m_configuration.path()))});
    }

    void askModel(const ModelSettings &model)
    {
        m_work = m_engine.m_model.answer(
            model, m_request, [this, model](const ModelEngine::Result &result) {
                if (result.status == 200) {
                    m_done({200, result.text,
                            QStringLiteral("%1 (%2)").arg(nameOf(model), model.server()),
                            result.remark});
                    return;
                }
                if (m_wasFound && result.unreachable)
                    m_engine.m_found.forget();
                // The work that calls this must not be destroyed inside its call.
                later([this, result] { fallBack(result); });
            });
    }

    /// The offline engine's answer, and beside it why the model did not write it; where it has
    /// none, the model's failure.
    void fallBack(const ChatResult &failure)
    {
        if (failure.refused)
            m_done({failure.status, asNote(failure.text)});
        else
            askOffline(failure);
    }

    void askOffline(const ChatResult &failure)
    {
        m_work = m_engine.m_offline.answer(m_request, [this, failure](EngineAnswer answer) {
            if (answer.status != 200) {
                m_done(failure.status == 200 ? EngineAnswer{answer.status, asNote(answer.text)}
                                             : EngineAnswer{failure.status, asNote(failure.text)});
                return;
            }
            // A server that was merely found is not missed when it is gone.
            const bool isMissed = failure.status != 200 && !(m_wasFound && failure.unreachable);
            if (isMissed) {
                answer.remark = failure.text + QStringLiteral(" This text was written without it.");
            }
            m_done(answer);
        });
    }

    SwitchingEngine &m_engine;
    EngineRequest m_request;
    Done m_done;
    bool m_wasFound = false;
    std::unique_ptr<PendingWork> m_work;
    QObject m_context;
};

SwitchingEngine::SwitchingEngine(ConfigurationFile &configuration, ServerConsent &found,
                                 ModelEngine &model, Engine &offline)
    : m_configuration(configuration)
    , m_found(found)
    , m_model(model)
    , m_offline(offline)
{
}

std::unique_ptr<PendingWork> SwitchingEngine::answer(const EngineRequest &request, Done done)
{
    return std::make_unique<Job>(*this, request, std::move(done));
}
