// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "Track.h"
#include "AutomaticProperties.h"
#include "MetricPostPersistence.h"
#include "SerialQueue.h"
#include "SessionMetadata.h"
#include "TestSupport.h"

#include <gtest/gtest.h>

using namespace metricpost;
using namespace metricpost::test;

namespace
{

struct Owner : TrackOwner {
    bool trackAutomaticEventsEnabled() const override { return automatic; }
    bool hasOptedOutTracking() const override { return optedOut; }
    bool automatic = false;
    bool optedOut = false;
};

struct Tracking : testing::Test {
    Tracking()
    {
        AutomaticProperties::compute(environment.systemInfo, {1080.0, 1920.0, u"7"_qs, u"1.2"_qs});
        track.setMetricPostInstance(&owner);
    }

    Properties trackOne(const QString &event, const Properties &properties = {},
                        const Properties &timed = {}, const Properties &super = {})
    {
        return track.track(event, properties, timed, super, identity, *sandbox.now);
    }
    Properties lastRecord()
    {
        const auto records = persistence.loadEntitiesInBatch(PersistenceType::events);
        return records.isEmpty() ? Properties() : records.constLast();
    }
    QString property(const QString &name) { return textAt(lastRecord(), {u"properties"_qs, name}); }

    Sandbox sandbox;
    const Environment environment = sandbox.environment();
    SerialQueue queue{u"test"_qs};
    SessionMetadata metadata{queue, environment.now, environment.random};
    MetricPostPersistence persistence{u"tok"_qs, sandbox.storeSurroundings()};
    Track track{u"tok"_qs, u"tok"_qs, metadata, persistence, sandbox.defaults};
    Owner owner;
    MetricPostIdentity identity{u"$device:d"_qs, {}, u"d"_qs, {}, {}, {}};
};

} // namespace

TEST_F(Tracking, ARecordCarriesTheFourLayersInTheirOrder)
{
    *sandbox.now = 1234.5675;
    identity.userId = u"me"_qs;
    identity.hadPersistedDistinctId = true;
    const Properties super{{u"a"_qs, u"super"_qs},
                           {u"b"_qs, u"super"_qs},
                           {u"distinct_id"_qs, u"super"_qs},
                           {u"$os"_qs, u"super"_qs}};
    trackOne(u"Apply"_qs, {{u"b"_qs, u"caller"_qs}, {u"$model"_qs, u"caller"_qs}}, {}, super);

    EXPECT_EQ(textAt(lastRecord(), {u"event"_qs}), u"Apply"_qs);
    const QMap<QString, QString> expected{
        {u"token"_qs, u"tok"_qs},
        {u"time"_qs, u"1234568"_qs},
        {u"distinct_id"_qs, u"super"_qs},
        {u"$device_id"_qs, u"d"_qs},
        {u"$user_id"_qs, u"me"_qs},
        {u"$had_persisted_distinct_id"_qs, u"true"_qs},
        {u"a"_qs, u"super"_qs},
        {u"b"_qs, u"caller"_qs},
        {u"$os"_qs, u"super"_qs},
        {u"$os_version"_qs, u"12"_qs},
        {u"$manufacturer"_qs, u"Maker"_qs},
        {u"$model"_qs, u"caller"_qs},
        {u"mp_lib"_qs, u"swift"_qs},
        {u"$lib_version"_qs, u"5.1.0"_qs},
        {u"$screen_height"_qs, u"1080"_qs},
        {u"$screen_width"_qs, u"1920"_qs},
        {u"$app_build_number"_qs, u"7"_qs},
        {u"$app_version_string"_qs, u"1.2"_qs},
    };
    QMap<QString, QString> actual;
    const Properties properties = *lastRecord()[u"properties"_qs].get<Properties>();
    for (auto entry = properties.cbegin(); entry != properties.cend(); ++entry)
        actual.insert(entry.key(), entry->description());
    EXPECT_EQ(actual, expected);
    EXPECT_EQ(properties[u"time"_qs].kind(), MetricPostType::Kind::Int);
    EXPECT_EQ(AutomaticProperties::peopleProperties().size(), 6);

    trackOne(u"x"_qs, {{u"time"_qs, 2}}, {}, {{u"time"_qs, 1}});
    EXPECT_EQ(property(u"time"_qs), u"2"_qs);
}

