// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/ScreenCoordinates.h"
#include "platform/linux/reading/CodePoints.h"
#include "platform/linux/reading/ElementFacts.h"
#include "platform/linux/reading/Geometry.h"
#include "platform/linux/reading/RichText.h"

#include <gtest/gtest.h>

using namespace platform;
using namespace platform::linux_;
using atspi::Role;
using atspi::State;

namespace
{

ElementFacts facts(Role role, std::initializer_list<State> states, const char *tag = "",
                   std::uint8_t interfaces = ElementFacts::Text)
{
    ElementFacts result;
    result.role = std::uint32_t(role);
    for (const State state : states)
        result.states |= atspi::bit(state);
    result.tag = tag;
    result.interfaces = interfaces;
    return result;
}

std::string role(const ElementFacts &of)
{
    return axRole(of).toStdString();
}

TextNode node(Role role, const char *tag, const char *display, const QString &text,
              std::vector<TextNode> children = {})
{
    TextNode result{facts(role, {}, tag), text, std::move(children)};
    result.facts.display = display;
    return result;
}

TextNode block(const QString &text, std::vector<TextNode> children = {})
{
    return node(Role::Section, "div", "block", text, std::move(children));
}

const QString object(QChar::ObjectReplacementCharacter);

} // namespace

TEST(ElementFacts, OnlyWhatTheUserEditsInSeveralLinesIsATextArea)
{
    const auto editable = {State::Editable, State::MultiLine, State::Focusable};
    EXPECT_EQ(role(facts(Role::Text, editable)), "AXTextArea");
    EXPECT_EQ(role(facts(Role::Entry, editable, "textarea")), "AXTextArea");
    EXPECT_EQ(role(facts(Role::Section, editable, "div")), "AXTextArea");
    EXPECT_EQ(role(facts(Role::Entry, {State::Editable, State::SingleLine}, "div")), "AXTextArea")
        << "a page's own message box";

    EXPECT_EQ(role(facts(Role::Entry, {State::Editable, State::SingleLine}, "input")),
              "AXTextField");
    EXPECT_EQ(role(facts(Role::Text, {State::Editable, State::SingleLine})), "AXTextField");
    EXPECT_EQ(role(facts(Role::Text, {State::MultiLine})), "AXStaticText");
    EXPECT_EQ(role(facts(Role::Label, {State::MultiLine})), "AXStaticText");
    EXPECT_EQ(role(facts(Role::Link, {State::Editable}, "a")), "AXLink") << "inside a host";
    EXPECT_EQ(role(facts(Role::Terminal, editable)), "AXGroup");
    EXPECT_FALSE(isEditable(facts(Role::Terminal, editable)));
    EXPECT_EQ(role(facts(Role::DocumentWeb, editable, "#document")), "AXTextArea");
    EXPECT_EQ(role(facts(Role::DocumentWeb, {}, "#document")), "AXWebArea");
    EXPECT_EQ(role(facts(Role(4'000'000'000U), {})), "AXUnknown");
    EXPECT_EQ(role(facts(Role(-1), {})), "AXUnknown");
}

TEST(ElementFacts, APasswordIsNeverReadOrEdited)
{
    ElementFacts disguised = facts(Role::Entry, {State::Editable, State::MultiLine}, "input");
    disguised.setAttributes({{"text-input-type", "Password"}});
    for (const ElementFacts &secret :
         {facts(Role::PasswordText, {State::Editable, State::MultiLine}), disguised}) {
        EXPECT_EQ(role(secret), "AXTextField");
        EXPECT_FALSE(isEditable(secret));
        EXPECT_FALSE(hasTextValue(secret));
        EXPECT_FALSE(attributeNames(secret).contains(QStringLiteral("AXValue")));
    }
}

TEST(ElementFacts, ADocumentThatIsOnlyReadHasNoText)
{
    const ElementFacts page = facts(Role::DocumentWeb, {}, "#document");
    const ElementFacts composer = facts(Role::DocumentWeb, {State::Editable}, "#document");
    EXPECT_FALSE(hasTextValue(page));
    EXPECT_TRUE(hasTextValue(composer));
    EXPECT_FALSE(hasTextValue(facts(Role::Section, {}, "div")));
    EXPECT_TRUE(hasTextValue(facts(Role::Static, {})));
}

TEST(ElementFacts, StatesComeInTwoWords)
{
    ElementFacts of;
    of.setStates({1U << unsigned(State::Editable), 1U << (unsigned(State::ReadOnly) - 32)});
    EXPECT_TRUE(of.has(State::Editable));
    EXPECT_TRUE(of.has(State::ReadOnly));
    EXPECT_FALSE(of.has(State::Focused));
    of.setStates({});
    EXPECT_EQ(of.states, 0U);
}

TEST(RichText, LineBreaksAtTheEnd)
{
    EXPECT_EQ(flatten(block(QStringLiteral("a\n"))), QStringLiteral("a"));
    EXPECT_EQ(flatten(block(QStringLiteral("\n"))), QString());
    TextNode input = node(Role::Entry, "textarea", "", QStringLiteral("a\n\n"));
    EXPECT_EQ(flatten(input), QStringLiteral("a\n\n"));
    input.facts.toolkit = "Chromium";
    EXPECT_EQ(flatten(input), QStringLiteral("a\n"));
    EXPECT_EQ(flatten(node(Role::Text, "", "", QStringLiteral("a\n"))), QStringLiteral("a\n"));
}

TEST(RichText, SurvivesTextThatDoesNotMatchItsElements)
{
    // Fewer and more embedded elements than the text has places for.
    EXPECT_EQ(flatten(block(object + object, {block(QStringLiteral("only"))})),
              QStringLiteral("only"));
    EXPECT_EQ(flatten(block(QStringLiteral("x"), {block(QStringLiteral("a")), block({})})),
              QStringLiteral("a"));
    TextNode secret = node(Role::PasswordText, "input", "inline", QStringLiteral("hidden"));
    EXPECT_EQ(flatten(block(QStringLiteral("a") + object, {secret})), QStringLiteral("a"));
}

TEST(Geometry, ImpossibleExtentsAreNone)
{
    const QList<ScreenGeometry> screens{{QRect(0, 0, 1280, 900), 1}};
    EXPECT_TRUE(isPlausible(QRect(-10, 10, 200, 40), screens));
    for (const QRect &lie :
         {QRect(QPoint(5, 5), QSize(-1, 20)), QRect(0, 0, 0, 0),
          QRect(QPoint(INT_MIN, INT_MIN), QSize(1, 1)), QRect(QPoint(3000, 10), QSize(50, 50)),
          QRect(QPoint(0, 0), QSize(INT_MAX, INT_MAX))})
        EXPECT_FALSE(isPlausible(lie, screens));
}

TEST(Geometry, ExtentsFindTheirPlaceByWhatTheProgramCountsFrom)
{
    const QRect element(10, 47, 300, 100);
    const auto at = [&](const QRect &topLevel, const QRect &contents, const QRect &surface,
                        bool countsFromWindow) {
        return ontoScreen(element, topLevel, {contents, surface, countsFromWindow, false});
    };
    const QRect bordered(290, 190, 700, 520);
    // A border of five pixels that the toolkit draws around what it counts from.
    EXPECT_EQ(at(QRect(0, 0, 690, 510), bordered, bordered, true), QRect(305, 242, 300, 100));
    EXPECT_EQ(at(QRect(0, 0, 690, 510), bordered, bordered, false), element);
    EXPECT_EQ(at(QRect(0, 0, 350, 260), QRect(100, 50, 700, 520), QRect(100, 50, 700, 520), true),
              QRect(120, 144, 600, 200));
    EXPECT_EQ(at(QRect(0, 0, 1, 1), QRect(0, 0, 700, 520), {}, false).width(), 1200)
        << "a lie about the window stays within bounds";

    const QRect contents(100, 80, 600, 337);
    const QRect withShadow(74, 57, 652, 389);
    EXPECT_EQ(at(QRect(0, 0, 600, 337), contents, withShadow, true).topLeft(), QPoint(110, 127))
        << "counts from the contents";
    EXPECT_EQ(at(QRect(0, 0, 652, 389), contents, withShadow, true).topLeft(), QPoint(84, 104))
        << "counts from the shadow's corner";
    EXPECT_EQ(at(QRect(26, 23, 600, 337), contents, withShadow, true).topLeft(), QPoint(84, 104))
        << "counts from the shadow's corner and says so";
    EXPECT_EQ(at(QRect(0, 0, 652, 389), contents, contents, true).topLeft(), QPoint(84, 101))
        << "a shadow that is not reported counts as even";
}

TEST(Geometry, FractionalScalesAreReadFromTheWindow)
{
    for (const double scale : {1.25, 1.5, 1.75, 2.0, 2.5}) {
        const QRect topLevel(2000, 100, 601, 399); // on a screen that begins at 1920
        const QRect contents(2040, 150, int(601 * scale), int(399 * scale));
        const QRect placed =
            ontoScreen(QRect(2011, 147, 300, 100), topLevel, {contents, contents, false, false});
        EXPECT_NEAR(placed.x(), 2040 + 11 * scale, 1) << scale;
        EXPECT_NEAR(placed.y(), 150 + 47 * scale, 1) << scale;
        EXPECT_NEAR(placed.width(), 300 * scale, 1) << scale;
    }
    const QRect bordered(0, 0, 452, 352); // wider by a factor that could be a scale
    EXPECT_EQ(ontoScreen(QRect(10, 20, 30, 40), QRect(0, 0, 400, 300),
                         {bordered, bordered, false, false}),
              QRect(10, 20, 30, 40))
        << "a border is no scale";
}

TEST(Geometry, MonitorsAroundTheMainOneHaveOneConversion)
{
    const platform::ScreenCoordinates coordinates{QRectF(1280, 600, 1920, 1080)};
    for (const QRectF &onToolkit : {QRectF(1300, 640, 25, 25), QRectF(10, 700, 25, 25),
                                    QRectF(3300, 900, 25, 25), QRectF(1400, 50, 25, 25)}) {
        const QRectF frame = coordinates.accessibilityFromToolkit(onToolkit);
        EXPECT_EQ(frame.topLeft(), onToolkit.topLeft() - QPointF(1280, 600));
        const QRectF up = coordinates.bottomLeftFromToolkit(onToolkit);
        EXPECT_EQ(up.y(), 1080 - frame.y() - 25);
        EXPECT_EQ(coordinates.toolkitFromBottomLeft(up), onToolkit);
    }
    // Each screen with a scale of its own; the main one is the first.
    const QList<ScreenGeometry> screens{{QRect(1920, 0, 1280, 720), 1.5},
                                        {QRect(0, 0, 1920, 1080), 1}};
    EXPECT_EQ(toPoints(QRect(1920 + 150, 300, 450, 150), screens), QRectF(100, 200, 300, 100));
    EXPECT_EQ(toPoints(QRect(1000, 300, 450, 150), screens), QRectF(1000 - 1920, 300, 450, 150));
}

TEST(ElementFacts, SecretsAndHiddenElementsAreKnown)
{
    ElementFacts facts;
    facts.setAttributes({{"tag", "input"}, {"autocomplete", "section-a billing CC-Number"}});
    EXPECT_TRUE(isPassword(facts));
    facts.setAttributes({{"autocomplete", "street-address"}});
    EXPECT_FALSE(isPassword(facts));
    EXPECT_TRUE(isInput(facts)) << "although it cannot be edited";

    facts.toolkit = "gtk";
    facts.states = atspi::bit(atspi::State::Visible) | atspi::bit(atspi::State::Showing);
    EXPECT_FALSE(isHidden(facts));
    facts.states = atspi::bit(atspi::State::Visible);
    EXPECT_TRUE(isHidden(facts)) << "on a page of a notebook that is not in front";
    facts.toolkit = "GTK";
    EXPECT_FALSE(isHidden(facts)) << "GTK 4 never says that it shows something";
}

TEST(CodePoints, RangesAreInUtf16Units)
{
    const QString text = QStringLiteral("a😀b😀");
    EXPECT_EQ(codePointCount(text), 4);
    EXPECT_EQ(utf16Range(text, 1, 3, 4), (CFRange{1, 3}));
    EXPECT_EQ(utf16Range(text, 3, 1, 4), (CFRange{1, 3}));
    EXPECT_EQ(utf16Range(text, -5, 100, 4), (CFRange{0, 6}));
    EXPECT_EQ(utf16Range(text, 1, 3, 6), (CFRange{1, 2})) << "a toolkit that counts units itself";
    EXPECT_EQ(utf16Range(text, -1, 99, 6), (CFRange{0, 6}));
    EXPECT_EQ(withLineFeeds(QStringLiteral("a\r\nb\rc\u2029d\u2028e")),
              QStringLiteral("a\nb\nc\nd\ne"));
}

TEST(CodePoints, UnderstandsWhatAnApplicationSaysIsSelected)
{
    const QString text = QString::fromUtf8("a😀b😀cd");
    EXPECT_TRUE(isSelection(text, 3, 4, 2, 5)) << "in characters";
    EXPECT_TRUE(isSelection(text, 3, 4, 3, 7)) << "in UTF-16 units";
    // Read from Chromium: 2 to 15 came back as 2 to 12, 0 to 17 as 0 to 0.
    const QString family = QString::fromUtf8("Family 👩‍👩‍👧‍👦, wave 👋🏽");
    EXPECT_TRUE(isSelection(family, 2, 17, 2, 12));
    EXPECT_FALSE(isSelection(family, 2, 17, 2, 11));
    EXPECT_FALSE(isSelectionHidden(family, 2, 17));
    EXPECT_TRUE(isSelectionHidden(family, 0, 21));
    EXPECT_FALSE(isSelection(text, 3, 4, 2, 4));
    EXPECT_FALSE(isSelection(text, 3, 4, 0, 5));
    EXPECT_EQ(withoutPairMarks(QString::fromUtf8("\ufeffa😀\ufeffb\ufeff")),
              QString::fromUtf8("\ufeffa😀b\ufeff"));
}

TEST(RichText, ReadsTheParagraphsOfADocumentAsLines)
{
    const auto paragraph = [](const char *text, qint32 count, qint32 caret) {
        TextNode node;
        node.facts.role = quint32(Role::Paragraph);
        node.text = QString::fromUtf8(text);
        node.path = text;
        node.characterCount = count;
        node.caret = caret;
        return node;
    };
    const RichTextContent flow =
        flattenedFlow({paragraph("", 0, -1), paragraph("😀 a", 4, -1), paragraph("", 0, -1),
                       paragraph("😀 b", 4, 3), paragraph("", 0, -1)});
    EXPECT_EQ(flow.text, QString::fromUtf8("\n😀 a\n\n😀 b\n"));
    EXPECT_EQ(flow.pieces.size(), 5);
    EXPECT_EQ(flow.pieces.at(3).position, 7);
    EXPECT_TRUE(flow.pieces.at(3).countsUnits);
    EXPECT_EQ(flow.caret, 10);
    EXPECT_EQ(flattenedFlow({paragraph("😀 a", 3, 2)}).caret, 3) << "counted in characters";
}

TEST(RichText, KnowsWhereEachPieceStands)
{
    TextNode page = node(Role::Section, "div", "block", QStringLiteral("\ufffc\ufffc"),
                         {node(Role::Paragraph, "p", "block", QStringLiteral("one \ufffc!"),
                               {node(Role::Link, "b", "inline", QStringLiteral("two"))}),
                          node(Role::Paragraph, "p", "block", QStringLiteral("three\n"))});
    page.children[0].path = "/p1";
    page.children[0].children[0].path = "/b";
    page.children[1].path = "/p2";
    const RichTextContent content = flattened(page);
    QStringList pieces;
    for (const TextPiece &piece : content.pieces) {
        pieces.append(QString::fromLatin1(piece.path) + u' ' +
                      content.text.mid(piece.position, piece.length));
        EXPECT_EQ(piece.text.mid(piece.offset, piece.length),
                  content.text.mid(piece.position, piece.length));
    }
    EXPECT_EQ(pieces.join(u'|'), QStringLiteral("/p1 one |/b two|/p1 !|/p2 three"));
}
