// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/DesktopProgramAccess.h"
#include "platform/linux/desktop/EntrySwitch.h"

#include "tests/support/WaitUntil.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace platform::linux_;

namespace
{

const QByteArray entry = "[Desktop Entry]\nName=Writer\nDBusActivatable=true\nExec=writer %U\n"
                         "[Desktop Action new]\nName=New\nExec=writer --new %U\n";

QByteArray commandAfter(const QByteArray &command, SwitchKind kind = SwitchKind::Option)
{
    const QByteArray changed =
        entryWithSwitch("[Desktop Entry]\nExec=" + command, kind, true).split('\n').last();
    return changed.sliced(qstrlen("Exec="));
}

/// A desktop with two entries for one program, and that program running.
class ProgramAccessTest : public testing::Test
{
protected:
    // GLib reads where entries are once in a process.
    inline static const QTemporaryDir folder;
    const QString m_system = folder.path() + QStringLiteral("/system/applications/");
    const QString m_own = folder.path() + QStringLiteral("/home/applications/");
    QProcess m_program;
    std::int32_t m_pid = 0;

    void SetUp() override
    {
        qputenv("XDG_DATA_DIRS", QFile::encodeName(folder.path() + QStringLiteral("/system")));
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.path() + QStringLiteral("/home")));
        write(m_system + QStringLiteral("a-settings.desktop"),
              "[Desktop Entry]\nType=Application\nName=Sleep Settings\nExec=sleep --preferences\n");
        write(m_system + QStringLiteral("sleeper.desktop"),
              "[Desktop Entry]\nType=Application\nName=Sleeper\nExec=sleep %U\n");
        m_program.start(QStringLiteral("sleep"), {QStringLiteral("600")});
        ASSERT_TRUE(m_program.waitForStarted());
        m_pid = std::int32_t(m_program.processId());
        // Until the child has become the program it has our own command line.
        ASSERT_TRUE(waitUntil([this] {
            QFile file(QStringLiteral("/proc/%1/cmdline").arg(m_pid));
            return file.open(QIODevice::ReadOnly) && file.readAll().contains("600");
        }));
    }

    void TearDown() override
    {
        m_program.kill();
        m_program.waitForFinished();
        QDir(m_own).removeRecursively();
    }

    static void write(const QString &path, const QByteArray &contents)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
    }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
};

} // namespace

TEST(EntrySwitchTest, PutsTheSwitchBehindTheProgramInEveryCommand)
{
    EXPECT_EQ(commandAfter("chromium %U"), "chromium --force-renderer-accessibility %U");
    EXPECT_EQ(commandAfter("\"/opt/My App/app\" --x"),
              "\"/opt/My App/app\" --force-renderer-accessibility --x");
    EXPECT_EQ(commandAfter("env A=1 /snap/bin/chromium %U"),
              "env A=1 /snap/bin/chromium --force-renderer-accessibility %U");
    EXPECT_EQ(
        commandAfter("/usr/bin/flatpak run --branch=stable org.example.App @@u %U @@"),
        "/usr/bin/flatpak run --branch=stable org.example.App --force-renderer-accessibility @@u "
        "%U @@");
    EXPECT_EQ(commandAfter("app --force-renderer-accessibility"),
              "app --force-renderer-accessibility");
    EXPECT_EQ(commandAfter("falkon %u", SwitchKind::Variable),
              "env QTWEBENGINE_CHROMIUM_FLAGS=--force-renderer-accessibility falkon %u");

    const QByteArray changed = entryWithSwitch(entry, SwitchKind::Option, false);
    EXPECT_TRUE(changed.contains("\nExec=writer --force-renderer-accessibility --new %U\n"));
    // Started over D-Bus, the program would get no option.
    EXPECT_TRUE(changed.contains("\nDBusActivatable=false\n"));
    EXPECT_FALSE(wasCreatedByUs(changed));
}

