// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/FloatingPopup.h"

#include "commands/Catalogue.h"
#include "quillet/popup/PillButton.h"
#include "quillet/popup/ResultTextView.h"
#include "quillet/writing/WritingService.h"
#include "support/CapturedOutput.h"
#include "support/FakePlatform.h"
#include "support/FakeServices.h"
#include "support/HttpStub.h"
#include "support/WaitUntil.h"

#include <QScrollArea>

#include <gtest/gtest.h>

namespace
{

class Input : public FloatingPopupDelegate
{
public:
    QString text = QStringLiteral("my text");
    QStringList written;
    void getText(std::function<void(const QString &)> completion) override { completion(text); }
    void setText(const QString &newText) override { written.append(newText); }
};

class FloatingPopupTest : public testing::Test
{
protected:
    FloatingPopupTest()
    {
        endpoint.url = server.url("/generate");
        server.answer = [](const QByteArray &) { return HttpStub::reply("better text"); };
    }

    void open() { popup.show(QRectF(300, 400, 25, 25)); }

    PillButton *button(const char *identifier)
    {
        if (!popup.popupWindow())
            return nullptr;
        for (PillButton *each : popup.popupWindow()->findChildren<PillButton *>())
            if (each->accessibleName() == QLatin1StringView(identifier) &&
                each->isVisibleTo(popup.popupWindow()))
                return each;
        return nullptr;
    }

    void click(const char *identifier)
    {
        PillButton *found = button(identifier);
        ASSERT_TRUE(found) << identifier;
        found->click();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    ResultTextView *result() { return popup.popupWindow()->findChild<ResultTextView *>(); }

    bool showsResult(const char *text)
    {
        return waitUntil([&] { return result() && result()->string() == QLatin1StringView(text); });
    }

    HttpStub server;
    fake::Endpoint endpoint;
    BackendService backend;
    WritingService writing{endpoint, backend};
    fake::Tracker tracker;
    fake::Workspace workspace;
    Input input;
    FloatingPopup popup{&input, {workspace, writing, tracker}};
};

} // namespace

TEST_F(FloatingPopupTest, TogglesAndRemembersTheTool)
{
    open();
    ASSERT_TRUE(popup.popupWindow());
    EXPECT_EQ(workspace.panels, QList<QWidget *>{popup.popupWindow()});
    EXPECT_EQ(popup.popupWindow()->size(), QSize(370, 250));
    EXPECT_EQ(button("improve")->look().background, QColor(108, 61, 245));
    EXPECT_EQ(button("reply")->look().background, QColor(Qt::white));
    EXPECT_TRUE(button("quick-improve"));

    click("translate");
    EXPECT_FALSE(button("quick-improve"));
    EXPECT_EQ(button("improve")->look().background, QColor(Qt::white));
    open();
    EXPECT_FALSE(popup.popupWindow());
    open();
    EXPECT_TRUE(button("english"));
    EXPECT_EQ(button("translate")->look().background, QColor(108, 61, 245));
    EXPECT_TRUE(tracker.events.isEmpty());
    EXPECT_TRUE(server.requests.isEmpty());
}

TEST_F(FloatingPopupTest, EveryOptionOfTheCatalogueHasItsButton)
{
    open();
    int count = 0;
    for (const QString &tool : CommandCatalogue::tools()) {
        click(tool.toLatin1().constData());
        for (const QString &option : CommandCatalogue::toolOptions().value(tool)) {
            ASSERT_TRUE(button(option.toLatin1().constData())) << option.toStdString();
            ++count;
        }
    }
    EXPECT_EQ(count, 7 + 8 + 1 + 23 + 4);
}

TEST_F(FloatingPopupTest, RunsACommandAndAppliesTheEditedResult)
{
    open();
    click("tone-changer");
    click("friendly");
    EXPECT_FALSE(button("tone-changer")) << "the tools give way to the result";
    EXPECT_EQ(result()->string(), QString());
    ASSERT_TRUE(showsResult("better text"));
    EXPECT_TRUE(
        server.requests.first().startsWith("GET /generate?command=friendly&text=my%20text "));

    result()->insertPlainText(QStringLiteral("even "));
    click("apply");
    EXPECT_FALSE(popup.popupWindow());
    EXPECT_TRUE(input.written.isEmpty()) << "written after the popup is closed";
    ASSERT_TRUE(waitUntil([&] { return !input.written.isEmpty(); }));
    EXPECT_EQ(input.written, QStringList{QStringLiteral("even better text")});
    EXPECT_EQ(tracker.events,
              (QStringList{QStringLiteral("Execute command=friendly"), QStringLiteral("Apply")}));
}

TEST_F(FloatingPopupTest, ReloadReadsTheInputAgainAndCancelGoesBack)
{
    open();
    click("check-grammar");
    ASSERT_TRUE(showsResult("better text"));
    input.text = QStringLiteral("newer");
    server.answer = [](const QByteArray &) { return HttpStub::reply("newest"); };
    click("reload");
    ASSERT_TRUE(showsResult("newest"));
    EXPECT_TRUE(server.requests.last().contains("text=newer "));
    EXPECT_EQ(tracker.events.size(), 2);

    click("cancel");
    EXPECT_FALSE(result());
    EXPECT_TRUE(button("improve"));
    EXPECT_TRUE(button("check-grammar"));
    EXPECT_TRUE(input.written.isEmpty());
}

TEST_F(FloatingPopupTest, AFailureOnlyReachesTheLog)
{
    endpoint.url.clear();
    open();
    EXPECT_EQ(capturedLines([this] { click("concise"); }),
              QStringList{QStringLiteral("Error: no backend")});
    EXPECT_EQ(result()->string(), QString());

    endpoint.url = QStringLiteral("http://not a url");
    EXPECT_EQ(capturedLines([this] { click("reload"); }),
              QStringList{QStringLiteral("Error: invalidURL")});
}

TEST_F(FloatingPopupTest, SurvivesWhatGoesAwayMeanwhile)
{
    auto gone = std::make_unique<Input>();
    auto shortLived = std::make_unique<FloatingPopup>(
        gone.get(), FloatingPopup::Collaborators{workspace, writing, tracker});
    shortLived->show(QRectF(300, 400, 25, 25));
    gone.reset();
    shortLived->showResults(QStringLiteral("witty"));
    ASSERT_TRUE(waitUntil([&] { return !server.requests.isEmpty(); }));
    EXPECT_TRUE(server.requests.first().contains("text= ")) << "no delegate, no text";

    shortLived->showResults(QStringLiteral("witty"));
    shortLived.reset();
    ASSERT_TRUE(waitUntil([&] { return server.requests.size() == 2; }));

    open();
    click("expand");
    ASSERT_TRUE(showsResult("better text")) << "an answer after the first popup's end is harmless";
}

TEST_F(FloatingPopupTest, TakesTheKeyboardOnlyToEditTheResult)
{
    open();
    click("expand");
    ASSERT_TRUE(showsResult("better text"));
    EXPECT_EQ(workspace.focusRequests, 0);
    Q_EMIT result()->keyboardWanted();
    EXPECT_EQ(workspace.focusRequests, 1);
    popup.close();
    EXPECT_EQ(workspace.focusRestored, 1);
    open();
    popup.close();
    EXPECT_EQ(workspace.focusRestored, 1) << "nothing to give back";
}
