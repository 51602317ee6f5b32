// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "MetricPost/MetricPostInstance.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

namespace metricpost::test
{

struct Instances : testing::Test {
    MetricPostOptions options(const QString &token) const
    {
        MetricPostOptions result;
        result.token = token;
        result.useGzipCompression = false;
        return result;
    }
    std::unique_ptr<MetricPostInstance> make(const MetricPostOptions &with)
    {
        return std::make_unique<MetricPostInstance>(with, sandbox.environment());
    }
    std::unique_ptr<MetricPostInstance> make() { return make(options(u"tok"_qs)); }

    QStringList sentNames() const
    {
        QStringList names;
        for (const URLRequest &request : sandbox.transport->requests()) {
            for (const Properties &record : recordsOf(*request.body))
                names.append(textAt(record, {u"event"_qs}));
        }
        return names;
    }
    int stored() const { return sandbox.storedEvents(u"tok"_qs); }

    Sandbox sandbox;
};

} // namespace metricpost::test