TEST_F(Tracking, ATimedEventReportsItsDurationOnce)
{
    Properties timed = Track::time(u"Execute"_qs, {{u"other"_qs, 1.0}}, 100.0);
    *sandbox.now = 102.34567;
    timed = trackOne(u"Execute"_qs, {}, timed);
    EXPECT_EQ(property(u"$duration"_qs), u"2.346"_qs);
    EXPECT_EQ(timed.keys(), QStringList{u"other"_qs});
    EXPECT_EQ(MetricPostPersistence::loadTimedEvents(u"tok"_qs, *sandbox.defaults).keys(),
              timed.keys());
    *sandbox.now = 103;
    trackOne(u"Execute"_qs, {}, timed);
    EXPECT_EQ(at(lastRecord(), {u"properties"_qs, u"$duration"_qs}).kind(),
              MetricPostType::Kind::Null);
    EXPECT_TRUE(Track::clearTimedEvent(u"other"_qs, timed).isEmpty());
    // Halfway between two thousandths, and exactly so in binary.
    *sandbox.now = 104.0625;
    trackOne(u"Execute"_qs, {}, {{u"Execute"_qs, 102.0}});
    EXPECT_EQ(property(u"$duration"_qs), u"2.062"_qs);
}

TEST_F(Tracking, EmptyNamesAreReplacedOrRefused)
{
    trackOne({});
    EXPECT_EQ(textAt(lastRecord(), {u"event"_qs}), u"mp_event"_qs);
    EXPECT_TRUE(Track::time({}, {}, 1).isEmpty());
    EXPECT_EQ(Track::clearTimedEvent({}, {{u"a"_qs, 1.0}}).size(), 1);
}

TEST_F(Tracking, AutomaticEventsNeedAnOwnerThatWantsThem)
{
    trackOne(u"$ae_start"_qs);
    track.setMetricPostInstance(nullptr);
    trackOne(u"$ae_start"_qs);
    EXPECT_TRUE(lastRecord().isEmpty());
    owner.automatic = true;
    track.setMetricPostInstance(&owner);
    trackOne(u"$ae_start"_qs);
    EXPECT_FALSE(lastRecord().isEmpty());
}

TEST_F(Tracking, ASessionNumbersItsRecordsFromZero)
{
    const auto entry = [&](const QString &key) {
        return textAt(lastRecord(), {u"$mp_metadata"_qs, key});
    };
    *sandbox.random = 0xab;
    *sandbox.now = 2000.9;
    metadata.applicationWillEnterForeground();
    ASSERT_TRUE(queue.sync([] {}));
    EXPECT_EQ(textAt(metadata.toDict(false), {u"$mp_metadata"_qs, u"$mp_session_seq_id"_qs}),
              u"0"_qs);
    QStringList numbers;
    for (int i = 0; i < 3; ++i) {
        *sandbox.now = 2001 + i;
        trackOne(u"e"_qs);
        numbers.append(entry(u"$mp_session_seq_id"_qs));
    }
    EXPECT_EQ(numbers, (QStringList{u"0"_qs, u"1"_qs, u"2"_qs}));
    EXPECT_EQ(entry(u"$mp_session_id"_qs), u"000000ab000000ac"_qs);
    EXPECT_EQ(entry(u"$mp_event_id"_qs), u"000000b3000000b4"_qs);
    EXPECT_EQ(entry(u"$mp_session_start_sec"_qs), u"2000"_qs);
    EXPECT_EQ(textAt(metadata.toDict(false), {u"$mp_metadata"_qs, u"$mp_session_seq_id"_qs}),
              u"1"_qs);
}

TEST_F(Tracking, SuperPropertiesMergeOnceOrAlwaysUnlessOptedOut)
{
    const Properties present{{u"a"_qs, 1}, {u"b"_qs, u"default"_qs}};
    EXPECT_EQ(textAt(track.registerSuperProperties({{u"a"_qs, 2}}, present), {u"a"_qs}), u"2"_qs);
    const Properties once{{u"a"_qs, 9}, {u"b"_qs, 9}, {u"c"_qs, 9}};
    EXPECT_EQ(MetricPostType(track.registerSuperPropertiesOnce(once, present, std::nullopt))
                  .description(),
              u"[\"a\": 1, \"b\": default, \"c\": 9]"_qs);
    EXPECT_EQ(MetricPostType(
                  track.registerSuperPropertiesOnce(once, present, MetricPostType(u"default"_qs)))
                  .description(),
              u"[\"a\": 1, \"b\": 9, \"c\": 9]"_qs);
    EXPECT_EQ(Track::unregisterSuperProperty(u"a"_qs, present).keys(), QStringList{u"b"_qs});
    owner.optedOut = true;
    EXPECT_TRUE(track.registerSuperProperties({{u"z"_qs, 1}}, {}).isEmpty());
    EXPECT_TRUE(track.registerSuperPropertiesOnce({{u"z"_qs, 1}}, {}, std::nullopt).isEmpty());
}
