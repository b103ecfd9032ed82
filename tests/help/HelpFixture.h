#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QtTest>

#include <cstdio>
#include <string>

#include <unistd.h>

namespace Kestrel::Test {

/** A folder of pages, with a trailing slash, beside a secret that must never be served. */
class Site {
public:
    Site() {
        QDir(m_dir.path()).mkpath(QStringLiteral("site/Documentation/html"));
        put("../secret.html", "SECRET");
    }

    std::string path() const { return (m_dir.path() + QStringLiteral("/site/")).toStdString(); }
    QString file(const char* name) const {
        return QString::fromStdString(path()) + QLatin1String(name);
    }

    void put(const char* name, const QByteArray& bytes) {
        QFile output(file(name));
        if (!output.open(QIODevice::WriteOnly) || output.write(bytes) != bytes.size())
            qFatal("cannot write %s", name);
    }

private:
    QTemporaryDir m_dir;
};

/** A client that speaks raw bytes. Client and server share the thread, so every step is in order.
 */
class Client : public QTcpSocket {
public:
    explicit Client(quint16 port) {
        connectToHost(QHostAddress(QHostAddress::LocalHost), port);
        if (!waitForConnected())
            qFatal("cannot connect to port %d", int(port));
    }

    /** Hands the bytes to the kernel and gives the server turns to see them. */
    void say(const QByteArray& bytes) {
        write(bytes);
        while (bytesToWrite() > 0 && waitForBytesWritten(1000)) {
        }
        turns();
    }

    /** Everything the server says until it hangs up; "TIMEOUT" if it does not. */
    QByteArray answer() {
        return QTest::qWaitFor([this] { return state() == UnconnectedState; }, 20000)
                   ? readAll()
                   : QByteArray("TIMEOUT");
    }

    bool isIgnored() {
        turns();
        return state() == ConnectedState && bytesAvailable() == 0;
    }

    static void turns() {
        for (int turn = 0; turn < 6; ++turn)
            QCoreApplication::processEvents();
    }
};

/** One request, one answer. */
inline QByteArray converse(quint16 port, const QByteArray& request) {
    Client client(port);
    client.say(request);
    return client.answer();
}

/** What is written to standard output or standard error while it lives. */
class Capture {
public:
    explicit Capture(std::FILE* stream)
        : m_stream(stream) {
        std::fflush(m_stream);
        m_saved = dup(fileno(m_stream));
        m_file.open();
        dup2(m_file.handle(), fileno(m_stream));
    }
    ~Capture() {
        std::fflush(m_stream);
        dup2(m_saved, fileno(m_stream));
        close(m_saved);
    }
    QByteArray text() {
        std::fflush(m_stream);
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    std::FILE* m_stream;
    int m_saved;
    QTemporaryFile m_file;
};

inline QByteArray notFound(const QByteArray& message) {
    return "HTTP/1.1 404 Not Found\r\nContent-Type: text/html\r\n\r\n<html><head><title>Page Not "
           "Found</title></head><body><h1>Page not found</h1><p>" +
           message + "</p></body></html>\r\n";
}

} // namespace Kestrel::Test
