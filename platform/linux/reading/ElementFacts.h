// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiProtocol.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <utility>

namespace platform::linux_
{

/// What an application says of one of its elements, as far as decisions need it.
struct ElementFacts {
    enum Interface : std::uint8_t {
        Text = 1,
        EditableText = 2,
        Component = 4,
        Value = 8,
        Collection = 16,
    };

    std::uint32_t role = 0;
    atspi::States states = 0;
    std::uint8_t interfaces = 0;
    /// The element's name in the web page's markup; empty outside web pages.
    QByteArray tag;
    QByteArray inputType;
    /// What the page says the input is for, as autocomplete hints of HTML; empty for nothing.
    QByteArray purpose;
    QByteArray display;
    QByteArray toolkit;

    bool is(atspi::Role wanted) const { return role == std::uint32_t(wanted); }
    bool has(atspi::State state) const { return atspi::has(states, state); }
    bool has(Interface wanted) const { return (interfaces & wanted) != 0; }

    void setStates(const QList<quint32> &words);
    void setInterfaces(const QList<QByteArray> &names);
    void setAttributes(const QList<std::pair<QByteArray, QByteArray>> &attributes);
};

/// A password, and what else is never read: an input whose page says that it is for a password, a
/// one-time code or a payment card.
bool isPassword(const ElementFacts &facts);
bool isDocument(const ElementFacts &facts);
bool isInWebPage(const ElementFacts &facts);

/// Whether the user may change the element's text: never a password, never a terminal.
bool isEditable(const ElementFacts &facts);

/// A region that a page has made editable as a whole, in contrast to its form's inputs.
bool isEditingHost(const ElementFacts &facts);

/// Whether the element is an input of its own, whatever may be done with its text.
bool isInput(const ElementFacts &facts);

/// Whether the application says that the element cannot be seen. GTK 4 never says that anything is
/// showing; while the toolkit is unknown, that is not held against it.
bool isHidden(const ElementFacts &facts);

/// The "AX…" name that is nearest to the element's role.
QString axRole(const ElementFacts &facts);

/// Whether the element has a text of its own to show or edit, in contrast to one that only contains
/// others that have.
bool hasTextValue(const ElementFacts &facts);

/// Whether the text of the input ends with a line break more than the user's where the user's last
/// line is empty: Chromium's text areas hold that line open with one.
bool holdsLastLineOpen(const ElementFacts &facts);

/// Whether the element lies in a line of text with its neighbours, or begins a line of its own.
bool isInline(const ElementFacts &facts);

/// Whether an editor is worth asking where the editable region begins that the element lies in.
bool mayBeInsideEditingHost(const ElementFacts &facts);

/// What AXUIElementCopyAttributeNames lists for the element.
QStringList attributeNames(const ElementFacts &facts);

} // namespace platform::linux_
