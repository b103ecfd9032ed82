#include <KxUI/curveedit/CurveDrag_p.h>
#include <KxUI/curveedit/CurvesModel.h>
#include <KxUI/curveedit/KeyCurveModel.h>

#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <QtTest>

#include <cmath>
#include <random>

using namespace Kestrel::UI;
using Path = QVector<QPointF>;
Q_DECLARE_METATYPE(Path)

namespace {

constexpr double Side = 200;
constexpr double Margin = 8;

const char* const Identity = "(0, 0), (1, 1)";
const char* const Three = "(0, 0), (0.5, 0.5), (1, 1)";
const char* const Full = "(0, 0), (0.1, 0.1), (0.2, 0.2), (0.3, 0.3), (0.5, 0.5), (0.7, 0.7), "
                         "(0.8, 0.8), (1, 1)";

/** What a view does with a mouse, without the view. */
struct Desk {
    CurvesModel curves;
    KeyCurveModel keys;
    CurveScene scene;
    CurveDrag drag;
    CurveInput last;
    int ends = 0;
    int edits = 0;

    Desk() {
        scene.curves = {0};
        show(curves, {0, 0, 1, 1});
    }
    void show(CurveModel& model, const QRectF& range) {
        scene.model = &model;
        scene.nominal = range;
        scene.plot = CurvePlot({Margin, Margin, Side, Side}, range);
    }
    CurveModel& model() { return *const_cast<CurveModel*>(scene.model); }
    void showKeys(const char* text, const QRectF& range) {
        KeyCurve curve;
        curve.setText(text);
        keys.setKeyCurve(keys.addCurve(QString(), KeyCurve()), curve);
        show(keys, range);
    }
    /** The knots by six digits. */
    QString plain() {
        QStringList knots;
        for (int i = 0; i < scene.model->knots(0); ++i) {
            const CurveModel::Knot knot = scene.model->knot(0, i);
            knots.append(QStringLiteral("(%1, %2)")
                             .arg(knot.x, 0, 'g', 6)
                             .arg(std::abs(knot.y) < 1e-12 ? 0 : knot.y, 0, 'g', 6));
        }
        return knots.join(QStringLiteral(", "));
    }

    void press(const QPointF& at, Qt::KeyboardModifiers modifiers = {},
               Qt::MouseButton button = Qt::LeftButton) {
        last = {scene.plot.toWidget(at), button, modifiers, last.time + 1000};
        run(drag.press(scene, last, button));
    }
    void move(const QPointF& at, Qt::KeyboardModifiers modifiers = {}) {
        last.mouse = scene.plot.toWidget(at);
        last.modifiers = modifiers;
        run(drag.move(scene, last));
    }
    void release() { run(drag.release(scene, drag.button())); }

    void run(const CurveCommands& commands) {
        for (const CurveCommand& each : commands) {
            edits += each.isEdit() ? 1 : 0;
            switch (each.kind) {
            case CurveCommand::SetCurrent:
                scene.current = each.curve;
                break;
            case CurveCommand::Select:
                model().select(each.curve, each.first, each.last, each.mode);
                break;
            case CurveCommand::ShowRange:
                scene.plot = CurvePlot(scene.plot.rect(), each.range);
                break;
            case CurveCommand::End:
                ++ends;
                break;
            case CurveCommand::Move:
                model().move(each.moves);
                break;
            case CurveCommand::Add:
                run(drag.added(scene, model().add(each.curve, each.place.x(), each.place.y())));
                break;
            case CurveCommand::AddOnLine:
                run(drag.added(scene, model().addOnLine(each.curve, each.place.x())));
                break;
            case CurveCommand::Remove:
                model().remove(each.curve, {each.first});
                break;
            case CurveCommand::Restore:
                model().load(each.curve, each.bytes);
                break;
            case CurveCommand::SetSlopes:
                model().setSlopes(each.curve, each.first, each.place.x(), each.place.y(),
                                  each.broken);
                break;
            }
        }
    }
};

} // namespace

