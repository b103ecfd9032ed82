#include <KxUI/help/HelpRequest_p.h>

#include <algorithm>

namespace Kestrel::UI::Help {
namespace {

constexpr auto npos = std::string_view::npos;

bool startsWith(std::string_view text, std::string_view prefix) {
    return text.substr(0, prefix.size()) == prefix;
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool equalsIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const auto first = text.find_first_not_of(blanks);
    return first == npos ? std::string_view()
                         : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

// Takes the text before the next `separator` off the front of `rest`.
std::string_view takeUntil(std::string_view& rest, char separator) {
    const auto end = rest.find(separator);
    const std::string_view taken = rest.substr(0, end);
    rest.remove_prefix(end == npos ? rest.size() : end + 1);
    return taken;
}

// Where the blank line ends that ends the headers.
std::size_t headEnd(std::string_view request) {
    for (auto end = request.find('\n'); end != npos;) {
        const auto start = end + 1;
        end = request.find('\n', start);
        if (end != npos && trimmed(request.substr(start, end - start)).empty())
            return end + 1;
    }
    return npos;
}

// The request target and what follows it; the target keeps its query but not its slash.
struct Target {
    std::string_view path;
    std::string_view rest;
};

std::optional<Target> targetOf(std::string_view request) {
    const auto slash = request.find('/');
    if (slash == npos)
        return {};
    const std::string_view text = request.substr(slash + 1);
    const auto blank = text.find(' ');
    if (blank == npos)
        return {};
    return Target{text.substr(0, blank), text.substr(blank + 1)};
}

std::string_view refererOf(std::string_view request) {
    while (!request.empty()) {
        const std::string_view line = takeUntil(request, '\n');
        if (startsWith(line, "Referer:"))
            return line.substr(std::min<std::size_t>(line.size(), 9));
    }
    return {};
}

bool hasParentComponent(std::string_view name) {
    while (!name.empty()) {
        if (takeUntil(name, '/') == "..")
            return true;
    }
    return false;
}

bool isLoopbackV4(std::string_view host) {
    if (std::count(host.begin(), host.end(), '.') != 3 || !startsWith(host, "127."))
        return false;
    for (int part = 0; part < 4; ++part) {
        const std::string_view number = takeUntil(host, '.');
        if (number.empty() || number.size() > 3 ||
            !std::all_of(number.begin(), number.end(), isDigit))
            return false;
        int value = 0;
        for (const char digit : number)
            value = value * 10 + (digit - '0');
        if (value > 255)
            return false;
    }
    return true;
}

// "host:port" apart; the port is empty when none is given, and so is the host of what is neither.
struct Authority {
    std::string_view host;
    std::string_view port;
};

Authority splitAuthority(std::string_view authority) {
    const auto bracket = startsWith(authority, "[") ? authority.find(']') : 0;
    const auto colon = bracket == npos ? npos : authority.find(':', bracket);
    if (colon == npos)
        return {authority, {}};
    const std::string_view port = authority.substr(colon + 1);
    if (port.size() > 5 || !std::all_of(port.begin(), port.end(), isDigit))
        return {};
    return {authority.substr(0, colon), port};
}

bool isOriginOfPort(std::string_view origin, std::uint16_t port) {
    constexpr std::string_view scheme = "http://";
    if (!equalsIgnoringCase(origin.substr(0, scheme.size()), scheme))
        return false;
    origin.remove_prefix(scheme.size());
    const std::string_view stated = splitAuthority(origin).port;
    return namesLoopback(origin) && (stated.empty() ? "80" : stated) == std::to_string(port);
}

} // namespace

Method methodOf(std::string_view request) {
    if (startsWith(request, "HEAD"))
        return Method::Head;
    if (startsWith(request, "GET "))
        return Method::Get;
    return startsWith(request, "POST") ? Method::Post : Method::Unknown;
}

Progress progressOf(std::string_view request) {
    if (methodOf(request) == Method::Unknown)
        return Progress::Open;
    if (headEnd(request) != npos)
        return Progress::Whole;
    return namesHttpVersion(request) ? Progress::Heading : Progress::Open;
}

std::string_view headOf(std::string_view request) {
    return request.substr(0, headEnd(request));
}

bool namesHttpVersion(std::string_view request) {
    const std::string_view line = trimmed(takeUntil(request, '\n'));
    return startsWith(line.substr(line.rfind(' ') + 1), "HTTP/");
}

std::optional<PageRequest> parseRequestGET(std::string_view request) {
    const auto target = targetOf(request);
    if (!target)
        return {};
    PageRequest page;
    std::string_view rest = target->path;
    page.path = takeUntil(rest, '?');
    page.query = rest;
    const auto dot = page.path.rfind('.');
    page.node = page.path.substr(0, dot);
    if (dot != std::string::npos)
        page.fileType = page.path.substr(dot + 1);
    page.referer = refererOf(request);
    return page;
}

std::optional<CommandRequest> parseRequestPOST(std::string_view request) {
    const auto target = targetOf(request);
    if (!target)
        return {};
    return CommandRequest{std::string(target->path),
                          std::string(target->rest.substr(0, target->rest.find('\r')))};
}

std::optional<std::string> fileNameOf(const PageRequest& page, char separator) {
    std::string name = page.node + '.' + page.fileType;
    if (hasParentComponent(name))
        return {};
    if (separator == '\\') {
        if (name.find_first_of("\\:") != std::string::npos)
            return {};
        std::replace(name.begin(), name.end(), '/', separator);
    }
    return name;
}

bool namesLoopback(std::string_view authority) {
    const std::string_view host = splitAuthority(authority).host;
    return equalsIgnoringCase(host, "localhost") || host == "[::1]" || isLoopbackV4(host);
}

bool isForeign(std::string_view request, std::uint16_t port) {
    const bool isPost = methodOf(request) == Method::Post;
    takeUntil(request, '\n');
    while (!request.empty()) {
        std::string_view line = takeUntil(request, '\n');
        if (trimmed(line).empty())
            break;
        const std::string_view name = trimmed(takeUntil(line, ':'));
        const std::string_view value = trimmed(line);
        if (equalsIgnoringCase(name, "Host") && !namesLoopback(value))
            return true;
        if (isPost && equalsIgnoringCase(name, "Origin") && !isOriginOfPort(value, port))
            return true;
        if (isPost && equalsIgnoringCase(name, "Sec-Fetch-Site") &&
            !equalsIgnoringCase(value, "same-origin") && !equalsIgnoringCase(value, "none"))
            return true;
    }
    return false;
}

std::string_view getMimeType(std::string_view fileType) {
    if (fileType == "css")
        return "text/css";
    if (fileType == "js")
        return "text/javascript";
    if (fileType == "xml")
        return "application/xml";
    return "text/html";
}

bool isImage(std::string_view fileType) {
    return fileType == "png" || fileType == "jpg" || fileType == "gif";
}

std::string escapeHtml(std::string_view text) {
    std::string escaped;
    escaped.reserve(text.size());
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

std::string notFoundResponse(std::string_view message) {
    return "HTTP/1.1 404 Not Found\r\nContent-Type: text/html\r\n\r\n"
           "<html><head><title>Page Not Found</title></head><body><h1>Page not found</h1><p>" +
           escapeHtml(message) + "</p></body></html>\r\n";
}

std::string ensureTrailingSlash(std::string path) {
    if (!path.empty() && path.back() != '/')
        path += '/';
    return path;
}

} // namespace Kestrel::UI::Help
