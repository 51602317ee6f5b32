// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/ParagraphFlow.h"

#include <QPointer>

#include <memory>
#include <utility>

namespace platform::linux_
{

namespace
{

/// Each takes a round trip, and all of them are read before the user sees an answer.
constexpr int maxParagraphs = 80;

/// AtspiRelationType
constexpr quint32 flowsTo = 10;
constexpr quint32 flowsFrom = 11;

/// The target of the relation of that kind in an answer to GetRelationSet; empty for none.
QByteArray relationTarget(DBusMessage &reply, quint32 kind)
{
    QByteArray target;
    if (!reply.enterArray("(ua(so))"))
        return target;
    while (reply.enterStruct("ua(so)")) {
        const auto found = reply.readUInt32();
        const auto targets = reply.readObjects();
        if (found == kind && targets && targets->size() == 1)
            target = targets->first().path;
        reply.exit();
    }
    return target;
}

/// A search under way: the neighbours in the same parent, since a text box knows only paragraphs
/// that were asked for; then to the first paragraph, then to the last. Lives as long as an answer
/// is outstanding.
struct FlowSearch : std::enable_shared_from_this<FlowSearch> {
    QPointer<AtspiApplication> application;
    std::function<void(const ParagraphFlow &)> completion;
    QByteArray start;
    QByteArray parent;
    QList<QByteArray> paths;

    ~FlowSearch() { finish({start}); }

    void finish(const QList<QByteArray> &found)
    {
        if (const auto done = std::exchange(completion, nullptr))
            done({found, parent});
    }

    void begin()
    {
        application->call(
            start, atspi::propertiesInterface, "Get",
            [self = shared_from_this()](DBusMessage &reply) {
                const auto found = reply.enterVariant("(so)") ? reply.readObject() : std::nullopt;
                const bool isGone = !found || found->isNull();
                if (!isGone)
                    self->parent = found->path;
                if (self->parent.isEmpty())
                    self->finish({self->start});
                else
                    self->countChildren(isGone);
            },
            "ss", atspi::accessibleInterface, "Parent");
    }

    void countChildren(bool isStartGone)
    {
        if (!application)
            return;
        application->call(
            parent, atspi::propertiesInterface, "Get",
            [self = shared_from_this(), isStartGone](DBusMessage &reply) {
                const auto count = reply.enterVariant("i") ? reply.readInt32() : std::nullopt;
                // Asking a spreadsheet for all of its cells would stop it.
                if (count && *count <= maxParagraphs && (*count > 1 || isStartGone))
                    self->askForChildren(isStartGone);
                else
                    self->walk();
            },
            "ss", atspi::accessibleInterface, "ChildCount");
    }

    void askForChildren(bool isStartGone)
    {
        if (!application)
            return;
        application->call(parent, atspi::accessibleInterface, "GetChildren",
                          [self = shared_from_this(), isStartGone](DBusMessage &reply) {
                              const auto children = reply.readObjects();
                              if (isStartGone && children && !children->isEmpty())
                                  self->start = children->first().path;
                              self->walk();
                          });
    }

    void walk()
    {
        paths = {start};
        step(flowsFrom);
    }

    void step(quint32 direction)
    {
        if (!application)
            return;
        const QByteArray &from = direction == flowsFrom ? paths.first() : paths.last();
        application->call(from, atspi::accessibleInterface, "GetRelationSet",
                          [self = shared_from_this(), direction](DBusMessage &reply) {
                              self->onAnswer(direction, relationTarget(reply, direction));
                          });
    }

    void onAnswer(quint32 direction, const QByteArray &next)
    {
        if (!next.isEmpty() && (paths.contains(next) || paths.size() == maxParagraphs)) {
            finish({start});
        } else if (!next.isEmpty()) {
            direction == flowsFrom ? paths.prepend(next) : paths.append(next);
            step(direction);
        } else if (direction == flowsFrom) {
            step(flowsTo);
        } else {
            finish(paths);
        }
    }
};

} // namespace

bool isParagraphOfDocument(const ElementFacts &facts)
{
    return facts.is(atspi::Role::Paragraph) && !isInWebPage(facts) && facts.toolkit != "Gecko" &&
           facts.toolkit != "Chromium" && facts.toolkit != "WebKitGtk";
}

void findFlow(AtspiApplication &application, const QByteArray &path, const QByteArray &parent,
              std::function<void(const ParagraphFlow &)> completion)
{
    const auto search = std::make_shared<FlowSearch>();
    search->application = &application;
    search->completion = std::move(completion);
    search->start = path;
    search->parent = parent;
    search->begin();
}

} // namespace platform::linux_
