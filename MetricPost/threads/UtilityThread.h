// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>

namespace metricpost
{

/// Makes the calling thread one of utility quality, where the system knows qualities of service;
/// on Linux a batch thread would starve on a busy computer and it stays a normal one. Names it for
/// debuggers and process viewers; longer names keep their last 15 bytes, which is what every
/// system shows, and the end is where our labels differ.
void becomeUtilityThread(const QByteArray &name);

} // namespace metricpost
