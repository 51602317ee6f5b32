// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/Applications.h"
#include "platform/linux/ports/ActiveWindow.h"
#include "platform/linux/reading/ElementFacts.h"

#include <QElapsedTimer>
#include <QHash>
#include <QObject>
#include <QRect>

#include <optional>

namespace platform::linux_
{

/// Knows which element has the keyboard focus: by the events that applications send, checked
/// against the window system's active window, and by asking where events are missing or wrong. The
/// answer is kept, so that asking again costs nothing; a question in the background keeps it
/// true. Main thread only.
class FocusTracker : public QObject
{
    Q_OBJECT
public:
    enum class Kind {
        /// The accessibility bus is not there.
        Unknown,
        /// No window has the keyboard.
        Nothing,
        /// One of our own windows.
        Own,
        /// An application that does not show what has the focus.
        Application,
        /// An application that does not answer at present, or is still being asked.
        Waiting,
        Element,
    };

    struct Focus {
        Kind kind = Kind::Unknown;
        qint32 pid = 0;
        ObjectRef element;
        ElementFacts facts;
        /// The window that has the keyboard; 0 where the window system does not tell.
        quint32 window = 0;
    };

    FocusTracker(Applications &bus, ActiveWindow &activeWindow, QObject *parent = nullptr);

    /// Waits for an application at most AtspiApplication::patience, and only when it is not yet
    /// known which of its elements has the focus.
    Focus current();

    /// Whether the element still has the focus, by what is known without asking a program.
    bool hasFocus(const ObjectRef &element);
    /// The same, in the window with that number.
    bool hasFocus(const ObjectRef &element, quint32 window);

    /// Whether the element itself has reported the focus, so that its state can be relied on.
    bool reportsFocus(const ObjectRef &element) const;

    /// The active window, when it belongs to the application's process.
    std::optional<quint32> windowOf(const QByteArray &busName);

    /// Has the extents of this element asked for too, whenever its states are, for as long as it
    /// has the focus; a null reference ends it.
    void watchExtents(const ObjectRef &element);

Q_SIGNALS:
    /// The watched element has other extents, or is shown or hidden.
    void extentsChanged();

private:
    struct ApplicationFocus {
        /// What the application reported, and the editable region that it lies in.
        ObjectRef reported;
        /// What it reported before, for the case that this is an empty claim.
        ObjectRef former;
        ObjectRef element;
        ElementFacts facts;
        bool verified = false;
        /// It never says that it is focused, but nothing else does either.
        bool unconfirmed = false;
        quint64 order = 0;
        bool searching = false;
        bool searched = false;
        int fruitlessSearches = 0;
        QElapsedTimer sinceSearch;
        bool refreshing = false;
        /// How often the attributes have been asked for again while they name no tag.
        int attributeRequests = 0;
        QElapsedTimer sinceRefresh;
    };

    void onFocusChanged(const ObjectRef &element, bool focused);
    void onWindowActivated(const ObjectRef &window, bool active);
    Focus inApplication(AtspiApplication &application);
    bool verify(AtspiApplication &application, ApplicationFocus &focus, QDeadlineTimer deadline);
    void search(AtspiApplication &application, ApplicationFocus &focus, QDeadlineTimer deadline);
    void refresh(AtspiApplication &application, ApplicationFocus &focus);
    bool isParentFocused(AtspiApplication &application, const QByteArray &path,
                         QDeadlineTimer deadline);
    AtspiApplication *applicationOf(const QList<qint32> &pids);
    void forgetChecks();
    /// What tells whether the watched element has moved.
    struct Place {
        QRect extents;
        bool isHidden = false;
        friend bool operator==(const Place &, const Place &) = default;
    };
    void askPlace(AtspiApplication &application, const ElementFacts &facts);

    Applications &m_bus;
    ActiveWindow &m_activeWindow;
    QHash<QByteArray, ApplicationFocus> m_focus;
    QByteArray m_lastReporter;
    quint64 m_order = 0;
    ObjectRef m_watched;
    /// What the watched element last said; nothing before.
    std::optional<Place> m_watchedPlace;
    quint32 m_window = 0;
    qint32 m_windowPid = 0;
    qint32 m_answeredPid = 0;
};

} // namespace platform::linux_
