// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Times the observer's tick on whatever has the focus: bench_tick SAMPLES. What the observer prints
// goes to standard output; the samples, in nanoseconds, go to standard error as JSON.

#include "platform/Platform.h"
#include "quillet/focus/AccessibilityObserver.h"

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimer>

#include <cstdio>
#include <ctime>

namespace
{

class NoButton : public InputButton
{
public:
    void show(const platform::AXUIElement &) override { m_shown = true; }
    void hide() override {}
    bool hasLostInput() override { return false; }
    bool wasShown() const { return m_shown; }

private:
    bool m_shown = false;
};

qint64 nanoseconds(clockid_t clock)
{
    timespec time;
    clock_gettime(clock, &time);
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const int samples = QByteArray(argc > 1 ? argv[1] : "500").toInt();
    const auto system = platform::createPlatform();
    NoButton button;
    AccessibilityObserver observer({system->accessibility(), system->workspace(), button,
                                    static_cast<std::int32_t>(QCoreApplication::applicationPid())});
    QJsonArray cpu;
    QJsonArray wall;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &application, [&] {
        const qint64 cpuBefore = nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
        const qint64 before = nanoseconds(CLOCK_MONOTONIC);
        observer.checkFocusedElement();
        const qint64 after = nanoseconds(CLOCK_MONOTONIC);
        const qint64 cpuAfter = nanoseconds(CLOCK_PROCESS_CPUTIME_ID);
        if (!button.wasShown())
            return; // the platform is still learning what has the focus
        cpu.append(cpuAfter - cpuBefore);
        wall.append(after - before);
        if (cpu.size() >= samples)
            application.quit();
    });
    timer.start(10);
    QTimer::singleShot(60'000, &application, &QCoreApplication::quit);
    application.exec();
    const QByteArray json =
        QJsonDocument(QJsonObject{{QStringLiteral("cpu"), cpu}, {QStringLiteral("wall"), wall}})
            .toJson(QJsonDocument::Compact);
    std::fprintf(stderr, "%s\n", json.constData());
    return 0;
}
