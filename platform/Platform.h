// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Accessibility.h"
#include "platform/FrameWatch.h"
#include "platform/Installation.h"
#include "platform/KeyboardEvents.h"
#include "platform/ProgramAccess.h"
#include "platform/Workspace.h"

#include <memory>

namespace platform
{

/// The system that Quillet runs on, as one object: created once in main(), before any window and
/// after the QApplication, and handed to the parts that need it.
class Platform
{
public:
    virtual ~Platform() = default;

    virtual Accessibility &accessibility() = 0;
    virtual KeyboardEvents &keyboard() = 0;
    virtual Workspace &workspace() = 0;
    virtual Installation &installation() = 0;
    /// Null where the system cannot follow an element.
    virtual FrameWatch *frameWatch() { return nullptr; }
    /// Null where the system knows no switches of programs.
    virtual ProgramAccess *programAccess() { return nullptr; }
};

/// Whether windows can be shown: the toolkit ends the process where it finds no display. Call it
/// before the QApplication is made.
bool hasDisplay();

/// Sets what holds for the whole process, and begins what takes long and the first window needs.
/// Call it early in main(), before any other thread exists.
void prepareProcess();

/// The adapter of the system that this program was built for.
std::unique_ptr<Platform> createPlatform();

} // namespace platform
