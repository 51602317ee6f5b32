// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

#include "platform/linux/wayland/sway/SwayIpc.h"
#include "platform/linux/wayland/sway/SwayTree.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

using namespace platform::linux_;
using Type = SwayIpc::Type;

namespace
{

/// A compositor's socket: answers each request with what the script sends.
class Server
{
public:
    using Script = std::function<QByteArray(const SwayIpc::Message &)>;

    explicit Server(Script script)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path().constData(), sizeof(address.sun_path) - 1);
        m_socket = socket(AF_UNIX, SOCK_STREAM, 0);
        EXPECT_EQ(bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof(address)), 0);
        EXPECT_EQ(listen(m_socket, 1), 0);
        m_thread = std::thread([this, script = std::move(script)] { serve(script); });
    }
    ~Server() { m_thread.join(); }

    QByteArray path() const { return m_folder.filePath(QStringLiteral("ipc")).toLocal8Bit(); }

private:
    void serve(const Script &script)
    {
        const int client = accept(m_socket, nullptr, nullptr);
        QByteArray buffer;
        char block[512];
        for (ssize_t count = 0; (count = read(client, block, sizeof(block))) > 0;) {
            buffer.append(block, count);
            bool isValid = true;
            while (const auto message = SwayIpc::takeMessage(buffer, isValid)) {
                // Byte by byte at first, as a stream may deliver it. The client may have left.
                const QByteArray answer = script(*message);
                for (qsizetype at = 0; at < answer.size(); at += at < 20 ? 1 : answer.size())
                    send(client, answer.constData() + at,
                         at < 20 ? 1 : std::size_t(answer.size() - at), MSG_NOSIGNAL);
            }
        }
        close(client);
        close(m_socket);
    }

    QTemporaryDir m_folder;
    int m_socket = -1;
    std::thread m_thread;
};

constexpr int patience = 10'000; // milliseconds

} // namespace

TEST(SwayIpc, AnswersAndEventsComeApart)
{
    Server server([](const SwayIpc::Message &asked) {
        return SwayIpc::encoded(Type::WindowEvent, "first") +
               SwayIpc::encoded(asked.type, "re: " + asked.payload) +
               SwayIpc::encoded(Type::WorkspaceEvent, "second");
    });
    SwayIpc ipc;
    ASSERT_TRUE(ipc.open(server.path()));
    EXPECT_EQ(ipc.request(Type::Subscribe, "x", patience), "re: x");
    EXPECT_EQ(ipc.request(Type::GetTree, {}, patience), "re: ");
    const auto events = ipc.takeEvents();
    ASSERT_GE(events.size(), 3);
    EXPECT_EQ(events[0].type, Type::WindowEvent);
    EXPECT_EQ(events[1].payload, "second");
    EXPECT_TRUE(ipc.isOpen());
}

TEST(SwayIpc, ACompositorThatSaysNothingOrNonsenseIsLeft)
{
    for (const QByteArray &answer : {QByteArray(), QByteArray("HTTP/1.1 400"),
                                     QByteArray("i3-ipc\xff\xff\xff\xff\4\0\0\0", 14)}) {
        Server server([answer](const SwayIpc::Message &) { return answer; });
        SwayIpc ipc;
        ASSERT_TRUE(ipc.open(server.path()));
        QElapsedTimer since;
        since.start();
        EXPECT_FALSE(ipc.request(Type::GetTree, {}, 50));
        EXPECT_LT(since.elapsed(), patience);
        EXPECT_FALSE(ipc.isOpen()) << "a late answer must not be taken for the next one";
    }
    EXPECT_FALSE(SwayIpc().open("/nowhere"));
    EXPECT_FALSE(SwayIpc().open(QByteArray(500, 'x')));
}

TEST(SwayTree, KnowsWindowsTheirPlacesAndTheFocus)
{
    const auto tree = SwayTree::read(R"({"id":1,"type":"root","nodes":[{"id":2,"type":"workspace",
      "focused":false,"nodes":[{"id":7,"pid":41,"name":"Letter","app_id":"mousepad","focused":true,
        "window":null,"rect":{"x":100,"y":80,"width":604,"height":340},
        "window_rect":{"x":2,"y":0,"width":600,"height":337},"nodes":[]}],
      "floating_nodes":[{"id":9,"pid":42,"name":"Old","app_id":null,"focused":false,"window":4194311,
        "window_properties":{"class":"Gimp"},"rect":{"x":-300,"y":0,"width":20,"height":10},
        "window_rect":{"x":0,"y":0,"width":20,"height":10},"nodes":[]}]}]})");
    ASSERT_EQ(tree.windows.size(), 2);
    EXPECT_EQ(tree.focused, 7U);
    const auto native = tree.windows.value(7);
    EXPECT_EQ(native.pid, 41);
    EXPECT_EQ(native.applicationId, QStringLiteral("mousepad"));
    EXPECT_EQ(native.place.contents, QRect(102, 80, 600, 337));
    EXPECT_TRUE(native.place.countsFromWindow && native.place.inPoints);
    const auto x11 = tree.windows.value(9);
    EXPECT_EQ(x11.applicationId, QStringLiteral("Gimp"));
    EXPECT_FALSE(x11.place.countsFromWindow) << "a program on X11 knows where it is";

    EXPECT_FALSE(SwayTree::read(R"({"id":2,"type":"workspace","focused":true,"nodes":[]})").focused)
        << "an empty workspace is no window";
    EXPECT_TRUE(SwayTree::read("{").windows.isEmpty());
    QByteArray deep;
    for (int i = 0; i < 400; ++i)
        deep += R"({"pid":1,"id":1,"nodes":[)";
    for (int i = 0; i < 400; ++i)
        deep += "]}";
    EXPECT_EQ(SwayTree::read(deep).windows.size(), 1);
}
