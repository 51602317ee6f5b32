// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "UtilityThread.h"

#include <pthread.h>
#include <pthread/qos.h>

namespace metricpost
{

void becomeUtilityThread(const QByteArray &name)
{
    constexpr qsizetype length = 15;
    pthread_setname_np(name.right(length).constData());
    pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0);
}

} // namespace metricpost
