// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Types the text of standard input into the focused input, as the application does, and prints what
// came of it as one line of JSON: {"result": "typed", "milliseconds": 12.3, "coreSeconds": 0.02,
// "codePoints": 45}, where coreSeconds is what all processor cores together have worked meanwhile.
//
//   type_probe [--blind | --recover | --announce | --read]
//     --blind     without reading back from the input
//     --recover   puts back what a killed probe has left, and types nothing
//     --announce  prints {"found": true} once it knows the input; the text may come later
//     --read      types nothing and prints the focused input's text, as {"text": "..."}; exits with
//                 1 when there is no such input

#include "platform/linux/accessibility/AtspiAccessibility.h"
#include "platform/linux/inputmethods/DesktopInputMethods.h"
#include "platform/linux/x11/X11WindowSystem.h"
#include "platform/linux/x11/XTestKeyboard.h"
#include "tests/support/FocusedText.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QSocketNotifier>
#include <QTemporaryDir>

#include <csignal>
#include <cstdio>
#include <sys/signalfd.h>
#include <unistd.h>

using namespace platform::linux_;

namespace
{

const char *nameOf(platform::TypingResult result)
{
    switch (result) {
    case platform::TypingResult::Typed:
        return "typed";
    case platform::TypingResult::NoTarget:
        return "no target";
    case platform::TypingResult::Interrupted:
        return "interrupted";
    case platform::TypingResult::Misplaced:
        return "misplaced";
    case platform::TypingResult::Failed:
        break;
    }
    return "failed";
}

/// The application's way to the focused input, with a consent of its own.
class Watching
{
public:
    explicit Watching(Typist &typist)
    {
        m_settings.setValue(QStringLiteral("accessibility/allowed"), true);
        m_accessibility.emplace(typist, m_windowSystem.activeWindow(), m_settings);
    }

    /// The application knows the input before it types; finding it here is none of its time.
    void waitForInput()
    {
        constexpr int patience = 20'000; // ms
        constexpr int atLeast = 700;     // ms; who has only begun to listen does not pause
        QElapsedTimer waiting;
        waiting.start();
        while (waiting.elapsed() < atLeast || (waiting.elapsed() < patience && !hasInput()))
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents,
                                            5);
    }

    std::unique_ptr<TypingTarget> target() { return m_accessibility->typingTarget(m_input); }

private:
    bool hasInput()
    {
        platform::AXValue focused;
        platform::AXValue editable;
        m_accessibility->AXUIElementCopyAttributeValue(
            m_accessibility->AXUIElementCreateSystemWide(), QStringLiteral("AXFocusedUIElement"),
            focused);
        const auto *element = std::get_if<platform::AXUIElement>(&focused);
        if (!element)
            return false;
        m_input = *element;
        m_accessibility->AXUIElementCopyAttributeValue(*element, QStringLiteral("AXEditable"),
                                                       editable);
        const bool *answer = std::get_if<bool>(&editable);
        return answer && *answer;
    }

    QTemporaryDir m_folder;
    QSettings m_settings{m_folder.filePath(QStringLiteral("platform.conf")), QSettings::IniFormat};
    X11WindowSystem m_windowSystem;
    std::optional<AtspiAccessibility> m_accessibility;
    platform::AXUIElement m_input;
};

/// Whatever has the keyboard, of which nothing is known.
class BlindTarget : public TypingTarget
{
public:
    bool hasFocus() override { return true; }
    std::optional<qint64> characterCount() override { return std::nullopt; }
    bool needsSoftLineBreaks() override { return false; }
};

/// Seconds that all cores together have worked since the machine's start: the times of the first
/// line of /proc/stat (proc(5)) but those of idling and of waiting for disks.
double workingTime()
{
    QFile stat(QStringLiteral("/proc/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return 0;
    const QList<QByteArray> fields = stat.readLine().simplified().split(' ');
    double ticks = 0;
    for (const qsizetype working : {1, 2, 3, 6, 7}) // user, nice, system, irq, softirq
        ticks += fields.value(working).toDouble();
    return ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
}

int printFocusedText()
{
    const auto text = test::focusedText();
    if (!text)
        return 1;
    const QJsonObject report{{QStringLiteral("text"), *text}};
    std::puts(QJsonDocument(report).toJson(QJsonDocument::Compact).constData());
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc > 1 && qstrcmp(argv[1], "--read") == 0) {
        const QCoreApplication app(argc, argv);
        return printFocusedText();
    }

    // An orderly end on SIGTERM, so that the keyboard is put back.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);

    QApplication app(argc, argv);
    QSocketNotifier terminate(signalfd(-1, &signals, SFD_CLOEXEC), QSocketNotifier::Read);
    QObject::connect(&terminate, &QSocketNotifier::activated, &app,
                     [] { QCoreApplication::exit(143); });

    DesktopInputMethods inputMethods;
    XTestKeyboard keyboard(&inputMethods);
    std::optional<Watching> watching;
    if (app.arguments().contains(QStringLiteral("--recover")))
        return 0;
    if (!app.arguments().contains(QStringLiteral("--blind"))) {
        watching.emplace(keyboard);
        watching->waitForInput();
    }
    if (app.arguments().contains(QStringLiteral("--announce"))) {
        std::puts("{\"found\": true}");
        std::fflush(stdout);
    }

    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return 2;
    const QString text = QString::fromUtf8(input.readAll());
    const double workedBefore = workingTime();
    QElapsedTimer clock;
    clock.start();
    std::unique_ptr<TypingTarget> target =
        watching ? watching->target() : std::make_unique<BlindTarget>();
    keyboard.type(
        std::move(target), platform::keyboardEvents(text), [&](platform::TypingResult result) {
            const QJsonObject report{
                {QStringLiteral("result"), QString::fromLatin1(nameOf(result))},
                {QStringLiteral("milliseconds"), static_cast<double>(clock.nsecsElapsed()) / 1e6},
                {QStringLiteral("coreSeconds"), workingTime() - workedBefore},
                {QStringLiteral("codePoints"), static_cast<qint64>(text.toUcs4().size())},
            };
            std::puts(QJsonDocument(report).toJson(QJsonDocument::Compact).constData());
            QCoreApplication::quit();
        });
    const int status = QCoreApplication::exec();
    keyboard.stop();
    return status;
}
