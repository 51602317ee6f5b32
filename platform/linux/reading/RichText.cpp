// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/reading/RichText.h"

#include "platform/linux/reading/CodePoints.h"
#include "platform/linux/reading/ParagraphFlow.h"

#include <QPointer>
#include <QSet>

#include <algorithm>
#include <memory>
#include <utility>

namespace platform::linux_
{

namespace
{

/// Beyond these a tree is broken or lies.
constexpr int maxElements = 20'000;
constexpr int maxDepth = 100;

bool countsUnits(const TextNode &node)
{
    return node.characterCount == node.text.size();
}

class Lines
{
public:
    /// `text` stands in the element's own text from `offset` on.
    void add(QStringView text, const TextNode &node, qsizetype offset)
    {
        if (!text.isEmpty())
            m_linePieces.append(
                {m_line.size(), text.size(), node.path, node.text, offset, countsUnits(node)});
        m_line += text;
    }

    void endLine()
    {
        if (m_line.isEmpty())
            return;
        if (m_line.endsWith(QLatin1Char('\n'))) {
            m_line.chop(1);
            --m_linePieces.last().length;
        }
        if (m_any)
            m_content.text += QLatin1Char('\n');
        for (TextPiece &piece : m_linePieces)
            piece.position += m_content.text.size();
        m_content.pieces += std::exchange(m_linePieces, {});
        m_content.text += m_line;
        m_any = true;
        m_line.clear();
    }

    RichTextContent take()
    {
        endLine();
        return std::move(m_content);
    }

private:
    RichTextContent m_content;
    QString m_line;
    QList<TextPiece> m_linePieces;
    bool m_any = false;
};

bool isPartOfText(const TextNode &node)
{
    return node.facts.is(atspi::Role::Static);
}

void compose(const TextNode &node, Lines &lines);

void embed(const TextNode &child, Lines &lines)
{
    if (isInline(child.facts)) {
        compose(child, lines);
        return;
    }
    lines.endLine();
    compose(child, lines);
    lines.endLine();
}

void compose(const TextNode &node, Lines &lines)
{
    if (isPassword(node.facts))
        return;
    QStringView text = node.text;
    const bool marked = !node.children.empty() && node.children.front().facts.tag == "::marker";
    if (marked && text.startsWith(node.children.front().text))
        text = text.mid(node.children.front().text.size());

    // Toolkits differ in whether a plain piece of text is an element of its own besides being part
    // of its parent's text; the embedded ones always are.
    const auto embedded =
        std::count_if(node.children.begin(), node.children.end(), [](const TextNode &child) {
            return !isPartOfText(child) && child.facts.tag != "::marker";
        });
    if (embedded != text.count(QChar::ObjectReplacementCharacter)) {
        for (const TextNode &child : node.children) {
            if (child.facts.tag != "::marker")
                embed(child, lines);
        }
        return;
    }
    auto next = node.children.begin();
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i < text.size() && text.at(i) != QChar::ObjectReplacementCharacter)
            continue;
        lines.add(text.mid(start, i - start), node, node.text.size() - text.size() + start);
        start = i + 1;
        if (i == text.size())
            break;
        while (isPartOfText(*next) || next->facts.tag == "::marker")
            ++next;
        embed(*next++, lines);
    }
}

/// A reading under way. Lives as long as answers are outstanding.
struct Reading : std::enable_shared_from_this<Reading> {
    QPointer<AtspiApplication> application;
    std::function<void(std::optional<RichTextContent>)> completion;
    TextNode root;
    QSet<QByteArray> seen;
    std::vector<TextNode> flow;
    QByteArray flowParent;
    int elements = 0;
    int outstanding = 0;
    bool isFlowRead = false;
    bool failed = false;

    ~Reading()
    {
        // The connection broke, and answers will not come.
        if (completion)
            completion(std::nullopt);
    }

    void ask(const QByteArray &path, const char *interface, const char *member,
             const std::function<void(DBusMessage &)> &handler)
    {
        send(
            [&](CallChannel::Handler wrapped) {
                return application->call(path, interface, member, std::move(wrapped));
            },
            handler);
    }

    template <typename Send>
    void send(const Send &sender, const std::function<void(DBusMessage &)> &handler)
    {
        if (failed || !application)
            return;
        ++outstanding;
        const bool sent = sender([self = shared_from_this(), handler](DBusMessage &reply) {
            if (!self->failed)
                handler(reply);
            self->answered();
        });
        if (!sent) {
            --outstanding;
            failed = true;
        }
    }

    void answered()
    {
        if (--outstanding > 0 || !completion)
            return;
        if (!failed && !isFlowRead && isParagraphOfDocument(root.facts)) {
            readFlow(root.path);
            return;
        }
        const auto done = std::exchange(completion, nullptr);
        if (failed) {
            done(std::nullopt);
            return;
        }
        RichTextContent content = isFlowRead ? flattenedFlow(flow) : flattened(root);
        content.flowParent = flowParent;
        done(std::move(content));
    }

    void readFlow(const QByteArray &path)
    {
        isFlowRead = true;
        ++outstanding;
        findFlow(*application, path, flowParent,
                 [self = shared_from_this()](const ParagraphFlow &found) {
                     self->seen.clear();
                     self->flowParent = found.parent;
                     self->flow.resize(size_t(found.paths.size()));
                     for (qsizetype i = 0; i < found.paths.size(); ++i)
                         self->read(&self->flow[size_t(i)], found.paths.at(i), 0);
                     self->answered();
                 });
    }

