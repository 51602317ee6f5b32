// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/application/ModelTrial.h"

#include "quillet/widgets/Localisation.h"

#include <QElapsedTimer>
#include <QLocale>

namespace
{

constexpr qsizetype maxShownLength = 120;

QString outcomeOf(const BackendService::AnswerResult &result, qint64 milliseconds)
{
    if (const auto *failure = std::get_if<BackendFailure>(&result))
        return localized("It did not work: %1").arg(localized(describe(*failure)));
    const auto &answer = std::get<BackendAnswer>(result);
    QString text = answer.text.simplified();
    if (text.size() > maxShownLength)
        text = text.first(maxShownLength) + u'…';
    const QString seconds = QLocale().toString(double(milliseconds) / 1000, 'f', 1);
    const QString outcome =
        answer.writer.isEmpty()
            ? localized("Written without a model, in %1 s: %2").arg(seconds, text)
            : localized("Written by %1, in %2 s: %3").arg(answer.writer, seconds, text);
    return answer.remark.isEmpty() ? outcome : outcome + u'\n' + answer.remark;
}

} // namespace

std::unique_ptr<BackendRequest> writeSample(WritingService &writing, const QString &command,
                                            std::function<void(const QString &outcome)> told)
{
    QElapsedTimer time;
    time.start();
    return writing.writeAsItComes(
        command, QStringLiteral("hi anna, can we meet tomorow? i got a few ideas for the party."),
        [](const AnswerPiece &) {},
        [told = std::move(told), time](const BackendService::AnswerResult &result) {
            told(outcomeOf(result, time.elapsed()));
        });
}
