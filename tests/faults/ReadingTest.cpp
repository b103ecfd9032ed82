#include "../dock/Workspace.h"
#include "../workbench/TestImages.h"
#include "media/FrameDecoder.h"

#include <KxUI/dock/WidgetTracker.h>
#include <KxUI/files/FileInfoList.h>
#include <KxUI/settings/AppSettings.h>
#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QMessageBox>
#include <QScreen>
#include <QSplitter>

#include <atomic>
#include <random>
#include <thread>

using namespace Kestrel::UI;
using namespace Kestrel::Workbench;
using Kestrel::Test::TestImage;
using Kestrel::Test::Workspace;

namespace {

/** Does a thing over and over on a thread of its own. */
class Meanwhile {
public:
    template <class Deed>
    explicit Meanwhile(Deed deed)
        : m_thread([this, deed]() mutable {
            while (!m_stop)
                deed();
        }) {}
    ~Meanwhile() {
        m_stop = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_stop{false};
    std::thread m_thread;
};

QByteArray anyBytes(unsigned seed, int count) {
    std::mt19937 random(seed);
    QByteArray bytes;
    while (bytes.size() < count)
        bytes += char(random());
    return bytes;
}

} // namespace

class ReadingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void garbageForSettings_data() {
        const Kestrel::Test::Columns<QByteArray, bool> row("content", "known");
        const QByteArray good = "[General]\nwindow=@Rect(40 50 300 200)\n";
        for (const unsigned seed : {1U, 2U, 3U})
            row("noise " + QByteArray::number(seed), anyBytes(seed, 20000), false);
        for (int i = 0; i < good.size(); ++i)
            row("cut at " + QByteArray::number(i), good.left(i), i > good.indexOf(')'));
        row("noise behind", good + "x=" + anyBytes(4, 5000), true);
        row("brackets", good + QByteArray("[").repeated(100000), true);
        const auto value = [&](const char* text, bool known) {
            row(text,
                "[General]\nwindow=" + QByteArray(text) + "\nsplit=@ByteArray(" +
                    anyBytes(5, 60).toPercentEncoding() + ")\n",
                known);
        };
        value("@Rect(a b c d)", false);
        value("@Rect(40 50)", false);
        value("@Point(1 2)", false);
        value("@Rect(-2147483648 -2147483648 300 200)", true);
        value("@Rect(2147483000 0 300 200)", true);
        value("@Rect(0 0 2147483647 2147483647)", true);
        value("@ByteArray(\\xff", false);
    }

    // The window is where it can be seen, and what is kept next is read again.
    void garbageForSettings() {
        QFETCH(QByteArray, content);
        QFETCH(bool, known);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder->path());
        const QString path = AppSettings().fileName();
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();

        QWidget window;
        window.setObjectName("window");
        window.resize(200, 100);
        QSplitter split(&window);
        split.setObjectName("split");
        WidgetTracker tracker;
        QCOMPARE(tracker.restoreWidget(&window), known);
        window.show();
        QVERIFY(window.screen()->geometry().intersects(window.geometry()));

