#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FavoritesView.h>
#include <KxUI/browse/PlaceTree_p.h>

#include <support/TestRegistry.h>

#include <QAbstractItemModelTester>
#include <QLineEdit>
#include <QMimeData>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QUrl>
#include <QtTest>

#include <cerrno>
#include <random>

using namespace Kestrel::UI;

namespace {

QStringList rowsOf(const FavoritesModel& model, const QModelIndex& parent) {
    QStringList rows;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        QString text = index.data().toString();
        if (index.data(FavoritesModel::IsGroupRole).toBool())
            text += "(" + rowsOf(model, index).join(' ') + ")";
        rows << text;
    }
    return rows;
}

QModelIndex section(const FavoritesModel& model, FavoritesModel::Section which) {
    for (int row = 0; row < model.rowCount(); ++row) {
        const QModelIndex index = model.index(row, 0);
        if (index.data(FavoritesModel::SectionRole).value<FavoritesModel::Section>() == which)
            return index;
    }
    return {};
}

} // namespace

class FavoritesViewTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FavoritesFile> m_file;
    std::unique_ptr<FavoritesModel> m_model;

    QString rows() const {
        return rowsOf(*m_model, section(*m_model, FavoritesModel::Favorites)).join(' ');
    }
    QModelIndex row(const QByteArray& path) const { return m_model->indexOfPath(path); }

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        m_file = std::make_unique<FavoritesFile>(m_folder->filePath("f.xbel"));
        for (const char* path : {"/a", "/b", "/c"})
            m_file->add(path);
        m_file->moveInto(m_file->idOf("/b"), m_file->addGroup("G", 1));
        m_model = std::make_unique<FavoritesModel>(m_file.get());
        m_model->clearRecent();
        QCOMPARE(rows(), QString("a G(b) c"));
    }

    // One step after the other leads through the groups, and back the same way.
    void movesByRows() {
        QAbstractItemModelTester tester(m_model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        const QStringList way{"a G(b) c", "G(a b) c", "G(b a) c", "G(b) a c", "G(b) c a"};
        for (int i = 1; i < way.size(); ++i) {
            QVERIFY(m_model->moveBy(row("/a"), 1));
            QCOMPARE(rows(), way[i]);
        }
        QVERIFY(!m_model->moveBy(row("/a"), 1));
        for (int i = int(way.size()) - 1; i-- > 0;) {
            QVERIFY(m_model->moveBy(row("/a"), -1));
            QCOMPARE(rows(), way[i]);
        }
        QVERIFY(!m_model->moveBy(row("/a"), -1));
        const QModelIndex group = row("/b").parent();
        QVERIFY(m_model->moveBy(group, 1) && !m_model->moveBy(row("/b").parent(), 1));
        QCOMPARE(rows(), QString("a c G(b)"));
        QVERIFY(!m_model->moveBy(section(*m_model, FavoritesModel::Places), 1));
    }

    void takesDrops() {
        const QModelIndex top = section(*m_model, FavoritesModel::Favorites);
        const auto drop = [&](const QMimeData& data, int row, const QModelIndex& parent) {
            return m_model->dropMimeData(&data, Qt::CopyAction, row, 0, parent);
        };
        std::unique_ptr<QMimeData> dragged(m_model->mimeData({row("/c"), row("/a")}));
        QCOMPARE(dragged->data("text/uri-list"), QByteArray("file:///c\r\nfile:///a\r\n"));
        QVERIFY(drop(*dragged, 0, row("/b").parent()));
        QCOMPARE(rows(), QString("G(c a b)"));
        QVERIFY(drop(*dragged, -1, top));
        QCOMPARE(rows(), QString("G(b) c a"));

        QMimeData folders;
        folders.setUrls({QUrl("file:///mnt/x%FFy"), QUrl("file:///b"), QUrl("http://x/y")});
        QVERIFY(drop(folders, 1, top));
        QVERIFY(m_file->contains("/mnt/x\xffy") && !m_file->contains("http://x/y"));
        QCOMPARE(rows(), QString("G() x%1y b c a").arg(QChar(QChar::ReplacementCharacter)));
        QVERIFY(!drop(folders, -1, section(*m_model, FavoritesModel::Places)));
        QVERIFY(!drop(folders, -1, row("/c")));
    }

    void keepsRowsThroughChanges() {
        QAbstractItemModelTester tester(m_model.get(),
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        std::mt19937 random(3);
        const QPersistentModelIndex kept = row("/c");
        QSignalSpy reset(m_model.get(), &QAbstractItemModel::modelReset);
        for (int i = 0; i < 300; ++i) {
            const auto& all = m_file->favorites();
            const QString id = all[random() % all.size()].id;
            const int before = int(random() % (all.size() + 1)) - 1;
            const bool isKept = id == kept.data(FavoritesModel::IdRole).toString();
            if (random() % 3 == 0)
                m_file->add("/" + QByteArray::number(i), {}, before);
            else if (random() % 4 == 0 && !isKept && all.size() > 4)
                m_file->remove(id);
            else if (!isKept)
                m_file->move(id, before);
            QVERIFY(kept.isValid() || !m_file->contains("/c"));
            m_model->setProjectPlaces(std::vector<FavoritesFile::Favorite>(
                random() % 3, FavoritesFile::Favorite{"/p", "P", {}, {}, false}));
        }
        QCOMPARE(reset.count(), 0);
        m_file.reset();
        QCOMPARE(rows(), QString());
        QVERIFY(!m_model->favoriteAt(0).isValid());
    }

    // A place is asked about when somebody wants to know, never before.
    void asksLate() {
        const QByteArray here = QFile::encodeName(m_folder->path());
        m_file->add(here, "here");
        const auto reach = [&](const QByteArray& path) {
            return row(path).data(FavoritesModel::ReachRole).value<FavoritesModel::Reach>();
        };
        FavoritesView view;
        view.setModel(m_model.get());
        view.resize(200, 400);
        view.show();
        QTest::qWait(30);
        QCOMPARE(reach(here), FavoritesModel::Unknown);
        QSignalSpy activated(&view, &FavoritesView::placeActivated);
        for (const QByteArray& path : {here, QByteArray("/a")})
            QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                              view.visualRect(row(path)).center());
        QCOMPARE(activated.count(), 2);
        QTRY_COMPARE(reach(here), FavoritesModel::Reachable);
        QTRY_COMPARE(reach("/a"), FavoritesModel::Unreachable);
        QVERIFY(row("/a").data(Qt::ToolTipRole).toString().contains("does not exist"));
        QCOMPARE(row("/a").data(Qt::AccessibleTextRole).toString(),
                 QString("a, cannot be reached"));
        m_model->setReach("/a", 0);
        QCOMPARE(reach("/a"), FavoritesModel::Reachable);
        QCOMPARE(reach("/b"), FavoritesModel::Unknown);
        QVERIFY(m_file->contains("/a"));
    }

    void goesByKeys() {
        FavoritesView view;
        view.setModel(m_model.get());
        view.resize(200, 300);
        view.show();
        QSignalSpy activated(&view, &FavoritesView::placeActivated);
        QTest::keyClick(&view, Qt::Key_2, Qt::AltModifier);
        QCOMPARE(activated.takeFirst()[0].toByteArray(), QByteArray("/b"));
        QTest::keyClick(&view, Qt::Key_9, Qt::AltModifier);
        view.setCurrentPlace("/c");
        QCOMPARE(view.currentIndex(), row("/c"));
        QVERIFY(activated.isEmpty());
        QTest::keyClick(&view, Qt::Key_Return);
        QCOMPARE(activated.takeFirst()[0].toByteArray(), QByteArray("/c"));
        QTest::keyClick(&view, Qt::Key_Up, Qt::AltModifier | Qt::ShiftModifier);
        QTest::keyClick(&view, Qt::Key_Up, Qt::AltModifier | Qt::ShiftModifier);
        QCOMPARE(rows(), QString("a G(c b)"));
        QCOMPARE(view.currentIndex(), row("/c"));

        QTest::keyClick(&view, Qt::Key_Delete);
        view.setCurrentIndex(row("/a"));
        QTest::keyClick(&view, Qt::Key_Delete);
        QCOMPARE(rows(), QString("G(b)"));
        auto* const undo = view.findChild<QToolButton*>();
        QVERIFY(undo && undo->isVisible());
        QTest::keyClick(&view, Qt::Key_Z, Qt::ControlModifier);
        undo->click();
        QCOMPARE(rows(), QString("a G(c b)"));
        QVERIFY(!undo->isVisible());

        view.addGroup();
        auto* const editor = view.findChild<QLineEdit*>();
        QVERIFY(editor);
        QTest::keyClicks(editor, "Sets");
        QTest::keyClick(editor, Qt::Key_Return);
        QTRY_COMPARE(rows(), QString("a G(c b) Sets()"));
    }

    void remembersRecentOnes() {
        for (int i = 0; i < 15; ++i)
            m_model->noteUsed("/r/" + QByteArray::number(i) + "\xff");
        m_model->noteUsed("/r/9\xff");
        const FavoritesModel again(m_file.get());
        const QList<QByteArray> recent = again.recentPlaces();
        QCOMPARE(recent.size(), 12);
        QCOMPARE(recent[0], QByteArray("/r/9\xff"));
        QCOMPARE(recent[1], QByteArray("/r/14\xff"));
        QCOMPARE(again.rowCount(section(again, FavoritesModel::Recent)), 12);
        m_model->clearRecent();
        QVERIFY(!section(*m_model, FavoritesModel::Recent).isValid());
    }

    void readsDesktops() {
        const auto places =
            desktopBookmarks("file:///home/me/a%20b My Work\nfile:///c\nsftp://x/y\n\n",
                             "<xbel><folder><bookmark href='file:///d'/></folder>"
                             "<bookmark href='file:///c'/><bookmark");
        QCOMPARE(places.size(), std::size_t(3));
        QCOMPARE(places[0].path, QByteArray("/home/me/a b"));
        QCOMPARE(places[0].title, QString("My Work"));
        QCOMPARE(places[2].path, QByteArray("/d"));
        // The machine's come by themselves.
        QTRY_VERIFY(section(*m_model, FavoritesModel::Places).isValid());
    }
};

KXUI_TEST(FavoritesViewTest);
#include "FavoritesViewTest.moc"
