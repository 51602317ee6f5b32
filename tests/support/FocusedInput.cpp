#include "tests/support/FocusedInput.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QList>

namespace test
{

namespace
{

constexpr int callTimeout = 2000; // ms

// Numbers of the accessibility bus: AtspiStateType and AtspiRole.
constexpr int stateActive = 1;
constexpr int stateEditable = 7;
constexpr int stateFocused = 12;
constexpr int stateMultiLine = 17;
constexpr uint roleDocumentWeb = 95;

QDBusConnection accessibilityBus()
{
    static const QDBusConnection bus = [] {
        const QDBusMessage answer =
            QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
                QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
        return QDBusConnection::connectToBus(answer.arguments().value(0).toString(),
                                             QStringLiteral("accessibility"));
    }();
    return bus;
}

bool isIn(const QVariant &states, int state)
{
    return qdbus_cast<QList<uint>>(states).value(state / 32) >> (state % 32) & 1;
}

struct Element {
    QString name;
    QString path;
    /// The second value of the last answer.
    mutable QVariant second = {};

    QVariant call(const char *interface, const char *method,
                  const QVariantList &arguments = {}) const
    {
        QDBusMessage message = QDBusMessage::createMethodCall(
            name, path, QString::fromLatin1(interface), QString::fromLatin1(method));
        message.setArguments(arguments);
        const QDBusMessage answer = accessibilityBus().call(message, QDBus::Block, callTimeout);
        if (answer.type() != QDBusMessage::ReplyMessage)
            return {};
        second = answer.arguments().value(1);
        return answer.arguments().value(0);
    }

    QList<Element> children() const
    {
        QList<Element> found;
        const QVariant answer = call("org.a11y.atspi.Accessible", "GetChildren");
        if (!answer.canConvert<QDBusArgument>())
            return found;
        const auto list = answer.value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            Element child;
            QDBusObjectPath childPath;
            list.beginStructure();
            list >> child.name >> childPath;
            list.endStructure();
            child.path = childPath.path();
            found.append(child);
        }
        list.endArray();
        return found;
    }

    bool hasState(int state) const
    {
        return isIn(call("org.a11y.atspi.Accessible", "GetState"), state);
    }

    uint role() const { return call("org.a11y.atspi.Accessible", "GetRole").toUInt(); }
};

class FocusedInput : public ReadableInput
{
public:
    FocusedInput(Element element, bool inWeb)
        : m_element(std::move(element))
        , m_inWeb(inWeb)
    {
    }

    // A program that is too busy to answer has not lost the focus by that.
    bool hasFocus() override
    {
        const QVariant answer = m_element.call("org.a11y.atspi.Accessible", "GetState");
        return !answer.isValid() || isIn(answer, stateFocused);
    }

    std::optional<qint64> characterCount() override
    {
        const QVariant count = m_element.call(
            "org.freedesktop.DBus.Properties", "Get",
            {QStringLiteral("org.a11y.atspi.Text"), QStringLiteral("CharacterCount")});
        if (!count.canConvert<QDBusVariant>())
            return std::nullopt;
        return count.value<QDBusVariant>().variant().toLongLong();
    }

    bool needsSoftLineBreaks() override { return m_inWeb; }

    qint64 selectedCharacterCount() override
    {
        if (m_element.call("org.a11y.atspi.Text", "GetNSelections").toInt() < 1)
            return 0;
        const qint64 start =
            m_element.call("org.a11y.atspi.Text", "GetSelection", {0}).toLongLong();
        return m_element.second.toLongLong() - start;
    }

    bool takesTabs() override { return !m_inWeb && m_element.hasState(stateMultiLine); }

    bool mayReorderKeys() override
    {
        const Element application{m_element.name,
                                  QStringLiteral("/org/a11y/atspi/accessible/root")};
        const QVariant toolkit = application.call(
            "org.freedesktop.DBus.Properties", "Get",
            {QStringLiteral("org.a11y.atspi.Application"), QStringLiteral("ToolkitName")});
        return toolkit.value<QDBusVariant>().variant().toString() == QLatin1String("GTK");
    }

    QString text() override
    {
        return m_element.call("org.a11y.atspi.Text", "GetText", {0, -1}).toString();
    }

private:
    Element m_element;
    bool m_inWeb;
};

std::unique_ptr<ReadableInput> findBelow(const Element &element, bool inWeb)
{
    inWeb = inWeb || element.role() == roleDocumentWeb;
    if (element.hasState(stateFocused) && element.hasState(stateEditable))
        return std::make_unique<FocusedInput>(element, inWeb);
    for (const Element &child : element.children()) {
        if (auto found = findBelow(child, inWeb))
            return found;
    }
    return nullptr;
}

} // namespace

std::unique_ptr<ReadableInput> focusedInput()
{
    const Element desktop{QStringLiteral("org.a11y.atspi.Registry"),
                          QStringLiteral("/org/a11y/atspi/accessible/root")};
    // Some programs' windows do not say that they are active.
    for (const bool active : {true, false}) {
        for (const Element &application : desktop.children()) {
            for (const Element &window : application.children()) {
                if (window.hasState(stateActive) != active)
                    continue;
                if (auto found = findBelow(window, false))
                    return found;
            }
        }
    }
    return nullptr;
}

} // namespace test
