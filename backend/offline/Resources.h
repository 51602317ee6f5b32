// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace offline
{

/// One of the files of data/, which are built into the program.
QByteArray resource(QStringView name);

/// Such a file as rows of tab-separated columns; lines that are empty or begin
/// with '#' are left out.
QList<QList<QString>> resourceTable(QStringView name);

/// The files of a folder of data/, in the order of their names.
QStringList resourceNames(QStringView folder);

} // namespace offline
