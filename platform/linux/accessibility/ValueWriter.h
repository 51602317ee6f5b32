// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/focus/FocusTracker.h"
#include "platform/linux/ports/Typist.h"

#include <QObject>
#include <QPointer>

namespace platform::linux_
{

/// Whether the element's text can be replaced: by its application where that offers it, else by
/// typing, for which the element must have the focus.
bool isValueSettable(const ElementFacts &facts, bool focused);

/// Replaces the whole text of one element and reads back what has become of it. Lives until its
/// completion has been called, then deletes itself. Main thread only.
class ValueWriter : public QObject
{
    Q_OBJECT
public:
    /// Gives the element as an input to type into; nothing when it is none.
    using TargetProvider = std::function<std::unique_ptr<TypingTarget>()>;

    ValueWriter(AtspiApplication &application, ObjectRef element, ElementFacts facts, QString text,
                FocusTracker &focus, Typist &typist, TargetProvider target,
                std::function<void(const WriteOutcome &)> completion);

    /// True when the completion can be called. Called from the event loop otherwise.
    bool isDone() const { return m_result.has_value(); }
    void start();
    /// Calls the completion and ends this object.
    void deliver();

private:
    void setContents();
    void replaceContents(qint64 count);
    void type(qint64 count);
    void selectAll(qint64 count);
    void typeOverSelection();
    void readBack(bool mayTryAgain);
    void awaitTyped();
    void finish(AXError result);
    bool holds(const std::optional<QString> &value) const;
    bool holdsAsTyped(const std::optional<QString> &value) const;

    QPointer<AtspiApplication> m_application;
    ObjectRef m_element;
    ElementFacts m_facts;
    QString m_text;
    FocusTracker &m_focus;
    Typist &m_typist;
    TargetProvider m_target;
    std::function<void(const WriteOutcome &)> m_completion;
    std::optional<AXError> m_result;
    QString m_lastRead;
    QElapsedTimer m_sinceProgress;
};

} // namespace platform::linux_
