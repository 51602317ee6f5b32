// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cstdint>

/// The tables of the tagger, as compile_tags writes them and Tagger reads them.
namespace offline::tags
{

/// The parts of speech of the Penn Treebank, in the order of the source.
constexpr const char *names[] = {
    "nn",  "punc", "nnp", "dt",  "in",  "jj",  "nns", "cd",  "rb",  "vbd", "vb", "prp",  "cc",
    "of",  "to",   "vbz", "vbn", "vbg", "vbp", "md",  "pos", "wdt", "jjr", "wp", "nnps", "wrb",
    "jjs", "rbr",  "rp",  "ex",  "rbs", "pdt", "fw",  "1",   "uh",  "sym", "ls", "2"};
constexpr uint32_t count = sizeof(names) / sizeof(names[0]);

/// Steps of a stored probability for a factor of ten.
constexpr float steps = 24;

/// Arrays after it, each padded to a multiple of eight bytes: transitions
/// u8[count^3] (two tags before, the tag before, the tag), nameStarts u32[words +
/// 1], names char[letters], firstEntry u32[words + 1], entryTag u8[entries],
/// entryProbability u8[entries] (of the word, given the tag).
struct Header {
    uint32_t words;
    uint32_t letters;
    uint32_t entries;
    uint32_t reserved;
};

} // namespace offline::tags
