// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/sway/SwayTree.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace platform::linux_
{

namespace
{

/// Containers in containers; a layout of the user's is far shallower.
constexpr int maxDepth = 100;

QRect rectangle(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    return QRect(object[u"x"].toInt(), object[u"y"].toInt(), object[u"width"].toInt(),
                 object[u"height"].toInt());
}

void collect(const QJsonObject &node, int depth, SwayTree &tree)
{
    const std::int32_t pid = node[u"pid"].toInt();
    if (pid > 0) {
        SwayTree::Window window;
        window.pid = pid;
        window.title = node[u"name"].toString();
        // A window of the X11 server says its class instead, and its program knows where it is.
        const bool isX11 = node[u"window"].isDouble();
        window.applicationId =
            isX11 ? node[u"window_properties"][u"class"].toString() : node[u"app_id"].toString();
        // "window_rect" lies in "rect": what the borders leave of it.
        const QRect inner = rectangle(node[u"window_rect"]);
        const QRect contents = inner.translated(rectangle(node[u"rect"]).topLeft());
        window.place = {contents, contents, !isX11, true};
        const auto id = std::uint32_t(node[u"id"].toInteger());
        tree.windows.insert(id, window);
        if (node[u"focused"].toBool())
            tree.focused = id;
    }
    if (depth >= maxDepth)
        return;
    for (const QStringView children : {u"nodes", u"floating_nodes"}) {
        const QJsonArray nodes = node[children].toArray();
        for (const auto child : nodes)
            collect(child.toObject(), depth + 1, tree);
    }
}

} // namespace

SwayTree SwayTree::read(const QByteArray &json)
{
    SwayTree tree;
    collect(QJsonDocument::fromJson(json).object(), 0, tree);
    return tree;
}

} // namespace platform::linux_
