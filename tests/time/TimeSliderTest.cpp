#include <support/Columns.h>
#include <support/Input.h>
#include <support/TestRegistry.h>

#include <KxUI/time/TimeFormatter.h>
#include <KxUI/time/TimeSlider.h>

#include <QtWidgets>

#include <functional>
#include <memory>
#include <random>
#include <tuple>

using Kestrel::Base::InvalidTime;
using Kestrel::Base::Time;
using namespace Kestrel::UI;

namespace {

/** A slider that counts what it paints and has a handle of its own at frame 90. */
class Slider : public TimeSlider {
public:
    Slider(TimeSliderModel* model, TimeFormatter* formatter, int options)
        : TimeSlider(model, formatter, 2, options) {}

    int renders = 0;
    std::vector<QRegion> paints;
    QStringList* log = nullptr;

protected:
    void paintSlider(QPainter& painter) override {
        ++renders;
        TimeSlider::paintSlider(painter);
    }
    void paintEvent(QPaintEvent* event) override {
        paints.push_back(event->region());
        TimeSlider::paintEvent(event);
    }
    bool pressHandle(QMouseEvent* event) override {
        const Time time = XToClipTime(event->x());
        if (time != 90)
            return false;
        announceTimeDrag(DerivedHandle, &time);
        return true;
    }
    void moveHandle(QMouseEvent*, Time time) override {
        *log << QStringLiteral("derived %1").arg(time);
    }
    void releaseHandle(QMouseEvent*) override { *log << QStringLiteral("derived end"); }
};

/** 100 frames on 500 pixels: frame t is at x = 5 + 5 t. */
struct Stage {
    explicit Stage(int options = TimeSlider::MainTransport)
        : slider(&model, &formatter, options) {
        formatter.setTimeDisplayFormat(false, false);
        model.setTimes(0, InvalidTime, InvalidTime, 99, 50);
        slider.zoomToFit();
        slider.resize(510, 37);
        slider.show();
        QCoreApplication::processEvents();

        slider.log = &log;
        QObject::connect(&slider, &TimeSlider::setDoUpdateTime,
                         [this](bool on) { log << (on ? "allow" : "hold"); });
        QObject::connect(&slider, &TimeSlider::beginTimeDrag,
                         [this](TimeSlider::HandleType handle, const Time* times) {
                             log << QStringLiteral("begin %1: ").arg(handle) + list(handle, times);
                         });
        QObject::connect(&slider, &TimeSlider::updateTimeDrag, [this](const Time* times) {
            log << "update " + list(slider.dragHandle(), times);
        });
        QObject::connect(&slider, &TimeSlider::endTimeDrag, [this] { log << "end"; });
        QObject::connect(&slider, &TimeSlider::inOutTimesModified, [this] { log << "marks"; });
        QObject::connect(&slider, &TimeSlider::zoomOrPanChanged, [this] { log << "zoom"; });
        QObject::connect(&slider, &TimeSlider::rightOrMidClicked, [this] { log << "click"; });
        QObject::connect(&slider, &TimeSlider::rangeChanged, [this](Time first, Time last) {
            log << QStringLiteral("range %1 %2").arg(first).arg(last);
        });
    }

    static QString list(TimeSlider::HandleType handle, const Time* times) {
        return handle == TimeSlider::InOutHandle
                   ? QStringLiteral("%1 %2").arg(times[0]).arg(times[1])
                   : QString::number(times[0]);
    }

