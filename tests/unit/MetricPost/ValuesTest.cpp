// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "AnyCodable.h"
#include "GzipCompression.h"
#include "JSONHandler.h"
#include "KeyedArchive.h"
#include "LoopbackServer.h"
#include "MetricPost/MPAssert.h"
#include "TestSupport.h"

#include <QRandomGenerator>
#include <QSizeF>

#include <gtest/gtest.h>

#include <limits>

using namespace metricpost;
using namespace metricpost::test;

namespace
{

const QDateTime someDate = QDateTime::fromMSecsSinceEpoch(1'700'000'000'123, Qt::UTC);

Properties oneOfEach()
{
    return {
        {u"bool"_qs, true},
        {u"int"_qs, std::numeric_limits<qint64>::min()},
        {u"uint"_qs, std::numeric_limits<quint64>::max()},
        {u"double"_qs, 0.1 + 0.2},
        {u"float"_qs, 0.1f},
        {u"number"_qs, BoxedNumber{7.5}},
        {u"text"_qs, u"Grüße \U0001F600 \"\\\n\0x"_qs},
        {u"date"_qs, someDate},
        {u"url"_qs, QUrl(u"https://example.test/a b?c=d"_qs)},
        {u"null"_qs, MetricPostType()},
        {u"list"_qs, ValueList{1, u"two"_qs, ValueList{}}},
        {u"nested"_qs, Properties{{u"k"_qs, 3u}}},
    };
}

QByteArray encoded(const MetricPostType &value)
{
    return JSONHandler::serializeJSONObject(ValueList{value}).value_or("refused");
}

MetricPostType nestedLists(int depth)
{
    MetricPostType value = ValueList{};
    for (int i = 1; i < depth; ++i)
        value = ValueList{value};
    return value;
}

} // namespace

TEST(Values, AreValidUnlessABoxedNumberIsNotFiniteOrATypeIsForeign)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const MetricPostType foreign = MetricPostType::fromVariant(QVariant(QSizeF(1, 2)));
    EXPECT_TRUE(MetricPostType(oneOfEach()).isValidNestedTypeAndValue());
    EXPECT_TRUE(MetricPostType(nan).isValidNestedTypeAndValue());
    EXPECT_TRUE(MetricPostType(std::optional<int>()).isValidNestedTypeAndValue());
    for (const MetricPostType &bad : {MetricPostType(BoxedNumber{nan}), foreign}) {
        EXPECT_FALSE(bad.isValidNestedTypeAndValue());
        EXPECT_FALSE(MetricPostType(ValueList{1, bad}).isValidNestedTypeAndValue());
        EXPECT_FALSE(MetricPostType(Properties{{u"k"_qs, bad}}).isValidNestedTypeAndValue());
        EXPECT_FALSE(MetricPostType(std::optional(bad)).isValidNestedTypeAndValue());
    }
}

TEST(Values, ScalarsEqualOnlyTheirOwnTypeAndContainersCompareDeeply)
{
    const Properties all = oneOfEach();
    for (auto a = all.cbegin(); a != all.cend(); ++a) {
        for (auto b = all.cbegin(); b != all.cend(); ++b)
            EXPECT_EQ(a->equals(*b), a.key() == b.key()) << qPrintable(a.key() + b.key());
    }
    EXPECT_FALSE(MetricPostType(1).equals(1u));
    EXPECT_FALSE(MetricPostType(1).equals(1.0));
    EXPECT_FALSE(MetricPostType(1.0).equals(1.0f));
    EXPECT_FALSE(MetricPostType(true).equals(1));
    EXPECT_TRUE(MetricPostType(std::optional(5)).equals(5));
    EXPECT_TRUE(MetricPostType(std::optional<int>()).equals(std::optional<QString>()));
    EXPECT_FALSE(MetricPostType(std::optional<int>()).equals(MetricPostType()));
    EXPECT_TRUE(MetricPostType(all).equals(oneOfEach()));
    Properties other = all;
    other[u"list"_qs] = ValueList{1, u"two"_qs, ValueList{0}};
    EXPECT_FALSE(MetricPostType(all).equals(other));
    EXPECT_FALSE(MetricPostType(Properties{{u"a"_qs, 1}}).equals(Properties{{u"b"_qs, 1}}));
}

TEST(Values, NoDepthExhaustsTheStack)
{
    constexpr int depth = 200'000;
    for (const bool inLists : {true, false}) {
        MetricPostType value = 1;
        for (int i = 0; i < depth; ++i) {
            if (inLists)
                value = ValueList{value};
            else
                value = Properties{{u"k"_qs, std::optional(value)}};
        }
        EXPECT_FALSE(value.isValidNestedTypeAndValue());
        EXPECT_TRUE(encoded(value) == "refused" || encoded(value).contains("nested too deeply"));
    }
    MetricPostType value = 1;
    for (int i = 0; i < MetricPostType::maxDepth; ++i)
        value = ValueList{value};
    EXPECT_TRUE(value.isValidNestedTypeAndValue());
    EXPECT_FALSE(MetricPostType(ValueList{value}).isValidNestedTypeAndValue());
}

