// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/TreeWalk.h"

#include "platform/linux/reading/ElementFacts.h"
#include "platform/linux/reading/FocusSearch.h"
#include "platform/linux/reading/WalkQuestions.h"

#include <QSet>

#include <deque>
#include <memory>

namespace platform::linux_
{

using atspi::State;

namespace
{

struct EditableWalk : WalkQuestions<EditableWalk> {
    std::function<void(std::optional<bool>)> completion;
    std::deque<QByteArray> queue;
    QSet<QByteArray> seen;
    bool walking = false;

    ~EditableWalk() { finish(std::nullopt); }

    void finish(std::optional<bool> found)
    {
        if (const auto done = std::exchange(completion, nullptr))
            done(found);
    }

    void start(const QByteArray &path, int count)
    {
        ++outstanding;
        const bool sent =
            getMatches(*application, path, {.states = atspi::bit(State::Editable), .count = count},
                       [self = shared_from_this(), path, count](DBusMessage &reply) {
                           --self->outstanding;
                           const auto found = reply.readObjects();
                           if (!found) {
                               self->walking = true;
                               self->queue.push_back(path);
                               self->proceed();
                           } else {
                               self->judge(path, *found, count);
                           }
                       });
        if (!sent)
            --outstanding;
    }

    /// A password is editable in the application's eyes, but no text for us.
    void judge(const QByteArray &root, const QList<ObjectRef> &found, int count)
    {
        QList<QByteArray> paths{root};
        for (const ObjectRef &ref : found)
            paths.append(ref.path);
        const auto left = std::make_shared<qsizetype>(paths.size());
        for (const QByteArray &path : std::as_const(paths)) {
            visit(path,
                  [self = shared_from_this(), root, left,
                   full = found.size() >= count && count > 0](const ElementFacts &facts, int) {
                      if (isEditable(facts))
                          self->finish(true);
                      if (--*left > 0)
                          return;
                      if (self->completion && full)
                          self->start(root, 0);
                      else
                          self->finish(false);
                  });
        }
    }

    template <typename Judge> void visit(const QByteArray &path, Judge judgeFacts)
    {
        const auto facts = std::make_shared<ElementFacts>();
        ask(path, atspi::accessibleInterface, "GetRole",
            [facts](DBusMessage &reply) { facts->role = reply.readUInt32().value_or(0); });
        ask(path, atspi::accessibleInterface, "GetState", [facts](DBusMessage &reply) {
            facts->setStates(reply.readUInt32s().value_or(QList<quint32>()));
        });
        ask(
            path, atspi::propertiesInterface, "Get",
            [facts, judgeFacts](DBusMessage &reply) {
                judgeFacts(*facts, reply.enterVariant("i") ? reply.readInt32().value_or(0) : 0);
            },
            "ss", atspi::accessibleInterface, "ChildCount");
    }

    void proceed()
    {
        while (walking && completion && !queue.empty() && outstanding < maxInFlight) {
            const QByteArray path = queue.front();
            queue.pop_front();
            if (seen.contains(path) || size_t(seen.size()) >= maxElements)
                continue;
            seen.insert(path);
            visit(path, [self = shared_from_this(), path](const ElementFacts &facts, int count) {
                if (isEditable(facts))
                    self->finish(true);
                if (self->completion && count > 0 && count <= maxChildren)
                    self->askChildren(path);
            });
        }
        if (walking && outstanding == 0 && queue.empty())
            finish(false);
    }

    void askChildren(const QByteArray &path)
    {
        ask(path, atspi::accessibleInterface, "GetChildren",
            [self = shared_from_this()](DBusMessage &reply) {
                for (const ObjectRef &child : reply.readObjects().value_or(QList<ObjectRef>())) {
                    if (!child.isNull() && child.busName == self->application->busName())
                        self->queue.push_back(child.path);
                }
            });
    }
};

} // namespace

void findEditable(AtspiApplication &application, const QByteArray &path,
                  std::function<void(std::optional<bool>)> completion)
{
    const auto walk = std::make_shared<EditableWalk>();
    walk->application = &application;
    walk->completion = std::move(completion);
    walk->start(path, 4);
}

} // namespace platform::linux_
