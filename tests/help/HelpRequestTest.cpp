#include "HelpFixture.h"

#include <KxUI/help/HelpRequest_p.h>

#include <support/TestRegistry.h>

#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>

using namespace Kestrel::Test;
using namespace Kestrel::UI::Help;

namespace {

std::string strictTarget(const std::string& request) {
    boost::beast::http::request_parser<boost::beast::http::string_body> parser;
    boost::beast::error_code error;
    parser.put(boost::asio::buffer(request), error);
    return error || !parser.is_header_done() ? "none" : std::string(parser.get().target());
}

std::string result(const QByteArray& function, const std::string& request) {
    const auto page = parseRequestGET(request);
    const auto post = parseRequestPOST(request);
    if (function == "progress") {
        const char* const names[] = {"open", "heading", "whole"};
        return names[static_cast<int>(progressOf(request))];
    }
    if (function == "foreign")
        return isForeign(request, 7000) ? "yes" : "no";
    if (!page || !post)
        return "none";
    if (function == "page")
        return page->path + '|' + page->node + '|' + page->fileType + '|' + page->query + '|' +
               page->referer;
    if (function == "command")
        return post->command + '|' + post->argument;
    if (function == "file")
        return fileNameOf(*page, '/').value_or("none") + ' ' +
               fileNameOf(*page, '\\').value_or("none");
    return '/' + page->path + (page->query.empty() ? "" : '?' + page->query) + ' ' +
           strictTarget(request);
}

} // namespace

class HelpRequestTest : public QObject {
    Q_OBJECT

private slots:
    void tables() {
        for (const QByteArray& line : table("requests.txt")) {
            const int colon = int(line.indexOf(": "));
            const int arrow = int(line.lastIndexOf(" -> "));
            const QByteArray request = unescaped(line.mid(colon + 2, arrow - colon - 2));
            const std::string is = result(line.left(colon), request.toStdString());
            QVERIFY2(is == unescaped(line.mid(arrow + 4)).toStdString(),
                     (line + ", not " + is.c_str()));
        }
    }

    void details() {
        QVERIFY(methodOf("HEADER") == Method::Head && methodOf("GETS") == Method::Unknown &&
                methodOf("POST") == Method::Post && methodOf("GET") == Method::Unknown);
        QVERIFY(!isForeign("POST /x \r\nOrigin: http://localhost\r\n", 80));
        QCOMPARE(escapeHtml("<a \"x\">&amp;'").c_str(), "&lt;a &quot;x&quot;&gt;&amp;amp;'");
        QVERIFY(getMimeType("XML") == "text/html" && ensureTrailingSlash("").empty());
    }
};

KXUI_TEST(HelpRequestTest);
#include "HelpRequestTest.moc"
