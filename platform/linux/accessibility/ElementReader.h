// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/atspi/AtspiBus.h"
#include "platform/linux/focus/FocusTracker.h"

#include <QElapsedTimer>
#include <QHash>

namespace platform::linux_
{

class ActiveWindow;
class RemoteElement;

/// Reads elements of other applications: what they are, their attributes, and which of them had the
/// focus when it was last looked for. Main thread; it waits at most until the application's
/// deadline.
class ElementReader
{
public:
    /// All three must outlive the reader.
    ElementReader(AtspiBus &bus, FocusTracker &focus, ActiveWindow &activeWindow);

    /// Looks for the focus.
    const FocusTracker::Focus &findFocus();
    /// What the last search found.
    const FocusTracker::Focus &lastFocus() const { return m_lastFocus; }
    /// The element that the last search found; null when it found none of another application.
    AXUIElement focusedElement() const;

    /// What the element is, and its application.
    AXError factsOf(const RemoteElement &element, AtspiApplication *&application,
                    ElementFacts &facts);
    /// Frames are in points from the top left corner of the main screen.
    AXError copyAttributeValue(const RemoteElement &element, const QString &attribute,
                               AXValue &value);

    /// Drops what is known of an application's elements.
    void forget(const QByteArray &busName);

private:
    struct KnownFacts {
        ElementFacts facts;
        QElapsedTimer since;
    };

    void remember(const ObjectRef &element, const ElementFacts &facts);
    AXError copyChildren(AtspiApplication &application, const QByteArray &path, AXValue &value);
    AXError copyFocusedBelow(const RemoteElement &element, AXValue &value);

    AtspiBus &m_bus;
    FocusTracker &m_focus;
    ActiveWindow &m_activeWindow;
    QHash<ObjectRef, KnownFacts> m_facts;
    FocusTracker::Focus m_lastFocus;
};

} // namespace platform::linux_
