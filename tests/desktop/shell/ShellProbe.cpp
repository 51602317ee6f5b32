// The application shell with plain views, on the real desktop, for the desktop tests.
#include "platform/linux/desktop/LinuxInstallation.h"
#include "platform/linux/desktop/X11Workspace.h"
#include "quillet/shell/QuilletApp.h"
#include "support/FakePlatform.h"

#include <QApplication>
#include <QLabel>
#include <QSettings>

#include <iostream>

namespace
{

struct ShellPlatform : platform::Platform {
    fake::Accessibility ax;
    fake::KeyboardEvents keys;
    platform::linux_::X11Workspace desktop;
    platform::linux_::LinuxInstallation bundle;

    platform::Accessibility &accessibility() override { return ax; }
    platform::KeyboardEvents &keyboard() override { return keys; }
    platform::Workspace &workspace() override { return desktop; }
    platform::Installation &installation() override { return bundle; }
};

} // namespace

int main(int argc, char *argv[])
{
    const QByteArray startupId = SingleInstance::startupIdOfThisProcess();
    QApplication application(argc, argv);
    ShellPlatform platform;
    QSettings defaults(QStringLiteral("Quillet"), QStringLiteral("probe"));
    const auto view = [](const char *text) {
        return [text](QWidget *parent, std::function<void(bool)>) {
            return new QLabel(QLatin1String(text), parent);
        };
    };
    QuilletApp app({platform, defaults, view("home"), view("wizard"),
                    [] { std::cout << "cleaned up" << std::endl; }, startupId});
    return app.run();
}
