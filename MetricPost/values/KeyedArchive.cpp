// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "KeyedArchive.h"

#include <QStringDecoder>
#include <QtEndian>

#include <bit>
#include <limits>

namespace metricpost
{

namespace
{

constexpr char header[] = {'M', 'P', 'K', 'A', 1};

class Writer
{
public:
    explicit Writer(QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    bool write(const MetricPostType &value, int depth)
    {
        using Kind = MetricPostType::Kind;
        switch (value.kind()) {
        case Kind::Null:
            m_bytes.append('n');
            return true;
        case Kind::Bool:
            return writeScalar(*value.get<bool>());
        case Kind::Int:
            return writeScalar(*value.get<qint64>());
        case Kind::UInt:
            return writeScalar(*value.get<quint64>());
        case Kind::Double:
            return writeScalar(*value.get<double>());
        case Kind::Float:
            m_bytes.append('f');
            writeNumber(std::bit_cast<quint32>(*value.get<float>()));
            return true;
        case Kind::Number:
            m_bytes.append('o');
            return std::visit([this](auto number) { return writeScalar(number); },
                              value.get<BoxedNumber>()->value);
        case Kind::String:
            m_bytes.append('s');
            return writeBytes(value.get<QString>()->toUtf8());
        case Kind::Url:
            m_bytes.append('u');
            return writeBytes(value.get<QUrl>()->toEncoded());
        case Kind::Date:
            m_bytes.append('t');
            writeNumber(value.get<QDateTime>()->toMSecsSinceEpoch());
            return true;
        case Kind::Array: {
            const ValueList &array = *value.get<ValueList>();
            if (depth == 0 || !writeCount('a', array.size()))
                return false;
            return std::all_of(array.cbegin(), array.cend(),
                               [&](const auto &element) { return write(element, depth - 1); });
        }
        case Kind::Dictionary: {
            const Properties &dictionary = *value.get<Properties>();
            if (depth == 0 || !writeCount('m', dictionary.size()))
                return false;
            for (auto entry = dictionary.cbegin(); entry != dictionary.cend(); ++entry) {
                if (!writeBytes(entry.key().toUtf8()) || !write(entry.value(), depth - 1))
                    return false;
            }
            return true;
        }
        case Kind::Optional: {
            const MetricPostType *wrapped = value.unwrapped();
            return write(wrapped ? *wrapped : MetricPostType(), depth);
        }
        case Kind::Unsupported:
            break;
        }
        return false;
    }

private:
    bool writeScalar(bool value)
    {
        m_bytes.append('b').append(value ? '\1' : '\0');
        return true;
    }
    bool writeScalar(qint64 value)
    {
        m_bytes.append('i');
        writeNumber(value);
        return true;
    }
    bool writeScalar(quint64 value)
    {
        m_bytes.append('w');
        writeNumber(value);
        return true;
    }
    bool writeScalar(double value)
    {
        m_bytes.append('d');
        writeNumber(std::bit_cast<quint64>(value));
        return true;
    }

    template <class Integer> void writeNumber(Integer value)
    {
        const Integer bigEndian = qToBigEndian(value);
        m_bytes.append(reinterpret_cast<const char *>(&bigEndian), sizeof bigEndian);
    }

    bool writeCount(char tag, qsizetype count)
    {
        m_bytes.append(tag);
        writeNumber(quint32(count));
        return count <= std::numeric_limits<qint32>::max();
    }

    bool writeBytes(const QByteArray &bytes)
    {
        writeNumber(quint32(bytes.size()));
        m_bytes.append(bytes);
        return bytes.size() <= std::numeric_limits<qint32>::max();
    }

    QByteArray &m_bytes;
};

class Reader
{
public:
    explicit Reader(QByteArrayView bytes)
        : m_rest(bytes)
    {
    }

    bool atEnd() const { return m_rest.isEmpty(); }

