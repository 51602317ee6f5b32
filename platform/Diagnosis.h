// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>

namespace platform
{

/// What the system offers of what Quillet needs, as found at one moment. Holds no text of the user.
struct SystemFacts {
    enum class Service {
        /// No session bus.
        NoBus,
        /// No accessibility service on it.
        Missing,
        /// The desktop has it switched off.
        Off,
        On,
    };
    struct Program {
        QString name;
        std::int32_t pid = 0;
        enum class Shows {
            /// The elements in its windows.
            Elements,
            /// Its windows and nothing in them.
            Windows,
            /// Not even that: it has a window on the screen and is not on the accessibility bus.
            Nothing,
        } shows = Shows::Elements;
        /// What makes the program show its elements from now on; empty where nothing is known.
        QString remedy;
    };

    /// "x11", "wayland", or whatever the session says of itself; empty when it says nothing.
    QString sessionType;
    /// The desktop's name for itself.
    QString desktop;
    /// Whether an X11 display was reached.
    bool hasDisplay = false;
    /// Whether the session's compositor offers all that is needed, so that no X11 display is.
    bool isNativeWayland = false;
    /// What the session lacks, in one sentence with the way out; empty where that is nothing.
    QString limitation;
    /// Empty when none runs.
    QString windowManager;
    /// The hints that Quillet uses and the window manager does not follow.
    QStringList missingHints;
    bool hasTray = false;
    Service accessibility = Service::NoBus;
    /// Whether the user has allowed Quillet to use the service.
    bool hasConsent = false;
    QList<Program> programs;
    /// What typing needs of the display and is not there.
    QStringList missingForTyping;
    /// Keys that can be lent to characters which the layout does not have.
    int spareKeys = 0;
};

/// Looks at the system for a report. Any one thread. Every question to another program has a
/// deadline; the answers of the display are waited for.
class Diagnosis
{
public:
    virtual ~Diagnosis() = default;
    virtual SystemFacts examine() = 0;
};

/// That of the system which was built for. Needs no window and no createPlatform().
std::unique_ptr<Diagnosis> createDiagnosis();

} // namespace platform
