// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "quillet/doctor/Doctor.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <functional>

using platform::SystemFacts;
using Shows = SystemFacts::Program::Shows;
using State = Finding::State;

namespace
{

SystemFacts goodSystem()
{
    SystemFacts facts;
    facts.sessionType = QStringLiteral("x11");
    facts.desktop = QStringLiteral("XFCE");
    facts.hasDisplay = true;
    facts.windowManager = QStringLiteral("Xfwm4");
    facts.hasTray = true;
    facts.accessibility = SystemFacts::Service::On;
    facts.hasConsent = true;
    facts.programs = {{QStringLiteral("mousepad"), 1, Shows::Elements, {}}};
    facts.spareKeys = 19;
    return facts;
}

const BackendFacts goodBackend{{}, QStringLiteral("Rules and dictionaries are at work.")};

State stateOf(const QList<Finding> &findings, const char *id)
{
    State worst = State::Good;
    for (const Finding &finding : findings) {
        if (finding.id == QLatin1StringView(id))
            worst = std::max(worst, finding.state);
    }
    return worst;
}

TEST(Doctor, FindsNothingInAGoodEnvironment)
{
    const QList<Finding> findings = Doctor::judge(goodSystem(), goodBackend);
    EXPECT_EQ(Doctor::exitStatus(findings), 0);
    for (const Finding &finding : findings) {
        EXPECT_EQ(finding.state, State::Good) << finding.id.toStdString();
        EXPECT_TRUE(finding.remedy.isEmpty()) << finding.id.toStdString();
        EXPECT_FALSE(finding.detail.isEmpty()) << finding.id.toStdString();
    }
}

TEST(Doctor, NeedsNoX11WhereTheCompositorOffersEverything)
{
    SystemFacts facts = goodSystem();
    facts.sessionType = QStringLiteral("wayland");
    facts.hasDisplay = false;
    facts.windowManager.clear();
    facts.spareKeys = 0;
    facts.isNativeWayland = true;
    for (const Finding &finding : Doctor::judge(facts, goodBackend))
        EXPECT_EQ(finding.state, State::Good) << finding.id.toStdString();

    facts.isNativeWayland = false;
    facts.limitation = QStringLiteral("choose another session");
    const QList<Finding> findings = Doctor::judge(facts, goodBackend);
    EXPECT_EQ(findings[0].state, State::Broken);
    EXPECT_EQ(findings[0].remedy, facts.limitation);
}

TEST(Doctor, NamesWhatIsBrokenWithARemedyAndFails)
{
    struct Case {
        const char *id;
        std::function<void(SystemFacts &, BackendFacts &)> breakIt;
        bool mainJobWorks;
    };
    const Case cases[] = {
        {"session", [](auto &facts, auto &) { facts.hasDisplay = false; }, false},
        {"accessibility",
         [](auto &facts, auto &) { facts.accessibility = SystemFacts::Service::NoBus; }, false},
        {"accessibility",
         [](auto &facts, auto &) { facts.accessibility = SystemFacts::Service::Missing; }, false},
        {"permission", [](auto &facts, auto &) { facts.hasConsent = false; }, false},
        {"backend", [](auto &, auto &backend) { backend.failure = QStringLiteral("no"); }, false},
        {"accessibility",
         [](auto &facts, auto &) { facts.accessibility = SystemFacts::Service::Off; }, true},
        {"session", [](auto &facts, auto &) { facts.sessionType = QStringLiteral("wayland"); },
         true},
        {"window-manager", [](auto &facts, auto &) { facts.windowManager.clear(); }, true},
        {"tray", [](auto &facts, auto &) { facts.hasTray = false; }, true},
        {"typing", [](auto &facts, auto &) { facts.missingForTyping = {QStringLiteral("XTEST")}; },
         true},
        {"typing", [](auto &facts, auto &) { facts.spareKeys = 1; }, true},
        {"program", [](auto &facts, auto &) { facts.programs[0].shows = Shows::Windows; }, true},
        {"program", [](auto &facts, auto &) { facts.programs[0].shows = Shows::Nothing; }, true},
    };
    for (const Case &each : cases) {
        SystemFacts facts = goodSystem();
        BackendFacts backend = goodBackend;
        each.breakIt(facts, backend);
        const QList<Finding> findings = Doctor::judge(facts, backend);
        EXPECT_EQ(Doctor::exitStatus(findings), each.mainJobWorks ? 0 : 1) << each.id;
        EXPECT_EQ(stateOf(findings, each.id), each.mainJobWorks ? State::Limited : State::Broken)
            << each.id;
        for (const Finding &finding : findings) {
            EXPECT_TRUE(finding.state == State::Good || !finding.remedy.isEmpty()) << each.id;
        }
    }
}

TEST(Doctor, SaysTheSameInTextAndJson)
{
    SystemFacts facts = goodSystem();
    facts.programs.append(
        {QStringLiteral("chromium"), 2, Shows::Windows, QStringLiteral("do this")});
    facts.hasConsent = false;
    const QList<Finding> findings = Doctor::judge(facts, goodBackend);

    const QString text = Doctor::toText(findings);
    EXPECT_TRUE(text.contains(QStringLiteral("-> do this\n"))) << text.toStdString();
    EXPECT_TRUE(text.contains(QStringLiteral("BROKEN   Permission: not given\n")));

    const QJsonObject json = QJsonDocument::fromJson(Doctor::toJson(findings)).object();
    EXPECT_EQ(json[QStringLiteral("works")], false);
    const QJsonArray list = json[QStringLiteral("findings")].toArray();
    ASSERT_EQ(list.size(), findings.size());
    for (qsizetype i = 0; i < list.size(); ++i) {
        const QJsonObject object = list[i].toObject();
        EXPECT_EQ(object[QStringLiteral("id")], findings[i].id);
        EXPECT_EQ(object[QStringLiteral("detail")], findings[i].detail);
        EXPECT_EQ(object[QStringLiteral("state")],
                  findings[i].state == State::Good      ? QStringLiteral("good")
                  : findings[i].state == State::Limited ? QStringLiteral("limited")
                                                        : QStringLiteral("broken"));
    }
}

} // namespace
