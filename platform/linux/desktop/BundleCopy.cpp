// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/BundleCopy.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace platform::linux_
{

namespace
{

namespace fs = std::filesystem;

fs::path toPath(const QString &name)
{
    return QFile::encodeName(name).toStdString();
}

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// Everything of `in` to the end of `out`. File systems of a network or a program may be
/// interrupted by a signal.
bool copyBytes(int in, int out)
{
    std::array<char, 1 << 16> buffer;
    ssize_t count = 0;
    while ((count = TEMP_FAILURE_RETRY(::read(in, buffer.data(), buffer.size()))) > 0) {
        for (ssize_t done = 0; done < count;) {
            const ssize_t written =
                TEMP_FAILURE_RETRY(::write(out, buffer.data() + done, size_t(count - done)));
            if (written < 0)
                return false;
            done += written;
        }
    }
    return count == 0;
}

/// std::filesystem::copy_file() calls a full disk an input/output error; the user is to read what
/// it is.
void copyFile(const fs::path &from, const fs::path &to, fs::perms permissions,
              std::error_code &error)
{
    const int in = ::open(from.c_str(), O_RDONLY | O_CLOEXEC);
    const int out = in < 0 ? -1 : ::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (out < 0 || !copyBytes(in, out) || ::fchmod(out, mode_t(permissions)) != 0)
        error = lastError();
    // Some file systems tell only now that there was no room.
    if (out >= 0 && ::close(out) != 0 && !error)
        error = lastError();
    if (in >= 0)
        ::close(in);
}

void copyEntry(const fs::directory_entry &entry, const fs::path &to, std::error_code &error)
{
    const fs::file_status status = entry.symlink_status(error);
    if (error)
        return;
    switch (status.type()) {
    case fs::file_type::symlink:
        fs::copy_symlink(entry.path(), to, error);
        return;
    case fs::file_type::directory:
        fs::create_directory(to, error);
        if (!error)
            fs::permissions(to, status.permissions() | fs::perms::owner_all, error);
        return;
    case fs::file_type::regular:
        copyFile(entry.path(), to, status.permissions(), error);
        return;
    default:
        // No bundle has any.
        error = std::make_error_code(std::errc::operation_not_supported);
    }
}

void copyTree(const fs::path &from, const fs::path &to, std::error_code &error)
{
    fs::recursive_directory_iterator it(from, error);
    for (; !error && it != fs::recursive_directory_iterator(); it.increment(error)) {
        copyEntry(*it, to / it->path().lexically_relative(from), error);
        if (error)
            return;
    }
}

// Before the rename, so that a crash cannot leave the name without the contents.
void writeOut(const fs::path &folder, std::error_code &error)
{
    const int fd = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0 || ::syncfs(fd) != 0)
        error = lastError();
    if (fd >= 0)
        ::close(fd);
}

bool isOriginAttribute(const QByteArray &name)
{
    return name.startsWith("user.xdg.origin.") || name.startsWith("user.xdg.referrer.");
}

void removeOriginAttributesOf(const fs::path &path)
{
    const ssize_t size = ::llistxattr(path.c_str(), nullptr, 0);
    if (size <= 0)
        return;
    QByteArray names(size, '\0');
    names.resize(std::max<ssize_t>(0, ::llistxattr(path.c_str(), names.data(), size_t(size))));
    for (const QByteArray &name : names.split('\0')) {
        if (isOriginAttribute(name))
            ::lremovexattr(path.c_str(), name.constData());
    }
}

} // namespace

QString copyFolder(const QString &from, const QString &to)
{
    const fs::path source = toPath(from);
    const fs::path target = toPath(to);
    std::error_code error;
    if (fs::exists(fs::symlink_status(target, error)))
        return QString::fromStdString(std::make_error_code(std::errc::file_exists).message());
    fs::create_directories(target.parent_path(), error);
    if (error)
        return QString::fromStdString(error.message());

    // Beside the target, so that the rename stays on one file system.
    std::string staging = (target.parent_path() / ".quillet-XXXXXX").string();
    if (!::mkdtemp(staging.data()))
        return QString::fromStdString(lastError().message());
    copyTree(source, staging, error);
    if (!error)
        fs::permissions(staging, fs::status(source, error).permissions() | fs::perms::owner_all,
                        error);
    if (!error)
        writeOut(staging, error);
    if (!error)
        fs::rename(staging, target, error);
    if (error) {
        std::error_code ignored;
        fs::remove_all(staging, ignored);
        return QString::fromStdString(error.message());
    }
    writeOut(target.parent_path(), error); // the copy is whole even when this fails
    return {};
}

void removeOriginAttributes(const QString &path)
{
    const fs::path root = toPath(path);
    removeOriginAttributesOf(root);
    std::error_code error;
    fs::recursive_directory_iterator it(root, error);
    for (; !error && it != fs::recursive_directory_iterator(); it.increment(error))
        removeOriginAttributesOf(it->path());
}

} // namespace platform::linux_
