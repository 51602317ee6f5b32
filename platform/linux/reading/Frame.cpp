// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/Frame.h"

#include "platform/linux/reading/Geometry.h"

namespace platform::linux_
{

using atspi::Role;

namespace
{

/// How many elements around one are asked.
constexpr int maxDepth = 64;
constexpr qint32 maxPlace = 1 << 24; // pixels

std::optional<QRect> readExtents(DBusMessage &reply)
{
    if (!reply.enterStruct("iiii"))
        return std::nullopt;
    const auto x = reply.readInt32();
    const auto y = reply.readInt32();
    const auto width = reply.readInt32();
    const auto height = reply.readInt32();
    // What scrolls may be long, but no longer than can be reckoned with.
    const auto isPlace = [](qint32 place) { return place >= -maxPlace && place <= maxPlace; };
    if (!x || !y || !width || !height || *width <= 0 || *height <= 0 || !isPlace(*x) ||
        !isPlace(*y) || !isPlace(*width) || !isPlace(*height))
        return std::nullopt;
    return QRect(*x, *y, *width, *height);
}

bool isTopLevel(quint32 role)
{
    return Role(role) == Role::Frame || Role(role) == Role::Window || Role(role) == Role::Dialog;
}

/// Whether an element shows only a part of what lies in it.
bool clipsItsContents(quint32 role)
{
    switch (Role(role)) {
    case Role::ScrollPane:
    case Role::Viewport:
    case Role::Frame:
    case Role::Window:
    case Role::Dialog:
    case Role::InternalFrame:
    case Role::DocumentWeb:
        return true;
    default:
        return false;
    }
}

} // namespace

AXError readFrame(AtspiApplication &application, const ObjectRef &element,
                  const ElementFacts &facts, std::optional<WindowPlace> place, bool isPlaceNeeded,
                  QRectF &frame)
{
    const bool isGtk4 = facts.toolkit == "GTK";
    if (!place && (isGtk4 || isPlaceNeeded))
        return AXError::NoValue;
    // Of a place on the screen that they do not know, programs say what they like.
    const auto coordinates =
        place && place->countsFromWindow ? atspi::CoordType::Window : atspi::CoordType::Screen;
    const QDeadlineTimer deadline(AtspiApplication::patience);
    std::optional<QRect> extents;
    ObjectRef parent;
    ElementFacts now = facts;
    const auto askParent = [](Pipeline &pipeline, const QByteArray &path, ObjectRef &to) {
        pipeline.property(
            path, atspi::accessibleInterface, "Parent", "(so)",
            [&to](DBusMessage &reply) { to = reply.readObject().value_or(ObjectRef()); });
    };
    {
        Pipeline pipeline(application);
        pipeline.call(
            element.path, atspi::componentInterface, "GetExtents",
            [&](DBusMessage &reply) { extents = readExtents(reply); }, "u", quint32(coordinates));
        pipeline.call(element.path, atspi::accessibleInterface, "GetState",
                      [&](DBusMessage &reply) {
                          now.setStates(reply.readUInt32s().value_or(QList<quint32>()));
                      });
        askParent(pipeline, element.path, parent);
        if (!pipeline.wait(deadline))
            return AXError::CannotComplete;
    }
    if (now.toolkit.isEmpty())
        now.toolkit = application.toolkit();
    if (!extents || isHidden(now))
        return AXError::NoValue;
    QRect visible = *extents;
    std::optional<QRect> topLevel;
    // A text that scrolls may report all of itself: the part that can be seen is what lies in each
    // element around it that clips.
    for (int depth = 0; depth < maxDepth && !parent.isNull() && parent.busName == element.busName;
         ++depth) {
        quint32 role = 0;
        std::optional<QRect> around;
        ObjectRef next;
        Pipeline pipeline(application);
        pipeline.call(parent.path, atspi::accessibleInterface, "GetRole",
                      [&](DBusMessage &reply) { role = reply.readUInt32().value_or(0); });
        pipeline.call(
            parent.path, atspi::componentInterface, "GetExtents",
            [&](DBusMessage &reply) { around = readExtents(reply); }, "u", quint32(coordinates));
        askParent(pipeline, parent.path, next);
        // Better a frame that is not clipped than none: a busy application may need long for all
        // that lies around its input.
        if (!pipeline.wait(deadline))
            break;
        if (Role(role) == Role::Application)
            break;
        if (around && clipsItsContents(role))
            visible = visible.intersected(*around);
        if (around && isTopLevel(role))
            topLevel = around;
        parent = next;
    }
    QList<ScreenGeometry> screens = currentScreens();
    if (place) {
        place->countsFromWindow |= isGtk4;
        visible =
            ontoScreen(visible, topLevel.value_or(QRect(QPoint(), place->contents.size())), *place);
        if (place->contents.intersects(visible))
            visible = visible.intersected(place->contents);
        if (place->inPoints) {
            for (ScreenGeometry &screen : screens)
                screen.scale = 1;
        }
    }
    if (!isPlausible(visible, screens))
        return AXError::NoValue;
    frame = toPoints(visible, screens);
    return AXError::Success;
}

} // namespace platform::linux_