    void press(QPoint at, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mousePress(&slider, button, modifiers, at);
    }
    void move(QPoint at, Qt::MouseButton held = Qt::LeftButton,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        Kestrel::Test::moveMouse(slider, at, held, modifiers);
    }
    void release(QPoint at, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseRelease(&slider, button, modifiers, at);
    }
    bool wheel(int delta, QPoint at) { return Kestrel::Test::turnWheel(slider, delta, at); }
    std::pair<Time, Time> visible() const {
        return {slider.firstVisibleTime(), slider.lastVisibleTime()};
    }
    // Until what was queued is updated and what was updated is painted.
    void settle() {
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }
    // What has been painted since the last call, pixels counted once.
    int paintedPixels() {
        settle();
        int pixels = 0;
        for (const QRegion& region : slider.paints) {
            for (const QRect& rect : region)
                pixels += rect.width() * rect.height();
        }
        slider.paints.clear();
        return pixels;
    }
    QImage grab(qreal scale = 1) {
        QImage image(slider.size() * scale, QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        slider.render(&image);
        return image;
    }

    TimeFormatter formatter;
    TimeSliderModel model;
    Slider slider;
    QStringList log;
};

constexpr int x(int frame) {
    return 5 + 5 * frame;
}

// The texts of the pop-ups that show the time of a drag.
QString popups() {
    QStringList texts;
    for (const QWidget* widget : QApplication::topLevelWidgets()) {
        if (const auto* label = qobject_cast<const QLabel*>(widget))
            texts << label->text();
    }
    return texts.join(QLatin1Char(' '));
}

using Frames = TimeSlider::FrameSet;

Frames frames(Time first, Time end) {
    return Frames(Frames::interval_type::right_open(first, end));
}

} // namespace

class TimeSliderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() {
        TimeSlider::SetUseDoublePlayhead(false);
        TimeSlider::SetVisibleRangeFollowsPlayhead(true);
    }

    // Marks at 20 and 60 where "marks" is set, the playhead at 50; press, move, release.
    void drags_data() {
        // The result: in, out, current, first and last visible time.
        const Kestrel::Test::Columns<bool, QPoint, QPoint, int, int, int, QString, QString> row(
            "marks", "from", "to", "button", "modifiers", "handle", "emitted", "result");
        constexpr int left = Qt::LeftButton, right = Qt::RightButton;
        constexpr int none = Qt::NoModifier, ctrl = Qt::ControlModifier, alt = Qt::AltModifier;
        row("in mark past the out mark", true, {x(20), 30}, {x(70), 30}, left, none, 1,
            "allow, hold, begin 1: 20, update 70, allow, end, marks", "70 - 50 0 99");
        row("both marks, to the end of the clip", true, {x(60), 30}, {x(400), 30}, left, ctrl, 3,
            "allow, hold, begin 3: 20 60, update 59 99, allow, end, marks", "59 99 50 0 99");
        row("ctrl sets the out mark", false, {x(70), 30}, {x(72), 30}, left, ctrl, 2,
            "allow, hold, begin 2: 70, update 72, allow, end, marks", "- 72 50 0 99");
        row("playhead in the upper half", false, {x(50) + 5, 10}, {x(70), 10}, left, none, 4,
            "allow, hold, begin 4: 70, update 70, allow, end", "- - 70 0 99");
        row("pan stops at frame 0", false, {x(50), 30}, {x(60), 30}, left, alt, 5,
            "allow, range 0 99, zoom, allow", "- - 50 0 99");
        row("zoom rectangle", false, {x(20), 30}, {x(40), 30}, right, none, 6,
            "allow, allow, range 20 39, zoom", "- - 50 20 39");
        row("overview, left edge", false, {5, 2}, {x(10), 2}, left, none, 8,
            "allow, range 10 99, zoom, allow", "- - 50 10 99");
        row("overview, right edge held", false, {500, 2}, {500, 3}, left, none, 9, "allow, allow",
            "- - 50 0 99");
        row("handle of the derived class", false, {x(90), 30}, {x(80), 30}, left, none, 11,
            "allow, begin 11: 90, derived 80, derived end, allow, end", "- - 50 0 99");
    }
    void drags() {
        QFETCH(bool, marks);
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        QFETCH(int, button);
        QFETCH(int, modifiers);
        Stage stage;
        if (marks)
            stage.model.setTimes(0, 20, 60, 99, 50);
        stage.log.clear();
        const auto held = Qt::MouseButton(button);
        const auto keys = Qt::KeyboardModifiers(modifiers);
        stage.press(from, held, keys);
        QTEST(int(stage.slider.dragHandle()), "handle");
        stage.move(to, held, keys);
        stage.move(to, held, keys); // not a move any more
        stage.release(to, held, keys);
        QCOMPARE(stage.slider.dragHandle(), TimeSlider::NoHandle);
        QTEST(stage.log.join(QStringLiteral(", ")), "emitted");
        QStringList result;
        const auto [first, last] = stage.visible();
        for (const Time time :
             {stage.model.inTime(), stage.model.outTime(), stage.model.currentTime(), first, last})
            result << (time == InvalidTime ? QStringLiteral("-") : QString::number(time));
        QTEST(result.join(QLatin1Char(' ')), "result");
    }

