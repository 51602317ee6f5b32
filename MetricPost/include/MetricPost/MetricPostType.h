// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QDateTime>
#include <QList>
#include <QMap>
#include <QString>
#include <QUrl>
#include <QVariant>

#include <concepts>
#include <memory>
#include <optional>
#include <variant>

namespace metricpost
{

class MetricPostType;

using ValueList = QList<MetricPostType>;

/// Named values: event properties, super properties, a nested object, a whole record.
using Properties = QMap<QString, MetricPostType>;

/// A boxed number as generic code hands it over. Unlike a plain Double it is a valid property
/// value only while it is finite.
struct BoxedNumber {
    std::variant<bool, qint64, quint64, double> value;
    bool operator==(const BoxedNumber &) const = default;
};

template <class T>
concept IntegerValue = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                       !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                       !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// One value of the closed set that events and profiles may have. Immutable; copies share
/// their contents and are cheap. Any thread.
class MetricPostType
{
public:
    enum class Kind {
        Null,
        Bool,
        Int,
        UInt,
        Double,
        Float,
        Number,
        String,
        Date,
        Url,
        Array,
        Dictionary,
        Optional,
        Unsupported,
    };

    /// Arrays, dictionaries and Optionals nest at most this deep. A deeper one becomes an
    /// Unsupported value, so that no value exhausts the stack of the code that walks it.
    static constexpr int maxDepth = 512;

    /// The JSON null.
    MetricPostType() = default;

    // Conversions are implicit so that a property list reads as a plain list of values.
    template <std::same_as<bool> T>
    MetricPostType(T value)
        : m_value(value)
    {
    }
    template <IntegerValue T>
    requires std::signed_integral<T> MetricPostType(T value)
        : m_value(static_cast<qint64>(value))
    {
    }
    template <IntegerValue T>
    requires std::unsigned_integral<T> MetricPostType(T value)
        : m_value(static_cast<quint64>(value))
    {
    }
    MetricPostType(double value)
        : m_value(value)
    {
    }
    MetricPostType(float value)
        : m_value(value)
    {
    }
    MetricPostType(const BoxedNumber &value)
        : m_value(value)
    {
    }
    MetricPostType(const QString &value)
        : m_value(value)
    {
    }
    MetricPostType(QLatin1String value)
        : m_value(QString(value))
    {
    }
    MetricPostType(const QDateTime &value)
        : m_value(value)
    {
    }
    MetricPostType(const QUrl &value)
        : m_value(value)
    {
    }
    MetricPostType(const ValueList &value);
    MetricPostType(const Properties &value);
    template <class T>
    MetricPostType(const std::optional<T> &value)
        : m_value(Wrapper{value ? std::make_shared<const MetricPostType>(*value) : nullptr})
    {
        if (const auto &wrapped = std::get<Wrapper>(m_value).wrapped)
            nest(wrapped->m_depth);
    }
    // A pointer would otherwise quietly become a Bool.
    template <class T> MetricPostType(const T *) = delete;

    /// The value of the same kind; a type outside the set gives an Unsupported value, which is
    /// never valid and is sent as its description. Only text keys make a dictionary.
    static MetricPostType fromVariant(const QVariant &variant);
    static MetricPostType unsupported(const QString &typeName, const QString &description);

    Kind kind() const { return static_cast<Kind>(m_value.index()); }

    /// The value as T, one of bool, qint64, quint64, double, float, BoxedNumber, QString,
    /// QDateTime, QUrl, ValueList and Properties, or null when it is of another kind.
    template <class T> const T *get() const
    {
        if constexpr (std::same_as<T, ValueList> || std::same_as<T, Properties>) {
            const auto *shared = std::get_if<std::shared_ptr<const T>>(&m_value);
            return shared ? shared->get() : nullptr;
        } else {
            return std::get_if<T>(&m_value);
        }
    }

    /// What an Optional wraps, at any depth; null when it is empty. Other kinds: the value.
    const MetricPostType *unwrapped() const;

    /// Whether the value and everything in it may be a property value.
    bool isValidNestedTypeAndValue() const;

    /// A scalar equals only its own kind; containers compare element by element; an Optional
    /// compares as what it wraps.
    bool equals(const MetricPostType &rhs) const;

    QString typeName() const;
    QString description() const;

private:
    struct Wrapper {
        std::shared_ptr<const MetricPostType> wrapped;
    };
    struct Foreign {
        QString typeName;
        QString description;
    };

    template <class Container> static int deepestOf(const Container &container);
    void nest(int innerDepth);

    int m_depth = 0;
    // In the order of Kind.
    std::variant<std::monostate, bool, qint64, quint64, double, float, BoxedNumber, QString,
                 QDateTime, QUrl, std::shared_ptr<const ValueList>,
                 std::shared_ptr<const Properties>, Wrapper, Foreign>
        m_value;
};

/// The Double whose shortest text is the Float's shortest text, so that 0.1f prints as 0.1.
/// The value must be finite.
double shortestDouble(float value);

/// Reports every property that is not a valid property value through MPAssert, which stops a
/// development build.
void assertPropertyTypes(const Properties &properties);

} // namespace metricpost
