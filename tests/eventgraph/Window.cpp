#include "FakeTimer.h"

#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/eventgraph/EventGraph.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventTrack.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/settings/AppSettings.h>
#include <support/Input.h>
#include <support/TestRegistry.h>

#include <QtWidgets>

using namespace Kestrel::UI;
using namespace Kestrel::Test;
using Type = EventTrack::Type;
using TrackType = EventTrack::TrackType;

namespace {

EventTrack* makeTrack(const QString& name, int key, TrackType type = TrackType::Timeline) {
    return new EventTrack(name, Qt::red, key, type, 0, 10, 5000, 10000, 60, nullptr);
}

// A window with a capture: activities of 40 ms every 100 ms, and a graph below.
struct Captured {
    Captured() {
        window.addTrack(time.get());
        window.addTrack(value.get());
        window.addTrack(empty.get());
        view.start(unlimited, EventGraphMode::Forwards);
        for (int i = 0; i < 50; ++i) {
            time->addEvent(Type::Start, nullptr);
            timer.now += 40;
            value->addEvent(float(i % 10));
            time->addEvent(Type::End, new EventUserDataString(QString("frame %1").arg(i)));
            timer.now += 60;
        }
        view.stop();
        window.show();
    }

    QAction* action(const QString& text) const {
        for (QAction* each : window.findChildren<QAction*>()) {
            if (each->text() == text)
                return each;
        }
        return nullptr;
    }

    template <class Widget>
    Widget* widget(const QString& text) const {
        for (Widget* each : window.findChildren<Widget*>()) {
            if (each->property("text").toString() == text)
                return each;
        }
        return nullptr;
    }

    QScrollArea* area() const { return window.findChild<QScrollArea*>(); }

    FakeTimer timer;
    std::unique_ptr<EventTrack> time{makeTrack("Decode", 1)};
    std::unique_ptr<EventTrack> value{makeTrack("Cache", 2, TrackType::Value)};
    std::unique_ptr<EventTrack> empty{makeTrack("Idle", 3)};
    EventGraph window{nullptr, &timer};
    EventGraphView& view{*window.view()};
};

// Answers the modal boxes that come up: with a path in a file dialog, with the default in a message
// box, whose title and text are kept.
class Answers : public QObject {
public:
    Answers() { m_timer = startTimer(5); }

    QStringList paths;
    QStringList seen;

protected:
    void timerEvent(QTimerEvent*) override {
        QWidget* const box = QApplication::activeModalWidget();
        if (auto* const message = qobject_cast<QMessageBox*>(box)) {
            seen << message->windowTitle() + "|" + message->text();
            message->accept();
        } else if (auto* const dialog = qobject_cast<FileChooserDialog*>(box);
                   dialog && dialog != m_answered) {
            m_answered = dialog;
            seen << dialog->windowTitle() + "|" + dialog->filters().join(";;");
            if (paths.isEmpty()) {
                dialog->reject();
                return;
            }
            dialog->setFileName(QFile::encodeName(paths.takeFirst()));
            dialog->accept();
        }
    }

private:
    int m_timer;
    const QWidget* m_answered = nullptr; // it asks the disk, and is there for a while
};

class ReversedOrder : public QTranslator {
public:
    QString translate(const char* context, const char* text, const char*, int) const override {
        if (qstrcmp(context, "Kestrel::UI::EventGraphView") != 0)
            return {};
        return qstrcmp(text, "Time=%1, Value=%2") == 0 ? QStringLiteral("%2=Wert, %1=Zeit")
               : qstrcmp(text, ", Mean Value=%1") == 0 ? QStringLiteral("; %1 im Mittel")
                                                       : QString();
    }
    bool isEmpty() const override { return false; }
};

} // namespace

class Window : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void eventTexts() {
        Captured capture;
        EventGraphView& view = capture.view;
        QRect rect;
        QCOMPARE(view.eventTextAt({310, 5}, &rect),
                 QString("frame 1, Start=100, Duration=40, Mean Duration=40"));
        QCOMPARE(rect, QRect(300, 0, 40, 24));
        // Sample 3 of value 3 stands at 340 ms, 18 pixels above the end of the row.
        QCOMPARE(view.eventTextAt({541, 64}, &rect), QString("Time=340, Value=3, Mean Value=4.5"));
        QCOMPARE(rect, QRect(538, 64, 5, 5));
        // In the user's language, but not what any thread may ask for.
        ReversedOrder language;
        QCoreApplication::installTranslator(&language);
        QCOMPARE(view.eventTextAt({541, 64}), QString("3=Wert, 340=Zeit; 4.5 im Mittel"));
        QCOMPARE(view.snapshot().tracks.at(1).tooltipText, QString(", Mean Value=4.5"));
        QCoreApplication::removeTranslator(&language);
        // Between activities, beside a sample and below the rows.
        for (const QPoint& nothing : {QPoint(350, 5), QPoint(543, 66), QPoint(310, 300)})
            QCOMPARE(view.eventTextAt(nothing), QString());

