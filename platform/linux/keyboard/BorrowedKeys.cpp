// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/keyboard/BorrowedKeys.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace platform::linux_
{

namespace
{

constexpr const char *recordName = "_QUILLET_BORROWED_KEYS";
constexpr const char *ownerName = "_QUILLET_TYPING";
constexpr unsigned long recordVersion = 2;
constexpr unsigned long noType = 0xff;
constexpr long mostRecorded = 65536; // numbers; a whole map of 256 keys has fewer

// One key as the map has it: for each group its type, and its keysyms, `width` levels a group.
struct KeyEntry {
    std::uint8_t keycode = 0;
    std::uint8_t groupInfo = 0;
    std::uint8_t width = 0;
    std::array<std::uint8_t, XkbNumKbdGroups> types{};
    std::vector<KeySym> keysyms;
};

struct TypeEntry {
    unsigned long active = 1;
    unsigned long level = 0;
    unsigned long realModifiers = 0;
    unsigned long virtualModifiers = 0;
    unsigned long preservedReal = 0;
    unsigned long preservedVirtual = 0;
};

constexpr std::size_t entryFields = 6;
constexpr std::size_t keyFields = 4 + XkbNumKbdGroups;

} // namespace

// A client-side copy of the map, for changes that go to the server as they are.
class BorrowedKeys::MapCopy
{
public:
    explicit MapCopy(const XConnection &connection)
        : m_display(connection.display())
        , m_xkb(XkbGetMap(m_display, XkbAllClientInfoMask, connection.testKeyboard()))
    {
    }
    ~MapCopy()
    {
        if (m_xkb)
            XkbFreeKeyboard(m_xkb, 0, True);
    }
    MapCopy(const MapCopy &) = delete;
    MapCopy &operator=(const MapCopy &) = delete;

    explicit operator bool() const { return m_xkb != nullptr; }
    XkbDescPtr get() const { return m_xkb; }
    XkbKeyTypePtr type(int index) const { return &m_xkb->map->types[index]; }
    bool hasType(int index) const { return index < m_xkb->map->num_types; }

    KeyEntry key(std::uint8_t keycode) const
    {
        const XkbSymMapRec &from = m_xkb->map->key_sym_map[keycode];
        KeyEntry entry{keycode, from.group_info, from.width, {}, {}};
        std::copy(std::begin(from.kt_index), std::end(from.kt_index), entry.types.begin());
        const KeySym *symbols = XkbKeySymsPtr(m_xkb, keycode);
        entry.keysyms.assign(symbols, symbols + XkbKeyNumSyms(m_xkb, keycode));
        return entry;
    }

    void setKey(const KeyEntry &entry)
    {
        const std::vector<KeySym> &keysyms = entry.keysyms;
        KeySym *symbols = XkbResizeKeySyms(m_xkb, entry.keycode, static_cast<int>(keysyms.size()));
        if (!symbols && !keysyms.empty())
            return;
        XkbSymMapRec &target = m_xkb->map->key_sym_map[entry.keycode];
        target.width = entry.width;
        target.group_info = entry.groupInfo;
        std::copy(entry.types.begin(), entry.types.end(), std::begin(target.kt_index));
        std::copy(keysyms.begin(), keysyms.end(), symbols);
        touchKey(entry.keycode);
    }

    void touchType(int index)
    {
        m_changes.changed |= XkbKeyTypesMask;
        m_changes.first_type = static_cast<unsigned char>(index);
        m_changes.num_types = 1;
    }

    void send()
    {
        if (m_changes.changed)
            XkbChangeMap(m_display, m_xkb, &m_changes);
    }

private:
    void touchKey(std::uint8_t keycode)
    {
        int first = keycode;
        int last = keycode;
        if (m_changes.changed & XkbKeySymsMask) {
            first = std::min<int>(first, m_changes.first_key_sym);
            last = std::max<int>(last, m_changes.first_key_sym + m_changes.num_key_syms - 1);
        }
        m_changes.changed |= XkbKeySymsMask;
        m_changes.first_key_sym = static_cast<KeyCode>(first);
        m_changes.num_key_syms = static_cast<unsigned char>(last - first + 1);
    }

    Display *m_display;
    XkbDescPtr m_xkb;
    XkbMapChangesRec m_changes{};
};

// What has been borrowed, as it was before. On the root window it is a list of 32-bit numbers.
struct BorrowedKeys::Record {
    bool keysRepeat = false;
    unsigned long type = noType;
    unsigned long realModifiers = 0;
    unsigned long virtualModifiers = 0;
    bool preserves = false;
    std::vector<TypeEntry> entries;
    std::vector<KeyEntry> keys;

    std::vector<unsigned long> pack() const
    {
        std::vector<unsigned long> data{recordVersion,    keysRepeat, type,          realModifiers,
                                        virtualModifiers, preserves,  entries.size()};
        for (const TypeEntry &entry : entries) {
            data.insert(data.end(),
                        {entry.active, entry.level, entry.realModifiers, entry.virtualModifiers,
                         entry.preservedReal, entry.preservedVirtual});
        }
        for (const KeyEntry &key : keys) {
            data.insert(data.end(), {key.keycode, key.groupInfo, key.width});
            data.insert(data.end(), key.types.begin(), key.types.end());
            data.push_back(key.keysyms.size());
            data.insert(data.end(), key.keysyms.begin(), key.keysyms.end());
        }
        return data;
    }

    static std::optional<Record> unpack(const unsigned long *data, std::size_t size)
    {
        constexpr std::size_t head = 7;
        if (size < head || data[0] != recordVersion || data[6] > 256 ||
            size < head + data[6] * entryFields)
            return std::nullopt;
        Record record{data[1] != 0, data[2], data[3], data[4], data[5] != 0, {}, {}};
        std::size_t at = head;
        for (unsigned long i = 0; i < data[6]; ++i, at += entryFields) {
            record.entries.push_back(
                {data[at], data[at + 1], data[at + 2], data[at + 3], data[at + 4], data[at + 5]});
        }
        while (at + keyFields <= size) {
            const auto byte = [&](std::size_t field) {
                return static_cast<std::uint8_t>(data[at + field]);
            };
            KeyEntry key{byte(0), byte(1), byte(2), {byte(3), byte(4), byte(5), byte(6)}, {}};
            const unsigned long keysyms = data[at + 7];
            const unsigned groups = XkbNumGroups(key.groupInfo);
            at += keyFields;
            if (keysyms > size - at || groups > XkbNumKbdGroups || keysyms != groups * key.width)
                return std::nullopt;
            key.keysyms.assign(data + at, data + at + keysyms);
            at += keysyms;
            record.keys.push_back(std::move(key));
        }
        return record;
    }

    void readType(const XkbKeyTypeRec &source)
    {
        realModifiers = source.mods.real_mods;
        virtualModifiers = source.mods.vmods;
        preserves = source.preserve != nullptr;
        entries.clear();
        for (int i = 0; i < source.map_count; ++i) {
            const XkbKTMapEntryRec &from = source.map[i];
            TypeEntry entry{from.active != False, from.level, from.mods.real_mods,
                            from.mods.vmods,      0,          0};
            if (preserves) {
                entry.preservedReal = source.preserve[i].real_mods;
                entry.preservedVirtual = source.preserve[i].vmods;
            }
            entries.push_back(entry);
        }
    }

    void writeType(XkbKeyTypeRec &target) const
    {
        std::free(target.map);
        std::free(target.preserve);
        const std::size_t count = entries.size();
        target.map = static_cast<XkbKTMapEntryPtr>(std::calloc(count + 1, sizeof *target.map));
        target.preserve = preserves
                              ? static_cast<XkbModsPtr>(std::calloc(count + 1, sizeof(XkbModsRec)))
                              : nullptr;
        target.map_count = static_cast<unsigned char>(count);
        target.mods.real_mods = target.mods.mask = static_cast<unsigned char>(realModifiers);
        target.mods.vmods = static_cast<unsigned short>(virtualModifiers);
        for (std::size_t i = 0; i < count; ++i) {
            const TypeEntry &entry = entries[i];
            target.map[i].active = entry.active != 0;
            target.map[i].level = static_cast<unsigned char>(entry.level);
            target.map[i].mods.real_mods = target.map[i].mods.mask =
                static_cast<unsigned char>(entry.realModifiers);
            target.map[i].mods.vmods = static_cast<unsigned short>(entry.virtualModifiers);
            if (target.preserve) {
                target.preserve[i].real_mods = target.preserve[i].mask =
                    static_cast<unsigned char>(entry.preservedReal);
                target.preserve[i].vmods = static_cast<unsigned short>(entry.preservedVirtual);
            }
        }
    }
};

BorrowedKeys::BorrowedKeys(XConnection &connection)
    : m_connection(connection)
{
}

BorrowedKeys::~BorrowedKeys()
{
    giveBack();
}

void BorrowedKeys::recover()
{
    Display *display = m_connection.display();
    m_connection.grabServer();
    if (XGetSelectionOwner(display, m_connection.atom(ownerName)) == 0) {
        if (const std::optional<Record> record = readRecord()) {
            restoreMap(*record);
            m_connection.setKeysRepeat(record->keysRepeat);
        }
        XDeleteProperty(display, m_connection.root(), m_connection.atom(recordName));
    }
    m_connection.ungrabServer();
}

bool BorrowedKeys::begin(const KeyboardMap &map)
{
    recover();
    Display *display = m_connection.display();
    const Atom owner = m_connection.atom(ownerName);
    m_keycodes = map.spareKeycodes();
    m_type = map.spareType();
    // Bit 0 of a level is the first modifier here, bit 1 the second, bit 2 the third.
    m_levelModifiers.clear();
    const int levels = m_type ? map.types[static_cast<std::size_t>(*m_type)].levels : 1;
    for (const unsigned modifier : {ShiftMask, Mod5Mask, Mod3Mask}) {
        if ((map.levelModifiers & modifier) && (2 << m_levelModifiers.size()) <= levels)
            m_levelModifiers.push_back(static_cast<std::uint8_t>(modifier));
    }

    m_connection.grabServer();
    const bool free = XGetSelectionOwner(display, owner) == 0;
    if (free) {
        XSetSelectionOwner(display, owner, m_connection.ownWindow(), CurrentTime);
        m_keysRepeat = m_connection.keysRepeat();
        writeRecord();
        m_connection.setKeysRepeat(false);
    }
    m_connection.ungrabServer();
    m_begun = free && !m_connection.broken();
    return m_begun;
}

bool BorrowedKeys::takeLayoutKeys(const KeyboardMap &map)
{
    // Without a type of their own they could not be told from the layout's.
    if (!m_type)
        return false;
    const std::vector<std::uint8_t> keycodes = map.characterKeycodes();
    m_keycodes.insert(m_keycodes.end(), keycodes.begin(), keycodes.end());
    m_connection.grabServer();
    writeRecord();
    m_connection.ungrabServer();
    return true;
}

bool BorrowedKeys::lends(std::uint8_t keycode) const
{
    return std::find(m_keycodes.begin(), m_keycodes.end(), keycode) != m_keycodes.end();
}

std::size_t BorrowedKeys::levels() const
{
    return std::size_t{1} << m_levelModifiers.size();
}

std::size_t BorrowedKeys::bankCapacity() const
{
    return m_keycodes.size() / bankCount * levels();
}

std::size_t BorrowedKeys::wholeCapacity() const
{
    return m_keycodes.size() * levels();
}

std::vector<std::uint8_t> BorrowedKeys::bankKeycodes(std::optional<int> bank) const
{
    if (!bank)
        return m_keycodes;
    const auto size = static_cast<std::ptrdiff_t>(m_keycodes.size() / bankCount);
    const auto first = m_keycodes.begin() + size * *bank;
    return {first, first + size};
}

std::uint8_t BorrowedKeys::modifiersFor(std::size_t level) const
{
    std::uint8_t modifiers = 0;
    for (std::size_t bit = 0; bit < m_levelModifiers.size(); ++bit) {
        if (level >> bit & 1)
            modifiers |= m_levelModifiers[bit];
    }
    return modifiers;
}

void BorrowedKeys::map(const std::vector<Load> &loads)
{
    if (loads.empty())
        return;
    m_connection.grabServer();
    const bool first = !m_taken;
    m_taken = true;
    MapCopy copy(m_connection);
    if (copy) {
        if (first && m_type && copy.hasType(*m_type)) {
            lentType().writeType(*copy.type(*m_type));
            copy.touchType(*m_type);
        }
        for (const Load &load : loads)
            fill(copy, load);
        copy.send();
    }
    m_connection.ungrabServer();
}

BorrowedKeys::Record BorrowedKeys::lentType() const
{
    Record lent;
    for (std::size_t i = 0; i < levels() * 2; ++i) {
        TypeEntry entry;
        entry.level = i >> 1;
        entry.realModifiers = (i & 1) ? LockMask : 0;
        entry.realModifiers |= modifiersFor(entry.level);
        lent.realModifiers |= entry.realModifiers;
        if (entry.realModifiers)
            lent.entries.push_back(entry);
    }
    return lent;
}

// Level by level: the first characters need no modifiers, and neighbours the same ones.
void BorrowedKeys::fill(MapCopy &copy, const Load &load)
{
    const std::vector<std::uint8_t> keycodes = bankKeycodes(load.bank);
    auto &slots = m_slots[load.bank.value_or(0)];
    slots.clear();
    const std::size_t used = std::min(keycodes.size(), load.characters.size());
    for (std::size_t i = 0; i < used; ++i) {
        std::vector<KeySym> keysyms(levels(), NoSymbol);
        std::uint8_t level = 0;
        for (std::size_t at = i; at < load.characters.size(); at += keycodes.size(), ++level) {
            keysyms[level] = keysymForCodePoint(load.characters[at]);
            slots.emplace(load.characters[at], Keystroke{keycodes[i], modifiersFor(level)});
        }
        copy.setKey({keycodes[i],
                     XkbSetNumGroups(0, 1),
                     static_cast<std::uint8_t>(levels()),
                     {static_cast<std::uint8_t>(m_type.value_or(0))},
                     std::move(keysyms)});
    }
}

std::optional<Keystroke> BorrowedKeys::keyFor(std::optional<int> bank, char32_t codePoint) const
{
    const auto &slots = m_slots[bank.value_or(0)];
    const auto found = slots.find(codePoint);
    return found == slots.end() ? std::nullopt : std::optional(found->second);
}

void BorrowedKeys::giveBack()
{
    if (!m_begun)
        return;
    m_begun = false;
    Display *display = m_connection.display();
    m_connection.grabServer();
    if (m_taken) {
        if (const std::optional<Record> record = readRecord())
            restoreMap(*record);
    }
    m_connection.setKeysRepeat(m_keysRepeat);
    XDeleteProperty(display, m_connection.root(), m_connection.atom(recordName));
    XSetSelectionOwner(display, m_connection.atom(ownerName), 0, CurrentTime);
    m_connection.ungrabServer();
    m_taken = false;
    for (auto &slots : m_slots)
        slots.clear();
}

void BorrowedKeys::writeRecord()
{
    Display *display = m_connection.display();
    Record record;
    record.keysRepeat = m_keysRepeat;
    const MapCopy copy(m_connection);
    if (copy) {
        for (const std::uint8_t keycode : m_keycodes)
            record.keys.push_back(copy.key(keycode));
        if (m_type && copy.hasType(*m_type)) {
            record.type = static_cast<unsigned long>(*m_type);
            record.readType(*copy.type(*m_type));
        }
    }
    const std::vector<unsigned long> data = record.pack();
    XChangeProperty(display, m_connection.root(), m_connection.atom(recordName), XA_CARDINAL, 32,
                    PropModeReplace, reinterpret_cast<const unsigned char *>(data.data()),
                    static_cast<int>(data.size()));
}

std::optional<BorrowedKeys::Record> BorrowedKeys::readRecord() const
{
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char *data = nullptr;
    XGetWindowProperty(m_connection.display(), m_connection.root(), m_connection.atom(recordName),
                       0, mostRecorded, False, XA_CARDINAL, &type, &format, &count, &rest, &data);
    std::optional<Record> record;
    if (data && format == 32)
        record = Record::unpack(reinterpret_cast<const unsigned long *>(data), count);
    if (data)
        XFree(data);
    return record;
}

void BorrowedKeys::restoreMap(const Record &record)
{
    MapCopy copy(m_connection);
    if (!copy)
        return;
    const int type = record.type == noType ? 0 : static_cast<int>(record.type);
    if (!copy.hasType(type))
        return;
    // A key that no longer has the shape that we gave it belongs to a layout that was set since.
    for (const KeyEntry &key : record.keys) {
        const bool ours = XkbKeyNumGroups(copy.get(), key.keycode) == 1 &&
                          XkbKeyKeyTypeIndex(copy.get(), key.keycode, 0) == type;
        if (ours)
            copy.setKey(key);
    }
    if (record.type != noType) {
        XkbKeyTypeRec &current = *copy.type(type);
        const bool ours = current.mods.vmods == 0 && (current.mods.real_mods & LockMask) &&
                          !(current.mods.real_mods & ~(ShiftMask | LockMask | Mod3Mask | Mod5Mask));
        if (ours) {
            record.writeType(current);
            copy.touchType(type);
        }
    }
    copy.send();
}

} // namespace platform::linux_