    // However a drag ends, it ends once: by a movement without its button, which the slider gets
    // when the release went elsewhere, by a second press, by hiding. Escape and the right button put
    // back what was there at the press, bit for bit.
    void everyDragEnds_data() {
        const Kestrel::Test::Columns<QPoint, QPoint, int, int> row("from", "to", "button",
                                                                   "modifiers");
        constexpr int left = Qt::LeftButton, none = Qt::NoModifier, ctrl = Qt::ControlModifier;
        row("in mark", {x(20), 30}, {x(70), 30}, left, none);
        row("ctrl sets a mark without the lock", {x(70), 30}, {x(72), 30}, left, ctrl);
        row("playhead", {x(50), 10}, {x(70), 10}, left, none);
        row("pan", {x(50), 30}, {x(40), 30}, left, Qt::AltModifier);
        row("zoom rectangle", {x(20), 30}, {x(40), 30}, Qt::RightButton, none);
        row("derived", {x(90), 30}, {x(80), 30}, left, none);
    }
    void everyDragEnds() {
        QFETCH(QPoint, from);
        QFETCH(QPoint, to);
        QFETCH(int, button);
        QFETCH(int, modifiers);
        const auto held = Qt::MouseButton(button);
        const auto keys = Qt::KeyboardModifiers(modifiers);
        const QByteArray name = QTest::currentDataTag();
        enum End { LostRelease, SecondPress, Hide, Escape, RightButton };
        for (const End end : {LostRelease, SecondPress, Hide, Escape, RightButton}) {
            if (end == RightButton && held != Qt::LeftButton)
                continue;
            Stage stage;
            stage.model.setTimes(0, 20, 60, 99, 50);
            stage.model.enableInOutLock(!name.contains("without the lock"));
            const auto state = [&stage] {
                const TimeSliderModel& m = stage.model;
                return std::tuple(m.inTime(), m.outTime(), m.currentTime(), m.inOutLock(),
                                  stage.visible());
            };
            const auto before = state();
            stage.press(from, held, keys);
            stage.move(to, held, keys);
            QVERIFY(name != "derived" || popups() == QLatin1String("80"));
            const auto begun = stage.log.filter(QStringLiteral("begin")).size();
            QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QWidget elsewhere; // the slider takes no focus by a click
            if (end == LostRelease)
                stage.move({x(45), 30}, Qt::NoButton);
            else if (end == SecondPress)
                stage.press({x(70), 2}, Qt::MiddleButton);
            else if (end == Hide)
                stage.slider.hide();
            else if (end == Escape)
                QApplication::sendEvent(&elsewhere, &escape);
            else
                stage.press(to, Qt::RightButton, keys);
            QVERIFY(escape.isAccepted());
            QCOMPARE(stage.slider.dragHandle(),
                     end == SecondPress ? TimeSlider::ZoomRectangleHandle : TimeSlider::NoHandle);
            QCOMPARE(stage.log.count(QStringLiteral("end")), begun);
            QCOMPARE(stage.log.count(QStringLiteral("derived end")), int(name == "derived"));
            QCOMPARE(popups(), QString());
            if (end < Escape) {
                QVERIFY(name == "pan" || stage.visible() == std::pair(Time(0), Time(99)));
                continue;
            }
            QVERIFY(state() == before);
            QVERIFY(stage.log.contains(QStringLiteral("allow")));
            stage.log.clear();
            stage.move({x(33), 30}, held, keys);
            stage.release({x(33), 30}, Qt::RightButton, keys);
            stage.release({x(33), 30}, held, keys);
            QVERIFY(state() == before);
            QCOMPARE(stage.log, QStringList());
            stage.press({x(50), 10}); // the next drag is a new one
            QCOMPARE(stage.slider.dragHandle(), TimeSlider::PlayheadHandle);
        }
        Stage idle;
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(&idle.slider, &escape);
        QVERIFY(!escape.isAccepted()); // the dialog's
    }

