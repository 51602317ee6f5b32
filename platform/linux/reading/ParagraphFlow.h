// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiApplication.h"
#include "platform/linux/reading/ElementFacts.h"

#include <functional>

namespace platform::linux_
{

/// Whether the element is one of the paragraphs that a word processor's document or text box is
/// made of, each an element of its own.
bool isParagraphOfDocument(const ElementFacts &facts);

/// Paragraphs that belong together, in the order of the text.
struct ParagraphFlow {
    QList<QByteArray> paths;
    /// The text box or document that they lie in.
    QByteArray parent;
};

/// Finds the paragraphs that belong together with this one, itself included, by the relations
/// "flows from" and "flows to" (AtspiRelationType): those that are out of sight are no children of
/// their document. `parent`: where it is known. A text box replaces its paragraphs when some are
/// added or removed; its first one then stands in for one that is gone. Does not wait. `completion`
/// is called once, from within the application's answer; with `path` alone where there are more
/// paragraphs than a letter has, or where the application does not say.
void findFlow(AtspiApplication &application, const QByteArray &path, const QByteArray &parent,
              std::function<void(const ParagraphFlow &)> completion);

} // namespace platform::linux_
