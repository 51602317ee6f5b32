// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/engine/PendingWork.h"
#include "backend/http/HttpMessage.h"

#include <functional>
#include <memory>

/// Takes the answer to one request.
using HttpRespond = std::function<void(HttpResponse)>;

/// Answers by calling `respond` once, at once or later from the event loop.
/// Work that is still going on is returned; otherwise null.
using HttpHandler = std::function<std::unique_ptr<PendingWork>(const HttpRequest &, HttpRespond)>;
