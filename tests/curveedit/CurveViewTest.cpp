#include <support/Columns.h>
#include <support/Input.h>
#include <support/TestRegistry.h>

#include <KxUI/curveedit/CurveView.h>
#include <KxUI/curveedit/CurvesModel.h>
#include <KxUI/curveedit/KeyCurveModel.h>
#include <KxUI/time/TimeFormatter.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QHelpEvent>
#include <QMenu>
#include <QSignalSpy>
#include <QToolTip>
#include <QtTest>

#include <cmath>
#include <memory>
#include <sstream>

using namespace Kestrel::UI;
using Kestrel::Test::moveMouse;
using Kestrel::Test::sendKey;

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

KeyCurve keysOf(std::initializer_list<QPointF> points) {
    std::vector<KeyCurve::Key> keys;
    for (const QPointF& point : points) {
        KeyCurve::Key key;
        key.x = point.x();
        key.y = point.y();
        keys.push_back(key);
    }
    return KeyCurve(keys);
}

bool isNear(double a, double b) {
    return std::abs(a - b) < 1e-9 * (1.0 + std::abs(b));
}

} // namespace

class CurveViewTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<CurvesModel> m_model;
    std::unique_ptr<KeyCurveModel> m_keys;
    std::unique_ptr<CurveView> m_view;

    void setCurve(const char* text) { m_model->setCurve(0, curveOf(text)); }
    QString text() { return textOf(m_model->curve(0)); }
    int selected() {
        const std::vector<int> knots = m_model->selectedKnots(0);
        return knots.empty() ? -1 : knots.front();
    }
    void press(const QPointF& point, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(m_view.get(), Qt::LeftButton, modifiers, at(point));
    }
    void move(const QPointF& point, Qt::KeyboardModifiers modifiers = {}) {
        moveMouse(*m_view, at(point), Qt::LeftButton, modifiers);
    }
    void release(const QPointF& point) {
        QTest::mouseRelease(m_view.get(), Qt::LeftButton, {}, at(point));
    }
    void drag(const Path& path, Qt::KeyboardModifiers modifiers = {}) {
        press(path.first(), modifiers);
        for (const QPointF& point : path.mid(1))
            move(point, modifiers);
        release(path.last());
    }
    void type(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(m_view.get(), Qt::Key(key), modifiers);
    }
    QString key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        type(key, modifiers);
        return text();
    }
    // Two animated parameters in the unit square instead of a transfer curve.
    void showKeys() {
        m_keys = std::make_unique<KeyCurveModel>();
        m_keys->addCurve(QStringLiteral("a"), keysOf({{.1, .2}, {.3, .8}, {.6, .4}, {.9, .6}}));
        m_keys->addCurve(QStringLiteral("b"), keysOf({{.2, .1}, {.7, .9}}));
        m_view->setModel(m_keys.get());
    }
    std::vector<int> selectedKeys(int curve = 0) { return m_keys->selectedKnots(curve); }

