// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace
{

constexpr int patience = 60'000;

class SingleInstanceTest : public testing::Test
{
protected:
    using Process = std::unique_ptr<QProcess>;

    Process start(const char *startupId, const QStringList &more = {})
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start(QStringLiteral(INSTANCE_PROBE),
                       QStringList{m_folder.filePath(QStringLiteral("socket")),
                                   QString::fromLatin1(startupId)} +
                           more);
        return process;
    }

    static QByteArray line(const Process &process)
    {
        while (!process->canReadLine()) {
            if (!process->waitForReadyRead(patience))
                return "(nothing)";
        }
        return process->readLine().trimmed();
    }

    static void end(const Process &process)
    {
        process->closeWriteChannel();
        process->waitForFinished(patience);
    }

    QTemporaryDir m_folder;
};

TEST_F(SingleInstanceTest, ALaterStartActivatesTheFirstAndEndsWell)
{
    const Process first = start("");
    ASSERT_EQ(line(first), "first");
    const Process second = start("id with spaces_TIME12");
    EXPECT_EQ(line(second), "later");
    EXPECT_EQ(line(first), "window id with spaces_TIME12");
    end(second);
    EXPECT_EQ(second->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second->exitCode(), 0);
    for (const char *request : {"wizard", "permission", "settings", "background"}) {
        const Process other = start("", {QString::fromLatin1(request)});
        EXPECT_EQ(line(first), request);
        end(other);
    }

    end(first);
    const Process third = start("");
    EXPECT_EQ(line(third), "first");
    end(third);
}

TEST_F(SingleInstanceTest, ACrashDoesNotKeepTheNextOut)
{
    const Process crashed = start("");
    ASSERT_EQ(line(crashed), "first");
    crashed->kill();
    crashed->waitForFinished(patience);
    const Process next = start("");
    EXPECT_EQ(line(next), "first");
    end(next);
}

TEST_F(SingleInstanceTest, OfManyStartsAtOnceOneStays)
{
    std::vector<Process> all;
    all.reserve(8);
    for (int i = 0; i < 8; ++i)
        all.push_back(start("x"));
    int firsts = 0;
    int activations = 0;
    for (const Process &process : all) {
        const QByteArray role = line(process);
        if (role == "first")
            ++firsts;
        else
            EXPECT_EQ(role, "later");
    }
    EXPECT_EQ(firsts, 1);
    for (const Process &process : all) {
        end(process);
        activations += int(process->readAll().count("window x"));
    }
    EXPECT_EQ(activations, 7);
}

} // namespace
