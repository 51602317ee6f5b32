// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "AutomaticProperties.h"

#include "MetricPost/Version.h"
#include "ReadWriteLock.h"

namespace metricpost
{

namespace
{

struct State {
    ReadWriteLock automaticPropertiesLock{QStringLiteral("automaticPropertiesLock")};
    Properties properties;
    Properties peopleProperties;
};

// Never destroyed: a tracking queue may still read it while the process ends.
State &state()
{
    static State *const instance = new State;
    return *instance;
}

template <class T>
void insertIfKnown(Properties &properties, const QString &name, const std::optional<T> &value)
{
    if (value)
        properties.insert(name, *value);
}

} // namespace

Properties AutomaticProperties::eventProperties(const SystemInfo &system,
                                                const ApplicationFacts &facts)
{
    Properties result{
        {QStringLiteral("$os"), system.os},
        {QStringLiteral("$os_version"), system.osVersion},
        {QStringLiteral("mp_lib"), QStringLiteral("swift")},
        {QStringLiteral("$lib_version"), QLatin1String(libraryVersion)},
        {QStringLiteral("$manufacturer"), system.manufacturer},
        {QStringLiteral("$model"), system.model},
    };
    insertIfKnown(result, QStringLiteral("$screen_height"), facts.screenHeight);
    insertIfKnown(result, QStringLiteral("$screen_width"), facts.screenWidth);
    insertIfKnown(result, QStringLiteral("$app_build_number"), facts.bundleVersion);
    insertIfKnown(result, QStringLiteral("$app_version_string"), facts.bundleShortVersion);
    return result;
}

Properties AutomaticProperties::profileProperties(const SystemInfo &system,
                                                  const ApplicationFacts &facts)
{
    Properties result{
        {QStringLiteral("$ios_device_model"), system.model},
        {QStringLiteral("$ios_version"), system.osVersion},
        {QStringLiteral("$ios_lib_version"), QLatin1String(libraryVersion)},
        {QStringLiteral("$swift_lib_version"), QLatin1String(libraryVersion)},
    };
    insertIfKnown(result, QStringLiteral("$ios_app_version"), facts.bundleVersion);
    insertIfKnown(result, QStringLiteral("$ios_app_release"), facts.bundleShortVersion);
    return result;
}

void AutomaticProperties::compute(const SystemInfo &system, const ApplicationFacts &facts)
{
    state().automaticPropertiesLock.write([&] {
        state().properties = eventProperties(system, facts);
        state().peopleProperties = profileProperties(system, facts);
    });
}

void AutomaticProperties::computeOnce(const SystemInfo &system)
{
    state().automaticPropertiesLock.write([&] {
        if (state().properties.isEmpty()) {
            state().properties = eventProperties(system, {});
            state().peopleProperties = profileProperties(system, {});
        }
    });
}

Properties AutomaticProperties::properties()
{
    return state().automaticPropertiesLock.read([] { return state().properties; });
}

Properties AutomaticProperties::peopleProperties()
{
    return state().automaticPropertiesLock.read([] { return state().peopleProperties; });
}

} // namespace metricpost
