// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/LinuxInstallation.h"
#include "platform/linux/desktop/DesktopEntry.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QKeyEvent>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <csignal>

using platform::linux_::LinuxInstallation;

namespace
{

QString s(const char *text)
{
    return QString::fromUtf8(text);
}

class LinuxInstallationTest : public testing::Test
{
protected:
    QTemporaryDir m_folder;
    QString m_root = m_folder.path();
    QString m_bundle = m_root + s("/Down loads/quillet-1.0");
    LinuxInstallation::Places m_places{m_bundle + s("/bin/quillet"), m_root + s("/home"),
                                       m_root + s("/home/.local/share"), m_root + s("/status")};

    void SetUp() override
    {
        write(m_root + s("/status"), "Name:\tquillet\nTracerPid:\t0\n");
        write(m_bundle + s("/bin/quillet"), "#!/bin/sh\n", 0755);
        write(m_bundle + s("/share/applications/" QUILLET_APP_ID ".desktop"),
              "[Desktop Entry]\nName=Quillet\nTryExec=quillet\nExec=quillet\nIcon=quillet\n");
        write(m_bundle + s("/share/readonly/secret"), "s", 0400);
        ::chmod(QFile::encodeName(m_bundle + s("/share/readonly")).constData(), 0555);
        QFile::link(s("bin/quillet"), m_bundle + s("/start"));
    }

    void TearDown() override
    {
        ::chmod(QFile::encodeName(m_bundle + s("/share/readonly")).constData(), 0755);
    }

    static void write(const QString &path, const QByteArray &contents, mode_t mode = 0644)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(contents);
        ::chmod(QFile::encodeName(path).constData(), mode);
    }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(missing)");
    }
};

TEST_F(LinuxInstallationTest, KnowsWhereProgramsBelong)
{
    LinuxInstallation installation(m_places);
    EXPECT_EQ(installation.bundlePath(), m_bundle);
    EXPECT_EQ(installation.targetPath(), m_places.home + s("/.local/opt/quillet"));
    for (const char *path : {"/usr", "/usr/local", "/opt/tools/anything", "/usr/local/quillet",
                             "/app", "/snap/quillet/12", "/nix/store/abc-quillet"})
        EXPECT_TRUE(installation.isInstalledLocation(s(path))) << path;
    EXPECT_TRUE(installation.isInstalledLocation(m_places.home + s("/.local")));
    EXPECT_TRUE(installation.isInstalledLocation(m_places.home + s("/.local/opt/other")));
    EXPECT_FALSE(installation.isInstalledLocation(m_bundle));
    EXPECT_FALSE(installation.isInstalledLocation(s("/optional/quillet")));
    EXPECT_FALSE(installation.isInstalledLocation(s("/application")));
    m_places.packedInto = s("/home/a/Quillet.AppImage");
    EXPECT_TRUE(LinuxInstallation(m_places).isInstalledLocation(s("/tmp/.mount_quillet")));

    QDir().mkpath(m_places.home + s("/.local/opt/real"));
    QFile::link(m_places.home + s("/.local/opt/real"), m_root + s("/link"));
    EXPECT_TRUE(installation.isInstalledLocation(m_root + s("/link")));
}

TEST_F(LinuxInstallationTest, StartsAtLoginOnlyAfterTheUserHasAskedForIt)
{
    m_places.configHome = m_root + s("/config");
    LinuxInstallation installation(m_places);
    EXPECT_FALSE(installation.startsAtLogin());
    EXPECT_TRUE(installation.setStartsAtLogin(true));
    EXPECT_TRUE(installation.startsAtLogin());
    EXPECT_TRUE(read(m_places.configHome + s("/autostart/quillet.desktop"))
                    .contains("\nExec=\"" + m_places.executable.toUtf8() + "\" --background\n"));
    EXPECT_TRUE(installation.setStartsAtLogin(false));
    EXPECT_FALSE(installation.startsAtLogin());
    EXPECT_TRUE(installation.setStartsAtLogin(false)) << "already as wanted";
}

TEST_F(LinuxInstallationTest, RecognisesDevelopmentRuns)
{
    LinuxInstallation installation(m_places);
    EXPECT_FALSE(installation.isDevelopmentRun());

    write(m_root + s("/status"), "TracerPid:\t4711\n");
    EXPECT_TRUE(installation.isDevelopmentRun());
    write(m_root + s("/status"), "TracerPid:\t0\n");

    const QString cache = m_root + s("/Down loads/CMakeCache.txt");
    write(cache, "");
    EXPECT_TRUE(installation.isDevelopmentRun());
    QFile::remove(cache);

    QFile::remove(m_bundle + QString::fromUtf16(platform::linux_::bundledEntryPath));
    EXPECT_TRUE(installation.isDevelopmentRun()) << "would take a foreign folder along";

    m_places.processStatus = m_root + s("/nothing");
    testing::internal::CaptureStderr();
    LinuxInstallation(m_places).isDevelopmentRun();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "sysctl failed: No such file or directory\n");
}

