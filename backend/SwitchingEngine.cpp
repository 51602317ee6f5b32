// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/SwitchingEngine.h"

#include "backend/ServerConsent.h"
#include "backend/engine/CommonCommands.h"
#include "backend/model/ModelEngine.h"
#include "commands/Note.h"
#include "commands/OwnCommands.h"

#include <QFileInfo>

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
        } else if (!findInstruction()) {
            later([this] {
                m_done({404, asNote(QStringLiteral("This command has no instruction any more. The "
                                                   "settings show the commands that there are."))});
            });
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

    bool isOwn() const { return OwnCommands::isOwn(m_request.command); }

    /// Looks up what a command of the user's own is to do. False: there is no such command.
    bool findInstruction()
    {
        constexpr qsizetype maxLength = 4'000;
        if (m_request.command == OwnCommands::once) {
            m_request.instruction = m_request.instruction.trimmed().left(maxLength);
            return !m_request.instruction.isEmpty();
        }
        m_request.instruction.clear();
        if (!isOwn())
            return true;
        const QFileInfo configuration(m_engine.m_configuration.path());
        const auto commands =
            OwnCommands::read(configuration.path() + QStringLiteral("/commands.ini"));
        for (const OwnCommand &command : commands) {
            if (command.identifier != m_request.command)
                continue;
            m_request.instruction = command.instruction;
            m_ownModel = command.model;
        }
        return !m_request.instruction.isEmpty();
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

    void askModel(ModelSettings model)
    {
        if (!m_ownModel.isEmpty())
            model.name = m_ownModel;
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
        if (isOwn()) {
            m_done(failure.status == 200
                       ? EngineAnswer{501, asNote(QStringLiteral(
                                               "A command of your own needs a language model: name "
                                               "one in the settings."))}
                       : EngineAnswer{failure.status, asNote(failure.text)});
            return;
        }
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
    /// The model that a command of the user's own asks for.
    QString m_ownModel;
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
