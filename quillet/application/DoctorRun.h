// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

/// Examines the system, asks the writing backend what it works with, and prints the findings, as
/// text or as JSON. Needs an application object, and no display. Returns the exit status: 0 when
/// Quillet can do its job. Takes some seconds at most where parts of the desktop do not answer.
int runDoctor(bool json);
