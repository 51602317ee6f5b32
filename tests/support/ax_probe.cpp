// Looks at the desktop through the accessibility adapter, as the application does, and prints what
// it sees as JSON, one line a command. Commands are the arguments, in order:
//
//   allow              stores the consent and switches accessibility on, waits until trusted
//   trusted            whether AXIsProcessTrusted
//   focus              the focused element: role, pid, frame, names, editable, settable, value …
//   wait-role ROLE     asks twice a second until the focused element has the role, then prints it
//   value              the focused element's AXValue alone
//   set TEXT           sets the focused element's AXValue and prints the error code
//   contains           containsEditableText of the focused element, until it is not Pending
//   tree               copyTreeText of the focused element
//   walk               the same by asking element by element
//   advice             adviceForFocusedApplication
//   tick N             N ticks of the observer's questions: median milliseconds and CPU
//   sleep MS           serves the event loop
//   settings           opens the consent window
//   editor             shows a window of this program with a text editor
//
// A command may be followed by "@" to print how long it took. Typing goes through xdotool here.

#include "platform/KeyboardEvents.h"
#include "platform/linux/accessibility/AtspiAccessibility.h"
#include "platform/linux/accessibility/X11ActiveWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPlainTextEdit>
#include <QProcess>
#include <QTextStream>
#include <QThread>

#include <algorithm>
#include <ctime>
#include <vector>

using namespace platform;
using namespace platform::linux_;

namespace
{

void print(const QJsonObject &object)
{
    QTextStream(stdout) << QJsonDocument(object).toJson(QJsonDocument::Compact) << Qt::endl;
}

/// Types with xdotool: slow, but independent of the program's own typing.
class ToolTyping : public KeyboardEvents
{
public:
    void CGEventPost(const QList<KeyboardEvent> &events,
                     std::function<void(TypingResult)> completion) override
    {
        QStringList arguments{QStringLiteral("key"), QStringLiteral("--delay"),
                              QStringLiteral("15")};
        for (const KeyboardEvent &event : events) {
            if (!event.keyDown)
                continue;
            const QString &text = event.unicodeString;
            if (text == QStringLiteral("\n"))
                arguments.append(QStringLiteral("shift+Return"));
            else if (text == QStringLiteral("\b"))
                arguments.append(QStringLiteral("BackSpace"));
            else
                for (const uint character : text.toUcs4())
                    arguments.append(QStringLiteral("U%1").arg(character, 4, 16, QLatin1Char('0')));
        }
        auto *tool = new QProcess;
        QObject::connect(tool, &QProcess::finished, tool, [tool, completion](int code) {
            tool->deleteLater();
            completion(code == 0 ? TypingResult::Typed : TypingResult::Failed);
        });
        tool->start(QStringLiteral("xdotool"), arguments);
    }
};

void serve(int milliseconds)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThread::msleep(1);
    }
}

