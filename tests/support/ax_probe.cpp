// Looks at the desktop through the accessibility adapter, as the application does. Each command is
// a JSON list, an argument or a line of standard input, and is answered by a line of JSON with
// the time that it took, "ms", and the processor time of this program, "cpu".
//
//   ["allow"]              stores the consent, switches accessibility on, waits until trusted
//   ["trusted"]            whether AXIsProcessTrusted
//   ["focus"]              the focused element: role, pid, frame, names, editable, settable, value
//   ["wait", ROLE, PID]    asks twice a second until the focused element is that one; PID 0: any
//   ["set", TEXT]          sets the focused element's AXValue
//   ["contains"]           containsEditableText of the focused element, once it is not Pending
//   ["tree"]  ["walk"]     copyTreeText of the focused element; the same, element by element
//   ["advice"]             adviceForFocusedApplication
//   ["ticks", N]           N ticks of the observer's questions: median and worst milliseconds
//   ["serve", MS]          serves the event loop; "longest": how long it was held up at once
//   ["settings"]           opens the consent window
//   ["editor", TEXT]       shows a window of this program with a text editor
//
// What is typed goes through xdotool, which is slow but does not depend on our own typing.

#include "platform/KeyboardEvents.h"
#include "platform/linux/accessibility/AtspiAccessibility.h"
#include "platform/linux/accessibility/X11ActiveWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>

#include <algorithm>
#include <ctime>
#include <unistd.h>
#include <vector>

using namespace platform;
using namespace platform::linux_;

namespace
{

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

double milliseconds(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return double(now.tv_sec) * 1e3 + double(now.tv_nsec) / 1e6;
}

/// Serves the event loop; returns the longest time that it was not served, in milliseconds.
double serve(int duration)
{
    QTimer beat;
    beat.start(2);
    double longest = 0;
    double last = milliseconds(CLOCK_MONOTONIC);
    const double end = last + duration;
    while (last < end) {
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        const double now = milliseconds(CLOCK_MONOTONIC);
        longest = std::max(longest, now - last);
        last = now;
    }
    return longest;
}

class Probe
{
public:
    Probe(AtspiAccessibility &accessibility, QSettings &settings)
        : m_ax(accessibility)
        , m_settings(settings)
        , m_system(accessibility.AXUIElementCreateSystemWide())
    {
    }

    QJsonObject run(const QString &command, const QJsonValue &first, const QJsonValue &second)
    {
        AXUIElement element;
        if (command == QStringLiteral("allow")) {
            m_settings.setValue(QStringLiteral("accessibility/allowed"), true);
            m_ax.bus().setEnabled(true);
            m_ax.bus().setListening(true);
            while (!m_ax.AXIsProcessTrusted())
                serve(20);
            return {};
        }
        if (command == QStringLiteral("trusted"))
            return {{command, m_ax.AXIsProcessTrusted()}};
        if (command == QStringLiteral("focus"))
            return describe();
        if (command == QStringLiteral("wait")) {
            QElapsedTimer patience;
            for (patience.start(); patience.elapsed() < 40'000; serve(250)) {
                std::int32_t pid = 0;
                if (focused(element) != AXError::Success ||
                    read<QString>(element, "AXRole") != first.toString())
                    continue;
                m_ax.AXUIElementGetPid(element, pid);
                if (second.toInt() == 0 || second.toInt() == pid)
                    break;
            }
            return describe();
        }
        if (command == QStringLiteral("set")) {
            // The application sets the element that it has kept, whatever is focused now.
            focused(element);
            element = m_last;
            std::optional<AXError> result;
            m_ax.AXUIElementSetAttributeValue(element, QStringLiteral("AXValue"), first.toString(),
                                              [&](AXError error) { result = error; });
            const bool atOnce = result.has_value();
            while (!result)
                serve(5);
            return {{command, int(*result)}, {QStringLiteral("at once"), atOnce}};
        }
        if (command == QStringLiteral("contains")) {
            focused(element);
            auto answer = m_ax.containsEditableText(element);
            while (answer == Accessibility::Answer::Pending) {
                serve(5);
                answer = m_ax.containsEditableText(element);
            }
            return {{command, answer == Accessibility::Answer::Yes}};
        }
        if (command == QStringLiteral("tree")) {
            focused(element);
            std::optional<QString> text;
            if (!m_ax.copyTreeText(element, [&](const QString &result) { text = result; }))
                return {};
            while (!text)
                serve(5);
            return {{command, *text}};
        }
        if (command == QStringLiteral("walk")) {
            focused(element);
            return {{command, walk(element)}};
        }
        if (command == QStringLiteral("advice")) {
            focused(element);
            return {{command, m_ax.adviceForFocusedApplication()}};
        }
        if (command == QStringLiteral("ticks"))
            return ticks(first.toInt());
        if (command == QStringLiteral("serve"))
            return {{QStringLiteral("longest"), serve(first.toInt())}};
        if (command == QStringLiteral("settings")) {
            m_ax.openAccessibilitySettings();
            return {};
        }
        if (command == QStringLiteral("editor")) {
            m_editor.setPlainText(first.toString());
            m_editor.setWindowTitle(QStringLiteral("Own editor"));
            m_editor.resize(400, 200);
            m_editor.show();
            m_editor.activateWindow();
            return {};
        }
        return {{QStringLiteral("unknown command"), command}};
    }

