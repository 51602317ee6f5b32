// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/button/FloatingButtonManager.h"

#include "quillet/button/DragFriendlyButton.h"
#include "quillet/button/NonActivatingPanel.h"
#include "quillet/widgets/PillButton.h"
#include "quillet/writing/WritingService.h"
#include "support/CapturedOutput.h"
#include "support/FakePlatform.h"
#include "support/FakeServices.h"
#include "support/WaitUntil.h"

#include <QCoreApplication>
#include <QMouseEvent>

#include <gtest/gtest.h>

using fake::makeElement;
using platform::AXError;
using platform::AXUIElement;
using platform::KeyboardEvent;
using platform::TypingResult;
using platform::WriteOutcome;

namespace
{

class ManagerTest : public testing::Test
{
protected:
    ManagerTest()
    {
        QObject::connect(&manager, &FloatingButtonManager::textApplied, &manager,
                         [this](const QString &text, const WriteOutcome &outcome) {
                             outcomes.append(outcome);
                             if (!outcome.isWritten())
                                 notWritten.append(text);
                         });
    }

    /// Makes `element` the manager's input, without a frame and so without a button.
    void use(const fake::ElementPtr &element) { manager.show(AXUIElement(element)); }

    QString text()
    {
        QString result = QStringLiteral("(not called)");
        manager.getText([&](const QString &read) { result = read; });
        return result;
    }

    QString lineOfSetText(const char *newText)
    {
        return capturedLines([&] { manager.setText(QString::fromUtf8(newText)); }).join(u'|');
    }

    fake::Accessibility ax;
    fake::KeyboardEvents keyboard;
    fake::Workspace workspace;
    BackendService backend;
    fake::Endpoint endpoint;
    WritingService writing{endpoint, backend};
    fake::Tracker tracker;
    QList<WriteOutcome> outcomes;
    QStringList notWritten;
    fake::Frames frames;
    FloatingButtonManager manager{{ax, keyboard, workspace, writing, tracker, {}, &frames}};
};

void send(QWidget *to, QEvent::Type type, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, QPointF(5, 5), QPointF(5, 5), Qt::LeftButton, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(to, &event);
}

} // namespace

TEST_F(ManagerTest, ShowsOneButtonAtTheInput)
{
    auto input = makeElement("AXTextArea");
    input->set("AXFrame", QRectF(100, 200, 300, 40));
    manager.show(AXUIElement(input));
    const QPointer<NonActivatingPanel> first = manager.buttonWindow();
    ASSERT_TRUE(first);
    EXPECT_EQ(first->geometry(), QRect(370, 205, 25, 25));
    EXPECT_EQ(workspace.panels, QList<QWidget *>{first});
    EXPECT_TRUE(first->isVisible());

    input->set("AXFrame", QRectF(0, 0, 100, 100));
    manager.show(AXUIElement(input));
    EXPECT_FALSE(first && first->isVisible());
    EXPECT_EQ(manager.buttonWindow()->pos(), QPoint(70, 5));

    use(makeElement("AXTextArea"));
    EXPECT_FALSE(manager.buttonWindow()) << "an input without a frame has no button";
}

TEST_F(ManagerTest, TheButtonFollowsItsInput)
{
    auto input = makeElement("AXTextArea");
    input->set("AXFrame", QRectF(100, 200, 300, 40));
    manager.show(AXUIElement(input));
    EXPECT_EQ(frames.watched, AXUIElement(input));
    manager.buttonClicked();
    const QPointer<FloatingPopup> popup = manager.popup();
    const QRect popupPlace = popup->popupWindow()->geometry();

    frames.moved(std::nullopt);
    EXPECT_FALSE(manager.buttonWindow()->isVisible());
    frames.moved(QRectF(0, 0, 100, 100));
    EXPECT_TRUE(manager.buttonWindow()->isVisible());
    EXPECT_EQ(manager.buttonWindow()->pos(), QPoint(70, 5));
    ASSERT_TRUE(popup && popup->popupWindow()) << "following closes no popup";
    EXPECT_EQ(popup->popupWindow()->geometry(), popupPlace);

    manager.hide();
    EXPECT_FALSE(frames.watched);

    auto hidden = makeElement("AXTextArea");
    manager.show(AXUIElement(hidden));
    ASSERT_FALSE(manager.buttonWindow());
    frames.moved(QRectF(0, 0, 200, 100));
    ASSERT_TRUE(manager.buttonWindow()) << "an input that comes into sight later";
    EXPECT_EQ(manager.buttonWindow()->pos(), QPoint(170, 5));
}

