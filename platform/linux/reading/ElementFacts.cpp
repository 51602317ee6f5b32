// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/ElementFacts.h"

#include <algorithm>

namespace platform::linux_
{

using atspi::Role;
using atspi::State;

namespace
{

bool isTextInputRole(const ElementFacts &facts)
{
    return facts.is(Role::Text) || facts.is(Role::Entry);
}

/// The values of HTML's attribute "autocomplete" that name secrets; others may stand before them.
bool hasSecretPurpose(const QByteArray &purpose)
{
    const QList<QByteArray> words = purpose.split(' ');
    return std::any_of(words.begin(), words.end(), [](const QByteArray &word) {
        return word == "current-password" || word == "new-password" || word == "one-time-code" ||
               word.startsWith("cc-");
    });
}

QString plainRole(const ElementFacts &facts)
{
    switch (Role(facts.role)) {
    case Role::Application:
        return QStringLiteral("AXApplication");
    case Role::Frame:
    case Role::Window:
    case Role::Dialog:
    case Role::Alert:
    case Role::FileChooser:
    case Role::ColorChooser:
        return QStringLiteral("AXWindow");
    case Role::PushButton:
    case Role::ToggleButton:
        return QStringLiteral("AXButton");
    case Role::PushButtonMenu:
        return QStringLiteral("AXMenuButton");
    case Role::CheckBox:
        return QStringLiteral("AXCheckBox");
    case Role::RadioButton:
        return QStringLiteral("AXRadioButton");
    case Role::ComboBox:
        return QStringLiteral("AXComboBox");
    case Role::Label:
    case Role::Static:
        return QStringLiteral("AXStaticText");
    case Role::Image:
    case Role::Icon:
        return QStringLiteral("AXImage");
    case Role::Link:
        return QStringLiteral("AXLink");
    case Role::Heading:
        return QStringLiteral("AXHeading");
    case Role::List:
    case Role::ListBox:
        return QStringLiteral("AXList");
    case Role::Table:
    case Role::TreeTable:
        return QStringLiteral("AXTable");
    case Role::Tree:
        return QStringLiteral("AXOutline");
    case Role::TableRow:
    case Role::TreeItem:
        return QStringLiteral("AXRow");
    case Role::TableCell:
    case Role::ColumnHeader:
    case Role::RowHeader:
    case Role::TableColumnHeader:
    case Role::TableRowHeader:
        return QStringLiteral("AXCell");
    case Role::Menu:
    case Role::PopupMenu:
        return QStringLiteral("AXMenu");
    case Role::MenuBar:
        return QStringLiteral("AXMenuBar");
    case Role::MenuItem:
    case Role::CheckMenuItem:
    case Role::RadioMenuItem:
        return QStringLiteral("AXMenuItem");
    case Role::PageTabList:
        return QStringLiteral("AXTabGroup");
    case Role::PageTab:
        return QStringLiteral("AXRadioButton");
    case Role::ProgressBar:
        return QStringLiteral("AXProgressIndicator");
    case Role::LevelBar:
        return QStringLiteral("AXLevelIndicator");
    case Role::ScrollBar:
        return QStringLiteral("AXScrollBar");
    case Role::ScrollPane:
    case Role::Viewport:
        return QStringLiteral("AXScrollArea");
    case Role::Slider:
        return QStringLiteral("AXSlider");
    case Role::SpinButton:
        return QStringLiteral("AXIncrementor");
    case Role::SplitPane:
        return QStringLiteral("AXSplitGroup");
    case Role::Separator:
        return QStringLiteral("AXSplitter");
    case Role::ToolBar:
        return QStringLiteral("AXToolbar");
    case Role::ToolTip:
        return QStringLiteral("AXHelpTag");
    case Role::Filler:
    case Role::Panel:
    case Role::LayeredPane:
    case Role::RootPane:
    case Role::GlassPane:
    case Role::OptionPane:
    case Role::InternalFrame:
    case Role::StatusBar:
    case Role::Section:
    case Role::Paragraph:
    case Role::ListItem:
    case Role::Grouping:
    case Role::BlockQuote:
    case Role::Article:
    case Role::Page:
    case Role::InfoBar:
    case Role::Comment:
    case Role::DocumentFrame:
    case Role::DocumentText:
    case Role::DocumentSpreadsheet:
    case Role::DocumentPresentation:
    case Role::Terminal:
        return QStringLiteral("AXGroup");
    default:
        return QStringLiteral("AXUnknown");
    }
}

} // namespace

void ElementFacts::setStates(const QList<quint32> &words)
{
    states = words.value(0) | atspi::States(words.value(1)) << 32;
}

void ElementFacts::setInterfaces(const QList<QByteArray> &names)
{
    interfaces = 0;
    for (const QByteArray &name : names) {
        const QByteArray last = name.mid(name.lastIndexOf('.') + 1);
        if (last == "Text")
            interfaces |= Text;
        else if (last == "EditableText")
            interfaces |= EditableText;
        else if (last == "Component")
            interfaces |= Component;
        else if (last == "Value")
            interfaces |= Value;
        else if (last == "Collection")
            interfaces |= Collection;
    }
}

void ElementFacts::setAttributes(const QList<std::pair<QByteArray, QByteArray>> &attributes)
{
    for (const auto &[key, value] : attributes) {
        if (key == "tag")
            tag = value.toLower();
        else if (key == "text-input-type")
            inputType = value.toLower();
        else if (key == "autocomplete")
            purpose = value.toLower();
        else if (key == "display")
            display = value.toLower();
        else if (key == "toolkit")
            toolkit = value;
    }
}

bool isPassword(const ElementFacts &facts)
{
    return facts.is(Role::PasswordText) || facts.inputType == "password" ||
           hasSecretPurpose(facts.purpose);
}

bool isInput(const ElementFacts &facts)
{
    return isEditable(facts) || isPassword(facts) || facts.is(Role::Entry) ||
           facts.tag == "input" || facts.tag == "textarea";
}

bool isHidden(const ElementFacts &facts)
{
    if (facts.states == 0)
        return false;
    return !facts.has(State::Visible) ||
           (!facts.has(State::Showing) && !facts.toolkit.isEmpty() && facts.toolkit != "GTK");
}

bool isDocument(const ElementFacts &facts)
{
    return facts.is(Role::DocumentWeb) || facts.is(Role::DocumentEmail) ||
           facts.is(Role::HtmlContainer) || (facts.is(Role::DocumentFrame) && !facts.tag.isEmpty());
}

bool isInWebPage(const ElementFacts &facts)
{
    return !facts.tag.isEmpty() || isDocument(facts);
}

bool isEditable(const ElementFacts &facts)
{
    return facts.has(State::Editable) && !facts.has(State::ReadOnly) && !isPassword(facts) &&
           !facts.is(Role::Terminal);
}

bool isEditingHost(const ElementFacts &facts)
{
    if (!isInWebPage(facts) || !isEditable(facts))
        return false;
    // A mail's composer, for one, is a document that is editable as a whole.
    if (isDocument(facts))
        return true;
    if (facts.tag == "input" || facts.tag == "textarea" || facts.tag == "select")
        return false;
    // What lies inside a host is editable too, but is no target of the focus.
    return facts.has(State::MultiLine) || facts.has(State::Focusable) || isTextInputRole(facts);
}

QString axRole(const ElementFacts &facts)
{
    if (isPassword(facts))
        return QStringLiteral("AXTextField");
    if (isDocument(facts))
        return isEditable(facts) ? QStringLiteral("AXTextArea") : QStringLiteral("AXWebArea");
    if (facts.is(Role::ComboBox) && facts.tag == "textarea" && isEditable(facts))
        return QStringLiteral("AXTextArea");
    if (facts.is(Role::ComboBox))
        return QStringLiteral("AXComboBox");
    if (isEditingHost(facts))
        return QStringLiteral("AXTextArea");
    if (isTextInputRole(facts) || facts.is(Role::Paragraph)) {
        // Some toolkits call any text by this role: what cannot be edited is only shown.
        const bool multiLine = facts.has(State::MultiLine) || facts.tag == "textarea";
        if (isEditable(facts) && (multiLine || facts.has(State::SingleLine)))
            return multiLine ? QStringLiteral("AXTextArea") : QStringLiteral("AXTextField");
        if (isTextInputRole(facts) && isEditable(facts))
            return facts.is(Role::Text) ? QStringLiteral("AXTextArea")
                                        : QStringLiteral("AXTextField");
        if (facts.is(Role::Entry))
            return QStringLiteral("AXTextField");
        if (facts.is(Role::Text))
            return QStringLiteral("AXStaticText");
    }
    return plainRole(facts);
}

bool hasTextValue(const ElementFacts &facts)
{
    if (!facts.has(ElementFacts::Text) || isPassword(facts) || facts.is(Role::Terminal))
        return false;
    return isEditable(facts) || isTextInputRole(facts) || facts.is(Role::Label) ||
           facts.is(Role::Static);
}

bool holdsLastLineOpen(const ElementFacts &facts)
{
    return facts.tag == "textarea" && facts.toolkit == "Chromium";
}

bool isInline(const ElementFacts &facts)
{
    if (!facts.display.isEmpty())
        return facts.display.startsWith("inline") || facts.display == "contents" ||
               facts.display == "none";
    switch (Role(facts.role)) {
    case Role::Static:
    case Role::Label:
    case Role::Link:
    case Role::Image:
    case Role::Icon:
    case Role::PushButton:
    case Role::ToggleButton:
    case Role::CheckBox:
    case Role::RadioButton:
    case Role::Entry:
    case Role::ComboBox:
    case Role::Text:
        return true;
    default:
        return false;
    }
}

bool mayBeInsideEditingHost(const ElementFacts &facts)
{
    return isInWebPage(facts) && !isDocument(facts) && facts.has(State::Editable) &&
           facts.tag != "input" && facts.tag != "textarea";
}

QStringList attributeNames(const ElementFacts &facts)
{
    QStringList names{QStringLiteral("AXRole"), QStringLiteral("AXChildren"),
                      QStringLiteral("AXEditable")};
    if (isPassword(facts) || isDocument(facts))
        names.append(QStringLiteral("AXSubrole"));
    if (hasTextValue(facts))
        names.append({QStringLiteral("AXValue"), QStringLiteral("AXSelectedText"),
                      QStringLiteral("AXSelectedTextRange")});
    else if (facts.has(ElementFacts::Value))
        names.append(QStringLiteral("AXValue"));
    if (facts.has(ElementFacts::Component))
        names.append(QStringLiteral("AXFrame"));
    if (isDocument(facts))
        names.append(QStringLiteral("AXFocusedUIElement"));
    return names;
}

} // namespace platform::linux_