class CurveDragTest : public QObject {
    Q_OBJECT

private slots:
    void drags_data() {
        const Kestrel::Test::Columns<QString, Path, QString, int> row("before", "path", "after",
                                                                      "what");
        const int none = -1;
        row("add", Identity, {{.5, .75}}, "(0, 0), (0.5, 0.75), (1, 1)", CurveDrag::AddsKnot);
        row("add on the line", Identity, {{.5, .52}}, Three, CurveDrag::AddsKnot);
        row("add and drag", Identity, {{.25, .75}, {.3, .9}}, "(0, 0), (0.3, 0.9), (1, 1)",
            CurveDrag::AddsKnot);
        row("press off centre", Three, {{.515, .51}}, Three, none);
        row("move", Three, {{.515, .51}, {.615, .81}}, "(0, 0), (0.6, 0.8), (1, 1)",
            CurveDrag::MovesKnots);
        row("up to the neighbour", Three, {{.5, .5}, {1.1, 1.1}}, "(0, 0), (0.998047, 1), (1, 1)",
            CurveDrag::MovesKnots);
        row("an end moves inwards", Three, {{0, 0}, {.2, .1}}, "(0.2, 0.1), (0.5, 0.5), (1, 1)",
            CurveDrag::MovesKnots);
        row("pulled out", Three, {{.5, .5}, {.5, 1.5}}, Identity, CurveDrag::MovesKnots);
        row("pulled out and back", Three, {{.5, .5}, {.5, .9}, {.5, 1.5}, {.5, .75}},
            "(0, 0), (0.5, 0.75), (1, 1)", CurveDrag::MovesKnots);
        row("an end is not pulled out", Three, {{1, 1}, {.75, 1.5}},
            "(0, 0), (0.5, 0.5), (0.75, 1)", CurveDrag::MovesKnots);
        row("from outside of the square", "(0, 0), (0.5, 1.5), (1, 1)", {{.5, 1}, {.5, .8}},
            "(0, 0), (0.5, 0.8), (1, 1)", CurveDrag::MovesKnots);
        row("full", Full, {{.4, .9}}, Full, none);
        row("no room", "(0, 0), (0.25, 1), (0.253, 0), (1, 1)", {{.2515, .5}},
            "(0, 0), (0.25, 1), (0.253, 0), (1, 1)", none);
        row("beside the plot", Three, {{-.03, .5}}, Three, none);
    }

    void drags() {
        QFETCH(QString, before);
        QFETCH(Path, path);
        QFETCH(QString, after);
        QFETCH(int, what);
        Desk desk;
        QVERIFY(desk.curves.load(0, before.toLatin1()));
        desk.press(path.first());
        const QString start = desk.plain();
        for (const QPointF& point : path.mid(1))
            desk.move(point);
        if (what >= 0)
            QCOMPARE(int(desk.drag.what()), what);
        QCOMPARE(desk.ends, 0);
        desk.release();
        QCOMPARE(desk.plain(), after);
        QVERIFY(!desk.drag.isHeld());
    }

