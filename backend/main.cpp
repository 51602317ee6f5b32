// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/ServerConsent.h"
#include "backend/SwitchingEngine.h"
#include "backend/engine/ThreadedEngine.h"
#include "backend/http/AccessPolicy.h"
#include "backend/http/HttpServer.h"
#include "backend/http/Service.h"
#include "backend/model/Configuration.h"
#include "backend/model/ListenerOwner.h"
#include "backend/model/ModelEngine.h"
#include "backend/model/ModelFinder.h"
#include "backend/offline/OfflineEngine.h"
#include "backend/process/ParentLink.h"
#include "backend/process/ProgramLog.h"
#include "commands/Note.h"
#include "process/ProcessGuard.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QHostAddress>
#include <QNetworkProxyFactory>
#include <QSettings>
#include <QThreadPool>

#include <cstdio>
#include <cstdlib>

namespace
{

constexpr int usageError = 2;
constexpr int cannotListen = 1;
constexpr quint16 usualPort = 8750;

struct Options {
    QHostAddress address{QHostAddress::LocalHost};
    quint16 port = usualPort;
    QStringList hostNames;
    QString configuration;
    bool child = false;
};

[[noreturn]] void quitWith(const QString &complaint)
{
    logLine(complaint);
    std::exit(usageError);
}

Options readOptions(const QCoreApplication &application)
{
    const QCommandLineOption listenOption(
        QStringLiteral("listen"),
        QStringLiteral("Listen on this address instead of 127.0.0.1. An address that other "
                       "machines can reach needs QUILLET_BACKEND_SECRET."),
        QStringLiteral("address"));
    const QCommandLineOption portOption(
        QStringLiteral("port"),
        QStringLiteral(
            "Listen on this port; 0 takes a free one. Usually %1, with --child a free one.")
            .arg(usualPort),
        QStringLiteral("number"));
    const QCommandLineOption hostOption(
        QStringLiteral("host-name"),
        QStringLiteral("Also answer requests that name this host, as behind a proxy. May be given "
                       "several times."),
        QStringLiteral("name"));
    const QCommandLineOption configOption(
        QStringLiteral("config"),
        QStringLiteral("Read this file instead of %1.").arg(ConfigurationFile::defaultPath()),
        QStringLiteral("file"));
    const QCommandLineOption childOption(
        QStringLiteral("child"),
        QStringLiteral("Serve the program that started this one: the first line of standard input "
                       "is the secret that clients must give, a free port is taken unless --port "
                       "is given, and the end of standard input ends the program."));

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral(
            "The writing backend of Quillet: answers GET /generate?command=…&text=… with the\n"
            "rewritten text.\n\n"
            "It works offline, or with a language model that has a chat completions interface.\n"
            "The model is set in %1, section [model], or by\n"
            "QUILLET_MODEL_URL, QUILLET_MODEL_NAME, QUILLET_MODEL_KEY, QUILLET_MODEL_TEMPERATURE,\n"
            "QUILLET_MODEL_TIMEOUT, QUILLET_MODEL_WINDOW and QUILLET_FIND_OLLAMA; see "
            "quillet-backend(1).\n\n"
            "Quillet starts this program by itself. QUILLET_BACKEND_SECRET, if set, is the\n"
            "password that clients must give for the user \"quillet\".")
            .arg(ConfigurationFile::defaultPath()));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({listenOption, portOption, hostOption, configOption, childOption});
    parser.process(application);

    Options options;
    if (!parser.positionalArguments().isEmpty())
        quitWith(QStringLiteral("there are no arguments but options; see --help"));
    if (parser.isSet(listenOption) && !options.address.setAddress(parser.value(listenOption)))
        quitWith(QStringLiteral("--listen wants an IP address, such as 127.0.0.1"));
    options.child = parser.isSet(childOption);
    if (options.child)
        options.port = 0;
    if (parser.isSet(portOption)) {
        bool valid = false;
        options.port = parser.value(portOption).toUShort(&valid);
        if (!valid)
            quitWith(QStringLiteral("--port wants a number from 0 to 65535"));
    }
    options.hostNames = parser.values(hostOption);
    options.configuration =
        parser.isSet(configOption) ? parser.value(configOption) : ConfigurationFile::defaultPath();
    return options;
}

/// Serves until the process ends. False: the address could not be had.
bool serve(const Options &options, const QByteArray &secret, Engine &engine, FoundServers &found,
           QObject *parent)
{
    auto service = std::make_shared<Service>(
        AccessPolicy(options.address, secret, options.hostNames), engine, found);
    auto *server = new HttpServer(
        [service](const HttpRequest &request, HttpRespond respond) {
            return service->handle(request, std::move(respond));
        },
        service->admission(), HttpLimits{}, parent);
    if (!server->listen(options.address, options.port)) {
        logLine(QStringLiteral("cannot listen on %1, port %2: %3")
                    .arg(options.address.toString())
                    .arg(options.port)
                    .arg(server->errorString()));
        return false;
    }
    // The parent waits for this line.
    std::printf("port %d\n", int(server->serverPort()));
    std::fflush(stdout);
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    guardProcessMemory();
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quillet-backend"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLET_VERSION));
    const Options options = readOptions(application);
    QNetworkProxyFactory::setUseSystemConfiguration(true);

    ConfigurationFile configuration(options.configuration, ConfigurationFile::processEnvironment());
    for (const QString &problem : configuration.current().problems)
        logLine(problem);

    ModelFinder finder;
    ServerConsent consent(configuration, finder, [](quint16 port) { return listenerOwner(port); });
    ModelEngine model;
    OfflinePaths paths;
    paths.rulesOff = QSettings(options.configuration, QSettings::IniFormat)
                         .value(QStringLiteral("rules/off"))
                         .toStringList();
    const OfflineEngine rules(paths);
    ThreadedEngine offline([&rules](const EngineRequest &request, const std::stop_token &stop) {
        const OfflineAnswer answer = rules.answer(request.command, request.text, stop);
        return EngineAnswer{answer.supported ? 200 : 501,
                            answer.supported ? answer.text : asNote(answer.text),
                            {},
                            answer.remark};
    });
    SwitchingEngine engine(configuration, consent, model, offline);

    // Before the first request, so that its answer need not wait.
    const auto warmUp = [&] {
        if (!configuration.current().model)
            QThreadPool::globalInstance()->start([&rules] { rules.warmUp(); });
    };

    if (!options.child) {
        const QByteArray secret = qgetenv("QUILLET_BACKEND_SECRET");
        forgetVariable("QUILLET_BACKEND_SECRET");
        if (secret.isEmpty() && !options.address.isLoopback()) {
            quitWith(QStringLiteral("an address that other machines can reach needs a secret in "
                                    "QUILLET_BACKEND_SECRET"));
        }
        if (!serve(options, secret, engine, consent, &application))
            return cannotListen;
        warmUp();
        return QCoreApplication::exec();
    }
    const auto secret = ParentLink::readSecret();
    if (!secret)
        return EXIT_SUCCESS;
    ParentLink::endProcessWithParent();
    if (!serve(options, *secret, engine, consent, &application))
        std::_Exit(cannotListen);
    warmUp();
    return QCoreApplication::exec();
}