        auto* const mode = capture.window.findChildren<QComboBox*>().at(1);
        QSignalSpy modes(&view, &EventGraphView::hitTestModeChanged);
        mode->setCurrentIndex(1); // allow the next
        QCOMPARE(modes.size(), 1);
        QVERIFY(view.property("hitTestMode").value<EventHitTestMode>() ==
                EventHitTestMode::AllowNext);
        QVERIFY(view.eventTextAt({350, 5}).startsWith("frame 2, "));
    }

    void sizes() {
        Captured capture;
        EventGraphView& view = capture.view;
        QCOMPARE(view.size(), QSize(5200, 500));
        std::unique_ptr<EventTrack> tall(
            new EventTrack("Tall", Qt::red, 9, TrackType::Value, 0, 1, 9, 9, 600, nullptr));
        view.addTrack(tall.get());
        QCOMPARE(view.sizeHint().height(), 24 + 60 + 24 + 600);
        capture.widget<QCheckBox>("Hide Empty Tracks")->setChecked(true);
        QVERIFY(view.hideEmptyTracks());
        QCOMPARE(view.sizeHint().height(), 500);
        QCOMPARE(view.size(), view.sizeHint());
        view.start(unlimited, EventGraphMode::Forwards);
        QCOMPARE(view.size(), QSize(200, 100));
        view.stop();
        QCOMPARE(view.size(), QSize(1000, 500));
    }

    void wheelKeepsTheTimeUnderTheCursor() {
        Captured capture;
        EventGraphView& view = capture.view;
        QScrollBar* const bar = capture.area()->horizontalScrollBar();
        const auto wheel = [&](int viewportX, int delta) {
            QVERIFY(turnWheel(view, delta, {viewportX - view.x(), 10}));
            QCOMPARE(view.x(), -bar->value());
        };
        const auto timeAt = [&](int viewportX) {
            return double(viewportX - view.x() - 200) / double(view.horizontalScale());
        };
        bar->setValue(1500);
        for (const int delta : {120, 240, -120, 480, -240}) {
            const double before = timeAt(500);
            wheel(500, delta);
            QVERIFY(std::abs(timeAt(500) - before) < 1.5);
        }
        QCOMPARE(view.horizontalScale(), std::exp2(1.0f));
        wheel(500, -12000);
        QCOMPARE(bar->value(), 0);
        wheel(500, 120 * 500);
        QVERIFY(view.width() > 8'000'000 && view.width() <= 16'777'215);
        capture.window.grab();

        QTest::keyClick(&view, Qt::Key_F);
        QVERIFY(view.width() <= capture.area()->viewport()->width());
        view.setSelection(1000, 1400);
        QTest::keyClick(&view, Qt::Key_Z);
        QVERIFY(timeAt(200) <= 1000 && timeAt(capture.area()->viewport()->width()) >= 1400);
        QVERIFY(timeAt(200) > 700);
        QTest::keyClick(&view, Qt::Key_Escape);
        QCOMPARE(view.selectionStart(), view.selectionEnd());
    }

    void pressAndDrag() {
        Captured capture;
        EventGraphView& view = capture.view;
        auto* const popup = view.findChild<QTextEdit*>();
        QTest::mousePress(&view, Qt::LeftButton, {}, {310, 5});
        QVERIFY(popup->isVisible());
        QCOMPARE(popup->toPlainText(), view.eventTextAt({310, 5}));
        QTest::mousePress(&view, Qt::LeftButton, {}, {320, 5});
        QVERIFY(!popup->isVisible());
        QTest::mousePress(&view, Qt::LeftButton, {}, {310, 5});
        QVERIFY(popup->isVisible());
        capture.area()->horizontalScrollBar()->setValue(77);
        QVERIFY(!popup->isVisible());

        QTest::mousePress(&view, Qt::LeftButton, {}, {350, 5});
        moveMouse(view, {450, 5});
        QTest::mouseRelease(&view, Qt::LeftButton, {}, {450, 5});
        QCOMPARE(view.selectionStart(), 150);
        QCOMPARE(view.selectionEnd(), 250);
        QTest::mouseClick(&view, Qt::LeftButton, {}, {350, 5});
        QCOMPARE(view.selectionEnd(), view.selectionStart());
    }

    void controls() {
        Captured capture;
        EventGraphView& view = capture.view;
        QAction* const single = capture.action("Single shot");
        QAction* const start = capture.action("Start");
        const auto combos = capture.window.findChildren<QComboBox*>();
        QComboBox* const mode = combos.at(0);
        auto* const duration = capture.window.findChild<QDoubleSpinBox*>();
        const QList<QWidget*> frozen{capture.widget<QLabel>("    Capture Mode: "),
                                     mode,
                                     capture.widget<QLabel>("    Capture Duration/s: "),
                                     duration,
                                     capture.widget<QLabel>("    Event hit test mode: "),
                                     combos.at(1),
                                     capture.widget<QCheckBox>("Include user data"),
                                     capture.widget<QCheckBox>("Skip duplicates")};
        const auto state = [&] {
            const bool enabled = capture.action("Save")->isEnabled();
            for (QWidget* widget : frozen) {
                if (!widget || widget->isEnabled() != enabled)
                    return QString("mixed");
            }
            return QString("%1%2 %3 %4")
                .arg(single->isEnabled() ? "single " : "")
                .arg(start->text())
                .arg(start->isEnabled() ? "on" : "off")
                .arg(enabled ? "free" : "frozen");
        };
        QCOMPARE(state(), QString("single Start on free"));
        start->trigger();
        QCOMPARE(view.durationSeconds(), unlimited);
        QCOMPARE(state(), QString("Stop on frozen"));
        start->trigger();
        QVERIFY(view.paused());
        QCOMPARE(state(), QString("single Start on free"));
        single->trigger();
        QCOMPARE(view.durationSeconds(), 2.0f);
        QCOMPARE(state(), QString("Start off frozen"));
        view.stop();
        mode->setCurrentIndex(1);
        QCOMPARE(state(), QString("Start on free"));
        start->trigger();
        QVERIFY(view.mode() == EventGraphMode::History && view.durationSeconds() == 2.0f);
        QCOMPARE(state(), QString("Stop on frozen"));
        start->trigger();
        QCOMPARE(state(), QString("Start on free"));
        capture.window.start(5, EventGraphMode::Forwards);
        QCOMPARE(duration->value(), 5.0);
        QCOMPARE(mode->currentIndex(), 0);
        QCOMPARE(state(), QString("Start off frozen"));
        capture.window.stop();
        QCOMPARE(state(), QString("single Start on free"));

        // Text that is no duration starts nothing.
        mode->setCurrentIndex(1);
        duration->findChild<QLineEdit*>()->setText("");
        start->trigger();
        QVERIFY(view.paused());
    }

    void saveAndLoad() {
        Captured capture;
        const QTemporaryDir folder;
        const QString path = folder.filePath("capture.xml"),
                      filter = "XML (*.xml);;All files (*.*)";
        Answers answers;
        answers.paths << path;
        capture.action("Save")->trigger();
        QTRY_COMPARE(answers.seen, QStringList({"Save events file|" + filter,
                                                "Save result|Event data saved to '" + path + "'"}));
        answers.seen.clear();
        answers.paths << path;
        capture.action("Load")->trigger();
        EventGraph* loaded = nullptr;
        const auto find = [&] {
            for (QWidget* widget : QApplication::topLevelWidgets()) {
                if (widget->windowTitle() == "Events " + path)
                    loaded = qobject_cast<EventGraph*>(widget);
            }
            return loaded != nullptr;
        };
        QTRY_VERIFY(find());
        QCOMPARE(answers.seen, QStringList("Load events file|" + filter));
        QCOMPARE(loaded->view()->tracks().size(), 3);
        QVERIFY(loaded->view()->eventTextAt({310, 5}).startsWith("frame 1, Start=100"));
        delete loaded;

        answers.seen.clear();
        QFile broken(path);
        QVERIFY(broken.open(QIODevice::WriteOnly) && broken.write("<Graph/>") > 0);
        broken.close();
        capture.view.load(path);
        QCOMPARE(answers.seen,
                 QStringList("Open result|Error opening '" + path +
                             "':\n\nThe file doesn't contain an event graph\nLine 1, column 8"));
    }

    void search() {
        Captured capture;
        EventGraphView& view = capture.view;
        QStringList found;
        for (int i = 0; i < 7; ++i) {
            QVERIFY(view.findNext("FRAME 4"));
            found << QString::number(view.selectionStart());
        }
        // 4, 40 to 49: then around.
        QCOMPARE(found, QStringList({"400", "4000", "4100", "4200", "4300", "4400", "4500"}));
        for (int i = 0; i < 6; ++i)
            QVERIFY(view.findNext("frame 4", true));
        QCOMPARE(view.selectionStart(), 400);
        QVERIFY(view.findNext("frame 4", true));
        QCOMPARE(view.selectionStart(), 4900);
        QVERIFY(view.visibleRegion().boundingRect().contains(QPoint(5100, 5)));
        QVERIFY(view.findNext("idle"));
        QVERIFY(!view.findNext("nothing"));
        QVERIFY(!view.findNext(""));
    }

    void statisticsTable() {
        Captured capture;
        capture.action("Statistics")->setChecked(true);
        const auto* const table = capture.window.findChild<QTreeWidget*>();
        QVERIFY(table->isVisible());
        const auto row = [&](const QString& name) {
            QStringList cells;
            for (const QTreeWidgetItem* item : table->findItems(name, Qt::MatchExactly)) {
                for (int column = 1; column < 9; ++column)
                    cells << item->text(column);
            }
            return cells.join(' ');
        };
        QCOMPARE(row("Decode"), QString("ms 50 40 40 40 40 40 40"));
        QCOMPARE(row("Cache"), QString(" 50 0 4.5 9 4 9 9"));
        QCOMPARE(row("Idle").simplified(), QString("ms 0"));
        capture.view.clear();
        QCOMPARE(row("Decode").simplified(), QString("ms 0"));
    }

    // Place, splitter and statistics come back; asked for only.
    void remembersItsPlace() {
        AppSettings().clear();
        const auto make = [](bool remembers) {
            auto window = std::make_unique<EventGraph>();
            window->setRemembersPlace(remembers);
            window->show();
            return window;
        };
        const QRect place(30, 40, 700, 500);
        const auto splitter = [](const auto& window) {
            return window->template findChild<QSplitter*>();
        };
        auto window = make(true);
        QCOMPARE(window->objectName(), QString("EventGraph"));
        window->setGeometry(place);
        for (QAction* action : window->findChildren<QAction*>()) {
            if (action->text() == "Statistics")
                action->setChecked(true);
        }
        splitter(window)->setSizes({300, 100});
        const QList<int> sizes = splitter(window)->sizes();
        window.reset(); // as open as when the application ends
        window = make(true);
        QCOMPARE(window->geometry(), place);
        // Toolbars take their height when they are shown.
        QVERIFY(std::abs(splitter(window)->sizes().at(0) - sizes.at(0)) < 20);
        window->move(50, 60);
        window->close();
        window = make(true);
        QCOMPARE(window->pos(), QPoint(50, 60));
        window->setRemembersPlace(false);
        window->move(70, 80);
        window.reset();
        QCOMPARE(make(true)->pos(), QPoint(50, 60));
        QVERIFY(make(false)->size() != place.size());
    }

    // Any state can be painted: no rows, rows without height, a dead sync track, odd numbers.
    void paintsAnything() {
        Captured capture;
        EventGraphView& view = capture.view;
        view.setBackgroundStripeSpacing(0);
        EventTrack odd("Odd", QColor(), 5, TrackType::Value, 1, 1, 1, 1, -7, nullptr);
        EventTrack flat("Flat", Qt::white, 6, TrackType::Value, 1, 1, 9, 9, 40, nullptr);
        view.addTrack(&odd);
        view.addTrack(&flat);
        {
            const std::unique_ptr<EventTrack> sync(makeTrack("Sync", 7));
            view.addTrack(sync.get());
            view.setSyncTrack(sync.get());
        }
        QVERIFY(!view.syncTrack());
        view.setSyncTrack(capture.time.get());
        flat.addEvent(Type::Sample, nullptr, 40);
        flat.addEvent(Type::Sample, nullptr, -40);
        capture.time->addEvent(Type::Start, nullptr, -100);
        capture.time->addEvent(Type::End, nullptr, 100);
        capture.time->addEvent(Type::Start, nullptr, std::numeric_limits<int>::min());
        capture.time->addEvent(Type::End, new EventUserDataString("far"),
                               std::numeric_limits<int>::max() - 9);
        QVERIFY(!capture.window.grab().isNull());
        capture.window.setBackgroundStripeSpacing(std::numeric_limits<int>::max());
        view.setSelection(-5, 100000);
        QVERIFY(view.findNext("far"));
        view.eventTextAt({1000, 5});
        QVERIFY(!capture.window.grab().isNull());
        view.start(unlimited, EventGraphMode::Forwards);
        QVERIFY(!capture.window.grab().isNull());
    }
};

KXUI_TEST(Window);
#include "Window.moc"
