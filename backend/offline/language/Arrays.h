// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QStringView>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace offline
{

/// Walks over the arrays of a compiled table, each of which is padded to a
/// multiple of eight bytes.
class Arrays
{
public:
    explicit Arrays(const char *start)
        : m_at(start)
    {
    }

    template <typename T> const T *take(size_t count)
    {
        const auto *array = reinterpret_cast<const T *>(m_at);
        m_at += (count * sizeof(T) + 7) / 8 * 8;
        return array;
    }

private:
    const char *m_at;
};

/// The place of a word in a sorted list of names (name i lies between starts[i]
/// and starts[i + 1]), or -1.
inline int placeOf(QStringView word, const char *names, const uint32_t *starts, uint32_t count)
{
    std::array<char, 40> letters;
    if (word.isEmpty() || size_t(word.size()) > letters.size())
        return -1;
    for (qsizetype i = 0; i < word.size(); ++i) {
        if (word[i].unicode() > 0x7E)
            return -1;
        letters[size_t(i)] = char(word[i].unicode());
    }
    const std::string_view sought(letters.data(), size_t(word.size()));
    uint32_t low = 0;
    uint32_t high = count;
    while (low < high) {
        const uint32_t middle = (low + high) / 2;
        const std::string_view name(names + starts[middle], starts[middle + 1] - starts[middle]);
        if (name == sought)
            return int(middle);
        if (name < sought)
            low = middle + 1;
        else
            high = middle;
    }
    return -1;
}

} // namespace offline
