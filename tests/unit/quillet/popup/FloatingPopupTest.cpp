// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/FloatingPopup.h"

#include "quillet/popup/ChangesView.h"
#include "quillet/popup/InstructionField.h"
#include "quillet/popup/PopupPanel.h"
#include "quillet/popup/PopupStyle.h"
#include "quillet/popup/ProgressLine.h"
#include "quillet/popup/ResultArea.h"
#include "quillet/popup/ResultTextView.h"
#include "quillet/popup/ToolRow.h"
#include "quillet/widgets/PillButton.h"
#include "quillet/writing/WritingService.h"
#include "support/CapturedOutput.h"
#include "support/FakePlatform.h"
#include "support/FakeServices.h"
#include "support/HttpStub.h"
#include "support/WaitUntil.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTextCharFormat>

#include <gtest/gtest.h>

#include <cmath>

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
        QObject::connect(&popup, &FloatingPopup::failed, &popup,
                         [this](const QString &sentence) { told.append(sentence); });
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

    ResultArea *area() { return popup.popupWindow()->findChild<ResultArea *>(); }
    ResultTextView *result() { return popup.popupWindow()->findChild<ResultTextView *>(); }

    bool showsText(const char *text)
    {
        return waitUntil([&] { return result() && result()->string() == QString::fromUtf8(text); });
    }

    // Also waits for the answer's end, which may come after its text.
    bool showsAnswer(const char *text)
    {
        return showsText(text) && waitUntil([this] {
                   return area()->progressLine()->state() == ProgressLine::State::Idle;
               });
    }

    HttpStub server;
    fake::Endpoint endpoint;
    BackendService backend;
    WritingService writing{endpoint, backend};
    fake::Tracker tracker;
    fake::Workspace workspace;
    Input input;
    QStringList told;
    QList<OwnCommand> ownCommands;
    FloatingPopup popup{&input, {workspace, writing, tracker, [this] { return ownCommands; }}};
};

} // namespace

