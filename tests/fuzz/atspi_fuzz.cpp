// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// What an application answers on the accessibility bus: messages of any types, read as if they were
// the answers that were asked for, and what is made of them.

#include "platform/linux/atspi/DBusMessage.h"
#include "platform/linux/atspi/PrivateSocket.h"
#include "platform/linux/reading/CodePoints.h"
#include "platform/linux/reading/RichText.h"

#include <cstdlib>
#include <cstring>
#include <fuzzer/FuzzedDataProvider.h>
#include <string>
#include <sys/socket.h>

using namespace platform::linux_;

namespace
{

using Input = FuzzedDataProvider;

/// The types of the answers that Quillet asks for, and some that it does not.
constexpr const char *signatures[] = {"s",  "u",  "i",     "d", "b",      "(so)", "a(so)",
                                      "as", "au", "a{ss}", "v", "(iiii)", "ii",   "o",
                                      "ay", "av", "a(sv)", "x", "a{sv}"};

void append(sd_bus_message *message, const char *signature, Input &input, int depth);

size_t typeLength(const char *signature)
{
    if (*signature == 'a')
        return 1 + typeLength(signature + 1);
    if (*signature != '(' && *signature != '{')
        return 1;
    size_t length = 1;
    while (signature[length] != ')' && signature[length] != '}')
        length += typeLength(signature + length);
    return length + 1;
}

void appendContainer(sd_bus_message *message, char type, const std::string &contents, Input &input,
                     int depth)
{
    if (sd_bus_message_open_container(message, type, contents.c_str()) < 0)
        return;
    const int count = type == SD_BUS_TYPE_ARRAY ? input.ConsumeIntegralInRange(0, 4) : 1;
    for (int i = 0; i < count; ++i)
        append(message, contents.c_str(), input, depth + 1);
    sd_bus_message_close_container(message);
}

/// One value of the first type of the signature.
void appendOne(sd_bus_message *message, const char *signature, Input &input, int depth)
{
    const std::string inner(signature + 1, typeLength(signature) - 1);
    const std::string text = input.ConsumeRandomLengthString(64);
    switch (*signature) {
    case SD_BUS_TYPE_STRING:
        sd_bus_message_append_basic(message, 's', text.c_str());
        break;
    case SD_BUS_TYPE_OBJECT_PATH:
        sd_bus_message_append_basic(
            message, 'o', input.ConsumeBool() ? "/org/a11y/atspi/null" : "/org/a11y/atspi/1");
        break;
    case SD_BUS_TYPE_ARRAY:
        appendContainer(message, SD_BUS_TYPE_ARRAY, inner, input, depth);
        break;
    case SD_BUS_TYPE_STRUCT_BEGIN:
        appendContainer(message, SD_BUS_TYPE_STRUCT, inner.substr(0, inner.size() - 1), input,
                        depth);
        break;
    case SD_BUS_TYPE_DICT_ENTRY_BEGIN:
        appendContainer(message, SD_BUS_TYPE_DICT_ENTRY, inner.substr(0, inner.size() - 1), input,
                        depth);
        break;
    case SD_BUS_TYPE_VARIANT:
        appendContainer(message, SD_BUS_TYPE_VARIANT,
                        depth < 4 ? input.PickValueInArray(signatures) : "u", input, depth);
        break;
    case SD_BUS_TYPE_BOOLEAN: {
        const int value = input.ConsumeBool();
        sd_bus_message_append_basic(message, 'b', &value);
        break;
    }
    default: {
        const auto value = input.ConsumeIntegral<quint64>();
        sd_bus_message_append_basic(message, *signature, &value);
    }
    }
}

void append(sd_bus_message *message, const char *signature, Input &input, int depth)
{
    for (; *signature; signature += typeLength(signature))
        appendOne(message, signature, input, depth);
}

/// A connection without a peer, to make messages for.
sd_bus *startedBus()
{
    sd_bus *bus = nullptr;
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, ends) != 0 ||
        sd_bus_new(&bus) < 0 || sd_bus_set_fd(bus, ends[0], ends[0]) < 0 || sd_bus_start(bus) < 0)
        std::abort();
    return bus;
}

