// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/AtspiAccessibility.h"
#include "platform/linux/ports/Typist.h"
#include "support/WaitUntil.h"

#include <QApplication>
#include <QTemporaryDir>
#include <QTextEdit>

#include <gtest/gtest.h>
#include <unistd.h>

using namespace platform;
using namespace platform::linux_;

namespace
{

struct OurWindow : ActiveWindow {
    bool isLent = false;

    bool isAvailable() override { return true; }
    std::optional<Window> activeWindow() override { return Window{7, {getpid()}}; }
    std::optional<WindowPlace> geometry(std::uint32_t) override { return {}; }
    bool isKeyboardLent() override { return isLent; }
};

struct NoTypist : Typist {
    void type(std::unique_ptr<TypingTarget>, const QList<KeyboardEvent> &,
              std::function<void(TypingResult)> completion) override
    {
        completion(TypingResult::Failed);
    }
};

/// One of our own windows with an input, and a panel with another.
class Lending : public testing::Test
{
protected:
    Lending()
    {
        for (QTextEdit *input : {&editor, &result})
            input->setPlainText(QStringLiteral("text"));
        editor.show();
        result.show();
        turnTo(editor);
    }

    static void turnTo(QTextEdit &input)
    {
        input.activateWindow();
        input.setFocus();
        EXPECT_TRUE(waitUntil([&] { return QGuiApplication::focusObject() == &input; }));
    }

    AXError focused(AXValue &value)
    {
        return accessibility.AXUIElementCopyAttributeValue(
            accessibility.AXUIElementCreateSystemWide(), QStringLiteral("AXFocusedUIElement"),
            value);
    }
    void allow(bool allowed)
    {
        settings.setValue(QStringLiteral("accessibility/allowed"), allowed);
    }

    QTemporaryDir folder;
    QSettings settings{folder.filePath(QStringLiteral("platform.conf")), QSettings::IniFormat};
    OurWindow window;
    NoTypist typist;
    AtspiAccessibility accessibility{typist, window, settings, "unix:path=/nowhere"};
    QTextEdit editor;
    QTextEdit result;
};

TEST_F(Lending, APanelWithTheKeyboardIsNotTheFocusedElement)
{
    allow(true);
    AXValue lender;
    ASSERT_EQ(focused(lender), AXError::Success);

    turnTo(result);
    window.isLent = true;
    AXValue now;
    ASSERT_EQ(focused(now), AXError::Success);
    EXPECT_EQ(std::get<AXUIElement>(now), std::get<AXUIElement>(lender));

    window.isLent = false;
    ASSERT_EQ(focused(now), AXError::Success);
    EXPECT_NE(std::get<AXUIElement>(now), std::get<AXUIElement>(lender));
}

TEST_F(Lending, WithoutConsentNothingOfOthersIsRead)
{
    allow(true);
    AXValue value;
    ASSERT_EQ(focused(value), AXError::Success);
    allow(false);
    EXPECT_EQ(focused(value), AXError::APIDisabled);
    EXPECT_FALSE(accessibility.AXIsProcessTrusted());
    QStringList names;
    EXPECT_EQ(accessibility.AXUIElementCopyAttributeNames(
                  accessibility.AXUIElementCreateSystemWide(), names),
              AXError::APIDisabled);
}

TEST_F(Lending, AnInputOfOursThatIsHiddenHasNoFrame)
{
    allow(true);
    AXValue value;
    ASSERT_EQ(focused(value), AXError::Success);
    const AXUIElement input = std::get<AXUIElement>(value);
    EXPECT_EQ(accessibility.AXUIElementCopyAttributeValue(input, QStringLiteral("AXFrame"), value),
              AXError::Success);
    editor.hide();
    EXPECT_EQ(accessibility.AXUIElementCopyAttributeValue(input, QStringLiteral("AXFrame"), value),
              AXError::NoValue);
}

} // namespace
