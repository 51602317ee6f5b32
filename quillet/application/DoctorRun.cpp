// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/application/DoctorRun.h"

#include "BuildConstants.h"
#include "platform/Diagnosis.h"
#include "quillet/doctor/Doctor.h"
#include "quillet/widgets/Localisation.h"
#include "quillet/writing/BackendService.h"
#include "quillet/writing/LocalBackend.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QProcess>
#include <QTimer>

#include <chrono>
#include <cstdio>
#include <memory>

namespace
{

constexpr std::chrono::seconds backendLimit{15};

std::unique_ptr<WritingEndpoint> makeEndpoint()
{
    if (!BuildConstants::backendEndpoint.isEmpty())
        return std::make_unique<FixedEndpoint>(BuildConstants::backendEndpoint);
    return std::make_unique<LocalBackend>();
}

BackendFacts askBackend()
{
    BackendFacts facts;
    facts.failure = QStringLiteral("It did not answer in time.");
    const std::unique_ptr<WritingEndpoint> endpoint = makeEndpoint();
    BackendService service;
    QEventLoop loop;
    bool answered = false;
    const auto end = [&] {
        answered = true;
        loop.quit();
    };
    QTimer::singleShot(backendLimit, &loop, &QEventLoop::quit);
    endpoint->withEndpoint([&](const QString &url, const QString &failure) {
        if (url.isEmpty()) {
            facts.failure = failure;
            end();
            return;
        }
        const QMap<QString, QString> settings{
            {QStringLiteral("command"), QStringLiteral("settings")},
            {QStringLiteral("text"), QString()}};
        service.get(url, settings, [&](const BackendService::Result &result) {
            if (const auto *answer = std::get_if<QString>(&result))
                facts = {{}, *answer};
            else
                facts.failure = describe(std::get<BackendFailure>(result));
            end();
        });
    });
    if (!answered)
        loop.exec();
    return facts;
}

} // namespace

void examineInOwnProcess(QObject *context, std::function<void(const QString &report)> told)
{
    auto *doctor = new QProcess(context);
    doctor->setStandardErrorFile(QProcess::nullDevice());
    const auto tell = [doctor, told = std::move(told)] {
        doctor->deleteLater();
        const QString report = QString::fromUtf8(doctor->readAllStandardOutput());
        told(QStringLiteral("Quillet %1\n\n%2")
                 .arg(BuildConstants::version,
                      report.isEmpty() ? localized("The examination failed.") : report));
    };
    QObject::connect(doctor, &QProcess::finished, context, tell);
    QObject::connect(doctor, &QProcess::errorOccurred, context,
                     [tell](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart)
                             tell();
                     });
    doctor->start(QCoreApplication::applicationFilePath(), {QStringLiteral("--doctor")});
}

int runDoctor(bool json)
{
    const QList<Finding> findings =
        Doctor::judge(platform::createDiagnosis()->examine(), askBackend());
    const QByteArray report = json ? Doctor::toJson(findings) : Doctor::toText(findings).toUtf8();
    std::fwrite(report.constData(), 1, std::size_t(report.size()), stdout);
    return Doctor::exitStatus(findings);
}
