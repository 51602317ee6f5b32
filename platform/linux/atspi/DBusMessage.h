// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <optional>
#include <systemd/sd-bus.h>
#include <utility>

namespace platform::linux_
{

/// A reference to an object of an application on the accessibility bus.
struct ObjectRef {
    QByteArray busName;
    QByteArray path;

    bool isNull() const;
    friend bool operator==(const ObjectRef &, const ObjectRef &) = default;
    friend size_t qHash(const ObjectRef &ref, size_t seed = 0)
    {
        return qHashMulti(seed, ref.busName, ref.path);
    }
};

/// One message that came in: the answer to a call, or a signal. Valid only while the handler that
/// got it runs. Each read takes the next argument; a read of another type than the message holds
/// yields nothing, and so does every read of an error.
class DBusMessage
{
public:
    /// The caller keeps `message` alive.
    explicit DBusMessage(sd_bus_message *message)
        : m_message(message)
    {
    }

    bool isError() const;
    /// The D-Bus error name; empty when this is no error.
    QByteArray errorName() const;
    QByteArray sender() const;
    QByteArray path() const;
    QByteArray member() const;

    std::optional<QString> readString();
    std::optional<QByteArray> readBytes();
    std::optional<qint32> readInt32();
    std::optional<quint32> readUInt32();
    std::optional<bool> readBool();
    std::optional<double> readDouble();
    std::optional<ObjectRef> readObject();
    std::optional<QList<ObjectRef>> readObjects();
    std::optional<QList<QByteArray>> readStrings();
    std::optional<QList<quint32>> readUInt32s();
    std::optional<QList<std::pair<QByteArray, QByteArray>>> readDictionary();
    bool enterVariant(const char *contents);
    bool enterStruct(const char *contents);
    bool enterArray(const char *contents);
    /// The same, whatever it holds.
    bool enterAnyVariant();
    bool enterAnyStruct();
    bool exit();
    bool skip(const char *types);

private:
    bool enterAny(char container);

    sd_bus_message *m_message;
};

} // namespace platform::linux_
