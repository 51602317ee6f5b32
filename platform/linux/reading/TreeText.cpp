// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/TreeText.h"

#include "platform/linux/reading/CodePoints.h"
#include "platform/linux/reading/ElementFacts.h"
#include "platform/linux/reading/FocusSearch.h"
#include "platform/linux/reading/RichText.h"
#include "platform/linux/reading/WalkQuestions.h"

#include <QElapsedTimer>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <deque>
#include <vector>

namespace platform::linux_
{

using atspi::Role;
using atspi::State;

namespace
{

/// How many elements of a kind one question looks for.
constexpr int atATime = 1000;
constexpr qsizetype maxText = 64 * 1024 * 1024; // UTF-16 units
/// A reading that has got no answer for so long ends with what it has.
constexpr std::chrono::milliseconds patience{4000};

const QList<Role> textRoles{Role::Static, Role::Label, Role::Text};
const QList<Role> inputRoles{Role::Entry, Role::PasswordText};

struct TextWalk : WalkQuestions<TextWalk> {
    struct Node {
        QByteArray path;
        ElementFacts facts;
        QString value;
        std::vector<size_t> children;
    };

    std::function<void(const QString &)> completion;
    std::deque<Node> nodes;
    std::deque<size_t> queue;
    QSet<QByteArray> seen;
    qsizetype textSize = 0;
    /// What the application found in its own tree; the rest then only has children.
    bool searched = false;
    QSet<QByteArray> inputs;
    QSet<QByteArray> texts;
    int searches = 0;
    QElapsedTimer sinceAnswer;

    QByteArray focused;

    void start(const QByteArray &path)
    {
        add(path);
        sinceAnswer.start();
        watch();
        // The element itself decides first: mostly it is a document without a text of its own.
        searches = 3;
        search(path, {.states = atspi::bit(State::Editable), .count = atATime}, &TextWalk::inputs);
        search(path, {.roles = inputRoles, .count = atATime}, &TextWalk::inputs);
        search(path, {.roles = textRoles, .count = atATime}, &TextWalk::texts);
    }

    void search(const QByteArray &path, const MatchRule &rule, QSet<QByteArray> TextWalk::*into)
    {
        ++outstanding;
        const bool sent =
            getMatches(*application, path, rule,
                       [self = shared_from_this(), path, rule, into](DBusMessage &reply) {
                           --self->outstanding;
                           const auto found = reply.readObjects();
                           self->note(path, rule, found, into);
                           --self->searches;
                           self->proceed();
                       });
        if (!sent) {
            --outstanding;
            --searches;
        }
    }

    void note(const QByteArray &path, MatchRule rule, const std::optional<QList<ObjectRef>> &found,
              QSet<QByteArray> TextWalk::*into)
    {
        searched = found.has_value();
        if (!found || found->isEmpty())
            return;
        QSet<QByteArray> &set = this->*into;
        const qsizetype before = set.size();
        for (const ObjectRef &ref : *found)
            set.insert(ref.path);
        // Behind the end of the tree it starts again at the beginning, or finds what is not below.
        if (found->size() < rule.count || set.size() == before || size_t(set.size()) >= maxElements)
            return;
        rule.after = found->last().path;
        ++searches;
        search(path, rule, into);
    }

    /// Ends the reading when the application ends or stops answering.
    void watch()
    {
        QTimer::singleShot(patience / 4, [weak = weak_from_this()] {
            const auto self = weak.lock();
            if (!self || !self->completion)
                return;
            if (!self->application ||
                std::chrono::milliseconds(self->sinceAnswer.elapsed()) > patience)
                self->finish();
            else
                self->watch();
        });
    }

    ~TextWalk() { finish(); }

    void finish()
    {
        if (!completion)
            return;
        // From the event loop: the receiver may ask the application something else.
        QTimer::singleShot(
            0, [done = std::exchange(completion, nullptr), text = text()] { done(text); });
        queue.clear();
    }

    size_t add(const QByteArray &path)
    {
        seen.insert(path);
        nodes.push_back({path, {}, {}, {}});
        queue.push_back(nodes.size() - 1);
        return nodes.size() - 1;
    }

    void proceed()
    {
        sinceAnswer.restart();
        if (searches > 0 || !completion)
            return;
        while (!queue.empty() && outstanding < maxInFlight) {
            const size_t next = queue.front();
            queue.pop_front();
            visit(next);
        }
        if (outstanding == 0 && queue.empty())
            finish();
    }

