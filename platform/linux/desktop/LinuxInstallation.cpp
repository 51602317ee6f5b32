// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/LinuxInstallation.h"

#include "platform/linux/desktop/BundleCopy.h"
#include "platform/linux/desktop/DesktopEntry.h"

#include <QApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QSaveFile>
#include <QStandardPaths>

#include <algorithm>
#include <cstdio>

namespace platform::linux_
{

namespace
{

QString realPath(const QString &path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(path) : canonical;
}

bool isAtOrBelow(const QString &path, const QString &folder)
{
    return path == folder || path.startsWith(folder + QLatin1Char('/'));
}

/// The AppImage that this program runs from; a program that another AppImage has started inherits
/// its variables, but does not lie in its mount.
QString packedFile()
{
    const QString mount = qEnvironmentVariable("APPDIR");
    return !mount.isEmpty() && isAtOrBelow(QCoreApplication::applicationFilePath(), mount)
               ? qEnvironmentVariable("APPIMAGE")
               : QString();
}

} // namespace

LinuxInstallation::Places LinuxInstallation::systemPlaces()
{
    return {QCoreApplication::applicationFilePath(),
            QDir::homePath(),
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation),
            QStringLiteral("/proc/self/status"),
            QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation),
            packedFile()};
}

QString LinuxInstallation::bundlePath()
{
    return QFileInfo(QFileInfo(m_places.executable).path()).path();
}

QString LinuxInstallation::targetPath()
{
    return m_places.home + QStringLiteral("/.local/opt/quillet");
}

bool LinuxInstallation::isInstalledLocation(const QString &path)
{
    const QString real = realPath(path);
    const QString own = realPath(m_places.home) + QStringLiteral("/.local");
    // Where package managers put programs, those of packages in boxes of their own among them.
    const QStringList folders = {QStringLiteral("/usr"),       QStringLiteral("/opt"),
                                 own + QStringLiteral("/opt"), QStringLiteral("/app"),
                                 QStringLiteral("/snap"),      QStringLiteral("/nix/store"),
                                 QStringLiteral("/gnu/store")};
    // A program that is one file is mounted for each run, and stays where the user has put it.
    return real == own || !m_places.packedInto.isEmpty() ||
           std::any_of(folders.begin(), folders.end(),
                       [&real](const QString &folder) { return isAtOrBelow(real, folder); });
}

bool LinuxInstallation::isDevelopmentRun()
{
    if (isTraced())
        return true;
    for (QDir folder = QFileInfo(m_places.executable).dir(); !folder.isRoot(); folder.cdUp()) {
        if (folder.exists(QStringLiteral("CMakeCache.txt")))
            return true;
    }
    return !QFileInfo::exists(bundlePath() + QString::fromUtf16(bundledEntryPath));
}

bool LinuxInstallation::isTraced() const
{
    QFile status(m_places.processStatus);
    if (!status.open(QIODevice::ReadOnly)) {
        std::perror("sysctl failed");
        return false;
    }
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("TracerPid:"))
            return line.mid(line.indexOf(':') + 1).trimmed().toInt() != 0;
    }
    return false;
}

bool LinuxInstallation::fileExists(const QString &path)
{
    return QFileInfo::exists(path);
}

int LinuxInstallation::runModalAlert(const QString &messageText, const QString &informativeText,
                                     const QStringList &buttons, const QString &footnote)
{
    QMessageBox alert;
    alert.setIcon(QMessageBox::Information);
    constexpr QSize icon(48, 48);
    alert.setIconPixmap(QApplication::windowIcon().pixmap(icon, alert.devicePixelRatioF()));
    alert.setWindowTitle(QStringLiteral("Quillet"));
    alert.setTextFormat(Qt::PlainText);
    alert.setText(messageText);
    alert.setInformativeText(
        footnote.isEmpty() ? informativeText : informativeText + QStringLiteral("\n\n") + footnote);
    // The message is a heading, and a sentence below it is not broken into words.
    alert.setStyleSheet(QStringLiteral("#qt_msgbox_label { font-weight: bold; }"
                                       "#qt_msgbox_informativelabel { min-width: 24em; }"));
    QList<QAbstractButton *> added;
    for (const QString &title : buttons)
        added.append(alert.addButton(title, added.isEmpty() ? QMessageBox::AcceptRole
                                                            : QMessageBox::RejectRole));
    if (!added.isEmpty()) {
        alert.setDefaultButton(static_cast<QPushButton *>(added.first()));
        alert.setEscapeButton(added.last());
    }
    alert.exec();
    const int clicked = int(added.indexOf(alert.clickedButton()));
    return clicked < 0 ? int(added.size()) - 1 : clicked;
}

QString LinuxInstallation::copyBundle(const QString &from, const QString &to)
{
    QString error = copyFolder(from, to);
    if (error.isEmpty())
        writeDesktopEntry(to);
    return error;
}

void LinuxInstallation::writeDesktopEntry(const QString &bundle) const
{
    QFile bundled(bundle + QString::fromUtf16(bundledEntryPath));
    const QString folder = m_places.dataHome + QStringLiteral("/applications");
    QSaveFile entry(folder + QStringLiteral("/" QUILLET_APP_ID ".desktop"));
    const bool written = bundled.open(QIODevice::ReadOnly) && QDir().mkpath(folder) &&
                         entry.open(QIODevice::WriteOnly) &&
                         entry.write(desktopEntryFor(bundled.readAll(), bundle)) >= 0 &&
                         entry.commit();
    if (!written)
        qWarning().noquote() << "Cannot write the desktop entry in" << folder;
}

void LinuxInstallation::removeDownloadMarks(const QString &path)
{
    removeOriginAttributes(path);
}

void LinuxInstallation::start(const QString &path, const QStringList &arguments)
{
    const QString program = path + QStringLiteral("/bin/quillet");
    if (!QProcess::startDetached(program, arguments, m_places.home))
        qWarning().noquote() << "Cannot start" << program;
}

QString LinuxInstallation::loginEntryPath() const
{
    return m_places.configHome + QStringLiteral("/autostart/quillet.desktop");
}

bool LinuxInstallation::startsAtLogin()
{
    return QFileInfo::exists(loginEntryPath());
}

bool LinuxInstallation::setStartsAtLogin(bool starts)
{
    const QString path = loginEntryPath();
    if (!starts)
        return QFile::remove(path) || !QFileInfo::exists(path);
    const QString program =
        m_places.packedInto.isEmpty() ? m_places.executable : m_places.packedInto;
    QSaveFile entry(path);
    return QDir().mkpath(QFileInfo(path).path()) && entry.open(QIODevice::WriteOnly) &&
           entry.write(loginEntryFor(program)) >= 0 && entry.commit();
}

void LinuxInstallation::terminate()
{
    // Before the event loop runs, the guard's caller does not start it; if it runs, it ends.
    QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
}

} // namespace platform::linux_
