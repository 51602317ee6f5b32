// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/FocusSearch.h"

#include <QPointer>
#include <QSet>

#include <memory>

namespace platform::linux_
{

using atspi::State;

namespace
{

constexpr int maxElements = 4000;
constexpr int maxInFlight = 48;
/// Lists that are longer than any user interface's are data: spreadsheets claim billions.
constexpr int maxChildren = 1000;

enum MatchType : std::int32_t { All = 1, Any = 2 };
constexpr std::uint32_t canonicalOrder = 1;
/// What is searched behind an element: all that comes after it in the tree.
constexpr std::uint32_t inOrder = 2;

/// Qt's widgets say that they have the focus when they pass it on to another one, a text that they
/// contain, say; and the current tab says so whenever its window is active.
bool isDoubtful(const ElementFacts &facts, const AtspiApplication &application)
{
    return facts.is(atspi::Role::PageTab) ||
           (application.toolkit() == "Qt" && !facts.has(State::Editable));
}

struct Search : std::enable_shared_from_this<Search> {
    struct Window {
        ObjectRef ref;
        ElementFacts facts;
    };

    QPointer<AtspiApplication> application;
    std::function<void(const std::optional<ObjectRef> &)> completion;
    QList<Window> windows;
    QSet<QByteArray> seen;
    QList<QByteArray> queue;
    /// Says that it is focused, but may have passed the focus on.
    std::optional<ObjectRef> doubtful;
    int outstanding = 0;

    ~Search() { finish(doubtful); }

    void finish(const std::optional<ObjectRef> &found)
    {
        if (const auto done = std::exchange(completion, nullptr))
            done(found);
    }

    ObjectRef ref(const QByteArray &path) const { return {application->busName(), path}; }

    void start()
    {
        application->call(atspi::rootPath, atspi::accessibleInterface, "GetChildren",
                          [self = shared_from_this()](DBusMessage &reply) {
                              const auto children = reply.readObjects();
                              if (children && children->size() <= maxChildren)
                                  self->askWindows(*children);
                          });
    }

    void askWindows(const QList<ObjectRef> &children)
    {
        for (const ObjectRef &child : children) {
            if (!child.isNull() && child.busName == application->busName())
                windows.append({child, {}});
        }
        for (qsizetype i = 0; i < windows.size(); ++i) {
            const QByteArray path = windows.at(i).ref.path;
            outstanding += 2;
            application->call(path, atspi::accessibleInterface, "GetState",
                              [self = shared_from_this(), i](DBusMessage &reply) {
                                  self->windows[i].facts.setStates(
                                      reply.readUInt32s().value_or(QList<quint32>()));
                                  self->windowAnswered();
                              });
            application->call(path, atspi::accessibleInterface, "GetInterfaces",
                              [self = shared_from_this(), i](DBusMessage &reply) {
                                  self->windows[i].facts.setInterfaces(
                                      reply.readStrings().value_or(QList<QByteArray>()));
                                  self->windowAnswered();
                              });
        }
    }

    void windowAnswered()
    {
        if (--outstanding > 0)
            return;
        QList<Window> active;
        for (const Window &window : std::as_const(windows)) {
            if (window.facts.has(State::Active))
                active.append(window);
        }
        // The window system says that the application is active, so one of them is.
        if (active.isEmpty())
            active = windows;
        for (const Window &window : std::as_const(active)) {
            if (!window.facts.has(ElementFacts::Collection)) {
                queue.append(window.ref.path);
                continue;
            }
            ++outstanding;
            getMatches(*application, window.ref.path,
                       {.states = atspi::bit(State::Focused), .count = 8},
                       [self = shared_from_this(), path = window.ref.path](DBusMessage &reply) {
                           --self->outstanding;
                           const auto found = reply.readObjects();
                           // The innermost: a document may say so besides its input.
                           if (found && !found->isEmpty())
                               self->finish(self->ref(found->last().path));
                           else if (!found)
                               self->queue.append(path);
                           self->walk();
                       });
        }
        walk();
    }