    void visit(size_t index)
    {
        const QByteArray &path = nodes[index].path;
        const bool known = searched && index > 0;
        if (!known || inputs.contains(path))
            askFacts(index);
        else if (texts.contains(path))
            askText(index);
        else
            askChildren(index);
    }

    void askFacts(size_t index)
    {
        const QByteArray path = nodes[index].path;
        const auto self = shared_from_this();
        ask(path, atspi::accessibleInterface, "GetRole", [self, index](DBusMessage &reply) {
            self->nodes[index].facts.role = reply.readUInt32().value_or(0);
        });
        ask(path, atspi::accessibleInterface, "GetState", [self, index](DBusMessage &reply) {
            self->nodes[index].facts.setStates(reply.readUInt32s().value_or(QList<quint32>()));
        });
        ask(path, atspi::accessibleInterface, "GetAttributes", [self, index](DBusMessage &reply) {
            self->nodes[index].facts.setAttributes(
                reply.readDictionary().value_or(QList<std::pair<QByteArray, QByteArray>>()));
        });
        ask(path, atspi::accessibleInterface, "GetInterfaces", [self, index](DBusMessage &reply) {
            Node &node = self->nodes[index];
            node.facts.setInterfaces(reply.readStrings().value_or(QList<QByteArray>()));
            if (self->isLeftOut(index))
                return;
            if (!hasTextValue(node.facts))
                self->askChildren(index);
            else if (isEditable(node.facts))
                self->askRichText(index);
            else
                self->askText(index);
        });
    }

    bool isLeftOut(size_t index) const
    {
        const Node &node = nodes[index];
        if (isPassword(node.facts))
            return true;
        // All that lies in an editable document is editable, and part of it.
        return index > 0 && !isEditable(nodes.front().facts) && isInput(node.facts) &&
               node.path != focused;
    }

    void askText(size_t index)
    {
        ask(
            nodes[index].path, atspi::textInterface, "GetText",
            [self = shared_from_this(), index](DBusMessage &reply) {
                const QString text = reply.readString().value_or(QString());
                if (text.contains(QChar::ObjectReplacementCharacter))
                    self->askRichText(index);
                else
                    self->take(index, text);
            },
            "ii", 0, -1);
    }

    void askRichText(size_t index)
    {
        ++outstanding;
        readRichText(*application, nodes[index].path,
                     [self = shared_from_this(), index](const std::optional<QString> &text) {
                         --self->outstanding;
                         if (self->application)
                             self->take(index, text.value_or(QString()));
                         self->proceed();
                     });
    }

    void take(size_t index, const QString &text)
    {
        if (text.isEmpty()) {
            askChildren(index);
            return;
        }
        textSize += text.size();
        if (textSize <= maxText)
            nodes[index].value = withLineFeeds(text);
    }

    void askChildren(size_t index)
    {
        ask(nodes[index].path, atspi::accessibleInterface, "GetChildren",
            [self = shared_from_this(), index](DBusMessage &reply) {
                const auto children = reply.readObjects().value_or(QList<ObjectRef>());
                if (children.size() > maxChildren)
                    return;
                for (const ObjectRef &child : children) {
                    // A child that is met again would be read without end.
                    if (child.isNull() || child.busName != self->application->busName() ||
                        self->seen.contains(child.path) || self->nodes.size() >= maxElements)
                        continue;
                    const size_t added = self->add(child.path);
                    self->nodes[index].children.push_back(added);
                }
            });
    }

    QString text() const
    {
        // Every join is with the same separator, so what remains is the values in order, and an
        // empty text for each element that has neither a value nor children.
        QString whole;
        bool first = true;
        std::vector<size_t> stack;
        if (!nodes.empty())
            stack.push_back(0);
        while (!stack.empty()) {
            const Node &node = nodes[stack.back()];
            stack.pop_back();
            if (node.value.isEmpty() && !node.children.empty()) {
                stack.insert(stack.end(), node.children.rbegin(), node.children.rend());
                continue;
            }
            if (!first)
                whole += QLatin1Char('\n');
            first = false;
            whole += node.value;
        }
        return whole;
    }
};

} // namespace

void readTreeText(AtspiApplication &application, const QByteArray &path, const QByteArray &focused,
                  std::function<void(const QString &)> completion)
{
    const auto walk = std::make_shared<TextWalk>();
    walk->application = &application;
    walk->focused = focused;
    walk->completion = std::move(completion);
    walk->start(path);
}

} // namespace platform::linux_
