// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/focus/AccessibilityObserver.h"

#include "support/CapturedOutput.h"
#include "support/FakePlatform.h"

#include <gtest/gtest.h>

using fake::makeElement;
using platform::AXError;
using platform::AXUIElement;
using platform::CFRange;

namespace
{

constexpr std::int32_t ownPid = 1;
constexpr std::int32_t editorPid = 100;
constexpr std::int32_t browserPid = 200;

class RecordingButton : public InputButton
{
public:
    QStringList calls;
    AXUIElement shown;
    void show(const AXUIElement &element) override
    {
        calls.append(QStringLiteral("show"));
        shown = element;
    }
    void hide() override { calls.append(QStringLiteral("hide")); }
    bool lostInput = false;
    bool hasLostInput() override { return lostInput; }
};

class ObserverTest : public testing::Test
{
protected:
    ObserverTest()
    {
        for (const auto &[pid, name] :
             {std::pair{editorPid, "Editor"}, {browserPid, "Browser"}, {ownPid, "Quillet"}})
            workspace.running.insert(pid, {pid, QString::fromLatin1(name)});
        workspace.frontmost = editorPid;
        capturedLines([this] {
            observer = std::make_unique<AccessibilityObserver>(
                AccessibilityObserver::Collaborators{ax, workspace, button, ownPid});
        });
    }

    /// A text area that has its button.
    fake::ElementPtr areaInUse()
    {
        auto area = makeElement("AXTextArea", editorPid);
        ax.focus(area);
        tick();
        button.calls.clear();
        return area;
    }

    QStringList tick()
    {
        return capturedLines([this] { observer->checkFocusedElement(); });
    }

    fake::Accessibility ax;
    fake::Workspace workspace;
    RecordingButton button;
    std::unique_ptr<AccessibilityObserver> observer;
};

} // namespace

TEST_F(ObserverTest, ObservesOnlyWithPermission)
{
    EXPECT_TRUE(observer->isObserving());
    ax.trusted = false;
    const QStringList lines = capturedLines([this] {
        AccessibilityObserver idle({ax, workspace, button, ownPid});
        EXPECT_FALSE(idle.isObserving());
    });
    EXPECT_EQ(lines, QStringList{QStringLiteral("❌ Accessibility permissions not granted")});
}

TEST_F(ObserverTest, ShowsOnceForAnInputAndFollowsItToAnotherApplication)
{
    auto area = makeElement("AXTextArea", editorPid);
    ax.focus(area);
    EXPECT_EQ(tick(), (QStringList{
                          QStringLiteral("🎯 Focused app: Editor [PID: 100]"),
                          QStringLiteral("🔁 App changed"),
                          QStringLiteral("📋 Attributes: [\"AXRole\"]"),
                          QStringLiteral("🔎 Role: AXTextArea"),
                          QStringLiteral("📝 Focused on input field: AXTextArea"),
                          QStringLiteral("✨ Text input detected!"),
                      }));
    EXPECT_EQ(button.calls, (QStringList{QStringLiteral("hide"), QStringLiteral("show")}));

    button.calls.clear();
    EXPECT_EQ(tick(), (QStringList{
                          QStringLiteral("🎯 Focused app: Editor [PID: 100]"),
                          QStringLiteral("📋 Attributes: [\"AXRole\"]"),
                          QStringLiteral("🔎 Role: AXTextArea"),
                      }));
    EXPECT_TRUE(button.calls.isEmpty());

    auto other = makeElement("AXEditableText", browserPid);
    ax.focus(other);
    EXPECT_TRUE(tick().contains(QStringLiteral("🔁 App changed")));
    EXPECT_EQ(button.calls, (QStringList{QStringLiteral("hide"), QStringLiteral("show")}));
    EXPECT_EQ(button.shown, AXUIElement(other));
}

TEST_F(ObserverTest, AFailedQueryLeavesTheButtonAlone)
{
    ax.systemWide->errors.insert(QStringLiteral("AXFocusedUIElement"), AXError::CannotComplete);
    EXPECT_EQ(tick(),
              QStringList{QStringLiteral("❌ Failed to get focused element: Cannot complete")});
    ax.systemWide->errors.clear();
    ax.systemWide->attributes.insert(QStringLiteral("AXFocusedUIElement"), {});
    EXPECT_EQ(tick(), QStringList{QStringLiteral("❌ Failed to get focused element: Success")});
    EXPECT_TRUE(button.calls.isEmpty());
}

TEST_F(ObserverTest, HidesOnOtherFocusUnlessWeAreInFront)
{
    auto area = areaInUse();
    auto push = makeElement("AXButton", editorPid);
    auto roleless = makeElement(nullptr, editorPid);

    workspace.frontmost = ownPid;
    ax.focus(push);
    EXPECT_EQ(tick().last(), QStringLiteral("⚠️ Skipping hide — our app is frontmost"));
    EXPECT_TRUE(button.calls.isEmpty());
    ax.focus(area);
    tick();
    EXPECT_TRUE(button.calls.isEmpty()) << "the input is still the one remembered";

    workspace.frontmost = std::nullopt;
    ax.focus(roleless);
    EXPECT_EQ(tick().mid(1), (QStringList{
                                 QStringLiteral("❌ Could not retrieve role"),
                                 QStringLiteral("🔻 Hiding button — focus not in our app"),
                             }));
    ax.focus(area);
    tick();
    EXPECT_EQ(button.calls, (QStringList{QStringLiteral("hide"), QStringLiteral("show")}));
}

