// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/widgets/VerticalStack.h"
#include "quillet/widgets/TextView.h"

#include <gtest/gtest.h>

#include <QWidget>

namespace
{

using Alignment = VerticalStack::Alignment;

QWidget *block(int width, int height)
{
    auto *widget = new QWidget;
    widget->setFixedSize(width, height);
    return widget;
}

TEST(VerticalStack, SpacersShareTheRoomEquallyAndHaveGapsLikeWidgets)
{
    QWidget host;
    VerticalStack stack(Alignment::Center, 15, &host);
    stack.setContentsMargins(40, 40, 40, 40);
    QWidget *first = block(100, 60);
    QWidget *second = block(200, 50);
    stack.addSpacer();
    stack.addWidget(first);
    stack.addSpacer();
    stack.addWidget(second);
    stack.setGeometry(QRect(0, 0, 600, 600));
    // 520 - 110 - 3 gaps of 15 leaves 365 for two.
    EXPECT_EQ(first->geometry(), QRect(250, 40 + 182 + 15, 100, 60));
    EXPECT_EQ(second->geometry(), QRect(200, 510, 200, 50));

    second->hide();
    stack.setGeometry(QRect(0, 0, 600, 600));
    EXPECT_EQ(first->y(), 40 + (520 - 60 - 30) / 2 + 15);
}

TEST(VerticalStack, WhatExpandsLeavesSpacersTheirMinimum)
{
    QWidget host;
    VerticalStack stack(Alignment::Leading, 15, &host);
    auto *page = new QWidget;
    page->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    QWidget *button = block(350, 50);
    stack.addSpacer();
    stack.addWidget(page);
    stack.addSpacer();
    stack.addWidget(button);
    stack.setGeometry(QRect(40, 40, 520, 520));
    EXPECT_EQ(page->geometry(), QRect(40, 63, 520, 409));
    EXPECT_EQ(button->geometry(), QRect(40, 510, 350, 50));
}

TEST(VerticalStack, NothingIsSqueezed)
{
    QWidget host;
    VerticalStack stack(Alignment::Center, 20, &host);
    QWidget *first = block(10, 80);
    QWidget *second = block(10, 80);
    stack.addWidget(first);
    stack.addFixedSpacer(20);
    stack.addWidget(second);
    stack.addSpacer();
    QWidget *third = block(10, 10);
    stack.addWidget(third);
    stack.setGeometry(QRect(0, 0, 100, 100));
    EXPECT_EQ(first->geometry(), QRect(45, 0, 10, 80));
    EXPECT_EQ(second->geometry(), QRect(45, 140, 10, 80));
    EXPECT_EQ(third->geometry(), QRect(45, 140 + 80 + 20 + 8 + 20, 10, 10));
    EXPECT_EQ(stack.sizeHint(), QSize(10, third->y() + 10));
}

TEST(VerticalStack, TextIsAsWideAsItsLinesAndWrapsWhenItMust)
{
    QWidget host;
    VerticalStack stack(Alignment::Leading, 0, &host);
    auto *text = new TextView(QStringLiteral("one two three\nfour"), host.font(), Qt::black,
                              Qt::AlignLeading);
    stack.addWidget(text);
    stack.setGeometry(QRect(0, 0, 500, 500));
    const int line = text->fontMetrics().lineSpacing();
    EXPECT_NEAR(text->height(), 2 * line, 1);
    EXPECT_NEAR(text->width(),
                text->fontMetrics().horizontalAdvance(QStringLiteral("one two three")), 2);

    const int narrow = text->width() - 5;
    stack.setGeometry(QRect(0, 0, narrow, 500));
    EXPECT_EQ(text->width(), narrow);
    EXPECT_NEAR(text->height(), 3 * line, 1);
    EXPECT_EQ(stack.heightForWidth(narrow), text->height());
}

} // namespace
