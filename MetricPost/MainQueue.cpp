#include "MainQueue.h"

#include <QCoreApplication>

namespace metricpost
{

void runOnMainQueue(std::function<void()> function)
{
    if (auto *const application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(function), Qt::QueuedConnection);
}

} // namespace metricpost
