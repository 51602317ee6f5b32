// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "backend/engine/ThreadedEngine.h"
#include "support/WaitUntil.h"

#include <QSemaphore>
#include <gtest/gtest.h>

namespace
{

TEST(ThreadedEngine, AnswersShortTextsWhileLongOnesAndTranslationsAreWorkedOn)
{
    QSemaphore finish;
    ThreadedEngine engine([&](const EngineRequest &request) {
        if (request.command != u"check-grammar")
            finish.acquire();
        return EngineAnswer{200, request.text.left(9)};
    });
    QStringList answers;
    const auto take = [&](const EngineAnswer &answer) { answers += answer.text; };
    std::vector<std::unique_ptr<PendingWork>> works;
    for (int i = 0; i < 40; ++i) {
        const bool isLong = i % 2 == 0;
        works.push_back(engine.answer(
            {isLong ? u"clear"_qs : u"french"_qs, isLong ? QString(2000, u'x') : u"bonjour"_qs},
            take));
    }
    works.push_back(engine.answer({u"check-grammar"_qs, u"a line"_qs}, take));
    EXPECT_TRUE(waitUntil([&] { return !answers.isEmpty(); }));
    EXPECT_EQ(answers, QStringList{u"a line"_qs});

    // What was cancelled calls nothing back, whether it had begun or not.
    works.erase(works.begin() + 1, works.end());
    finish.release(40);
    EXPECT_TRUE(waitUntil([&] { return answers.size() >= 2; }));
    QThread::msleep(100);
    QCoreApplication::processEvents();
    EXPECT_EQ(answers, QStringList({u"a line"_qs, u"xxxxxxxxx"_qs}));
}

} // namespace
