// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/popup/ResultTextView.h"
#include "quillet/popup/ChangesView.h"

#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const QString &text, std::ostream *os)
{
    *os << text.left(200).toUtf8().toPercentEncoding(" \n").constData();
}

namespace
{

void append(ResultTextView &view, const QString &text)
{
    view.moveCursor(QTextCursor::End);
    view.textCursor().insertText(text);
}

} // namespace

TEST(ResultTextView, GivesBackWhatItWasGiven)
{
    ResultTextView view;
    for (const QString &text :
         {QString(), QStringLiteral("\n"), QStringLiteral("a\r\nb\rc\n"),
          QStringLiteral("no\u00A0break\u2028line\u2029paragraph\uFDD0\t end "),
          QStringLiteral("👩🏽‍💻 e\u0301 שלום 你好\n\n"), QString(QChar(0xD800))}) {
        view.setString(text);
        EXPECT_EQ(view.string(), text);
    }
}

TEST(ResultTextView, KeepsEveryCharacterAroundAnEdit)
{
    ResultTextView view;
    view.setString(QStringLiteral("no\u00A0break 👩🏽‍💻\n\tsecond\u202F;\n"));
    append(view, QStringLiteral("third"));
    EXPECT_EQ(view.string(),
              QStringLiteral("no\u00A0break 👩🏽‍💻\n\tsecond\u202F;\nthird"));
    view.setString(QStringLiteral("new"));
    EXPECT_EQ(view.string(), QStringLiteral("new"));
}

TEST(ResultTextView, CutsLongLinesForDisplayOnly)
{
    QString longLine;
    while (longLine.size() < 50'000)
        longLine += QStringLiteral("lorem ipsum ");
    const QString unbroken = QStringLiteral("😀").repeated(10'000);
    const QString text = longLine + u'\n' + unbroken + QStringLiteral("\nshort");

    ResultTextView view;
    view.setString(text);
    for (QTextBlock block = view.document()->begin(); block.isValid(); block = block.next()) {
        EXPECT_LE(block.length(), 2001);
        EXPECT_FALSE(block.text().startsWith(QChar(0xDE00)));
    }
    append(view, QStringLiteral("!"));
    EXPECT_EQ(view.string(), text + u'!');

    view.moveCursor(QTextCursor::Start);
    view.textCursor().insertText(QStringLiteral("x\ny"));
    EXPECT_EQ(view.string(), QStringLiteral("x\ny") + text + u'!');

    view.selectAll();
    view.cut();
    view.paste();
    EXPECT_EQ(view.string(), QStringLiteral("x\ny") + text + u'!');
}

/// Where each line begins to be read, in the order of the lines.
template <typename View> QList<int> startsOf(View &view)
{
    view.resize(300, 300);
    view.show();
    QList<int> starts;
    for (QTextBlock block = view.document()->begin(); block.isValid(); block = block.next())
        starts.append(view.cursorRect(QTextCursor(block)).x());
    return starts;
}

TEST(ResultTextView, EachParagraphIsAlignedByItsOwnDirection)
{
    const QString text = QStringLiteral("left\nשלום and more\n12. مرحبا\nleft again ") +
                         QStringLiteral("with words ").repeated(10);
    ResultTextView view;
    view.setString(text);
    ResultTextView growing;
    growing.append(text.first(7));
    growing.append(text.sliced(7));
    ChangesView changes;
    changes.showTexts(text, text, {});
    for (const QList<int> &starts : {startsOf(view), startsOf(growing), startsOf(changes)}) {
        ASSERT_EQ(starts.size(), 4);
        EXPECT_LT(starts[0], 50);
        EXPECT_GT(starts[1], 250);
        EXPECT_GT(starts[2], 250);
        EXPECT_LT(starts[3], 50);
    }
    // A line that wraps is not stretched to the edge: its words keep their distances.
    const QTextLine line = view.document()->lastBlock().layout()->lineAt(0);
    EXPECT_LT(line.naturalTextWidth(), line.width());
    EXPECT_EQ(qRound(line.cursorToX(5) - line.cursorToX(4)),
              qRound(QFontMetricsF(view.font()).horizontalAdvance(u' ')));
}

TEST(ResultTextView, GrowsWithoutCountingAsAnEdit)
{
    ResultTextView view;
    view.resize(200, 60);
    view.show();
    QString whole;
    for (int i = 0; i < 400; ++i) {
        const QString piece = i % 40 ? QStringLiteral("words \u00A0 ") : QStringLiteral("\n");
        view.append(piece);
        whole += piece;
    }
    EXPECT_EQ(view.string(), whole);
    EXPECT_FALSE(view.document()->isModified());
    EXPECT_EQ(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
    view.verticalScrollBar()->setValue(0);
    view.append(QStringLiteral("more\n\n\n"));
    EXPECT_EQ(view.verticalScrollBar()->value(), 0) << "the user has scrolled";
    view.append(QStringLiteral("😀").repeated(3000));
    view.append(QStringLiteral("😀 end"));
    append(view, QStringLiteral("!"));
    EXPECT_EQ(view.string(), whole + QStringLiteral("more\n\n\n") +
                                 QStringLiteral("😀").repeated(3001) + QStringLiteral(" end!"));
}
