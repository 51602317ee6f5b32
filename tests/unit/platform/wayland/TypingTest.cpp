// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/typing/Keymap.h"
#include "platform/linux/wayland/typing/StreamTypist.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include "support/WaitUntil.h"
#include <xkbcommon/xkbcommon.h>

using namespace platform;
using namespace platform::linux_;

namespace
{

/// An input that reads the keys as any program does: with the map that came before them.
struct Input {
    QString text = {};
    bool hasFocus = true;
    /// How much of what is typed arrives; the rest is lost.
    qsizetype takes = 1'000'000;
    qsizetype losesFocusAt = 1'000'000;
    int maps = 0;
    bool isOpen = false;
    bool cuts = false;
};

class Stream : public KeyStream
{
public:
    explicit Stream(Input &input)
        : m_input(input)
    {
    }
    ~Stream() override
    {
        xkb_keymap_unref(m_map);
        xkb_context_unref(m_context);
    }

    bool begin() override { return m_input.isOpen = true; }
    bool setMap(const QByteArray &map) override
    {
        ++m_input.maps;
        xkb_keymap_unref(m_map);
        m_map = xkb_keymap_new_from_string(m_context, map.constData(), XKB_KEYMAP_FORMAT_TEXT_V1,
                                           XKB_KEYMAP_COMPILE_NO_FLAGS);
        return m_map != nullptr;
    }
    void tap(std::uint32_t key, bool withShift) override
    {
        xkb_state *const state = xkb_state_new(m_map);
        const xkb_keysym_t symbol = xkb_state_key_get_one_sym(state, key + 8);
        xkb_state_unref(state);
        if (m_input.text.size() >= m_input.takes)
            return;
        if (symbol == XKB_KEY_Return)
            m_input.text += withShift ? QChar(QChar::LineSeparator) : QChar(u'\n');
        else if (symbol == XKB_KEY_BackSpace)
            m_input.text.clear();
        else if (const char32_t character = xkb_keysym_to_utf32(symbol))
            m_input.text += QString::fromUcs4(&character, 1);
        if (m_input.text.size() >= m_input.losesFocusAt)
            m_input.hasFocus = false;
    }
    bool flush() override { return true; }
    void end() override { m_input.isOpen = false; }

private:
    Input &m_input;
    xkb_context *m_context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    xkb_keymap *m_map = nullptr;
};

class Target : public TypingTarget
{
public:
    Target(Input &input, bool soft)
        : m_input(input)
        , m_soft(soft)
    {
    }
    bool hasFocus() override { return m_input.hasFocus; }
    std::optional<qint64> characterCount() override { return m_input.text.toUcs4().size(); }
    bool needsSoftLineBreaks() override { return m_soft; }
    bool cutsCharacters() override { return m_input.cuts; }

private:
    Input &m_input;
    bool m_soft;
};

TypingResult typed(Input &input, const QString &text, bool soft = false)
{
    StreamTypist typist(std::make_unique<Stream>(input), {50, 50, 300});
    std::optional<TypingResult> result;
    typist.type(std::make_unique<Target>(input, soft), keyboardEvents(text),
                [&](TypingResult outcome) { result = outcome; });
    EXPECT_TRUE(waitUntil([&] { return result.has_value(); }));
    EXPECT_FALSE(input.isOpen) << "the keyboard is there only while it types";
    return result.value_or(TypingResult::Failed);
}

} // namespace

TEST(StreamTypist, EveryCharacterArrivesOverManyMaps)
{
    QString text = {};
    for (char32_t character = 0x4e00; character < 0x4e00 + 300; ++character)
        text += QString::fromUcs4(&character, 1);
    text += QStringLiteral(
        "Zoë — “q” Привет 👩🏽‍💻 e\u0301\u00a0| a line\nanother~`\\");
    Input input;
    EXPECT_EQ(typed(input, text), TypingResult::Typed);
    EXPECT_EQ(input.text, text);
    EXPECT_GT(input.maps, 5);

    Input latin;
    const QString prose = QStringLiteral("The quick brown fox jumps over it. ").repeated(100);
    EXPECT_EQ(typed(latin, prose), TypingResult::Typed);
    EXPECT_EQ(latin.text, prose);
    EXPECT_EQ(latin.maps, 1) << "a change of the map costs every program";

    Input chat;
    EXPECT_EQ(typed(chat, QStringLiteral("a\r\nb"), true), TypingResult::Typed);
    EXPECT_EQ(chat.text, QStringLiteral("a\u2028b")) << "Return alone would send the message";
    EXPECT_EQ(typed(chat, QStringLiteral("\b")), TypingResult::Typed);
    EXPECT_TRUE(chat.text.isEmpty());
}

TEST(StreamTypist, StopsWhereTheFocusGoesAndBelievesOnlyWhatItReadsBack)
{
    const QString text = QStringLiteral("x").repeated(3000);
    Input leaving{.losesFocusAt = 500};
    EXPECT_NE(typed(leaving, text), TypingResult::Typed);
    EXPECT_LT(leaving.text.size(), 1500) << "what was on its way, and no more";

    Input deaf{.takes = 100};
    EXPECT_NE(typed(deaf, text), TypingResult::Typed);

    Input cutting{.cuts = true};
    EXPECT_EQ(typed(cutting, QStringLiteral("ab 👍")), TypingResult::Failed);
    EXPECT_TRUE(cutting.text.isEmpty()) << "rather nothing than half a character";
    EXPECT_EQ(typed(cutting, QStringLiteral("ab 你")), TypingResult::Typed);

    Input elsewhere{.hasFocus = false};
    EXPECT_EQ(typed(elsewhere, text), TypingResult::NoTarget);
    EXPECT_TRUE(elsewhere.text.isEmpty());
}
