#pragma once

#include <KxUI/Export.h>
#include <KxUI/help/HelpServer.h>

#include <QNetworkAccessManager>

#include <memory>
#include <string>
#include <vector>

namespace Kestrel::UI {

/** Answers at which URL the help page of a node (the name of a documentation page) can be opened.

    Three servers may have the page: the local HelpServer, which this class owns and starts, the
    product's remote documentation site, and a custom one. A host calls checkNode() early, for
    example when it creates a panel; the manager then asks the server by HTTP HEAD and remembers the
    answer. getUrl() never waits: a page that the remote server does not have, or of which it has
    not told yet, falls back to the local server.

    The table of servers (their hosts and ports) is shared by the whole process and outlives the
    manager. Nodes are put into URLs as they are; they should need no percent-encoding, which the
    local server does not decode, and include their ".html". Interface thread. */
class KXUI_EXPORT HelpManager : public QNetworkAccessManager {
    Q_OBJECT

public:
    /** Stands for the current server where an index is asked for. */
    static constexpr int CurrentServer = -1;

    /** The index of the local HelpServer, of the product's remote site, of the custom server. */
    static constexpr int LocalServer = 0;
    static constexpr int RemoteServer = 1;
    static constexpr int CustomServer = 2;

    /** The manager, never null. The first call makes it and starts the local server on a port that
        the system chooses. A call after Destroy() makes it again, with the port that the server had
        before or, if that is taken, another one of the range last asked for.

        The server serves the application's own folder until clearSearchPath(). Call this only while
        there is a QCoreApplication; the manager is destroyed with it at the latest. */
    static HelpManager* instance();

    /** Deletes the manager, if there is one. Allowed within a command callback. */
    static void Destroy();

    /** Makes a server the current one: LocalServer, RemoteServer or CustomServer. Starts the local
        server if that has not been done. Selecting another than the local server asks it again for
        every node. False, and no change of the current server, when `index` is out of range. */
    bool setHelpServer(const int& index);

    /** The index of the current server. */
    int helpServer() const;

    /** Changes the host of the current server and asks it again for every node. False for the local
        server, which always is on the loopback. */
    bool setCurrentHost(const std::string& host);

    /** Changes the port of the current server and asks it again for every node. The local server
        is replaced by one on the first free port from `port` to `port` + `range`, with the same
        search path and command callback; other servers have no range. Allowed within a command
        callback. Returns what setHelpServer() returns. */
    bool setCurrentPort(const int& port, const int& range = 0);

    /** Sets the function that the local server calls for POST requests; null for none.
        commandReceived() tells of them, too. */
    void setRequestHandler(HelpServer::RequestHandler handler);

    /** Appends to the directories that the local server searches; see
        HelpServer::appendSearchPath(). The page of a node is the file DIRECTORY/PATH/NODE, where
        PATH is that of setLocalPathPrefix() and setCommonPath():
        "/opt/host/Documentation/html/Blur.html" for the directory "/opt/host" as things are at
        first. */
    void setSearchPath(const std::vector<const char*>& dirs);

    /** Forgets the directories that the local server searches. */
    void clearSearchPath();

    /** The path of every URL, ending in a slash; "Documentation/html/" by default. */
    void setCommonPath(const std::string& path);

    /** What stands before the common path in URLs of the local server; empty by default. */
    void setLocalPathPrefix(const std::string& prefix);

    /** Asks a server whether it has a node, unless that is known or under way; the local server is
        asked whenever another one is. nodeChecked() tells of the answer. A server that says nothing
        for 30 seconds does not have it. An index out of range asks nobody. */
    void checkNode(const std::string& node, int index = CurrentServer);

    /** The URL of a node on a server that has said that it has it, else on the local server on the
        same condition, else an empty string. With `force`, the URL on the stated server whatever is
        known of the node. Empty for an index out of range. */
    std::string getUrl(const std::string& node, int index = CurrentServer, bool force = false);

    /** "http://host:port/", path and node; ports 0 and 80 are left out. */
    static std::string GenerateAddress(const std::string& host, int port, const std::string& path,
                                       const std::string& node);

Q_SIGNALS:
    /** A server has told whether it has a node, or was silent for too long: getUrl() may know more
        now. Sent from the event loop, for each server that was asked. */
    void nodeChecked(const QString& node);

    /** As HelpServer::commandReceived(), of whichever server is the local one. */
    void commandReceived(const QString& command, const QString& argument);

protected:
    void connectNotify(const QMetaMethod& signal) override;

    HelpManager();
    ~HelpManager() override;

    /** Drops the pending reply about a node, from the local server or from the others; whatever it
        says no longer counts. Leaves the node's state alone. */
    void cancelPendingReply(const std::string& node, bool local);

    /** Forgets what is known of every node on one side, and asks again: the local server or the
        current one. */
    void recheckNodes(bool local);

protected Q_SLOTS:
    /** Notes what a finished reply says about its node. */
    void handleFinished();

private:
    struct Private;
    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
