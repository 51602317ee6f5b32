// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/SwitchingEngine.h"
#include "FakeModel.h"
#include "backend/ServerConsent.h"
#include "backend/model/ModelEngine.h"
#include "backend/model/ModelFinder.h"
#include "commands/Note.h"
#include "commands/OwnCommands.h"
#include "support/WaitUntil.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

namespace
{

/// An offline engine whose answers say that they are its own.
class OfflineDouble : public Engine
{
public:
    std::unique_ptr<PendingWork> answer(const EngineRequest &request, Done done) override
    {
        QMetaObject::invokeMethod(
            &m_context,
            [done, request] {
                if (request.command == u"reply-msg-copy")
                    done({501, u"needs a language model"_qs});
                else
                    done({200, u"offline: "_qs + request.text});
            },
            Qt::QueuedConnection);
        return std::make_unique<PendingWork>();
    }

private:
    QObject m_context;
};

/// Everything behind the server, with Ollama looked for at `ollama`, whose owner is `owner`.
struct Switched {
    explicit Switched(const QUrl &ollama, ConfigurationFile::Environment environment = {},
                      unsigned owner = ::geteuid())
        : configuration(folder.filePath(u"quillet/backend.ini"_qs), std::move(environment))
        , finder(ollama)
        , found(configuration, finder, [owner](quint16) { return owner; })
        , engine(configuration, found, model, offline)
    {
    }

    EngineAnswer ask(const QString &command, const QString &text = u"abc"_qs)
    {
        std::optional<EngineAnswer> result;
        const auto job =
            engine.answer({command, text}, [&](const EngineAnswer &answer) { result = answer; });
        EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
        return result.value_or(EngineAnswer{});
    }

    FoundServer look()
    {
        std::optional<FoundServer> server;
        bool looked = false;
        QObject context;
        found.look(&context, [&](const auto &result) {
            server = result;
            looked = true;
        });
        EXPECT_TRUE(waitUntil([&] { return looked; }));
        return server.value_or(FoundServer{});
    }

    QTemporaryDir folder;
    ConfigurationFile configuration;
    ModelFinder finder;
    ServerConsent found;
    ModelEngine model{{.maxRetries = 0}};
    OfflineDouble offline;
    SwitchingEngine engine;
};

std::unique_ptr<FakeModel> ollamaDouble()
{
    return std::make_unique<FakeModel>([](QTcpSocket *socket, const FakeModel::Request &request) {
        if (request.head.startsWith("GET /api/tags ")) {
            FakeModel::status(200, R"({"models":[{"name":"nomic-embed-text:latest"},
                    {"name":"llama3.1:8b","details":{"family":"llama"}}]})")(socket, request);
        } else {
            FakeModel::json(u"by "_qs + request.body.value(u"model").toString())(socket, request);
        }
    });
}

QUrl addressOf(const FakeModel &model)
{
    return QUrl(u"http://127.0.0.1:%1"_qs.arg(model.port()));
}

TEST(SwitchingEngine, UsesAFoundServerOnlyAfterTheUserAgreed)
{
    auto ollama = ollamaDouble();
    Switched found(addressOf(*ollama), {{u"QUILLET_MODEL_KEY"_qs, u"sk-for-another"_qs}});
    EXPECT_EQ(found.ask(u"clear"_qs).text, u"offline: abc"_qs);
    EXPECT_TRUE(found.ask(u"settings"_qs).text.contains(u"until you agree"));
    EXPECT_EQ(ollama->requests().size(), 1) << "asked for its models, given no text";
    const FoundServer server = found.look();
    EXPECT_EQ(server.consent, FoundServer::Consent::Unanswered);
    EXPECT_EQ(server.model, u"llama3.1:8b"_qs);
    EXPECT_EQ(server.owner, ::geteuid());

    EXPECT_TRUE(found.found.remember(server, true));
    const EngineAnswer answer = found.ask(u"clear"_qs);
    EXPECT_EQ(answer.text, u"by llama3.1:8b"_qs);
    EXPECT_EQ(answer.writer, u"llama3.1:8b (%1)"_qs.arg(server.address));
    EXPECT_TRUE(found.ask(u"settings"_qs).text.contains(u"llama3.1:8b\" of the Ollama"));
    // The key was not given for this server.
    EXPECT_FALSE(ollama->requests().last().head.contains("sk-for-another"));

    ollama.reset();
    EXPECT_EQ(found.ask(u"clear"_qs).text, u"offline: abc"_qs);
    EXPECT_TRUE(found.ask(u"settings"_qs).text.contains(u"offline"));
}