TEST_F(LinuxInstallationTest, CopiesTheBundleAndTellsTheDesktop)
{
    LinuxInstallation installation(m_places);
    const QString target = installation.targetPath();
    ASSERT_EQ(installation.copyBundle(m_bundle, target), QString());

    EXPECT_EQ(read(target + s("/share/readonly/secret")), "s");
    struct stat info = {};
    ASSERT_EQ(::stat(QFile::encodeName(target + s("/share/readonly/secret")).constData(), &info),
              0);
    EXPECT_EQ(info.st_mode & 07777, mode_t(0400));
    // A folder that its owner may not write could not be filled, updated or removed.
    ASSERT_EQ(::stat(QFile::encodeName(target + s("/share/readonly")).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, mode_t(0755));
    EXPECT_TRUE(QFileInfo(target + s("/bin/quillet")).isExecutable());
    char link[64] = {};
    EXPECT_GT(::readlink(QFile::encodeName(target + s("/start")).constData(), link, sizeof link),
              0);
    EXPECT_STREQ(link, "bin/quillet");

    const QByteArray entry =
        read(m_places.dataHome + s("/applications/" QUILLET_APP_ID ".desktop"));
    EXPECT_EQ(entry, "[Desktop Entry]\nName=Quillet\nTryExec=" + target.toUtf8() +
                         "/bin/quillet\nExec=\"" + target.toUtf8() +
                         "/bin/quillet\"\nIcon=" + target.toUtf8() +
                         "/share/icons/hicolor/scalable/apps/" QUILLET_APP_ID ".svg\n");

    EXPECT_EQ(installation.copyBundle(m_bundle, target), s("File exists"));
}

TEST_F(LinuxInstallationTest, AFailedCopyLeavesNothingBehind)
{
    LinuxInstallation installation(m_places);
    ASSERT_EQ(::mkfifo(QFile::encodeName(m_bundle + s("/share/zzz")).constData(), 0600), 0);
    EXPECT_FALSE(installation.copyBundle(m_bundle, installation.targetPath()).isEmpty());
    const QDir folder(m_places.home + s("/.local/opt"));
    EXPECT_EQ(folder.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList());
    EXPECT_FALSE(QFile::exists(m_places.dataHome + s("/applications/" QUILLET_APP_ID ".desktop")));

    // No room: the reason is told as the system has it.
    ASSERT_TRUE(QFile::remove(m_bundle + s("/share/zzz")));
    write(m_bundle + s("/bin/large"), QByteArray(100'000, 'x'));
    rlimit before{};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto signalBefore = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{70'000, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const QString error = installation.copyBundle(m_bundle, installation.targetPath());
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, signalBefore);
    EXPECT_EQ(error, s("File too large"));
    EXPECT_TRUE(folder.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));

    write(m_root + s("/file"), "");
    EXPECT_EQ(installation.copyBundle(m_bundle, m_root + s("/file/quillet")), s("Not a directory"));
}

TEST_F(LinuxInstallationTest, RemovesDownloadMarksAndNothingElse)
{
    const QByteArray program = QFile::encodeName(m_bundle + s("/bin/quillet"));
    if (::setxattr(program.constData(), "user.xdg.origin.url", "http://x", 8, 0) != 0)
        GTEST_SKIP() << "no extended attributes in " << m_root.toStdString();
    ::setxattr(QFile::encodeName(m_bundle).constData(), "user.xdg.referrer.url", "y", 1, 0);
    ::setxattr(program.constData(), "user.comment", "keep", 4, 0);

    LinuxInstallation(m_places).removeDownloadMarks(m_bundle);

    char names[256] = {};
    EXPECT_EQ(::listxattr(QFile::encodeName(m_bundle).constData(), names, sizeof names), 0);
    ::listxattr(program.constData(), names, sizeof names);
    EXPECT_STREQ(names, "user.comment");
}

TEST_F(LinuxInstallationTest, AlertsAnswerWithTheChosenButton)
{
    LinuxInstallation installation(m_places);
    QString footnote;
    QString shown;
    const auto answer = [&](int button) {
        QTimer::singleShot(0, [&shown, button] {
            auto *alert = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            ASSERT_NE(alert, nullptr);
            shown = alert->text() + s("|") + alert->informativeText();
            EXPECT_EQ(alert->textFormat(), Qt::PlainText);
            QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            if (button < 0)
                QApplication::sendEvent(alert, &escape);
            else
                alert->buttons().at(button)->click();
        });
        return installation.runModalAlert(s("Message"), s("<b>Text"), {s("First"), s("Last")},
                                          footnote);
    };
    EXPECT_EQ(answer(0), 0);
    EXPECT_EQ(shown, s("Message|<b>Text"));
    footnote = s("below");
    EXPECT_EQ(answer(1), 1);
    EXPECT_EQ(shown, s("Message|<b>Text\n\nbelow"));
    EXPECT_EQ(answer(-1), 1);
}

TEST(DesktopEntry, QuotesUnusualPaths)
{
    using platform::linux_::desktopEntryFor;
    EXPECT_EQ(desktopEntryFor("Exec=quillet --setup", s("/opt")),
              "Exec=\"/opt/bin/quillet\" --setup");
    EXPECT_EQ(desktopEntryFor("Exec=quillet", s("/a \"b\"/$c/50%/d\\e")),
              "Exec=\"/a \\\\\"b\\\\\"/\\\\$c/50%%/d\\\\\\\\e/bin/quillet\"");
}

} // namespace
