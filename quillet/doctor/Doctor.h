// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/Diagnosis.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// What the writing backend says of itself.
struct BackendFacts {
    /// Empty when it answers.
    QString failure;
    /// Its answer to the command "settings": which engine, model, dictionaries and languages.
    QString description;
};

/// One thing that the main job needs, whether it is there, and what to do where it is not.
struct Finding {
    enum class State {
        Good,
        /// The main job works, but not everywhere or not with everything.
        Limited,
        /// The main job does not work.
        Broken,
    };
    /// For scripts; does not change between versions.
    QString id;
    QString title;
    State state = State::Good;
    QString detail;
    /// Empty where there is nothing to do.
    QString remedy;
};

/// Judges whether Quillet can do its job on this system. Plain functions of the facts: any thread.
/// No finding holds a text of the user.
class Doctor
{
public:
    static QList<Finding> judge(const platform::SystemFacts &facts, const BackendFacts &backend);
    /// Lines for a person.
    static QString toText(const QList<Finding> &findings);
    /// An object with "works" and "findings".
    static QByteArray toJson(const QList<Finding> &findings);
    /// 0 when the main job will work, else 1.
    static int exitStatus(const QList<Finding> &findings);

private:
    static Finding session(const platform::SystemFacts &facts);
    static Finding windowManager(const platform::SystemFacts &facts);
    static Finding tray(const platform::SystemFacts &facts);
    static Finding accessibility(const platform::SystemFacts &facts);
    static Finding consent(const platform::SystemFacts &facts);
    static QList<Finding> programs(const platform::SystemFacts &facts);
    static Finding typing(const platform::SystemFacts &facts);
    static Finding backendAnswer(const BackendFacts &backend);
};