        tracker.registerWidget(&window, true);
        window.setGeometry(70, 80, 320, 240);
        const QRect last(window.pos(), window.size());
        window.close();
        QCOMPARE(QSettings(path, QSettings::IniFormat).value("window").toRect(), last);
    }

    // Files come and go; those that stay are listed each time.
    void filesVanishWhileListed() {
        const QDir folder(m_folder->path());
        const auto touch = [&](const QString& name) {
            return QFile(folder.filePath(name)).open(QIODevice::WriteOnly);
        };
        for (int frame = 1; frame <= 40; ++frame)
            QVERIFY(touch(QString("keep.%1.exr").arg(frame, 4, 10, QChar('0'))));
        const Meanwhile churn([&, random = std::mt19937(1)]() mutable {
            const QString name = QString("go.%1").arg(random() % 300, 4, 10, QChar('0'));
            if (random() % 5 == 0)
                folder.mkdir(name);
            else if (!QFile::remove(folder.filePath(name)) && !folder.rmdir(name))
                touch(name);
        });
        QElapsedTimer time;
        time.start();
        for (int round = 0; round < 20 || time.elapsed() < 500; ++round) {
            FileInfoList list;
            list.setShouldFilterSequences(round % 2 == 0);
            list.fill(m_folder->path());
            int kept = 0;
            while (list.lazyStatItem()) {
                const QString name = list.lazyStatItem()->fileName();
                const bool stays = name.startsWith("keep");
                kept += stays;
                QVERIFY(list.fetchLazyStat() || !stays);
                if (round % 2 == 0 && stays)
                    QCOMPARE(name, QString("keep.####.exr 1-40"));
                list.onLazyStatFetchNext();
            }
            QCOMPARE(kept, round % 2 == 0 ? 1 : 40);
        }
        FileInfoList list;
        QCOMPARE(list.fill(m_folder->filePath("gone")), 0);
        QVERIFY(!list.errorString().isEmpty());
    }

    void filesVanishWhileDecoded_data() {
        const Kestrel::Test::Columns<QString> row("name");
        for (const char* name : {"a.exr", "a.png", "a.tif", "a.jpg", "a.dpx"})
            row(name, name);
    }

    // Removed, cut short, or written over: a picture or a reason, and the next one is whole again.
    void filesVanishWhileDecoded() {
        QFETCH(QString, name);
        TestImage image;
        image.spec = OIIO::ImageSpec(
            300, 200, 3, name == "a.exr" ? OIIO::TypeDesc::HALF : OIIO::TypeDesc::UINT8);
        const QString path = m_folder->filePath(name), good = m_folder->filePath("good-" + name);
        QVERIFY(image.write(good));
        const qint64 size = QFileInfo(good).size();
        {
            // The image library tells of damage on the standard error, too.
            const Meanwhile churn([&, random = std::mt19937(2)]() mutable {
                switch (random() % 4) {
                case 0:
                    QFile::remove(path);
                    break;
                case 1:
                    QFile::resize(path, qint64(random() % unsigned(size)));
                    break;
                default:
                    QFile::remove(path);
                    QFile::copy(good, path);
                }
            });
            QElapsedTimer time;
            time.start();
            for (int round = 0; round < 20 || time.elapsed() < 300; ++round) {
                const Frame frame = decodeFrame(path.toStdString(), 1);
                QVERIFY(frame.state == Frame::State::Ready
                            ? frame.image.size() == QSize(300, 200)
                            : frame.image.isNull() && !frame.message.isEmpty());
            }
        }
        QFile::remove(path);
        QVERIFY(QFile::copy(good, path));
        QVERIFY(decodeFrame(path.toStdString(), 1).state == Frame::State::Ready);
    }

    // All or nothing by restoreWholeLayout; a sound workspace by restoreLayout, whatever is left.
    void layoutCutAtAnyByte() {
        Workspace workspace;
        workspace.resize(640, 480); // within the screen, so that it is restored as it was
        for (const QStringList& names : {QStringList{"a", "b"}, {"c"}, {"d", "e", "f"}})
            workspace.pane(names);
        workspace.show();
        const QByteArray good = workspace.saved();
        for (int bytes = 0; bytes < good.trimmed().size(); ++bytes) {
            QVERIFY(!workspace.wholeRestored(good.left(bytes)));
            QCOMPARE(workspace.saved(), good);
        }
        QTimer closer;
        connect(&closer, &QTimer::timeout, [] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget()))
                box->accept();
        });
        closer.start(0);
        for (int bytes = 0; bytes < good.trimmed().size(); bytes += 13) {
            QVERIFY(!workspace.restored(good.left(bytes)));
            workspace.saved();
            // The old tree is left to the host.
            QList<DockSplitter*> trees;
            for (QWidget* window : QApplication::topLevelWidgets()) {
                if (auto* tree = qobject_cast<DockSplitter*>(window))
                    trees.append(tree);
            }
            qDeleteAll(trees);
        }
        QVERIFY(workspace.wholeRestored(good));
        QCOMPARE(workspace.saved(), good);
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
};

KXUI_TEST(ReadingTest);
#include "ReadingTest.moc"
