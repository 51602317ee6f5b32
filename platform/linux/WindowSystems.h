// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/ports/Typist.h"
#include "platform/linux/ports/WindowSystem.h"

#include <memory>

namespace platform::linux_
{

class InputMethods;

/// Before the toolkit starts: chooses its platform plugin, unless the user has.
void chooseWindowSystem();

/// That on which the toolkit runs, and what types on it.
std::unique_ptr<WindowSystem> createWindowSystem();
/// `inputMethods` is asked where keys may pass through an input method, and outlives the typist.
std::unique_ptr<Typist> createTypist(InputMethods &inputMethods);

} // namespace platform::linux_
