// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Work that an answer waits for. Destroying it cancels the work; its callback is not called
/// afterwards.
class PendingWork
{
public:
    PendingWork() = default;
    PendingWork(const PendingWork &) = delete;
    PendingWork &operator=(const PendingWork &) = delete;
    virtual ~PendingWork() = default;
};
