// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "UtilityThread.h"

#include <pthread.h>

namespace metricpost
{

void becomeUtilityThread(const QByteArray &name)
{
    constexpr qsizetype length = 15;
    pthread_setname_np(pthread_self(), name.right(length).constData());
}

} // namespace metricpost
