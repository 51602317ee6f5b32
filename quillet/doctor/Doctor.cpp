// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/doctor/Doctor.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using platform::SystemFacts;
using State = Finding::State;

namespace
{

/// With fewer keys to lend, texts in large scripts are typed in many small steps.
constexpr int enoughSpareKeys = 8;

QString nameOf(State state)
{
    switch (state) {
    case State::Good:
        return QStringLiteral("good");
    case State::Limited:
        return QStringLiteral("limited");
    case State::Broken:
        return QStringLiteral("broken");
    }
    return {};
}

} // namespace

QList<Finding> Doctor::judge(const SystemFacts &facts, const BackendFacts &backend)
{
    QList<Finding> findings{session(facts), windowManager(facts), tray(facts), accessibility(facts),
                            consent(facts)};
    findings.append(programs(facts));
    findings.append({typing(facts), backendAnswer(backend)});
    return findings;
}

Finding Doctor::session(const SystemFacts &facts)
{
    Finding finding{QStringLiteral("session"), tr("Session"), State::Good, {}, {}};
    const QString type = facts.sessionType.isEmpty() ? tr("unknown") : facts.sessionType;
    finding.detail = facts.desktop.isEmpty() ? tr("type %1").arg(type)
                                             : tr("type %1, desktop %2").arg(type, facts.desktop);
    if (facts.isNativeWayland)
        return finding;
    if (!facts.hasDisplay) {
        finding.state = State::Broken;
        finding.detail += tr("; no X11 display answers");
        finding.remedy = tr("Start Quillet in a graphical session. On a Wayland desktop, install "
                            "its X11 server (the package xwayland).");
    } else if (facts.sessionType == QLatin1StringView("wayland")) {
        finding.state = State::Limited;
        finding.detail += tr("; Quillet works in programs that run on its X11 server");
        finding.remedy = tr("Choose an X11 session when you log in to use Quillet everywhere.");
    }
    if (finding.state != State::Good && !facts.limitation.isEmpty())
        finding.remedy = facts.limitation;
    return finding;
}

Finding Doctor::windowManager(const SystemFacts &facts)
{
    Finding finding{QStringLiteral("window-manager"),
                    tr("Window manager"),
                    State::Good,
                    facts.windowManager,
                    {}};
    if (facts.isNativeWayland) {
        finding.detail = tr("the compositor of the session");
    } else if (!facts.hasDisplay || facts.windowManager.isEmpty()) {
        finding.state = State::Limited;
        finding.detail = tr("none");
        finding.remedy = tr("Start a window manager: without one, windows are not told apart.");
    } else if (!facts.missingHints.isEmpty()) {
        finding.state = State::Limited;
        finding.detail =
            tr("%1 does not follow %2")
                .arg(facts.windowManager, facts.missingHints.join(QStringLiteral(", ")));
    }
    return finding;
}

Finding Doctor::tray(const SystemFacts &facts)
{
    if (facts.hasTray)
        return {QStringLiteral("tray"), tr("Tray"), State::Good, tr("present"), {}};
    return {QStringLiteral("tray"), tr("Tray"), State::Limited, tr("none"),
            tr("Start Quillet a second time to bring back its window.")};
}

Finding Doctor::accessibility(const SystemFacts &facts)
{
    Finding finding{
        QStringLiteral("accessibility"), tr("Accessibility service"), State::Broken, {}, {}};
    switch (facts.accessibility) {
    case SystemFacts::Service::NoBus:
        finding.detail = tr("there is no session bus");
        finding.remedy = tr("Start Quillet in a desktop session, or with dbus-run-session.");
        break;
    case SystemFacts::Service::Missing:
        finding.detail = tr("it is not installed or does not answer");
        finding.remedy = tr("Install the package at-spi2-core and log in again.");
        break;
    case SystemFacts::Service::Off:
        // Quillet switches it on together with the permission.
        finding.state = facts.hasConsent ? State::Limited : State::Good;
        finding.detail = tr("it is switched off");
        if (facts.hasConsent)
            finding.remedy = tr("Start Quillet: it switches the service on.");
        break;
    case SystemFacts::Service::On:
        finding.state = State::Good;
        finding.detail = tr("it answers and is switched on");
        break;
    }
    return finding;
}