    void theFaintPlayheadStaysUnderTheMouse() {
        Stage stage;
        TimeSlider::SetVisibleRangeFollowsPlayhead(false);
        stage.move({x(30), 30}, Qt::NoButton);
        const auto isFaint = [&stage] {
            const QColor color = stage.grab().pixelColor(x(30), 15);
            return color.red() > color.green() + 40;
        };
        QVERIFY(isFaint());
        stage.slider.setTimeRange(60, 159);
        QVERIFY(isFaint()); // by the host
        stage.model.setLastVisibleTime(109);
        QVERIFY(isFaint()); // by another slider
        stage.slider.setPreviewPlayhead(70);
        stage.slider.setTimeRange(80, 179);
        QVERIFY(!isFaint()); // the host's own place
    }

    void snapsWithoutShift() {
        Stage stage;
        QVERIFY(QObject::connect(&stage.slider, SIGNAL(snapTime(Kestrel::Base::Time&)), this,
                                 SLOT(snapToTens(Kestrel::Base::Time&))));
        stage.press({x(50), 10});
        stage.move({x(58), 10});
        QCOMPARE(stage.model.currentTime(), 60);
        stage.move({x(63), 10}, Qt::LeftButton, Qt::ShiftModifier);
        QCOMPARE(stage.model.currentTime(), 63);
        stage.release({x(63), 10});
    }
    void snapToTens(Kestrel::Base::Time& time) { time = (time + 5) / 10 * 10; }

    void scrollsWhileDraggedOutside() {
        Stage stage;
        stage.slider.setTimeRange(10, 59);
        stage.press({x(50), 10});
        QCursor::setPos(stage.slider.mapToGlobal(QPoint(600, 10)));
        QTRY_VERIFY(stage.slider.firstVisibleTime() >= 14);
        QVERIFY(stage.model.currentTime() > 59); // the playhead went along
        stage.release({505, 10});
        const Time first = stage.slider.firstVisibleTime();
        QTest::qWait(150);
        QCOMPARE(stage.slider.firstVisibleTime(), first);
        QCursor::setPos(0, 0);
    }

    void wheelAndGesturesZoomAndPan() {
        Stage stage;
        stage.slider.setTimeRange(0, 110);
        QVERIFY(stage.wheel(120, {5, 20}));
        QCOMPARE(stage.visible(), std::pair(Time(0), Time(100)));
        QVERIFY(stage.wheel(-120, {5, 20}));
        QCOMPARE(stage.visible(), std::pair(Time(0), Time(110)));
        QVERIFY(!Kestrel::Test::turnWheel(stage.slider, QPoint(120, 0))); // sideways
        QCOMPARE(stage.visible(), std::pair(Time(0), Time(110)));

        // A notch in fifteen touches is a notch, also where a touch is less than a frame.
        stage.slider.setTimeRange(0, 11);
        for (int touch = 0; touch < 15; ++touch)
            stage.wheel(8, {5, 20});
        QCOMPARE(stage.visible(), std::pair(Time(0), Time(10)));

        stage.slider.setTimeRange(0, 100);
        QPinchGesture pinch;
        pinch.setCenterPoint(stage.slider.mapToGlobal(QPoint(5, 20)));
        for (const qreal factor : {2.0, 0.0, -1.0}) {
            pinch.setScaleFactor(factor);
            QGestureEvent event({&pinch});
            QApplication::sendEvent(&stage.slider, &event);
        }
        QCOMPARE(stage.visible(), std::pair(Time(0), Time(50)));

        QPanGesture pan;
        pan.setOffset({-50, 0});
        QGestureEvent event({&pan});
        QApplication::sendEvent(&stage.slider, &event);
        QCOMPARE(stage.visible(), std::pair(Time(5), Time(55)));
    }

