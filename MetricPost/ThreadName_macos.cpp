#include "ThreadName.h"

#include <pthread.h>

namespace metricpost
{

void setThreadName(const QByteArray &name)
{
    constexpr qsizetype length = 15;
    pthread_setname_np(name.right(length).constData());
}

} // namespace metricpost
