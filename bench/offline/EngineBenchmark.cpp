// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Speed of the offline engine's grammar check.

#include "backend/offline/OfflineEngine.h"

#include <QStringList>

#include <benchmark/benchmark.h>

namespace
{

const QString &cleanParagraph()
{
    static const QString text = QStringLiteral(
        "The museum opens its doors at nine, and by half past there is usually a queue that "
        "reaches the corner of the street. Most visitors come for the paintings on the second "
        "floor, although the guides will tell you that the maps in the basement are worth more "
        "of your time. An old clockmaker gave the collection to the city when he retired; he had "
        "spent forty years buying instruments from sailors who no longer needed them. ");
    return text;
}

const QString &mistakeRichParagraph()
{
    static const QString text = QStringLiteral(
        "i definately think that teh museum should of opened it's doors earlyer, becuase their is "
        "alot of people who dont want to wait. She go there every week and recieve a email from "
        "the the guide ,but he never anwser. Its a intresting place and we was very suprised by "
        "the beautifull paintngs,the old instruments and the freindly people who works in an "
        "university near by. Your welcome to join us if you wont to loose some time. ");
    return text;
}

/// The paragraph again and again until the text has `count` words.
QString words(const QString &paragraph, qsizetype count)
{
    QStringList words;
    while (words.size() < count)
        words += paragraph.simplified().split(u' ');
    return words.mid(0, count).join(u' ');
}

void checkGrammar(benchmark::State &state, const QString &paragraph)
{
    const OfflineEngine engine;
    engine.warmUp();
    const QString text = words(paragraph, state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(engine.answer(QStringLiteral("check-grammar"), text));
}

void checkCleanText(benchmark::State &state)
{
    checkGrammar(state, cleanParagraph());
}

void checkMistakeRichText(benchmark::State &state)
{
    checkGrammar(state, mistakeRichParagraph());
}

/// From nothing to the first answer.
void firstAnswer(benchmark::State &state)
{
    for (auto _ : state) {
        const OfflineEngine engine;
        benchmark::DoNotOptimize(
            engine.answer(QStringLiteral("check-grammar"), mistakeRichParagraph()));
    }
}

BENCHMARK(checkCleanText)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(checkMistakeRichText)->Arg(1000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(firstAnswer)->Unit(benchmark::kMillisecond);

} // namespace
