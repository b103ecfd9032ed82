#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <csignal>
#include <sched.h>
#include <sys/mount.h>

namespace Kestrel::Test {

/** A mounted file system that does as it is told: see SlowFileSystem.cpp. */
class SlowFolder {
public:
    explicit SlowFolder(int frames) {
        m_program.start(KXUI_SLOW_FILE_SYSTEM, {m_folder.path(), QString::number(frames)});
        m_isMounted = waitFor("mounted");
    }

    ~SlowFolder() {
        m_program.closeWriteChannel();
        m_program.waitForFinished(20000);
    }

    /** Makes mounts those of this process and of what it starts: gone with them. */
    static bool hasOwnMounts() {
        return ::unshare(CLONE_NEWNS) == 0 &&
               ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
    }

    bool isMounted() const { return m_isMounted; }

    bool tell(const QByteArray& command) {
        m_program.write(command + '\n');
        return waitFor("done");
    }

    // Its questions are not even taken: as with a network file system, they end with whoever asks.
    // One that a thread takes before it stops would not.
    bool setStopped(bool stopped) const {
        ::kill(static_cast<pid_t>(m_program.processId()), stopped ? SIGSTOP : SIGCONT);
        return QTest::qWaitFor([&] { return hasStopped() == stopped; }, 20000);
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }

private:
    bool hasStopped() const {
        const QDir threads(QString("/proc/%1/task").arg(m_program.processId()));
        const QStringList all = threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
        return std::all_of(all.begin(), all.end(), [&](const QString& thread) {
            QFile file(threads.filePath(thread + "/stat"));
            const bool isRead = file.open(QIODevice::ReadOnly);
            const QByteArray line = file.readAll();
            return isRead && line.mid(line.lastIndexOf(')') + 2, 1) == "T";
        });
    }

    bool waitFor(const QByteArray& answer) {
        while (!m_program.canReadLine()) {
            if (!m_program.waitForReadyRead(20000))
                return false;
        }
        return m_program.readLine().trimmed() == answer;
    }

    QTemporaryDir m_folder;
    QProcess m_program;
    bool m_isMounted = false;
};

} // namespace Kestrel::Test
