// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/shell/InstallGuard.h"
#include "support/FakeInstallation.h"

#include <gtest/gtest.h>

namespace
{

QStringList list(std::initializer_list<const char *> lines)
{
    QStringList result;
    for (const char *line : lines)
        result.append(QString::fromUtf8(line));
    return result;
}

const char *const question = "alert Install Quillet|Quillet needs to be installed in the "
                             "Applications folder.|Install,Quit|It will be copied to /target.";

} // namespace

TEST(InstallGuard, LetsInstalledCopiesAndDevelopersThrough)
{
    fake::Installation installation;
    installation.installed = true;
    EXPECT_TRUE(ensureRunningFromApplications(installation));
    EXPECT_EQ(installation.calls, list({"installed? /home/a/Downloads/quillet"}));

    installation = {};
    installation.development = true;
    installation.targetExists = true;
    EXPECT_TRUE(ensureRunningFromApplications(installation));
    EXPECT_EQ(installation.calls, list({"installed? /home/a/Downloads/quillet", "development?"}));
}

TEST(InstallGuard, HandsOverToTheInstalledCopyWithoutAsking)
{
    fake::Installation installation;
    installation.targetExists = true;
    EXPECT_FALSE(ensureRunningFromApplications(installation, {QStringLiteral("--setup")}));
    EXPECT_EQ(installation.calls.mid(2),
              list({"exists? /target", "start /target --setup", "terminate"}));
}

TEST(InstallGuard, InstallsWhenTheUserAgrees)
{
    fake::Installation installation;
    EXPECT_FALSE(ensureRunningFromApplications(installation));
    EXPECT_EQ(installation.calls.mid(3), list({question, "copy /home/a/Downloads/quillet /target",
                                               "unmark /target", "start /target", "terminate"}));
}

TEST(InstallGuard, EndsWhenTheUserQuitsOrTheCopyFails)
{
    fake::Installation installation;
    installation.answer = 1;
    EXPECT_FALSE(ensureRunningFromApplications(installation));
    EXPECT_EQ(installation.calls.mid(3), list({question, "terminate"}));

    installation = {};
    installation.copyError = QStringLiteral("No space left on device");
    EXPECT_FALSE(ensureRunningFromApplications(installation));
    EXPECT_EQ(installation.calls.mid(3),
              list({question, "copy /home/a/Downloads/quillet /target",
                    "alert Install Failed|Could not copy Quillet to Applications: No space left on "
                    "device|OK|",
                    "terminate"}));
}
