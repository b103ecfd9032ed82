#include "../eventgraph/FakeTimer.h"
#include "Faults.h"

#include <KxUI/dock/Dock.h>
#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventGraphWriter.h>
#include <KxUI/eventgraph/EventTrack.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/settings/AppSettings.h>
#include <support/TestRegistry.h>

#include <QDir>
#include <QRect>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QtTest>

#include <array>
#include <memory>
#include <random>
#include <sys/wait.h>

using namespace Kestrel::UI;
using Kestrel::Test::befall;
using Kestrel::Test::Fault;
using Kestrel::Test::inChild;

namespace {

enum Content { Old, New };

/** A file that is saved with one of two contents; the new one is the larger. */
struct Subject {
    QString path;
    std::function<bool(Content)> save;
    std::array<QByteArray, 2> contents{};

    /** Lines in order: settings are written in any. */
    QByteArray read() const {
        QFile file(path);
        QList<QByteArray> lines;
        if (file.open(QIODevice::ReadOnly))
            lines = file.readAll().split('\n');
        std::sort(lines.begin(), lines.end());
        return lines.join('\n');
    }
};

struct Capture {
    explicit Capture(int events)
        : track(QStringLiteral("track"), Qt::red, 0, EventTrack::TrackType::Timeline, 0.0F, 1.0F,
                100000, 100000, 50, nullptr) {
        view.addTrack(&track);
        view.start(1.0F, EventGraphMode::Forwards);
        for (int i = 0; i < events; ++i)
            track.addEvent(EventTrack::Type::Sample, new EventUserDataString(QString::number(i)),
                           i);
        view.stop();
    }
    Kestrel::Test::FakeTimer timer;
    EventGraphView view{nullptr, &timer};
    EventTrack track;
};

struct Workspace : DockMainWindow {
    explicit Workspace(int panes) {
        setAttribute(Qt::WA_DeleteOnClose, false);
        for (int i = 0; i < panes; ++i) {
            Dock* dock = createDock();
            addWidget(dock);
            auto* page = new QWidget;
            page->setObjectName(QStringLiteral("page %1").arg(i));
            dock->addWidget(page, false, false);
        }
    }
};

} // namespace

Q_DECLARE_METATYPE(Kestrel::Test::Fault)

class SavingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        QFile::setPermissions(m_folder.path(), QFile::Permissions(0x7755));
        const QString file = m_folder.filePath("%1/file");
        m_subjects["capture"] = {file.arg("capture"), [this](Content content) {
                                     return m_captures[content].view.save(
                                         m_subjects["capture"].path,
                                         EventGraphWriter::IncludeUserData);
                                 }};
        m_subjects["trace"] = {file.arg("trace"), [this](Content content) {
                                   return m_captures[content].view.exportTrace(
                                       m_subjects["trace"].path);
                               }};
        // The host opens the file; what it needs is to be told the truth.
        m_subjects["layout"] = {file.arg("layout"), [this](Content content) {
                                    QSaveFile saved(m_subjects["layout"].path);
                                    return saved.open(QIODevice::WriteOnly) &&
                                           m_workspaces[content].saveLayout(&saved, nullptr) &&
                                           saved.commit();
                                }};
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.path());
        m_subjects["settings"] = {AppSettings().fileName(), [](Content content) {
                                      AppSettings settings;
                                      settings.sync();
                                      settings.clear();
                                      for (int i = 0; i < (content == New ? 300 : 30); ++i)
                                          settings.setValue(QString::number(i), QRect(i, i, 9, 9));
                                      settings.sync();
                                      return settings.status() == QSettings::NoError;
                                  }};
        for (Subject& subject : m_subjects) {
            QVERIFY(QDir().mkpath(QFileInfo(subject.path).path()));
            for (const Content content : {New, Old}) {
                QVERIFY(subject.save(content));
                subject.contents[content] = subject.read();
            }
            // Beside the old one, the new one is more than a page.
            QVERIFY2(subject.contents[New].size() > 4096, subject.contents[New].constData());
        }
    }

    void aFaultLeavesTheOld_data() {
        QTest::addColumn<QString>("subject");
        QTest::addColumn<Fault>("fault");
        QTest::addColumn<qint64>("amount");
        for (const QString& name : m_subjects.keys()) {
            const auto row = [&](const char* text, Fault fault, qint64 amount) {
                QTest::addRow("%s, %s %d", qPrintable(name), text, int(amount))
                    << name << fault << amount;
            };
            // A disk that fills up under the last buffer of settings is beyond a host's reach:
            // QSettings replaces the file all the same.
            QList<int> bytes{0};
            if (name != "settings") {
                bytes << 1 << 600 << m_subjects[name].contents[New].size() - 1;
                row("pages left", Fault::FullDisk, 1);
            }
            for (const int most : bytes)
                row("no more bytes than", Fault::FileLimit, most);
            row("pages left", Fault::FullDisk, 0);
            row("read-only disk", Fault::ReadOnlyDisk, 0);
            row("read-only folder", Fault::ReadOnlyFolder, 0);
        }
    }

    void aFaultLeavesTheOld() {
        QFETCH(QString, subject);
        QFETCH(Fault, fault);
        QFETCH(qint64, amount);
        const Subject& saved = m_subjects[subject];
        const QString folder = QFileInfo(saved.path).path();
        enum { Good, SaidSaved = 1, NotTheOld = 2, LeftSomething = 4 };
        const int status = inChild([&] {
            const QStringList before = QDir(folder).entryList(QDir::Files);
            befall(fault, amount, folder);
            return (saved.save(New) ? SaidSaved : Good) |
                   (saved.read() == saved.contents[Old] ? Good : NotTheOld) |
                   (QDir(folder).entryList(QDir::Files) == before ? Good : LeftSomething);
        });
        QVERIFY(WIFEXITED(status));
        QCOMPARE(WEXITSTATUS(status), int(Good));
        goesOn(saved);
    }

    void deathLeavesOldOrNew_data() {
        QTest::addColumn<QString>("subject");
        for (const QString& name : m_subjects.keys())
            QTest::newRow(qPrintable(name)) << name;
    }

    void deathLeavesOldOrNew() {
        QFETCH(QString, subject);
        const Subject& saved = m_subjects[subject];
        std::mt19937 random(8);
        for (int i = 0; i < 20; ++i) {
            const auto byte = qint64(random() % unsigned(saved.contents[New].size()));
            const int status = inChild([&] {
                befall(Fault::DeathAtByte, byte, {});
                return int(saved.save(New));
            });
            QVERIFY2(WIFSIGNALED(status), qPrintable(QString("byte %1").arg(byte)));
            QCOMPARE(saved.read(), saved.contents[Old]);
        }
        for (int i = 0; i < 30; ++i) {
            const int status = inChild(
                [&] {
                    for (bool more = false; saved.save(more ? New : Old); more = !more) {
                    }
                    return 0;
                },
                int(random() % 15000));
            QVERIFY(WIFSIGNALED(status));
            const QByteArray left = saved.read();
            QVERIFY(left == saved.contents[Old] || left == saved.contents[New]);
        }
        goesOn(saved);
    }

private:
    /** No fault of the past keeps the file from being saved. */
    static void goesOn(const Subject& subject) {
        const QFileInfo info(subject.path);
        QFile::setPermissions(info.path(), QFile::Permissions(0x7755));
        QFile::setPermissions(info.filePath(), QFile::Permissions(0x6644));
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
