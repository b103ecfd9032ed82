// Fuzzes what the help server decides about a request, and compares it with a strict parser.

#include <KxUI/help/HelpRequest_p.h>

#include <support/Require.h>

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

#include <algorithm>

using Kestrel::Fuzz::require;
using namespace Kestrel::UI::Help;

namespace {

// No component of a served name may climb.
void requireBelowEntry(std::string_view name, char separator) {
    while (!name.empty()) {
        const auto part = name.substr(0, name.find(separator));
        name.remove_prefix(std::min(name.size(), part.size() + 1));
        require(part != "..", "no component climbs");
    }
}

// A strict parser that accepts a path has to find the same one.
void compareWithStrictParser(const std::string& request, const PageRequest& page) {
    boost::beast::http::request_parser<boost::beast::http::string_body> strict;
    boost::beast::error_code error;
    strict.put(boost::asio::buffer(request), error);
    if (error || !strict.is_header_done())
        return;
    const auto target = strict.get().target();
    // Absolute targets and "*" have no path of their own here.
    if (target.empty() || target.front() != '/')
        return;
    const std::string_view text(target.data() + 1, target.size() - 1);
    require(page.path == text.substr(0, text.find('?')), "the path of a strict parser");
    if (const auto mark = text.find('?'); mark != std::string_view::npos)
        require(page.query == text.substr(mark + 1), "the query of a strict parser");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The server cuts a request at its first zero byte.
    std::string request(reinterpret_cast<const char*>(data), size);
    request.resize(std::min(size, request.find('\0')));

    const Method method = methodOf(request);
    const auto page = parseRequestGET(request);
    const auto post = parseRequestPOST(request);
    require(page.has_value() == post.has_value(), "GET and POST see the same page");
    if (page) {
        require(page->path.find_first_of("? ") == std::string::npos,
                "a path ends at a mark or blank");
        require(page->path == page->node || page->path == page->node + '.' + page->fileType,
                "a path is node and type");
        for (const char separator : {'/', '\\'}) {
            if (const auto name = fileNameOf(*page, separator))
                requireBelowEntry(*name, separator);
        }
        if (method == Method::Get || method == Method::Head)
            compareWithStrictParser(request, *page);
        require(post->argument.find('\r') == std::string::npos, "an argument is one line");
    }
    // What is no foreign request to port 80 stays none without its headers.
    if (!isForeign(request, 80))
        require(!isForeign(request.substr(0, request.find('\n')), 80),
                "its headers make a request foreign");
    // However it is cut, a part is never taken for more than the request.
    const std::string_view part = std::string_view(request).substr(0, request.size() / 2);
    if (progressOf(part) == Progress::Whole)
        require(headOf(part) == headOf(request), "a whole request stays what it is");
    require(progressOf(headOf(request)) == progressOf(request), "the head says it all");
    const std::string response = notFoundResponse(request);
    require(escapeHtml(request).find_first_of("<>\"") == std::string::npos, "no markup is left");
    require(response.size() >= request.size(), "the answer quotes the request");
    return 0;
}
