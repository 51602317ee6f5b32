// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/Engine.h"
#include "backend/model/Configuration.h"

class ModelEngine;
class ServerConsent;

/// Sends each command where it belongs: the commands about Quillet itself are
/// answered here, the others by the language model when there is one that the
/// user wants, by the offline engine when there is none or when it failed. What
/// is not a rewriting is a note.
class SwitchingEngine : public Engine
{
public:
    /// All of them outlive this engine.
    SwitchingEngine(ConfigurationFile &configuration, ServerConsent &found, ModelEngine &model,
                    Engine &offline);

    std::unique_ptr<PendingWork> answer(const EngineRequest &request, Done done) override;

private:
    class Job;

    ConfigurationFile &m_configuration;
    ServerConsent &m_found;
    ModelEngine &m_model;
    Engine &m_offline;
};
