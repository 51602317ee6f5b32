// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/StartRequest.h"

#include <array>
#include <utility>

namespace
{

constexpr std::array<std::pair<StartRequest, const char *>, 6> words{{
    {StartRequest::Window, "window"},
    {StartRequest::Wizard, "wizard"},
    {StartRequest::Permission, "permission"},
    {StartRequest::Settings, "settings"},
    {StartRequest::Doctor, "doctor"},
    {StartRequest::Background, "background"},
}};

} // namespace

QByteArray wordFor(StartRequest request)
{
    for (const auto &[known, word] : words) {
        if (known == request)
            return word;
    }
    return {};
}

StartRequest requestFor(const QByteArray &word)
{
    for (const auto &[request, known] : words) {
        if (word == known)
            return request;
    }
    return StartRequest::Window;
}