    void visibleRange() {
        Stage stage;
        stage.slider.setTimeRange(-20, 30); // not before frame 0 on the main slider
        QCOMPARE(stage.visible(), std::pair(Time(0), Time(50)));
        stage.slider.setFirstVisibleTime(80);
        QCOMPARE(stage.visible(), std::pair(Time(80), Time(81)));
        stage.slider.setFirstVisibleTime(500);
        QCOMPARE(stage.visible(), std::pair(Time(98), Time(99)));
        stage.slider.setTimeRange(10, 59);
        stage.slider.scrollToTime(20);
        QCOMPARE(stage.visible(), std::pair(Time(20), Time(69)));
        stage.slider.scrollTimeToX(40, 105);
        QCOMPARE(stage.slider.clipTimeToX(40), 105);
        stage.model.setTimes(0, 20, 60, 99, 50);
        stage.slider.zoomToFitInOut();
        QCOMPARE(stage.visible(), std::pair(Time(20), Time(60)));
        stage.slider.zoomToFit();
        QCOMPARE(stage.visible(), std::pair(Time(0), Time(99)));

        stage.slider.setTimeRange(0, 9);
        stage.model.setCurrentTime(70); // followed to the centre
        QCOMPARE(stage.visible(), std::pair(Time(66), Time(75)));
        TimeSlider::SetVisibleRangeFollowsPlayhead(false);
        stage.model.setCurrentTime(5);
        QCOMPARE(stage.visible(), std::pair(Time(66), Time(75)));

        Stage other(0);
        other.slider.setTimeRange(-20, 30);
        QCOMPARE(other.visible(), std::pair(Time(-20), Time(30)));
    }

    void keys() {
        Stage stage;
        for (const auto& [key, time] : {std::pair(Qt::Key_Right, 51), std::pair(Qt::Key_Left, 50),
                                        std::pair(Qt::Key_Home, 0), std::pair(Qt::Key_End, 99)}) {
            QTest::keyClick(&stage.slider, key);
            QCOMPARE(stage.model.currentTime(), time);
        }
        QKeyEvent shifted(QEvent::KeyPress, Qt::Key_Left, Qt::ShiftModifier);
        QApplication::sendEvent(&stage.slider, &shifted);
        QVERIFY(!shifted.isAccepted()); // the host's
    }

    void paintsOnlyWhatChanged() {
        Stage stage;
        stage.slider.setTimeRange(0, 499);
        stage.paintedPixels();
        const int renders = stage.slider.renders;

        stage.model.setCurrentTime(400); // the old place and the new one
        QVERIFY(stage.paintedPixels() < 2 * 60 * 37);
        stage.move({x(30), 20}, Qt::NoButton);
        QVERIFY(stage.paintedPixels() < 60 * 37);
        stage.model.setKeyFrames(std::set<int>{1, 2});
        stage.paintedPixels();
        QCOMPARE(stage.slider.renders, renders);

        for (Time frame = 0; frame < 400; ++frame)
            stage.slider.displayFrameAsCached(frame, 0);
        stage.settle();
        QCOMPARE(int(stage.slider.paints.size()), 1);
        QCOMPARE(stage.paintedPixels(), 400 * 6); // their columns on the rows of all strips
        QCOMPARE(stage.slider.renders, renders);

        stage.move({x(30), 2}, Qt::NoButton); // the overview bar lights up
        QVERIFY(stage.paintedPixels() < 510 * 5 + 60 * 37);
        stage.model.setInTime(20, true);
        stage.paintedPixels();
        QCOMPARE(stage.slider.renders, renders + 2);
    }

    void indicatorsStandOnTheirFrames() {
        Stage stage;
        TimeSlider::SetKeyFrameColor(Qt::blue);
        stage.slider.setCacheBarColor(Qt::green, 0);
        stage.slider.setCacheBarColor(Qt::yellow, 1);
        stage.slider.setCachedFrames(frames(10, 20), 0);
        stage.grab();
        stage.slider.displayFrameAsCached(20, 0); // adds to columns that are filled
        stage.slider.clearCachedFrame(12, 0);
        stage.slider.displayFrameAsCached(30, 1);
        for (const int bar : {-1, 2})
            stage.slider.displayFrameAsCached(0, bar);
        stage.model.setKeyFrames(std::set<int>{40});
        for (const int scale : {1, 2}) {
            const QImage image = stage.grab(scale);
            const auto columns = [&](int y, QColor color) {
                QStringList runs;
                int start = -1;
                for (int column = 0; column <= image.width(); ++column) {
                    const bool on =
                        column < image.width() && image.pixelColor(column, y * scale) == color;
                    if (on && start < 0)
                        start = column;
                    if (!on && start >= 0) {
                        runs << QStringLiteral("%1-%2").arg(start / scale).arg(column / scale);
                        start = -1;
                    }
                }
                return runs.join(QLatin1Char(' '));
            };
            QCOMPARE(columns(24, Qt::green), QStringLiteral("55-65 70-110"));
            QCOMPARE(columns(26, Qt::yellow), QStringLiteral("155-160"));
            QCOMPARE(columns(22, Qt::blue), QStringLiteral("205-210"));
        }
        TimeSlider::SetKeyFrameColor(Qt::magenta);
    }

