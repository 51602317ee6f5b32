// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "backend/offline/text/Document.h"
#include "backend/offline/text/Edit.h"

namespace offline
{

/// Looks at each edit together with the words beside it, and drops those that
/// would make a new mistake: a word written twice, two articles or possessives in
/// a row. "a alot" becomes "a lot": of a word that the text has already, the edit
/// keeps the rest.
void dropNewMistakes(const Document &document, EditList &edits);

} // namespace offline