    // One axis, a part of the way, Escape, and what the mouse does after it.
    void modifiers() {
        Desk desk;
        desk.curves.load(0, Three);
        desk.press({.5, .5});
        desk.move({.6, .62}, Qt::ShiftModifier);
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.5, 0.62), (1, 1)"));
        desk.move({.6, .62}, Qt::ControlModifier); // from where it is
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.5, 0.62), (1, 1)"));
        desk.move({.7, .62}, Qt::ControlModifier);
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.51, 0.62), (1, 1)"));
        desk.run(desk.drag.takeBack(desk.scene));
        QVERIFY(desk.drag.isHeld() && !desk.drag.isActive());
        desk.move({.8, .8});
        QCOMPARE(desk.edits, 2);
        desk.last.held = Qt::NoButton;
        desk.move({.9, .8});
        QVERIFY(!desk.drag.isHeld());
        QCOMPARE(desk.ends, 1);
    }

    void selectionByPresses() {
        Desk desk;
        desk.curves.load(0, "(0, 0), (0.3, 0.5), (0.6, 0.5), (1, 1)");
        const auto click = [&](double x, Qt::KeyboardModifiers modifiers = {}) {
            desk.press({x, .5}, modifiers);
            desk.move({x + .01, .5}, modifiers); // less than a drag
            desk.move({x, .5}, modifiers);
            desk.release();
            return desk.curves.selectedKnots(0);
        };
        QCOMPARE(click(.3, Qt::ShiftModifier), std::vector<int>{1});
        QCOMPARE(click(.6, Qt::ShiftModifier), (std::vector<int>{1, 2}));
        QCOMPARE(click(.3, Qt::ControlModifier), std::vector<int>{2});
        QCOMPARE(click(.3, Qt::ControlModifier), (std::vector<int>{1, 2}));
        QCOMPARE(desk.edits, 0);
        desk.press({.3, .5});
        desk.release();
        QCOMPARE(desk.curves.selectedKnots(0), std::vector<int>{1});
        desk.press({.6, .5}, Qt::ShiftModifier);
        desk.move({.6, .7}, Qt::ShiftModifier);
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.3, 0.7), (0.6, 0.7), (1, 1)"));
        QCOMPARE(desk.drag.count(), 2);
    }

    // Overlapping knots come one after the other; later the first one again.
    void takesTheNextOne() {
        Desk desk;
        desk.showKeys("(0, 0), (0.5, 0.5), (0.501, 0.5), (0.502, 0.5), (1, 1)", {0, 0, 1, 1});
        desk.scene.several = true;
        std::vector<int> taken;
        for (const int later : {1000, 100, 100, 100, 1000}) {
            desk.last.time += later - 1000;
            desk.press({.5, .5});
            desk.release();
            taken.push_back(desk.keys.selectedKnots(0).at(0));
        }
        QCOMPARE(taken, (std::vector<int>{1, 2, 3, 1, 1}));
        QVERIFY(!desk.drag.resetBy(desk.scene, desk.last));
    }

    void box() {
        Desk desk;
        desk.showKeys("(0, 0), (0.2, 0.5), (0.4, 0.5), (0.6, 0.9), (1, 1)", {0, 0, 1, 1});
        desk.scene.several = true;
        desk.press({.1, .45});
        desk.move({.5, .95});
        QCOMPARE(desk.keys.selectedKnots(0), (std::vector<int>{1, 2}));
        desk.move({.7, .95});
        QCOMPARE(desk.keys.selectedKnots(0), (std::vector<int>{1, 2, 3}));
        desk.move({.3, .95});
        QCOMPARE(desk.keys.selectedKnots(0), (std::vector<int>{1}));
        desk.release();
        desk.press({.5, .95}, Qt::ShiftModifier);
        desk.move({.7, .8}, Qt::ShiftModifier);
        QCOMPARE(desk.keys.selectedKnots(0), (std::vector<int>{1, 3}));
        desk.run(desk.drag.takeBack(desk.scene));
        desk.release();
        QCOMPARE(desk.keys.selectedKnots(0), (std::vector<int>{1}));
        desk.press({.1, .45}, Qt::ControlModifier);
        desk.move({1.3, .95}, Qt::ControlModifier);
        QVERIFY(desk.keys.selectedKnots(0).empty());
        QVERIFY(desk.drag.scrolls(desk.scene));
        desk.run(desk.drag.scroll(desk.scene));
        QVERIFY(desk.scene.plot.range().left() > 0.05);
        QCOMPARE(desk.edits, 0);
    }

    // No order that the machine asks for may be refused, and none that would be taken is missed.
    void groupsGoAsFarAsTheyCan_data() { Kestrel::Test::addSeeds(200); }

    void groupsGoAsFarAsTheyCan() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        std::uniform_real_distribution<double> unit(0, 1);
        KeyCurveModel model;
        KeyCurve curve;
        for (int i = 0; i < 9; ++i) {
            KeyCurve::Key key;
            key.x = i + 0.6 * unit(random);
            key.y = unit(random);
            key.selected = random() % 2 == 0;
            curve.insert(key);
        }
        model.addCurve(QString(), curve);
        CurveModel::Limits limits = model.limits(0);
        limits.lowX = -1;
        limits.highX = 10;
        limits.lowY = 0;
        limits.highY = 1.5;
        limits.gap = 0.1;
        model.setLimits(0, limits);
        CurveScene scene;
        scene.model = &model;
        scene.curves = {0};
        const CurveGroup group = CurveGroup::selected(scene);
        if (group.isEmpty())
            return;
        const QByteArray start = model.save(0);
        const auto isTaken = [&](const CurveGroup::Moves& moves) {
            const bool taken = model.move(moves);
            model.load(0, start);
            return taken;
        };
        const QPointF way(4 * unit(random) - 2, 2 * unit(random) - 1);
        const QPointF limited = group.limitedWay(way, {});
        QVERIFY(isTaken(group.moved(limited)));
        const QPointF further(way.x() == limited.x() ? 0 : std::copysign(1e-4, way.x()),
                              way.y() == limited.y() ? 0 : std::copysign(1e-4, way.y()));
        CurveGroup::Moves moves = group.moved(limited);
        for (CurveModel::Move& move : moves)
            move.x += further.x();
        QVERIFY(further.x() == 0 || !isTaken(moves));
        moves = group.moved(limited);
        for (CurveModel::Move& move : moves)
            move.y += further.y();
        QVERIFY(further.y() == 0 || !isTaken(moves));

        const QPointF about = random() % 2 == 0 ? group.low() : (group.low() + group.high()) / 2;
        const QPointF factors(3 * unit(random), 4 * unit(random) - 2);
        const QPointF scale = group.limitedScale(about, factors);
        QVERIFY(isTaken(group.scaled(about, scale)));
        const auto scaledBy = [&](double x, double y) {
            CurveGroup::Moves scaled = group.scaled(about, {1, 1});
            for (CurveModel::Move& move : scaled)
                move = {0, move.knot, about.x() + (move.x - about.x()) * x,
                        about.y() + (move.y - about.y()) * y};
            return isTaken(scaled);
        };
        if (scale.x() != factors.x() && group.count() > 1)
            QVERIFY(!scaledBy(scale.x() + std::copysign(0.01, factors.x() - scale.x()), 1));
        if (scale.y() != factors.y() && group.count() > 1)
            QVERIFY(!scaledBy(1, scale.y() + std::copysign(0.01, factors.y() - scale.y())));
    }

    void frame() {
        Desk desk;
        desk.showKeys("(0, 0), (0.2, 0.2, selected), (0.4, 0.4, selected), (0.8, 0.4)",
                      {0, 0, 1, 1});
        desk.scene.hasFrame = true;
        const CurveFrame frame = CurveFrame::of(desk.scene);
        const auto at = [&](int grip) { return desk.scene.plot.toCurve(frame.grip(grip)); };
        desk.press(at(2));
        QCOMPARE(desk.drag.mode(), CurveDrag::DragFrame);
        desk.move(at(2) + QPointF(.1, .2));
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.2, 0.2), (0.5, 0.6), (0.8, 0.4)"));
        QVERIFY(QLineF(desk.drag.scale(), QPointF(1.5, 2)).length() < 1e-9);
        desk.move(at(2) + QPointF(.1, .2), Qt::AltModifier);
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.1, 0), (0.5, 0.6), (0.8, 0.4)"));
        desk.move(at(2) + QPointF(5, 0));
        QVERIFY(desk.keys.knot(0, 2).x < 0.8 && desk.keys.knot(0, 2).x > 0.7999);
        desk.move(at(2) - QPointF(5, 0.4)); // upside down, but in order
        QVERIFY(desk.keys.knot(0, 1).x < desk.keys.knot(0, 2).x);
        QVERIFY(std::abs(desk.keys.knot(0, 2).y) < 1e-12);
    }

    void handles() {
        Desk desk;
        desk.showKeys("(0, 0, linear), (0.5, 0.5, linear, selected), (1, 0, linear)", {0, 0, 1, 1});
        const auto handle = [&] {
            return desk.scene.plot.toCurve(*CurvePick::handlesOf(desk.scene, 0, 1).out);
        };
        const QPointF start = handle();
        desk.press(start);
        desk.move(start);
        QCOMPARE(desk.edits, 0); // a press changes nothing
        QCOMPARE(desk.drag.mode(), CurveDrag::DragHandle);
        desk.move({.7, .6});
        CurveModel::Knot knot = desk.keys.knot(0, 1);
        QVERIFY(std::abs(knot.slopeIn - 0.5) < 1e-9 && std::abs(knot.slopeOut - 0.5) < 1e-9);
        desk.move({.7, .5 + .2 * std::tan(0.9)}, Qt::ShiftModifier);
        knot = desk.keys.knot(0, 1);
        QVERIFY(std::abs(knot.slopeOut - std::tan(M_PI / 180 * 45)) < 1e-9 ||
                std::abs(knot.slopeOut - std::tan(M_PI / 180 * 60)) < 1e-9);
        desk.move({.7, .5}, Qt::AltModifier);
        knot = desk.keys.knot(0, 1);
        QVERIFY(knot.broken && std::abs(knot.slopeOut) < 1e-9 && knot.slopeIn > 0.9);
        desk.move({.2, .9}); // never backwards
        QVERIFY(desk.keys.knot(0, 1).slopeOut > 10);
    }

    void panAndZoom() {
        Desk desk;
        desk.press({.25, .5}, {}, Qt::MiddleButton);
        desk.move({.5, .5});
        QVERIFY(std::abs(desk.scene.plot.range().left() + 0.25) < 1e-12);
        desk.run(desk.drag.takeBack(desk.scene));
        desk.release();
        QCOMPARE(desk.scene.plot.range(), QRectF(0, 0, 1, 1));
        desk.press({.25, .5}, Qt::ControlModifier, Qt::MiddleButton);
        desk.last.mouse += QPointF(CurveZoomDrag::DoubleZoom, 0);
        desk.run(desk.drag.move(desk.scene, desk.last));
        QVERIFY(std::abs(desk.scene.plot.range().width() - 0.5) < 1e-12);
        QVERIFY(std::abs(desk.scene.plot.toX(.25) - (Margin + .25 * Side)) < 1e-6);
    }

    // Somebody else changes what is dragged.
    void hosts() {
        Desk desk;
        desk.curves.load(0, Three);
        desk.press({.5, .5});
        desk.move({.5, .7});
        QVERIFY(desk.drag.modelChanged(desk.scene).empty()); // an echo
        desk.curves.move({{0, 1, .5, .6}});                  // clamped
        QVERIFY(desk.drag.modelChanged(desk.scene).empty());
        desk.move({.5, .8});
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.5, 0.7), (1, 1)"));
        desk.curves.load(0, Identity);
        desk.run(desk.drag.modelChanged(desk.scene));
        QCOMPARE(desk.ends, 1);
        desk.move({.5, .9});
        desk.release();
        QCOMPARE(desk.plain(), QLatin1String(Identity));
        QCOMPARE(desk.ends, 1);

        desk.press({1, 1});
        desk.scene.model = nullptr; // dies without a word
        desk.move({.5, .9});
        QCOMPARE(desk.ends, 2);
        desk.scene.model = &desk.curves;
        desk.curves.load(0, Three);
        desk.release();
        desk.press({.5, .5});
        desk.curves.load(0, Identity); // without a word, too
        desk.move({.5, .9});
        QCOMPARE(desk.plain(), QLatin1String(Identity));
        QCOMPARE(desk.ends, 3);
    }

    // What a drag asks for can be: no number that no curve takes, nothing that rounding puts together.
    void rounding() {
        Desk steep;
        steep.showKeys("(0, 0), (0.5, 0.5), (1, 1)", {0, 0, 1, 1});
        steep.scene.plot = CurvePlot({Margin, Margin, Side, Side}, {0, 0, 1, 1},
                                     {AxisScale::Linear, AxisScale::Shadows, 64});
        steep.press({0, 0});
        steep.last.mouse = {Margin, -1e5};
        steep.run(steep.drag.move(steep.scene, steep.last));
        QVERIFY(steep.model().knot(0, 0).y > 1e149);

        for (const double x : {0.0, 0.25}) {
            Desk near;
            near.showKeys("(-1, 0), (0.5, 0.5), (1, 1)", {-1, 0, 2, 1});
            QVERIFY(near.model().move({{0, 0, x, 0}, {0, 1, std::nextafter(x, 1), .5}}));
            near.model().select(0, 0, 1, CurveModel::SelectOnly);
            near.press({x, 0});
            near.move({.65, .1});
            QVERIFY(near.model().knot(0, 0).x > x + .3);
            QVERIFY(near.model().knot(0, 1).x > near.model().knot(0, 0).x);
            near.move({7, .1}); // both of them up to the third one
            QVERIFY(near.model().knot(0, 0).x > .99);
            QVERIFY(near.model().knot(0, 1).x < 1);
        }
    }

    void snaps() {
        Desk desk;
        desk.curves.load(0, "(0, 0), (0.5, 0.3), (1, 1)");
        desk.scene.snaps = true;
        desk.scene.snapX = {.62};
        desk.press({.5, .3});
        desk.move({.61, .37});
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.62, 0.37), (1, 1)"));
        QCOMPARE(int(desk.drag.snapX()->kind), int(CurveSnapTarget::SnapLine));
        desk.move({.67, .37}); // still held
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.62, 0.37), (1, 1)"));
        desk.move({.69, .37}); // left, 12 pixels away
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.69, 0.37), (1, 1)"));
        desk.move({.69, .71}); // on the identity
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.69, 0.69), (1, 1)"));
        desk.move({.61, .37}, Qt::AltModifier);
        QCOMPARE(desk.plain(), QStringLiteral("(0, 0), (0.61, 0.37), (1, 1)"));
    }
};

KXUI_TEST(CurveDragTest);
#include "CurveDragTest.moc"