    void followsThePalette() {
        Stage stage;
        QPalette palette = stage.slider.palette();
        palette.setColor(QPalette::Window, QColor(12, 34, 56));
        stage.slider.setPalette(palette);
        QCOMPARE(stage.grab(2).pixelColor(0, 40), QColor(12, 34, 56));
    }

    void isKnownToAssistiveTechnology() {
        Stage stage;
        auto* interface = QAccessible::queryAccessibleInterface(&stage.slider);
        QVERIFY(interface && interface->valueInterface());
        QCOMPARE(interface->role(), QAccessible::Slider);
        stage.formatter.setTimeDisplayFormat(true, false);
        QCOMPARE(interface->text(QAccessible::Value), QStringLiteral("00:00:02:00"));
        interface->valueInterface()->setCurrentValue(1000);
        QCOMPARE(stage.model.currentTime(), 99);
    }

    void takesModelAndFormatterAtAnyTime() {
        TimeSlider slider;
        slider.resize(510, 37);
        slider.show();
        TimeSliderModel model;
        model.setTimes(TimeSliderModel::Times().withClip(0, 99).withMarks(20, 60).withCurrent(50));
        model.setFirstVisibleTime(0);
        model.setLastVisibleTime(99);
        TimeFormatter formatter;
        Stage other; // of the same times, given at the start
        other.model.setTimes(model.times());
        const auto sameAs = [&slider](const QImage& image) {
            return slider.grab().toImage().convertToFormat(image.format()) == image;
        };
        const QImage expected = other.slider.grab().toImage();
        QVERIFY(!sameAs(expected));
        slider.setModel(&model);
        slider.setFormatter(&formatter);
        slider.setOptions(TimeSlider::MainTransport);
        slider.setNumCacheBars(2);
        formatter.setTimeDisplayFormat(false, false);
        QVERIFY(sameAs(expected));
        // The model before is neither shown nor edited any more, nor is its drag.
        QTest::mousePress(&slider, Qt::LeftButton, {}, {x(50), 10});
        TimeSliderModel next;
        slider.setModel(&next);
        QCOMPARE(slider.dragHandle(), TimeSlider::NoHandle);
        model.setCurrentTime(7);
        QTest::keyClick(&slider, Qt::Key_Home);
        QCOMPARE(model.currentTime(), Time(7));
        slider.setModel(nullptr);
        slider.setFormatter(nullptr);
        slider.grab();
    }

    void outlivesItsModelAndFormatter() {
        auto model = std::make_unique<TimeSliderModel>();
        auto formatter = std::make_unique<TimeFormatter>();
        TimeSlider slider(model.get(), formatter.get(), 1, TimeSlider::MainTransport);
        model->setTimes(0, 5, 10, 20, 3);
        slider.zoomToFit();
        slider.show();
        slider.grab();
        connect(&slider, &TimeSlider::updateTimeDrag, this, [&] { model.reset(); });
        QTest::mousePress(&slider, Qt::LeftButton, Qt::NoModifier, {slider.clipTimeToX(5), 30});
        Kestrel::Test::moveMouse(slider, {200, 30}); // deletes the model under the drag
        QVERIFY(!slider.model());
        QTest::mouseRelease(&slider, Qt::LeftButton, Qt::NoModifier, {200, 30});
        QTest::keyClick(&slider, Qt::Key_Right);
        slider.grab();
        formatter.reset();
        slider.zoomToFitInOut();
        slider.grab();
    }

