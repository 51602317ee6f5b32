// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiApplication.h"

#include <QDeadlineTimer>
#include <QObject>

namespace platform::linux_
{

/// The port to the accessibility bus: which applications are on it, and what they report. The real
/// one is AtspiBus; tests have one that they fill themselves. Main thread only.
class Applications : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;

    /// True while the accessibility bus answers.
    virtual bool isConnected() const = 0;

    /// Waits until it is known whether the service is there, and, while listening, until the
    /// applications' processes are known, at most until `deadline`.
    virtual void waitUntilSettled(QDeadlineTimer deadline) = 0;

    /// Takes in what applications have reported, without waiting.
    virtual void catchUp() = 0;

    /// The application of this bus name; null when it has left.
    virtual AtspiApplication *application(const QByteArray &busName) = 0;
    /// Those of the process, in the order in which they came.
    virtual QList<AtspiApplication *> applications(qint32 pid) = 0;

Q_SIGNALS:
    void focusChanged(const platform::linux_::ObjectRef &element, bool focused);
    void windowActivated(const platform::linux_::ObjectRef &window, bool active);
    void applicationLeft(const QByteArray &busName);
    /// Applications may have had something to report while the events were paused.
    void eventsResumed();
};

} // namespace platform::linux_