    void read(TextNode *node, const QByteArray &path, int depth)
    {
        if (++elements > maxElements || depth > maxDepth || seen.contains(path)) {
            failed = true;
            return;
        }
        seen.insert(path);
        node->path = path;
        node->facts.toolkit = application->toolkit();
        ask(path, atspi::accessibleInterface, "GetRole",
            [node](DBusMessage &reply) { node->facts.role = reply.readUInt32().value_or(0); });
        ask(path, atspi::accessibleInterface, "GetAttributes", [node](DBusMessage &reply) {
            node->facts.setAttributes(
                reply.readDictionary().value_or(QList<std::pair<QByteArray, QByteArray>>()));
        });
        if (depth == 0) {
            readNumber(path, "CharacterCount", &node->characterCount);
            readNumber(path, "CaretOffset", &node->caret);
        }
        send(
            [&](CallChannel::Handler wrapped) {
                return application->call(path, atspi::textInterface, "GetText", std::move(wrapped),
                                         "ii", 0, -1);
            },
            [this, node, path, depth](DBusMessage &reply) {
                const auto text = reply.readString();
                // Images and the like are embedded without a text of their own.
                failed = failed || (!text && depth == 0);
                if (isPassword(node->facts))
                    return;
                node->text = text.value_or(QString());
                if (node->facts.toolkit == "Gecko")
                    node->text = withoutPairMarks(node->text);
                const bool hasMarker = node->facts.is(atspi::Role::ListItem);
                if (hasMarker || node->text.contains(QChar::ObjectReplacementCharacter))
                    readChildren(node, path, depth);
            });
    }

    void readNumber(const QByteArray &path, const char *name, std::optional<qint32> *number)
    {
        send(
            [&](CallChannel::Handler wrapped) {
                return application->call(path, atspi::propertiesInterface, "Get",
                                         std::move(wrapped), "ss", atspi::textInterface, name);
            },
            [number](DBusMessage &reply) {
                if (reply.enterVariant("i"))
                    *number = reply.readInt32();
            });
    }

    void readChildren(TextNode *node, const QByteArray &path, int depth)
    {
        ask(path, atspi::accessibleInterface, "GetChildren",
            [this, node, depth](DBusMessage &reply) {
                const auto children = reply.readObjects().value_or(QList<ObjectRef>());
                if (children.size() > maxElements) {
                    failed = true;
                    return;
                }
                node->children.resize(size_t(children.size()));
                for (qsizetype i = 0; i < children.size(); ++i) {
                    if (!children.at(i).isNull())
                        read(&node->children[size_t(i)], children.at(i).path, depth + 1);
                }
            });
    }
};

} // namespace

RichTextContent flattened(const TextNode &node)
{
    RichTextContent content;
    // A plain input's line breaks are all the user's.
    const QByteArray &tag = node.facts.tag;
    if (node.children.empty() && (tag.isEmpty() || tag == "textarea" || tag == "input")) {
        content.text = QString(node.text).remove(QChar::ObjectReplacementCharacter);
        const bool isWhole = content.text.size() == node.text.size();
        if (holdsLastLineOpen(node.facts) && content.text.endsWith(QLatin1Char('\n')))
            content.text.chop(1);
        if (isWhole)
            content.pieces.append(
                {0, content.text.size(), node.path, node.text, 0, countsUnits(node)});
    } else {
        Lines lines;
        compose(node, lines);
        content = lines.take();
    }
    content.ownText = node.text;
    if (content.pieces.size() == 1 && content.pieces.first().path == node.path &&
        node.caret.value_or(-1) >= 0)
        content.caret =
            countsUnits(node) ? *node.caret : qsizetype(utf16Offset(node.text, *node.caret));
    return content;
}

RichTextContent flattenedFlow(const std::vector<TextNode> &paragraphs)
{
    RichTextContent content;
    content.isFlow = true;
    for (const TextNode &paragraph : paragraphs) {
        if (!content.ownText.isNull())
            content.text += u'\n';
        RichTextContent one = flattened(paragraph);
        const qsizetype start = content.text.size();
        for (TextPiece &piece : one.pieces) {
            piece.position += start;
            content.pieces.append(piece);
        }
        if (one.caret)
            content.caret = start + *one.caret;
        content.text += one.text;
        content.ownText = content.text.isNull() ? QStringLiteral("") : content.text;
    }
    return content;
}

QString flatten(const TextNode &node)
{
    return flattened(node).text;
}

void readRichContent(AtspiApplication &application, const QByteArray &path,
                     std::function<void(std::optional<RichTextContent>)> completion,
                     const QByteArray &flowParent)
{
    const auto reading = std::make_shared<Reading>();
    reading->application = &application;
    reading->completion = std::move(completion);
    reading->flowParent = flowParent;
    if (flowParent.isEmpty())
        reading->read(&reading->root, path, 0);
    else
        reading->readFlow(path);
}

void readRichText(AtspiApplication &application, const QByteArray &path,
                  std::function<void(const std::optional<QString> &)> completion)
{
    readRichContent(application, path,
                    [completion = std::move(completion)](std::optional<RichTextContent> content) {
                        completion(content ? std::optional(content->text) : std::nullopt);
                    });
}

std::optional<QString> waitForRichText(AtspiApplication &application, const QByteArray &path,
                                       QDeadlineTimer deadline)
{
    struct Result {
        bool done = false;
        std::optional<QString> text;
    };
    const auto result = std::make_shared<Result>();
    readRichText(application, path, [result](const std::optional<QString> &text) {
        result->done = true;
        result->text = text;
    });
    if (!application.waitFor([result] { return result->done; }, deadline))
        application.missedDeadline();
    return result->text;
}

} // namespace platform::linux_