TEST_F(FloatingPopupTest, TogglesAndRemembersTheTool)
{
    open();
    ASSERT_TRUE(popup.popupWindow());
    EXPECT_EQ(workspace.panels, QList<QWidget *>{popup.popupWindow()});
    EXPECT_EQ(popup.popupWindow()->size(), QSize(370, 250));
    EXPECT_EQ(button("improve")->mapTo(popup.popupWindow(), QPoint(0, 0)), QPoint(10, 8));
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

TEST_F(FloatingPopupTest, RunsACommandAndAppliesTheEditedResult)
{
    open();
    click("tone-changer");
    click("friendly");
    EXPECT_FALSE(button("tone-changer")) << "the tools give way to the result";
    EXPECT_EQ(result()->string(), QString());
    ASSERT_TRUE(showsAnswer("better text"));
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
    ASSERT_TRUE(showsAnswer("better text"));
    input.text = QStringLiteral("newer");
    server.answer = [](const QByteArray &) { return HttpStub::reply("newest"); };
    click("reload");
    ASSERT_TRUE(showsAnswer("newest"));
    EXPECT_TRUE(server.requests.last().contains("text=newer "));
    EXPECT_EQ(tracker.events.size(), 2);

    click("cancel");
    EXPECT_FALSE(result());
    EXPECT_TRUE(button("improve"));
    EXPECT_TRUE(button("check-grammar"));
    EXPECT_TRUE(input.written.isEmpty());
}

TEST_F(FloatingPopupTest, AFailureIsLoggedAndToldWithoutText)
{
    endpoint.url.clear();
    open();
    const auto linesOf = [this](const char *identifier) {
        return capturedLines([&] {
            told.clear();
            click(identifier);
            EXPECT_TRUE(waitUntil([this] { return !told.isEmpty(); }));
        });
    };
    EXPECT_EQ(linesOf("concise"), QStringList{QStringLiteral("Error: no backend")});
    EXPECT_EQ(result()->string(), QString());
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(area()->toolTip(), told.first());
    EXPECT_EQ(result()->accessibleDescription(), told.first());
    EXPECT_EQ(area()->progressLine()->state(), ProgressLine::State::Stopped);

    endpoint.url = QStringLiteral("http://not a url");
    EXPECT_EQ(linesOf("reload"), QStringList{QStringLiteral("Error: invalidURL")});

    endpoint.url = server.url("/generate");
    click("reload");
    ASSERT_TRUE(showsAnswer("better text"));
    EXPECT_EQ(area()->toolTip(), QString()) << "the answer takes the failure back";
    EXPECT_EQ(area()->progressLine()->state(), ProgressLine::State::Idle);
}

TEST_F(FloatingPopupTest, ALineMovesWhileARequestRuns)
{
    HttpStub silent;
    silent.pauseAccepting();
    endpoint.url = silent.url("/generate");
    open();
    click("expand");
    EXPECT_FALSE(area()->progressLine()->isMoving()) << "not for a quick answer";
    EXPECT_TRUE(waitUntil([this] { return area()->progressLine()->isMoving(); }));
    click("cancel");
}

TEST_F(FloatingPopupTest, WhatItShowsStandsOutFromItsGroundInEveryTheme)
{
    const QPalette before = QApplication::palette();
    const auto luminance = [](const QColor &color) {
        const auto linear = [](float part) {
            return part <= 0.04045F ? part / 12.92F : std::pow((part + 0.055F) / 1.055F, 2.4F);
        };
        return 0.2126F * linear(color.redF()) + 0.7152F * linear(color.greenF()) +
               0.0722F * linear(color.blueF());
    };
    const auto contrast = [&](const QColor &one, const QColor &other) {
        const auto [low, high] = std::minmax({luminance(one), luminance(other)});
        return (high + 0.05F) / (low + 0.05F);
    };
    for (const QColor &ground : {QColor(0xEF, 0xEF, 0xEF), QColor(0x35, 0x35, 0x35)}) {
        const QPalette theme(ground, ground);
        QApplication::setPalette(theme);
        const QColor base = QApplication::palette().color(QPalette::Base);
        const QString bar = PopupStyle::thinScrollBar(theme);
        const QColor handle(bar.sliced(bar.indexOf(u'#'), 7));
        EXPECT_GE(contrast(handle, ground), 3) << handle.name().toStdString();
        EXPECT_GE(contrast(PopupStyle::accentOn(theme), base), 3);
        EXPECT_GE(contrast(PopupStyle::goneColor(theme), base), 4.5F);
        const QTextCharFormat change = PopupStyle::changeFormat(theme);
        EXPECT_GE(contrast(theme.color(QPalette::Text), change.background().color()), 4.5F);

        endpoint.url.clear();
        open();
        click("concise");
        ASSERT_TRUE(waitUntil(
            [this] { return area()->progressLine()->state() == ProgressLine::State::Stopped; }));
        const QImage failed = area()->grab().toImage();
        EXPECT_GE(contrast(failed.pixelColor(failed.width() / 2, 0), base), 3);
        popup.close();
    }
    QApplication::setPalette(before);
}

TEST_F(FloatingPopupTest, AnEmptyInputIsToldAtOnceAndSentAllTheSame)
{
    input.text = QStringLiteral(" \n");
    open();
    click("expand");
    EXPECT_EQ(told.size(), 1);
    EXPECT_EQ(area()->progressLine()->state(), ProgressLine::State::Stopped);
    ASSERT_TRUE(showsAnswer("better text"));
    EXPECT_TRUE(server.requests.first().contains("text=%20%0A "));
    click("cancel");
    click("more");
    click("rate");
    ASSERT_TRUE(showsAnswer("better text"));
    EXPECT_EQ(told.size(), 1) << "not where the command is not about a text";
}

TEST_F(FloatingPopupTest, ApplyNeverPutsNothingInThePlaceOfTheText)
{
    const auto applied = [this] {
        click("apply");
        QCoreApplication::processEvents();
        EXPECT_FALSE(popup.popupWindow());
        return std::exchange(input.written, {});
    };
    endpoint.url.clear();
    open();
    click("expand");
    EXPECT_EQ(applied(), QStringList()) << "there was no answer";
    open();
    click("expand");
    ASSERT_TRUE(waitUntil([this] { return !told.isEmpty(); }));
    result()->insertPlainText(QStringLiteral("typed instead"));
    EXPECT_EQ(applied(), QStringList{QStringLiteral("typed instead")});

    endpoint.url = server.url("/generate");
    server.answer = [](const QByteArray &) { return HttpStub::reply(""); };
    open();
    click("expand");
    ASSERT_TRUE(
        waitUntil([this] { return area()->progressLine()->state() == ProgressLine::State::Idle; }));
    EXPECT_EQ(applied(), QStringList()) << "the answer was empty";

    server.answer = [](const QByteArray &) { return HttpStub::reply("answer"); };
    open();
    click("expand");
    ASSERT_TRUE(showsAnswer("answer"));
    result()->selectAll();
    result()->textCursor().removeSelectedText();
    EXPECT_EQ(applied(), QStringList{QString()}) << "the user has emptied it";
    EXPECT_EQ(tracker.events.count(QStringLiteral("Apply")), 2) << "only what is written";
}

TEST_F(FloatingPopupTest, AnAnswerGrowsAndApplyWaitsForItsEnd)
{
    // A server that sends the beginning and then waits.
    QTcpServer slow;
    slow.listen(QHostAddress::LocalHost);
    QTcpSocket *connection = nullptr;
    QObject::connect(&slow, &QTcpServer::newConnection, &slow, [&] {
        connection = slow.nextPendingConnection();
        QObject::connect(connection, &QTcpSocket::readyRead, connection, [&] {
            connection->readAll();
            connection->write("HTTP/1.1 200 OK\r\nContent-Length: 11\r\n\r\nhello ");
        });
    });
    endpoint.url = QStringLiteral("http://127.0.0.1:%1/generate").arg(slow.serverPort());
    open();
    click("expand");
    ASSERT_TRUE(showsText("hello "));
    click("apply");
    EXPECT_TRUE(popup.popupWindow()) << "a part is not written";
    connection->write("world");
    ASSERT_TRUE(waitUntil([this] { return !input.written.isEmpty(); }));
    EXPECT_EQ(input.written, QStringList{QStringLiteral("hello world")});
    EXPECT_FALSE(popup.popupWindow());

    open();
    click("expand");
    ASSERT_TRUE(showsText("hello "));
    click("cancel");
    EXPECT_TRUE(waitUntil([&] { return connection->state() != QTcpSocket::ConnectedState; }))
        << "leaving ends the backend's work";
}

TEST_F(FloatingPopupTest, ANoteOfTheBackendIsShownAndNeverWritten)
{
    server.answer = [](const QByteArray &) { return HttpStub::reply("ⓘ It needs a model."); };
    open();
    click("expand");
    ASSERT_TRUE(showsAnswer("ⓘ It needs a model."));
    EXPECT_TRUE(result()->isReadOnly());
    click("apply");
    QCoreApplication::processEvents();
    EXPECT_FALSE(popup.popupWindow());
    EXPECT_TRUE(input.written.isEmpty());
    EXPECT_FALSE(tracker.events.contains(QStringLiteral("Apply")));

    server.answer = [](const QByteArray &) { return HttpStub::reply("ⓘno note"); };
    open();
    click("expand");
    ASSERT_TRUE(showsAnswer("ⓘno note"));
    EXPECT_EQ(area()->textToApply(), QStringLiteral("ⓘno note"));
}

TEST_F(FloatingPopupTest, ShowsWhatHasChangedAndTakesSingleChangesBack)
{
    input.text = QStringLiteral("this are my first try , i has it");
    server.answer = [](const QByteArray &) {
        return HttpStub::reply("this is my first try, I has it");
    };
    open();
    click("check-grammar");
    ASSERT_TRUE(showsAnswer("this is my first try, I has it"));
    EXPECT_EQ(result()->extraSelections().size(), 2) << "tinted words";
    EXPECT_FALSE(area()->showsChanges());
    area()->setShowsChanges(true);
    ChangesView *changes = area()->changesView();
    EXPECT_EQ(changes->toPlainText(), QStringLiteral("this areis my first try , iI has it"));
    QTextCursor gone(changes->document());
    gone.setPosition(6);
    EXPECT_TRUE(gone.charFormat().fontStrikeOut());
    gone.setPosition(9);
    EXPECT_FALSE(gone.charFormat().fontStrikeOut());

    QTextCursor place(changes->document());
    place.setPosition(7);
    const QPointF point = changes->cursorRect(place).center();
    QMouseEvent release(QEvent::MouseButtonRelease, point, point, Qt::LeftButton, Qt::NoButton,
                        Qt::NoModifier);
    QCoreApplication::sendEvent(changes->viewport(), &release);
    EXPECT_EQ(area()->textToApply(), QStringLiteral("this are my first try, I has it"));
    EXPECT_FALSE(changes->toPlainText().contains(QStringLiteral("areis")));
    area()->setShowsChanges(false);
    EXPECT_EQ(result()->string(), QStringLiteral("this are my first try, I has it"));
}

TEST_F(FloatingPopupTest, ATranslationIsNotTintedAllOver)
{
    input.text = QStringLiteral("good morning to all of you");
    server.answer = [](const QByteArray &) { return HttpStub::reply("buenos dias a todos"); };
    open();
    click("translate");
    click("spanish");
    ASSERT_TRUE(showsAnswer("buenos dias a todos"));
    EXPECT_TRUE(result()->extraSelections().isEmpty());
}

TEST(ResultArea, AGrowingAnswerIsWrittenOnlyWhenItIsComplete)
{
    ResultArea area(QStringLiteral("expand"), nullptr);
    area.resize(346, 166);
    area.show();
    area.appendPiece(QStringLiteral("one "));
    area.appendPiece(QStringLiteral("two"));
    EXPECT_EQ(area.textView()->string(), QStringLiteral("one two"));
    EXPECT_FALSE(area.textToApply());
    area.showFailure(QStringLiteral("broken off"));
    EXPECT_FALSE(area.textToApply()) << "a part is no answer";
    area.appendPiece(QStringLiteral(" three"));
    area.showAnswer(QStringLiteral("one two three"));
    EXPECT_EQ(area.textToApply(), QStringLiteral("one two three"));

    ResultArea edited(QStringLiteral("expand"), nullptr);
    edited.appendPiece(QStringLiteral("one "));
    edited.textView()->insertPlainText(QStringLiteral("my "));
    edited.appendPiece(QStringLiteral("two"));
    EXPECT_FALSE(edited.textToApply()) << "an edited part is no answer either";
    edited.showAnswer(QStringLiteral("one two"));
    EXPECT_EQ(edited.textToApply(), QStringLiteral("my one two")) << "the edit stays";

    ResultArea quick(QStringLiteral("expand"), nullptr);
    quick.resize(346, 166);
    quick.show();
    const QString lines = QStringLiteral("a line\n").repeated(50);
    quick.appendPiece(lines);
    EXPECT_GT(quick.textView()->verticalScrollBar()->value(), 0);
    quick.showAnswer(lines);
    EXPECT_EQ(quick.textView()->verticalScrollBar()->value(), 0) << "the beginning is read first";
}

TEST_F(FloatingPopupTest, TheWholeJobIsDoneWithTheKeyboard)
{
    popup.showForKeyboard(QRectF(300, 400, 25, 25));
    QWidget *panel = popup.popupWindow();
    EXPECT_EQ(workspace.focusRequests, 0) << "not before it is on the screen";
    EXPECT_TRUE(waitUntil([this] { return workspace.focusRequests == 1; }));
    EXPECT_EQ(panel->focusWidget(), button("quick-improve"));
    const auto press = [panel](int key, const QString &text = {}) {
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(panel->focusWidget(), &event);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    press(Qt::Key_Down);
    EXPECT_EQ(panel->focusWidget(), button("check-grammar"));
    press(Qt::Key_E, QStringLiteral("e"));
    EXPECT_EQ(panel->focusWidget(), button("elevate"));
    press(Qt::Key_E, QStringLiteral("e"));
    EXPECT_EQ(panel->focusWidget(), button("expand"));
    press(Qt::Key_T, QStringLiteral("t"));
    press(Qt::Key_T, QStringLiteral("t"));
    EXPECT_EQ(panel->focusWidget(), button("translate"));
    press(Qt::Key_Return);
    EXPECT_EQ(panel->focusWidget(), button("english"));
    press(Qt::Key_Return);
    EXPECT_EQ(panel->focusWidget(), result());
    ASSERT_TRUE(showsAnswer("better text"));
    Q_EMIT static_cast<PopupPanel *>(panel)->applyWanted();
    ASSERT_TRUE(waitUntil([&] { return !input.written.isEmpty(); }));
    EXPECT_EQ(input.written, QStringList{QStringLiteral("better text")});
}

TEST_F(FloatingPopupTest, TheChosenToolIsInSightAndTheRowCanBeDragged)
{
    const auto left = [this] {
        return button("more")->mapTo(popup.popupWindow(), QPoint(0, 0)).x();
    };
    open();
    EXPECT_GT(left() + button("more")->width(), 370) << "the row is wider than the popup";
    click("more");
    popup.close();
    open();
    EXPECT_LE(left() + button("more")->width(), 370);
    EXPECT_GE(left(), 0);

    const auto send = [this](QEvent::Type type, int x, Qt::MouseButtons buttons) {
        QMouseEvent event(type, QPointF(5, 5), QPointF(x, 5), Qt::LeftButton, buttons,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(button("more"), &event);
    };
    const int before = left();
    send(QEvent::MouseButtonPress, 100, Qt::LeftButton);
    send(QEvent::MouseMove, 140, Qt::LeftButton);
    EXPECT_EQ(left(), before + 40);
    QPointer<QWidget> options = button("settings");
    send(QEvent::MouseButtonRelease, 140, Qt::NoButton);
    EXPECT_TRUE(options) << "a drag does not click";

    QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), QPoint(), QPoint(0, 120), Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(popup.popupWindow()->findChild<ToolRow *>()->viewport(), &wheel);
    EXPECT_GT(left(), before + 40) << "a wheel scrolls it back";
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

    open();
    click("expand");
    ASSERT_TRUE(showsAnswer("better text")) << "an answer after the first popup's end is harmless";
}

TEST_F(FloatingPopupTest, TakesTheKeyboardOnlyToEditTheResult)
{
    open();
    click("expand");
    ASSERT_TRUE(showsAnswer("better text"));
    EXPECT_EQ(workspace.focusRequests, 0);
    Q_EMIT result()->keyboardWanted();
    EXPECT_EQ(workspace.focusRequests, 1);
    popup.close();
    EXPECT_EQ(workspace.focusRestored, 1);
    open();
    workspace.dismiss();
    EXPECT_FALSE(popup.popupWindow());
    EXPECT_EQ(workspace.focusRestored, 1) << "nothing to give back";
}

TEST_F(FloatingPopupTest, TheUsersOwnCommandsAreOneMoreToolWhileThereAreSome)
{
    open();
    EXPECT_FALSE(button("mine"));
    popup.close();
    ownCommands = {{u"own-rhyme"_qs, u"Make it rhyme"_qs, u"Rhyme."_qs, {}, u"Ctrl+1"_qs}};
    open();
    click("mine");
    ASSERT_TRUE(button("own-rhyme"));
    EXPECT_EQ(button("own-rhyme")->text(), u"Make it rhyme"_qs);
    click("own-rhyme");
    ASSERT_TRUE(showsAnswer("better text"));
    EXPECT_TRUE(
        server.requests.last().startsWith("GET /generate?command=own-rhyme&text=my%20text "));
    EXPECT_EQ(tracker.events.last(), u"Execute command=own"_qs)
        << "the identifier has the user's words in it";

    click("cancel");
    auto *field = popup.popupWindow()->findChild<InstructionField *>();
    ASSERT_TRUE(field);
    field->setText(u" rhyme & run "_qs);
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(field, &enter);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(showsAnswer("better text"));
    const QByteArray once = server.requests.last();
    EXPECT_TRUE(once.contains("command=own-once&instruction=rhyme%20%26%20run&text="));
    click("reload");
    ASSERT_TRUE(showsAnswer("better text"));
    EXPECT_EQ(server.requests.last(), once);

    popup.close();
    ownCommands.clear();
    open();
    EXPECT_FALSE(button("mine"));
    EXPECT_TRUE(button("quick-improve"));
}
