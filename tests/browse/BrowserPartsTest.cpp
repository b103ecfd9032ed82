#include <KxUI/browse/BrowserArea_p.h>
#include <KxUI/browse/BrowserMemory_p.h>
#include <KxUI/browse/FavoritesFile.h>
#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/FileBrowser_p.h>
#include <KxUI/browse/FileCellLayout_p.h>
#include <KxUI/browse/ThumbnailCache_p.h>
#include <KxUI/browse/ThumbnailLoader_p.h>
#include <KxUI/browse/TypeAhead_p.h>
#include <KxUI/files/FileListModel.h>

#include <support/Input.h>
#include <support/TestRegistry.h>

#include <QAccessible>
#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <fstream>
#include <thread>

using namespace Kestrel::UI;

namespace {

/** Answers from another thread, when it is told to. */
class LateSource : public IThumbnailSource {
public:
    std::shared_ptr<void> request(const QByteArray& path, std::int64_t, const QSize& size,
                                  Answer answer) override {
        asked.push_back(path.mid(path.lastIndexOf('/') + 1));
        answers.push_back([=] {
            QImage image(size, QImage::Format_RGB32);
            image.fill(Qt::red);
            answer(image);
        });
        return std::shared_ptr<void>(nullptr, [this](void*) { ++dropped; });
    }

    void answerAll() {
        std::thread([this] {
            for (const auto& answer : answers)
                answer();
        }).join();
    }

    std::vector<QByteArray> asked;
    std::vector<std::function<void()>> answers;
    int dropped = 0;
};

} // namespace

class BrowserPartsTest : public QObject {
    Q_OBJECT

private slots:
    void typeAhead() {
        const std::vector<std::string> names{"Apple", "apricot", "bee", "ärger", "a b", "\xff.x"};
        const auto nameOf = [&](int row) -> std::string_view {
            return names[static_cast<std::size_t>(row)];
        };
        const struct {
            int current;
            const char* typed; // a letter each 100 ms; a line ends with a pause
            int row;
        } table[] = {{-1, "a", 0},  {0, "a", 1},  {0, "aa", 4},  {4, "a", 0},
                     {0, "apr", 1}, {1, "AP", 0}, {5, "b", 2},   {2, "b", 2},
                     {-1, "Ä", 3},  {0, "a ", 4}, {2, "zz", -1}, {2, "bx", -1}};
        for (const auto& row : table) {
            TypeAhead ahead;
            int current = row.current;
            int found = -1;
            std::int64_t now = 0;
            for (const QChar c : QString::fromUtf8(row.typed)) {
                found = ahead.find(c, current, static_cast<int>(names.size()), nameOf, now += 100);
                current = found < 0 ? current : found;
            }
            QVERIFY2(found == row.row, row.typed);
        }
        TypeAhead ahead;
        QCOMPARE(ahead.find("b", -1, 6, nameOf, 0), 2);
        QVERIFY(ahead.isActive(1000) && !ahead.isActive(1001));
        QCOMPARE(ahead.find("a", 2, 6, nameOf, 1001), 4);
        QCOMPARE(ahead.find("a", -1, 0, nameOf, 9000), -1);
    }

    void memory() {
        const auto again = [](const QString& text) {
            const auto columns = BrowserMemory::columnsOf(text);
            return columns ? BrowserMemory::written(*columns) : QString("refused");
        };
        QCOMPARE(again("0:0 4:120 -3:80 1:90 2:60 5:10"),
                 QString("0:0 4:120 -3:80 1:90 2:60 5:10"));
        QCOMPARE(again("0:200 3:70"), QString("0:200 3:70 -1:0 -2:0 -4:0 -5:0"));
        for (const char* text : {"", "1:9 0:9", "-0:9", "0:0 1:9 1:9", "0:0 6:9", "0:0 1:-9", "0:x",
                                 "0:0 1:99999999999", "0:0 --1:9", "0", "0:0:0"})
            QVERIFY2(again(text) == "refused", text);
        QTemporaryDir folder;
        QSettings settings(folder.filePath("x.ini"), QSettings::IniFormat);
        settings.setValue("k/View", "nonsense");
        settings.setValue("k/SortedBy", 77);
        BrowserMemory memory;
        memory.view = 1;
        memory.load(settings, "k");
        QVERIFY(memory.view == 1 && memory.sorted == 0 && memory.columns.empty());
        memory.columns = *BrowserMemory::columnsOf("0:0 3:70");
        memory.isDescending = true;
        memory.save(settings, "k");
        BrowserMemory other;
        other.load(settings, "k");
        QVERIFY(other.view == 1 && other.isDescending && other.columns.size() == 6);
    }