TEST_F(ObserverTest, OurOwnWindowIsNoApplicationChange)
{
    auto area = areaInUse();
    ax.focus(makeElement("AXTextArea", ownPid));
    EXPECT_FALSE(tick().contains(QStringLiteral("🔁 App changed")));
    EXPECT_EQ(button.calls, QStringList{QStringLiteral("show")});
    ax.focus(area);
    EXPECT_FALSE(tick().contains(QStringLiteral("🔁 App changed")));
}

TEST_F(ObserverTest, ClassifiesInputs)
{
    for (const char *role : {"AXTextArea", "AXEditableText"})
        EXPECT_TRUE(observer->isEditableTextField(AXUIElement(makeElement(role)))) << role;
    for (const char *role : {"AXTextField", "AXtextarea", "AXWebArea", "AXButton"})
        EXPECT_FALSE(observer->isEditableTextField(AXUIElement(makeElement(role)))) << role;
    EXPECT_FALSE(observer->isEditableTextField(AXUIElement(makeElement(nullptr))));

    auto page = makeElement("AXWebArea");
    page->set("AXEditable", true);
    EXPECT_TRUE(observer->isEditableTextField(AXUIElement(page)));

    page = makeElement("AXWebArea");
    page->set("AXFocusedUIElement", AXUIElement(makeElement("AXTextArea")));
    EXPECT_TRUE(observer->isEditableWebArea(AXUIElement(page)));

    page = makeElement("AXWebArea");
    auto group = makeElement("AXGroup");
    setChildren(page, {makeElement("AXStaticText"), group});
    EXPECT_FALSE(observer->isEditableTextField(AXUIElement(page)));
    setChildren(group, {makeElement("AXLink"), makeElement("AXTextArea")});
    EXPECT_TRUE(observer->isEditableTextField(AXUIElement(page)));
}

TEST_F(ObserverTest, ClassifiesMailEditors)
{
    auto page = makeElement("AXWebArea");
    EXPECT_FALSE(observer->isMailEditableWebArea(AXUIElement(page)));
    page->set("AXSubrole", "AXEditor");
    EXPECT_TRUE(observer->isEditableTextField(AXUIElement(page)));

    page = makeElement("AXWebArea");
    page->set("AXSelectedTextRange", CFRange{});
    EXPECT_TRUE(observer->isMailEditableWebArea(AXUIElement(page)));
    page = makeElement("AXWebArea");
    page->set("AXValue", 0.5);
    EXPECT_FALSE(observer->isMailEditableWebArea(AXUIElement(page))) << "a number is no text";
    page->set("AXValue", "");
    EXPECT_TRUE(observer->isMailEditableWebArea(AXUIElement(page)));

    auto group = makeElement("AXGroup");
    group->set("AXSubrole", "AXEditor");
    EXPECT_FALSE(observer->isMailEditableWebArea(AXUIElement(group)));
}

TEST_F(ObserverTest, APageStillBeingSearchedIsDecidedLater)
{
    areaInUse();
    auto page = makeElement("AXWebArea", editorPid);
    ax.focus(page);
    ax.answer = platform::Accessibility::Answer::Pending;
    EXPECT_EQ(tick().last(), QStringLiteral("🔎 Role: AXWebArea"));
    EXPECT_TRUE(button.calls.isEmpty());
    ax.answer = platform::Accessibility::Answer::Yes;
    tick();
    EXPECT_EQ(button.shown, AXUIElement(page));
    ax.answer = platform::Accessibility::Answer::No;
    EXPECT_EQ(tick().last(), QStringLiteral("🔻 Hiding button — focus not in our app"));
}

TEST_F(ObserverTest, AnInputThatIsGoneTakesItsButtonWithIt)
{
    const QStringList hidden{QStringLiteral("hide")};
    const auto area = areaInUse();
    // Nothing has the focus, because the last window was closed.
    ax.systemWide->attributes.clear();
    tick();
    EXPECT_EQ(button.calls, QStringList()) << "the input is still there";
    button.lostInput = true;
    tick();
    EXPECT_EQ(button.calls, hidden);
    tick();
    EXPECT_EQ(button.calls, hidden) << "once";

    button.lostInput = false;
    ax.focus(area);
    tick();
    EXPECT_EQ(button.calls.last(), QStringLiteral("show")) << "it is an input as before";

    // The tutorial's editor has given way to another page of our own window.
    workspace.frontmost = ownPid;
    ax.focus(makeElement("AXButton", ownPid));
    button.calls.clear();
    button.lostInput = true;
    tick();
    EXPECT_EQ(button.calls, hidden);
}

TEST_F(ObserverTest, AnExcludedProgramIsNotRead)
{
    QString excluded;
    AccessibilityObserver::Collaborators all{ax, workspace, button, ownPid};
    all.isExcluded = [&](const QString &program) { return program == excluded; };
    capturedLines([&] { observer = std::make_unique<AccessibilityObserver>(all); });
    areaInUse();
    excluded = QStringLiteral("Editor");
    const QStringList lines = tick();
    EXPECT_EQ(button.calls, QStringList{QStringLiteral("hide")});
    EXPECT_FALSE(lines.join(u' ').contains(QStringLiteral("Attributes")));
    tick();
    EXPECT_EQ(button.calls.size(), 1);
    excluded.clear();
    tick();
    EXPECT_EQ(button.calls.last(), QStringLiteral("show"));
}

TEST_F(ObserverTest, ThePermissionTakenBackHidesTheButtonUntilItIsBack)
{
    const auto area = areaInUse();
    observer->permissionTakenBack();
    EXPECT_EQ(button.calls, QStringList{QStringLiteral("hide")});
    ax.focus(area);
    tick();
    EXPECT_EQ(button.calls.last(), QStringLiteral("show"));
}