TEST(SwitchingEngine, AsksAgainWhenAnotherUserListens)
{
    auto ollama = ollamaDouble();
    constexpr unsigned service = 990;
    constexpr unsigned stranger = 54'321;
    Switched ofService(addressOf(*ollama), {}, service);
    const FoundServer server = ofService.look();
    EXPECT_TRUE(ofService.found.remember(server, true));
    EXPECT_EQ(ofService.look().consent, FoundServer::Consent::Agreed);
    FoundServer other = server;
    other.owner = 0;
    EXPECT_TRUE(ofService.found.remember(other, true));
    EXPECT_EQ(ofService.look().consent, FoundServer::Consent::Unanswered);
    EXPECT_TRUE(ofService.found.remember(server, false));
    EXPECT_EQ(ofService.look().consent, FoundServer::Consent::Refused);
    EXPECT_EQ(ofService.ask(u"clear"_qs).text, u"offline: abc"_qs);

    Switched ofStranger(addressOf(*ollama), {}, stranger);
    ofStranger.found.remember(ofStranger.look(), true);
    EXPECT_EQ(ofStranger.look().consent, FoundServer::Consent::Foreign);
    EXPECT_EQ(ofStranger.ask(u"clear"_qs).text, u"offline: abc"_qs);

    Switched off(addressOf(*ollama), {{u"QUILLET_FIND_OLLAMA"_qs, u"no"_qs}});
    const auto asked = ollama->requests().size();
    EXPECT_EQ(off.look().address, QString());
    EXPECT_EQ(off.ask(u"clear"_qs).text, u"offline: abc"_qs);
    EXPECT_EQ(ollama->requests().size(), asked);
}

TEST(SwitchingEngine, DoesNotWaitForAServerThatIsSilent)
{
    FakeModel silent([](QTcpSocket *, const FakeModel::Request &) {});
    Switched engine(addressOf(silent));
    EXPECT_EQ(engine.ask(u"clear"_qs).text, u"offline: abc"_qs);
}

TEST(SwitchingEngine, FallsBackAndSaysSoWhenTheConfiguredModelFails)
{
    Switched engine(QUrl(), {{u"QUILLET_MODEL_URL"_qs, u"http://127.0.0.1:1"_qs}});
    const EngineAnswer answer = engine.ask(u"clear"_qs);
    EXPECT_EQ(answer.text, u"offline: abc"_qs);
    EXPECT_EQ(answer.status, 200);
    EXPECT_TRUE(answer.remark.contains(u"127.0.0.1:1 cannot be reached"))
        << qPrintable(answer.remark);
    EXPECT_EQ(answer.writer, QString());
    // Without an offline answer, the model's failure is what there is to say.
    const EngineAnswer reply = engine.ask(u"reply-msg-copy"_qs);
    EXPECT_EQ(reply.status, 502);
    EXPECT_TRUE(reply.text.startsWith(u"\u24d8 The language model at 127.0.0.1:1"))
        << qPrintable(reply.text);
    for (const QString &command : {u"share"_qs, u"rate"_qs, u"send-feedback"_qs, u"settings"_qs})
        EXPECT_TRUE(isNote(engine.ask(command).text)) << qPrintable(command);
}

} // namespace

TEST(SwitchingEngine, KnowsTheInstructionsOfTheUsersOwnCommands)
{
    FakeModel model(FakeModel::json(u"better"_qs));
    Switched with({}, {{u"QUILLET_MODEL_URL"_qs, model.url().toString()}});
    EXPECT_EQ(with.ask(u"own-rhyme"_qs).status, 404) << "no such command";
    EXPECT_TRUE(model.requests().isEmpty());
    ASSERT_TRUE(OwnCommands::write(
        with.folder.filePath(u"quillet/commands.ini"_qs),
        {{u"own-rhyme"_qs, u"Rhyme"_qs, u"Rewrite it so that it rhymes."_qs, u"poet"_qs, {}}}));
    EXPECT_EQ(with.ask(u"own-rhyme"_qs).text, u"better"_qs);
    ASSERT_EQ(model.requests().size(), 1);
    EXPECT_EQ(model.requests()[0].body.value(u"model").toString(), u"poet"_qs);
    EXPECT_TRUE(model.requests()[0].message(0).contains(u"Task: Rewrite it so that it rhymes."));
    EXPECT_EQ(model.requests()[0].text(), u"abc"_qs);

    EXPECT_TRUE(isNote(with.ask(u"own-once"_qs).text)) << "without an instruction";
    std::optional<EngineAnswer> result;
    const auto job = with.engine.answer({u"own-once"_qs, u"abc"_qs, {}, u" shout "_qs},
                                        [&](const EngineAnswer &answer) { result = answer; });
    ASSERT_TRUE(waitUntil([&] { return result.has_value(); }));
    ASSERT_EQ(model.requests().size(), 2);
    EXPECT_TRUE(model.requests()[1].message(0).contains(u"Task: shout\n"));

    Switched without(QUrl(u"http://127.0.0.1:1"_qs));
    ASSERT_TRUE(OwnCommands::write(without.folder.filePath(u"quillet/commands.ini"_qs),
                                   {{u"own-a"_qs, u"A"_qs, u"do"_qs, {}, {}}}));
    const EngineAnswer answer = without.ask(u"own-a"_qs);
    EXPECT_EQ(answer.status, 501);
    EXPECT_TRUE(isNote(answer.text));
}
