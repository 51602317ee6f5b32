// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/x11/XKeyServer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>

// The keyboard map of the server: reading it, changing our own keyboard's, and the note about that.

namespace platform::linux_
{

namespace
{

constexpr const char *noteName = "_QUILLET_BORROWED_KEYS";
constexpr const char *typistName = "_QUILLET_TYPING";
constexpr long maxNote = 65536; // numbers; a whole map of 256 keys has fewer

// Modifiers that a virtual modifier name stands for on this keyboard.
std::uint8_t modifiersNamed(Display *display, XkbDescPtr xkb,
                            std::initializer_list<const char *> names)
{
    unsigned found = 0;
    for (int i = 0; i < XkbNumVirtualMods; ++i) {
        if (!xkb->names->vmods[i])
            continue;
        char *name = XGetAtomName(display, xkb->names->vmods[i]);
        if (!name)
            continue;
        for (const char *wanted : names) {
            if (std::strcmp(name, wanted) == 0)
                found |= xkb->server->vmods[i];
        }
        XFree(name);
    }
    return static_cast<std::uint8_t>(found);
}

KeyboardMap::Type typeFrom(const XkbKeyTypeRec &source)
{
    KeyboardMap::Type type;
    type.modifiers = source.mods.mask;
    type.levels = source.num_levels;
    for (int i = 0; i < source.map_count; ++i) {
        type.entries.push_back(
            {source.map[i].active != False, source.map[i].mods.mask, source.map[i].level});
    }
    return type;
}

KeyboardMap::Key keyFrom(XkbDescPtr xkb, int keycode)
{
    KeyboardMap::Key key;
    const unsigned char info = XkbKeyGroupInfo(xkb, keycode);
    key.isModifier = xkb->map->modmap[keycode] != 0;
    switch (XkbOutOfRangeGroupAction(info)) {
    case XkbRedirectIntoRange:
        key.outOfRange = KeyboardMap::Key::OutOfRange::Redirect;
        key.redirectGroup = XkbOutOfRangeGroupNumber(info);
        break;
    case XkbClampIntoRange:
        key.outOfRange = KeyboardMap::Key::OutOfRange::Clamp;
        break;
    default:
        break;
    }
    for (int group = 0; group < XkbKeyNumGroups(xkb, keycode); ++group) {
        KeyboardMap::Group entry;
        entry.type = XkbKeyKeyTypeIndex(xkb, keycode, group);
        for (int level = 0; level < XkbKeyGroupWidth(xkb, keycode, group); ++level) {
            entry.keysyms.push_back(
                static_cast<std::uint32_t>(XkbKeySymEntry(xkb, keycode, level, group)));
        }
        key.groups.push_back(std::move(entry));
    }
    return key;
}

KeyServer::RawKey rawKeyFrom(XkbDescPtr xkb, std::uint8_t keycode)
{
    const XkbSymMapRec &from = xkb->map->key_sym_map[keycode];
    KeyServer::RawKey key{keycode, from.group_info, from.width, {}, {}};
    std::copy(std::begin(from.kt_index), std::end(from.kt_index), key.types.begin());
    const KeySym *symbols = XkbKeySymsPtr(xkb, keycode);
    key.keysyms.assign(symbols, symbols + XkbKeyNumSyms(xkb, keycode));
    return key;
}

KeyServer::RawType rawTypeFrom(const XkbKeyTypeRec &source)
{
    KeyServer::RawType type;
    type.realModifiers = source.mods.real_mods;
    type.virtualModifiers = source.mods.vmods;
    const XkbModsRec *const preserved = source.preserve;
    type.preserves = preserved != nullptr;
    for (int i = 0; i < source.map_count; ++i) {
        const XkbKTMapEntryRec &from = source.map[i];
        KeyServer::RawType::Entry entry{from.active != False, from.level, from.mods.real_mods,
                                        from.mods.vmods,      0,          0};
        if (preserved) {
            entry.preservedReal = preserved[i].real_mods;
            entry.preservedVirtual = preserved[i].vmods;
        }
        type.entries.push_back(entry);
    }
    return type;
}

void setType(XkbKeyTypeRec &target, const KeyServer::RawType &type)
{
    std::free(target.map);
    std::free(target.preserve);
    const std::size_t count = type.entries.size();
    target.map = static_cast<XkbKTMapEntryPtr>(std::calloc(count + 1, sizeof *target.map));
    target.preserve = type.preserves
                          ? static_cast<XkbModsPtr>(std::calloc(count + 1, sizeof(XkbModsRec)))
                          : nullptr;
    target.map_count = static_cast<unsigned char>(count);
    target.mods.real_mods = target.mods.mask = static_cast<unsigned char>(type.realModifiers);
    target.mods.vmods = static_cast<unsigned short>(type.virtualModifiers);
    for (std::size_t i = 0; i < count; ++i) {
        const KeyServer::RawType::Entry &entry = type.entries[i];
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

bool setKey(XkbDescPtr xkb, const KeyServer::RawKey &key)
{
    KeySym *symbols = XkbResizeKeySyms(xkb, key.keycode, static_cast<int>(key.keysyms.size()));
    if (!symbols && !key.keysyms.empty())
        return false;
    XkbSymMapRec &target = xkb->map->key_sym_map[key.keycode];
    target.width = key.width;
    target.group_info = key.groupInfo;
    std::copy(key.types.begin(), key.types.end(), std::begin(target.kt_index));
    std::copy(key.keysyms.begin(), key.keysyms.end(), symbols);
    return true;
}

void noteKey(XkbMapChangesRec &changes, int keycode)
{
    int first = keycode;
    int last = keycode;
    if (changes.changed & XkbKeySymsMask) {
        first = std::min<int>(first, changes.first_key_sym);
        last = std::max<int>(last, changes.first_key_sym + changes.num_key_syms - 1);
    }
    changes.changed |= XkbKeySymsMask;
    changes.first_key_sym = static_cast<KeyCode>(first);
    changes.num_key_syms = static_cast<unsigned char>(last - first + 1);
}

} // namespace

KeyboardMap XKeyServer::readMap()
{
    KeyboardMap map;
    XkbDescPtr xkb = XkbGetMap(
        m_display, XkbAllClientInfoMask | XkbModifierMapMask | XkbVirtualModsMask, XkbUseCoreKbd);
    if (!xkb)
        return map;
    map.minKeycode = xkb->min_key_code;
    map.maxKeycode = xkb->max_key_code;
    for (int i = 0; i < xkb->map->num_types; ++i)
        map.types.push_back(typeFrom(xkb->map->types[i]));
    for (int keycode = map.minKeycode; keycode <= map.maxKeycode; ++keycode)
        map.keys[static_cast<std::size_t>(keycode)] = keyFrom(xkb, keycode);

    map.levelModifiers = ShiftMask;
    if (XkbGetNames(m_display, XkbVirtualModNamesMask, xkb) == Success) {
        const std::uint8_t taken = modifiersNamed(
            m_display, xkb, {"Alt", "Meta", "Super", "Hyper", "NumLock", "ScrollLock"});
        map.levelModifiers |= (Mod3Mask | Mod5Mask) & ~taken;
    }
    XkbFreeKeyboard(xkb, 0, True);
    return map;
}

std::optional<KeyServer::RawMap> XKeyServer::readOwnMap()
{
    XkbDescPtr xkb =
        XkbGetMap(m_display, XkbAllClientInfoMask, static_cast<unsigned>(m_testKeyboard));
    if (!xkb)
        return std::nullopt;
    RawMap map;
    map.keys.resize(256);
    for (int keycode = xkb->min_key_code; keycode <= xkb->max_key_code; ++keycode)
        map.keys[static_cast<std::size_t>(keycode)] =
            rawKeyFrom(xkb, static_cast<std::uint8_t>(keycode));
    for (int i = 0; i < xkb->map->num_types; ++i)
        map.types.push_back(rawTypeFrom(xkb->map->types[i]));
    XkbFreeKeyboard(xkb, 0, True);
    return map;
}

// One request, from a fresh copy.
void XKeyServer::changeOwnMap(const std::vector<RawKey> &keys,
                              std::optional<std::pair<int, RawType>> type)
{
    XkbDescPtr xkb =
        XkbGetMap(m_display, XkbAllClientInfoMask, static_cast<unsigned>(m_testKeyboard));
    if (!xkb)
        return;
    XkbMapChangesRec changes{};
    if (type && type->first < xkb->map->num_types) {
        setType(xkb->map->types[type->first], type->second);
        changes.changed |= XkbKeyTypesMask;
        changes.first_type = static_cast<unsigned char>(type->first);
        changes.num_types = 1;
    }
    for (const RawKey &key : keys) {
        if (setKey(xkb, key))
            noteKey(changes, key.keycode);
    }
    if (changes.changed)
        XkbChangeMap(m_display, xkb, &changes);
    XkbFreeKeyboard(xkb, 0, True);
}

bool XKeyServer::hasTypist()
{
    return XGetSelectionOwner(m_display, atom(typistName)) != 0;
}

void XKeyServer::setTypist(bool isUs)
{
    XSetSelectionOwner(m_display, atom(typistName), isUs ? m_ownWindow : 0, CurrentTime);
}

std::vector<unsigned long> XKeyServer::note()
{
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long rest = 0;
    unsigned char *data = nullptr;
    XGetWindowProperty(m_display, root(), atom(noteName), 0, maxNote, False, XA_CARDINAL, &type,
                       &format, &count, &rest, &data);
    std::vector<unsigned long> numbers;
    if (data && format == 32) {
        const auto *first = reinterpret_cast<const unsigned long *>(data);
        numbers.assign(first, first + count);
    }
    if (data)
        XFree(data);
    return numbers;
}

void XKeyServer::setNote(const std::vector<unsigned long> &note)
{
    XChangeProperty(m_display, root(), atom(noteName), XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char *>(note.data()),
                    static_cast<int>(note.size()));
}

void XKeyServer::deleteNote()
{
    XDeleteProperty(m_display, root(), atom(noteName));
}

} // namespace platform::linux_
