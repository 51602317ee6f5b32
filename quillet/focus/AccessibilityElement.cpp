// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/focus/AccessibilityElement.h"

using platform::AXError;

std::optional<QStringList> getAllAttributes(platform::Accessibility &accessibility,
                                            const platform::AXUIElement &element)
{
    QStringList names;
    if (accessibility.AXUIElementCopyAttributeNames(element, names) != AXError::Success)
        return std::nullopt;
    return names;
}

std::optional<QRectF> getFrame(platform::Accessibility &accessibility,
                               const platform::AXUIElement &element)
{
    return getAttribute<QRectF>(accessibility, element, kAXFrameAttribute);
}
