#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileManager.h>

#include <support/TestRegistry.h>

#include <QAbstractItemModelTester>
#include <QDateTime>
#include <QDir>
#include <QItemSelectionModel>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <fstream>
#include <random>

using namespace Kestrel::UI;

namespace {

QStringList rowsOf(const FileListModel& model) {
    QStringList rows;
    for (int row = 0; row < model.rowCount(); ++row) {
        const QString frames = model.index(row, FileListModel::Frames).data().toString();
        rows << model.index(row, 0).data().toString() + (frames.isEmpty() ? "" : " " + frames);
    }
    return rows;
}

} // namespace

class FileListModelTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* m_root = nullptr;

    void write(const QString& name, int bytes = 0) const {
        std::ofstream(m_root->filePath(name).toStdString()) << std::string(std::size_t(bytes), '-');
    }

    void gather(FileListModel& model) const {
        QSignalSpy settled(&model, &FileListModel::settled);
        QSignalSpy finished(model.gatherer(), &FileGatherer::finished);
        model.gatherer()->gatherPath(m_root->path());
        QTRY_VERIFY_WITH_TIMEOUT(finished.count() == 1 && !settled.isEmpty(), 20000);
        settle(model);
    }

    static void settle(FileListModel& model) {
        QTRY_VERIFY_WITH_TIMEOUT(model.listing() == model.gatherer()->listing(), 20000);
    }

