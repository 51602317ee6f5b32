// Types the text of standard input into the focused input, as the application does, and prints what
// came of it as one line of JSON: {"result": "typed", "milliseconds": 12.3, "codePoints": 45}.
//
//   type_probe [--blind | --recover | --read]
//     --blind     without reading back from the input
//     --recover   puts back what a killed probe has left, and types nothing
//     --read      types nothing and prints the focused input's text, as {"text": "..."}; exits with
//                 1 when there is no such input

#include "platform/KeyboardEvents.h"
#include "platform/linux/keyboard/XTestKeyboard.h"
#include "tests/support/FocusedInput.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSocketNotifier>

#include <csignal>
#include <cstdio>
#include <sys/signalfd.h>
#include <unistd.h>

namespace
{

const char *nameOf(platform::TypingResult result)
{
    switch (result) {
    case platform::TypingResult::Typed:
        return "typed";
    case platform::TypingResult::Interrupted:
        return "interrupted";
    case platform::TypingResult::Failed:
        break;
    }
    return "failed";
}

} // namespace

int main(int argc, char *argv[])
{
    // An orderly end on SIGTERM, so that the keyboard is put back.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, nullptr);

    QCoreApplication app(argc, argv);
    QSocketNotifier terminate(signalfd(-1, &signals, SFD_CLOEXEC), QSocketNotifier::Read);
    QObject::connect(&terminate, &QSocketNotifier::activated, &app,
                     [] { QCoreApplication::exit(143); });

    if (app.arguments().contains(QStringLiteral("--read"))) {
        const auto focused = test::focusedInput();
        if (!focused)
            return 1;
        const QJsonObject report{{QStringLiteral("text"), focused->text()}};
        std::puts(QJsonDocument(report).toJson(QJsonDocument::Compact).constData());
        return 0;
    }

    // The application knows the input before it types; finding it here is none of its time.
    std::unique_ptr<platform::linux_::TypingTarget> target;
    platform::linux_::XTestKeyboard keyboard([&target] { return std::move(target); });
    if (app.arguments().contains(QStringLiteral("--recover")))
        return 0;
    if (!app.arguments().contains(QStringLiteral("--blind")))
        target = test::focusedInput();

    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return 2;
    const QString text = QString::fromUtf8(input.readAll());
    QElapsedTimer clock;
    clock.start();
    keyboard.CGEventPost(platform::keyboardEvents(text), [&](platform::TypingResult result) {
        const QJsonObject report{
            {QStringLiteral("result"), QString::fromLatin1(nameOf(result))},
            {QStringLiteral("milliseconds"), static_cast<double>(clock.nsecsElapsed()) / 1e6},
            {QStringLiteral("codePoints"), static_cast<qint64>(text.toUcs4().size())},
        };
        std::puts(QJsonDocument(report).toJson(QJsonDocument::Compact).constData());
        QCoreApplication::quit();
    });
    return QCoreApplication::exec();
}