    std::optional<MetricPostType> read(int depth)
    {
        const auto tag = readNumber<quint8>();
        if (!tag)
            return std::nullopt;
        switch (*tag) {
        case 'n':
            return MetricPostType();
        case 'f':
            if (const auto bits = readNumber<quint32>())
                return MetricPostType(std::bit_cast<float>(*bits));
            return std::nullopt;
        case 'o':
            if (const auto number = readBoxed())
                return MetricPostType(*number);
            return std::nullopt;
        case 's':
            if (const auto text = readText())
                return MetricPostType(*text);
            return std::nullopt;
        case 'u':
            if (const auto text = readText())
                return MetricPostType(QUrl::fromEncoded(text->toUtf8()));
            return std::nullopt;
        case 't':
            if (const auto milliseconds = readNumber<qint64>())
                return MetricPostType(QDateTime::fromMSecsSinceEpoch(*milliseconds, Qt::UTC));
            return std::nullopt;
        case 'a':
        case 'e':
            return readArray(depth);
        case 'm':
            return readDictionary(depth);
        default:
            if (const auto scalar = readScalar(*tag))
                return std::visit([](auto value) { return MetricPostType(value); }, scalar->value);
            return std::nullopt;
        }
    }

private:
    std::optional<BoxedNumber> readScalar(quint8 tag)
    {
        switch (tag) {
        case 'b':
            if (const auto value = readNumber<quint8>(); value && *value <= 1)
                return BoxedNumber{*value == 1};
            return std::nullopt;
        case 'i':
            if (const auto value = readNumber<qint64>())
                return BoxedNumber{*value};
            return std::nullopt;
        case 'w':
            if (const auto value = readNumber<quint64>())
                return BoxedNumber{*value};
            return std::nullopt;
        case 'd':
            if (const auto bits = readNumber<quint64>())
                return BoxedNumber{std::bit_cast<double>(*bits)};
            return std::nullopt;
        default:
            return std::nullopt;
        }
    }

    std::optional<BoxedNumber> readBoxed()
    {
        const auto tag = readNumber<quint8>();
        return tag ? readScalar(*tag) : std::nullopt;
    }

    std::optional<MetricPostType> readArray(int depth)
    {
        const auto count = readNumber<quint32>();
        if (!count || depth == 0)
            return std::nullopt;
        ValueList array;
        for (quint32 i = 0; i < *count; ++i) {
            const auto element = read(depth - 1);
            if (!element)
                return std::nullopt;
            array.append(*element);
        }
        return MetricPostType(array);
    }

    std::optional<MetricPostType> readDictionary(int depth)
    {
        const auto count = readNumber<quint32>();
        if (!count || depth == 0)
            return std::nullopt;
        Properties dictionary;
        for (quint32 i = 0; i < *count; ++i) {
            const auto key = readText();
            const auto value = key ? read(depth - 1) : std::nullopt;
            if (!value)
                return std::nullopt;
            dictionary.insert(*key, *value);
        }
        return MetricPostType(dictionary);
    }

    std::optional<QString> readText()
    {
        const auto length = readNumber<quint32>();
        if (!length || *length > quint64(m_rest.size()))
            return std::nullopt;
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        QString text = decoder(m_rest.first(qsizetype(*length)));
        if (decoder.hasError())
            return std::nullopt;
        m_rest = m_rest.sliced(qsizetype(*length));
        return text;
    }

    template <class Integer> std::optional<Integer> readNumber()
    {
        if (m_rest.size() < qsizetype(sizeof(Integer)))
            return std::nullopt;
        const auto value = qFromBigEndian<Integer>(m_rest.data());
        m_rest = m_rest.sliced(sizeof(Integer));
        return value;
    }

    QByteArrayView m_rest;
};

} // namespace

std::optional<QByteArray> KeyedArchive::archive(const MetricPostType &value)
{
    QByteArray bytes(header, sizeof header);
    if (!Writer(bytes).write(value, maxDepth))
        return std::nullopt;
    return bytes;
}

std::optional<MetricPostType> KeyedArchive::unarchive(QByteArrayView data)
{
    const QByteArrayView expected(header, sizeof header);
    if (!data.startsWith(expected))
        return std::nullopt;
    Reader reader(data.sliced(expected.size()));
    auto value = reader.read(maxDepth);
    return value && reader.atEnd() ? value : std::nullopt;
}

} // namespace metricpost
