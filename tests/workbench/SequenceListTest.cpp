#include "TestImages.h"

#include <support/TestRegistry.h>

#include "panels/FolderModel.h"
#include "panels/SequenceListPanel.h"
#include "sample/SampleGenerator.h"

#include <KxUI/values/SearchField.h>

#include <QTreeView>

#include <unistd.h>

using namespace Kestrel::Workbench;
using Kestrel::Base::Time;

Q_DECLARE_METATYPE(Kestrel::Workbench::Sequence)

class SequenceListTest : public QObject {
    Q_OBJECT

private:
    static void write(const QString& path, int bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(bytes, 'x'));
    }

    static QStringList cells(const FolderModel& model, int row) {
        QStringList texts;
        for (int column = 0; column < FolderModel::ColumnCount; ++column)
            texts << model.index(row, column).data().toString();
        return texts;
    }

private slots:
    void initTestCase() {
        qRegisterMetaType<Sequence>("Kestrel::Workbench::Sequence");
        qRegisterMetaType<Time>("Kestrel::Base::Time");
    }

    void searching() {
        const QTemporaryDir folder;
        for (const char* name : {"plate.exr", "other.exr", "plate_clean.exr", "mask.png"})
            write(folder.filePath(QLatin1String(name)), 10);
        SequenceListPanel panel;
        panel.openFolder(QFile::encodeName(folder.path()));
        panel.show();
        auto* field = panel.findChild<Kestrel::UI::SearchField*>();
        const auto shown = [&panel] {
            QStringList names;
            for (int row = 0; row < panel.model()->rowCount(); ++row) {
                if (!panel.view()->isRowHidden(row, {}))
                    names << panel.model()->index(row, 0).data().toString();
            }
            return names.join(QLatin1Char(' '));
        };
        const auto current = [&panel] { return panel.view()->currentIndex().data().toString(); };
        QTest::keyClicks(field, QStringLiteral("exr plate"));
        QTest::keyClick(field, Qt::Key_Down); // at once, and to the list
        QCOMPARE(shown(), QStringLiteral("plate.exr plate_clean.exr"));
        QCOMPARE(current(), QStringLiteral("plate.exr"));
        QTest::keyClick(field, Qt::Key_F3);
        QCOMPARE(current(), QStringLiteral("plate_clean.exr"));
        QTest::keyClick(field, Qt::Key_F3);
        QCOMPARE(current(), QStringLiteral("plate.exr"));
        panel.reload(); // the search was in the list that is gone
        QCOMPARE(field->text(), QString());
        QCOMPARE(shown().count(QLatin1Char(' ')), 3);
    }

    void listing() {
        const QTemporaryDir folder;
        for (const int frame : {1, 2, 3, 10})
            write(folder.filePath(QStringLiteral("b.%1.exr").arg(frame, 4, 10, QLatin1Char('0'))),
                  1024);
        for (const int frame : {9, 10, 11})
            write(folder.filePath(QString::fromUtf8("é a%1.png").arg(frame)), 100);
        write(folder.filePath("still.0042.exr"), 10);
        write(folder.filePath(".hidden"), 10);
        QVERIFY(QDir(folder.path()).mkdir("zz"));
        QVERIFY(QFile::link("zz", folder.filePath("link")));

        SequenceListPanel panel;
        QSignalSpy chosen(&panel, &SequenceListPanel::sequenceChosen);
        panel.openFolder(QFile::encodeName(folder.path()));
        FolderModel& model = *panel.model();
        QTRY_VERIFY(model.isComplete());
        QCOMPARE(model.rowCount(), 5);
        QCOMPARE(cells(model, 0), (QStringList{"zz", "", "", ""}));
        const int gappy = model.rowOfFile("b.0003.exr");
        QCOMPARE(cells(model, gappy),
                 (QStringList{"b.####.exr", QString::fromUtf8("1–10"), "6", "4.0 KiB"}));

        QVERIFY(panel.chooseFirst());
        QCOMPARE(chosen.count(), 1);
        const auto shot = chosen.takeFirst().at(0).value<Sequence>();
        QCOMPARE(shot.members().size(), std::size_t(3)); // the first in natural order
        QCOMPARE(shot.lastTime(), Time(11));

        panel.openFile(QFile::encodeName(folder.filePath(QString::fromUtf8("é a10.png"))));
        QCOMPARE(chosen.takeFirst().at(1).value<Time>(), Time(10));
        panel.openFile(QFile::encodeName(folder.filePath("still.0042.exr")));
        QCOMPARE(chosen.takeFirst().at(0).value<Sequence>().firstTime(), Time(42));

        // Into a link to a folder, and up again to where it was left.
        panel.openFolder(QFile::encodeName(folder.path()));
        const int link = model.rowOfFile("link");
        emit panel.view()->activated(model.index(link, 0));
        QVERIFY(model.folder().endsWith("/link"));
        QVERIFY(model.problem().contains("empty"));
        QTest::keyClick(panel.view(), Qt::Key_Backspace);
        QCOMPARE(model.folder(), QFile::encodeName(folder.path()));
        QCOMPARE(panel.view()->currentIndex().row(), model.rowOfFile("link"));
    }

    void foldersThatCannotBeListed() {
        const QTemporaryDir folder;
        FolderModel model;
        model.setFolder(QFile::encodeName(folder.filePath("none")));
        QVERIFY(model.problem().contains("does not exist"));
        write(folder.filePath("file"), 1);
        model.setFolder(QFile::encodeName(folder.filePath("file")));
        QVERIFY(model.problem().contains("not a folder"));
        if (::geteuid() != 0) {
            QVERIFY(QDir(folder.path()).mkdir("closed"));
            QFile::setPermissions(folder.filePath("closed"), QFile::Permissions());
            model.setFolder(QFile::encodeName(folder.filePath("closed")));
            QVERIFY(model.problem().contains("permission"));
        }
        QVERIFY(model.isComplete());
        QCOMPARE(model.rowCount(), 0);
    }

    // Names come at once; the interface gets its turn while the statuses come in.
    void tenThousandFiles() {
        const QTemporaryDir folder;
        for (int i = 0; i < 5000; ++i) {
            write(folder.filePath(QStringLiteral("run.%1.exr").arg(i)), 1);
            write(folder.filePath(QStringLiteral("note %1a").arg(i * i)), 1);
        }
        FolderModel model;
        model.setFolder(QFile::encodeName(folder.path()));
        QVERIFY(model.rowCount() >= 1);
        QVERIFY(!model.isComplete());
        int turns = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, [&turns] { ++turns; });
        timer.start(0);
        QTRY_VERIFY_WITH_TIMEOUT(model.isComplete(), 60000);
        QVERIFY(turns > 1);
        const int run = model.rowOfFile("run.17.exr");
        QVERIFY(run >= 0 && model.status(run));
        QCOMPARE(model.status(run)->files, std::int64_t(5000));

        // Another folder in the middle of it: old answers are dropped.
        model.setFolder(QFile::encodeName(folder.path()));
        const QTemporaryDir other;
        write(other.filePath("only"), 7);
        model.setFolder(QFile::encodeName(other.path()));
        QTRY_VERIFY(model.isComplete());
        QCOMPARE(model.rowCount(), 1);
        QCOMPARE(model.status(0)->size, std::uint64_t(7));
    }

    void sampleIsWholeOrNotThere() {
        const QTemporaryDir cache;
        const QString folder = cache.filePath("deep/sample");
        {
            SampleGenerator generator(folder);
            QSignalSpy progressed(&generator, &SampleGenerator::progressed);
            QSignalSpy finished(&generator, &SampleGenerator::finished);
            generator.start();
            QVERIFY(progressed.wait(20000));
            generator.cancel();
            QVERIFY(finished.count() == 1 || finished.wait(20000));
            QCOMPARE(finished.first().at(0).toBool(), false);
            QVERIFY(!generator.exists());
        }
        QVERIFY(QDir(cache.filePath("deep")).isEmpty());

        write(cache.filePath("blocked"), 1);
        SampleGenerator blocked(cache.filePath("blocked/sample"));
        QSignalSpy finished(&blocked, &SampleGenerator::finished);
        blocked.start();
        QVERIFY(finished.wait(20000));
        QVERIFY(!finished.first().at(1).toString().isEmpty());
    }
};

KXUI_TEST(SequenceListTest);
#include "SequenceListTest.moc"