Finding Doctor::consent(const SystemFacts &facts)
{
    if (facts.hasConsent)
        return {QStringLiteral("permission"), tr("Permission"), State::Good, tr("given"), {}};
    return {QStringLiteral("permission"), tr("Permission"), State::Broken, tr("not given"),
            tr("Run \"quillet --setup\" and follow the wizard.")};
}

QList<Finding> Doctor::programs(const SystemFacts &facts)
{
    using Shows = SystemFacts::Program::Shows;
    QList<Finding> findings;
    QStringList open;
    for (const SystemFacts::Program &program : facts.programs) {
        if (program.shows == Shows::Elements) {
            open.append(program.name);
            continue;
        }
        const QString detail = program.shows == Shows::Windows
                                   ? tr("%1 shows only its windows").arg(program.name)
                                   : tr("%1 shows nothing").arg(program.name);
        findings.append({QStringLiteral("program"), tr("Program"), State::Limited, detail,
                         program.remedy.isEmpty()
                             ? tr("Start the program again while Quillet has its permission.")
                             : program.remedy});
    }
    if (!open.isEmpty())
        findings.prepend({QStringLiteral("program"),
                          tr("Programs"),
                          State::Good,
                          tr("these show their text: %1").arg(open.join(QStringLiteral(", "))),
                          {}});
    return findings;
}

Finding Doctor::typing(const SystemFacts &facts)
{
    Finding finding{QStringLiteral("typing"), tr("Typing"), State::Good, {}, {}};
    if (facts.isNativeWayland) {
        finding.detail = tr("every character can be typed");
    } else if (!facts.hasDisplay || !facts.missingForTyping.isEmpty()) {
        finding.state = State::Limited;
        finding.detail =
            facts.hasDisplay
                ? tr("the display lacks %1").arg(facts.missingForTyping.join(QStringLiteral(", ")))
                : tr("there is no display");
        finding.remedy = tr("Without it Quillet cannot write into browsers and programs built on "
                            "them.");
    } else if (facts.spareKeys < enoughSpareKeys) {
        finding.state = State::Limited;
        finding.detail = tr("%n key(s) are free for characters that the layout does not have", "",
                            facts.spareKeys);
        finding.remedy = tr("Choose fewer keyboard layouts at a time.");
    } else {
        finding.detail = tr("every character can be typed (%n free key(s))", "", facts.spareKeys);
    }
    return finding;
}

Finding Doctor::backendAnswer(const BackendFacts &backend)
{
    if (backend.failure.isEmpty())
        return {
            QStringLiteral("backend"), tr("Writing backend"), State::Good, backend.description, {}};
    return {QStringLiteral("backend"), tr("Writing backend"), State::Broken, backend.failure,
            tr("Install Quillet again: quillet-backend belongs beside it.")};
}

QString Doctor::toText(const QList<Finding> &findings)
{
    QString text;
    for (const Finding &finding : findings) {
        const char *mark = finding.state == State::Good      ? "ok     "
                           : finding.state == State::Limited ? "limited"
                                                             : "BROKEN ";
        text += QLatin1StringView(mark) + QStringLiteral("  %1: ").arg(finding.title) +
                QString(finding.detail).replace(u'\n', QStringLiteral("\n         ")) + u'\n';
        if (!finding.remedy.isEmpty())
            text += QStringLiteral("         -> %1\n").arg(finding.remedy);
    }
    return text +
           (exitStatus(findings) ? tr("Quillet cannot do its job here yet.")
                                 : tr("Quillet can do its job here.")) +
           u'\n';
}

QByteArray Doctor::toJson(const QList<Finding> &findings)
{
    QJsonArray list;
    for (const Finding &finding : findings)
        list.append(QJsonObject{{QStringLiteral("id"), finding.id},
                                {QStringLiteral("state"), nameOf(finding.state)},
                                {QStringLiteral("title"), finding.title},
                                {QStringLiteral("detail"), finding.detail},
                                {QStringLiteral("remedy"), finding.remedy}});
    return QJsonDocument(QJsonObject{{QStringLiteral("works"), exitStatus(findings) == 0},
                                     {QStringLiteral("findings"), list}})
        .toJson();
}

int Doctor::exitStatus(const QList<Finding> &findings)
{
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding &each) { return each.state == State::Broken; });
}