TEST(EntrySwitchTest, TakesBackExactlyWhatItPutIn)
{
    for (const SwitchKind kind : {SwitchKind::Option, SwitchKind::Variable}) {
        const QByteArray once = entryWithSwitch(entry, kind, false);
        EXPECT_NE(once, entry);
        EXPECT_EQ(entryWithSwitch(once, kind, false), once);
        EXPECT_EQ(entryWithoutSwitch(once), entry);
    }
    const QByteArray users = "[Desktop Entry]\nExec=app --force-renderer-accessibility\n";
    EXPECT_EQ(entryWithoutSwitch(users), users);
}

TEST_F(ProgramAccessTest, NamesAProgramByTheEntryThatStartsItAndNotByOneOfItsTools)
{
    DesktopProgramAccess access(m_own);
    const auto program = access.programOf(m_pid);
    ASSERT_TRUE(program);
    EXPECT_EQ(program->name, QStringLiteral("Sleeper"));
    EXPECT_EQ(program->entry, QStringLiteral("sleeper.desktop"));
    EXPECT_FALSE(program->isOn);
    EXPECT_FALSE(access.embedsWebEngine(m_pid));
}

TEST_F(ProgramAccessTest, TurnsASwitchOnInACopyAndRemovesTheCopy)
{
    DesktopProgramAccess access(m_own);
    const QString name = access.programOf(m_pid).value().entry;
    const QByteArray systems = read(m_system + name);
    EXPECT_EQ(access.turnOn(name, m_pid), QString());
    EXPECT_TRUE(read(m_own + name).contains("Exec=sleep --force-renderer-accessibility %U"));
    EXPECT_EQ(read(m_system + name), systems);
    EXPECT_EQ(access.turnedOn().size(), 1);
    EXPECT_TRUE(access.programOf(m_pid).value().isOn);
    EXPECT_EQ(access.turnOff(name), QString());
    EXPECT_FALSE(QFile::exists(m_own + name));
    EXPECT_TRUE(access.turnedOn().isEmpty());
}

TEST_F(ProgramAccessTest, KeepsAnEntryOfTheUsersOwn)
{
    const QByteArray users = "[Desktop Entry]\nType=Application\nName=Mine\nExec=sleep -v %U\n";
    const QString file = m_own + QStringLiteral("sleeper.desktop");
    write(file, users);
    DesktopProgramAccess access(m_own);
    EXPECT_EQ(access.turnOn(QStringLiteral("sleeper.desktop"), m_pid), QString());
    EXPECT_TRUE(read(file).contains("Exec=sleep --force-renderer-accessibility -v %U"));
    EXPECT_EQ(access.turnOff(QStringLiteral("sleeper.desktop")), QString());
    EXPECT_EQ(read(file), users);
}

TEST_F(ProgramAccessTest, SaysWhyAnEntryCannotBeChanged)
{
    DesktopProgramAccess access(m_own);
    EXPECT_NE(access.turnOn(QStringLiteral("missing.desktop"), m_pid), QString());
    write(folder.path() + QStringLiteral("/blocked"), "a file where the folder should be");
    DesktopProgramAccess blocked(folder.path() + QStringLiteral("/blocked"));
    EXPECT_NE(blocked.turnOn(QStringLiteral("sleeper.desktop"), m_pid), QString());
}

TEST_F(ProgramAccessTest, StartsAProgramAgainOnlyAfterItsUserHasQuitIt)
{
    const QString marker = folder.path() + QStringLiteral("/started");
    write(m_system + QStringLiteral("again.desktop"),
          "[Desktop Entry]\nType=Application\nName=Again\nExec=touch " + marker.toUtf8() + "\n");
    DesktopProgramAccess access(m_own);
    std::optional<bool> started;
    access.startAfterQuit(QStringLiteral("again.desktop"), m_pid,
                          [&](bool done) { started = done; });
    QCoreApplication::processEvents();
    EXPECT_FALSE(started);
    EXPECT_EQ(m_program.state(), QProcess::Running);
    m_program.kill();
    m_program.waitForFinished();
    ASSERT_TRUE(waitUntil([&] { return started.has_value(); }));
    EXPECT_TRUE(*started);
    EXPECT_TRUE(waitUntil([&] { return QFile::exists(marker); }));
}