    // Parts of a cell lie in it, apart from each other, whichever way one reads.
    void cells() {
        for (const int width : {40, 120, 300}) {
            for (const int facts : {0, 60, 500}) {
                for (const bool isRightToLeft : {false, true}) {
                    const QRect cell(7, 3, width, 24);
                    const auto layout = FileCellLayout::compact(cell, facts, isRightToLeft);
                    QVERIFY(cell.contains(layout.picture));
                    QVERIFY(layout.facts.isEmpty() || cell.contains(layout.facts));
                    QVERIFY(!layout.name.intersects(layout.picture));
                    QVERIFY(!layout.name.intersects(layout.facts));
                    if (layout.name.width() > 0)
                        QCOMPARE(layout.picture.left() > layout.name.left(), isRightToLeft);
                }
            }
        }
        const QRect frame(10, 10, 100, 50);
        QCOMPARE(FileCellLayout::fitted({200, 200}, frame), QRect(35, 10, 50, 50));
        QCOMPARE(FileCellLayout::fitted({20, 10}, frame), QRect(50, 30, 20, 10));
        QCOMPARE(FileCellLayout::fitted({1000, 1}, frame).size(), QSize(100, 1));
        QVERIFY(FileCellLayout::fitted({0, 5}, frame).isNull());
    }

    void picturesMakeRoom() {
        const auto source = std::make_shared<LateSource>();
        const auto other = std::make_shared<LateSource>();
        ThumbnailCache cache(100);
        const auto picture = [&](int side) {
            ThumbnailCache::Picture made;
            made.image = QImage(side, side, QImage::Format_ARGB32_Premultiplied);
            made.source = source;
            return made;
        };
        for (const char* name : {"a", "b", "c"})
            cache.insert(name, {9, 9}, picture(80)); // 25 KiB each, and one
        QVERIFY(cache.find("a", {9, 9}, source));
        cache.insert("d", {9, 9}, picture(80));
        QVERIFY(cache.find("a", {9, 9}, source) && !cache.find("b", {9, 9}, source));
        QVERIFY(!cache.find("a", {8, 8}, source) && !cache.find("a", {9, 9}, other));
        QVERIFY(cache.usedKiB() <= 100);
        cache.insert("e", {9, 9}, picture(800)); // more than there is room for
        QVERIFY(!cache.find("e", {9, 9}, source));
    }

