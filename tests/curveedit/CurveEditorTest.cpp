#include <support/Input.h>
#include <support/TestRegistry.h>

#include <KxUI/curveedit/CurveEditor.h>
#include <KxUI/curveedit/CurvePresets_p.h>
#include <KxUI/curveedit/CurveShift_p.h>
#include <KxUI/curveedit/CurveView.h>
#include <KxUI/curveedit/CurvesModel.h>
#include <KxUI/curveedit/KeyCurveModel.h>
#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/ChoiceButton.h>
#include <KxUI/kit/CollapsibleToolbar.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <QFile>
#include <QInputDialog>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <cmath>

using namespace Kestrel::UI;

namespace {

using Shape = KeyCurve::Shape;

/** Keys at 0, 10, 20 and 30 of 0, 1, 2 and 3, on whole frames from 0 to 100. */
std::unique_ptr<KeyCurveModel> frames(int curves = 1) {
    auto model = std::make_unique<KeyCurveModel>();
    for (int curve = 0; curve < curves; ++curve) {
        KeyCurve keys;
        for (int i = 0; i < 4; ++i)
            keys.insert({10.0 * i, double(i)});
        CurveModel::Limits limits;
        limits.highX = 100.0;
        limits.lowY = -5.0;
        limits.highY = 5.0;
        limits.stepX = 1.0;
        model->addCurve(QStringLiteral("Curve &%1").arg(curve), keys);
        model->setLimits(curve, limits);
    }
    return model;
}

QString placesOf(const CurveModel& model, int curve = 0) {
    QStringList places;
    for (int i = 0; i < model.knots(curve); ++i)
        places << QStringLiteral("%1:%2").arg(model.knot(curve, i).x).arg(model.knot(curve, i).y);
    return places.join(QLatin1Char(' '));
}

} // namespace

/** What stands above a curve view does to it, and tells of it as of one edit. */
class CurveEditorTest : public QObject {
    Q_OBJECT

private:
    struct Log {
        QStringList lines;

        explicit Log(CurveEditor* editor) {
            connect(editor, &CurveEditor::editStarted, editor,
                    [this](const QString& what) { lines << what; });
            connect(editor, &CurveEditor::edited, editor, [this] {
                if (lines.isEmpty() || lines.last() != QLatin1String("edited"))
                    lines << QStringLiteral("edited");
            });
            connect(editor, &CurveEditor::editFinished, editor, [this](bool accepted) {
                lines << (accepted ? QStringLiteral("done") : QStringLiteral("taken back"));
            });
        }
        QStringList take() { return std::exchange(lines, {}); }
    };

    static QStringList once(const char* what) {
        return {QString::fromLatin1(what), "edited", "done"};
    }

    static void type(DoubleSpinBox* field, const char* text) {
        QVERIFY(Kestrel::Test::focus(*field));
        field->selectAll();
        QTest::keyClicks(field, QString::fromLatin1(text));
        QTest::keyClick(field, Qt::Key_Return);
    }

    static QToolButton* button(const CurveEditor& editor, const char* name) {
        for (auto* each : editor.findChildren<QToolButton*>()) {
            if (each->accessibleName() == QLatin1String(name))
                return each;
        }
        return nullptr;
    }

