#include "../eventgraph/FakeTimer.h"

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventGraphWriter.h>
#include <KxUI/eventgraph/EventTrack.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/settings/AppSettings.h>
#include <support/Columns.h>
#include <support/Faults.h>
#include <support/TestRegistry.h>

#include <array>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

using namespace Kestrel::UI;
using Kestrel::Test::inChild;
using Kestrel::Test::limitFiles;
using Kestrel::Test::mountDisk;

namespace {

/** A file that is saved with one of two contents. */
enum Content { Old, New };

struct Subject {
    QString path;
    std::function<bool(Content)> save;
    std::array<QByteArray, 2> contents{};

    QString folder() const { return QFileInfo(path).path(); }

    /** Lines in order: settings are written in any. */
    QByteArray read() const {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        QList<QByteArray> lines = file.readAll().split('\n');
        std::sort(lines.begin(), lines.end());
        return lines.join('\n');
    }
};

struct Capture {
    explicit Capture(int events) {
        view.addTrack(&track);
        view.start(1.0F, EventGraphMode::Forwards);
        for (int i = 0; i < events; ++i)
            track.addEvent(EventTrack::Type::Sample, new EventUserDataString("a"), i);
        view.stop();
    }
    Kestrel::Test::FakeTimer timer;
    EventGraphView view{nullptr, &timer};
    EventTrack track{"a", Qt::red, 0,      EventTrack::TrackType::Timeline, 0.0F, 1.0F, 100000,
                     999, 50,      nullptr};
};

struct Workspace : DockMainWindow {
    explicit Workspace(int panes) {
        while (panes-- > 0) {
            Dock* dock = createDock();
            addWidget(dock);
            auto* page = new QWidget;
            page->setObjectName(QString::number(panes));
            dock->addWidget(page, false, false);
        }
    }
};

void fillDisk(const Subject& subject, int pagesLeft) {
    Kestrel::Test::fillDisk(subject.folder(), pagesLeft, [&] { subject.save(Old); });
}

void forbidWriting(const Subject& subject, int) {
    ::chmod(QFile::encodeName(subject.folder()), 0555);
    ::chmod(QFile::encodeName(subject.path), 0444);
    // Permissions do not hold back root.
    if (::geteuid() == 0 && ::setuid(65534) != 0)
        ::_exit(EXIT_FAILURE);
}

void mountForReading(const Subject& subject, int) {
    if (!mountDisk(subject.folder()))
        return forbidWriting(subject, 0);
    subject.save(Old);
    ::mount("none", QFile::encodeName(subject.folder()), nullptr, MS_REMOUNT | MS_RDONLY, nullptr);
}

void limitBytes(const Subject&, int bytes) {
    limitFiles(rlim_t(bytes), false);
}

using Fault = void (*)(const Subject&, int);

} // namespace

Q_DECLARE_METATYPE(Fault)

class SavingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        const auto add = [this](const char* name, auto save) {
            const QString path = m_folder.filePath(name) + "/file";
            m_subjects[name] = {path,
                                [path, save](Content content) { return save(path, content); }};
        };
        add("capture", [this](const QString& path, Content content) {
            return m_captures[content].view.save(path, EventGraphWriter::IncludeUserData);
        });
        add("trace", [this](const QString& path, Content content) {
            return m_captures[content].view.exportTrace(path);
        });
        // The host opens the file; what it needs is to be told the truth.
        add("layout", [this](const QString& path, Content content) {
            QSaveFile file(path);
            return file.open(QIODevice::WriteOnly) &&
                   m_workspaces[content].saveLayout(&file, nullptr) && file.commit();
        });
        add("settings", [](const QString&, Content content) {
            AppSettings settings;
            settings.sync();
            settings.clear();
            for (int i = 0; i < (content == New ? 300 : 30); ++i)
                settings.setValue(QString::number(i), i);
            settings.sync();
            return settings.status() == QSettings::NoError;
        });
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.path());
        m_subjects["settings"].path = AppSettings().fileName();
        ::chmod(QFile::encodeName(m_folder.path()), 0755);
        for (Subject& subject : m_subjects) {
            QVERIFY(QDir().mkpath(subject.folder()));
            for (const Content content : {New, Old}) {
                QVERIFY(subject.save(content));
                subject.contents[content] = subject.read();
            }
        }
    }

    void aFaultLeavesTheOld_data() {
        const Kestrel::Test::Columns<QString, Fault, int> add("subject", "fault", "amount");
        for (const QString& name : m_subjects.keys()) {
            const auto row = [&](const char* text, Fault fault, int amount) {
                add(qPrintable(QString("%1, %2 %3").arg(name, text).arg(amount)), name, fault,
                    amount);
            };
            row("read-only disk", mountForReading, 0);
            row("read-only folder", forbidWriting, 0);
            row("pages left", fillDisk, 0);
            row("no more bytes than", limitBytes, 0);
            // A disk that fills up under the last buffer of settings is beyond a host's reach:
            // QSettings replaces the file all the same.
            if (name == "settings")
                continue;
            row("pages left", fillDisk, 1);
            for (const int bytes : {1, 600, int(m_subjects[name].contents[New].size()) - 1})
                row("no more bytes than", limitBytes, bytes);
        }
    }

    void aFaultLeavesTheOld() {
        QFETCH(QString, subject);
        QFETCH(Fault, fault);
        QFETCH(int, amount);
        const Subject& saved = m_subjects[subject];
        const int status = inChild([&] {
            fault(saved, amount);
            const QStringList before = QDir(saved.folder()).entryList(QDir::Files);
            return int(saved.save(New)) + (saved.read() == saved.contents[Old] ? 0 : 2) +
                   (QDir(saved.folder()).entryList(QDir::Files) == before ? 0 : 4);
        });
        QVERIFY2(status == 0,
                 qPrintable(QString("said saved 256, not the old 512, left files 1024: "
                                    "%1")
                                .arg(status)));
        goesOn(saved);
    }

    void deathLeavesOldOrNew_data() {
        const Kestrel::Test::Columns<QString> row("subject");
        for (const QString& name : m_subjects.keys())
            row(qPrintable(name), name);
    }

    void deathLeavesOldOrNew() {
        QFETCH(QString, subject);
        const Subject& saved = m_subjects[subject];
        std::mt19937 random(8);
        for (int i = 0; i < 20; ++i) {
            // Behind the lock of the settings, which is written in one go.
            const auto byte = 100 + random() % unsigned(saved.contents[New].size() - 100);
            const int status = inChild([&] {
                limitFiles(byte, true);
                return saved.save(New);
            });
            QVERIFY(WIFSIGNALED(status));
            QCOMPARE(saved.read(), saved.contents[Old]);
        }
        for (int i = 0; i < 30; ++i) {
            const auto saveOnAndOn = [&] {
                for (bool more = false; saved.save(more ? New : Old); more = !more) {
                }
                return EXIT_FAILURE;
            };
            QVERIFY(WIFSIGNALED(inChild(saveOnAndOn, int(random() % 15000))));
            const QByteArray left = saved.read();
            QVERIFY(left == saved.contents[Old] || left == saved.contents[New]);
            // An empty lock is taken for dead when it is a second old.
            if (const QFileInfo lock(saved.path + ".lock"); lock.exists() && lock.size() == 0)
                QTest::qSleep(1100);
            goesOn(saved);
        }
    }

    // A sample that cannot be written is told of.
    void fullDiskForTheSample() {
        const QTemporaryDir outside; // of the disk that is full
        const QByteArray words = QFile::encodeName(outside.filePath("words"));
        const QByteArray cache = QFile::encodeName(m_folder.path());
        const QByteArray tour = cache + "/tour";
        const int status = inChild([&] {
            fillDisk({m_folder.path() + "/file", [](Content) { return true; }}, 8);
            ::setenv("XDG_CACHE_HOME", cache, 1);
            if (std::freopen(words, "w", stderr))
                ::execl(KXUI_WORKBENCH_TOOL, KXUI_WORKBENCH_TOOL, "--tour", tour.constData(),
                        nullptr);
            return 127;
        });
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), 1);
        QFile file(outside.filePath("words"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray said = file.readAll();
        QVERIFY2(said.contains("The sample cannot be written"), said.constData());
    }

private:
    /** No fault of the past keeps the file from being saved. */
    static void goesOn(const Subject& subject) {
        ::chmod(QFile::encodeName(subject.folder()), 0755);
        ::chmod(QFile::encodeName(subject.path), 0644);
        for (const Content content : {New, Old}) {
            QVERIFY(subject.save(content));
            QCOMPARE(subject.read(), subject.contents[content]);
        }
    }

    QTemporaryDir m_folder;
    QMap<QString, Subject> m_subjects;
    Capture m_captures[2]{Capture(30), Capture(300)};
    Workspace m_workspaces[2]{Workspace(3), Workspace(60)};
};

KXUI_TEST(SavingTest);
#include "SavingTest.moc"