    // A host may delete the slider in whatever it is told, at every step of every kind of drag.
    void mayBeDeletedInAnySignal() {
        const QMetaObject& meta = TimeSlider::staticMetaObject;
        int deleted = 0;
        for (int index = meta.methodOffset(); index < meta.methodCount(); ++index) {
            if (meta.method(index).methodType() != QMetaMethod::Signal)
                continue;
            for (const QPoint from : {QPoint(x(20), 30), QPoint(x(50), 10), QPoint(200, 2)}) {
                TimeSliderModel model;
                model.setTimes(0, 20, 60, 99, 50);
                QPointer<TimeSlider> slider = new TimeSlider(&model, nullptr, 1, 1);
                slider->resize(510, 37);
                slider->zoomToFit();
                struct Killer : QObject {
                    TimeSlider* victim;
                    int signal;
                    int qt_metacall(QMetaObject::Call call, int id, void** arguments) override {
                        id = QObject::qt_metacall(call, id, arguments);
                        if (id == 0 && call == QMetaObject::InvokeMetaMethod)
                            delete victim;
                        return id - 1;
                    }
                } killer;
                killer.victim = slider;
                QMetaObject::connect(slider, index, &killer,
                                     QObject::staticMetaObject.methodCount());
                const std::function<void()> steps[] = {
                    [&] {
                        Kestrel::Test::turnWheel(*slider, 120, {100, 20});
                    },
                    [&] { QTest::mousePress(slider, Qt::LeftButton, {}, from); },
                    [&] { Kestrel::Test::moveMouse(*slider, from + QPoint(30, 0)); },
                    [&] { QTest::keyClick(slider.data(), Qt::Key_Escape); },
                    [&] { QTest::mouseRelease(slider, Qt::LeftButton, {}, from); },
                    [&] { QTest::mousePress(slider, Qt::LeftButton, {}, from); },
                    [&] { Kestrel::Test::moveMouse(*slider, from + QPoint(30, 0)); },
                    [&] { QTest::mouseRelease(slider, Qt::LeftButton, {}, from); },
                    [&] { QTest::mouseClick(slider, Qt::RightButton, {}, from); },
                    [&] { slider->pan(3); },
                    [&] { slider->setModel(nullptr); }};
                for (const auto& step : steps) {
                    if (slider)
                        step();
                }
                deleted += slider.isNull();
                delete slider;
            }
        }
        QVERIFY(deleted > 20);
    }

    // Any input at any size and any times: no fault, and every begun drag is ended once.
    void survivesAnything() {
        std::mt19937 random(3);
        const auto pick = [&random](int n) { return int(random() % unsigned(n)); };
        const Time times[] = {InvalidTime,   -TimeSliderTime::Max, -1, 0, 7, 1000,
                              Time(1) << 45, TimeSliderTime::Max};
        const auto time = [&] { return pick(3) == 0 ? times[pick(8)] : Time(pick(120)); };
        Stage stage;
        TimeSlider::SetUseDoublePlayhead(true);
        QPoint at;
        Qt::MouseButton button = Qt::LeftButton;
        Qt::KeyboardModifiers keys;
        const auto press = [&] { stage.press(at, button, keys); };
        const auto move = [&] { stage.move(at, button, keys); };
        const std::function<void()> actions[] = {
            press,
            press,
            move,
            move,
            [&] { stage.release(at, button, keys); },
            [&] { stage.wheel(pick(300) - 150, at); },
            [&] {
                stage.model.setTimes(pick(2) == 0 ? 0 : time(), time(), time(),
                                     pick(2) == 0 ? 99 : time(), time());
            },
            [&] { stage.slider.setTimeRange(time(), time()); },
            [&] { stage.slider.zoomAboutTime(time(), float(pick(40)) / 20); },
            [&] { stage.slider.pan(time()); },
            [&] { stage.slider.resize(pick(4) == 0 ? pick(21) : pick(600), pick(50)); },
            [&] { stage.slider.displayFrameAsCached(time(), pick(2)); },
            [&] {
                stage.model.setKeyFrames(std::set<Time>{time(), time()});
            },
            [&] {
                if (!stage.slider.size().isEmpty())
                    stage.grab(1 + pick(2));
                QCoreApplication::processEvents();
            }};
        for (int step = 0; step < 4000; ++step) {
            at = QPoint(pick(600) - 20, pick(40));
            button = Qt::MouseButton(pick(4) == 0 ? 1 << pick(3) : 1);
            keys = Qt::KeyboardModifiers(pick(8) << 25); // Shift, Ctrl, Alt
            actions[pick(int(std::size(actions)))]();
        }
        stage.slider.hide();
        const QStringList begins = stage.log.filter(QRegularExpression(QStringLiteral("^begin")));
        QVERIFY(begins.size() > 50);
        QCOMPARE(stage.log.filter(QRegularExpression(QStringLiteral("^end$"))).size(),
                 begins.size());
    }
};

KXUI_TEST(TimeSliderTest);
#include "TimeSliderTest.moc"
