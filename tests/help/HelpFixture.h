#pragma once

#include <QHostAddress>
#include <QTcpSocket>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <string>

#include <unistd.h>

namespace Kestrel::Test {

/** A file of tests/help/data. */
inline QByteArray testData(const char* name) {
    QFile file(QStringLiteral(KXUI_TEST_DATA) + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("missing");
}

/** Its lines without comments and blank ones. */
inline QList<QByteArray> table(const char* name) {
    QList<QByteArray> lines = testData(name).split('\n');
    lines.erase(std::remove_if(lines.begin(), lines.end(),
                               [](const auto& line) { return line.isEmpty() || line[0] == '#'; }),
                lines.end());
    return lines;
}

/** {N*x} repeated, and the escapes of C replaced. */
inline QByteArray unescaped(const QByteArray& text) {
    QByteArray bytes;
    for (int i = 0; i < text.size(); ++i) {
        const int star = int(text.indexOf('*', i));
        const int end = int(text.indexOf('}', i));
        if (text[i] == '{') {
            bytes +=
                text.mid(star + 1, end - star - 1).repeated(text.mid(i + 1, star - i - 1).toInt());
            i = end;
        } else if (text[i] != '\\') {
            bytes += text[i];
        } else if (text[++i] == 'x') {
            bytes += QByteArray::fromHex(text.mid(i + 1, 2));
            i += 2;
        } else {
            bytes += text[i] == 'r' ? '\r' : text[i] == 'n' ? '\n' : text[i] == 't' ? '\t' : '\\';
        }
    }
    return bytes;
}

/** A folder of pages beside a secret that must never be served. */
struct Site {
    Site() {
        QDir(dir.path()).mkpath(QStringLiteral("site/Documentation/html"));
        put("../secret.html", "SECRET");
    }
    QString file(const char* name) const { return dir.filePath(QLatin1String("site/") + name); }
    std::string path() const { return file("").toStdString(); }
    void put(const char* name, const QByteArray& bytes) const {
        QFile output(file(name));
        if (!output.open(QIODevice::WriteOnly) || output.write(bytes) != bytes.size())
            qFatal("cannot write %s", name);
    }

    QTemporaryDir dir;
};

/** A client that speaks raw bytes. Client and server share the thread, so every step is in order.
 */
struct Client : QTcpSocket {
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
        dup2(m_saved, fileno(m_stream));
        close(m_saved);
    }
    QByteArray text() {
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    std::FILE* m_stream;
    int m_saved;
    QTemporaryFile m_file;
};

} // namespace Kestrel::Test
