// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/accessibility/OwnWindows.h"

#include "platform/ScreenCoordinates.h"
#include "platform/linux/reading/CodePoints.h"

#include <QAccessibleInterface>
#include <QGuiApplication>
#include <QWidget>
#include <QWindow>

namespace platform::linux_
{

namespace
{

QAccessibleInterface *interfaceOf(const OwnElement &element)
{
    QAccessibleInterface *interface = QAccessible::accessibleInterface(element.id());
    return interface && interface->isValid() ? interface : nullptr;
}

AXUIElement elementOf(QAccessibleInterface *interface)
{
    if (!interface || !interface->isValid())
        return {};
    return AXUIElement(std::make_shared<OwnElement>(QAccessible::uniqueId(interface)));
}

bool isPassword(QAccessibleInterface *interface)
{
    return interface->state().passwordEdit;
}

bool isEditable(QAccessibleInterface *interface)
{
    const QAccessible::State state = interface->state();
    return state.editable && !state.readOnly && !state.disabled && !state.passwordEdit &&
           interface->editableTextInterface();
}

QString roleOf(QAccessibleInterface *interface)
{
    switch (interface->role()) {
    case QAccessible::EditableText:
        return interface->state().multiLine && isEditable(interface) ? QStringLiteral("AXTextArea")
               : interface->state().multiLine ? QStringLiteral("AXStaticText")
                                              : QStringLiteral("AXTextField");
    case QAccessible::StaticText:
        return QStringLiteral("AXStaticText");
    case QAccessible::Button:
    case QAccessible::ButtonMenu:
        return QStringLiteral("AXButton");
    case QAccessible::CheckBox:
        return QStringLiteral("AXCheckBox");
    case QAccessible::RadioButton:
        return QStringLiteral("AXRadioButton");
    case QAccessible::ComboBox:
        return QStringLiteral("AXComboBox");
    case QAccessible::Window:
    case QAccessible::Dialog:
    case QAccessible::AlertMessage:
        return QStringLiteral("AXWindow");
    case QAccessible::Application:
        return QStringLiteral("AXApplication");
    case QAccessible::Graphic:
        return QStringLiteral("AXImage");
    case QAccessible::Link:
        return QStringLiteral("AXLink");
    case QAccessible::PopupMenu:
        return QStringLiteral("AXMenu");
    case QAccessible::MenuItem:
        return QStringLiteral("AXMenuItem");
    case QAccessible::Slider:
        return QStringLiteral("AXSlider");
    case QAccessible::ScrollBar:
        return QStringLiteral("AXScrollBar");
    case QAccessible::Client:
    case QAccessible::Pane:
    case QAccessible::Grouping:
    case QAccessible::LayeredPane:
        return QStringLiteral("AXGroup");
    default:
        return QStringLiteral("AXUnknown");
    }
}

/// Qt's text interfaces count UTF-16 units, as the contract does.
QString textOf(QAccessibleTextInterface *text)
{
    return withLineFeeds(text->text(0, text->characterCount()));
}

} // namespace

AXUIElement OwnWindows::focusedElement()
{
    QObject *focus = QGuiApplication::focusObject();
    if (!focus)
        focus = QGuiApplication::focusWindow();
    QAccessibleInterface *interface =
        focus ? QAccessible::queryAccessibleInterface(focus) : nullptr;
    if (interface) {
        // A list or a table holds the keyboard for one of its items.
        if (QAccessibleInterface *child = interface->focusChild())
            interface = child;
    }
    return elementOf(interface);
}

AXError OwnWindows::copyAttributeValue(const OwnElement &element, const QString &attribute,
                                       AXValue &value)
{
    QAccessibleInterface *interface = interfaceOf(element);
    if (!interface)
        return AXError::InvalidUIElement;
    QAccessibleTextInterface *text = isPassword(interface) ? nullptr : interface->textInterface();
    if (attribute == QLatin1String("AXRole")) {
        value = roleOf(interface);
    } else if (attribute == QLatin1String("AXEditable")) {
        value = isEditable(interface);
    } else if (attribute == QLatin1String("AXChildren")) {
        QList<AXUIElement> children;
        for (int i = 0; i < interface->childCount(); ++i) {
            if (const AXUIElement child = elementOf(interface->child(i)))
                children.append(child);
        }
        value = children;
    } else if (attribute == QLatin1String("AXFrame")) {
        const QRect rect = interface->rect();
        if (rect.isEmpty() || interface->state().invisible)
            return AXError::NoValue;
        value = ScreenCoordinates::current().accessibilityFromToolkit(QRectF(rect));
    } else if (attribute == QLatin1String("AXValue")) {
        if (text)
            value = textOf(text);
        else if (QAccessibleValueInterface *number = interface->valueInterface())
            value = number->currentValue().toDouble();
        else
            return isPassword(interface) ? AXError::NoValue : AXError::AttributeUnsupported;
    } else if (attribute == QLatin1String("AXSelectedText") ||
               attribute == QLatin1String("AXSelectedTextRange")) {
        if (!text)
            return AXError::AttributeUnsupported;
        int start = text->cursorPosition();
        int end = start;
        if (text->selectionCount() > 0)
            text->selection(0, &start, &end);
        if (attribute == QLatin1String("AXSelectedText"))
            value = withLineFeeds(text->text(start, end));
        else
            value = CFRange{start, end - start};
    } else {
        return AXError::AttributeUnsupported;
    }
    return AXError::Success;
}

QPoint OwnWindows::windowPosition(const OwnElement &element)
{
    const QAccessibleInterface *interface = interfaceOf(element);
    const QWindow *window = interface ? interface->window() : nullptr;
    return window ? window->position() : QPoint();
}

AXError OwnWindows::copyAttributeNames(const OwnElement &element, QStringList &names)
{
    QAccessibleInterface *interface = interfaceOf(element);
    if (!interface)
        return AXError::InvalidUIElement;
    names = {QStringLiteral("AXRole"), QStringLiteral("AXChildren"), QStringLiteral("AXEditable"),
             QStringLiteral("AXFrame")};
    if (interface->textInterface() && !isPassword(interface))
        names.append({QStringLiteral("AXValue"), QStringLiteral("AXSelectedText"),
                      QStringLiteral("AXSelectedTextRange")});
    else if (interface->valueInterface())
        names.append(QStringLiteral("AXValue"));
    return AXError::Success;
}

AXError OwnWindows::isAttributeSettable(const OwnElement &element, const QString &attribute,
                                        bool &settable)
{
    QAccessibleInterface *interface = interfaceOf(element);
    if (!interface)
        return AXError::InvalidUIElement;
    settable = attribute == QLatin1String("AXValue") && isEditable(interface);
    return AXError::Success;
}

AXError OwnWindows::setAttributeValue(const OwnElement &element, const QString &attribute,
                                      const AXValue &value)
{
    QAccessibleInterface *interface = interfaceOf(element);
    if (!interface)
        return AXError::InvalidUIElement;
    const QString *const text = std::get_if<QString>(&value);
    if (attribute != QLatin1String("AXValue") || !isEditable(interface))
        return AXError::AttributeUnsupported;
    if (!text)
        return AXError::IllegalArgument;
    const int count = interface->textInterface()->characterCount();
    interface->editableTextInterface()->replaceText(0, count, *text);
    return textOf(interface->textInterface()) == withLineFeeds(*text) ? AXError::Success
                                                                      : AXError::Failure;
}

} // namespace platform::linux_