TEST_F(ManagerTest, ADraggedButtonKeepsItsDistanceForItsInput)
{
    auto input = makeElement("AXTextArea");
    input->set("AXFrame", QRectF(0, 0, 100, 100));
    auto other = makeElement("AXTextArea");
    other->set("AXFrame", QRectF(0, 300, 200, 100));
    manager.show(AXUIElement(input));
    manager.buttonWindow()->move(90, 25);
    Q_EMIT manager.buttonWindow()->findChild<DragFriendlyButton *>()->dragged();

    frames.moved(QRectF(50, 0, 100, 100));
    EXPECT_EQ(manager.buttonWindow()->pos(), QPoint(140, 25));
    manager.show(AXUIElement(other));
    EXPECT_EQ(manager.buttonWindow()->pos(), QPoint(170, 305));
    manager.show(AXUIElement(input));
    EXPECT_EQ(manager.buttonWindow()->pos(), QPoint(90, 25)) << "also when the focus returns";
}

TEST_F(ManagerTest, AClickTogglesThePopupAndAHideDropsIt)
{
    manager.buttonClicked();
    EXPECT_TRUE(tracker.events.isEmpty()) << "no button, no click";

    auto input = makeElement("AXTextArea");
    input->set("AXFrame", QRectF(100, 200, 300, 40));
    manager.show(AXUIElement(input));
    manager.buttonClicked();
    const QPointer<FloatingPopup> popup = manager.popup();
    ASSERT_TRUE(popup && popup->popupWindow());
    manager.buttonClicked();
    EXPECT_EQ(manager.popup(), popup);
    EXPECT_FALSE(popup->popupWindow());
    manager.buttonClicked();
    EXPECT_TRUE(popup->popupWindow());
    EXPECT_EQ(tracker.events, QStringList(3, QStringLiteral("QuilletBadgeClick")));

    manager.hide();
    EXPECT_FALSE(popup->popupWindow());
    EXPECT_FALSE(manager.popup());
    EXPECT_FALSE(manager.buttonWindow());
}

TEST_F(ManagerTest, KnowsAnInputThatIsGoneFromOneThatIsBusy)
{
    auto input = makeElement("AXTextArea");
    input->set("AXFrame", QRectF(100, 200, 300, 40));
    manager.show(AXUIElement(input));
    EXPECT_FALSE(manager.hasLostInput());
    for (const auto &[error, lost] :
         {std::pair(AXError::CannotComplete, false), std::pair(AXError::APIDisabled, false),
          std::pair(AXError::InvalidUIElement, true), std::pair(AXError::NoValue, true)}) {
        input->errors.insert(QStringLiteral("AXFrame"), error);
        EXPECT_EQ(manager.hasLostInput(), lost) << static_cast<int>(error);
    }
}

TEST_F(ManagerTest, ReadsTheInput)
{
    EXPECT_EQ(capturedLines([this] { EXPECT_EQ(text(), QString()); }),
              QStringList{QStringLiteral("element is nil")});

    auto input = makeElement("AXTextArea");
    use(input);
    EXPECT_EQ(text(), QString());
    input->set("AXSelectedText", "selected");
    EXPECT_EQ(text(), QStringLiteral("selected"));
    input->set("AXValue", "");
    EXPECT_EQ(text(), QString()) << "an empty value is a value";
    input->set("AXValue", "abc");
    EXPECT_EQ(text(), QStringLiteral("abc"));
}

TEST_F(ManagerTest, ReadsAWebAreaFromItsLeaves)
{
    auto page = makeElement("AXWebArea");
    page->set("AXValue", "");
    auto a = makeElement("AXGroup");
    a->set("AXValue", "a");
    auto ignored = makeElement("AXStaticText");
    ignored->set("AXValue", "below a value");
    setChildren(a, {ignored});
    auto empty = makeElement("AXImage");
    auto b = makeElement("AXGroup");
    auto leaf = makeElement("AXStaticText");
    leaf->set("AXSelectedText", "b");
    setChildren(b, {leaf});
    setChildren(page, {a, empty, b});
    use(page);
    EXPECT_EQ(text(), QStringLiteral("a\n\nb"));
}

