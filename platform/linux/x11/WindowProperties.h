// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QRect>
#include <QString>

// What other programs' window properties say. Any program can write anything into them. Any thread.

namespace platform::linux_
{

/// The class in WM_CLASS, which is two strings, instance and class, each with its NUL
/// (ICCCM 4.1.2.5). Empty for anything else.
QString windowClassOf(const QByteArray &property);

/// `surface` without the shadow that _GTK_FRAME_EXTENTS names: left, right, top and bottom, in
/// pixels. `surface` itself where the property names no four, or none that leave a window.
QRect withoutShadow(const QRect &surface, const QList<quint32> &property);

} // namespace platform::linux_
