// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "BuildConstants.h"
#include "platform/Platform.h"
#include "process/ProcessGuard.h"
#include "quillet/application/Application.h"
#include "quillet/application/DoctorRun.h"
#include "quillet/shell/SingleInstance.h"
#include "quillet/widgets/Localisation.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QIcon>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace
{

/// Whether the arguments can be answered without a display.
bool asksForHelpOnly(int argc, char **argv)
{
    return std::any_of(argv + 1, argv + argc, [](const char *argument) {
        return !std::strcmp(argument, "--help") || !std::strcmp(argument, "-h") ||
               !std::strcmp(argument, "--version") || !std::strcmp(argument, "-v");
    });
}

bool hasArgument(int argc, char **argv, const char *wanted)
{
    return std::any_of(argv + 1, argv + argc,
                       [wanted](const char *argument) { return !std::strcmp(argument, wanted); });
}

struct CommandLine {
    StartRequest request = StartRequest::Window;
    bool diagnostics = false;
};

/// Reads the arguments; prints what was asked for and ends the process where that is all.
CommandLine parseCommandLine()
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Puts a button at the text input that you are working in, in any application, and rewrites "
        "its text."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption setup(
        QStringLiteral("setup"),
        QStringLiteral("Show the wizard again. Its tutorial page starts the watching, which a "
                       "start without the wizard does not."));
    const QCommandLineOption permission(
        QStringLiteral("permission"),
        QStringLiteral("Show where the permission is given and taken back."));
    const QCommandLineOption settings(QStringLiteral("settings"),
                                      QStringLiteral("Show the settings."));
    const QCommandLineOption background(
        QStringLiteral("background"),
        QStringLiteral("Start without a window, and watch as after the wizard."));
    const QCommandLineOption diagnostics(
        QStringLiteral("diagnostics"),
        QStringLiteral("Write what happens to standard output, line by line; so does "
                       "QUILLET_DIAGNOSTICS=1. The lines hold no text of yours."));
    parser.addOptions({setup, permission, settings, background, diagnostics});
    // By itself handled before there is a display; named here for --help.
    const QCommandLineOption doctor(
        QStringLiteral("doctor"),
        QStringLiteral("Say whether Quillet can do its job in this session, with a "
                       "remedy for each line. With --settings: show that there."));
    parser.addOption(doctor);
    parser.addOptions(
        {{QStringLiteral("json"), QStringLiteral("With --doctor: print the same as JSON.")}});
    parser.process(QCoreApplication::arguments());

    CommandLine commandLine;
    for (const auto &[option, request] :
         {std::pair(setup, StartRequest::Wizard), std::pair(permission, StartRequest::Permission),
          std::pair(settings, StartRequest::Settings),
          std::pair(background, StartRequest::Background)}) {
        if (parser.isSet(option))
            commandLine.request = request;
    }
    if (parser.isSet(doctor))
        commandLine.request = StartRequest::Doctor;
    commandLine.diagnostics = parser.isSet(diagnostics);
    return commandLine;
}

} // namespace

int main(int argc, char **argv)
{
    guardProcessMemory();
    QCoreApplication::setOrganizationName(QStringLiteral("quillet"));
    QCoreApplication::setApplicationName(QStringLiteral("quillet"));
    QCoreApplication::setApplicationVersion(BuildConstants::version);
    if (asksForHelpOnly(argc, argv)) {
        const QCoreApplication application(argc, argv);
        parseCommandLine();
    }
    // Together with --settings it is a page of theirs.
    const bool wantsSettings = hasArgument(argc, argv, "--settings");
    if (hasArgument(argc, argv, "--doctor") && !wantsSettings) {
        const QCoreApplication application(argc, argv);
        return runDoctor(hasArgument(argc, argv, "--json"));
    }
    if (!platform::hasDisplay()) {
        std::fputs("Quillet needs a graphical session: no display could be opened. Start it from "
                   "your desktop, or set DISPLAY.\n",
                   stderr);
        return 1;
    }
    platform::prepareProcess();
    const QByteArray startupId = SingleInstance::startupIdOfThisProcess();

    QApplication application(argc, argv);
    installTranslations();
    QGuiApplication::setDesktopFileName(BuildConstants::appId);
    QGuiApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/quillet.svg")));
    const CommandLine commandLine = parseCommandLine();
    return Application(startupId, commandLine.request, commandLine.diagnostics).run();
}
