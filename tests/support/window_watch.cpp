// SPDX-FileCopyrightText: The Quillet authors
// SPDX-License-Identifier: Apache-2.0

// Asks a window's program over and over whether it still answers (_NET_WM_PING, Extended Window
// Manager Hints), until standard input ends, and prints what came of it as one line of JSON:
// {"answers": 12, "longest": 3.4}, in milliseconds. A question that is still open counts with the
// time that it has been.
//
//   window_watch WINDOW

#include "platform/linux/keyboard/InputWatch.h"
#include "platform/linux/x11/XKeyServer.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <poll.h>

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int betweenQuestions = 10; // ms
constexpr int betweenLooks = 1;      // ms

bool inputEnds(int milliseconds)
{
    pollfd input{0, POLLIN, 0};
    return poll(&input, 1, milliseconds) > 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const auto connection = platform::linux_::XKeyServer::open({});
    if (argc != 2 || !connection)
        return 2;
    const auto window = connection->pingableWindow(std::strtoul(argv[1], nullptr, 0));
    if (!window)
        return 1;
    platform::linux_::InputWatch watch(*connection);
    watch.start(window);

    double longest = 0;
    std::uint32_t question = 0;
    std::uint32_t answers = 0;
    for (bool ending = false; !ending;) {
        const auto asked = Clock::now();
        watch.expectPong(window, ++question);
        connection->ping(window, question);
        while (watch.lastPong(window) != question && !ending) {
            ending = inputEnds(betweenLooks);
            watch.poll();
        }
        longest = std::max(longest,
                           std::chrono::duration<double, std::milli>(Clock::now() - asked).count());
        answers += watch.lastPong(window) == question;
        ending = ending || inputEnds(betweenQuestions);
    }
    std::printf("{\"answers\": %u, \"longest\": %.1f}\n", answers, longest);
    return 0;
}
