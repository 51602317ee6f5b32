// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/VisualStyle.h"
#include "quillet/widgets/Fonts.h"

#include <gtest/gtest.h>

#include <QFontDatabase>
#include <QFontInfo>
#include <QImage>
#include <QPainter>
#include <QRawFont>

namespace
{

QColor parsed(const char *hex)
{
    return colorFromHex(QString::fromUtf8(hex));
}

/// Draws a button on red, so that what is not painted stays red.
QImage drawn(const ButtonStyle &style, ButtonStyle::Configuration configuration)
{
    QImage image(style.size(), QImage::Format_RGB32);
    image.fill(Qt::red);
    configuration.bounds = image.rect();
    QPainter painter(&image);
    style.makeBody(painter, configuration);
    return image;
}

QColor atLeftEnd(const QImage &image)
{
    return image.pixelColor(12, image.height() / 2);
}

bool hasPixel(const QImage &image, const QColor &color)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) == color)
                return true;
    return false;
}

TEST(ColorFromHex, ReadsSixCharactersAfterTrimming)
{
    const QColor accent(108, 61, 245);
    for (const char *text : {"#6C3DF5", "6C3DF5", "  6c3df5\n", "—#6C3DF5;…", "#6c3DF5#"})
        EXPECT_EQ(parsed(text), accent) << text;
    EXPECT_EQ(accent.alpha(), 255);
    EXPECT_EQ(parsed("#000000"), QColor(0, 0, 0));
}

TEST(ColorFromHex, TakesTheLeadingRunOfDigits)
{
    EXPECT_EQ(parsed("ZZZZZZ"), QColor(0, 0, 0));
    EXPECT_EQ(parsed("FFZZZZ"), QColor(0, 0, 255));
    EXPECT_EQ(parsed("12 4AB"), QColor(0, 0, 0x12));
    EXPECT_EQ(parsed("0x12FF"), QColor(0, 0x12, 0xFF));
    EXPECT_EQ(parsed("0XZZZZ"), QColor(0, 0, 0));
    // Letters and digits of other scripts are not trimmed, and are no hexadecimal digits.
    EXPECT_EQ(parsed("FF٣٣٣٣"), QColor(0, 0, 255));
    EXPECT_EQ(parsed("ééFFFF"), QColor(0, 0, 0));
    EXPECT_EQ(parsed("A𝔸𝔸𝔸𝔸𝔸"), QColor(0, 0, 10));
}

TEST(ColorFromHex, AnyOtherLengthIsAlmostBlack)
{
    for (const char *text :
         {"", "#", "#FFF", "#FFFF", "#6C3DF5FF", "0x6C3DF5", "12345678901234567890"})
        EXPECT_EQ(parsed(text), QColor(1, 1, 0)) << text;
}

TEST(Fonts, NamesGiveTheirFaces)
{
    const struct {
        const char *name;
        const char *style;
    } faces[] = {
        {"Manrope-Regular", "Regular"}, {"Manrope-SemiBold", "SemiBold"}, {"Manrope-Bold", "Bold"}};
    for (const auto &face : faces) {
        const QFont font = customFont(QString::fromUtf8(face.name), 18);
        const QRawFont raw = QRawFont::fromFont(font);
        EXPECT_TRUE(raw.familyName().startsWith(QStringLiteral("Manrope"))) << face.name;
        EXPECT_EQ(raw.styleName(), QString::fromUtf8(face.style));
        EXPECT_EQ(raw.pixelSize(), 18);
    }
}

TEST(ButtonStyles, PurpleShowsItsStates)
{
    const PurpleButtonStyle style;
    EXPECT_EQ(style.size(), QSize(350, 50));

    const QColor purple(0x6C, 0x3D, 0xF5);
    const QImage normal = drawn(style, {{QStringLiteral("Next")}});
    EXPECT_EQ(atLeftEnd(normal), purple);
    EXPECT_EQ(normal.pixelColor(0, 0), QColor(Qt::red)) << "the corners are cut off";
    EXPECT_TRUE(hasPixel(normal, Qt::white)) << "the label is white";
    EXPECT_FALSE(hasPixel(drawn(style, {}), Qt::white));

    const QImage disabled = drawn(style, {.label = {}, .isEnabled = false});
    EXPECT_EQ(atLeftEnd(disabled), QColor(0xC4, 0xA7, 0xE7));

    // Four fifths of the purple, one fifth of what is behind.
    const QColor dimmed = atLeftEnd(drawn(style, {.label = {}, .isPressed = true}));
    EXPECT_NEAR(dimmed.red(), 0.8 * 0x6C + 0.2 * 255, 2);
    EXPECT_NEAR(dimmed.green(), 0.8 * 0x3D, 2);
    EXPECT_NEAR(dimmed.blue(), 0.8 * 0xF5, 2);

    EXPECT_TRUE(hasPixel(drawn(style, {.label = {}, .showsFocus = true}), Qt::white));
}

} // namespace
