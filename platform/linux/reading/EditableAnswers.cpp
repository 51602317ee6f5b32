// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/EditableAnswers.h"

#include "platform/linux/reading/TreeWalk.h"

#include <algorithm>

namespace platform::linux_
{

namespace
{

constexpr int maxAnswers = 512;
/// How long an answer is believed without an event that says otherwise, and how long the first
/// search may hold up the user interface.
constexpr int minLifetime = 1000;  // milliseconds
constexpr int maxLifetime = 4000;  // milliseconds
constexpr int searchPatience = 25; // milliseconds

} // namespace

std::optional<bool> EditableAnswers::find(AtspiApplication &application, const ObjectRef &document)
{
    if (m_answers->size() > maxAnswers)
        m_answers->clear();
    const Answer known = m_answers->value(document);
    const bool isFresh = known.contains && known.since.elapsed() < known.lifetime;
    if (!isFresh && !known.isSearching && application.isAnswering()) {
        search(application, document);
        application.waitFor([&] { return !m_answers->value(document).isSearching; },
                            QDeadlineTimer(searchPatience));
    }
    // While it is being looked for again, the last answer is the best there is.
    return m_answers->value(document).contains;
}

void EditableAnswers::search(AtspiApplication &application, const ObjectRef &document)
{
    (*m_answers)[document].isSearching = true;
    const auto note = [answers = std::weak_ptr(m_answers), document](std::optional<bool> found) {
        const auto known = answers.lock();
        if (!known || !known->contains(document))
            return;
        Answer &answer = (*known)[document];
        answer.isSearching = false;
        answer.since.start();
        if (!found)
            return;
        const bool isSame = answer.contains == found && answer.lifetime > 0;
        answer.lifetime = isSame ? std::min(answer.lifetime * 2, maxLifetime) : minLifetime;
        answer.contains = found;
    };
    findEditable(application, document.path, note);
}

void EditableAnswers::expire(const QByteArray &busName)
{
    for (auto it = m_answers->begin(); it != m_answers->end(); ++it) {
        if (it.key().busName == busName)
            it->lifetime = 0;
    }
}

void EditableAnswers::remove(const QByteArray &busName)
{
    m_answers->removeIf([&](auto it) { return it.key().busName == busName; });
}

} // namespace platform::linux_
