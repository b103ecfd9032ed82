#include "TestImages.h"

#include <support/Input.h>
#include <support/TestRegistry.h>

#include "panels/ExposureCurvePanel.h"
#include "panels/GradePanel.h"
#include "panels/HistoryPanel.h"
#include "panels/ViewerCanvas.h"
#include "panels/ViewerPanel.h"
#include "play/Session.h"

#include <KxUI/color/ColorWheel.h>
#include <KxUI/curveedit/CurveEditor.h>
#include <KxUI/curveedit/CurveView.h>
#include <KxUI/undo/MultiStackUndoView.h>
#include <KxUI/values/DoubleSpinBox.h>
#include <KxUI/values/LogSlider.h>
#include <KxUI/values/SearchField.h>

#include <QComboBox>
#include <QLabel>
#include <QTemporaryDir>
#include <QToolButton>
#include <QUndoCommand>
#include <QtTest>

using namespace Kestrel::Workbench;
using Kestrel::Base::Time;
using Kestrel::Base::TimeBase;
namespace UI = Kestrel::UI;

/** Two sequences in a session: what is shown of their grades, and their shared history. */
class GradingTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    Sequence m_bright;
    Sequence m_plain;
    std::unique_ptr<Session> m_session;

    QRgb shownPixel() const {
        const FramePtr shown = m_session->shownFrame();
        return shown && !m_session->isLoading() ? shown->image.pixel(5, 5) : 0;
    }

    void expose(float stops) {
        Grade grade = m_session->grades()->grade();
        grade.exposure = stops;
        m_session->grades()->edit(grade, QStringLiteral("Exposure"));
    }

    QStringList steps() const {
        QStringList texts;
        for (const auto* step : m_session->grades()->group()->undoCommands())
            texts << step->command->text();
        return texts;
    }