double milliseconds(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

class Probe
{
public:
    explicit Probe(Accessibility &accessibility)
        : m_ax(accessibility)
        , m_system(accessibility.AXUIElementCreateSystemWide())
    {
    }

    AXError focused(AXUIElement &element)
    {
        AXValue value;
        const AXError error = m_ax.AXUIElementCopyAttributeValue(
            m_system, QStringLiteral("AXFocusedUIElement"), value);
        if (const auto *found = std::get_if<AXUIElement>(&value))
            element = *found;
        return error;
    }

    template <typename T> std::optional<T> read(const AXUIElement &element, const char *attribute)
    {
        AXValue value;
        if (m_ax.AXUIElementCopyAttributeValue(element, QString::fromLatin1(attribute), value) !=
            AXError::Success)
            return std::nullopt;
        if (const T *found = std::get_if<T>(&value))
            return *found;
        return std::nullopt;
    }

    QJsonObject describe()
    {
        AXUIElement element;
        const AXError error = focused(element);
        if (!element)
            return {{QStringLiteral("error"), int(error)}};
        QJsonObject object;
        std::int32_t pid = 0;
        m_ax.AXUIElementGetPid(element, pid);
        object[QStringLiteral("pid")] = pid;
        QStringList names;
        m_ax.AXUIElementCopyAttributeNames(element, names);
        object[QStringLiteral("names")] = QJsonArray::fromStringList(names);
        bool settable = false;
        m_ax.AXUIElementIsAttributeSettable(element, QStringLiteral("AXValue"), settable);
        object[QStringLiteral("settable")] = settable;
        for (const char *name : {"AXRole", "AXSubrole", "AXValue", "AXSelectedText"}) {
            if (const auto text = read<QString>(element, name))
                object[QString::fromLatin1(name)] = *text;
        }
        if (const auto number = read<double>(element, "AXValue"))
            object[QStringLiteral("AXValue")] = *number;
        if (const auto editable = read<bool>(element, "AXEditable"))
            object[QStringLiteral("AXEditable")] = *editable;
        if (const auto range = read<CFRange>(element, "AXSelectedTextRange"))
            object[QStringLiteral("AXSelectedTextRange")] =
                QJsonArray{range->location, range->length};
        if (const auto rect = read<QRectF>(element, "AXFrame"))
            object[QStringLiteral("AXFrame")] =
                QJsonArray{rect->x(), rect->y(), rect->width(), rect->height()};
        if (const auto children = read<QList<AXUIElement>>(element, "AXChildren"))
            object[QStringLiteral("AXChildren")] = children->size();
        return object;
    }

    QString walk(const AXUIElement &element)
    {
        if (const auto value = read<QString>(element, "AXValue"); value && !value->isEmpty())
            return *value;
        if (const auto text = read<QString>(element, "AXSelectedText"); text && !text->isEmpty())
            return *text;
        QStringList texts;
        for (const AXUIElement &child :
             read<QList<AXUIElement>>(element, "AXChildren").value_or(QList<AXUIElement>()))
            texts.append(walk(child));
        return texts.join(QLatin1Char('\n'));
    }

    QJsonObject ticks(int count)
    {
        std::vector<double> wall;
        std::vector<double> cpu;
        for (int i = 0; i < count; ++i) {
            const double wallStart = milliseconds(CLOCK_MONOTONIC);
            const double cpuStart = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
            AXUIElement element;
            focused(element);
            std::int32_t pid = 0;
            m_ax.AXUIElementGetPid(element, pid);
            QStringList names;
            m_ax.AXUIElementCopyAttributeNames(element, names);
            if (read<QString>(element, "AXRole") == QStringLiteral("AXWebArea"))
                m_ax.containsEditableText(element);
            wall.push_back(milliseconds(CLOCK_MONOTONIC) - wallStart);
            serve(250);
            cpu.push_back(milliseconds(CLOCK_PROCESS_CPUTIME_ID) - cpuStart);
        }
        std::sort(wall.begin(), wall.end());
        std::sort(cpu.begin(), cpu.end());
        return {{QStringLiteral("ticks"), count},
                {QStringLiteral("ms"), wall.at(wall.size() / 2)},
                {QStringLiteral("worst ms"), wall.back()},
                {QStringLiteral("cpu ms, event loop included"), cpu.at(cpu.size() / 2)}};
    }

    Accessibility &m_ax;
    AXUIElement m_system;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Quillet"),
                       QStringLiteral("ax_probe"));
    ToolTyping typing;
    X11ActiveWindow activeWindow;
    AtspiAccessibility accessibility(typing, activeWindow, settings);
    Probe probe(accessibility);
    QPlainTextEdit editor;

    QStringList arguments = app.arguments().mid(1);
    while (!arguments.isEmpty()) {
        const QString command = arguments.takeFirst();
        const double start = milliseconds(CLOCK_MONOTONIC);
        AXUIElement element;
        if (command == QStringLiteral("allow")) {
            settings.setValue(QStringLiteral("accessibility/allowed"), true);
            accessibility.bus().setEnabled(true);
            accessibility.bus().setListening(true);
            while (!accessibility.AXIsProcessTrusted())
                serve(20);
        } else if (command == QStringLiteral("trusted")) {
            print({{QStringLiteral("trusted"), accessibility.AXIsProcessTrusted()}});
        } else if (command == QStringLiteral("focus")) {
            print(probe.describe());
        } else if (command == QStringLiteral("wait-role")) {
            const QString role = arguments.takeFirst();
            QElapsedTimer patience;
            patience.start();
            while (patience.elapsed() < 30'000) {
                if (probe.focused(element) == AXError::Success &&
                    probe.read<QString>(element, "AXRole") == role)
                    break;
                serve(100);
            }
            print(probe.describe());
        } else if (command == QStringLiteral("value")) {
            probe.focused(element);
            const auto value = probe.read<QString>(element, "AXValue");
            print({{QStringLiteral("value"), value ? QJsonValue(*value) : QJsonValue()}});
        } else if (command == QStringLiteral("set")) {
            const QString text = arguments.takeFirst();
            probe.focused(element);
            std::optional<AXError> result;
            accessibility.AXUIElementSetAttributeValue(element, QStringLiteral("AXValue"), text,
                                                       [&](AXError error) { result = error; });
            const bool atOnce = result.has_value();
            while (!result)
                serve(5);
            print({{QStringLiteral("set"), int(*result)}, {QStringLiteral("at once"), atOnce}});
        } else if (command == QStringLiteral("contains")) {
            probe.focused(element);
            auto answer = accessibility.containsEditableText(element);
            while (answer == Accessibility::Answer::Pending) {
                serve(5);
                answer = accessibility.containsEditableText(element);
            }
            print({{QStringLiteral("contains"), int(answer)}});
        } else if (command == QStringLiteral("tree")) {
            probe.focused(element);
            std::optional<QString> text;
            const bool better =
                accessibility.copyTreeText(element, [&](const QString &result) { text = result; });
            while (better && !text)
                serve(1);
            print({{QStringLiteral("better"), better},
                   {QStringLiteral("tree"), text.value_or(QString())}});
        } else if (command == QStringLiteral("walk")) {
            probe.focused(element);
            print({{QStringLiteral("walk"), probe.walk(element)}});
        } else if (command == QStringLiteral("advice")) {
            probe.focused(element);
            print({{QStringLiteral("advice"), accessibility.adviceForFocusedApplication()}});
        } else if (command == QStringLiteral("tick")) {
            print(probe.ticks(arguments.takeFirst().toInt()));
        } else if (command == QStringLiteral("sleep")) {
            serve(arguments.takeFirst().toInt());
        } else if (command == QStringLiteral("settings")) {
            accessibility.openAccessibilitySettings();
        } else if (command == QStringLiteral("editor")) {
            editor.setWindowTitle(QStringLiteral("Own editor"));
            editor.resize(400, 200);
            editor.show();
            editor.activateWindow();
        } else {
            qWarning("ax_probe: unknown command");
            return 2;
        }
        if (arguments.value(0) == QStringLiteral("@")) {
            arguments.removeFirst();
            print({{command, milliseconds(CLOCK_MONOTONIC) - start}});
        }
    }
    return 0;
}
