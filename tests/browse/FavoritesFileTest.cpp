#include <KxUI/browse/FavoritesFile.h>

#include <support/TestRegistry.h>

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Kestrel::UI;

namespace {

QByteArray contentsOf(const QString& name) {
    QFile file(name);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString& name, const QByteArray& bytes) {
    QFile file(name);
    QVERIFY(file.open(QFile::WriteOnly) && file.write(bytes) == bytes.size());
}

QStringList pathsOf(const FavoritesFile& file) {
    QStringList paths;
    for (const FavoritesFile::Favorite& each : file.favorites())
        paths << (each.isGroup ? "[" + each.title + "]" : QString::fromUtf8(each.path)) +
                     (each.group.isEmpty() ? "" : "*");
    return paths;
}

void save(FavoritesFile& file) {
    file.save();
    QTRY_VERIFY_WITH_TIMEOUT(file.isSaved(), 20000);
}

QByteArray fileOf(const QByteArray& inside) {
    return "<xbel version=\"1.0\">" + inside + "</xbel>";
}

} // namespace

class FavoritesFileTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_name;

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_name = m_folder->filePath("new/favourites.xbel");
    }

    void keepsAndComesBack() {
        {
            FavoritesFile file(m_name);
            QSignalSpy changed(&file, &FavoritesFile::changed);
            // Before the file is known to be none.
            const QString b = file.add("/b\xff", "B");
            const QString group = file.addGroup("G", 0);
            file.add("/a", {}, 1);
            QVERIFY(file.add("").isEmpty() && file.add(QByteArray("/\0x", 3)).isEmpty());
            file.moveInto(b, group);
            QVERIFY(file.contains("/b\xff") && !file.contains("/b"));
            QCOMPARE(changed.count(), 4);
            QTRY_VERIFY(file.isLoaded());
            save(file);
            const QString c = file.add("/c");
            file.rename(b, " x<\x01y ");
            file.move(c, 0);
            save(file);
        }
        QCOMPARE(QFileInfo(m_name).permissions() & (QFile::ReadGroup | QFile::ReadOther), 0);
        FavoritesFile again(m_name);
        QTRY_VERIFY(again.isLoaded());
        QCOMPARE(pathsOf(again),
                 QStringList({"/c", "[G]", QString::fromUtf8("/b\xff") + "*", "/a"}));
        QCOMPARE(again.favorites()[2].title,
                 QString("x<") + QChar(QChar::ReplacementCharacter) + "y");
        QCOMPARE(again.favorites()[2].path, QByteArray("/b\xff"));
    }

    void removesAndRestores() {
        QDir().mkpath(QFileInfo(m_name).path());
        write(m_name, fileOf("<bookmark href='file:///1' id='1'/><folder id='g'><title>G</title>"
                             "<bookmark href='file:///2' id='2'/><odd/></folder>"
                             "<bookmark href='file:///3' id='3'/>"));
        FavoritesFile file(m_name);
        QTRY_COMPARE(pathsOf(file), QStringList({"/1", "[G]", "/2*", "/3"}));
        file.remove("g");
        file.remove("gone");
        QCOMPARE(pathsOf(file), QStringList({"/1", "/3"}));
        save(file);
        QVERIFY(!contentsOf(m_name).contains("odd"));
        QVERIFY(file.restore("g") && !file.restore("g") && !file.restore("1"));
        QCOMPARE(pathsOf(file), QStringList({"/1", "[G]", "/2*", "/3"}));
        save(file);
        QVERIFY(contentsOf(m_name).contains("<bookmark href='file:///2' id='2'/><odd/></folder>"));
    }

    // Each change is done to what the other one has saved.
    void mergesWithOthers() {
        FavoritesFile one(m_name);
        FavoritesFile two(m_name);
        one.add("/start");
        save(one);
        two.reload();
        QTRY_COMPARE(pathsOf(two), QStringList("/start"));
        const QString start = two.favorites()[0].id;
        one.rename(start, "renamed");
        two.add("/two", {}, 0);
        save(two);
        save(one);
        QCOMPARE(pathsOf(one), QStringList({"/two", "/start"}));
        one.remove(start);
        two.move(start, 0);
        save(one);
        save(two);
        QCOMPARE(pathsOf(two), QStringList("/two"));

        for (int i = 0; i < 40; ++i) {
            one.add("/one/" + QByteArray::number(i));
            two.add("/two/" + QByteArray::number(i));
            one.save();
            two.save();
            if (i % 8 == 0)
                QCoreApplication::processEvents();
        }
        QTRY_VERIFY_WITH_TIMEOUT(one.isSaved() && two.isSaved(), 20000);
        one.reload();
        QTRY_COMPARE(one.favorites().size(), std::size_t(81));
        for (int i = 0; i < 40; ++i)
            QVERIFY(one.contains("/one/" + QByteArray::number(i)) &&
                    one.contains("/two/" + QByteArray::number(i)));
    }

    void keepsCopiesOfDamagedOnes() {
        m_name = m_folder->filePath("f.xbel");
        const QByteArray damaged = "<xbel>\n<bookmark href='file:///1'/>\n<bookmark hre";
        write(m_name, damaged);
        write(m_name + ".bad", "older");
        FavoritesFile file(m_name);
        QTRY_COMPARE(pathsOf(file), QStringList("/1"));
        QCOMPARE(file.errorString(),
                 "The favourites could not be read past line 3; a copy was kept "
                 "as " +
                     m_name + ".bad2.");
        file.add("/2");
        save(file);
        QVERIFY(file.errorString().isEmpty() || file.errorString().contains("bad2"));
        QCOMPARE(contentsOf(m_name + ".bad"), QByteArray("older"));
        QCOMPARE(contentsOf(m_name + ".bad2"), damaged);
        QVERIFY(!QFile::exists(m_name + ".bad3"));
        FavoritesFile again(m_name);
        QTRY_COMPARE(pathsOf(again), QStringList({"/1", "/2"}));
        QVERIFY(again.errorString().isEmpty());
    }

    // What cannot be read is no empty file, and links stay links.
    void neverReplacesWhatItCannotRead() {
        QVERIFY(QDir().mkpath(m_name)); // a folder: opened by nobody, root included
        FavoritesFile file(m_name);
        QSignalSpy failed(&file, &FavoritesFile::saveFailed);
        file.add("/1");
        file.save();
        QTRY_VERIFY(failed.count() > 0);
        QVERIFY(file.errorString().startsWith("The favourites cannot be read: "));
        QVERIFY(!file.isSaved() && QFileInfo(m_name).isDir());
        QCOMPARE(pathsOf(file), QStringList("/1"));
        // It is saved as soon as that is possible.
        QVERIFY(QDir().rmdir(m_name));
        const QString real = m_folder->filePath("real.xbel");
        QVERIFY(QFile::link(real, m_name));
        save(file);
        QVERIFY(QFileInfo(m_name).isSymLink() && contentsOf(real).contains("file:///1"));
        QVERIFY(file.errorString().isEmpty());
    }

    void waitsForLocks() {
        m_name = m_folder->filePath("f.xbel");
        FavoritesFile file(m_name);
        QTRY_VERIFY(file.isLoaded());
        QSignalSpy failed(&file, &FavoritesFile::saveFailed);
        {
            QLockFile lock(m_name + ".lock");
            QVERIFY(lock.tryLock());
            file.add("/1");
            file.save();
            QTRY_COMPARE(failed.count(), 1);
            QVERIFY(!file.isSaved() && !QFile::exists(m_name));
        }
        save(file);
        // A process that died with the lock holds it no longer.
        const pid_t child = fork();
        if (child == 0) {
            QLockFile lock(m_name + ".lock");
            _exit(lock.tryLock() ? 0 : 1);
        }
        int status = 1;
        QCOMPARE(waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0 && QFile::exists(m_name + ".lock"));
        file.add("/2");
        save(file);
        QVERIFY(contentsOf(m_name).contains("file:///2"));
    }

    void savesAtTheEnd() {
        m_name = m_folder->filePath("f.xbel");
        {
            FavoritesFile file(m_name);
            file.add("/1");
        }
        QTRY_VERIFY(contentsOf(m_name).contains("file:///1"));
        // But not for ever: a disk that does not answer is left.
        const QString pipe = m_folder->filePath("pipe");
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        QElapsedTimer time;
        {
            FavoritesFile file(pipe);
            file.add("/1");
            time.start();
        }
        QVERIFY(time.elapsed() < 5000);
        // The threads that hang there come back.
        for (int i = 0; i < 2; ++i)
            QTest::qWait(20), write(pipe, fileOf({}));
    }
};

KXUI_TEST(FavoritesFileTest);
#include "FavoritesFileTest.moc"
