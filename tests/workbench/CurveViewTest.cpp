#include <support/Columns.h>
#include <support/Input.h>
#include <support/TestRegistry.h>

#include "panels/CurveView.h"

#include <QMenu>
#include <QSignalSpy>
#include <QtTest>

#include <memory>
#include <sstream>

using namespace Kestrel::Workbench;
using Kestrel::UI::Curve;

using Path = QVector<QPointF>;
Q_DECLARE_METATYPE(Path)

namespace {

constexpr int Margin = 8;
constexpr int Side = 200;

const char* const Identity = "(0, 0), (1, 1)";
const char* const Three = "(0, 0), (0.5, 0.5), (1, 1)";
const char* const Full =
    "(0, 0), (.1, .1), (.2, .2), (.3, .3), (.5, .5), (.7, .7), (.8, .8), (1, 1)";

Curve curveOf(const char* text) {
    std::istringstream stream(text);
    Curve curve(8, 0);
    stream >> curve;
    return curve;
}

QString textOf(const Curve& curve) {
    std::ostringstream stream;
    stream << curve;
    return QString::fromStdString(stream.str());
}

QPoint at(const QPointF& point) {
    return {Margin + qRound(point.x() * Side), Margin + Side - qRound(point.y() * Side)};
}

} // namespace

class CurveViewTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<CurveView> m_view;

    QString text() { return textOf(m_view->curve()); }
    void press(const QPointF& point) {
        QTest::mousePress(m_view.get(), Qt::LeftButton, {}, at(point));
    }
    void move(const QPointF& point) { Kestrel::Test::moveMouse(*m_view, at(point)); }
    void release(const QPointF& point) {
        QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, at(point));
    }
    QString key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(m_view.get(), key, modifiers);
        return text();
    }

