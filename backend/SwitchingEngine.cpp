// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/SwitchingEngine.h"

#include "backend/engine/CommonCommands.h"
#include "backend/model/ModelEngine.h"
#include "backend/model/ModelFinder.h"
#include "commands/Catalogue.h"

namespace
{

QString settingsAnswer(const std::optional<ModelSettings> &model,
                       const Configuration &configuration, const QString &path)
{
    QString text;
    if (model && configuration.model) {
        text = QStringLiteral("Quillet writes with the language model \"%1\" at %2.")
                   .arg(model->name.isEmpty() ? QStringLiteral("default") : model->name,
                        model->server());
    } else if (model) {
        text = QStringLiteral("Quillet writes with the language model \"%1\" of the Ollama that "
                              "runs on this computer.")
                   .arg(model->name);
    } else {
        text = QStringLiteral("Quillet writes offline: your text stays on this computer. "
                              "With a language model it can do more.");
    }
    for (const QString &problem : configuration.problems)
        text += QStringLiteral("\n\n⚠️ ") + problem;
    text += QStringLiteral("\n\nTo change it, edit %1:\n\n"
                           "[model]\n"
                           "url = http://127.0.0.1:11434/v1\n"
                           "name = llama3.1\n"
                           "# key = …, if the server asks for one\n\n"
                           "It holds from the next command on. Without a url, an Ollama that runs "
                           "on this computer is used; \"find-ollama = false\" turns that off.")
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
            later([this, text] { m_done({200, text}); });
        } else if (configuration.findServer) {
            engine.m_finder.find(configuration.defaults, &m_context,
                                 [this](const std::optional<ModelSettings> &found) {
                                     m_found = found.has_value();
                                     answer(found);
                                 });
        } else {
            later([this, model = configuration.model] { answer(model); });
        }
    }

private:
    template <class Function> void later(Function function)
    {
        QMetaObject::invokeMethod(&m_context, std::move(function), Qt::QueuedConnection);
    }

    void answer(const std::optional<ModelSettings> &model)
    {
        if (m_request.command == u"settings") {
            m_done({200, settingsAnswer(model, m_engine.m_configuration.current(),
                                        m_engine.m_configuration.path())});
        } else if (model) {
            m_job = m_engine.m_model.answer(*model, m_request,
                                            [this](const ChatResult &result) { take(result); });
        } else {
            m_job = m_engine.m_offline.answer(m_request, m_done);
        }
    }

    void take(const ChatResult &result)
    {
        // Nobody asked for a server that was merely found; without it all is as before.
        if (result.unreachable && m_found) {
            m_engine.m_finder.forget();
            later([this] { answer(std::nullopt); });
            return;
        }
        m_done({result.status, result.text});
    }

    SwitchingEngine &m_engine;
    EngineRequest m_request;
    Done m_done;
    bool m_found = false;
    std::unique_ptr<PendingWork> m_job;
    QObject m_context;
};

SwitchingEngine::SwitchingEngine(ConfigurationFile &configuration, ModelFinder &finder,
                                 ModelEngine &model, Engine &offline)
    : m_configuration(configuration)
    , m_finder(finder)
    , m_model(model)
    , m_offline(offline)
{
}

std::unique_ptr<PendingWork> SwitchingEngine::answer(const EngineRequest &request, Done done)
{
    return std::make_unique<Job>(*this, request, std::move(done));
}
