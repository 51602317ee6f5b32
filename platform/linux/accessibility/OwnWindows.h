// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/accessibility/Elements.h"

namespace platform::linux_
{

/// Answers for the elements of our own windows from Qt's accessible interfaces, because a question
/// to ourselves over the bus would wait for its own answer. Main thread only.
class OwnWindows
{
public:
    static AXUIElement focusedElement();
    static AXError copyAttributeValue(const OwnElement &element, const QString &attribute,
                                      AXValue &value);
    /// Where the toolkit believes the element's window to be.
    static QPoint windowPosition(const OwnElement &element);
    static AXError copyAttributeNames(const OwnElement &element, QStringList &names);
    static AXError isAttributeSettable(const OwnElement &element, const QString &attribute,
                                       bool &settable);
    static AXError setAttributeValue(const OwnElement &element, const QString &attribute,
                                     const AXValue &value);
};

} // namespace platform::linux_