private slots:
    void initTestCase() {
        std::vector<Sequence::Member> bright;
        std::vector<Sequence::Member> plain;
        for (int frame = 1; frame <= 6; ++frame) {
            Kestrel::Test::TestImage image;
            image.values = {0.18F, 2.0F, 4.0F};
            const QString exr = QStringLiteral("bright.%1.exr").arg(frame);
            QVERIFY(image.write(m_folder.filePath(exr)));
            bright.emplace_back(frame, exr.toStdString());
            const QString png = QStringLiteral("plain.%1.png").arg(frame);
            QVERIFY(Kestrel::Test::writeImage(m_folder.filePath(png)));
            plain.emplace_back(frame, png.toStdString());
        }
        const std::string folder = m_folder.path().toStdString();
        m_bright = Sequence(QStringLiteral("bright.#.exr"), folder, bright);
        m_plain = Sequence(QStringLiteral("plain.#.png"), folder, plain);
    }

    void init() {
        m_session = std::make_unique<Session>(TimeBase(24, false), std::size_t(64) << 20);
        m_session->open(m_bright, 2);
        QTRY_VERIFY(m_session->isSettled() && !m_session->isLoading());
    }

    void nothingIsGradedInVain() {
        for (Time time = 1; time <= 6; ++time)
            m_session->model()->setCurrentTime(time);
        QCOMPARE(m_session->grader().gradedCount(), std::uint64_t(0));
        QCOMPARE(m_session->shownFrame(), m_session->cache().find(6));

        expose(-1.0F);
        // The picture before it stays until the graded one is there.
        QVERIFY(m_session->isLoading());
        QCOMPARE(m_session->shownFrame(), m_session->cache().find(6));
        const auto scrub = [this] {
            for (Time time = 1; time <= 6; ++time) {
                m_session->model()->setCurrentTime(time);
                QTRY_VERIFY(m_session->isSettled() && !m_session->isLoading());
                QCOMPARE(m_session->shownFrame()->time, time);
            }
        };
        scrub();
        const std::uint64_t graded = m_session->grader().gradedCount();
        scrub();
        m_session->grades()->setBypassed(true);
        QCOMPARE(m_session->shownFrame(), m_session->cache().find(6));
        QVERIFY(!m_session->isLoading());
        QCOMPARE(m_session->grader().gradedCount(), graded);
        m_session->grades()->setBypassed(false);
        QTRY_VERIFY(!m_session->isLoading());
        QVERIFY(m_session->shownFrame() != m_session->cache().find(6));
    }

    /** With room for four graded frames of 4 kB, and five wanted at every step. */
    void framesAheadAreGradedOnce() {
        std::vector<FramePtr> sources;
        for (int i = 0; i < 12; ++i) {
            auto frame = std::make_shared<Frame>();
            frame->state = Frame::State::Ready;
            frame->image = QImage(31, 33, QImage::Format_RGB32);
            frame->image.fill(QColor(10 * i, 100, 200));
            sources.push_back(frame);
        }
        FrameGrader grader(4 * sources.front()->cost());
        Grade grade;
        grade.exposure = 1.0F;
        grader.setGrade(grade);
        for (auto first = sources.begin(); first != sources.end(); ++first) {
            const auto last = first + std::min<std::ptrdiff_t>(5, sources.end() - first);
            grader.setRequests({first, last});
            QTRY_VERIFY(grader.find(*first));
            QTRY_VERIFY(std::none_of(first, last, [&grader](const FramePtr& source) {
                return grader.isGrading(source);
            }));
        }
        QCOMPARE(grader.gradedCount(), std::uint64_t(sources.size()));
    }

    /** The viewer tells the pixel under the pointer, of the file and of the screen. */
    void pixelUnderThePointer() {
        ViewerPanel viewer(m_session.get());
        viewer.resize(700, 300);
        viewer.show();
        auto* canvas = viewer.findChild<ViewerCanvas*>();
        Kestrel::Test::moveMouse(*canvas, canvas->rect().center() + QPoint(4, 4));
        QCOMPARE(m_session->pointedPixel()->at, QPoint(16, 9));
        expose(-2.0F);
        QVERIFY(!m_session->pointedPixel());
        QTRY_VERIFY(m_session->pointedPixel());
        const auto has = [&viewer](const char* text) {
            const auto labels = viewer.findChildren<QLabel*>();
            return std::any_of(labels.begin(), labels.end(), [text](const QLabel* label) {
                return label->text().contains(QString::fromUtf8(text));
            });
        };
        QTRY_VERIFY(has("16, 9:  0.1801 2 4 \u2192 60 188 255"));
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(canvas, &leave);
        QVERIFY(!m_session->pointedPixel());
    }

    /** From no exposure to a stop less, over four frames that are alike. */
    void framesHaveTheirOwnExposure() {
        Grade grade = m_session->grades()->grade();
        grade.exposureKeys.insert({1.0, 0.0, 0.0, 0.0, Kestrel::UI::KeyCurve::Shape::Linear});
        grade.exposureKeys.insert({3.0, -1.0});
        m_session->grades()->edit(grade, QStringLiteral("Keys"));
        const std::pair<Time, int> reds[] = {{1, 118}, {2, 100}, {3, 85}, {5, 85}};
        for (const auto& [time, red] : reds) {
            m_session->model()->setCurrentTime(time);
            QTRY_COMPARE(shownPixel(), qRgb(red, 255, 255));
        }
        m_session->model()->setCurrentTime(1);
        QTRY_COMPARE(m_session->shownFrame(), m_session->cache().find(1));
    }

    /** The grade changes again before the frame is done, and is undone before the next one is. */
    void picturesFollowADrag() {
        expose(1.0F);
        QTRY_VERIFY(m_session->isSettled() && !m_session->isLoading());
        std::vector<QRgb> pictures;
        connect(m_session.get(), &Session::frameChanged, this, [&] {
            if (!m_session->isLoading())
                pictures.push_back(shownPixel());
        });
        expose(-2.0F);
        expose(-1.0F);
        QTRY_COMPARE(pictures, (std::vector<QRgb>{qRgb(60, 188, 255), qRgb(85, 255, 255)}));
        expose(-2.0F);
        m_session->grades()->group()->makeIndex(0);
        QTRY_COMPARE(shownPixel(), qRgb(118, 255, 255));
    }

    /** Light above white comes back, though the screen had lost it. */
    void highlightsComeBack() {
        QCOMPARE(qBlue(shownPixel()), 255);
        expose(-2.0F);
        // 0.045, 0.5 and 1.0 in sRGB.
        QTRY_COMPARE(shownPixel(), qRgb(60, 188, 255));
        Grade grade = m_session->grades()->grade();
        grade.exposure = 0.0F;
        grade.gain = gainColor({1.0F, 0.25F, 0.125F});
        m_session->grades()->edit(grade, QStringLiteral("Gain"));
        QTRY_COMPARE(shownPixel(), qRgb(118, 188, 188));
        m_session->grades()->group()->makeIndex(0);
        QTRY_COMPARE(shownPixel(), qRgb(118, 255, 255));
        QCOMPARE(m_session->shownFrame(), m_session->cache().find(2));
    }

    void undoAcrossSequences() {
        GradeHistory* grades = m_session->grades();
        HistoryPanel panel(m_session.get());
        panel.resize(300, 200);
        panel.show();
        m_session->model()->setCurrentTime(4);
        for (const float stops : {0.5F, 1.0F, 2.0F}) {
            Grade grade = grades->grade();
            grade.exposure = stops;
            grades->change(this, grade, QStringLiteral("Exposure"));
        }
        grades->finish(this, true);
        expose(-1.0F);
        m_session->open(m_plain, 3);
        QVERIFY(grades->grade().isIdentity());
        expose(1.0F);
        QCOMPARE(steps(), (QStringList{"Exposure", "Exposure", "Exposure"}));
        QCOMPARE(grades->titleOf(1), m_bright.title());
        QCOMPARE(grades->titleOf(2), m_plain.title());

        // Back through both: the sequence of the last step undone is opened where it was left.
        grades->group()->undo();
        QVERIFY(grades->grade().isIdentity());
        QCoreApplication::processEvents();
        QCOMPARE(m_session->sequence().title(), m_plain.title());
        grades->group()->undo();
        QTRY_COMPARE(m_session->sequence().title(), m_bright.title());
        QCOMPARE(m_session->model()->currentTime(), Time(4));
        QCOMPARE(grades->grade().exposure, 2.0F);

        // A jump opens only the last one; the drag of three changes was one step.
        QSignalSpy opened(m_session.get(), &Session::sequenceChanged);
        const QModelIndex last = panel.view()->model()->index(3, 0);
        QTest::mouseClick(panel.view()->viewport(), Qt::LeftButton, {},
                          panel.view()->visualRect(last).center());
        QTRY_COMPARE(m_session->sequence().title(), m_plain.title());
        QCOMPARE(opened.count(), 1);
        QCOMPARE(m_session->model()->currentTime(), Time(3));
        QCOMPARE(grades->grade().exposure, 1.0F);
        grades->group()->makeIndex(0);
        QTRY_COMPARE(m_session->sequence().title(), m_bright.title());
        QVERIFY(grades->grade().isIdentity());

        // A new step drops only its own sequence's undone ones, and merges into none of before.
        expose(0.25F);
        QCOMPARE(steps().size(), 2);
        auto* search = panel.findChild<UI::SearchField*>();
        QTest::keyClicks(search, QStringLiteral("plain exp"));
        QTest::keyClick(search, Qt::Key_Return);
        for (int row = 0; row < 3; ++row)
            QCOMPARE(panel.view()->isRowHidden(row), row == 1);
        search->selectAll();
        QTest::keyClick(search, Qt::Key_Delete);
        QTRY_VERIFY(!panel.view()->isRowHidden(1));
        grades->group()->redo();
        QTRY_COMPARE(m_session->sequence().title(), m_plain.title());
        QCOMPARE(grades->grade().exposure, 1.0F);
        QVERIFY(!panel.grab().isNull());
    }

    /** Escape, and a drag that ends where it began, leave the history of both sequences as it was,
        also what can be redone; so does undoing in the middle of a drag with what it takes back. */
    void editsThatLeaveNoStep() {
        GradePanel panel(m_session.get());
        panel.resize(340, 900);
        panel.show();
        GradeHistory* grades = m_session->grades();
        expose(1.0F);
        m_session->open(m_plain, 1);
        expose(0.25F);
        expose(0.3F); // between two positions of the slider
        grades->group()->undo();
        grades->group()->redo();
        expose(2.0F);
        grades->group()->undo();
        const auto history = grades->group()->undoCommands();
        const Grade grade = grades->grade();
        const auto same = [&](const char* what) {
            const bool kept = grades->group()->undoCommands() == history &&
                              grades->group()->index() == history.size() - 1;
            QVERIFY2(kept, what);
            QVERIFY2(grades->grade() == grade, what);
        };
        auto* slider = panel.findChild<UI::LogSlider*>();
        auto* wheel = panel.findChild<UI::ColorWheel*>();
        wheel->setInteractionMode(UI::ColorWheel::RelativeInteraction);
        auto* curve = panel.findChild<UI::CurveView*>();
        for (QWidget* widget : {static_cast<QWidget*>(slider), static_cast<QWidget*>(wheel),
                                static_cast<QWidget*>(curve)}) {
            const char* name = widget->metaObject()->className();
            QPoint from = widget->rect().center();
            if (widget == slider)
                from.rx() = slider->width() / 2 + int(0.3 * 0.30103 / 4 * slider->width());
            for (const bool escape : {true, false}) {
                QTest::mousePress(widget, Qt::LeftButton, {}, from);
                Kestrel::Test::moveMouse(*widget, from + QPoint(30, -20));
                QVERIFY2(grades->grade() != grade, name);
                QCOMPARE(grades->group()->undoCommands().size(), history.size());
                if (escape) {
                    QVERIFY2(Kestrel::Test::sendKey(*widget, Qt::Key_Escape), name);
                    same(name);
                } else if (widget == curve) {
                    Kestrel::Test::moveMouse(*widget, {from.x(), -100}); // pulled out again
                } else {
                    Kestrel::Test::moveMouse(*widget, from);
                }
                QTest::mouseRelease(widget, Qt::LeftButton, {}, from);
                same(name);
            }
            QTest::mousePress(widget, Qt::LeftButton, {}, from);
            Kestrel::Test::moveMouse(*widget, from + QPoint(30, -20));
            grades->group()->undo();
            QCOMPARE(grades->grade().exposure, 0.25F);
            Kestrel::Test::moveMouse(*widget, from + QPoint(40, -20));
            QTest::mouseRelease(widget, Qt::LeftButton, {}, from + QPoint(40, -20));
            QCOMPARE(grades->grade().exposure, 0.25F);
            grades->group()->redo();
            same(name);
        }
        // A drag that goes on while another sequence is opened stays what it was.
        QTest::mousePress(wheel, Qt::LeftButton, {}, wheel->rect().center());
        Kestrel::Test::moveMouse(*wheel, wheel->rect().center() + QPoint(30, -20));
        m_session->open(m_bright, 1);
        Kestrel::Test::moveMouse(*wheel, wheel->rect().center() + QPoint(50, -20));
        QCOMPARE(grades->grade().exposure, 1.0F);
        QVERIFY(grades->grade().gain == GainColor());
        QCOMPARE(steps().last(), QStringLiteral("Gain"));
    }

    /** Keys by the button and the slider of the panel, and by the curve in its pane. */
    void exposureOverTheFrames() {
        GradePanel panel(m_session.get());
        ExposureCurvePanel pane(m_session.get());
        panel.resize(340, 720);
        pane.resize(600, 200);
        panel.show();
        pane.show();
        GradeHistory* grades = m_session->grades();
        UI::CurveView* view = pane.editor()->view();
        auto* slider = panel.findChild<UI::LogSlider*>();
        const auto buttons = panel.findChildren<QToolButton*>();
        const auto key = std::find_if(buttons.begin(), buttons.end(), [](const QToolButton* each) {
            return each->accessibleName() == QLatin1String("Exposure key");
        });
        QVERIFY(key != buttons.end());
        const auto goTo = [this](Time time) { m_session->model()->setCurrentTime(time); };
        const auto exposeBySlider = [slider](int x) {
            QTest::mousePress(slider, Qt::LeftButton, {}, slider->rect().center());
            Kestrel::Test::moveMouse(*slider, slider->rect().center() + QPoint(x, 0));
            QTest::mouseRelease(slider, Qt::LeftButton, {}, slider->rect().center() + QPoint(x, 0));
        };
        QCOMPARE(view->playhead(), 2.0);
        (*key)->click();
        QVERIFY((*key)->isChecked());
        QCOMPARE(view->model()->knots(0), 1);
        goTo(5);
        QVERIFY(!(*key)->isChecked());
        exposeBySlider(20);
        QCOMPARE(view->model()->knots(0), 2);
        QVERIFY((*key)->isChecked());
        const Grade keyed = grades->grade();
        QVERIFY(keyed.exposureAt(5) > 0.3F);
        QCOMPARE(keyed.exposureAt(2), 0.0F);
        QCOMPARE(steps(), (QStringList{"Add Exposure Key", "Exposure"}));
        goTo(2);
        QCOMPARE(slider->realValue(), 1.0);

        // Numbers and Escape in the pane.
        view->model()->select(0, 1, 1, UI::CurveModel::SelectOnly);
        const auto numbers = pane.findChildren<UI::DoubleSpinBox*>();
        const auto type = [](UI::DoubleSpinBox* field, const char* text) {
            QVERIFY(Kestrel::Test::focus(*field));
            field->selectAll();
            QTest::keyClicks(field, QString::fromLatin1(text));
            QTest::keyClick(field, Qt::Key_Return);
        };
        type(numbers.at(1), "-1");
        QCOMPARE(grades->grade().exposureAt(5), -1.0F);
        type(numbers.at(0), "3.6"); // whole frames
        QCOMPARE(grades->grade().exposureAt(4), -1.0F);
        QCOMPARE(steps().size(), 4);
        QCOMPARE(steps().last(), QStringLiteral("Exposure: move knot"));
        QVERIFY(Kestrel::Test::focus(*view));
        QTest::keyPress(view, Qt::Key_Up);
        QVERIFY(grades->grade().exposureAt(4) > -1.0F);
        QTest::keyClick(view, Qt::Key_Escape);
        QTest::keyRelease(view, Qt::Key_Up);
        QCOMPARE(grades->grade().exposureAt(4), -1.0F);
        QCOMPARE(steps().size(), 4);
        view->selectAll();
        view->deleteSelected();
        QVERIFY(!grades->grade().isKeyed());
        grades->group()->undo();
        QCOMPARE(view->model()->knots(0), 2);
        grades->group()->makeIndex(2);
        QVERIFY(grades->grade() == keyed);
        goTo(5);
        (*key)->click();
        (*key)->click();
        goTo(2);
        (*key)->click();
        QCOMPARE(view->model()->knots(0), 1);
        m_session->open(m_plain, 1);
        QVERIFY(!grades->grade().isKeyed());
        QCOMPARE(view->model()->knots(0), 0);
        QVERIFY(!pane.grab().isNull());
    }

    /** Behind the curves lies the histogram of what is shown; the pixel under the pointer is marked
        where it comes to the curve. */
    void curvesSeeTheFrame() {
        GradePanel panel(m_session.get());
        panel.resize(340, 900);
        panel.show();
        auto* view = panel.findChild<UI::CurveView*>();
        QTRY_COMPARE(view->histogram().size(), 3);
        QTRY_COMPARE(view->histogram()[0].counts[118], 32U * 18U);
        m_session->pointAt({3, 3});
        QVERIFY(std::abs(view->marker() - (0.2126 * 118.0 / 255.0 + 0.7874)) < 0.003);
        panel.showCurve(Grade::Red);
        QCOMPARE(view->histogram().size(), 1);
        QVERIFY(std::abs(view->marker() - 118.0 / 255.0) < 0.003);
        expose(-2.0F);
        QTRY_COMPARE(view->histogram()[0].counts[60], 32U * 18U);
        QVERIFY(std::abs(view->marker() - 60.0 / 255.0) < 0.003);
        m_session->pointAt({-1, -1});
        QVERIFY(std::isnan(view->marker()));
    }

    /** The panel by mouse and keyboard: each gesture is one step, and undoing shows in it. */
    void panelEdits() {
        GradePanel panel(m_session.get());
        panel.resize(340, 900);
        panel.show();
        GradeHistory* grades = m_session->grades();
        const auto drag = [](QWidget* widget, const QPoint& from, const QPoint& by) {
            QTest::mousePress(widget, Qt::LeftButton, {}, from);
            for (int part = 1; part <= 3; ++part)
                Kestrel::Test::moveMouse(*widget, from + by * part / 3);
            QTest::mouseRelease(widget, Qt::LeftButton, {}, from + by);
        };
        auto* slider = panel.findChild<UI::LogSlider*>();
        auto* wheel = panel.findChild<UI::ColorWheel*>();
        auto* curve = panel.findChild<UI::CurveView*>();
        QStringList expected;
        const auto expectStep = [&](const char* text) {
            expected << QLatin1String(text);
            QCOMPARE(steps(), expected);
        };

        drag(wheel, wheel->rect().center(), {24, -12});
        expectStep("Gain");
        QVERIFY(grades->grade().gain.saturation > 0.1F);
        drag(wheel, wheel->rect().center(), {-24, -12});
        expectStep("Gain");
        drag(slider, slider->rect().center(), {40, 0});
        expectStep("Exposure");
        QVERIFY(grades->grade().exposure > 0.5F);
        const float dragged = grades->grade().exposure;
        slider->setFocus();
        QTest::keyClick(slider, Qt::Key_PageDown);
        expectStep("Exposure");
        QVERIFY(std::abs(dragged - grades->grade().exposure - 1.0F / 3.0F) < 0.02F);

        panel.showCurve(Grade::Red);
        drag(curve, curve->rect().center(), {0, -30});
        expectStep("Red Curve: add knot");
        QVERIFY(grades->grade().curves.curve(Grade::Red).valueAt(0.5F) > 0.55F);
        panel.findChild<QComboBox*>()->setFocus();
        QTest::keyClick(panel.findChild<QComboBox*>(), Qt::Key_Down);
        expectStep("YCbCr preview");
        QCOMPARE(grades->grade().preview, int(UI::ColorSpace::Rec709));

        auto* red = panel.findChild<UI::DoubleSpinBox*>();
        QVERIFY(Kestrel::Test::focus(*red));
        const auto type = [red](const char* text) {
            QTest::keyClicks(red, QString::fromLatin1(text));
            QTest::keyClick(red, Qt::Key_Return);
        };
        type("0.18*2");
        expectStep("Gain");
        QCOMPARE(red->value(), 0.36);
        QVERIFY(std::abs(gainFactors(grades->grade().gain)[0] - 0.36F) < 1e-5F);
        type("=x"); // the same number is no step
        QCOMPARE(steps(), expected);
        drag(red, red->rect().center(), {0, -20});
        expectStep("Gain");
        QVERIFY(red->value() > 0.36 && red->value() <= 0.41);
        QVERIFY(!panel.grab().isNull());

        grades->group()->makeIndex(0);
        QVERIFY(grades->grade().isIdentity());
        QCOMPARE(red->value(), 1.0);
        QCOMPARE(slider->realValue(), 1.0);
        QVERIFY(grades->grade().curves == Grade().curves);
        QCOMPARE(curve->model()->knots(Grade::Red), 2);
    }
};

KXUI_TEST(GradingTest);
#include "GradingTest.moc"
