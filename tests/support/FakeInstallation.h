// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Installation.h"

#include <QStringList>

namespace fake
{

/// An installation that a test scripts and that records what was asked of it, in order.
class Installation : public platform::Installation
{
public:
    QString bundle = QStringLiteral("/home/a/Downloads/quillet");
    bool installed = false;
    bool development = false;
    bool targetExists = false;
    int answer = 0;
    QString copyError;
    QStringList calls;

    QString bundlePath() override { return bundle; }
    QString targetPath() override { return QStringLiteral("/target"); }
    bool isInstalledLocation(const QString &path) override
    {
        return record(QStringLiteral("installed? ") + path), installed;
    }
    bool isDevelopmentRun() override { return record(QStringLiteral("development?")), development; }
    bool fileExists(const QString &path) override
    {
        return record(QStringLiteral("exists? ") + path), targetExists;
    }
    int runModalAlert(const QString &messageText, const QString &informativeText,
                      const QStringList &buttons, const QString &footnote) override
    {
        return record(QStringLiteral("alert ") + messageText + u'|' + informativeText + u'|' +
                      buttons.join(u',') + u'|' + footnote),
               answer;
    }
    QString copyBundle(const QString &from, const QString &to) override
    {
        return record(QStringLiteral("copy ") + from + u' ' + to), copyError;
    }
    void removeDownloadMarks(const QString &path) override
    {
        record(QStringLiteral("unmark ") + path);
    }
    void start(const QString &path, const QStringList &arguments) override
    {
        record((QStringList{QStringLiteral("start"), path} + arguments).join(u' '));
    }
    bool atLogin = false;
    bool startsAtLogin() override { return atLogin; }
    bool setStartsAtLogin(bool starts) override { return atLogin = starts, true; }
    void terminate() override { record(QStringLiteral("terminate")); }

private:
    void record(const QString &call) { calls.append(call); }
};

} // namespace fake
