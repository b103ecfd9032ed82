#include <KxUI/files/FileGatherer.h>
#include <KxUI/files/FileInfoList.h>
#include <KxUI/files/FileManager.h>

#include "HangingCalls.h"

#include <support/TestRegistry.h>

#include <QDir>
#include <QPointer>
#include <QTemporaryDir>
#include <QtTest>

#include <fstream>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

using namespace Kestrel::UI;
using Kestrel::Test::FailingCalls;
using Kestrel::Test::HangingCalls;
using Kind = FileManager::PathStatus::Kind;

class FileManagerTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_root;

    QByteArray path(const QByteArray& name) const { return m_root->path().toUtf8() + '/' + name; }

    void write(const QByteArray& name, const std::string& text = {}) const {
        std::ofstream(path(name).toStdString()) << text;
    }

    std::string read(const QByteArray& name) const {
        std::string text;
        std::ifstream(path(name).toStdString()) >> text;
        return text;
    }

    QStringList names() const {
        return QDir(m_root->path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    FileInfo listed(const QString& frameName) const {
        FileInfoList list;
        list.setShouldFilterSequences(true);
        list.fill(m_root->path());
        for (int i = 0; i < list.size(); ++i) {
            if (list[i].frameName() == frameName)
                return list[i];
        }
        return {};
    }

    template <class Answer, class Ask>
    static std::optional<Answer> answerTo(Ask ask) {
        std::optional<Answer> told;
        ask([&](const Answer& answer) { told = answer; });
        if (told)
            return std::nullopt; // too early
        for (int i = 0; i < 4000 && !told; ++i)
            QTest::qWait(5);
        return told;
    }

    FileManager::PathStatus status(const QByteArray& name, int milliseconds = 20000) {
        return answerTo<FileManager::PathStatus>([&](auto answered) {
                   FileManager::requestStatus(path(name), milliseconds, this, answered);
               })
            .value();
    }

    int renamed(const QByteArray& from, const QByteArray& to) {
        return answerTo<int>(
                   [&](auto done) { FileManager::rename(path(from), path(to), this, done); })
            .value();
    }

    FileManager::RenameResult renamedSequence(const FileInfo& from, const QByteArray& to,
                                              int offset = 0,
                                              std::function<bool(int, int)> progress = {}) {
        return answerTo<FileManager::RenameResult>([&](auto done) {
                   FileManager::renameSequence(from, to, offset, this, done, progress);
               })
            .value();
    }

private slots:
    void init() { m_root = std::make_unique<QTemporaryDir>(); }

    void statuses() {
        write("file", "12345");
        write("odd\xff\n");
        QDir(m_root->path()).mkdir("folder");
        const auto link = [&](const char* to, const char* name) {
            QCOMPARE(::symlink(to, path(name).constData()), 0);
        };
        link("folder", "toFolder");
        link("none", "broken");
        link("loop", "loop");
        QCOMPARE(::mkfifo(path("pipe").constData(), 0600), 0);
        const struct {
            QByteArray name;
            Kind kind;
            bool isLink, isWritable;
        } rows[] = {{"file", Kind::File, false, true},
                    {"./folder/../file", Kind::File, false, true},
                    {"odd\xff\n", Kind::File, false, true},
                    {"folder", Kind::Directory, false, true},
                    {"toFolder", Kind::Directory, true, true},
                    {"broken", Kind::Missing, true, false},
                    {"loop", Kind::Missing, true, false},
                    {"pipe", Kind::Other, false, true},
                    {"none", Kind::Missing, false, true},
                    {"none/none", Kind::Missing, false, false}};
        for (const auto& row : rows) {
            const auto told = status(row.name);
            QVERIFY2(told.kind == row.kind, row.name);
            QVERIFY2(told.isLink == row.isLink && told.isWritable == row.isWritable, row.name);
            QCOMPARE(told.error, 0);
        }
        std::remove(path("odd\xff\n").constData()); // Qt has no word for it
        QCOMPARE(status("file").size, std::uint64_t(5));
        QVERIFY(status("file/below").kind == Kind::Unknown);
        QVERIFY(status(QByteArray(300, 'x')).error == ENAMETOOLONG);
    }

    // Neither the one who asks nor its end waits for a file system.
    void noAnswer() {
        QDir(m_root->path()).mkpath("good/hang/a/b");
        auto hanging = std::make_unique<HangingCalls>(path("good/hang").toStdString());
        QCOMPARE(status("good/hang/a", 30).error, int(FileManager::NoAnswer));
        const auto nearest = [&](const QByteArray& name, int milliseconds) {
            return answerTo<QByteArray>([&](auto answered) {
                       FileManager::requestNearestDirectory(path(name), milliseconds, this,
                                                            answered);
                   })
                .value();
        };
        QCOMPARE(nearest("good/hang/a/b/c", 100), path("good"));
        QCOMPARE(nearest("good/none/none", 20000), path("good"));
        QCOMPARE(nearest("/", 20000).left(1), QByteArray("/"));
        bool isCalled = false;
        {
            QObject context;
            FileManager::requestStatus(path("good/hang/z"), 10, &context,
                                       [&](const auto&) { isCalled = true; });
            FileManager::makeDirectory(path("good/hang/new"), &context,
                                       [&](int) { isCalled = true; });
            QVERIFY(hanging->isReached(4));
        }
        hanging.reset();
        QTRY_VERIFY(QFileInfo::exists(m_root->filePath("good/hang/new")));
        QTest::qWait(30);
        QVERIFY(!isCalled);
        // The context may go with the answer.
        QPointer<QObject> context = new QObject;
        FileManager::requestStatus(path("good"), 0, context, [&](const auto&) { delete context; });
        QTRY_VERIFY(!context);
    }

    void changes_data() {
        QTest::addColumn<int>("refusal");
        QTest::newRow("the system never replaces") << 0;
        QTest::newRow("the file system does not know how to") << EINVAL;
    }

    void changes() {
        QFETCH(int, refusal);
        std::optional<FailingCalls> failing;
        if (refusal != 0)
            failing.emplace(path("").toStdString(), HangingCalls::Renamings, refusal);
        const auto made = [&](const QByteArray& name) {
            return answerTo<int>(
                       [&](auto done) { FileManager::makeDirectory(path(name), this, done); })
                .value();
        };
        QCOMPARE(made("new"), 0);
        QCOMPARE(made("new"), EEXIST);
        QCOMPARE(made("none/new"), ENOENT);
        write("a", "a");
        write("b", "b");
        QCOMPARE(renamed("a", "b"), EEXIST);
        QCOMPARE(renamed("a", "new/a"), 0);
        QCOMPARE(renamed("new", "other"), 0);
        QCOMPARE(renamed("other", "other/within"), EINVAL);
        QCOMPARE(renamed("none", "c"), ENOENT);
        QCOMPARE(renamed("b", "b"), 0);
        QCOMPARE(read("other/a") + read("b"), std::string("ab"));
    }

    void sequences() {
        const auto fill = [&] {
            for (const int frame : {8, 9, 10, 12})
                write("s." + QByteArray::number(frame) + ".exr", std::to_string(frame));
        };
        fill();
        // Each name is free when it is wanted, upwards and downwards.
        const struct {
            const char* from;
            const char* to;
            int offset;
            QStringList names;
        } rows[] = {
            {"s.#.exr", "s.#.exr", 1, {"s.10.exr", "s.11.exr", "s.13.exr", "s.9.exr"}},
            {"s.#.exr", "s.%d.exr", -1, {"s.10.exr", "s.12.exr", "s.8.exr", "s.9.exr"}},
            {"s.#.exr", "t_####.exr", 0, {"t_0008.exr", "t_0009.exr", "t_0010.exr", "t_0012.exr"}},
            {"t_####.exr", "s.$F.exr", 0, {"s.10.exr", "s.12.exr", "s.8.exr", "s.9.exr"}}};
        for (const auto& row : rows) {
            const auto result = renamedSequence(listed(row.from), row.to, row.offset);
            QCOMPARE(result.error, 0);
            QCOMPARE(result.renamed, 4);
            QCOMPARE(names(), row.names);
        }
        QCOMPARE(read("s.12.exr"), std::string("12"));

        // All or none.
        const FileInfo sequence = listed("s.#.exr");
        write("x.12.exr", "mine");
        const QStringList before = names();
        auto result = renamedSequence(sequence, "x.#.exr");
        QCOMPARE(result.error, EEXIST);
        QCOMPARE(result.path, path("x.12.exr"));
        QCOMPARE(renamedSequence(sequence, "none/x.#.exr").error, ENOENT);
        QCOMPARE(renamedSequence(sequence, "x.exr").error, int(FileManager::NoFrames));
        QCOMPARE(renamedSequence(sequence, "y.#.exr", -9).error, int(FileManager::NoFrames));
        QCOMPARE(renamedSequence(FileInfo(), "x.#.exr").error, int(FileManager::NoFrames));
        QCOMPARE(names(), before);
        QVERIFY(QFile::remove(m_root->filePath("s.10.exr")));
        QCOMPARE(renamedSequence(sequence, "y.#.exr").error, ENOENT);
        QCOMPARE(names().filter("s.").size(), 3);
    }

    // What fails half way is taken back; so is what somebody gives up.
    void takenBack() {
        for (int frame = 1; frame <= 40; ++frame)
            write("s." + QByteArray::number(frame) + ".exr");
        const QStringList before = names();
        // The last names are too long for the file system.
        const QByteArray longest = QByteArray(249, 'n') + ".#.exr";
        const auto result = renamedSequence(listed("s.#.exr"), longest);
        QCOMPARE(result.error, ENAMETOOLONG);
        QCOMPARE(result.path, path("s.10.exr"));
        QCOMPARE(result.renamed, 0);
        QCOMPARE(result.stranded, 0);
        QCOMPARE(names(), before);

        {
            // From the third renaming on nothing is renamed any more, nor back.
            const FailingCalls failing(path("").toStdString(), HangingCalls::Renamings, EIO, 2);
            const auto left = renamedSequence(listed("s.#.exr"), "t.#.exr");
            QCOMPARE(left.error, EIO);
            QCOMPARE(left.renamed, 2);
            QCOMPARE(left.stranded, 2);
        }
        QCOMPARE(renamedSequence(listed("t.#.exr"), "s.#.exr").error, 0);
        QCOMPARE(names(), before);

        HangingCalls hanging(path("s.20.exr").toStdString(), HangingCalls::Renamings);
        std::optional<FileManager::RenameResult> stopped;
        int told = 0;
        FileManager::renameSequence(
            listed("s.#.exr"), "t.#.exr", 0, this, [&](const auto& each) { stopped = each; },
            [&](int, int count) {
                told = count;
                return false;
            });
        QVERIFY(hanging.isReached(1));
        QTest::qWait(60);
        hanging.release();
        QTRY_VERIFY(stopped);
        // Nobody was asked in time where everything went fast.
        QCOMPARE(stopped->error, told == 40 ? int(FileManager::Stopped) : 0);
        if (told == 40)
            QCOMPARE(names(), before);
    }

    void words() {
        const struct {
            int error;
            const char* text;
        } rows[] = {{0, ""},
                    {EEXIST, "\u201c\u2068n\ufffd.exr\u2069\u201d exists already."},
                    {FileManager::NoFrames,
                     "\u201c\u2068n\ufffd.exr\u2069\u201d has no place for the numbers of frames."},
                    {FileManager::NoAnswer, "The server of this folder does not answer."},
                    {FileManager::NobodyLeft, "Too many folders do not answer."}};
        for (const auto& row : rows)
            QCOMPARE(FileManager::errorText(row.error, "/a/n\xff.exr"), QString(row.text));
        for (const int error : {EACCES, ENOSPC, EROFS, EXDEV, ENAMETOOLONG, EIO, ENOENT})
            QVERIFY(FileManager::errorText(error, "/a/name/").contains("\u2068name\u2069"));
        write("x");
        FileGatherer gatherer;
        gatherer.gatherPath(m_root->path());
        gatherer.cancel();
        QCOMPARE(FileManager::errorText(*gatherer.listing()),
                 QString("Reading was stopped after 0 entries."));
        gatherer.gatherPath(m_root->filePath("none"));
        QTRY_COMPARE(FileManager::errorText(*gatherer.listing()),
                     QString("This folder does not exist."));
    }
};

KXUI_TEST(FileManagerTest);

#include "FileManagerTest.moc"
