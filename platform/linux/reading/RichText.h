// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiApplication.h"
#include "platform/linux/reading/ElementFacts.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace platform::linux_
{

/// One element of a text, with those that are embedded in it.
struct TextNode {
    ElementFacts facts;
    /// What the Text interface says; every embedded element is one U+FFFC.
    QString text;
    std::vector<TextNode> children;
    QByteArray path{};
    /// How many characters the Text interface counts, and where the caret is in these; negative for
    /// elsewhere. Of outermost elements only.
    std::optional<qint32> characterCount{};
    std::optional<qint32> caret{};
};

/// The text as the user sees it: what is embedded stands in its place, blocks begin a new line,
/// and a line break that only holds an empty line open, as editors put at the end of a paragraph,
/// counts as none. List markers are the page's, not the user's.
QString flatten(const TextNode &node);

/// A stretch of one element's text, and where it stands in the text that the user sees. Positions
/// and lengths are UTF-16 units.
struct TextPiece {
    qsizetype position = 0;
    qsizetype length = 0;
    /// The element, its own text, and where the stretch begins in that.
    QByteArray path;
    QString text;
    qsizetype offset = 0;
    /// Whether the element counts UTF-16 units instead of characters.
    bool countsUnits = false;
};

/// The text as the user sees it, with the pieces that it is made of, in their order.
struct RichTextContent {
    QString text;
    QList<TextPiece> pieces;
    /// What the outermost element itself says.
    QString ownText;
    /// Whether the pieces are paragraphs that follow one another, each an element of its own.
    bool isFlow = false;
    /// What a flow lies in.
    QByteArray flowParent{};
    /// Where the caret is, when it is in the outermost element's own text.
    std::optional<qsizetype> caret{};
};

RichTextContent flattened(const TextNode &node);

/// The paragraphs, in their order, as one text: one line each. Empty ones count.
RichTextContent flattenedFlow(const std::vector<TextNode> &paragraphs);

/// Reads the whole text of the element, embedded elements included, without waiting. A paragraph of
/// a document is read with those before and behind it, unless they are very many. `completion`
/// is called once, from within the application's answer; with nothing when the application does not
/// say or what it says has no end.
/// `flowParent`: where the element is known to be a paragraph, as read before.
void readRichContent(AtspiApplication &application, const QByteArray &path,
                     std::function<void(std::optional<RichTextContent>)> completion,
                     const QByteArray &flowParent = {});

/// The same, without the pieces.
void readRichText(AtspiApplication &application, const QByteArray &path,
                  std::function<void(const std::optional<QString> &)> completion);

/// The same, waiting for it at most until the deadline; an application that misses it is marked as
/// not answering.
std::optional<QString>
waitForRichText(AtspiApplication &application, const QByteArray &path,
                QDeadlineTimer deadline = QDeadlineTimer(AtspiApplication::patience));

} // namespace platform::linux_
