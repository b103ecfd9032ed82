#include "Faults.h"

#include <QDir>
#include <QFile>

#include <cstdio>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Kestrel::Test {

namespace {

void limitFiles(qint64 bytes, bool deadly) {
    ::signal(SIGXFSZ, deadly ? SIG_DFL : SIG_IGN);
    const rlimit none{0, 0}, size{rlim_t(bytes), rlim_t(bytes)};
    ::setrlimit(RLIMIT_CORE, &none);
    ::setrlimit(RLIMIT_FSIZE, &size);
}

/** A small disk of this process's own in place of the folder, with the folder's files. */
bool mountDisk(const QString& folder) {
    const QByteArray path = QFile::encodeName(folder);
    QList<QPair<QString, QByteArray>> files;
    for (const QString& name : QDir(folder).entryList(QDir::Files)) {
        QFile file(folder + '/' + name);
        file.open(QIODevice::ReadOnly);
        files.append({file.fileName(), file.readAll()});
    }
    if (::unshare(CLONE_NEWNS) != 0 ||
        ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount("tmpfs", path, "tmpfs", 0, "size=256k") != 0)
        return false;
    for (const auto& [name, content] : qAsConst(files)) {
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            return false;
    }
    return true;
}

void fillUp(const QString& folder, qint64 pagesLeft) {
    QFile ballast(folder + "/.ballast");
    ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    const QByteArray page(4096, 'x');
    while (ballast.write(page) == page.size()) {
    }
    ballast.resize(ballast.size() - pagesLeft * page.size());
}

void forbidWriting(const QString& folder) {
    ::chmod(QFile::encodeName(folder), 0555);
    for (const QString& name : QDir(folder).entryList(QDir::Files))
        ::chmod(QFile::encodeName(folder + '/' + name), 0444);
    // Permissions do not hold back root.
    constexpr uid_t nobody = 65534;
    if (::geteuid() == 0 && (::setgid(nobody) != 0 || ::setuid(nobody) != 0))
        ::_exit(EXIT_FAILURE);
}

} // namespace

void befall(Fault fault, qint64 amount, const QString& folder) {
    switch (fault) {
    case Fault::FileLimit:
    case Fault::DeathAtByte:
        return limitFiles(amount, fault == Fault::DeathAtByte);
    case Fault::FullDisk:
        if (mountDisk(folder))
            return fillUp(folder, amount);
        std::fputs("no disk may be mounted: a limit on files stands in\n", stderr);
        return limitFiles(amount * 4096, false);
    case Fault::ReadOnlyDisk:
        if (mountDisk(folder) && ::mount("tmpfs", QFile::encodeName(folder), "tmpfs",
                                         MS_REMOUNT | MS_RDONLY, nullptr) == 0)
            return;
        std::fputs("no disk may be mounted: permissions stand in\n", stderr);
        return forbidWriting(folder);
    case Fault::ReadOnlyFolder:
        return forbidWriting(folder);
    }
}

int inChild(const std::function<int()>& work, int killAfterUs) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(work());
    if (killAfterUs >= 0) {
        ::usleep(useconds_t(killAfterUs));
        ::kill(child, SIGKILL);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

} // namespace Kestrel::Test