private slots:
    void init() { m_root = new QTemporaryDir; }
    void cleanup() { delete m_root; }

    void rowsAndTexts() {
        for (const int frame : {1, 2, 3, 7})
            write(QString("plate.%1.exr").arg(frame, 4, 10, QChar('0')), 2048);
        write("b.txt", 3);
        write("odd\n\xe2\x80\xae.x", 1);
        QDir(m_root->path()).mkdir("z");
        FileListModel model;
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        gather(model);
        QCOMPARE(rowsOf(model),
                 (QStringList{"z", "b.txt", QString("odd\u240a\ufffd.x"), "plate.####.exr 1-7"}));
        const QModelIndex plate = model.indexOf("plate.0003.exr");
        QCOMPARE(plate.row(), 3);
        QCOMPARE(model.indexOf("plate.####.exr"), plate);
        QVERIFY(!model.indexOf("plate.0004.exr").isValid() && !model.indexOf("none").isValid());
        QCOMPARE(plate.data(FileListModel::RangesRole).toString(), QString("1-3 7"));
        QCOMPARE(plate.data(FileListModel::MissingRole).toInt(), 3);
        QCOMPARE(plate.data(FileListModel::FileInfoRole).value<FileInfo>().missingFrames(), 3);
        QCOMPARE(plate.data(FileListModel::PathRole).toByteArray(),
                 m_root->path().toUtf8() + "/plate.####.exr");
        QCOMPARE(plate.siblingAtColumn(FileListModel::Type).data().toString(),
                 QString("OpenEXR image, sequence"));
        QVERIFY(!plate.data(FileListModel::SizeRole).isValid());
        model.setVisibleRows(0, 9);
        QTRY_COMPARE(plate.data(FileListModel::SizeRole).toInt(), 4 * 2048);
        QCOMPARE(plate.siblingAtColumn(FileListModel::Size).data().toString(), QString("≈ 8.0 kB"));
        QVERIFY(
            plate.siblingAtColumn(FileListModel::Modified).data().toString().startsWith("Today"));
        QCOMPARE(plate.data(Qt::AccessibleTextRole).toString().left(84),
                 QString("plate.####.exr, OpenEXR image, sequence, frames 1 to 7, 3 missing, "
                         "about 8.0 kB, mod"));
        const std::unique_ptr<QMimeData> dragged(model.mimeData({plate, model.index(1, 0)}));
        QByteArray addresses;
        for (const char* name :
             {"plate.0001.exr", "plate.0002.exr", "plate.0003.exr", "plate.0007.exr", "b.txt"})
            addresses += "file://" + m_root->path().toUtf8() + '/' + name + "\r\n";
        QCOMPARE(dragged->data("text/uri-list"), addresses);
        QVERIFY(dragged->data("application/x-kxui-paths")
                    .startsWith(m_root->path().toUtf8() + QByteArray("/plate.####.exr\0", 16)));
    }

    void orders() {
        write("aa", 30);
        write("ab", 10);
        write("B.exr", 20);
        write("f.1.dpx");
        write("f.5.dpx");
        QDir(m_root->path()).mkdir("m");
        FileListModel model;
        gather(model);
        model.setVisibleRows(0, 9);
        const struct {
            int column;
            Qt::SortOrder order;
            QStringList rows;
        } table[] = {
            {FileListModel::Name, Qt::DescendingOrder, {"m", "f.#.dpx", "B.exr", "ab", "aa"}},
            {FileListModel::Size, Qt::AscendingOrder, {"m", "f.#.dpx", "ab", "B.exr", "aa"}},
            {FileListModel::Size, Qt::DescendingOrder, {"m", "aa", "B.exr", "ab", "f.#.dpx"}},
            {FileListModel::Type, Qt::AscendingOrder, {"m", "aa", "ab", "f.#.dpx", "B.exr"}},
            {FileListModel::Missing, Qt::DescendingOrder, {"m", "aa", "ab", "B.exr", "f.#.dpx"}}};
        const auto names = [&] {
            QStringList all;
            for (int row = 0; row < model.rowCount(); ++row)
                all << model.index(row, 0).data().toString();
            return all;
        };
        for (const auto& row : table) {
            model.sort(row.column, row.order);
            QTRY_COMPARE_WITH_TIMEOUT(names(), row.rows, 20000);
        }
        model.setFoldersFirst(false);
        model.sort(FileListModel::Name);
        QTRY_COMPARE(names(), (QStringList{"aa", "ab", "B.exr", "f.#.dpx", "m"}));
        model.setSearchText("  X b");
        QTRY_COMPARE(names(), QStringList{"B.exr"});
        model.setSearchText("5");
        QTRY_COMPARE(names(), QStringList{"f.#.dpx"});
        model.setSearchText("4"); // in its range, but there is no such file
        QTRY_COMPARE(model.rowCount(), 0);
        model.setSearchText({});
        QTRY_COMPARE(model.rowCount(), 5);
    }

    // What arrives moves nothing while somebody is at it.
    void holdsItsOrder() {
        write("a", 30);
        write("b", 10);
        FileListModel model;
        gather(model);
        model.setHoldsOrder(true);
        model.sort(FileListModel::Size);
        const auto sizeOf = [&](int row) {
            return model.index(row, 0).data(FileListModel::SizeRole);
        };
        QTRY_VERIFY_WITH_TIMEOUT(sizeOf(0).isValid() && sizeOf(1).isValid(), 20000);
        QTest::qWait(600);
        QCOMPARE(model.index(0, 0).data().toString(), QString("a"));
        model.setHoldsOrder(false);
        QTRY_COMPARE(model.index(0, 0).data().toString(), QString("b"));
    }

    // A folder in which anything may happen: selection and current stay with their items, and the
    // rows are those of a model that sees it for the first time.
    void staysInPlace() {
        std::mt19937 random(3);
        FileListModel model;
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.gatherer()->setWatch(FileGatherer::Watch::Never);
        QItemSelectionModel selection(&model);
        write("keep.0001.exr");
        write("m");
        gather(model);
        QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
        const QPersistentModelIndex kept = model.indexOf("keep.0001.exr");
        selection.setCurrentIndex(kept, QItemSelectionModel::Select | QItemSelectionModel::Rows);
        for (int round = 0; round < 40; ++round) {
            for (int i = 0; i < 12; ++i) {
                const QString name =
                    QString("%1%2.exr").arg(QChar("kmz"[random() % 3])).arg(random() % 30 * 3);
                if (random() % 2)
                    write(name);
                else
                    QFile::remove(m_root->filePath(name));
            }
            if (round == 9) // the frame becomes a sequence, and stays the row that it was
                write("keep.0002.exr");
            if (round % 10 == 7)
                model.sort(FileListModel::Name,
                           round % 20 == 7 ? Qt::DescendingOrder : Qt::AscendingOrder);
            gather(model);
            FileListModel fresh;
            fresh.sort(FileListModel::Name, round % 20 >= 7 && round % 20 < 17
                                                ? Qt::DescendingOrder
                                                : Qt::AscendingOrder);
            gather(fresh);
            QTRY_COMPARE_WITH_TIMEOUT(rowsOf(model), rowsOf(fresh), 20000);
        }
        QVERIFY(resets.isEmpty());
        QCOMPARE(kept.data().toString(), QString("keep.####.exr"));
        QVERIFY(selection.isSelected(kept) && selection.currentIndex() == kept);
    }

    void words() {
        const QByteArray names[] = {"a.exr", "b.JPG", "notes.txt", "Makefile", ".rc"};
        const char* const types[] = {"OpenEXR image", "JPEG image", "TXT file", "File", "File"};
        for (int i = 0; i < 5; ++i)
            QCOMPARE(FileManager::fileTypeName(names[i]), QString(types[i]));
        QCOMPARE(FileManager::errorText(0), QString());
        QCOMPARE(FileManager::errorText(ENOENT), QString("This folder does not exist."));
        QVERIFY(FileManager::errorText(EIO).startsWith("This folder cannot be read: "));
        QCOMPARE(FileManager::errorText(-1), QString("Too many folders do not answer."));
    }
};

KXUI_TEST(FileListModelTest);

#include "FileListModelTest.moc"