TEST_F(ManagerTest, WritesTheValueOfAnInput)
{
    EXPECT_EQ(lineOfSetText("x"), QStringLiteral("❌ No element to set text on"));

    auto input = makeElement("AXTextArea");
    use(input);
    EXPECT_EQ(lineOfSetText("one"), QStringLiteral("❌ Cannot set AXValue on this element"));
    input->settable = true;
    EXPECT_EQ(lineOfSetText("two"), QStringLiteral("✅ Text set successfully"));
    input->outcome = WriteOutcome::notWritten(AXError::Failure);
    EXPECT_EQ(lineOfSetText("three"), QStringLiteral("❌ Failed to set text: -25200"));
    EXPECT_EQ(outcomes.last(), input->outcome);

    ASSERT_EQ(ax.written.size(), 2);
    EXPECT_EQ(ax.written[0].first, QStringLiteral("AXValue"));
    EXPECT_EQ(std::get<QString>(ax.written[0].second), QStringLiteral("two"));
    EXPECT_TRUE(keyboard.posted.isEmpty());
    EXPECT_EQ(notWritten, (QStringList{QStringLiteral("one"), QStringLiteral("three")}));
    EXPECT_EQ(workspace.focusRestored, 3) << "the keyboard is back before anything is written";

    workspace.focusCanBeRestored = false;
    lineOfSetText("four");
    EXPECT_EQ(ax.written.size(), 2) << "the keyboard did not come back";
    EXPECT_EQ(notWritten.last(), QStringLiteral("four"));

    workspace.focusCanBeRestored = true;
    input->outcome = {.kind = WriteOutcome::Kind::ChangedByProgram, .changedCharacters = 2};
    EXPECT_EQ(lineOfSetText("five"),
              QStringLiteral("✅ Text set successfully|"
                             "⚠️ The application changed 2 characters of the text"));
    EXPECT_EQ(outcomes.last(), input->outcome);
}

TEST_F(ManagerTest, SaysWhatCameOfAnApplyAndPutsTheFormerTextBack)
{
    const auto said = [this] {
        QWidget *last = workspace.panels.last();
        return last == manager.buttonWindow() ? QString() : last->accessibleName();
    };
    ax.keepsValues = true;
    auto input = makeElement("AXTextArea");
    input->settable = true;
    input->set("AXFrame", QRectF(100, 200, 300, 40));
    input->set("AXValue", "the draft");
    manager.show(AXUIElement(input));
    manager.showMenu();
    EXPECT_EQ(workspace.panels.size(), 1) << "nothing to offer yet";

    lineOfSetText("the answer");
    EXPECT_EQ(said(), QStringLiteral("Written"));
    manager.showMenu();
    ASSERT_EQ(workspace.panels.size(), 3);
    auto *putBack = workspace.panels.last()->findChild<PillButton *>();
    ASSERT_TRUE(putBack);
    capturedLines([&] { putBack->click(); });
    EXPECT_EQ(text(), QStringLiteral("the draft"));

    auto other = makeElement("AXTextArea");
    other->set("AXFrame", QRectF(100, 300, 300, 40));
    manager.show(AXUIElement(other));
    manager.putBack();
    EXPECT_EQ(ax.written.size(), 2) << "another input has no former text";

    manager.show(AXUIElement(input));
    input->outcome = {.kind = WriteOutcome::Kind::ChangedByProgram, .changedCharacters = 6};
    lineOfSetText("the drafts");
    EXPECT_EQ(said(), QStringLiteral("Written; the program changed 6 characters"));
    input->outcome = WriteOutcome::notWritten(AXError::Failure);
    lineOfSetText("x");
    EXPECT_EQ(said(), QStringLiteral("Not written; the text is on the clipboard"));
}

