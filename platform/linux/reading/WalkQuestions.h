// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiApplication.h"

#include <QPointer>

#include <memory>

namespace platform::linux_
{

/// Enough to keep the application busy while answers are on their way, few enough for its queue.
inline constexpr int maxInFlight = 400;
/// Limits against endless trees and data tables.
inline constexpr size_t maxElements = 300'000;
inline constexpr int maxChildren = 100'000;

/// What walks through the tree of an application share: calls that keep `Walk` alive and count what
/// is outstanding.
template <typename Walk> struct WalkQuestions : std::enable_shared_from_this<Walk> {
    QPointer<AtspiApplication> application;
    int outstanding = 0;

    template <typename Handler, typename... Args>
    void ask(const QByteArray &path, const char *interface, const char *member, Handler handler,
             const char *types = "", Args... args)
    {
        ++outstanding;
        const bool sent = application->call(
            path, interface, member,
            [self = this->shared_from_this(), handler](DBusMessage &reply) {
                --self->outstanding;
                handler(reply);
                self->proceed();
            },
            types, args...);
        if (!sent)
            --outstanding;
    }
};

} // namespace platform::linux_