/// An answer of any types; false when sd-bus itself refuses it.
template <typename Read> void withAnswer(sd_bus *bus, Input &input, Read read)
{
    sd_bus_message *message = nullptr;
    if (sd_bus_message_new_method_call(bus, &message, "a.b", "/", "a.b", "C") < 0)
        std::abort();
    append(message, input.PickValueInArray(signatures), input, 0);
    if (input.ConsumeBool())
        append(message, input.PickValueInArray(signatures), input, 0);
    if (sd_bus_message_seal(message, 1, 0) >= 0) {
        DBusMessage reply(message);
        read(reply);
    }
    sd_bus_message_unref(message);
}

void readAnything(DBusMessage &reply, Input &input)
{
    for (int i = 0; i < 4; ++i) {
        switch (input.ConsumeIntegralInRange(0, 12)) {
        case 0:
            (void)reply.readBytes();
            break;
        case 1:
            (void)reply.readBool();
            break;
        case 2:
            (void)reply.readDouble();
            break;
        case 3:
            (void)reply.readObject();
            break;
        case 4:
            (void)reply.enterAnyVariant();
            break;
        case 5:
            (void)reply.enterAnyStruct();
            break;
        case 6:
            (void)reply.enterVariant("(so)");
            break;
        case 7:
            (void)reply.enterStruct("iiii");
            break;
        case 8:
            (void)reply.exit();
            break;
        case 9:
            (void)reply.skip("s");
            break;
        case 10:
            (void)reply.readStrings();
            break;
        case 11:
            (void)reply.readUInt32s();
            break;
        default:
            (void)reply.readInt32();
        }
    }
}

TextNode readNode(sd_bus *bus, Input &input, int depth)
{
    TextNode node;
    ElementFacts &facts = node.facts;
    withAnswer(bus, input,
               [&](DBusMessage &reply) { facts.role = reply.readUInt32().value_or(0); });
    withAnswer(bus, input, [&](DBusMessage &reply) {
        facts.setStates(reply.readUInt32s().value_or(QList<quint32>()));
    });
    withAnswer(bus, input, [&](DBusMessage &reply) {
        facts.setInterfaces(reply.readStrings().value_or(QList<QByteArray>()));
    });
    withAnswer(bus, input, [&](DBusMessage &reply) {
        facts.setAttributes(
            reply.readDictionary().value_or(QList<std::pair<QByteArray, QByteArray>>()));
    });
    // More likely than by chance: what changes how a text is put together.
    if (input.ConsumeBool())
        facts.tag = input.PickValueInArray({"::marker", "textarea", "p", "br"});
    if (input.ConsumeBool())
        facts.role = quint32(atspi::Role::Static);
    withAnswer(bus, input,
               [&](DBusMessage &reply) { node.text = reply.readString().value_or(QString()); });
    for (int i = input.ConsumeIntegralInRange(0, 3); depth < 4 && i > 0; --i) {
        node.children.push_back(readNode(bus, input, depth + 1));
        if (input.ConsumeBool())
            node.text += QChar::ObjectReplacementCharacter;
    }
    return node;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static sd_bus *const bus = startedBus();
    Input input(data, size);
    (void)parsePrivateAddress(QByteArray::fromStdString(input.ConsumeRandomLengthString(200)));
    withAnswer(bus, input, [&](DBusMessage &reply) { readAnything(reply, input); });

    const TextNode node = readNode(bus, input, 0);
    for (const auto decide : {isPassword, isDocument, isInWebPage, isEditable, isEditingHost,
                              isInput, isHidden, hasTextValue, isInline, mayBeInsideEditingHost})
        (void)decide(node.facts);
    (void)attributeNames(node.facts);
    const RichTextContent content = flattened(node);
    // Each piece of the text is what its element says.
    for (const TextPiece &piece : content.pieces) {
        if (content.text.mid(piece.position, piece.length) !=
            piece.text.mid(piece.offset, piece.length))
            std::abort();
    }
    const auto start = input.ConsumeIntegral<qint32>();
    const auto end = input.ConsumeIntegral<qint32>();
    const auto count = input.ConsumeIntegral<qint32>();
    const platform::CFRange range = utf16Range(content.text, start, end, count);
    if (range.location < 0 || range.length < 0 ||
        range.location + range.length > content.text.size())
        std::abort();
    (void)isSelection(content.text, range.location, range.length, start, end);
    (void)withLineFeeds(withoutPairMarks(content.text));
    return 0;
}
