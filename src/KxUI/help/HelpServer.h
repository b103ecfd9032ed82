#pragma once

#include <KxUI/Export.h>

#include <QTcpServer>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Kestrel::UI {

/** A small HTTP/1.1 server for the loopback address. It gives the application's HTML documentation
    to a web browser, and passes commands that the pages send by POST to the host application.

    Pages are looked for below the directories of the search path, in order; nothing outside them is
    served, unless a symbolic link there leads out. A page is sent without its
    length (an image with it): it ends where the connection ends.

    A command comes as the line "POST /command argument". The command is the text between the first
    slash and the next blank, with the query if there is one; the argument is the rest of the line.
    Browsers and Qt's network client always send "HTTP/1.1" as the argument, so a page puts all that
    it has to tell into the command. The body of a POST is not read. The answer is "200 OK" whatever
    the command did, with "Content-Length: 0" where the line names an HTTP version.

    Only GET, HEAD and POST are answered: a client that asks with another method hears nothing.

    A request ends with the blank line after its headers. One whose line names no HTTP version, as
    "POST /go 7", may do without it: it ends when the client has been silent for a tenth of a
    second.

    Not everybody who can reach the loopback may command the host: a request that a browser sent on
    behalf of a foreign page, told by its Host, Origin and Sec-Fetch-Site headers, is answered with
    the not-found page. 64 clients are served at a time, others wait; one that asks for nothing is
    closed within a minute (sooner while others wait), one that sends more than 64 KiB at once.

    All strings are 8-bit, on Windows UTF-8; paths in them are separated by "/". Lives in the
    interface thread, where the command callback is called too. */
class KXUI_EXPORT HelpServer : public QTcpServer {
    Q_OBJECT

public:
    /** Called with the command and its argument, both as the client sent them. It may open dialogs,
        call the help manager and retire() this server, but not delete it. */
    using RequestHandler = void (*)(std::string command, std::string argument);

    /** Given as the first port: the system chooses a free one. */
    static constexpr int AnyPort = 0;

    /** The highest port; no range may go beyond it. */
    static constexpr int LastPort = 65535;

    /** A stopped server. Its search path is the server root, so once started it serves the
        application's own folder to whoever asks, until clearSearchPath() or HelpManager's is
        called.

        `name` labels its log lines; an empty one stands for "Local". Turns the verbose log on when
        the environment variable HELP_VERBOSE is 1. `parent` owns the server; null for none. Needs a
        QCoreApplication. */
    explicit HelpServer(const std::string& name = {}, QObject* parent = nullptr);
    explicit HelpServer(QObject* parent);
    ~HelpServer() override;

    /** Listens on `host`, an IP address, at the first free port from `firstPort` to
        `firstPort` + `range`, and returns whether it does.

        False at once when already started, and when the range passes LastPort. One port beyond
        the range is tried before giving up, and a server that got that port goes on listening
        there although this returns false. */
    bool start(const std::string& host, const int& firstPort, const int& range);

    /** Stops listening. Requests that have been accepted are still answered. */
    void close();

    /** Closes, and deletes the server once its requests are answered and no command callback runs:
        the way to be rid of it from within a callback. */
    void retire();

    /** A subdirectory of the server root that is searched after it. Rebuilds the search path, so
        that what was appended is gone. */
    void setRelativePath(const std::string& path);

    /** Rebuilds the search path: the server root and, if there is one, the relative path below. */
    void setSearchPath();

    /** Appends directories to the search path. The page of "http://127.0.0.1:PORT/a/b.html" is the
        file "a/b.html" below one of them. One that contains ".nova", the folder of a user's
        settings, is followed by its own "Documentation/". Null pointers are skipped; the strings
        are copied. */
    void appendSearchPath(const std::vector<const char*>& dirs);

    /** Forgets every directory; every page is then not found. */
    void clearSearchPath();

    /** Takes the search path, the relative path and the command callback of another server. */
    void takeOver(const HelpServer& predecessor);

    /** Sets what POST requests call; null for nothing. commandReceived() tells of them, too. */
    void setRequestHandler(RequestHandler handler);

    /** True while the command callback is being called. */
    bool isInRequestHandler() const;

    /** Switches the log of all servers and of the help manager, and says so on standard output. */
    static void setVerbose(bool verbose);

    /** The address last listened on; "127.0.0.1" before the first start. */
    const std::string& getHost() const;

    /** The label in log lines. */
    const std::string& getName() const;

    /** The port bound by the last successful start, 0 before. */
    std::uint16_t getPort() const;

    /** As set, with a trailing slash; empty by default. */
    const std::string& getRelativePath() const;

    /** The directories searched, in order, each with a trailing slash. */
    const std::vector<std::string>& searchPath() const;

    /** True from a successful start to close(). */
    bool getStarted() const;

    /** The application's directory with a trailing slash. */
    const std::string& getServerRoot();

Q_SIGNALS:
    /** A page sent a command, both strings decoded as UTF-8; after the command callback, and with
        the same rights. For hosts that want to know which object it concerns, or that have several
        who listen. */
    void commandReceived(const QString& command, const QString& argument);

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
