#include "platform/linux/desktop/BundleCopy.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
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
    default:
        // Anything that is not a regular file is an error here: no bundle has any.
        fs::copy_file(entry.path(), to, error);
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
