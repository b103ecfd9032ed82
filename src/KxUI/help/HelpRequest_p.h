#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/** \file
    What the help server decides about a request before it touches a file or a socket, as functions
    over bytes. A request is what a client has sent, up to its first zero byte and no further than
    the blank line that ends the headers. */

namespace Kestrel::UI::Help {

enum class Method { Head, Get, Post, Unknown };

/** By the first four bytes: "HEAD", "GET " (with the blank), "POST". */
Method methodOf(std::string_view request);

/** How much of a request has come. */
enum class Progress {
    Open,    ///< It may be all, or go on: only the silence of the client tells.
    Heading, ///< The request line names an HTTP version, so headers go on until a blank line.
    Whole    ///< The blank line has come: nothing that follows changes what is asked.
};

/** How much has come of what a client sent so far. What begins with no method stays open. However
    the bytes are cut into reads, a prefix of a request is never taken for more than it is. */
Progress progressOf(std::string_view request);

/** The request up to its blank line and with it, or all where there is none. */
std::string_view headOf(std::string_view request);

/** True when the last word of the request line is an HTTP version, as in all that browsers send. */
bool namesHttpVersion(std::string_view request);

/** What a HEAD or GET asks for. */
struct PageRequest {
    std::string path;     ///< Without the leading slash and the query, never percent-decoded.
    std::string node;     ///< The path up to its last dot, or the whole path.
    std::string fileType; ///< The path after its last dot, or nothing.
    std::string referer;  ///< As sent, a trailing carriage return included.
    std::string query;    ///< What follows the first question mark of the path.
};

/** Nothing when the request has no slash or no blank after it. */
std::optional<PageRequest> parseRequestGET(std::string_view request);

/** What a POST asks the host application to do. */
struct CommandRequest {
    std::string command;  ///< From the first slash to the next blank.
    std::string argument; ///< From there to the next carriage return, or to the end.
};

/** Nothing when the request has no slash or no blank after it. */
std::optional<CommandRequest> parseRequestPOST(std::string_view request);

/** The name to look for below each search path entry, written with `separator`, or nothing where
    such a name could leave the entry: a ".." component and, where the separator is a back-slash,
    a back-slash or a colon in the request. */
std::optional<std::string> fileNameOf(const PageRequest& page, char separator);

/** True for localhost, 127.x.x.x and [::1], each with or without a port. */
bool namesLoopback(std::string_view authority);

/** True when a browser sent the request on behalf of a page that has no business here: a Host that
    does not name the loopback (a name that was rebound to this machine), or a POST whose Origin or
    Sec-Fetch-Site says that it comes from elsewhere than the server on `port`. A request without
    these headers comes from a program, not from a foreign page, and is not foreign. */
bool isForeign(std::string_view request, std::uint16_t port);

/** The content type of a file extension, compared exactly; "text/html" for the unknown, images
    included: browsers look at the bytes. */
std::string_view getMimeType(std::string_view fileType);

/** True for the extensions that are sent with their length: "png", "jpg", "gif". */
bool isImage(std::string_view fileType);

/** `text` with & < > " as entities. */
std::string escapeHtml(std::string_view text);

/** The whole not-found response; `message` is escaped and may be empty. */
std::string notFoundResponse(std::string_view message);

/** Appends "/" to a non-empty string that does not end in one. */
std::string ensureTrailingSlash(std::string path);

} // namespace Kestrel::UI::Help
