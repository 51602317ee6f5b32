// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/writing/WritingService.h"

#include "BackendProcess.h"
#include "FakeModel.h"
#include "commands/Note.h"
#include "quillet/writing/WritingEndpoint.h"
#include "support/WaitUntil.h"

#include <QPointer>
#include <gtest/gtest.h>

namespace
{

/// The client, a real backend, and a model that the test plays.
class WritingServiceTest : public testing::Test
{
protected:
    std::unique_ptr<BackendRequest> write(const QString &text,
                                          const QString &command = QStringLiteral("elevate"))
    {
        return service.writeAsItComes(
            command, text,
            [this](const AnswerPiece &piece) {
                shown = piece.startsOver ? piece.text : shown + piece.text;
                withdrawals += piece.startsOver ? 1 : 0;
            },
            [this](const BackendService::AnswerResult &r) {
                EXPECT_FALSE(result);
                result = r;
            });
    }

    BackendAnswer answer()
    {
        EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
        const auto *given = result ? std::get_if<BackendAnswer>(&*result) : nullptr;
        EXPECT_TRUE(given);
        return given ? *given : BackendAnswer{};
    }

    /// Sends a piece of the model's answer to the request that came last.
    void speak(const QByteArray &bytes)
    {
        ASSERT_TRUE(waitUntil([&] { return !socket.isNull(); }));
        socket->write(bytes);
    }

    QPointer<QTcpSocket> socket;
    FakeModel model{[this](QTcpSocket *s, const FakeModel::Request &) {
        socket = s;
        s->write(FakeModel::streamHead());
    }};
    BackendProcess process{{{QStringLiteral("QUILLET_MODEL_URL"),
                             QStringLiteral("http://127.0.0.1:%1").arg(model.port())}}};
    BackendService backend;
    FixedEndpoint endpoint{QStringLiteral("http://127.0.0.1:%1/generate").arg(process.port())};
    WritingService service{endpoint, backend};
    QString shown;
    int withdrawals = 0;
    std::optional<BackendService::AnswerResult> result;
};

TEST_F(WritingServiceTest, ShowsTheAnswerAsItIsWritten)
{
    const auto request = write(QStringLiteral("some text"));
    speak(FakeModel::event(QStringLiteral("Fine ")) + FakeModel::event(QStringLiteral("wörds ")));
    EXPECT_TRUE(waitUntil([&] { return shown == u"Fine wörds"; })) << qPrintable(shown);
    EXPECT_FALSE(result);
    speak(FakeModel::event(QStringLiteral("here.\n\nLet me know if")) + "data: [DONE]\n\n");
    const BackendAnswer whole = answer();
    EXPECT_EQ(whole.text, QStringLiteral("Fine wörds here."));
    // What turned out to be no part of the answer was withdrawn.
    EXPECT_EQ(shown, whole.text);
    EXPECT_EQ(withdrawals, 1);
    EXPECT_EQ(whole.writer, QStringLiteral("default (127.0.0.1:%1)").arg(model.port()));
    EXPECT_EQ(whole.remark, QString());
}

TEST_F(WritingServiceTest, LeavingEndsTheModelsWork)
{
    auto request = write(QStringLiteral("some text"));
    speak(FakeModel::event(QStringLiteral("Fine words")));
    EXPECT_TRUE(waitUntil([&] { return !shown.isEmpty(); }));
    request.reset();
    EXPECT_TRUE(waitUntil([&] { return model.openConnections() == 0; }));
    EXPECT_FALSE(result);

    // Also while the request has not been sent yet.
    write(QStringLiteral("another text")).reset();
    QCoreApplication::processEvents();
    EXPECT_EQ(model.requests().size(), 1);
}

TEST_F(WritingServiceTest, KeepsAWholeTextFromTheOfflineEngineWhenTheModelBreaksOff)
{
    const auto request =
        write(QStringLiteral("A text without a mistake."), QStringLiteral("check-grammar"));
    speak(FakeModel::event(QStringLiteral("Half of an answer")));
    EXPECT_TRUE(waitUntil([&] { return !shown.isEmpty(); }));
    socket->disconnectFromHost();
    const BackendAnswer whole = answer();
    EXPECT_EQ(whole.text, QStringLiteral("A text without a mistake."));
    EXPECT_EQ(shown, whole.text);
    EXPECT_TRUE(whole.remark.contains(u"broke off")) << qPrintable(whole.remark);
    EXPECT_EQ(whole.writer, QString());
}

TEST_F(WritingServiceTest, FailsWithTheReasonWhenThereIsNoBackend)
{
    FixedEndpoint none{QString()};
    WritingService without(none, backend);
    std::optional<BackendService::AnswerResult> failed;
    const auto request =
        without.writeAsItComes(QStringLiteral("clear"), QStringLiteral("x"), {},
                               [&](const BackendService::AnswerResult &r) { failed = r; });
    EXPECT_FALSE(failed) << "called back from the event loop";
    EXPECT_TRUE(waitUntil([&] { return failed.has_value(); }));
    EXPECT_TRUE(std::holds_alternative<BackendFailure>(*failed));
}

} // namespace
