// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "MetricPost/MetricPostType.h"

#include "MetricPost/MPAssert.h"

#include <QLocale>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace metricpost
{

namespace
{

template <class... Functions> struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions> Overloaded(Functions...) -> Overloaded<Functions...>;

QString realText(double value)
{
    if (std::isnan(value))
        return QStringLiteral("nan");
    if (std::isinf(value))
        return value < 0 ? QStringLiteral("-inf") : QStringLiteral("inf");
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

} // namespace

double shortestDouble(float value)
{
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.begin(), text.end(), value).ptr;
    double result = 0;
    std::from_chars(text.begin(), end, result);
    return result;
}

template <class Container> int MetricPostType::deepestOf(const Container &container)
{
    int deepest = 0;
    for (const MetricPostType &value : container)
        deepest = std::max(deepest, value.m_depth);
    return deepest;
}

MetricPostType::MetricPostType(const ValueList &value)
    : m_value(std::make_shared<const ValueList>(value))
{
    nest(deepestOf(value));
}

MetricPostType::MetricPostType(const Properties &value)
    : m_value(std::make_shared<const Properties>(value))
{
    nest(deepestOf(value));
}

void MetricPostType::nest(int innerDepth)
{
    if (innerDepth < maxDepth)
        m_depth = innerDepth + 1;
    else
        *this = unsupported(typeName(), QStringLiteral("nested too deeply"));
}

MetricPostType MetricPostType::unsupported(const QString &typeName, const QString &description)
{
    MetricPostType result;
    result.m_value = Foreign{typeName, description};
    return result;
}

MetricPostType MetricPostType::fromVariant(const QVariant &variant)
{
    switch (variant.typeId()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return {};
    case QMetaType::Bool:
        return variant.toBool();
    case QMetaType::Short:
    case QMetaType::Int:
    case QMetaType::Long:
    case QMetaType::LongLong:
        return variant.toLongLong();
    case QMetaType::UShort:
    case QMetaType::UInt:
    case QMetaType::ULong:
    case QMetaType::ULongLong:
        return variant.toULongLong();
    case QMetaType::Double:
        return variant.toDouble();
    case QMetaType::Float:
        return variant.toFloat();
    case QMetaType::QString:
        return variant.toString();
    case QMetaType::QDateTime:
        return variant.toDateTime();
    case QMetaType::QUrl:
        return variant.toUrl();
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        ValueList array;
        const QVariantList list = variant.toList();
        array.reserve(list.size());
        for (const QVariant &element : list)
            array.append(fromVariant(element));
        return array;
    }
    case QMetaType::QVariantMap:
    case QMetaType::QVariantHash: {
        Properties dictionary;
        const QVariantMap map = variant.toMap();
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry)
            dictionary.insert(entry.key(), fromVariant(entry.value()));
        return dictionary;
    }
    default:
        return unsupported(QString::fromLatin1(variant.typeName()), variant.toString());
    }
}

const MetricPostType *MetricPostType::unwrapped() const
{
    const MetricPostType *value = this;
    while (value) {
        const auto *optional = std::get_if<Wrapper>(&value->m_value);
        if (!optional)
            break;
        value = optional->wrapped.get();
    }
    return value;
}

bool MetricPostType::isValidNestedTypeAndValue() const
{
    switch (kind()) {
    case Kind::Number: {
        const auto *real = std::get_if<double>(&std::get<BoxedNumber>(m_value).value);
        return !real || std::isfinite(*real);
    }
    case Kind::Array: {
        const ValueList &array = *get<ValueList>();
        return std::all_of(array.cbegin(), array.cend(),
                           [](const auto &element) { return element.isValidNestedTypeAndValue(); });
    }
    case Kind::Dictionary: {
        const Properties &dictionary = *get<Properties>();
        return std::all_of(dictionary.cbegin(), dictionary.cend(),
                           [](const auto &value) { return value.isValidNestedTypeAndValue(); });
    }
    case Kind::Optional: {
        const MetricPostType *value = unwrapped();
        return !value || value->isValidNestedTypeAndValue();
    }
    case Kind::Unsupported:
        return false;
    default:
        return true;
    }
}

