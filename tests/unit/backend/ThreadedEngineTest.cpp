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
    ThreadedEngine engine([&](const EngineRequest &request, const std::stop_token &) {
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

TEST(ThreadedEngine, WhatIsCancelledMakesRoomForWhatWaits)
{
    std::atomic<int> begun = 0;
    ThreadedEngine engine([&](const EngineRequest &request, const std::stop_token &stop) {
        ++begun;
        while (request.text == u"long" && !stop.stop_requested())
            QThread::msleep(1);
        return EngineAnswer{200, request.text};
    });
    QStringList answers;
    const auto take = [&](const EngineAnswer &answer) { answers += answer.text; };
    const int threads = std::max(4, QThread::idealThreadCount());
    std::vector<std::unique_ptr<PendingWork>> works;
    works.reserve(std::size_t(threads));
    for (int i = 0; i < threads; ++i)
        works.push_back(engine.answer({u"french"_qs, u"long"_qs}, take));
    ASSERT_TRUE(waitUntil([&] { return begun == threads; }));
    const auto next = engine.answer({u"french"_qs, u"short"_qs}, take);
    works.clear();
    ASSERT_TRUE(waitUntil([&] { return !answers.isEmpty(); }));
    EXPECT_EQ(answers, QStringList{u"short"_qs});
}

} // namespace
