// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"

#include <QRectF>
#include <QString>
#include <QStringList>

#include <optional>
#include <variant>

/// The attribute that holds an element's place on the screen.
inline const QString kAXFrameAttribute = QStringLiteral("AXFrame");

/// Reads `attribute` of `element` as a T: QString, bool, platform::AXUIElement,
/// QList<platform::AXUIElement> or platform::CFRange. Nothing on any failure: permission missing,
/// element gone, attribute unsupported, value absent or of another type. Main thread.
template <typename T>
std::optional<T> getAttribute(platform::Accessibility &accessibility,
                              const platform::AXUIElement &element, const QString &attribute)
{
    platform::AXValue value;
    if (accessibility.AXUIElementCopyAttributeValue(element, attribute, value) !=
        platform::AXError::Success)
        return std::nullopt;
    if (T *held = std::get_if<T>(&value))
        return std::move(*held);
    return std::nullopt;
}

/// The names of the attributes that `element` has; nothing on any failure. Main thread.
std::optional<QStringList> getAllAttributes(platform::Accessibility &accessibility,
                                            const platform::AXUIElement &element);

/// The element's frame in accessibility coordinates (points, origin at the top left of the main
/// screen, y growing downwards); nothing on any failure. Main thread.
std::optional<QRectF> getFrame(platform::Accessibility &accessibility,
                               const platform::AXUIElement &element);
