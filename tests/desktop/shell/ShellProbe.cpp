// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// The application shell with plain views, on the real desktop, for the desktop tests.
#include "platform/linux/desktop/LinuxInstallation.h"
#include "platform/linux/x11/X11WindowSystem.h"
#include "quillet/shell/QuilletApp.h"
#include "support/FakePlatform.h"

#include <QApplication>
#include <QLabel>
#include <QSettings>

#include <iostream>

namespace
{

struct Desktop {
    platform::linux_::X11WindowSystem system;

    operator platform::Workspace &() { return system.workspace(); }
};

} // namespace

int main(int argc, char *argv[])
{
    const QByteArray startupId = SingleInstance::startupIdOfThisProcess();
    QApplication application(argc, argv);
    fake::Platform<Desktop, platform::linux_::LinuxInstallation> platform;
    QSettings defaults(QStringLiteral("Quillet"), QStringLiteral("probe"));
    const auto view = [](const char *text) {
        return [text](QWidget *parent, std::function<void(bool)>) {
            return new QLabel(QLatin1String(text), parent);
        };
    };
    Notice notice(platform.desktop);
    QuilletApp app({platform, notice, defaults, view("home"), view("wizard"),
                    [] { std::cout << "cleaned up" << std::endl; }, startupId});
    return app.run();
}
