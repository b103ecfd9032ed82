#include "UndoFixture.h"

#include <KxUI/undo/MultiStackUndoModel.h>
#include <KxUI/undo/MultiStackUndoView.h>

#include <support/TestRegistry.h>

#include <QAbstractItemModelTester>
#include <QTreeView>

#include <memory>

using namespace Kestrel::UI;

namespace {

void click(QAbstractItemView& view, int row, Qt::KeyboardModifiers modifiers = {}) {
    const QRect rect = view.visualRect(view.model()->index(row, 0));
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, rect.center());
}

QList<int> selectedRows(const QAbstractItemView& view) {
    QList<int> rows;
    for (const QModelIndex& index : view.selectionModel()->selectedIndexes())
        rows += index.row();
    return rows;
}

} // namespace

// Every test starts with ten entries of two projects, all done.
class MultiStackUndoViewTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_group = std::make_unique<MultiStackUndoGroup>();
        for (int number = 1; number <= 10; ++number) {
            UndoableProject* project = number % 3 ? &m_a : &m_b;
            m_group->performCommand(new AddCommand(project, number), project);
        }
    }

    void cleanup() {
        for (UndoableProject* project : {&m_a, &m_b}) {
            m_group->removeProject(project);
            project->document.clear();
        }
    }

    void modelFollowsTheGroup() {
        MultiStackUndoModel model(nullptr);
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QCOMPARE(model.rowCount(), 0);
        model.setGroup(m_group.get());
        QCOMPARE(model.rowCount(), 11);
        QCOMPARE(model.data(model.index(0, 0)).toString(), QStringLiteral("<empty>"));
        QCOMPARE(model.data(model.index(10, 0)).toString(), QStringLiteral("10"));
        QCOMPARE(model.selectionModel()->currentIndex().row(), 10);
        m_group->undo();
        QCOMPARE(model.selectionModel()->currentIndex().row(), 9);
        m_group->removeProject(&m_b);
        QCOMPARE(model.rowCount(), 8);
        QCOMPARE(model.selectionModel()->currentIndex().row(), 6);
        QCOMPARE(model.selectionModel()->selectedIndexes(), QModelIndexList{model.index(6, 0)});
    }

    void showingAndFocusingMoveNothing() {
        QWidget window;
        MultiStackUndoView view(&window);
        QWidget other(&window);
        other.setFocusPolicy(Qt::StrongFocus);
        view.setGroup(m_group.get());
        m_group->makeIndex(4);
        window.show();
        QApplication::setActiveWindow(&window);
        other.setFocus();
        view.setFocus();
        QCoreApplication::processEvents();
        QVERIFY(view.hasFocus());
        QCOMPARE(m_group->index(), 4);
        QCOMPARE(view.currentIndex().row(), 4);
    }

    void clicksAndKeys() {
        MultiStackUndoView view;
        view.setGroup(m_group.get());
        view.resize(200, 400);
        view.show();
        QSignalSpy resets(view.model(), &QAbstractItemModel::modelReset);
        click(view, 3);
        QCOMPARE(m_group->index(), 3);
        QCOMPARE(resets.count(), 7);
        click(view, 0);
        QCOMPARE(m_group->index(), 0);
        QVERIFY(m_a.document.empty() && m_b.document.empty());
        QTest::keyClick(&view, Qt::Key_Down);
        QCOMPARE(m_group->index(), 1);
        QTest::keyClick(&view, Qt::Key_End);
        QCOMPARE(m_group->index(), 10);
        QTest::keyClick(&view, Qt::Key_Up);
        QCOMPARE(m_group->index(), 9);
        click(view, 9, Qt::ControlModifier);
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {},
                          view.viewport()->rect().bottomLeft());
        QTest::keyClick(&view, Qt::Key_Space, Qt::ControlModifier);
        QCOMPARE(m_group->index(), 9);
        QCOMPARE(selectedRows(view), QList<int>{9});
        click(view, 5, Qt::ShiftModifier);
        QCOMPARE(m_group->index(), 5);
        QCOMPARE(selectedRows(view), QList<int>{5});
        view.resize(200, 60);
        m_group->makeIndex(10);
        QCoreApplication::processEvents();
        QVERIFY(view.viewport()->rect().contains(view.visualRect(view.currentIndex())));
    }

    // A view connects to the selection model later than the model does, and still has to be told
    // first: the jump makes the indexes of the signal invalid.
    void anyViewSurvivesAJump() {
        MultiStackUndoModel model;
        model.setGroup(m_group.get());
        QTreeView view;
        view.resize(300, 500);
        view.setModel(&model);
        view.setSelectionModel(model.selectionModel());
        QList<int> told;
        connect(model.selectionModel(), &QItemSelectionModel::currentChanged, &view,
                [&](const QModelIndex& current, const QModelIndex&) { told += current.row(); });
        view.show();
        click(view, 8);
        QCOMPARE(m_group->index(), 8);
        QCOMPARE(told, (QList<int>{8, 9, 8}));
        click(view, 0);
        QCOMPARE(m_group->index(), 0);
    }

    void groupsComeAndGo() {
        MultiStackUndoView view;
        view.show();
        view.setGroup(m_group.get());
        {
            MultiStackUndoGroup second;
            view.setGroup(&second);
            m_group->undo();
            QCOMPARE(view.currentIndex().row(), 0);
        }
        QCOMPARE(view.model()->rowCount(), 0);
        QTest::keyClick(&view, Qt::Key_Down);
        view.setGroup(m_group.get());
        QCOMPARE(view.currentIndex().row(), 9);
    }

private:
    UndoableProject m_a;
    UndoableProject m_b;
    std::unique_ptr<MultiStackUndoGroup> m_group;
};

KXUI_TEST(MultiStackUndoViewTest);

#include "MultiStackUndoViewTest.moc"
