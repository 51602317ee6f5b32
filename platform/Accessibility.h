// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QRectF>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <variant>

namespace platform
{

/// Why an accessibility call failed. The numbers are the system's own error codes.
enum class AXError : int {
    Success = 0,
    Failure = -25200,
    IllegalArgument = -25201,
    InvalidUIElement = -25202,
    InvalidUIElementObserver = -25203,
    CannotComplete = -25204,
    AttributeUnsupported = -25205,
    ActionUnsupported = -25206,
    NotificationUnsupported = -25207,
    NotImplemented = -25208,
    NotificationAlreadyRegistered = -25209,
    NotificationNotRegistered = -25210,
    APIDisabled = -25211,
    NoValue = -25212,
    ParameterizedAttributeUnsupported = -25213,
    NotEnoughPrecision = -25214,
};

/// What became of a text that was to be written into an input.
struct WriteOutcome {
    enum class Kind : std::uint8_t {
        /// The input holds exactly the text.
        Written,
        /// The input holds the text as its program has changed it: tabs that became spaces, a final
        /// line feed, the program's own correction while typing.
        ChangedByProgram,
        NotWritten,
    };

    Kind kind = Kind::Written;
    /// How many characters, as the user sees them, the program has changed.
    qint64 changedCharacters = 0;
    /// The focus left the input while keys were on their way: some may have reached another input.
    bool keysMayBeElsewhere = false;
    /// The input holds neither the text nor what it held before.
    bool isDamaged = false;
    /// Why it was not written.
    AXError error = AXError::Success;

    bool isWritten() const { return kind != Kind::NotWritten; }

    static WriteOutcome written() { return {}; }
    static WriteOutcome notWritten(AXError why) { return {Kind::NotWritten, 0, false, false, why}; }

    friend bool operator==(const WriteOutcome &, const WriteOutcome &) = default;
};

/// A handle to one element of any application's user interface. A value: copies are cheap and
/// compare equal when they name the same element, whether or not it still exists. A
/// default-constructed handle names nothing.
class AXUIElement
{
public:
    /// What an adapter knows of an element; each adapter derives its own.
    class Data
    {
    public:
        virtual ~Data() = default;
        /// True when both name the same element.
        virtual bool equals(const Data &other) const = 0;
    };

    AXUIElement() = default;
    explicit AXUIElement(std::shared_ptr<const Data> data)
        : m_data(std::move(data))
    {
    }

    explicit operator bool() const { return m_data != nullptr; }
    const Data *data() const { return m_data.get(); }

    friend bool operator==(const AXUIElement &a, const AXUIElement &b)
    {
        if (a.m_data == b.m_data)
            return true;
        return a.m_data && b.m_data && a.m_data->equals(*b.m_data);
    }

private:
    std::shared_ptr<const Data> m_data;
};

/// A range of characters in an element's text, in UTF-16 code units.
struct CFRange {
    qint64 location = 0;
    qint64 length = 0;
    friend bool operator==(const CFRange &, const CFRange &) = default;
};

/// Everything that an attribute can hold. std::monostate stands for "no value".
/// A rectangle is in accessibility coordinates: points, origin at the top left of the main
/// screen, y growing downwards.
using AXValue = std::variant<std::monostate, QString, bool, double, AXUIElement, QList<AXUIElement>,
                             CFRange, QRectF>;

/// The system's accessibility service: the only way to look at, or write into, another
/// application's user interface.
///
/// Main thread only. Every call returns within the adapter's deadline (a quarter of a second at
/// the worst, once; an application that missed it is answered CannotComplete without waiting until
/// it has answered again). No call throws; no call re-enters the event loop.
class Accessibility
{
public:
    virtual ~Accessibility() = default;

    /// True when the user has allowed Quillet to read and write other applications' inputs and the
    /// service is there.
    virtual bool AXIsProcessTrusted() = 0;

    /// Brings up the place where the user gives or takes back that permission.
    virtual void openAccessibilitySettings() = 0;

    /// Sets what is called when the user has given (true) or taken back (false) the permission.
    virtual void setConsentChanged(std::function<void(bool allowed)>) {}

    /// The element that stands for the whole desktop; its "AXFocusedUIElement" is the element that
    /// has the keyboard focus, in whichever application that is.
    virtual AXUIElement AXUIElementCreateSystemWide() = 0;

    /// Reads one attribute. On Success `value` is set and may still be std::monostate (the
    /// attribute exists and is empty); otherwise it is left alone.
    virtual AXError AXUIElementCopyAttributeValue(const AXUIElement &element,
                                                  const QString &attribute, AXValue &value) = 0;

    /// Lists the attributes that the element has.
    virtual AXError AXUIElementCopyAttributeNames(const AXUIElement &element,
                                                  QStringList &names) = 0;

    /// Tells whether AXUIElementSetAttributeValue can work on this attribute.
    virtual AXError AXUIElementIsAttributeSettable(const AXUIElement &element,
                                                   const QString &attribute, bool &settable) = 0;

    /// Sets one attribute. `completion` is called exactly once on the main thread, before the call
    /// returns where the element takes the value at once, later where the value has to be typed
    /// and read back. Success is what has been read back, never the application's word.
    virtual void
    AXUIElementSetAttributeValue(const AXUIElement &element, const QString &attribute,
                                 const AXValue &value,
                                 std::function<void(const WriteOutcome &)> completion) = 0;

    /// The process that the element belongs to. On failure `pid` is left alone.
    virtual AXError AXUIElementGetPid(const AXUIElement &element, std::int32_t &pid) = 0;

    enum class Answer {
        No,
        Yes,
        /// The tree is large and is still being looked through; ask again on the next tick.
        Pending,
        /// This service has no way that is better than asking element by element.
        Unsupported,
    };

    /// Whether the element's "AXEditable" is true, or any element below it is editable text: role
    /// "AXTextArea" or "AXEditableText", or "AXEditable" true. One question in place of a walk over
    /// the whole tree.
    virtual Answer containsEditableText(const AXUIElement &element) = 0;

    /// Reads the text of a whole tree in few round trips. For each element, its "AXValue" where
    /// that is text and not empty, else its "AXSelectedText" where that is text and not empty, else
    /// the texts of its "AXChildren" in order, empty ones included, joined with a line feed. Inputs
    /// below the element other than the focused one, and whatever holds secrets, are empty.
    ///
    /// Returns false where the service has no way that is better than asking element by element;
    /// `completion` is then not called. Otherwise it is called exactly once on the main thread, at
    /// once or later; with what could be read when the application stops answering.
    virtual bool copyTreeText(const AXUIElement &element,
                              std::function<void(const QString &)> completion) = 0;

    /// A sentence for the user when the focused application shows the service nothing but its
    /// window and needs to be told to show more; empty otherwise.
    virtual QString adviceForFocusedApplication() { return {}; }
};

} // namespace platform
