// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#pragma once

#include "platform/linux/atspi/AtspiApplication.h"

#include <QElapsedTimer>
#include <QHash>

#include <memory>
#include <optional>

namespace platform::linux_
{

/// Which documents hold editable text. A large one is searched while the program goes on; an answer
/// is believed for a while, longer while it stays the same. Main thread only.
class EditableAnswers
{
public:
    /// Nothing while the first search of the document is under way; waits a few milliseconds for
    /// it.
    std::optional<bool> find(AtspiApplication &application, const ObjectRef &document);

    /// Something has changed in the application: its documents are searched again.
    void expire(const QByteArray &busName);
    /// The application has left.
    void remove(const QByteArray &busName);

private:
    struct Answer {
        std::optional<bool> contains;
        bool isSearching = false;
        /// How long the answer is believed, in milliseconds.
        int lifetime = 0;
        QElapsedTimer since;
    };
    using Answers = QHash<ObjectRef, Answer>;

    void search(AtspiApplication &application, const ObjectRef &document);

    /// Shared, because an application may still be looking when this object is gone.
    const std::shared_ptr<Answers> m_answers = std::make_shared<Answers>();
};

} // namespace platform::linux_