private slots:
    void init() {
        m_model = std::make_unique<CurvesModel>();
        setCurve(Identity);
        m_view = std::make_unique<CurveView>();
        m_view->setModel(m_model.get());
        m_view->resize(Side + 2 * Margin, Side + 2 * Margin);
        m_view->show();
        m_view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_view.get()));
    }
    void cleanup() {
        m_view.reset();
        m_keys.reset();
        m_model.reset();
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
        setCurve(before.toLatin1());
        const QString start = text();
        const QSignalSpy started(m_view.get(), &CurveView::editStarted);
        const QSignalSpy edited(m_view.get(), &CurveView::edited);
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        press(path.first());
        for (const QPointF& point : path.mid(1))
            move(point);
        QCOMPARE(finished.count(), 0);
        release(path.last());
        QCOMPARE(text(), after.isNull() ? start : after);
        QCOMPARE(started.count(), what.isEmpty() ? 0 : 1);
        QCOMPARE(finished.count(), started.count());
        QCOMPARE(edited.isEmpty(), what.isEmpty());
        QCOMPARE(what.isEmpty() ? QString() : m_view->editText(), what);
    }

    void tellsWhyNot() {
        const QSignalSpy notice(m_view.get(), &CurveView::notice);
        setCurve(Full);
        press({.4, .9});
        QCOMPARE(notice.count(), 1);
        QVERIFY(!notice.last().first().toString().isEmpty());
        release({.4, .9});
        key(Qt::Key_Left);
        QVERIFY(notice.last().first().toString().isEmpty());
    }

    void doubleClicks() {
        const auto doubleClick = [this](const QPointF& point) {
            QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, at(point));
            QTest::mouseDClick(m_view.get(), Qt::LeftButton, {}, at(point));
        };
        doubleClick({.5, .75});
        QCOMPARE(text(), QStringLiteral("(0, 0), (0.5, 0.75), (1, 1)"));
        doubleClick({.5, .75});
        QCOMPARE(text(), QLatin1String(Three));
        m_view->setPressOffLine(CurveView::Selects);
        doubleClick({.25, .75});
        QCOMPARE(text(), QStringLiteral("(0, 0), (0.25, 0.75), (0.5, 0.5), (1, 1)"));
    }

    void keys() {
        setCurve(Three);
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        key(Qt::Key_Tab);
        key(Qt::Key_Tab);
        QCOMPARE(key(Qt::Key_Up, Qt::ShiftModifier), QStringLiteral("(0, 0), (0.5, 0.6), (1, 1)"));
        QCOMPARE(key(Qt::Key_Left), QStringLiteral("(0, 0), (0.49, 0.6), (1, 1)"));
        QCOMPARE(key(Qt::Key_Right, Qt::ControlModifier),
                 QStringLiteral("(0, 0), (0.491, 0.6), (1, 1)"));
        QCOMPARE(key(Qt::Key_Home), QStringLiteral("(0, 0), (0.491, 0.491), (1, 1)"));
        QCOMPARE(finished.count(), 4);
        QCOMPARE(key(Qt::Key_Delete), QLatin1String(Identity));
        QCOMPARE(key(Qt::Key_Delete), QLatin1String(Identity)); // two stay
        QCOMPARE(key(Qt::Key_Insert), QLatin1String(Three));
        QCOMPARE(finished.count(), 6);
        QCOMPARE(selected(), 1);
        key(Qt::Key_Backtab);
        QCOMPARE(selected(), 0);
        for (const int own : {int(Qt::Key_Delete), int(Qt::Key_Left), int(Qt::Key_S)})
            QVERIFY(sendKey(*m_view, own));
        QVERIFY(!sendKey(*m_view, Qt::Key_Escape)); // a dialog's
        QVERIFY(!sendKey(*m_view, Qt::Key_Space));
    }

    void aHeldKeyIsOneEdit() {
        setCurve(Three);
        m_model->select(0, 1, 1, CurveModel::SelectOnly);
        const QSignalSpy started(m_view.get(), &CurveView::editStarted);
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        const auto send = [this](QEvent::Type type, bool repeated) {
            QKeyEvent event(type, Qt::Key_Up, Qt::NoModifier, QString(), repeated);
            QCoreApplication::sendEvent(m_view.get(), &event);
        };
        for (const bool repeated : {false, true, true})
            send(QEvent::KeyPress, repeated);
        QCOMPARE(finished.count(), 0);
        send(QEvent::KeyRelease, false);
        QCOMPARE(started.count(), 1);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(text(), QStringLiteral("(0, 0), (0.5, 0.53), (1, 1)"));
    }

    void takesAnEditBack_data() {
        const Kestrel::Test::Columns<int> row("way");
        row("Escape", 0);
        row("the right button", 1);
        row("by the host", 2);
    }

    void takesAnEditBack() {
        QFETCH(int, way);
        setCurve("(0, 0), (0.333333343, 0.5), (1, 1)");
        m_model->select(0, 1, 1, CurveModel::SelectOnly);
        const Curves before = m_model->curves();
        const QSignalSpy edited(m_view.get(), &CurveView::edited);
        QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        press({.6, .9});
        move({.6, .8});
        QVERIFY(m_view->isEditing());
        const int told = int(edited.count());
        if (way == 0)
            QVERIFY(sendKey(*m_view, Qt::Key_Escape));
        else if (way == 1)
            QTest::mousePress(m_view.get(), Qt::RightButton, {}, at({.6, .8}));
        else
            m_view->cancelEdit();
        QVERIFY(m_model->curves() == before);
        QCOMPARE(selected(), 1);
        QCOMPARE(edited.count(), told + 1);
        QCOMPARE(finished.takeFirst().first().toBool(), false);
        move({.7, .7});
        release({.7, .7});
        QVERIFY(m_model->curves() == before);
        QCOMPARE(finished.count(), 0);
        drag({{.6, .9}, {.6, .8}}); // the next one is as any
        QCOMPARE(finished.takeFirst().first().toBool(), true);
    }

    void isInterrupted() {
        setCurve(Three);
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        press({.5, .5});
        move({.6, .6});
        m_view->hide();
        QCOMPARE(finished.count(), 1);
        QVERIFY(finished.last().first().toBool());
        m_view->show();
        move({.7, .7});
        QCOMPARE(text(), QStringLiteral("(0, 0), (0.6, 0.6), (1, 1)"));
    }

    void menu() {
        setCurve(Three);
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
        setCurve("(0, 1), (1, 0)");
        choose({.5, .5}, 3);
        QCOMPARE(text(), QLatin1String(Identity));
    }

    // What a host may do while it is told of an edit.
    void hosts() {
        const QSignalSpy edited(m_view.get(), &CurveView::edited);
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        press({.5, .75});
        m_model->setCurves(m_model->curves()); // an echo
        move({.5, .8});
        QCOMPARE(edited.count(), 2);
        setCurve(Identity); // undone in the middle of the drag
        move({.5, .9});
        release({.5, .9});
        QCOMPARE(text(), QLatin1String(Identity));
        QCOMPARE(edited.count(), 2);
        QCOMPARE(finished.count(), 1);

        // One that clamps wins, and the drag goes on.
        setCurve(Three);
        connect(m_view.get(), &CurveView::edited, m_model.get(), [this] {
            if (m_model->knot(0, 1).y > 0.7)
                m_model->move({{0, 1, m_model->knot(0, 1).x, 0.7}});
        });
        drag({{.5, .5}, {.5, .9}});
        QCOMPARE(text(), QStringLiteral("(0, 0), (0.5, 0.7), (1, 1)"));
    }

    void deletions_data() {
        const Kestrel::Test::Columns<int, bool> row("what", "model");
        row("the view, at the start", 0, false);
        row("the view, at a change", 1, false);
        row("the view, at the end", 2, false);
        row("the view, by the model", 3, false);
        row("the model, at the start", 0, true);
        row("the model, at a change", 1, true);
        row("the model, at the end", 2, true);
    }

    void deletions() {
        QFETCH(int, what);
        QFETCH(bool, model);
        const auto end = [this, model] {
            if (model)
                m_model.reset();
            else
                m_view.reset();
        };
        setCurve(Three);
        if (what == 0)
            connect(m_view.get(), &CurveView::editStarted, qApp, end);
        else if (what == 1)
            connect(m_view.get(), &CurveView::edited, qApp, end);
        else if (what == 2)
            connect(m_view.get(), &CurveView::editFinished, qApp, end);
        else
            connect(m_model.get(), &CurveModel::knotsChanged, qApp, end);
        press({.5, .5});
        move({.6, .7});
        if (m_view)
            move({.7, .7});
        if (m_view)
            release({.7, .7});
        QVERIFY(!(model ? static_cast<QObject*>(m_model.get()) : m_view.get()));
        if (m_view) {
            QVERIFY(!m_view->isEditing());
            m_view->grab();
            type(Qt::Key_Up);
        }
    }

    void ranges() {
        const QSignalSpy visible(m_view.get(), &CurveView::visibleRangeChanged);
        const QPoint place = at({.25, .75});
        const auto wheel = [&](Qt::KeyboardModifiers modifiers) {
            QWheelEvent event(place, m_view->mapToGlobal(place), {}, {0, 120}, Qt::NoButton,
                              modifiers, Qt::NoScrollPhase, false);
            event.ignore();
            QCoreApplication::sendEvent(m_view.get(), &event);
            return event.isAccepted();
        };
        m_view->clearFocus();
        QVERIFY(!wheel({})); // it scrolls what is around
        QVERIFY(wheel(Qt::ControlModifier));
        QVERIFY(isNear(m_view->visibleRange().width(), 1 / 1.1));
        QCOMPARE(m_view->visibleRange().height(), 1.0);
        m_view->setFocus();
        QVERIFY(wheel(Qt::ShiftModifier));
        QVERIFY(isNear(m_view->visibleRange().height(), 1 / 1.1));
        QVERIFY(wheel({}));
        QCOMPARE(visible.count(), 3);
        const QRectF range = m_view->visibleRange();
        QVERIFY(isNear(range.left() + 0.25 * range.width(), 0.25));
        QVERIFY(isNear(range.top() + 0.75 * range.height(), 0.75));
        key(Qt::Key_0);
        QCOMPARE(m_view->visibleRange(), QRectF(0, 0, 1, 1));
        m_view->setZoomEnabled(false);
        QVERIFY(!wheel({}));

        m_view->setNominalRange(QRectF(0, -5, 100, 10));
        QCOMPARE(m_view->visibleRange(), QRectF(0, -5, 100, 10));
        for (const QRectF& none :
             {QRectF(0, 0, 0, 1), QRectF(0, qQNaN(), 1, 1), QRectF(0, 0, -1, 1)})
            m_view->setVisibleRange(none);
        QCOMPARE(m_view->visibleRange(), QRectF(0, -5, 100, 10));
    }

    void middleButtonPans() {
        const auto middle = [this](QEvent::Type type, const QPointF& point) {
            QMouseEvent event(type, at(point), m_view->mapToGlobal(at(point)), Qt::MiddleButton,
                              Qt::MiddleButton, Qt::NoModifier);
            QCoreApplication::sendEvent(m_view.get(), &event);
        };
        middle(QEvent::MouseButtonPress, {.5, .5});
        middle(QEvent::MouseMove, {.75, .25});
        QVERIFY(isNear(m_view->visibleRange().left(), -0.25));
        QVERIFY(isNear(m_view->visibleRange().top(), 0.25));
        QVERIFY(sendKey(*m_view, Qt::Key_Escape));
        QCOMPARE(m_view->visibleRange(), QRectF(0, 0, 1, 1));
        middle(QEvent::MouseMove, {.9, .9});
        QCOMPARE(m_view->visibleRange(), QRectF(0, 0, 1, 1));
    }

    void severalCurves() {
        showKeys();
        const QSignalSpy current(m_view.get(), &CurveView::currentCurveChanged);
        drag({{.7, .9}, {.7, .8}}); // of a curve that stands behind: a new knot of the current one
        QCOMPARE(m_keys->knots(0), 5);
        m_view->setOthersEditable(true);
        drag({{.2, .1}, {.2, .3}});
        QCOMPARE(m_view->currentCurve(), 1);
        QVERIFY(isNear(m_keys->knot(1, 0).y, 0.3));
        drag({{.05, .95}, {.35, .05}}); // a rubber band
        QCOMPARE(selectedKeys(0), (std::vector<int>{0, 1}));
        QCOMPARE(selectedKeys(1), (std::vector<int>{0}));
        QCOMPARE(m_view->selectedCount(), 3);
        const QSignalSpy started(m_view.get(), &CurveView::editStarted);
        drag({{.2, .3}, {.25, .35}});
        QCOMPARE(started.last().first().toString(), QStringLiteral("move 3 knots"));
        QVERIFY(isNear(m_keys->knot(0, 1).x, 0.35));
        QVERIFY(isNear(m_keys->knot(1, 0).y, 0.35));
        m_view->setCurveVisible(0, false);
        QCOMPARE(m_view->selectedCount(), 1);
        type(Qt::Key_BracketLeft); // over the hidden one
        QCOMPARE(m_view->currentCurve(), 1);
        QCOMPARE(current.count(), 1);
    }

    void shapesAndSlopes() {
        showKeys();
        m_keys->select(0, 1, 1, CurveModel::SelectOnly);
        type(Qt::Key_6);
        QCOMPARE(m_keys->knot(0, 1).shape, int(KeyCurve::Shape::Free));
        // A monotone peak is level, so its handle lies 48 pixels to the right.
        press({.3 + 48.0 / Side, .8});
        move({.3 + 48.0 / Side, .9});
        release({.3 + 48.0 / Side, .9});
        QVERIFY(m_keys->knot(0, 1).slopeOut > 0.3);
        QCOMPARE(m_view->editText(), QStringLiteral("slope"));
        m_view->resetSelected();
        QCOMPARE(m_keys->knot(0, 1).shape, int(KeyCurve::Shape::Monotone));

        // A double click on a handle is for the piece on its side.
        for (const double side : {-1.0, 1.0}) {
            const QPointF handle(.3 + side * 48.0 / Side, .8);
            QVERIFY(m_keys->setShape(0, {0, 1}, int(KeyCurve::Shape::Free)));
            QVERIFY(m_keys->setSlopes(0, 1, 0, 0, true));
            QTest::mouseClick(m_view.get(), Qt::LeftButton, {}, at(handle));
            QTest::mouseDClick(m_view.get(), Qt::LeftButton, {}, at(handle));
            const int reset = side < 0 ? 0 : 1;
            QCOMPARE(m_keys->knot(0, reset).shape, int(KeyCurve::Shape::Monotone));
            QCOMPARE(m_keys->knot(0, 1 - reset).shape, int(KeyCurve::Shape::Free));
        }
    }

    // A slope that is not to be grabbed says why.
    void slopeTips() {
        setCurve(Three);
        m_model->select(0, 1, 1, CurveModel::SelectOnly);
        const auto tipAt = [this](const QPointF& point) {
            QHelpEvent event(QEvent::ToolTip, at(point), m_view->mapToGlobal(at(point)));
            QCoreApplication::sendEvent(m_view.get(), &event);
            return event.isAccepted() ? QToolTip::text() : QString();
        };
        QVERIFY(tipAt({.54, .54}).contains(QLatin1String("slope")));
        QVERIFY(tipAt({.54, .46}).isEmpty());
        QVERIFY(tipAt({.75, .75}).isEmpty());
        m_view->setToolTip(QStringLiteral("of the host"));
        QCOMPARE(tipAt({.75, .75}), QStringLiteral("of the host"));
        showKeys();
        m_keys->select(0, 1, 1, CurveModel::SelectOnly);
        QCOMPARE(tipAt({.3, .8}), QStringLiteral("of the host"));
    }

    void whatIsSelected() {
        showKeys();
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        type(Qt::Key_A, Qt::ControlModifier);
        QCOMPARE(m_view->selectedCount(), 4);
        m_view->setSelectedPosition(0.5, 0.5); // of several y alone
        QCOMPARE(m_keys->knot(0, 3).x, 0.9);
        QCOMPARE(m_keys->knot(0, 3).y, 0.5);
        QCOMPARE(m_view->editText(), QStringLiteral("move 4 knots"));
        m_keys->select(0, 1, 1, CurveModel::SelectOnly);
        m_view->setSelectedPosition(2.0, qQNaN()); // as near as the neighbour lets it
        QVERIFY(m_keys->knot(0, 1).x > 0.3 && m_keys->knot(0, 1).x < 0.6);
        type(Qt::Key_F);
        QVERIFY(isNear(m_view->visibleRange().center().x(), m_keys->knot(0, 1).x));
        m_keys->select(0, 2, 3, CurveModel::SelectOnly);
        type(Qt::Key_D, Qt::ControlModifier);
        QCOMPARE(m_keys->knots(0), 6);
        QVERIFY(isNear(m_keys->knot(0, 4).x, 1.2));
        QCOMPARE(selectedKeys(), (std::vector<int>{4, 5}));
        m_view->selectAll();
        m_view->deleteSelected();
        QCOMPARE(finished.count(), 4);
        QCOMPARE(m_view->selectedCount(), 0);
    }

    void clipboard() {
        setCurve(Three);
        m_view->copy();
        QCOMPARE(QApplication::clipboard()->text(), QLatin1String(Three));
        setCurve(Identity);
        m_view->paste(); // a whole curve replaces
        QCOMPARE(text(), QLatin1String(Three));
        QApplication::clipboard()->setText(QStringLiteral("(0.25, 0.75)"));
        m_view->paste();
        QCOMPARE(text(), QStringLiteral("(0, 0), (0.25, 0.75), (0.5, 0.5), (1, 1)"));
        QCOMPARE(m_view->editText(), QStringLiteral("paste"));
        const QSignalSpy notice(m_view.get(), &CurveView::notice);
        QApplication::clipboard()->setText(QStringLiteral("no curve"));
        m_view->paste();
        QCOMPARE(notice.count(), 1);

        showKeys();
        m_keys->select(0, 1, 2, CurveModel::SelectOnly);
        m_view->cut();
        QCOMPARE(m_keys->knots(0), 2);
        m_view->setPlayhead(0.4);
        m_view->paste();
        QCOMPARE(m_keys->knots(0), 4);
        QVERIFY(isNear(m_keys->knot(0, 1).x, 0.4));
        QVERIFY(isNear(m_keys->knot(0, 2).x, 0.7));
        QCOMPARE(selectedKeys(), (std::vector<int>{1, 2}));
    }

    void addOnCurve() {
        showKeys();
        const double before = m_keys->keyCurve(0).valueAt(0.45);
        m_view->addOnCurve(0.4);
        QCOMPARE(m_keys->knots(0), 5);
        QCOMPARE(selectedKeys(), (std::vector<int>{2}));
        QVERIFY(isNear(m_keys->keyCurve(0).valueAt(0.45), before));
    }

    void snapping() {
        showKeys();
        m_view->setSnapEnabled(true);
        m_view->setSnapLines({0.5}, {});
        drag({{.6, .4}, {.515, .25}});
        QCOMPARE(m_keys->knot(0, 2).x, 0.5);
        m_view->setSnapLines({}, {});
        m_keys->select(0, 2, 2, CurveModel::SelectOnly);
        press({.5, .25});
        move({.55, .7}); // on the chord of its neighbours
        const double chord = .8 - (m_keys->knot(0, 2).x - .3) / .6 * .2;
        QVERIFY(isNear(m_keys->knot(0, 2).y, chord));
        // Its line goes down to the right, as the chord does.
        const QImage shown = m_view->grab().toImage();
        release({.55, .7});
        const QImage without = m_view->grab().toImage();
        const auto differs = [&](double x, double y) {
            int count = 0;
            for (int dy = -2; dy <= 2; ++dy) {
                for (int dx = -3; dx <= 3; ++dx) {
                    const QPoint pixel = at({x, y}) + QPoint(dx, dy);
                    count += shown.pixel(pixel) != without.pixel(pixel);
                }
            }
            return count > 0;
        };
        QVERIFY(differs(.4, .8 - .1 / .6 * .2) && differs(.8, .8 - .5 / .6 * .2));
        QVERIFY(!differs(.4, chord) && !differs(.2, chord));
        m_keys->select(0, 0, -1, CurveModel::SelectOnly);
        drag({{.9, .6}, {.945, .3}}, Qt::AltModifier);
        QVERIFY(isNear(m_keys->knot(0, 3).x, 0.945));
    }

    void properties() {
        const QSignalSpy scales(m_view.get(), &CurveView::scalesChanged);
        const QSignalSpy handling(m_view.get(), &CurveView::handlingChanged);
        const QSignalSpy marks(m_view.get(), &CurveView::marksChanged);
        const auto set = [this](const char* name, const QVariant& value) {
            return m_view->setProperty(name, value) && m_view->setProperty(name, value) &&
                   m_view->property(name) == value;
        };
        QVERIFY(set("shadowBase", 8.0));
        m_view->setXScale(CurveView::ShadowScale);
        m_view->setXScale(CurveView::ShadowScale);
        QCOMPARE(scales.count(), 2);
        QVERIFY(set("zoomEnabled", false));
        QVERIFY(set("othersEditable", true));
        QCOMPARE(handling.count(), 2);
        QVERIFY(set("marker", 0.18));
        QVERIFY(set("playhead", 0.5));
        m_view->setMarker(qQNaN());
        m_view->setMarker(qQNaN());
        QCOMPARE(marks.count(), 3);
    }

    void timeAxis() {
        showKeys();
        auto formatter = std::make_unique<TimeFormatter>();
        m_view->setTimeAxis(formatter.get());
        m_view->setNominalRange(QRectF(1001, 0, 100, 1));
        m_keys->setKeyCurve(0, keysOf({{1010, .2}, {1050, .8}}));
        m_keys->select(0, 1, 1, CurveModel::SelectOnly);
        type(Qt::Key_Right); // a frame
        QCOMPARE(m_keys->knot(0, 1).x, 1051.0);
        formatter->setTimeDisplayFormat(false, false);
        m_view->grab();
        formatter.reset();
        m_view->grab();
        QVERIFY(!m_view->timeAxis());
    }

    void accessible() {
        QAccessibleInterface* const chart = QAccessible::queryAccessibleInterface(m_view.get());
        QVERIFY(chart);
        QCOMPARE(chart->role(), QAccessible::Chart);
        setCurve(Three);
        QCOMPARE(chart->childCount(), 3);
        QAccessibleInterface* const knot = chart->child(1);
        QCOMPARE(knot->text(QAccessible::Name), QStringLiteral("Knot 2 of 3"));
        QCOMPARE(chart->indexOfChild(knot), 1);
        QVERIFY(!knot->state().selected);
        knot->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(knot->state().selected && knot->state().focused);
        const QSignalSpy finished(m_view.get(), &CurveView::editFinished);
        knot->valueInterface()->setCurrentValue(0.75);
        QCOMPARE(finished.count(), 1);
        QCOMPARE(text(), QStringLiteral("(0, 0), (0.5, 0.75), (1, 1)"));
        QVERIFY(chart->text(QAccessible::Value).contains(knot->text(QAccessible::Value)));
        setCurve(Identity);
        QVERIFY(!chart->child(2));

        showKeys();
        std::vector<KeyCurve::Key> many(500);
        for (std::size_t i = 0; i < many.size(); ++i)
            many[i].x = double(i);
        m_keys->setKeyCurve(0, KeyCurve(many));
        QCOMPARE(chart->childCount(), 0);
        m_keys->select(0, 7, 8, CurveModel::SelectOnly);
        QCOMPARE(chart->childCount(), 2);
        QCOMPARE(chart->child(0)->text(QAccessible::Name), QStringLiteral("Knot 8 of 500"));
    }
};

KXUI_TEST(CurveViewTest);
#include "CurveViewTest.moc"
