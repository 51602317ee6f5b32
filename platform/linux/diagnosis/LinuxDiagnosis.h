// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Diagnosis.h"

namespace platform::linux_
{

/// The facts of a Linux desktop. Asks the session bus, the accessibility bus and the X server over
/// connections of its own, so that it works while parts of the desktop or of Quillet do not.
class LinuxDiagnosis : public Diagnosis
{
public:
    SystemFacts examine() override;
};

} // namespace platform::linux_
