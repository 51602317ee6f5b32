// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/Attributes.h"

#include "platform/linux/reading/CodePoints.h"
#include "platform/linux/reading/RichText.h"

namespace platform::linux_
{

namespace
{

/// More children than a window can show are data, and no way to look for an input.
constexpr int maxChildren = 50'000;

} // namespace

bool fetchFacts(AtspiApplication &application, const QByteArray &path, ElementFacts &facts,
                QDeadlineTimer deadline)
{
    if (!application.isAnswering())
        return false;
    ElementFacts fetched;
    bool known = false;
    Pipeline pipeline(application);
    pipeline.call(path, atspi::accessibleInterface, "GetRole", [&](DBusMessage &reply) {
        const auto role = reply.readUInt32();
        known = role.has_value();
        fetched.role = role.value_or(0);
    });
    pipeline.call(path, atspi::accessibleInterface, "GetState", [&](DBusMessage &reply) {
        fetched.setStates(reply.readUInt32s().value_or(QList<quint32>()));
    });
    pipeline.call(path, atspi::accessibleInterface, "GetInterfaces", [&](DBusMessage &reply) {
        fetched.setInterfaces(reply.readStrings().value_or(QList<QByteArray>()));
    });
    pipeline.call(path, atspi::accessibleInterface, "GetAttributes", [&](DBusMessage &reply) {
        fetched.setAttributes(
            reply.readDictionary().value_or(QList<std::pair<QByteArray, QByteArray>>()));
    });
    if (!pipeline.wait(deadline) || !known)
        return false;
    if (fetched.toolkit.isEmpty())
        fetched.toolkit = application.toolkit();
    facts = fetched;
    return true;
}

AXError readText(AtspiApplication &application, const QByteArray &path, AXValue &value)
{
    const std::optional<QString> text = waitForRichText(application, path);
    if (!text)
        return application.isAnswering() ? AXError::Failure : AXError::CannotComplete;
    value = withLineFeeds(*text);
    return AXError::Success;
}

AXError readNumber(AtspiApplication &application, const QByteArray &path, AXValue &value)
{
    std::optional<double> number;
    Pipeline pipeline(application);
    pipeline.property(path, atspi::valueInterface, "CurrentValue", "d",
                      [&](DBusMessage &reply) { number = reply.readDouble(); });
    if (!pipeline.wait())
        return AXError::CannotComplete;
    if (!number)
        return AXError::NoValue;
    value = *number;
    return AXError::Success;
}

AXError readSelection(AtspiApplication &application, const QByteArray &path, bool range,
                      AXValue &value)
{
    QString text;
    std::optional<qint32> caret;
    qint32 selections = 0;
    std::optional<std::pair<qint32, qint32>> selection;
    qint32 count = 0;
    Pipeline pipeline(application);
    pipeline.property(path, atspi::textInterface, "CharacterCount", "i",
                      [&](DBusMessage &reply) { count = reply.readInt32().value_or(0); });
    pipeline.call(
        path, atspi::textInterface, "GetText",
        [&](DBusMessage &reply) { text = reply.readString().value_or(QString()); }, "ii", 0, -1);
    pipeline.property(path, atspi::textInterface, "CaretOffset", "i",
                      [&](DBusMessage &reply) { caret = reply.readInt32(); });
    pipeline.call(path, atspi::textInterface, "GetNSelections",
                  [&](DBusMessage &reply) { selections = reply.readInt32().value_or(0); });
    pipeline.call(
        path, atspi::textInterface, "GetSelection",
        [&](DBusMessage &reply) {
            const auto start = reply.readInt32();
            const auto end = reply.readInt32();
            if (start && end)
                selection = {*start, *end};
        },
        "i", 0);
    if (!pipeline.wait())
        return AXError::CannotComplete;
    if (selections <= 0 || !selection) {
        if (!caret || *caret < 0)
            return AXError::NoValue;
        selection = {*caret, *caret};
    }
    const CFRange found = utf16Range(text, selection->first, selection->second, count);
    if (range)
        value = found;
    else
        value = withLineFeeds(
            text.mid(found.location, found.length).remove(QChar::ObjectReplacementCharacter));
    return AXError::Success;
}

AXError readChildren(AtspiApplication &application, const QByteArray &path,
                     QList<ObjectRef> &children)
{
    std::optional<qint32> count;
    Pipeline first(application);
    first.property(path, atspi::accessibleInterface, "ChildCount", "i",
                   [&](DBusMessage &reply) { count = reply.readInt32(); });
    if (!first.wait())
        return AXError::CannotComplete;
    // Asking a spreadsheet for all of its cells would stop it.
    if (count.value_or(0) > maxChildren)
        return AXError::CannotComplete;
    std::optional<QList<ObjectRef>> refs;
    Pipeline second(application);
    second.call(path, atspi::accessibleInterface, "GetChildren",
                [&](DBusMessage &reply) { refs = reply.readObjects(); });
    if (!second.wait())
        return AXError::CannotComplete;
    if (!refs)
        return AXError::InvalidUIElement;
    children = *refs;
    children.removeIf([](const ObjectRef &ref) { return ref.isNull(); });
    return AXError::Success;
}

} // namespace platform::linux_