    AXError focused(AXUIElement &element)
    {
        AXValue value;
        const AXError error = m_ax.AXUIElementCopyAttributeValue(
            m_system, QStringLiteral("AXFocusedUIElement"), value);
        if (const auto *found = std::get_if<AXUIElement>(&value))
            m_last = element = *found;
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
            serve(100);
            cpu.push_back(milliseconds(CLOCK_PROCESS_CPUTIME_ID) - cpuStart);
        }
        std::sort(wall.begin(), wall.end());
        std::sort(cpu.begin(), cpu.end());
        return {{QStringLiteral("ticks"), count},
                {QStringLiteral("median"), wall.at(wall.size() / 2)},
                {QStringLiteral("worst"), wall.back()},
                {QStringLiteral("median cpu, event loop included"), cpu.at(cpu.size() / 2)}};
    }

private:
    AtspiAccessibility &m_ax;
    QSettings &m_settings;
    AXUIElement m_system;
    AXUIElement m_last;
    QPlainTextEdit m_editor;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Quillet"),
                       QStringLiteral("ax_probe"));
    ToolTyping typing;
    X11ActiveWindow activeWindow;
    AtspiAccessibility accessibility(typing, activeWindow, settings);
    Probe probe(accessibility, settings);

    const auto answer = [&probe](const QByteArray &line) {
        const QJsonArray words = QJsonDocument::fromJson(line).array();
        const double start = milliseconds(CLOCK_MONOTONIC);
        const double cpu = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
        QJsonObject result = probe.run(words.at(0).toString(), words.at(1), words.at(2));
        result[QStringLiteral("ms")] = milliseconds(CLOCK_MONOTONIC) - start;
        result[QStringLiteral("cpu")] = milliseconds(CLOCK_PROCESS_CPUTIME_ID) - cpu;
        QTextStream(stdout) << QJsonDocument(result).toJson(QJsonDocument::Compact) << Qt::endl;
    };
    const QStringList arguments = app.arguments().mid(1);
    for (const QString &argument : arguments)
        answer(argument.toUtf8());
    if (!arguments.isEmpty())
        return 0;

    QFile input;
    (void)input.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered);
    QSocketNotifier readable(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&readable, &QSocketNotifier::activated, &app, [&] {
        readable.setEnabled(false);
        const QByteArray line = input.readLine();
        if (line.isEmpty())
            QCoreApplication::quit();
        else
            answer(line);
        readable.setEnabled(true);
    });
    return app.exec();
}
