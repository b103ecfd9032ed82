#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

/** \file
    What the help server needs of the operating system beyond Qt. */

namespace Kestrel::UI::Help {

/** A file to be served: a regular file, open for reading, that can never block the event loop.
    Folders, FIFOs and devices count as missing; symbolic links are followed. */
class RegularFile {
public:
    enum class State {
        Missing,    ///< No regular file has this path.
        Unreadable, ///< It exists but cannot be opened.
        Open
    };

    /** No file; `Missing`. */
    RegularFile() = default;
    RegularFile(RegularFile&& other) noexcept;
    RegularFile& operator=(RegularFile&& other) noexcept;
    ~RegularFile();

    /** Looks at `path` (the platform's separator; on Windows UTF-8, elsewhere bytes) and opens it
        if it is a regular file. */
    static RegularFile open(std::string path);

    /** As given to open(). */
    const std::string& path() const { return m_path; }

    State state() const { return m_state; }

    /** Bytes at the time of opening. */
    std::uint64_t size() const { return m_size; }

    /** Reads the next bytes into `to`; returns how many, fewer than asked for only at the end of
        the file or on an error. */
    std::size_t read(char* to, std::size_t bytes);

private:
    explicit RegularFile(std::string path)
        : m_path(std::move(path)) {}

    std::string m_path;
    State m_state = State::Missing;
    int m_descriptor = -1;
    std::uint64_t m_size = 0;
};

/** Lets `backlog` connections wait in the queue of a listening socket (the system may hold less).
    Where the system knows how, only those that have said something, or nothing for `silence`
    seconds: who is silent then costs the process nothing. */
void prepareListening(std::intptr_t listeningSocket, int backlog, int silence);

/** To be called once for an accepted socket, before the calls below. */
void prepareConnection(std::intptr_t socket);

/** Takes at most `bytes` of what has arrived, without waiting: how many, 0 when the peer has ended
    or the connection is broken, -1 when nothing is there yet. */
std::ptrdiff_t receive(std::intptr_t socket, char* to, std::size_t bytes);

/** Hands bytes to the system, without waiting: how many it took, perhaps 0; -1 when the connection
    is broken. */
std::ptrdiff_t send(std::intptr_t socket, const char* from, std::size_t bytes);

/** Tells the peer that nothing more will be sent, while what it sends can still be read. */
void endSending(std::intptr_t socket);

/** Closes a socket; what was handed to the system still goes out. */
void closeSocket(std::intptr_t socket);

} // namespace Kestrel::UI::Help
