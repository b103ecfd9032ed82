#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/SwatchGrid.h>
#include <KxUI/picker/SwatchGridGeometry_p.h>
#include <KxUI/picker/SwatchModel.h>
#include <support/Input.h>
#include <support/TestRegistry.h>

#include <QAccessible>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QScrollBar>
#include <QSignalSpy>

#include <functional>

using namespace Kestrel::UI;
using Kestrel::Test::sendKey;

namespace {

/** Ten colours in rows of four. */
struct Palette {
    explicit Palette(int count = 10) {
        for (int i = 0; i < count; ++i)
            model.append({float(i) / 16.0F, 0.5F, 0.25F, 1.0F}, QString(QChar('a' + i)));
        grid->setModel(&model);
        grid->setFrameShape(QFrame::NoFrame);
        grid->resize(2 * SwatchGridGeometry::Margin + 4 * 22 + 4, 120);
        grid->show();
    }
    ~Palette() { delete grid.data(); }

    QString order() const {
        QString text;
        for (int row = 0; row < model.count(); ++row)
            text += model.name(row).isEmpty() ? QStringLiteral("*") : model.name(row);
        return text;
    }
    QPoint centre(int row) const { return grid->visualRect(model.index(row)).center(); }
    void dropAt(const QPoint& place, const QMimeData& data) {
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(grid->viewport(), &enter);
        if (!enter.isAccepted())
            return;
        QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(grid->viewport(), &drop);
    }
    void dragFrom(int row) {
        const QPoint from = centre(row);
        QTest::mousePress(grid->viewport(), Qt::LeftButton, {}, from);
        Kestrel::Test::moveMouse(*grid->viewport(), from + QPoint(30, 0));
        if (grid)
            QTest::mouseRelease(grid->viewport(), Qt::LeftButton, {}, from + QPoint(30, 0));
    }

    SwatchModel model;
    QPointer<SwatchGrid> grid = new SwatchGrid;
};

std::function<void(const QMimeData&)> during; ///< what happens while something is dragged

/** Puts `during` in the place of the user's drags. */
struct Drags {
    Drags() {
        runColorDrag = [](std::unique_ptr<QMimeData> data, const QColor&, double) {
            during(*data);
        };
    }
    ~Drags() { runColorDrag = real; }
    decltype(runColorDrag) real = runColorDrag;
};

} // namespace

class SwatchGridTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void geometry() {
        for (const bool isMirrored : {false, true}) {
            for (const int count : {0, 1, 7, 10}) {
                const SwatchGridGeometry grid{12, 80, count, isMirrored};
                QCOMPARE(grid.columns(), 5);
                for (int i = 0; i < count; ++i) {
                    const QRect cell = grid.cellOf(i);
                    QVERIFY(QRect(0, 0, 80, grid.height()).contains(cell));
                    QCOMPARE(grid.cellAt(cell.topLeft()), i);
                    QCOMPARE(grid.cellAt(cell.bottomRight()), i);
                    const int inner = isMirrored ? cell.right() : cell.left();
                    QCOMPARE(grid.gapAt({inner, cell.top()}), i);
                    QVERIFY(grid.firstIn(cell) <= i && i < grid.endIn(cell));
                }
                QVERIFY(grid.cellOf(count).isNull());
                QCOMPARE(grid.cellAt({40, 1000}), -1);
                QCOMPARE(grid.gapAt({40, 1000}), count);
                QVERIFY(grid.gapAt({-100, -100}) >= 0);
                QVERIFY(!grid.gapLine(count).isEmpty());
            }
        }
        QCOMPARE((SwatchGridGeometry{48, 3, 4, false}.columns()), 1);
    }

    void keys() {
        struct Row {
            int key;
            Qt::KeyboardModifiers modifiers;
            int from, to;
            const char* order;
        };
        const Row rows[] = {
            {Qt::Key_Right, {}, 3, 4, "abcdefghij"},
            {Qt::Key_Left, {}, 0, 0, "abcdefghij"},
            {Qt::Key_Down, {}, 6, 9, "abcdefghij"}, // the last row is shorter
            {Qt::Key_Down, {}, 8, 8, "abcdefghij"},
            {Qt::Key_Up, {}, 6, 2, "abcdefghij"},
            {Qt::Key_End, {}, 0, 9, "abcdefghij"},
            {Qt::Key_Home, {}, 5, 0, "abcdefghij"},
            {Qt::Key_Right, Qt::AltModifier, 0, 1, "bacdefghij"},
            {Qt::Key_Up, Qt::AltModifier, 5, 1, "afbcdeghij"},
            {Qt::Key_Delete, {}, 9, 8, "abcdefghi"},
            {Qt::Key_Delete, {}, 2, 2, "abdefghij"},
        };
        for (const bool readOnly : {false, true}) {
            for (const Row& row : rows) {
                Palette palette;
                palette.grid->setReadOnly(readOnly);
                palette.grid->setCurrentIndex(palette.model.index(row.from));
                sendKey(*palette.grid, row.key, row.modifiers);
                const bool edits = row.modifiers || row.key == Qt::Key_Delete;
                QCOMPARE(palette.grid->currentIndex().row(), edits && readOnly ? row.from : row.to);
                QCOMPARE(palette.order(),
                         QLatin1String(edits && readOnly ? "abcdefghij" : row.order));
            }
        }
        Palette palette;
        palette.grid->setLayoutDirection(Qt::RightToLeft);
        palette.grid->setCurrentIndex(palette.model.index(3));
        sendKey(*palette.grid, Qt::Key_Right);
        QCOMPARE(palette.grid->currentIndex().row(), 2);
        QVERIFY(palette.centre(0).x() > palette.centre(1).x());
    }

    void choosesAndNames() {
        Palette palette;
        QSignalSpy chosen(palette.grid.data(), &SwatchGrid::colorChosen);
        QTest::mouseClick(palette.grid->viewport(), Qt::LeftButton, {}, palette.centre(5));
        QCOMPARE(chosen.takeFirst()[0].value<ColorValue>().red, 5.0F / 16.0F);
        sendKey(*palette.grid, Qt::Key_Return);
        QCOMPARE(chosen.count(), 1);
        QTest::mouseClick(palette.grid->viewport(), Qt::LeftButton, {}, QPoint(5, 110));
        QCOMPARE(chosen.count(), 1);
        palette.grid->renameCurrent();
        auto* field = palette.grid->findChild<QLineEdit*>();
        QVERIFY(field && field->width() > 80);
        field->setText(QStringLiteral("Sky"));
        QTest::keyClick(field, Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(palette.model.name(5), QStringLiteral("Sky"));
    }

    void dragsAndDrops() {
        const Drags drags;
        Palette palette;
        during = [&](const QMimeData& data) {
            palette.dropAt(palette.centre(6) - QPoint(8, 0), data);
        };
        palette.dragFrom(1);
        QCOMPARE(palette.order(), QStringLiteral("acdefbghij"));
        QCOMPARE(palette.grid->currentIndex().row(), 5);
        // What comes from elsewhere is added.
        palette.dropAt(palette.centre(0) - QPoint(8, 0), *colorMime({1, 1, 1, 1}, {}));
        QCOMPARE(palette.order(), QStringLiteral("*acdefbghij"));
        copyColor({0, 0, 1, 1}, {}, QStringLiteral("z"));
        palette.grid->paste();
        QCOMPARE(palette.order(), QStringLiteral("*zacdefbghij"));
        palette.grid->setReadOnly(true);
        palette.grid->paste();
        palette.dropAt(palette.centre(0), *colorMime({1, 1, 1, 1}, {}));
        QCOMPARE(palette.model.count(), 12);
    }

    // Whatever happens to the model, or to the grid, while a colour of it is dragged.
    void changesDuringADrag() {
        const Drags drags;
        const std::function<void(Palette&)> changes[] = {
            [](Palette& palette) { palette.model.clear(); },
            [](Palette& palette) { palette.model.setContent("KxUI swatches\n1 1 1 1 n\n"); },
            [](Palette& palette) { palette.model.removeRow(0); },
            [](Palette& palette) { palette.grid->setModel(nullptr); },
            [](Palette& palette) { delete palette.grid.data(); },
        };
        // Reset or removed, the colour itself is still what is dropped; moved, it is found again.
        const char* orders[] = {"b", "nb", "cdefghbij", "abcdefghij", "abcdefghij"};
        for (int i = 0; i < 5; ++i) {
            Palette palette;
            during = [&](const QMimeData& data) {
                const QPoint place = palette.centre(7) - QPoint(8, 0);
                changes[i](palette);
                if (palette.grid)
                    palette.dropAt(i == 2 ? place : QPoint(50, 100), data);
            };
            palette.dragFrom(1);
            QCOMPARE(palette.order().left(i == 2 ? 9 : 10), QLatin1String(orders[i]));
            if (palette.grid)
                palette.grid->grab();
        }
        auto* model = new SwatchModel;
        SwatchGrid grid;
        grid.setModel(model);
        grid.grab();
        model->append({});
        delete model;
        grid.grab();
    }

    void scrollsAndScales() {
        Palette palette(200);
        palette.grid->scrollTo(palette.model.index(199));
        QVERIFY(palette.grid->verticalScrollBar()->value() > 0);
        QVERIFY(palette.grid->viewport()->rect().contains(palette.centre(199)));
        for (const int size : {-5, 12, 31, 1000}) {
            palette.grid->setCellSize(size);
            QCOMPARE(palette.grid->cellSize(), qBound(12, size, 48));
            palette.grid->grab();
        }
    }

    void toldToAssistiveTools() {
        Palette palette;
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(palette.grid.data());
        QCOMPARE(seen->role(), QAccessible::List);
        QCOMPARE(seen->childCount(), 10);
        QAccessibleInterface* cell = seen->child(2);
        QCOMPARE(cell->text(QAccessible::Name), QStringLiteral("c"));
        QCOMPARE(seen->indexOfChild(cell), 2);
        QCOMPARE(seen->childAt(cell->rect().center().x(), cell->rect().center().y()), cell);
        QSignalSpy chosen(palette.grid.data(), &SwatchGrid::colorChosen);
        cell->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(chosen.count(), 1);
        palette.model.clear();
        QVERIFY(!cell->isValid());
        QVERIFY(cell->text(QAccessible::Name).isEmpty() && cell->state().invalid);
    }
};

KXUI_TEST(SwatchGridTest);
#include "SwatchGridTest.moc"
