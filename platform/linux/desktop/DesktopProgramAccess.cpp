// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/DesktopProgramAccess.h"

#include "platform/linux/desktop/EntrySwitch.h"
#include "platform/linux/desktop/ProgramEntry.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStandardPaths>
#include <QTimer>

#include <gio/gdesktopappinfo.h>

#include <chrono>
#include <memory>
#include <signal.h>

namespace platform::linux_
{

namespace
{

using namespace std::chrono_literals;

constexpr auto quitCheckInterval = 500ms;
constexpr auto maxQuitWait = 10min;
/// A desktop entry is a page of text; anything longer is not one.
constexpr qint64 maxEntrySize = 1 << 20;

struct Unref {
    void operator()(GDesktopAppInfo *info) const { g_object_unref(info); }
};
using AppInfo = std::unique_ptr<GDesktopAppInfo, Unref>;

AppInfo infoOf(const QString &entry)
{
    return AppInfo(g_desktop_app_info_new(entry.toUtf8().constData()));
}

std::optional<QByteArray> contentsOf(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > maxEntrySize)
        return std::nullopt;
    return file.readAll();
}

QString nameOf(const QString &entry)
{
    const AppInfo info = infoOf(entry);
    return info ? QString::fromUtf8(g_app_info_get_name(G_APP_INFO(info.get()))) : entry;
}

bool isRunning(std::int32_t pid)
{
    return ::kill(pid, 0) == 0 || errno == EPERM;
}

} // namespace

DesktopProgramAccess::DesktopProgramAccess(QString userEntries)
    : m_userEntries(std::move(userEntries))
{
}

QString DesktopProgramAccess::defaultUserEntries()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
           QStringLiteral("/applications");
}

QString DesktopProgramAccess::fileOf(const QString &entry) const
{
    return m_userEntries + u'/' + entry;
}

std::optional<ProgramAccess::Program> DesktopProgramAccess::programOf(std::int32_t pid)
{
    const std::optional<ProgramEntry> entry = entryOfProcess(pid);
    if (!entry || entry->id.isEmpty())
        return std::nullopt;
    const std::optional<QByteArray> own = contentsOf(fileOf(entry->id));
    return Program{entry->id, entry->name, own && hasOurSwitch(*own)};
}

bool DesktopProgramAccess::embedsWebEngine(std::int32_t pid)
{
    QFile maps(QStringLiteral("/proc/%1/maps").arg(pid));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains("WebEngineCore.so");
}

QList<ProgramAccess::Program> DesktopProgramAccess::turnedOn()
{
    QList<Program> programs;
    const QStringList entries =
        QDir(m_userEntries).entryList({QStringLiteral("*.desktop")}, QDir::Files);
    for (const QString &entry : entries) {
        const std::optional<QByteArray> contents = contentsOf(fileOf(entry));
        if (contents && hasOurSwitch(*contents))
            programs.append({entry, nameOf(entry), true});
    }
    return programs;
}

QString DesktopProgramAccess::turnOn(const QString &entry, std::int32_t pid)
{
    const std::optional<QByteArray> own = contentsOf(fileOf(entry));
    std::optional<QByteArray> source = own;
    if (!source) {
        const AppInfo info = infoOf(entry);
        const char *file = info ? g_desktop_app_info_get_filename(info.get()) : nullptr;
        source = file ? contentsOf(QFile::decodeName(file)) : std::nullopt;
    }
    if (!source)
        return tr("The menu entry of this program cannot be read.");
    const SwitchKind kind = embedsWebEngine(pid) ? SwitchKind::Variable : SwitchKind::Option;
    const QByteArray changed = entryWithSwitch(*source, kind, !own);
    QDir().mkpath(m_userEntries);
    QSaveFile file(fileOf(entry));
    if (!file.open(QIODevice::WriteOnly) || file.write(changed) != changed.size() || !file.commit())
        return tr("The menu entry could not be written: %1.").arg(file.errorString());
    return {};
}

QString DesktopProgramAccess::turnOff(const QString &entry)
{
    const std::optional<QByteArray> own = contentsOf(fileOf(entry));
    if (!own || !hasOurSwitch(*own))
        return {};
    if (wasCreatedByUs(*own)) {
        QFile file(fileOf(entry));
        return file.remove()
                   ? QString()
                   : tr("The menu entry could not be removed: %1.").arg(file.errorString());
    }
    const QByteArray changed = entryWithoutSwitch(*own);
    QSaveFile file(fileOf(entry));
    if (!file.open(QIODevice::WriteOnly) || file.write(changed) != changed.size() || !file.commit())
        return tr("The menu entry could not be written: %1.").arg(file.errorString());
    return {};
}

void DesktopProgramAccess::startAfterQuit(const QString &entry, std::int32_t pid,
                                          std::function<void(bool)> completion)
{
    auto *timer = new QTimer(this);
    const auto deadline = std::chrono::steady_clock::now() + maxQuitWait;
    connect(timer, &QTimer::timeout, this, [=] {
        const bool running = isRunning(pid);
        if (running && std::chrono::steady_clock::now() < deadline)
            return;
        timer->stop();
        timer->deleteLater();
        const AppInfo info = running ? nullptr : infoOf(entry);
        completion(info && g_app_info_launch(G_APP_INFO(info.get()), nullptr, nullptr, nullptr));
    });
    timer->start(quitCheckInterval);
}

} // namespace platform::linux_
