// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/desktop/OpenUrl.h"

#include <QDebug>
#include <QUrl>

#include <gio/gio.h>

namespace platform::linux_
{

bool openUrl(const QUrl &url)
{
    // Unlike the usual helper scripts, this knows at once when there is no program for the URL.
    GError *error = nullptr;
    const bool opened =
        g_app_info_launch_default_for_uri(url.toEncoded().constData(), nullptr, &error);
    if (!opened)
        qWarning().noquote() << "Cannot open" << url.scheme()
                             << "address:" << QString::fromUtf8(error->message);
    g_clear_error(&error);
    return opened;
}

} // namespace platform::linux_