    void picturesOfWhatIsSeen() {
        QTemporaryDir folder;
        for (const char* name : {"a.1.exr", "a.2.exr", "a.5.exr", "b.txt", "c.txt", "d.txt"})
            std::ofstream(folder.filePath(name).toStdString()) << 'x';
        FileListModel model;
        QSignalSpy settled(&model, &FileListModel::settled);
        model.gatherer()->gatherPath(folder.path());
        model.setVisibleRows(0, 3);
        const auto known = [&](int row) {
            return model.index(row, 0).data(FileListModel::SizeRole).isValid();
        };
        QTRY_VERIFY_WITH_TIMEOUT(model.rowCount() == 4 && known(0) && known(3), 20000);

        const auto source = std::make_shared<LateSource>();
        auto loader = std::make_unique<ThumbnailLoader>(&model);
        QSignalSpy arrived(loader.get(), &ThumbnailLoader::arrived);
        loader->setSource(source);
        loader->setSize({32, 32});
        arrived.clear();
        loader->setRows(0, 1);
        QTRY_COMPARE_WITH_TIMEOUT(source->asked, (std::vector<QByteArray>{"a.2.exr", "b.txt"}),
                                  20000);
        const auto picture = [&](int row) {
            return loader->picture(*model.listing(), model.itemOf(row));
        };
        QVERIFY(picture(1).isNull());
        // Scrolled on: what is not seen any more is taken back, what is on its way is not asked again.
        loader->setRows(1, 2);
        QTRY_COMPARE_WITH_TIMEOUT(source->asked.size(), std::size_t(3), 20000);
        QCOMPARE(source->asked.back(), QByteArray("c.txt"));
        QCOMPARE(source->dropped, 1);
        source->answerAll();
        QTRY_VERIFY_WITH_TIMEOUT(arrived.count() >= 1 && !picture(2).isNull(), 20000);
        QCOMPARE(picture(1).pixelColor(3, 3), QColor(Qt::red));
        // Known now: nobody is asked.
        loader->setRows(1, 2);
        QTest::qWait(2 * ThumbnailLoader::Rest);
        QCOMPARE(source->asked.size(), std::size_t(3));
        // Answers that come when nobody listens any more.
        loader->setRows(3, 3);
        QTRY_COMPARE_WITH_TIMEOUT(source->asked.back(), QByteArray("d.txt"), 20000);
        loader.reset();
        QCOMPARE(source->dropped, 4);
        source->answerAll();
    }

    // A visit shows whether a place is there.
    void visitsTellOfPlaces() {
        const QTemporaryDir folder;
        const QByteArray gone = folder.filePath("gone").toUtf8();
        FavoritesFile file(folder.filePath("places.xbel"));
        file.add(gone);
        FileBrowser browser;
        const auto* const places = browser.favoritesView()->favoritesModel();
        browser.favoritesView()->favoritesModel()->setFile(&file);
        const auto reach = [&] {
            return places->indexOfPath(gone).data(FavoritesModel::ReachRole).toInt();
        };
        QCOMPARE(reach(), int(FavoritesModel::Unknown));
        browser.setFolder(gone);
        QTRY_COMPARE_WITH_TIMEOUT(reach(), int(FavoritesModel::Unreachable), 20000);
        QVERIFY(QDir().mkdir(folder.filePath("gone")));
        browser.refresh();
        QTRY_COMPARE_WITH_TIMEOUT(reach(), int(FavoritesModel::Reachable), 20000);
    }

    void tellsAssistiveTools() {
        const QTemporaryDir folder;
        QVERIFY(QDir(folder.path()).mkpath("shots"));
        FileBrowser browser;
        browser.setFolderText(folder.path());
        browser.resize(800, 400);
        browser.show();
        QVERIFY(Kestrel::Test::focus(browser));
        auto* const line = browser.findChild<BusyLine*>();
        const auto* const bar = QAccessible::queryAccessibleInterface(line);
        QVERIFY(bar->role() == QAccessible::ProgressBar && bar->state().invisible);
        line->setBusy(true);
        QVERIFY(bar->state().busy && !bar->state().invisible);

        // By Tab along the top, then through places to files.
        const auto order = [&] {
            QStringList classes;
            for (const QWidget* each = browser.nextInFocusChain(); each != &browser;
                 each = each->nextInFocusChain()) {
                if ((each->focusPolicy() & Qt::TabFocus) != 0 && each->isVisible())
                    classes << QString(each->metaObject()->className()).section(':', -1);
            }
            classes.removeDuplicates();
            return classes;
        };
        QTRY_COMPARE_WITH_TIMEOUT(order(),
                                  QStringList({"QToolButton", "CrumbButton", "SearchField",
                                               "FavoritesView", "QTreeView"}),
                                  20000);
    }
};

KXUI_TEST(BrowserPartsTest);
#include "BrowserPartsTest.moc"