TEST_F(ManagerTest, TheShortcutOpensThePopupForTheSelectionOfTheFocusedInput)
{
    ax.keepsValues = true;
    auto field = makeElement("AXTextField", 7);
    field->settable = true;
    field->set("AXFrame", QRectF(100, 200, 300, 40));
    field->set("AXValue", "one two three");
    field->set("AXSelectedTextRange", platform::CFRange{4, 3});
    ax.focus(field);
    manager.openForFocusedInput();
    ASSERT_TRUE(manager.popup() && manager.popup()->popupWindow());
    EXPECT_FALSE(manager.buttonWindow()) << "no button at a single line";
    EXPECT_TRUE(waitUntil([this] { return workspace.focusRequests == 1; }));
    EXPECT_EQ(text(), QStringLiteral("two"));
    EXPECT_EQ(lineOfSetText("2"), QStringLiteral("✅ Text set successfully"));
    EXPECT_EQ(std::get<QString>(field->attributes.value(QStringLiteral("AXValue"))),
              QStringLiteral("one 2 three"));

    // The place of the selection holds something else by now.
    EXPECT_TRUE(lineOfSetText("II").contains(QStringLiteral("changed meanwhile")));
    EXPECT_EQ(notWritten, QStringList{QStringLiteral("II")});
    manager.openForFocusedInput();
    EXPECT_FALSE(manager.popup()->popupWindow()) << "the same keys close it";

    field->set("AXSelectedTextRange", platform::CFRange{3, 0});
    manager.openForFocusedInput();
    EXPECT_EQ(text(), QStringLiteral("one 2 three")) << "no selection, all of it";
    manager.hide();
}

TEST_F(ManagerTest, TheShortcutLeavesAloneWhatIsNoInput)
{
    const auto opens = [this](const fake::ElementPtr &element) {
        element->set("AXFrame", QRectF(100, 200, 300, 40));
        ax.focus(element);
        manager.openForFocusedInput();
        return manager.popup() && manager.popup()->popupWindow();
    };
    auto secret = makeElement("AXTextField");
    secret->set("AXSubrole", "AXSecureTextField");
    EXPECT_FALSE(opens(secret));
    EXPECT_FALSE(opens(makeElement("AXButton")));
    ax.systemWide->attributes.clear();
    manager.openForFocusedInput();
    EXPECT_FALSE(manager.popup());
    EXPECT_TRUE(opens(makeElement("AXTextField")));

    QString excluded = QStringLiteral("Editor");
    FloatingButtonManager::Collaborators all{ax, keyboard, workspace, writing, tracker};
    all.isExcluded = [&](const QString &program) { return program == excluded; };
    FloatingButtonManager careful(all);
    workspace.running.insert(9, {9, QStringLiteral("Editor")});
    auto input = makeElement("AXTextField", 9);
    input->set("AXFrame", QRectF(100, 200, 300, 40));
    ax.focus(input);
    careful.openForFocusedInput();
    EXPECT_FALSE(careful.popup()) << "the user wants Quillet to stay out of it";
    excluded.clear();
    careful.openForFocusedInput();
    EXPECT_TRUE(careful.popup());
}

TEST_F(ManagerTest, TheMenuOffersTheSelectionAndToStayOut)
{
    QStringList excluded;
    QObject::connect(&manager, &FloatingButtonManager::exclusionWanted, &manager,
                     [&](const QString &program) { excluded.append(program); });
    workspace.running.insert(9, {9, QStringLiteral("Editor")});
    auto input = makeElement("AXTextArea", 9);
    input->set("AXFrame", QRectF(100, 200, 300, 40));
    input->set("AXValue", "one two");
    input->set("AXSelectedTextRange", platform::CFRange{0, 3});
    manager.show(AXUIElement(input));
    const auto choose = [this](const char *title) {
        manager.showMenu();
        for (PillButton *choice : workspace.panels.last()->findChildren<PillButton *>())
            if (choice->text() == QLatin1StringView(title))
                return choice->click(), true;
        return false;
    };
    EXPECT_TRUE(choose("Not in Editor"));
    EXPECT_EQ(excluded, QStringList{QStringLiteral("Editor")});
    EXPECT_FALSE(choose("Put back what was there"));
    EXPECT_TRUE(choose("Only the selection"));
    EXPECT_TRUE(manager.popup()->popupWindow());
    EXPECT_EQ(text(), QStringLiteral("one"));
    manager.popup()->close();
    manager.buttonClicked();
    EXPECT_EQ(text(), QStringLiteral("one two")) << "the button works on all of it";
}

TEST_F(ManagerTest, KeepsNothingOfAPassword)
{
    auto secret = makeElement("AXTextArea");
    secret->settable = true;
    secret->set("AXSubrole", "AXSecureTextField");
    secret->set("AXValue", "secret");
    use(secret);
    lineOfSetText("new");
    manager.putBack();
    EXPECT_EQ(ax.written.size(), 1);
}