bool MetricPostType::equals(const MetricPostType &rhs) const
{
    const MetricPostType *left = unwrapped();
    const MetricPostType *right = rhs.unwrapped();
    if (!left || !right)
        return !left && !right;
    if (left->kind() != right->kind())
        return false;
    const auto equal = [](const MetricPostType &a, const MetricPostType &b) { return a.equals(b); };
    return std::visit(Overloaded{
                          [](std::monostate) { return true; },
                          [&](const std::shared_ptr<const ValueList> &array) {
                              const ValueList &other = *right->get<ValueList>();
                              return std::equal(array->cbegin(), array->cend(), other.cbegin(),
                                                other.cend(), equal);
                          },
                          [&](const std::shared_ptr<const Properties> &dictionary) {
                              const Properties &other = *right->get<Properties>();
                              return dictionary->keys() == other.keys() &&
                                     std::equal(dictionary->cbegin(), dictionary->cend(),
                                                other.cbegin(), equal);
                          },
                          [](const Wrapper &) { return false; },
                          [](const Foreign &) { return false; },
                          [&]<class T>(const T &value) { return value == *right->get<T>(); },
                      },
                      left->m_value);
}

QString MetricPostType::typeName() const
{
    switch (kind()) {
    case Kind::Null:
        return QStringLiteral("NSNull");
    case Kind::Bool:
        return QStringLiteral("Bool");
    case Kind::Int:
        return QStringLiteral("Int");
    case Kind::UInt:
        return QStringLiteral("UInt");
    case Kind::Double:
        return QStringLiteral("Double");
    case Kind::Float:
        return QStringLiteral("Float");
    case Kind::Number:
        return QStringLiteral("NSNumber");
    case Kind::String:
        return QStringLiteral("String");
    case Kind::Date:
        return QStringLiteral("Date");
    case Kind::Url:
        return QStringLiteral("URL");
    case Kind::Array:
        return QStringLiteral("Array");
    case Kind::Dictionary:
        return QStringLiteral("Dictionary");
    case Kind::Optional:
        return QStringLiteral("Optional");
    case Kind::Unsupported:
        break;
    }
    return std::get<Foreign>(m_value).typeName;
}

QString MetricPostType::description() const
{
    return std::visit(
        Overloaded{
            [](std::monostate) { return QStringLiteral("<null>"); },
            [](bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); },
            [](qint64 value) { return QString::number(value); },
            [](quint64 value) { return QString::number(value); },
            [](double value) { return realText(value); },
            [](float value) {
                return realText(std::isfinite(value) ? shortestDouble(value) : double(value));
            },
            [](const BoxedNumber &number) {
                return std::visit([](auto value) { return MetricPostType(value).description(); },
                                  number.value);
            },
            [](const QString &value) { return value; },
            [](const QDateTime &value) { return value.toUTC().toString(Qt::ISODateWithMs); },
            [](const QUrl &value) { return value.toString(QUrl::FullyEncoded); },
            [](const std::shared_ptr<const ValueList> &array) {
                QStringList elements;
                for (const MetricPostType &element : *array)
                    elements.append(element.description());
                return QStringLiteral("[%1]").arg(elements.join(QStringLiteral(", ")));
            },
            [](const std::shared_ptr<const Properties> &dictionary) {
                QStringList entries;
                for (auto entry = dictionary->cbegin(); entry != dictionary->cend(); ++entry) {
                    entries.append(QStringLiteral("\"") + entry.key() + QStringLiteral("\": ") +
                                   entry.value().description());
                }
                return QStringLiteral("[%1]").arg(entries.join(QStringLiteral(", ")));
            },
            [](const Wrapper &optional) {
                return optional.wrapped ? optional.wrapped->description() : QStringLiteral("nil");
            },
            [](const Foreign &value) { return value.description; },
        },
        m_value);
}

void assertPropertyTypes(const Properties &properties)
{
    for (const MetricPostType &value : properties) {
        MPAssert(value.isValidNestedTypeAndValue(), [&value] {
            return QStringLiteral(
                       "Property values must be of valid type (MetricPostType) and valid "
                       "value. Got ") +
                   value.typeName() + QStringLiteral(" and Value ") + value.description();
        });
    }
}

} // namespace metricpost
