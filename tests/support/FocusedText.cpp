// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "tests/support/FocusedText.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QList>

namespace test
{

namespace
{

constexpr int callTimeout = 2000; // ms

// Numbers of the accessibility bus: AtspiStateType.
constexpr int stateActive = 1;
constexpr int stateEditable = 7;
constexpr int stateFocused = 12;

QDBusConnection accessibilityBus()
{
    static const QDBusConnection bus = [] {
        const QDBusMessage answer =
            QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
                QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
        return QDBusConnection::connectToBus(answer.arguments().value(0).toString(),
                                             QStringLiteral("accessibility"));
    }();
    return bus;
}

bool isIn(const QVariant &states, int state)
{
    return qdbus_cast<QList<uint>>(states).value(state / 32) >> (state % 32) & 1;
}

struct Element {
    QString name;
    QString path;

    QVariant call(const char *interface, const char *method,
                  const QVariantList &arguments = {}) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(
            name, path, QString::fromLatin1(interface), QString::fromLatin1(method));
        message.setArguments(arguments);
        const QDBusMessage answer = accessibilityBus().call(message, QDBus::Block, callTimeout);
        if (answer.type() != QDBusMessage::ReplyMessage)
            return {};
        return answer.arguments().value(0);
    }

    QList<Element> children() const
    {
        QList<Element> found;
        const QVariant answer = call("org.a11y.atspi.Accessible", "GetChildren");
        if (!answer.canConvert<QDBusArgument>())
            return found;
        const auto list = answer.value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            Element child;
            QDBusObjectPath childPath;
            list.beginStructure();
            list >> child.name >> childPath;
            list.endStructure();
            child.path = childPath.path();
            found.append(child);
        }
        list.endArray();
        return found;
    }

    bool hasState(int state) const
    {
        return isIn(call("org.a11y.atspi.Accessible", "GetState"), state);
    }
};

std::optional<QString> textBelow(const Element &element)
{
    if (element.hasState(stateFocused) && element.hasState(stateEditable))
        return element.call("org.a11y.atspi.Text", "GetText", {0, -1}).toString();
    for (const Element &child : element.children()) {
        if (auto found = textBelow(child))
            return found;
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> focusedText()
{
    const Element desktop{QStringLiteral("org.a11y.atspi.Registry"),
                          QStringLiteral("/org/a11y/atspi/accessible/root")};
    // Some programs' windows do not say that they are active.
    for (const bool active : {true, false}) {
        for (const Element &application : desktop.children()) {
            for (const Element &window : application.children()) {
                if (window.hasState(stateActive) != active)
                    continue;
                if (auto found = textBelow(window))
                    return found;
            }
        }
    }
    return std::nullopt;
}

} // namespace test