    static QAction* entry(const CurveEditor& editor, const char* menu, const QString& text) {
        QToolButton* const opened = button(editor, menu);
        opened->click();
        auto* const popup = opened->findChild<QMenu*>();
        QAction* found = nullptr;
        for (QAction* each : popup->actions()) {
            if (each->text() == text)
                found = each;
        }
        popup->hide();
        return found;
    }

private slots:
    void shifts_data() {
        QTest::addColumn<QVector<int>>("knots");
        QTest::addColumn<bool>("isX");
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, const QVector<int>& knots, bool isX,
                            const char* change, const char* expected) {
            QTest::newRow(name) << knots << isX << QString::fromLatin1(change)
                                << QString::fromLatin1(expected);
        };
        row("one, y", {1}, false, "t0.5", "0:0 10:0.5 20:2 30:3");
        row("one, y beyond", {1}, false, "t9", "0:0 10:5 20:2 30:3");
        row("one, x", {1}, true, "t13.4", "0:0 13:1 20:2 30:3");
        row("one, x past its neighbour", {1}, true, "t25", "0:0 19:1 20:2 30:3");
        row("one, x no number", {1}, true, "tnan", "");
        row("two, y", {1, 2}, false, "+1", "0:0 10:2 20:3 30:3");
        row("two, y until one is stopped", {1, 3}, false, "+4", "0:0 10:3 20:2 30:5");
        row("neighbours, x", {1, 2}, true, "+5.9", "0:0 15:1 25:2 30:3");
        row("neighbours, x until one is stopped", {1, 2}, true, "+50", "0:0 19:1 29:2 30:3");
        row("with a gap, x", {0, 2}, true, "-3", "0:0 10:1 20:2 30:3");
        row("all, x", {0, 1, 2, 3}, true, "+70.5", "70:0 80:1 90:2 100:3");
        row("each, y", {1, 3}, false, "*2", "0:0 10:2 20:2 30:5");
        row("each, y to one", {0, 1, 2}, false, "=1.5", "0:1.5 10:1.5 20:1.5 30:3");
        row("each, x", {1, 2, 3}, true, "/2", "0:0 5:1 10:2 15:3");
        row("each, x past a neighbour", {1}, true, "*4", "refused");
        row("each, x to one", {1, 2}, true, "=4", "");
        row("each, no number", {1}, false, "/nan", "");
    }

    void shifts() {
        QFETCH(QVector<int>, knots);
        QFETCH(bool, isX);
        QFETCH(QString, change);
        QFETCH(QString, expected);
        const auto model = frames();
        std::vector<CurvePlace> places;
        for (const int knot : knots)
            places.push_back({0, knot});
        const auto axis = isX ? CurveShift::X : CurveShift::Y;
        const double number = change.mid(1).toDouble();
        const QChar operation = change.at(0);
        const auto moves = operation == QLatin1Char('t')
                               ? CurveShift::moveTo(*model, places.front(), axis, number)
                               : CurveShift::moveEach(*model, places, axis, operation, number);
        const bool moved = !moves.empty() && model->move(moves);
        QCOMPARE(moves.empty() ? QString()
                 : moved       ? placesOf(*model)
                               : QStringLiteral("refused"),
                 expected);
    }

    void numbers() {
        const auto model = frames();
        CurveEditor editor;
        editor.setModel(model.get());
        editor.resize(700, 300);
        editor.show();
        Log log(&editor);
        const auto fields = editor.findChildren<DoubleSpinBox*>();
        DoubleSpinBox* const x = fields.at(0);
        DoubleSpinBox* const y = fields.at(1);
        QVERIFY(!x->isEnabled() && !y->isEnabled());
        model->select(0, 1, 1, CurveModel::SelectOnly);
        QCOMPARE(x->value(), 10.0);
        QVERIFY(y->isEnabled() && !y->isMixed());
        type(y, "-2");
        QCOMPARE(log.take(), once("move knot"));
        QCOMPARE(model->knot(0, 1).y, -2.0);
        type(y, "=x"); // the same is no edit
        type(x, "50"); // its neighbour is in the way
        QCOMPARE(log.take(), once("move knot"));
        QCOMPARE(x->value(), 19.0);

        // A drag is one edit, and Escape takes it back from the field, too.
        const QPoint at = y->rect().center() - QPoint(20, 0);
        QTest::mousePress(y, Qt::LeftButton, {}, at);
        for (int part = 1; part <= 4; ++part)
            Kestrel::Test::moveMouse(*y, at - QPoint(0, 10 * part));
        QVERIFY(model->knot(0, 1).y > -2.0);
        QVERIFY(editor.isEditing());
        editor.cancelEdit();
        QVERIFY(!y->isEditing());
        QTest::mouseRelease(y, Qt::LeftButton, {}, at);
        QCOMPARE(log.take(), (QStringList{"move knot", "edited", "taken back"}));
        QCOMPARE(placesOf(*model), QStringLiteral("0:0 19:-2 20:2 30:3"));

        model->select(0, 2, 3, CurveModel::SelectOnly);
        QVERIFY(x->isMixed() && y->isMixed());
        type(y, "+=1");
        QCOMPARE(log.take(), once("move 2 knots"));
        type(y, "0.5");
        QCOMPARE(placesOf(*model), QStringLiteral("0:0 19:-2 20:0.5 30:0.5"));
        QVERIFY(x->isMixed() && !y->isMixed());

        auto* const shapes = editor.findChild<ChoiceButton*>();
        log.take();
        QCOMPARE(shapes->currentIndex(), int(Shape::Monotone));
        QVERIFY(Kestrel::Test::focus(*shapes));
        QTest::keyClick(shapes, Qt::Key_Up);
        QCOMPARE(log.take(), once("shape"));
        QCOMPARE(model->knot(0, 3).shape, int(Shape::Smooth));
        model->select(0, 0, 0, CurveModel::SelectAdd);
        QCOMPARE(shapes->currentIndex(), -1);
        editor.setModel(nullptr);
        QVERIFY(!y->isEnabled());
    }

    void curves() {
        CurvesModel model;
        model.setCurves(Curves(4, 8, 2));
        CurveEditor editor;
        editor.setModel(&model);
        editor.resize(500, 400);
        editor.show();
        Log log(&editor);
        auto* const choice = editor.findChild<ChoiceBar*>();
        QCOMPARE(choice->choiceCount(), 4);
        QTest::keyClick(choice, Qt::Key_Right);
        QCOMPARE(editor.view()->currentCurve(), 1);
        editor.view()->setCurrentCurve(2);
        QCOMPARE(choice->currentIndex(), 2);
        QVERIFY(log.take().isEmpty());

        entry(editor, "Presets", QStringLiteral("Invert"))->trigger();
        QCOMPARE(log.take(), once("Invert"));
        QCOMPARE(model.curve(2).valueAt(0.25F), 0.75F);
        entry(editor, "Copy To", QStringLiteral("Red"))->trigger();
        QCOMPARE(log.take(), once("copy to Red"));
        QVERIFY(model.curve(0) == model.curve(2) && model.curve(1).isIdentity());
        button(editor, "Reset")->click();
        QCOMPARE(log.take(), once("reset"));
        QVERIFY(model.curve(2).isIdentity());
        editor.applyPreset(QStringLiteral("Bad"), "no curve");
        QVERIFY(model.curve(2).isIdentity());

        entry(editor, "Shown Curves", QStringLiteral("No Others"))->trigger();
        QVERIFY(!editor.view()->isCurveVisible(0) && editor.view()->isCurveVisible(2));
        entry(editor, "Shown Curves", QStringLiteral("Red"))->trigger();
        QVERIFY(editor.view()->isCurveVisible(0));
        button(editor, "Snap")->click();
        QVERIFY(editor.view()->isSnapEnabled());
        editor.view()->setFrameVisible(true);
        QVERIFY(button(editor, "Frame")->isChecked());

        CurveEditor::Tools tools = editor.tools();
        tools &= ~(CurveEditor::Numbers | CurveEditor::CurveChoice);
        editor.setTools(tools);
        QVERIFY(!choice->isVisible());
        const auto* const bar = editor.findChild<CollapsibleToolbar*>();
        QVERIFY(!bar->isItemVisible(editor.findChild<ChoiceButton*>())); // no shapes
        QVERIFY(!editor.findChild<DoubleSpinBox*>()->isVisible());
        // Keys have neither presets nor an identity.
        const auto keys = frames(2);
        editor.setModel(keys.get());
        QVERIFY(!bar->isItemVisible(button(editor, "Presets")));
        QVERIFY(bar->isItemVisible(editor.findChild<ChoiceButton*>()));
        QCOMPARE(choice->choiceText(1), QStringLiteral("Curve &&1"));
        editor.resetCurve();
        QCOMPARE(placesOf(*keys), QStringLiteral("0:0 10:1 20:2 30:3"));
    }

    void presets() {
        for (const CurvePreset& preset : builtInCurvePresets()) {
            CurvesModel model;
            QVERIFY2(model.load(0, preset.text), qPrintable(preset.name));
            const Curve curve = model.curve(0);
            const bool isGamma = preset.name.startsWith(QLatin1String("Gamma"));
            const bool isOver = preset.name.contains(QLatin1Char('/'));
            const bool falls = preset.name == QLatin1String("Invert");
            for (int i = 0; i < 1000; ++i) {
                const float at = float(i) / 1000.0F;
                const float next = curve.valueAt(at + 0.001F);
                QVERIFY(falls ? next <= curve.valueAt(at) : next >= curve.valueAt(at));
                const double power = std::pow(double(at), isOver ? 1.0 / 2.2 : 2.2);
                if (isGamma)
                    QVERIFY(std::abs(double(curve.valueAt(at)) - power) < (isOver ? 0.02 : 3e-4));
            }
        }

        const QTemporaryDir folder;
        const auto write = [&folder](const char* name, const QByteArray& text) {
            QFile file(folder.filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(text);
        };
        write("low & high.curve", "(0, 0.1), (1, 0.9)");
        write("Bent.curve", "(0, 0), (0.5, 0.6), (1, 1)\n");
        write("none.curve", "nothing");
        write("none.txt", "(0, 0), (1, 1)");
        write("long.curve", QByteArray(70000, ' ') + "(0, 0), (1, 1)");
        const auto found = curvePresetsIn(folder.path());
        QCOMPARE(int(found.size()), 2);
        QCOMPARE(found[1].name, QStringLiteral("low & high"));

        CurvesModel model;
        CurveEditor editor;
        editor.setModel(&model);
        editor.setPresetFolder(folder.path());
        editor.show();
        QTRY_VERIFY(entry(editor, "Presets", QStringLiteral("Bent")));
        entry(editor, "Presets", QStringLiteral("low && high"))->trigger();
        QCOMPARE(model.curve(0).valueAt(0.0F), 0.1F);
        editor.setPresetFolder({});
        QVERIFY(!entry(editor, "Presets", QStringLiteral("Bent")));
    }

    // By name, for all editors.
    void savedPresets() {
        for (const QString& name : CurveEditor().savedPresets())
            CurveEditor().removePreset(name);
        CurvesModel model;
        CurveEditor editor;
        editor.setModel(&model);
        editor.show();
        QVERIFY(model.load(0, "(0, 0.25), (1, 1)"));
        entry(editor, "Presets", QStringLiteral("Save Curve..."))->trigger();
        auto* const dialog = editor.findChild<QInputDialog*>();
        dialog->setTextValue(QStringLiteral("  Lift & /more\n"));
        dialog->accept();
        QVERIFY(model.load(0, "(0, 0), (1, 0.5)"));
        QVERIFY(editor.savePreset(QStringLiteral("half")));
        QVERIFY(!editor.savePreset(QStringLiteral(" ")));
        editor.resetCurve();
        QVERIFY(editor.savePreset(QStringLiteral("half"))); // in its place
        QVERIFY(model.load(0, "(0, 0), (1, 0.5)"));
        QVERIFY(editor.savePreset(QStringLiteral("half")));

        CurvesModel second;
        CurveEditor other;
        other.setModel(&second);
        QCOMPARE(other.savedPresets(),
                 (QStringList{QStringLiteral("half"), QStringLiteral("Lift & /more")}));
        QAction* lift = entry(other, "Presets", QStringLiteral("Lift && /more"));
        QVERIFY(lift);
        lift->trigger();
        QCOMPARE(second.save(0), QByteArray("(0, 0.25), (1, 1)"));
        QMenu* forget = entry(other, "Presets", QStringLiteral("Forget"))->menu();
        forget->actions().first()->trigger();
        QCOMPARE(editor.savedPresets(), QStringList{QStringLiteral("Lift & /more")});
        editor.removePreset(QStringLiteral("Lift & /more"));
        QVERIFY(!entry(editor, "Presets", QStringLiteral("Forget")));

        const auto keys = frames(); // are on no unit square
        editor.setModel(keys.get());
        QVERIFY(!editor.savePreset(QStringLiteral("keys")));
    }

    /** Hosts may delete what they were given and what they are told by. */
    void deletions() {
        auto model = frames();
        auto* editor = new CurveEditor;
        editor->setModel(model.get());
        editor->show();
        model->select(0, 1, 1, CurveModel::SelectOnly);
        model.reset();
        QVERIFY(!editor->model());
        editor->findChild<DoubleSpinBox*>()->stepBy(1);

        CurvesModel other;
        editor->setModel(&other);
        connect(editor, &CurveEditor::edited, editor, [editor] { delete editor; });
        QPointer<CurveEditor> alive(editor);
        editor->applyPreset(QStringLiteral("Invert"), "(0, 1), (1, 0)");
        QVERIFY(!alive);
        QCOMPARE(other.curve(0).valueAt(0.0F), 1.0F);
    }
};

KXUI_TEST(CurveEditorTest);
#include "CurveEditorTest.moc"
