// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/doctor/Doctor.h"

#include "quillet/widgets/Localisation.h"

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
    Finding finding{QStringLiteral("session"), localized("Session"), State::Good, {}, {}};
    const QString type = facts.sessionType.isEmpty() ? localized("unknown") : facts.sessionType;
    finding.detail = facts.desktop.isEmpty()
                         ? localized("type %1").arg(type)
                         : localized("type %1, desktop %2").arg(type, facts.desktop);
    if (facts.isNativeWayland)
        return finding;
    if (!facts.hasDisplay) {
        finding.state = State::Broken;
        finding.detail += localized("; no X11 display answers");
        finding.remedy =
            localized("Start Quillet in a graphical session. On a Wayland desktop, install "
                      "its X11 server (the package xwayland).");
    } else if (facts.sessionType == QLatin1StringView("wayland")) {
        finding.state = State::Limited;
        finding.detail += localized("; Quillet works in programs that run on its X11 server");
        finding.remedy =
            localized("Choose an X11 session when you log in to use Quillet everywhere.");
    }
    if (finding.state != State::Good && !facts.limitation.isEmpty())
        finding.remedy = facts.limitation;
    return finding;
}

Finding Doctor::windowManager(const SystemFacts &facts)
{
    Finding finding{QStringLiteral("window-manager"),
                    localized("Window manager"),
                    State::Good,
                    facts.windowManager,
                    {}};
    if (facts.isNativeWayland) {
        finding.detail = localized("the compositor of the session");
    } else if (!facts.hasDisplay || facts.windowManager.isEmpty()) {
        finding.state = State::Limited;
        finding.detail = localized("none");
        finding.remedy =
            localized("Start a window manager: without one, windows are not told apart.");
    } else if (!facts.missingHints.isEmpty()) {
        finding.state = State::Limited;
        finding.detail =
            localized("%1 does not follow %2")
                .arg(facts.windowManager, facts.missingHints.join(QStringLiteral(", ")));
    }
    return finding;
}

Finding Doctor::tray(const SystemFacts &facts)
{
    if (facts.hasTray)
        return {QStringLiteral("tray"), localized("Tray"), State::Good, localized("present"), {}};
    return {QStringLiteral("tray"), localized("Tray"), State::Limited, localized("none"),
            localized("Start Quillet a second time to bring back its window.")};
}

Finding Doctor::accessibility(const SystemFacts &facts)
{
    Finding finding{
        QStringLiteral("accessibility"), localized("Accessibility service"), State::Broken, {}, {}};
    switch (facts.accessibility) {
    case SystemFacts::Service::NoBus:
        finding.detail = localized("there is no session bus");
        finding.remedy = localized("Start Quillet in a desktop session, or with dbus-run-session.");
        break;
    case SystemFacts::Service::Missing:
        finding.detail = localized("it is not installed or does not answer");
        finding.remedy = localized("Install the package at-spi2-core and log in again.");
        break;
    case SystemFacts::Service::Off:
        // Quillet switches it on together with the permission.
        finding.state = facts.hasConsent ? State::Limited : State::Good;
        finding.detail = localized("it is switched off");
        if (facts.hasConsent)
            finding.remedy = localized("Start Quillet: it switches the service on.");
        break;
    case SystemFacts::Service::On:
        finding.state = State::Good;
        finding.detail = localized("it answers and is switched on");
        break;
    }
    return finding;
}

Finding Doctor::consent(const SystemFacts &facts)
{
    if (facts.hasConsent)
        return {QStringLiteral("permission"),
                localized("Permission"),
                State::Good,
                localized("given"),
                {}};
    return {QStringLiteral("permission"), localized("Permission"), State::Broken,
            localized("not given"), localized("Run \"quillet --setup\" and follow the wizard.")};
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
                                   ? localized("%1 shows only its windows").arg(program.name)
                                   : localized("%1 shows nothing").arg(program.name);
        findings.append(
            {QStringLiteral("program"), localized("Program"), State::Limited, detail,
             program.remedy.isEmpty()
                 ? localized("Start the program again while Quillet has its permission.")
                 : program.remedy});
    }
    if (!open.isEmpty())
        findings.prepend(
            {QStringLiteral("program"),
             localized("Programs"),
             State::Good,
             localized("these show their text: %1").arg(open.join(QStringLiteral(", "))),
             {}});
    return findings;
}

Finding Doctor::typing(const SystemFacts &facts)
{
    Finding finding{QStringLiteral("typing"), localized("Typing"), State::Good, {}, {}};
    finding.detail = localized("every character can be typed");
    if (facts.isNativeWayland)
        return finding;
    if (!facts.hasDisplay || !facts.missingForTyping.isEmpty()) {
        finding.state = State::Limited;
        finding.detail = facts.hasDisplay
                             ? localized("the display lacks %1")
                                   .arg(facts.missingForTyping.join(QStringLiteral(", ")))
                             : localized("there is no display");
        finding.remedy =
            localized("Without it Quillet cannot write into browsers and programs built on "
                      "them.");
    } else if (facts.spareKeys < enoughSpareKeys) {
        finding.state = State::Limited;
        finding.detail = localized("Free keys for characters that the layout does not have: %1")
                             .arg(facts.spareKeys);
        finding.remedy = localized("Choose fewer keyboard layouts at a time.");
    }
    return finding;
}

Finding Doctor::backendAnswer(const BackendFacts &backend)
{
    if (backend.failure.isEmpty())
        return {QStringLiteral("backend"),
                localized("Writing backend"),
                State::Good,
                backend.description,
                {}};
    return {QStringLiteral("backend"), localized("Writing backend"), State::Broken, backend.failure,
            localized("Install Quillet again: quillet-backend belongs beside it.")};
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
           (exitStatus(findings) ? localized("Quillet cannot do its job here yet.")
                                 : localized("Quillet can do its job here.")) +
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
