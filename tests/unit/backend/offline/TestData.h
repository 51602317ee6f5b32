#pragma once

#include "backend/offline/OfflineEngine.h"

#include <QFile>

#include <gtest/gtest.h>

/// A file of the folder data/.
inline QString testData(const char *name)
{
    QFile data(QString::fromUtf8(OFFLINE_TEST_DATA) + u'/' + QString::fromUtf8(name));
    EXPECT_TRUE(data.open(QIODevice::ReadOnly)) << name;
    return QString::fromUtf8(data.readAll());
}

inline const OfflineEngine &engine()
{
    static const OfflineEngine shared;
    return shared;
}
