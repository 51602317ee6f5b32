// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/typing/Keymap.h"

#include <array>

namespace platform::linux_::keymap
{

namespace
{

constexpr std::uint32_t xkbOffset = 8;

/// The rows of a keyboard: digits, then the three of letters with the signs beside them.
constexpr auto printingKeys = [] {
    std::array<std::uint32_t, capacity> keys{};
    std::size_t count = 0;
    const auto add = [&](std::uint32_t first, std::uint32_t last) {
        for (std::uint32_t code = first; code <= last; ++code)
            keys[count++] = code;
    };
    add(2, 13);
    add(16, 27);
    add(30, 41);
    add(43, 53);
    return keys;
}();
static_assert(printingKeys.back() == 53);

QByteArray name(std::uint32_t code)
{
    return "<K" + QByteArray::number(code) + '>';
}

} // namespace

std::uint32_t keyAt(std::size_t index)
{
    return printingKeys[index];
}

QByteArray text(const std::vector<char32_t> &characters)
{
    QByteArray codes;
    QByteArray symbols;
    const auto add = [&](std::uint32_t code, const QByteArray &symbol) {
        codes += name(code) + " = " + QByteArray::number(code + xkbOffset) + ";\n";
        symbols += "key " + name(code) + " { type = \"ONE_LEVEL\", [ " + symbol + " ] };\n";
    };
    for (std::size_t i = 0; i < characters.size() && i < capacity; ++i)
        add(printingKeys[i], 'U' + QByteArray::number(characters[i], 16).rightJustified(4, '0'));
    add(returnKey, "Return");
    add(tabKey, "Tab");
    add(backSpaceKey, "BackSpace");
    QByteArray map = "xkb_keymap {\n"
                     "xkb_keycodes \"quillet\" {\nminimum = 8;\nmaximum = 255;\n" +
                     codes +
                     "};\n"
                     "xkb_types \"quillet\" {\ntype \"ONE_LEVEL\" {\nmodifiers = none;\n"
                     "level_name[Level1] = \"Any\";\n};\n};\n"
                     "xkb_compatibility \"quillet\" {\n"
                     "interpret Any+AnyOf(all) { action = NoAction(); };\n};\n"
                     "xkb_symbols \"quillet\" {\n" +
                     symbols + "};\n};\n";
    map.append('\0');
    return map;
}

} // namespace platform::linux_::keymap
