// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Looks at the desktop through the accessibility adapter, as the application does. Each command is
// a JSON list, a line of standard input, and is answered by a line of JSON with the time that it
// took, "ms".
//
//   ["allow"]              stores the consent, switches accessibility on, waits until trusted
//   ["focus"]              the focused element: role, pid, frame, editable, settable, value
//   ["wait", ROLE, PID]    asks twice a second until the focused element is that one; PID 0: any
//   ["set", TEXT]          sets the focused element's AXValue
//   ["contains"]           containsEditableText of the focused element, once it is not Pending
//   ["tree"]               copyTreeText of the focused element
//   ["advice"]             adviceForFocusedApplication
//   ["serve", MS]          serves the event loop
//
// What is typed goes through xdotool, which is slow but does not depend on our own typing; with
// --keyboard as an argument, through our own.

#include "platform/linux/accessibility/AtspiAccessibility.h"
#include "platform/linux/inputmethods/DesktopInputMethods.h"
#include "platform/linux/ports/Typist.h"
#include "platform/linux/x11/X11WindowSystem.h"
#include "platform/linux/x11/XTestKeyboard.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QSocketNotifier>
#include <QTextStream>
#include <QTimer>

#include <unistd.h>

using namespace platform;
using namespace platform::linux_;

namespace
{

class ToolTyping : public Typist
{
public:
    void type(std::unique_ptr<TypingTarget>, const QList<KeyboardEvent> &events,
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

void serve(int duration)
{
    QEventLoop loop;
    QTimer::singleShot(duration, &loop, &QEventLoop::quit);
    loop.exec();
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
            std::optional<WriteOutcome> outcome;
            m_ax.AXUIElementSetAttributeValue(
                element, QStringLiteral("AXValue"), first.toString(),
                [&](const WriteOutcome &result) { outcome = result; });
            while (!outcome)
                serve(5);
            return {{command, int(outcome->error)},
                    {QStringLiteral("changed"), outcome->changedCharacters},
                    {QStringLiteral("damaged"), outcome->isDamaged},
                    {QStringLiteral("elsewhere"), outcome->keysMayBeElsewhere}};
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
        if (command == QStringLiteral("advice")) {
            focused(element);
            return {{command, m_ax.adviceForFocusedApplication()}};
        }
        if (command == QStringLiteral("serve")) {
            serve(first.toInt());
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
        bool settable = false;
        m_ax.AXUIElementIsAttributeSettable(element, QStringLiteral("AXValue"), settable);
        object[QStringLiteral("settable")] = settable;
        for (const char *name : {"AXRole", "AXSubrole", "AXValue", "AXSelectedText"}) {
            if (const auto text = read<QString>(element, name))
                object[QString::fromLatin1(name)] = *text;
        }
        if (const auto editable = read<bool>(element, "AXEditable"))
            object[QStringLiteral("AXEditable")] = *editable;
        if (const auto range = read<CFRange>(element, "AXSelectedTextRange"))
            object[QStringLiteral("AXSelectedTextRange")] =
                QJsonArray{range->location, range->length};
        if (const auto rect = read<QRectF>(element, "AXFrame"))
            object[QStringLiteral("AXFrame")] =
                QJsonArray{rect->x(), rect->y(), rect->width(), rect->height()};
        return object;
    }

private:
    AtspiAccessibility &m_ax;
    QSettings &m_settings;
    AXUIElement m_system;
    AXUIElement m_last;
};

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    app.setQuitOnLastWindowClosed(false);
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Quillet"),
                       QStringLiteral("ax_probe"));
    ToolTyping tool;
    DesktopInputMethods inputMethods;
    XTestKeyboard keyboard(&inputMethods);
    const bool typesItself = app.arguments().contains(QStringLiteral("--keyboard"));
    X11WindowSystem windowSystem;
    AtspiAccessibility accessibility(typesItself ? static_cast<Typist &>(keyboard) : tool,
                                     windowSystem.activeWindow(), settings);
    Probe probe(accessibility, settings);

    const auto answer = [&probe](const QByteArray &line) {
        const QJsonArray words = QJsonDocument::fromJson(line).array();
        QElapsedTimer clock;
        clock.start();
        QJsonObject result = probe.run(words.at(0).toString(), words.at(1), words.at(2));
        result[QStringLiteral("ms")] = double(clock.nsecsElapsed()) / 1e6;
        QTextStream(stdout) << QJsonDocument(result).toJson(QJsonDocument::Compact) << Qt::endl;
    };
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
    const int status = QApplication::exec();
    keyboard.stop();
    return status;
}