    void walk()
    {
        while (completion && !queue.isEmpty() && outstanding < maxInFlight) {
            const QByteArray path = queue.takeFirst();
            if (seen.contains(path) || seen.size() >= maxElements)
                continue;
            seen.insert(path);
            struct Visit {
                ElementFacts facts;
            };
            const auto visit = std::make_shared<Visit>();
            outstanding += 3;
            application->call(path, atspi::accessibleInterface, "GetState",
                              [self = shared_from_this(), visit](DBusMessage &reply) {
                                  --self->outstanding;
                                  visit->facts.setStates(
                                      reply.readUInt32s().value_or(QList<quint32>()));
                              });
            application->call(path, atspi::accessibleInterface, "GetRole",
                              [self = shared_from_this(), visit](DBusMessage &reply) {
                                  --self->outstanding;
                                  visit->facts.role = reply.readUInt32().value_or(0);
                              });
            application->call(
                path, atspi::propertiesInterface, "Get",
                [self = shared_from_this(), visit, path](DBusMessage &reply) {
                    --self->outstanding;
                    if (visit->facts.has(State::Focused) &&
                        !mayClaimWithoutFocus(visit->facts.role, *self->application)) {
                        if (isDoubtful(visit->facts, *self->application))
                            self->doubtful = self->ref(path);
                        else
                            self->finish(self->ref(path));
                    }
                    const int count = reply.enterVariant("i") ? reply.readInt32().value_or(0) : 0;
                    if (self->completion && count > 0 && count <= maxChildren)
                        self->askChildren(path);
                    self->walk();
                },
                "ss", atspi::accessibleInterface, "ChildCount");
        }
    }

    void askChildren(const QByteArray &path)
    {
        ++outstanding;
        application->call(path, atspi::accessibleInterface, "GetChildren",
                          [self = shared_from_this()](DBusMessage &reply) {
                              --self->outstanding;
                              const auto children = reply.readObjects();
                              for (const ObjectRef &child : children.value_or(QList<ObjectRef>())) {
                                  if (!child.isNull() &&
                                      child.busName == self->application->busName())
                                      self->queue.append(child.path);
                              }
                              self->walk();
                          });
    }
};

} // namespace

bool getMatches(AtspiApplication &application, const QByteArray &path, const MatchRule &rule,
                CallChannel::Handler handler)
{
    const bool continued = !rule.after.isEmpty();
    sd_bus_message *message = application.newCall(path, atspi::collectionInterface,
                                                  continued ? "GetMatchesFrom" : "GetMatches");
    if (!message)
        return false;
    if (continued)
        sd_bus_message_append(message, "o", rule.after.constData());
    std::uint32_t roles[4] = {};
    for (const atspi::Role role : rule.roles)
        roles[std::uint32_t(role) / 32] |= 1U << (std::uint32_t(role) % 32);
    sd_bus_message_open_container(message, 'r', "aiia{ss}iaiiasib");
    sd_bus_message_append(message, "ai", 2, std::int32_t(rule.states & 0xffffffff),
                          std::int32_t(rule.states >> 32));
    sd_bus_message_append(message, "i", All);
    sd_bus_message_append(message, "a{ss}", 0);
    sd_bus_message_append(message, "i", All);
    sd_bus_message_append(message, "ai", 4, roles[0], roles[1], roles[2], roles[3]);
    sd_bus_message_append(message, "i", rule.roles.isEmpty() ? All : Any);
    sd_bus_message_append(message, "as", 0);
    sd_bus_message_append(message, "i", All);
    sd_bus_message_append(message, "b", 0);
    sd_bus_message_close_container(message);
    sd_bus_message_append(message, "u", canonicalOrder);
    if (continued)
        sd_bus_message_append(message, "u", inOrder);
    sd_bus_message_append(message, "ib", rule.count, 1);
    return application.send(message, std::move(handler));
}

bool mayClaimWithoutFocus(std::uint32_t role, const AtspiApplication &application)
{
    switch (atspi::Role(role)) {
    case atspi::Role::ListItem:
    case atspi::Role::TableCell:
    case atspi::Role::TreeItem:
        return application.toolkit() == "Qt";
    default:
        return false;
    }
}

void findFocused(AtspiApplication &application,
                 std::function<void(const std::optional<ObjectRef> &)> completion)
{
    const auto search = std::make_shared<Search>();
    search->application = &application;
    search->completion = std::move(completion);
    search->start();
}

} // namespace platform::linux_
