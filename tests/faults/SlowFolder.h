#pragma once

#include <QProcess>
#include <QTemporaryDir>

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
    void setStopped(bool stopped) const {
        ::kill(static_cast<pid_t>(m_program.processId()), stopped ? SIGSTOP : SIGCONT);
    }

    QString path(const QString& name) const { return m_folder.filePath(name); }

private:
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
