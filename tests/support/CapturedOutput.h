// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <gtest/gtest.h>

/// What the enclosed code printed on standard output, as lines.
template <typename F> QStringList capturedLines(F &&code)
{
    testing::internal::CaptureStdout();
    code();
    QStringList lines = QString::fromStdString(testing::internal::GetCapturedStdout()).split(u'\n');
    lines.removeLast();
    return lines;
}
