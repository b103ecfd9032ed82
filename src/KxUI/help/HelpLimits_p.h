#pragma once

#include <chrono>
#include <cstddef>

namespace Kestrel::UI::Help {

/** How much of this process the clients of one server may hold. */
struct Limits {
    std::size_t connections = 64;         ///< At a time; accepting pauses beyond.
    std::size_t requestBytes = 64 * 1024; ///< In the whole life of a connection.
    int backlog = 4096;                   ///< Connections that may wait to be accepted.

    /** After it a client that has said nothing at all is accepted all the same, where the system
        knows how to hold it back; takes effect when the server begins to listen. */
    std::chrono::seconds heldBack = std::chrono::seconds(30);

    /** What ends a request that no blank line ends, as "POST /go 7". */
    std::chrono::milliseconds silence = std::chrono::milliseconds(100);

    /** For a connection that asks for nothing, or that does not take what it is sent. */
    std::chrono::milliseconds idle = std::chrono::seconds(30);

    /** For a connection that asks for nothing while others may be waiting for its place: browsers
        open connections in advance, and open them anew when they need one. */
    std::chrono::milliseconds idleWhenFull = std::chrono::milliseconds(200);

    /** For a client that goes on sending after it was answered. */
    std::chrono::milliseconds linger = std::chrono::seconds(2);

    /** Between two looks at the connections, and before accepting again after it failed. */
    std::chrono::milliseconds sweep = std::chrono::milliseconds(100);
};

} // namespace Kestrel::UI::Help