TEST(Values, AnInvalidPropertyFailsTheAssertionWithItsTypeAndValue)
{
    QStringList failures;
    const auto before = setAssertionHandler([&](const QString &m) { failures.append(m); });
    assertPropertyTypes(oneOfEach());
    EXPECT_TRUE(failures.isEmpty());
    assertPropertyTypes({{u"x"_qs, BoxedNumber{std::numeric_limits<double>::quiet_NaN()}}});
    setAssertionHandler(before);
    EXPECT_EQ(failures, QStringList{u"Property values must be of valid type (MetricPostType) and "
                                    u"valid value. Got NSNumber and Value nan"_qs});
}

TEST(Json, RewritesWhatPlainJsonCannotCarry)
{
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(encoded(QDateTime::fromSecsSinceEpoch(0)), R"(["1970-01-01T00:00:00.000Z"])");
    EXPECT_EQ(encoded(someDate.toOffsetFromUtc(7200)), R"(["2023-11-14T22:13:20.123Z"])");
    EXPECT_EQ(encoded(QUrl(u"https://example.test/a b"_qs)), R"(["https://example.test/a%20b"])");
    EXPECT_EQ(encoded(0.1f), "[0.1]");
    EXPECT_EQ(encoded(0.1), "[0.1]");
    EXPECT_EQ(encoded(std::numeric_limits<quint64>::max()), "[18446744073709551615]");
    EXPECT_EQ(encoded(std::numeric_limits<qint64>::min()), "[-9223372036854775808]");
    EXPECT_EQ(encoded(BoxedNumber{true}), "[true]");
    EXPECT_EQ(encoded(BoxedNumber{std::numeric_limits<double>::quiet_NaN()}), R"(["nan"])");
    EXPECT_EQ(encoded(-inf), R"(["-inf"])");
    EXPECT_EQ(encoded(float(inf)), R"(["inf"])");
    EXPECT_EQ(encoded(std::optional<int>()), "[null]");
    EXPECT_EQ(encoded(std::optional(std::optional(2))), "[2]");
    EXPECT_EQ(encoded(QString(QChar(0xd800))), R"(["?"])");
    LogCapture log;
    EXPECT_EQ(encoded(MetricPostType::unsupported(u"T"_qs, u"thing"_qs)), R"(["thing"])");
    EXPECT_TRUE(log.contains(u"warning enforcing string on object"_qs));
    EXPECT_EQ(encoded(MetricPostType::unsupported(u"T"_qs, u"nil"_qs)), "[null]");
    EXPECT_FALSE(JSONHandler::encodeAPIData(5));
    EXPECT_TRUE(log.contains(u"warning object isn't valid and can't be serialzed to JSON"_qs));
    EXPECT_TRUE(log.contains(u"warning couldn't serialize object"_qs));
}

TEST(Json, RandomNumbersSurviveARoundTripExactly)
{
    QRandomGenerator generator(7);
    for (int i = 0; i < 20'000; ++i) {
        const quint64 bits = generator.generate64();
        const double real = std::bit_cast<double>(bits);
        ValueList list{qint64(bits), bits};
        if (std::isfinite(real))
            list.append(real);
        const auto text = JSONHandler::serializeJSONObject(list);
        ASSERT_TRUE(text);
        const auto back = JSONHandler::deserializeData(*text);
        ASSERT_TRUE(back && back->get<ValueList>()) << text->constData();
        const ValueList &read = *back->get<ValueList>();
        // Whole numbers come back as Int as long as Int holds them.
        EXPECT_EQ(*read[0].get<qint64>(), qint64(bits));
        const auto *wide = read[1].get<quint64>();
        EXPECT_EQ(wide != nullptr, bits > quint64(std::numeric_limits<qint64>::max()));
        EXPECT_EQ(wide ? *wide : quint64(*read[1].get<qint64>()), bits);
        if (read.size() == 3) {
            EXPECT_EQ(*read[2].get<double>(), real) << text->constData();
        }
    }
}

TEST(Json, HostileInputIsRefused)
{
    LogCapture log;
    const auto refused = [](const QByteArray &text) { return !JSONHandler::deserializeData(text); };
    EXPECT_TRUE(refused(QByteArray(1'000'000, '[')));
    EXPECT_TRUE(refused(QByteArray(50 * 1024 * 1024, ' ') + "[]"));
    EXPECT_TRUE(refused("[\"\xff\xfe\"]"));
    EXPECT_TRUE(refused("[1e999]"));
    EXPECT_TRUE(refused("{\"a\":1"));
    EXPECT_TRUE(refused("[NaN]"));
    EXPECT_TRUE(refused("7"));
    EXPECT_TRUE(refused(""));
    const auto lists = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    EXPECT_FALSE(refused(lists(JSONHandler::maxDepth)));
    EXPECT_TRUE(refused(lists(JSONHandler::maxDepth + 1)));
    EXPECT_TRUE(log.contains(u"error exception decoding object data"_qs));

    // What may be stored can be read, up to the limit; a batch nests one deeper.
    const MetricPostType deepest = nestedLists(JSONHandler::maxDepth);
    const auto stored = JSONHandler::serializeJSONObject(deepest);
    ASSERT_TRUE(stored);
    EXPECT_TRUE(JSONHandler::deserializeData(*stored));
    EXPECT_TRUE(JSONHandler::encodeAPIData(ValueList{deepest}));
    EXPECT_FALSE(JSONHandler::serializeJSONObject(ValueList{deepest}));
}

TEST(AnyCodable, DecodesInItsOrder)
{
    const auto value = [](const char *json) {
        const auto decoded = AnyCodable::decode(json);
        const auto *any = std::get_if<AnyCodable>(&decoded);
        return any ? any->value().typeName() + u' ' + any->value().description() : u"none"_qs;
    };
    EXPECT_EQ(value("true"), u"Bool true"_qs);
    EXPECT_EQ(value("1"), u"Int 1"_qs);
    EXPECT_EQ(value("1.0"), u"Int 1"_qs);
    EXPECT_EQ(value("1.5"), u"Double 1.5"_qs);
    EXPECT_EQ(value("18446744073709551615"), u"Double 18446744073709552000"_qs);
    EXPECT_EQ(value("\"1\""), u"String 1"_qs);
    EXPECT_EQ(value("[1,{\"a\":null}]"), u"Array [1, [\"a\": nil]]"_qs);
    EXPECT_EQ(value("null"), u"Optional nil"_qs);
    const auto failed = AnyCodable::decode("tru");
    EXPECT_EQ(std::get<AnyCodable::DecodingError>(failed).message,
              u"Unsupported type in AnyCodable."_qs);
}

TEST(Archive, KeepsEveryKindOfValue)
{
    const auto bytes = KeyedArchive::archive(oneOfEach());
    ASSERT_TRUE(bytes);
    const auto back = KeyedArchive::unarchive(*bytes);
    ASSERT_TRUE(back);
    EXPECT_TRUE(back->equals(oneOfEach())) << qPrintable(back->description());
    EXPECT_FALSE(KeyedArchive::archive(MetricPostType::unsupported(u"T"_qs, u"x"_qs)));
    EXPECT_FALSE(KeyedArchive::archive(nestedLists(KeyedArchive::maxDepth + 1)));
}

TEST(Archive, RefusesWhatItDidNotWrite)
{
    const QByteArray whole = *KeyedArchive::archive(oneOfEach());
    for (qsizetype length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(KeyedArchive::unarchive(whole.first(length))) << length;
    EXPECT_FALSE(KeyedArchive::unarchive(whole + 'n'));
    QByteArray otherVersion = whole;
    otherVersion[4] = 2;
    EXPECT_FALSE(KeyedArchive::unarchive(otherVersion));
    const QByteArray header("MPKA\1", 5);
    EXPECT_FALSE(KeyedArchive::unarchive(header + "x"));
    EXPECT_FALSE(KeyedArchive::unarchive(header + QByteArray("b\2", 2)));
    EXPECT_FALSE(KeyedArchive::unarchive(header + QByteArray("s\0\0\0\1\xff", 6)));
    EXPECT_FALSE(KeyedArchive::unarchive(header + QByteArray("a\xff\xff\xff\xff", 5)));
    QByteArray deep = header;
    for (int i = 0; i < 100'000; ++i)
        deep += QByteArray("a\0\0\0\1", 5);
    EXPECT_FALSE(KeyedArchive::unarchive(deep + 'n'));
}

TEST(Gzip, WrapsWithAHeaderAndLosesNothing)
{
    const QByteArray original(100'000, 'a');
    const auto result = gzipCompressed(original);
    const QByteArray &compressed = std::get<QByteArray>(result);
    EXPECT_TRUE(compressed.startsWith("\x1f\x8b\x08"));
    EXPECT_EQ(gunzip(compressed), original);
    QByteArray noise(200'000, '\0');
    QRandomGenerator(3).fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
    EXPECT_EQ(gunzip(std::get<QByteArray>(gzipCompressed(noise))), noise);
    EXPECT_EQ(std::get<GzipError>(gzipCompressed({})).message,
              u"Empty Data object cannot be compressed."_qs);
    EXPECT_NE(std::get<GzipError>(gzipCompressed("x", 77)).code, 0);
}
