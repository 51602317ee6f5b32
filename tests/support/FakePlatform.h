// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Platform.h"

#include <QCursor>
#include <QHash>
#include <QMap>
#include <QWidget>

#include <utility>

/// A platform that a test scripts and that records what was asked of it.
namespace fake
{

using platform::AXError;
using platform::AXUIElement;
using platform::AXValue;
using platform::WriteOutcome;

/// One scripted element. Attributes that are not in `attributes` are unsupported.
struct Element : AXUIElement::Data {
    QMap<QString, AXValue> attributes;
    QMap<QString, AXError> errors;
    std::int32_t pid = 0;
    bool settable = false;
    WriteOutcome outcome;

    bool equals(const Data &other) const override { return this == &other; }

    template <typename T> void set(const char *name, T value)
    {
        attributes.insert(QString::fromLatin1(name), AXValue(std::move(value)));
    }
    void set(const char *name, const char *text) { set(name, QString::fromUtf8(text)); }
};

using ElementPtr = std::shared_ptr<Element>;

inline ElementPtr makeElement(const char *role, std::int32_t pid = 0)
{
    auto element = std::make_shared<Element>();
    element->pid = pid;
    if (role)
        element->set("AXRole", role);
    return element;
}

inline void setChildren(const ElementPtr &parent, std::initializer_list<ElementPtr> children)
{
    QList<AXUIElement> list;
    for (const ElementPtr &child : children)
        list.append(AXUIElement(child));
    parent->set("AXChildren", list);
}

class Accessibility : public platform::Accessibility
{
public:
    bool trusted = true;
    int settingsOpened = 0;
    ElementPtr systemWide = makeElement(nullptr);
    QList<std::pair<QString, AXValue>> written;
    /// Whether what is set can be read back.
    bool keepsValues = false;
    Answer answer = Answer::Unsupported;

    void focus(const ElementPtr &element)
    {
        systemWide->set("AXFocusedUIElement", AXUIElement(element));
    }

    bool AXIsProcessTrusted() override { return trusted; }
    void openAccessibilitySettings() override { ++settingsOpened; }
    AXUIElement AXUIElementCreateSystemWide() override { return AXUIElement(systemWide); }

    AXError AXUIElementCopyAttributeValue(const AXUIElement &element, const QString &attribute,
                                          AXValue &value) override
    {
        const Element &data = of(element);
        if (data.errors.contains(attribute))
            return data.errors.value(attribute);
        if (!data.attributes.contains(attribute))
            return AXError::AttributeUnsupported;
        value = data.attributes.value(attribute);
        return AXError::Success;
    }

    AXError AXUIElementCopyAttributeNames(const AXUIElement &element, QStringList &names) override
    {
        names = of(element).attributes.keys();
        return names.isEmpty() ? AXError::InvalidUIElement : AXError::Success;
    }

    AXError AXUIElementIsAttributeSettable(const AXUIElement &element, const QString &,
                                           bool &settable) override
    {
        settable = of(element).settable;
        return AXError::Success;
    }

    void AXUIElementSetAttributeValue(const AXUIElement &element, const QString &attribute,
                                      const AXValue &value,
                                      std::function<void(const WriteOutcome &)> completion) override
    {
        written.append({attribute, value});
        if (keepsValues && of(element).outcome.isWritten())
            const_cast<Element &>(of(element)).attributes.insert(attribute, value);
        completion(of(element).outcome);
    }

    AXError AXUIElementGetPid(const AXUIElement &element, std::int32_t &pid) override
    {
        pid = of(element).pid;
        return AXError::Success;
    }

    Answer containsEditableText(const AXUIElement &) override { return answer; }
    bool copyTreeText(const AXUIElement &, std::function<void(const QString &)>) override
    {
        return false;
    }

private:
    static const Element &of(const AXUIElement &element)
    {
        return static_cast<const Element &>(*element.data());
    }
};

class Frames : public platform::FrameWatch
{
public:
    AXUIElement watched;
    std::function<void(const std::optional<QRectF> &)> moved;

    void watch(const AXUIElement &element,
               std::function<void(const std::optional<QRectF> &)> tell) override
    {
        watched = element;
        moved = std::move(tell);
    }
};

class KeyboardEvents : public platform::KeyboardEvents
{
public:
    AXUIElement target;
    QList<platform::KeyboardEvent> posted;
    platform::TypingResult result = platform::TypingResult::Typed;

    void CGEventPost(const AXUIElement &into, const QList<platform::KeyboardEvent> &events,
                     std::function<void(platform::TypingResult)> completion) override
    {
        target = into;
        posted += events;
        completion(result);
    }
};

class Workspace : public platform::Workspace
{
public:
    QMap<std::int32_t, platform::RunningApplication> running;
    std::optional<std::int32_t> frontmost;
    QList<QWidget *> panels;
    QList<std::pair<QWidget *, platform::ActivationPolicy>> policies;
    QList<QWidget *> activated;
    QList<QUrl> opened;
    /// What the last watchDismissal() is to call.
    std::function<void()> dismiss;
    int focusRequests = 0;
    int focusRestored = 0;
    bool focusCanBeRestored = true;
    bool opens = true;

    std::optional<platform::RunningApplication> runningApplication(std::int32_t pid) override
    {
        if (!running.contains(pid))
            return std::nullopt;
        return running.value(pid);
    }
    std::optional<std::int32_t> frontmostApplication() override { return frontmost; }
    void setActivationPolicy(QWidget *window, platform::ActivationPolicy policy) override
    {
        policies.append({window, policy});
    }
    void activate(QWidget *window) override
    {
        activated.append(window);
        if (window)
            window->show();
    }
    void preparePanel(QWidget *panel, bool) override { panels.append(panel); }
    void focusPanel(QWidget *) override { ++focusRequests; }
    void restoreFocus(std::function<void(bool)> completion) override
    {
        ++focusRestored;
        completion(focusCanBeRestored);
    }
    void watchDismissal(QWidget *, std::function<void()> dismissed) override
    {
        dismiss = std::move(dismissed);
    }
    QPointF mouseLocation() override { return QCursor::pos(); }
    bool open(const QUrl &url) override
    {
        opened.append(url);
        return opens;
    }
};

/// The fakes together; the desktop may be a real one.
template <class Desktop, class Bundle> struct Platform : platform::Platform {
    Accessibility ax;
    KeyboardEvents keys;
    Desktop desktop;
    Bundle bundle;

    platform::Accessibility &accessibility() override { return ax; }
    platform::KeyboardEvents &keyboard() override { return keys; }
    platform::Workspace &workspace() override { return desktop; }
    platform::Installation &installation() override { return bundle; }
};

} // namespace fake