private slots:
    void init() {
        m_view = std::make_unique<CurveView>();
        m_view->resize(Side + 2 * Margin, Side + 2 * Margin);
        m_view->show();
        m_view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    }

    void drags_data() {
        const Kestrel::Test::Columns<QString, Path, QString, QString> row("before", "path", "after",
                                                                          "what");
        row("add", Identity, {{.5, .75}}, "(0, 0), (0.5, 0.75), (1, 1)", "add knot");
        row("add on the line", Identity, {{.5, .52}}, Three, "add knot");
        row("add and drag", Identity, {{.25, .75}, {.3, .9}}, "(0, 0), (0.3, 0.9), (1, 1)",
            "add knot");
        row("press off centre", Three, {{.515, .51}}, Three, "");
        row("move", Three, {{.515, .51}, {.615, .81}}, "(0, 0), (0.6, 0.8), (1, 1)", "move knot");
        row("up to the neighbour", Three, {{.5, .5}, {1.1, 1.1}}, "(0, 0), (0.998047, 1), (1, 1)",
            "move knot");
        row("an end moves inwards", Three, {{0, 0}, {.2, .1}}, "(0.2, 0.1), (0.5, 0.5), (1, 1)",
            "move knot");
        row("pulled out", Three, {{.5, .5}, {.5, 1.5}}, Identity, "move knot");
        row("pulled out and back", Three, {{.5, .5}, {.5, 1.5}, {.5, .75}},
            "(0, 0), (0.5, 0.75), (1, 1)", "move knot");
        row("an end is not pulled out", Three, {{1, 1}, {.75, 1.5}},
            "(0, 0), (0.5, 0.5), (0.75, 1)", "move knot");
        row("full", Full, {{.4, .9}}, QString(), "");
        row("no room", "(0, 0), (.25, 1), (.253, 0), (1, 1)", {{.25, .5}}, QString(), "");
    }

    void drags() {
        QFETCH(QString, before);
        QFETCH(Path, path);
        QFETCH(QString, after);
        QFETCH(QString, what);
        const Curve start = curveOf(before.toLatin1());
        m_view->setCurve(start);
        const QSignalSpy edited(m_view.get(), &CurveView::curveEdited);
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        press(path.first());
        for (const QPointF& point : path.mid(1))
            move(point);
        QCOMPARE(finished.count(), 0);
        release(path.last());
        QCOMPARE(text(), after.isNull() ? textOf(start) : after);
        QCOMPARE(finished.count(), what.isEmpty() ? 0 : 1);
        QCOMPARE(edited.isEmpty() ? QString() : edited.last().at(1).toString(), what);
        if (!edited.isEmpty())
            QCOMPARE(textOf(edited.last().at(0).value<Curve>()), text());
    }

    void doubleClicks() {
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, at({.5, .75}));
        QTest::mouseDClick(m_view.get(), Qt::LeftButton, {}, at({.5, .75}));
        QCOMPARE(text(), QStringLiteral("(0, 0), (0.5, 0.75), (1, 1)"));
        QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, at({.5, .75}));
        QTest::mouseDClick(m_view.get(), Qt::LeftButton, {}, at({.5, .75}));
        QCOMPARE(text(), QLatin1String(Three));
    }

    void keys() {
        m_view->setCurve(curveOf(Three));
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        key(Qt::Key_Tab);
        key(Qt::Key_Tab);
        QCOMPARE(key(Qt::Key_Up, Qt::ShiftModifier), QStringLiteral("(0, 0), (0.5, 0.6), (1, 1)"));
        QCOMPARE(key(Qt::Key_Left), QStringLiteral("(0, 0), (0.49, 0.6), (1, 1)"));
        QCOMPARE(key(Qt::Key_Home), QStringLiteral("(0, 0), (0.49, 0.49), (1, 1)"));
        QCOMPARE(finished.count(), 3);
        QCOMPARE(key(Qt::Key_Delete), QLatin1String(Identity));
        QCOMPARE(key(Qt::Key_Delete), QLatin1String(Identity)); // two stay
        QCOMPARE(key(Qt::Key_Insert), QLatin1String(Three));
        QCOMPARE(finished.count(), 5);
        QCOMPARE(selectedKnot(m_view->curve()), 1);
        key(Qt::Key_Backtab);
        QCOMPARE(selectedKnot(m_view->curve()), 0);
    }

    void escapeTakesADragBack() {
        press({.5, .75});
        move({.6, .8});
        QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        QCOMPARE(key(Qt::Key_Escape), QLatin1String(Identity));
        QCOMPARE(finished.takeFirst().first().toBool(), false);
        move({.7, .7});
        release({.7, .7});
        QCOMPARE(text(), QLatin1String(Identity));
        QCOMPARE(finished.count(), 0);
    }

    void menu() {
        m_view->setCurve(curveOf(Three));
        const auto choose = [this](const QPointF& point, int action) {
            QContextMenuEvent event(QContextMenuEvent::Mouse, at(point), QPoint());
            QCoreApplication::sendEvent(m_view.get(), &event);
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            QVERIFY(menu);
            menu->actions().at(action)->trigger();
            menu->close();
        };
        choose({.2, .8}, 0); // no knot there
        QCOMPARE(text(), QLatin1String(Three));
        choose({.5, .5}, 0);
        QCOMPARE(text(), QLatin1String(Identity));
        m_view->setCurve(curveOf("(0, 1), (1, 0)"));
        choose({.5, .5}, 3);
        QCOMPARE(text(), QLatin1String(Identity));
    }

    // What a host may do while it is told of an edit.
    void hosts() {
        const QSignalSpy edited(m_view.get(), &CurveView::curveEdited);
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        press({.5, .75});
        m_view->setCurve(m_view->curve()); // an echo
        move({.5, .8});
        QCOMPARE(edited.count(), 2);
        m_view->setCurve(curveOf(Identity)); // undone in the middle of the drag
        move({.5, .9});
        release({.5, .9});
        QCOMPARE(text(), QLatin1String(Identity));
        QCOMPARE(edited.count(), 2);
        QCOMPARE(finished.count(), 1);

        connect(m_view.get(), &CurveView::curveEdited, m_view.get(), [this] { m_view.reset(); });
        press({.5, .75});
        QVERIFY(!m_view);
    }
};

KXUI_TEST(CurveViewTest);
#include "CurveViewTest.moc"
