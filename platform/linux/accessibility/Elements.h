// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/linux/atspi/DBusMessage.h"

#include <QAccessible>

namespace platform::linux_
{

/// The element that stands for the whole desktop.
class SystemWideElement : public AXUIElement::Data
{
public:
    bool equals(const Data &other) const override
    {
        return dynamic_cast<const SystemWideElement *>(&other) != nullptr;
    }
};

/// An application as a whole, in place of an element that it does not show.
class ApplicationElement : public AXUIElement::Data
{
public:
    explicit ApplicationElement(std::int32_t pid)
        : m_pid(pid)
    {
    }
    std::int32_t pid() const { return m_pid; }
    bool equals(const Data &other) const override
    {
        const auto *application = dynamic_cast<const ApplicationElement *>(&other);
        return application && application->m_pid == m_pid;
    }

private:
    std::int32_t m_pid;
};

/// An element of another application, by its place on the accessibility bus.
class RemoteElement : public AXUIElement::Data
{
public:
    explicit RemoteElement(ObjectRef ref, std::uint32_t window = 0)
        : m_ref(std::move(ref))
        , m_window(window)
    {
    }
    const ObjectRef &ref() const { return m_ref; }
    /// The window in which it had the focus when this handle was made; 0 when it was not the
    /// focused element.
    std::uint32_t window() const { return m_window; }
    bool equals(const Data &other) const override
    {
        const auto *remote = dynamic_cast<const RemoteElement *>(&other);
        return remote && remote->m_ref == m_ref;
    }

private:
    ObjectRef m_ref;
    std::uint32_t m_window;
};

/// An element of one of our own windows.
class OwnElement : public AXUIElement::Data
{
public:
    explicit OwnElement(QAccessible::Id id)
        : m_id(id)
    {
    }
    QAccessible::Id id() const { return m_id; }
    bool equals(const Data &other) const override
    {
        const auto *own = dynamic_cast<const OwnElement *>(&other);
        return own && own->m_id == m_id;
    }

private:
    QAccessible::Id m_id;
};

} // namespace platform::linux_