TEST(FormerTexts, KeepsFewAndNotForLong)
{
    FormerTexts texts(std::chrono::milliseconds(50));
    const AXUIElement input(makeElement("AXTextArea"));
    const AXUIElement other(makeElement("AXTextArea"));
    texts.remember(other, QStringLiteral("other"));
    for (int i = 0; i < 10; ++i)
        texts.remember(input, QString::number(i));
    EXPECT_FALSE(texts.of(other)) << "ten at most";
    EXPECT_EQ(texts.of(input), QStringLiteral("9"));
    texts.forgetLast(input);
    EXPECT_EQ(texts.of(input), QStringLiteral("8"));
    EXPECT_TRUE(waitUntil([&] { return !texts.of(input); })) << "dropped by time";
}

TEST_F(ManagerTest, TypesIntoAWebArea)
{
    auto page = makeElement("AXWebArea");
    page->settable = true;
    use(page);
    EXPECT_EQ(lineOfSetText("é😀\n👩🏽‍💻"),
              QStringLiteral("✅ Typed text into WebArea via simulated input"));
    EXPECT_TRUE(ax.written.isEmpty());
    QList<KeyboardEvent> expected;
    for (const char *character : {"é", "😀", "\n", "👩🏽‍💻"})
        for (bool down : {true, false})
            expected.append({down, QString::fromUtf8(character)});
    EXPECT_EQ(keyboard.posted, expected);
    EXPECT_EQ(keyboard.target, AXUIElement(page));

    for (const auto &[result, damaged, elsewhere] :
         {std::tuple{TypingResult::NoTarget, false, false},
          std::tuple{TypingResult::Interrupted, true, false},
          std::tuple{TypingResult::Misplaced, true, true}}) {
        keyboard.result = result;
        lineOfSetText("again");
        EXPECT_FALSE(outcomes.last().isWritten());
        EXPECT_EQ(outcomes.last().isDamaged, damaged);
        EXPECT_EQ(outcomes.last().keysMayBeElsewhere, elsewhere);
    }

    workspace.focusCanBeRestored = false;
    keyboard.posted.clear();
    lineOfSetText("nowhere");
    EXPECT_TRUE(keyboard.posted.isEmpty()) << "the keyboard did not come back";
    EXPECT_EQ(notWritten.last(), QStringLiteral("nowhere"));
}

TEST(DragFriendlyButton, TellsAClickFromADrag)
{
    QWidget window;
    window.move(100, 100);
    QPointF mouse(500, 500);
    DragFriendlyButton button(
        {}, [&] { return mouse; }, &window);
    int clicks = 0;
    QObject::connect(&button, &DragFriendlyButton::clicked, &window, [&] { ++clicks; });

    send(&button, QEvent::MouseButtonPress, Qt::LeftButton);
    mouse = {503, 497};
    send(&button, QEvent::MouseMove, Qt::LeftButton);
    EXPECT_EQ(window.pos(), QPoint(100, 100));
    send(&button, QEvent::MouseButtonRelease, Qt::NoButton);
    EXPECT_EQ(clicks, 1) << "three points are still a click";

    send(&button, QEvent::MouseButtonPress, Qt::LeftButton);
    mouse = {513, 467};
    send(&button, QEvent::MouseMove, Qt::LeftButton);
    EXPECT_EQ(window.pos(), QPoint(110, 70));
    mouse = {504, 497};
    send(&button, QEvent::MouseMove, Qt::LeftButton);
    EXPECT_EQ(window.pos(), QPoint(110, 70)) << "back near the press point nothing moves";
    send(&button, QEvent::MouseButtonRelease, Qt::NoButton);
    EXPECT_EQ(clicks, 1) << "a drag never clicks";

    send(&button, QEvent::MouseButtonPress, Qt::LeftButton);
    send(&button, QEvent::MouseButtonRelease, Qt::NoButton);
    EXPECT_EQ(clicks, 2);

    int menus = 0;
    QObject::connect(&button, &DragFriendlyButton::menuWanted, &window, [&] { ++menus; });
    QMouseEvent rightPress(QEvent::MouseButtonPress, QPointF(5, 5), QPointF(5, 5), Qt::RightButton,
                           Qt::RightButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&button, &rightPress);
    EXPECT_EQ(menus, 1);
    send(&button, QEvent::MouseButtonPress, Qt::LeftButton);
    EXPECT_TRUE(waitUntil([&] { return menus == 2; })) << "a long press";
    send(&button, QEvent::MouseButtonRelease, Qt::NoButton);
    EXPECT_EQ(clicks, 2) << "which is no click";
}
