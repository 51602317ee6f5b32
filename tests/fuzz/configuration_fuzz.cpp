// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// The configuration file: any content is read, and an answer that is remembered is read again.

#include "backend/model/Configuration.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("backend.ini"));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        std::abort();
    file.write(reinterpret_cast<const char *>(data), qint64(size));
    file.close();
    ConfigurationFile configuration(path, {});
    const auto before = configuration.current().model;
    if (!configuration.remember({QStringLiteral("127.0.0.1:11434"), 998, true}))
        std::abort();
    const Configuration after = configuration.current();
    if (!after.foundServer || !after.foundServer->agreed || after.model != before)
        std::abort();
    return 0;
}
