// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "JSONHandler.h"

#include "MetricPost/MetricPostLogger.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <vector>

namespace metricpost
{

namespace
{

// Its objects are one piece of memory each and keep the order in which they are filled, which here
// is that of the dictionaries.
using Json = nlohmann::ordered_json;

std::string utf8(const QString &text)
{
    // Nearly all that is ever sent is ASCII, which needs no buffer in between.
    std::string result(std::size_t(text.size()), '\0');
    std::size_t length = 0;
    for (const QChar c : text) {
        if (c.unicode() >= 0x80)
            return text.toStdString();
        result[length++] = char(c.unicode());
    }
    return result;
}

Json real(double value, const MetricPostType &original)
{
    return std::isfinite(value) ? Json(value) : Json(utf8(original.description()));
}

QString dateText(const QDateTime &date)
{
    // The Latin digits and the proleptic Gregorian calendar, whatever the user's locale.
    return date.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.zzz'Z'"));
}

// Rewrites what plain JSON cannot carry. False when the value nests deeper than `depth`.
bool makeObjectSerializable(const MetricPostType &value, int depth, Json &result)
{
    using Kind = MetricPostType::Kind;
    switch (value.kind()) {
    case Kind::Null:
        return true;
    case Kind::String:
        result = utf8(*value.get<QString>());
        return true;
    case Kind::Number:
        std::visit(
            [&](auto number) {
                if constexpr (std::is_same_v<decltype(number), double>)
                    result = real(number, value);
                else
                    result = number;
            },
            value.get<BoxedNumber>()->value);
        return true;
    case Kind::Int:
        result = *value.get<qint64>();
        return true;
    case Kind::UInt:
        result = *value.get<quint64>();
        return true;
    case Kind::Double:
        result = real(*value.get<double>(), value);
        return true;
    case Kind::Float: {
        const float number = *value.get<float>();
        result = real(std::isfinite(number) ? shortestDouble(number) : double(number), value);
        return true;
    }
    case Kind::Bool:
        result = *value.get<bool>();
        return true;
    case Kind::Array:
        if (depth == 0)
            return false;
        result = Json::array();
        for (const MetricPostType &element : *value.get<ValueList>()) {
            if (!makeObjectSerializable(element, depth - 1, result.emplace_back(nullptr)))
                return false;
        }
        return true;
    case Kind::Dictionary: {
        if (depth == 0)
            return false;
        result = Json::object();
        // As a vector, because the keys are known to differ.
        Json::object_t::Container &members = result.get_ref<Json::object_t &>();
        const Properties &dictionary = *value.get<Properties>();
        members.reserve(std::size_t(dictionary.size()));
        for (auto entry = dictionary.cbegin(); entry != dictionary.cend(); ++entry) {
            auto &member = members.emplace_back(utf8(entry.key()), nullptr);
            if (!makeObjectSerializable(entry.value(), depth - 1, member.second))
                return false;
        }
        return true;
    }
    case Kind::Date:
        if (const QDateTime &date = *value.get<QDateTime>(); date.isValid())
            result = utf8(dateText(date));
        return true;
    case Kind::Url:
        result = value.get<QUrl>()->toEncoded().toStdString();
        return true;
    case Kind::Optional: {
        const MetricPostType *wrapped = value.unwrapped();
        return !wrapped || makeObjectSerializable(*wrapped, depth, result);
    }
    case Kind::Unsupported:
        break;
    }
    if (const QString text = value.description(); text != u"nil") {
        MetricPostLogger::warn([] { return QStringLiteral("enforcing string on object"); });
        result = utf8(text);
    }
    return true;
}

std::optional<QByteArray> serialize(const MetricPostType &object, int depth, qsizetype limit)
{
    const auto refuse = [] {
        MetricPostLogger::warn(
            [] { return QStringLiteral("object isn't valid and can't be serialzed to JSON"); });
        return std::nullopt;
    };
    try {
        Json json;
        if (!makeObjectSerializable(object, depth, json) || !json.is_structured())
            return refuse();
        const std::string text = json.dump();
        if (text.size() > std::size_t(limit))
            return refuse();
        return QByteArray(text.data(), qsizetype(text.size()));
    } catch (const std::exception &) {
        MetricPostLogger::error([] { return QStringLiteral("exception encoding api data"); });
        return std::nullopt;
    }
}

// Builds our values straight from the parser's events, so that the depth is checked before
// anything is built and no second tree exists.
class ValueBuilder final : public nlohmann::json_sax<Json>
{
public:
    MetricPostType takeResult() { return std::move(m_result); }

    bool null() override { return add({}); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(number_integer_t value) override { return add(value); }
    bool number_unsigned(number_unsigned_t value) override
    {
        if (value <= number_unsigned_t(std::numeric_limits<qint64>::max()))
            return add(qint64(value));
        return add(value);
    }
    bool number_float(number_float_t value, const string_t &) override { return add(value); }
    bool string(string_t &value) override { return add(QString::fromStdString(value)); }
    bool binary(binary_t &) override { return false; }
    bool start_object(std::size_t) override { return open(true); }
    bool start_array(std::size_t) override { return open(false); }
    bool key(string_t &value) override
    {
        m_open.back().key = QString::fromStdString(value);
        return true;
    }
    bool end_object() override
    {
        const MetricPostType value(m_open.back().dictionary);
        m_open.pop_back();
        return add(value);
    }
    bool end_array() override
    {
        const MetricPostType value(m_open.back().array);
        m_open.pop_back();
        return add(value);
    }
    bool parse_error(std::size_t, const std::string &, const Json::exception &) override
    {
        return false;
    }

private:
    struct Container {
        bool isDictionary;
        QString key;
        Properties dictionary;
        ValueList array;
    };

    bool open(bool isDictionary)
    {
        if (m_open.size() == std::size_t(JSONHandler::maxDepth))
            return false;
        m_open.push_back({isDictionary, {}, {}, {}});
        return true;
    }

    bool add(const MetricPostType &value)
    {
        if (m_open.empty())
            m_result = value;
        else if (Container &container = m_open.back(); container.isDictionary)
            container.dictionary.insert(container.key, value);
        else
            container.array.append(value);
        return true;
    }

    std::vector<Container> m_open;
    MetricPostType m_result;
};

} // namespace

std::optional<QByteArray> JSONHandler::encodeAPIData(const MetricPostType &object)
{
    auto text = serialize(object, maxDepth + 1, std::numeric_limits<qsizetype>::max());
    if (!text)
        MetricPostLogger::warn([] { return QStringLiteral("couldn't serialize object"); });
    return text;
}

std::optional<QByteArray> JSONHandler::serializeJSONObject(const MetricPostType &object)
{
    return serialize(object, maxDepth, maxBytes);
}

std::optional<MetricPostType> JSONHandler::deserializeData(QByteArrayView data)
{
    auto value = parse(data, TopLevel::Container);
    if (!value)
        MetricPostLogger::error([] { return QStringLiteral("exception decoding object data"); });
    return value;
}

std::optional<MetricPostType> JSONHandler::parse(QByteArrayView data, TopLevel topLevel)
{
    if (data.size() > maxBytes)
        return std::nullopt;
    try {
        ValueBuilder builder;
        if (!Json::sax_parse(data.begin(), data.end(), &builder))
            return std::nullopt;
        MetricPostType value = builder.takeResult();
        const auto kind = value.kind();
        if (topLevel == TopLevel::Container && kind != MetricPostType::Kind::Array &&
            kind != MetricPostType::Kind::Dictionary) {
            return std::nullopt;
        }
        return value;
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

} // namespace metricpost
