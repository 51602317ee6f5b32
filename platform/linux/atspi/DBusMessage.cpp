// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/atspi/DBusMessage.h"

namespace platform::linux_
{

bool ObjectRef::isNull() const
{
    return busName.isEmpty() || path.isEmpty() || path.endsWith("/null");
}

bool DBusMessage::isError() const
{
    return sd_bus_message_is_method_error(m_message, nullptr) > 0;
}

QByteArray DBusMessage::errorName() const
{
    const sd_bus_error *error = sd_bus_message_get_error(m_message);
    return error ? QByteArray(error->name) : QByteArray();
}

QByteArray DBusMessage::sender() const
{
    return sd_bus_message_get_sender(m_message);
}

QByteArray DBusMessage::path() const
{
    return sd_bus_message_get_path(m_message);
}

QByteArray DBusMessage::member() const
{
    return sd_bus_message_get_member(m_message);
}

std::optional<QString> DBusMessage::readString()
{
    const char *text = nullptr;
    if (isError() || sd_bus_message_read_basic(m_message, SD_BUS_TYPE_STRING, &text) <= 0)
        return std::nullopt;
    return QString::fromUtf8(text);
}

std::optional<QByteArray> DBusMessage::readBytes()
{
    const char *text = nullptr;
    if (isError() || sd_bus_message_read_basic(m_message, SD_BUS_TYPE_STRING, &text) <= 0)
        return std::nullopt;
    return QByteArray(text);
}

std::optional<qint32> DBusMessage::readInt32()
{
    qint32 value = 0;
    if (isError() || sd_bus_message_read_basic(m_message, SD_BUS_TYPE_INT32, &value) <= 0)
        return std::nullopt;
    return value;
}

std::optional<quint32> DBusMessage::readUInt32()
{
    quint32 value = 0;
    if (isError() || sd_bus_message_read_basic(m_message, SD_BUS_TYPE_UINT32, &value) <= 0)
        return std::nullopt;
    return value;
}

std::optional<bool> DBusMessage::readBool()
{
    int value = 0;
    if (isError() || sd_bus_message_read_basic(m_message, SD_BUS_TYPE_BOOLEAN, &value) <= 0)
        return std::nullopt;
    return value != 0;
}

std::optional<double> DBusMessage::readDouble()
{
    double value = 0;
    if (isError() || sd_bus_message_read_basic(m_message, SD_BUS_TYPE_DOUBLE, &value) <= 0)
        return std::nullopt;
    return value;
}

std::optional<ObjectRef> DBusMessage::readObject()
{
    const char *name = nullptr;
    const char *path = nullptr;
    if (isError() || sd_bus_message_read(m_message, "(so)", &name, &path) <= 0)
        return std::nullopt;
    return ObjectRef{name, path};
}

std::optional<QList<ObjectRef>> DBusMessage::readObjects()
{
    if (isError() || sd_bus_message_enter_container(m_message, SD_BUS_TYPE_ARRAY, "(so)") <= 0)
        return std::nullopt;
    QList<ObjectRef> objects;
    const char *name = nullptr;
    const char *path = nullptr;
    while (sd_bus_message_read(m_message, "(so)", &name, &path) > 0)
        objects.append(ObjectRef{name, path});
    exit();
    return objects;
}

std::optional<QList<QByteArray>> DBusMessage::readStrings()
{
    if (isError() || sd_bus_message_enter_container(m_message, SD_BUS_TYPE_ARRAY, "s") <= 0)
        return std::nullopt;
    QList<QByteArray> strings;
    const char *text = nullptr;
    while (sd_bus_message_read_basic(m_message, SD_BUS_TYPE_STRING, &text) > 0)
        strings.append(text);
    exit();
    return strings;
}

std::optional<QList<quint32>> DBusMessage::readUInt32s()
{
    const void *data = nullptr;
    size_t size = 0;
    if (isError() || sd_bus_message_read_array(m_message, SD_BUS_TYPE_UINT32, &data, &size) < 0)
        return std::nullopt;
    const auto *first = static_cast<const quint32 *>(data);
    return QList<quint32>(first, first + size / sizeof(quint32));
}

std::optional<QList<std::pair<QByteArray, QByteArray>>> DBusMessage::readDictionary()
{
    if (isError() || sd_bus_message_enter_container(m_message, SD_BUS_TYPE_ARRAY, "{ss}") <= 0)
        return std::nullopt;
    QList<std::pair<QByteArray, QByteArray>> entries;
    const char *key = nullptr;
    const char *value = nullptr;
    while (sd_bus_message_read(m_message, "{ss}", &key, &value) > 0)
        entries.append(std::pair<QByteArray, QByteArray>(key, value));
    exit();
    return entries;
}

bool DBusMessage::enterVariant(const char *contents)
{
    return !isError() &&
           sd_bus_message_enter_container(m_message, SD_BUS_TYPE_VARIANT, contents) > 0;
}

bool DBusMessage::enterStruct(const char *contents)
{
    return !isError() &&
           sd_bus_message_enter_container(m_message, SD_BUS_TYPE_STRUCT, contents) > 0;
}

bool DBusMessage::enterArray(const char *contents)
{
    return !isError() && sd_bus_message_enter_container(m_message, SD_BUS_TYPE_ARRAY, contents) > 0;
}

bool DBusMessage::enterAny(char container)
{
    char type = 0;
    const char *contents = nullptr;
    return !isError() && sd_bus_message_peek_type(m_message, &type, &contents) > 0 &&
           type == container && sd_bus_message_enter_container(m_message, type, contents) > 0;
}

bool DBusMessage::enterAnyVariant()
{
    return enterAny(SD_BUS_TYPE_VARIANT);
}

bool DBusMessage::enterAnyStruct()
{
    return enterAny(SD_BUS_TYPE_STRUCT);
}

bool DBusMessage::exit()
{
    return sd_bus_message_exit_container(m_message) >= 0;
}

bool DBusMessage::skip(const char *types)
{
    return !isError() && sd_bus_message_skip(m_message, types) >= 0;
}

} // namespace platform::linux_
