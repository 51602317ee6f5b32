// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>

/// The compact language model, as compile_model writes it and LanguageModel
/// reads it: a header, then arrays in the order of Header's comment, each padded
/// to a multiple of eight bytes, in the byte order of the machine. A word is its
/// place in the alphabetical list of words. A pair is a word (the array it lies
/// in) with the word before it; a triple has one more before.
namespace offline::model
{

constexpr char magic[8] = {'Q', 'W', 'O', 'R', 'D', 'S', '0', '1'};
constexpr uint16_t unknownWord = 0xFFFF;
constexpr uint32_t maxWords = 65'000;

/// Arrays: nameStarts u32[words + 1], firstPair u32[words + 1], names
/// char[letters], wordProbability u8[words], wordBackoff u8[words], pairWord
/// u16[pairs], pairProbability u8[pairs], pairBackoff u8[pairs], firstTriple
/// u24[pairs + 1], tripleWord u16[triples], tripleProbability u8[triples].
struct Header {
    char magic[8];
    uint32_t words;
    uint32_t letters;
    uint32_t pairs;
    uint32_t triples;
};

constexpr float probabilitySteps = 28; ///< for a factor of ten
constexpr float backoffSteps = 64;
constexpr float backoffOffset = 0.5F; ///< the largest logarithm of a back-off weight

inline uint8_t packed(float steps)
{
    return uint8_t(std::clamp(std::lround(steps), 0L, 255L));
}
/// Logarithms to the base ten.
inline uint8_t packProbability(float logarithm)
{
    return packed(-logarithm * probabilitySteps);
}
inline float unpackProbability(uint8_t value)
{
    return -float(value) / probabilitySteps;
}
inline uint8_t packBackoff(float logarithm)
{
    return packed((backoffOffset - logarithm) * backoffSteps);
}
inline float unpackBackoff(uint8_t value)
{
    return backoffOffset - float(value) / backoffSteps;
}

} // namespace offline::model
