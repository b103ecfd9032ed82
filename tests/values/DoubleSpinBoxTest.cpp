#include <KxUI/values/DoubleSpinBox.h>
#include <KxUI/values/PointerTravel_p.h>
#include <KxUI/values/platform/PointerWarp_p.h>

#include <support/Columns.h>
#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QtWidgets>

#include <cmath>
#include <limits>

using namespace Kestrel;
using namespace Kestrel::UI;

namespace {

constexpr QPoint Middle(60, 12);

/** A field with the focus in a window away from the screen's edges, and what it told. */
struct Field {
    Field() {
        window.setGeometry(200, 200, 300, 120);
        other.setGeometry(150, 60, 100, 24);
        box.setGeometry(20, 10, 120, 24);
        box.setValue(10.0);
        window.show();
        Test::focus(box);
    }
    void type(const QString& text, bool accept = true) {
        QTest::keyClicks(&box, text);
        if (accept)
            QTest::keyClick(&box, Qt::Key_Return);
    }
    void scrub(int pixels, Qt::KeyboardModifiers modifiers = {}, bool release = true) {
        QTest::mousePress(&box, Qt::LeftButton, modifiers, Middle);
        for (const int x : {4, 4 + pixels})
            Test::moveMouse(box, Middle + QPoint(x, 0), Qt::LeftButton, modifiers);
        if (release)
            QTest::mouseRelease(&box, Qt::LeftButton, modifiers, Middle + QPoint(4 + pixels, 0));
    }
    QLineEdit* line() { return box.findChild<QLineEdit*>(); }

    QWidget window;
    DoubleSpinBox box{&window};
    QLineEdit other{&window};
    Test::EditLog<DoubleSpinBox> log{box,
                                     [](const DoubleSpinBox& b) { return QVariant(b.value()); }};
};

// A host that deletes the field when it is told something for the nth time.
void deleteInSignal(const std::string& act, int nth) {
    auto* box = new DoubleSpinBox;
    const QPointer<DoubleSpinBox> alive(box);
    box->setGeometry(300, 300, 120, 24);
    box->setMixed(act == "mixed");
    box->show();
    Test::focus(*box);
    int count = 0;
    const auto told = [&] {
        if (++count == nth)
            delete alive.data();
    };
    for (const auto signal : {&DoubleSpinBox::valueChanged, &DoubleSpinBox::valueEdited})
        QObject::connect(box, signal, qApp, told);
    for (const auto signal : {&DoubleSpinBox::editStarted, &DoubleSpinBox::displayChanged})
        QObject::connect(box, signal, qApp, told);
    QObject::connect(box, &DoubleSpinBox::editFinished, qApp, told);
    QObject::connect(box, &DoubleSpinBox::relativeEdited, qApp, told);
    QObject::connect(box, &DoubleSpinBox::textRefused, qApp, told);
    QObject::connect(box, &DoubleSpinBox::editingFinished, qApp, told);
    if (act == "wheel")
        Test::turnWheel(*box, 120);
    else if (act == "arrow")
        QTest::mousePress(box, Qt::LeftButton, {}, QPoint(112, 6));
    else
        QTest::keyClicks(box, QString::fromLatin1(act == "refused" ? "1/0" : "12"));
    if (alive)
        QTest::keyClick(box, act == "digit" ? Qt::Key_Up : Qt::Key_Return);
    delete alive.data();
}

} // namespace

class DoubleSpinBoxTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void editsAreBracketed() {
        Test::EditedWidget<DoubleSpinBox> edited;
        edited.make = [] {
            auto box = std::make_unique<DoubleSpinBox>();
            box->setGeometry(300, 300, 120, 24);
            box->setRange(-100.0, 100.0);
            box->setValue(10.0);
            return box;
        };
        edited.another = 99.0;
        edited.press = [](DoubleSpinBox& box) {
            QTest::mousePress(&box, Qt::LeftButton, {}, Middle);
            Test::moveMouse(box, Middle + QPoint(4, 0)); // no click any more, and no change yet
        };
        edited.move = [](DoubleSpinBox& box, int nth) {
            Test::moveMouse(box, Middle + QPoint(4 + 8 * nth, 0));
        };
        edited.release = [](DoubleSpinBox& box) {
            QTest::mouseRelease(&box, Qt::LeftButton, {}, Middle);
        };
        edited.key = Qt::Key_Up;
        edited.notch = [](DoubleSpinBox& box) { return Test::turnWheel(box, 120); };
        edited.once = [](DoubleSpinBox& box) { box.resetToDefault(); };
        Test::checkEditBracket(edited);
        // The same on the step arrows, and by what is typed.
        const QPoint arrow(112, 6);
        edited.press = nullptr;
        edited.once = [arrow](DoubleSpinBox& box) {
            const QPointer<DoubleSpinBox> alive(&box);
            QTest::mousePress(&box, Qt::LeftButton, {}, arrow);
            if (alive)
                QTest::mouseRelease(&box, Qt::LeftButton, {}, arrow);
        };
        Test::checkEditBracket(edited);
        edited.once = [](DoubleSpinBox& box) {
            const QPointer<DoubleSpinBox> alive(&box);
            Test::focus(box);
            QTest::keyClicks(&box, QStringLiteral("5*5"));
            if (alive)
                QTest::keyClick(alive.data(), Qt::Key_Return);
        };
        Test::checkEditBracket(edited);
    }

    void typing_data() {
        const Test::Columns<QString, double, QString> row("text", "value", "told");
        row("expression", QStringLiteral("0.18*2"), 0.36, QStringLiteral("SEF"));
        row("a part more", QStringLiteral("+=10%"), 11.0, QStringLiteral("SEF"));
        row("replaced", QStringLiteral("=7"), 7.0, QStringLiteral("SEF"));
        row("present value", QStringLiteral("(x+2)/4"), 3.0, QStringLiteral("SEF"));
        row("the same", QStringLiteral("10"), 10.0, QString());
        row("beyond the end", QStringLiteral("1e6"), 1000.0, QStringLiteral("SEF"));
        row("minus nothing", QStringLiteral("-0"), 0.0, QStringLiteral("SEF"));
        row("refused", QStringLiteral("1/0"), 10.0, QString());
    }
    void typing() {
        QFETCH(QString, text);
        Field field;
        field.box.setRange(-1000.0, 1000.0);
        field.type(text);
        QTEST(field.box.value(), "value");
        QVERIFY(!std::signbit(field.box.value()));
        QTEST(field.log.text, "told");
    }

    void refusedTextStaysToBeMended() {
        Field field;
        QSignalSpy refused(&field.box, &DoubleSpinBox::textRefused);
        field.type(QStringLiteral("2+foo"));
        QCOMPARE(refused.count(), 1);
        QCOMPARE(refused.last().at(0).toString(), QStringLiteral("2+foo"));
        QVERIFY(!refused.last().at(1).toString().isEmpty());
        QCOMPARE(refused.last().at(2).toInt(), 2);
        QCOMPARE(field.line()->cursorPosition(), 2);
        QCOMPARE(field.box.text(), QStringLiteral("2+foo"));
        QTest::keyClick(&field.box, Qt::Key_Delete);
        QTest::keyClick(&field.box, Qt::Key_Delete);
        QTest::keyClick(&field.box, Qt::Key_Delete);
        field.type(QStringLiteral("3"));
        QCOMPARE(field.box.value(), 5.0);
        // With the focus goes the text.
        field.type(QStringLiteral("(("), false);
        field.other.setFocus();
        QCOMPARE(refused.count(), 2);
        QCOMPARE(field.box.text(), QStringLiteral("5"));
        QCOMPARE(field.log.text, QStringLiteral("SEF"));
        Test::focus(field.box);
        field.type(QStringLiteral("6"), false);
        field.other.setFocus();
        QCOMPARE(field.box.value(), 6.0);
    }

    void typingLeavesTheBitsAlone() {
        Field field;
        const double third = 1.0 / 3.0;
        field.box.setValue(third);
        QCOMPARE(field.box.text(), QStringLiteral("0.3333"));
        QCOMPARE(field.box.exactText(), QStringLiteral("0.3333333333333333"));
        QTest::keyClick(&field.box, Qt::Key_F2);
        QCOMPARE(field.box.text(), field.box.exactText());
        QTest::keyClick(&field.box, Qt::Key_Return);
        QCOMPARE(field.box.value(), third);
        QTest::mouseClick(&field.box, Qt::LeftButton, {}, Middle);
        field.other.setFocus();
        QCOMPARE(field.box.value(), third);
        QCOMPARE(field.log.text, QString());
    }

    void escape() {
        Field field;
        QVERIFY(!Test::sendKey(field.box, Qt::Key_Escape));
        field.type(QStringLiteral("12"), false);
        QVERIFY(Test::sendKey(field.box, Qt::Key_Escape));
        QCOMPARE(field.box.text(), QStringLiteral("10"));
        QKeyEvent second(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&field.box, &second);
        QVERIFY(!second.isAccepted());
        QVERIFY(field.line()->isHidden());
        QCOMPARE(field.log.text, QString());
    }

    void digitsUnderTheCaret() {
        Field field;
        field.type(QStringLiteral("99.50"), false);
        QTest::keyClick(&field.box, Qt::Key_Up);
        QCOMPARE(field.box.text(), QStringLiteral("99.51"));
        QTest::keyClick(&field.box, Qt::Key_Left);
        QTest::keyClick(&field.box, Qt::Key_Home);
        QTest::keyClick(&field.box, Qt::Key_Up);
        QCOMPARE(field.box.text(), QStringLiteral("109.51"));
        QCOMPARE(field.line()->selectedText(), QStringLiteral("0"));
        QTest::keyClick(&field.box, Qt::Key_Down, Qt::ControlModifier);
        QCOMPARE(field.box.value(), 108.51);
        field.box.setMaximum(110.0);
        QTest::keyClick(&field.box, Qt::Key_PageUp, Qt::ShiftModifier);
        QCOMPARE(field.box.value(), 110.0);
        QCOMPARE(field.box.text(), QStringLiteral("110"));
        QCOMPARE(field.log.text, QStringLiteral("SEFSEFSEFSEF"));
    }

    void keys_data() {
        const Test::Columns<int, int, double> row("key", "modifiers", "value");
        row("up", Qt::Key_Up, Qt::NoModifier, 10.01);
        row("coarse", Qt::Key_Up, Qt::ShiftModifier, 10.1);
        row("fine", Qt::Key_Down, Qt::ControlModifier, 9.999);
        row("page", Qt::Key_PageDown, Qt::NoModifier, 9.9);
        row("soft end", Qt::Key_End, Qt::ControlModifier, 20.0);
        row("no end", Qt::Key_Home, Qt::ControlModifier, 10.0);
        row("reset", Qt::Key_Backspace, Qt::NoModifier, 3.0);
        row("a letter", Qt::Key_A, Qt::NoModifier, 10.0);
    }
    void keys() {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        Field field;
        field.box.setDefaultValue(3.0);
        field.box.setSoftMaximum(20.0);
        QTest::keyClick(&field.box, Qt::Key(key), Qt::KeyboardModifiers(modifiers));
        QTEST(field.box.value(), "value");
        QVERIFY(!field.box.isEditing());
    }

    void clipboard() {
        Field field;
        field.box.setValue(0.1 + 0.2);
        QTest::keyClick(&field.box, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QStringLiteral("0.30000000000000004"));
        field.box.setValue(1.0);
        QTest::keyClick(&field.box, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(field.box.value(), 0.1 + 0.2);
        QCOMPARE(field.log.text, QStringLiteral("SEF"));
        QApplication::clipboard()->setText(QStringLiteral("nonsense"));
        QTest::keyClick(&field.box, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(field.box.text(), QStringLiteral("nonsense"));
        QCOMPARE(field.box.value(), 0.1 + 0.2);
    }

    void scrubbing() {
        Field field;
        field.scrub(20);
        QCOMPARE(field.box.value(), 10.05);
        field.scrub(-8, Qt::ShiftModifier);
        QCOMPARE(field.box.value(), 9.9); // to whole steps of a tenth
        field.scrub(4, Qt::ControlModifier);
        QCOMPARE(field.box.value(), 9.901);
        QCOMPARE(field.log.text, QStringLiteral("SEFSEFSEF"));
        // There and back is the very value, and an edit that changes nothing.
        field.box.setValue(1.0 / 3.0);
        QTest::mousePress(&field.box, Qt::LeftButton, {}, Middle);
        for (const int x : {4, 40, 4})
            Test::moveMouse(field.box, Middle + QPoint(x, 0));
        QTest::mouseRelease(&field.box, Qt::LeftButton, {}, Middle);
        QCOMPARE(field.box.value(), 1.0 / 3.0);
        QVERIFY(field.line()->isHidden());
        field.box.setFineTuneEnabled(false);
        field.scrub(20);
        QCOMPARE(field.box.value(), 1.0 / 3.0);
    }

    // A pen's events are left alone, and scrub as the mouse's that Qt makes of them: by parts of
    // pixels, and without a hover before or a jump at the screen's edge.
    void scrubbingByTablet() {
        Field field;
        const QPointF origin = field.box.mapToGlobal(QPoint());
        const auto send = [&](QEvent::Type tablet, QEvent::Type mouse, const QPointF& at) {
            const bool isPress = mouse == QEvent::MouseButtonPress;
            const bool isDown = mouse != QEvent::MouseButtonRelease;
            const Qt::MouseButtons held = isDown ? Qt::LeftButton : Qt::NoButton;
            const auto pen = Test::makePenEvent(tablet, at, origin + at, held);
            pen->ignore();
            QCoreApplication::sendEvent(&field.box, pen.get());
            if (pen->isAccepted())
                return false;
            QMouseEvent event(mouse, at, at + QPointF(field.box.pos()), origin + at,
                              isPress || !isDown ? Qt::LeftButton : Qt::NoButton, held,
                              Qt::NoModifier, Qt::MouseEventSynthesizedByQt);
            QCoreApplication::sendEvent(&field.box, &event);
            return true;
        };
        const QPointF from(60.25, 12.5);
        QVERIFY(send(QEvent::TabletPress, QEvent::MouseButtonPress, from));
        QCOMPARE(field.log.text, QString());
        for (int i = 1; i <= 48; ++i)
            QVERIFY(send(QEvent::TabletMove, QEvent::MouseMove, from + QPointF(0.5 * i, 0.0)));
        QCOMPARE(field.log.text.count(QLatin1Char('S')), 1);
        const double scrubbed = field.box.value();
        QVERIFY2(scrubbed > 10.03 && scrubbed < 10.07, qPrintable(QString::number(scrubbed)));
        // A pen stands where it is: the pointer is not put to the other edge of the screen.
        const QRect screen = field.box.screen()->geometry();
        const QPointF edge(screen.right() - origin.x(), from.y());
        const QPoint pointer = QCursor::pos();
        QVERIFY(send(QEvent::TabletMove, QEvent::MouseMove, edge));
        QCOMPARE(QCursor::pos(), pointer);
        QVERIFY(Test::sendKey(field.box, Qt::Key_Escape));
        QVERIFY(send(QEvent::TabletMove, QEvent::MouseMove, from));
        QVERIFY(send(QEvent::TabletRelease, QEvent::MouseButtonRelease, from));
        QCOMPARE(field.box.value(), 10.0);
        QVERIFY(field.log.text.endsWith(QLatin1Char('R')));
    }

    void scrubbingByLabelAndMiddleButton() {
        Field field;
        QLabel label(QStringLiteral("&Gain"), &field.window);
        label.setGeometry(20, 60, 60, 20);
        label.show();
        field.box.setLabel(&label);
        QTest::mousePress(&label, Qt::LeftButton, {}, QPoint(20, 10));
        for (const int x : {24, 44})
            Test::moveMouse(label, QPoint(x, 10));
        QTest::mouseRelease(&label, Qt::LeftButton, {}, QPoint(44, 10));
        QCOMPARE(field.box.value(), 10.05);
        QTest::mouseDClick(&label, Qt::LeftButton, {}, QPoint(20, 10));
        QCOMPARE(field.box.value(), 0.0);
        QCOMPARE(field.log.text, QStringLiteral("SEFSEF"));
        QTest::keyClick(&field.box, Qt::Key_F2);
        QTest::mousePress(field.line(), Qt::MiddleButton, {}, QPoint(20, 10));
        for (const int x : {24, 44})
            Test::moveMouse(*field.line(), QPoint(x, 10), Qt::MiddleButton);
        QCOMPARE(field.box.text(), QStringLiteral("0.05"));
        QVERIFY(Test::sendKey(field.box, Qt::Key_Escape));
        QTest::mouseRelease(field.line(), Qt::MiddleButton, {}, QPoint(44, 10));
        QCOMPARE(field.box.value(), 0.0);
        QVERIFY(field.log.text.endsWith(QStringLiteral("SEER")));
    }

    void screenEdges() {
        const QRect screen(0, 0, 800, 600);
        QVERIFY(!PointerTravel::beyond({400, 0}, screen, Qt::Horizontal));
        QCOMPARE(PointerTravel::beyond({799, 5}, screen, Qt::Horizontal), QPoint(4, 5));
        QCOMPARE(PointerTravel::beyond({5, 1}, screen, Qt::Vertical), QPoint(5, 595));
        static bool jumps = true;
        static int tries = 0;
        const auto real = std::exchange(UI::warpPointer, [](const QPoint&) {
            ++tries;
            return jumps;
        });
        for (const bool lets : {true, false}) {
            Field field;
            jumps = lets;
            tries = 0;
            const int edge = field.window.screen()->geometry().right();
            const int x = field.box.mapFromGlobal(QPoint(edge, 0)).x();
            QTest::mousePress(&field.box, Qt::LeftButton, {}, Middle);
            for (const int place : {x - 8, x - 4, x})
                Test::moveMouse(field.box, QPoint(place, 12));
            if (!lets)
                Test::moveMouse(field.box, QPoint(x, 12));
            QVERIFY(tries > 0);
            const double there = field.box.value();
            if (lets)
                Test::moveMouse(field.box, field.box.mapFromGlobal(QPoint(12, 0)) + QPoint(0, 12));
            else
                QTRY_VERIFY(field.box.value() > there); // goes on by itself
            QVERIFY(field.box.value() > there);
            QVERIFY(lets || tries == 1);
        }
        UI::warpPointer = real;
    }

    void hostsThatDoAsTheyLike() {
        // Clamps: what it sets is what the next movement counts from.
        Field field;
        connect(&field.box, &DoubleSpinBox::valueEdited, &field.box, [&](double value) {
            if (value > 10.02)
                field.box.setValue(10.02);
        });
        field.scrub(400, {}, false);
        QCOMPARE(field.box.value(), 10.02);
        Test::moveMouse(field.box, Middle + QPoint(400, 0));
        QCOMPARE(field.box.value(), 10.01);
        QTest::mouseRelease(&field.box, Qt::LeftButton, {}, Middle);
        // Refuses.
        Field refused;
        connect(&refused.box, &DoubleSpinBox::valueEdited, &refused.box,
                [&] { refused.box.setValue(10.0); });
        refused.type(QStringLiteral("12"));
        refused.scrub(40);
        QCOMPARE(refused.box.value(), 10.0);
        QVERIFY(!refused.box.isEditing());
        // Sets while somebody types: the text stays, and is what is taken.
        Field typed;
        typed.type(QStringLiteral("5"), false);
        typed.box.setValue(77.0);
        QCOMPARE(typed.box.text(), QStringLiteral("5"));
        QCOMPARE(typed.box.value(), 77.0);
        QTest::keyClick(&typed.box, Qt::Key_Return);
        QCOMPARE(typed.box.value(), 5.0);
        for (const double none :
             {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
            typed.box.setValue(none);
            typed.box.setSingleStep(none);
            typed.box.setDefaultValue(none);
            typed.box.setMinimum(std::numeric_limits<double>::quiet_NaN());
            typed.box.setRange(none, std::numeric_limits<double>::quiet_NaN());
        }
        QCOMPARE(typed.box.value(), 5.0);
        typed.box.setRange(8.0, 6.0);
        QCOMPARE(typed.box.value(), 6.0);
        typed.box.setMinimum(9.0);
        QCOMPARE(typed.box.maximum(), 9.0);
    }

    void deletedInAnySignal() {
        for (const std::string act : {"typed", "refused", "digit", "wheel", "arrow", "mixed"}) {
            for (int nth = 1; nth <= 6; ++nth)
                deleteInSignal(act, nth);
        }
    }

    void wheelScrollsWhatIsAround() {
        QScrollArea area;
        auto* content = new QWidget;
        auto* box = new DoubleSpinBox(content);
        content->resize(100, 2000);
        area.setWidget(content);
        area.resize(150, 150);
        area.show();
        QVERIFY(!Test::turnWheel(*box, -120));
        QCOMPARE(box->value(), 0.0);
        box->setWheelPolicy(UI::WheelPolicy::WheelAlways);
        QVERIFY(Test::turnWheel(*box, 60) && Test::turnWheel(*box, 60));
        QCOMPARE(box->value(), 0.01);
        box->setReadOnly(true);
        QVERIFY(!Test::turnWheel(*box, 120));
    }

    void severalValues() {
        Field field;
        QSignalSpy relative(&field.box, &DoubleSpinBox::relativeEdited);
        field.box.setMixed(true);
        QCOMPARE(field.box.text(), QString(QChar(0x2014)));
        field.type(QStringLiteral("+=10%"));
        QCOMPARE(relative.count(), 1);
        QCOMPARE(relative.last().at(0).toChar(), QChar(u'*'));
        QCOMPARE(relative.last().at(1).toDouble(), 1.1);
        QVERIFY(field.box.isMixed());
        QCOMPARE(field.box.value(), 10.0);
        field.type(QStringLiteral("10"));
        QCOMPARE(relative.last().at(0).toChar(), QChar(u'='));
        QVERIFY(!field.box.isMixed());
        QCOMPARE(field.log.text, QStringLiteral("SFSF"));
        field.box.setMixed(true);
        field.scrub(8);
        QVERIFY(!field.box.isMixed());
        QCOMPARE(field.box.value(), 10.02);
    }

    void display() {
        Field field;
        DoubleSpinBox& box = field.box;
        box.setUnits(ValueUnits::length(254.0));
        box.setPrefix(QStringLiteral("W "));
        QCOMPARE(box.text(), QStringLiteral("W 10\u00a0px"));
        box.setUnit(QStringLiteral("mm"));
        QCOMPARE(box.text(), QStringLiteral("W 1\u00a0mm"));
        field.scrub(40); // ten hundredths of a millimetre
        QCOMPARE(box.value(), 11.0);
        field.type(QStringLiteral("1 cm + 1"));
        QCOMPARE(box.value(), 110.0);
        box.setLocale(QLocale(QStringLiteral("de_DE")));
        box.setValue(15.0);
        QCOMPARE(box.text(), QStringLiteral("W 1,5\u00a0mm"));
        field.type(QStringLiteral("2,5"));
        QCOMPARE(box.value(), 25.0);
        QCOMPARE(box.exactText(), QStringLiteral("2.5"));
        box.setUnits(ValueUnits::stops());
        box.setUnit(QStringLiteral("ev"));
        box.setValue(-1.0); // which no stops make
        QCOMPARE(box.text(), QStringLiteral("W -1\u00a0x"));
        box.setPrefix(QString());
        box.setSuffix(QStringLiteral(" fps"));
        box.setRange(0.0, 60.0);
        box.setSpecialValueText(QStringLiteral("free"));
        QCOMPARE(box.text(), QStringLiteral("free"));
        field.type(QStringLiteral("24fps"));
        QCOMPARE(box.text(), QStringLiteral("24\u00a0fps"));
        box.setDecimals(2);
        box.setFewestDecimals(2);
        QCOMPARE(box.cleanText(), QStringLiteral("24,00"));
        QVERIFY(box.sizeHint().width() >= box.minimumSizeHint().width());
    }

    void stepModes() {
        Field field;
        field.box.setStepMode(DoubleSpinBox::AdaptiveSteps);
        field.box.stepBy(1);
        QCOMPARE(field.box.value(), 11.0);
        field.box.setRange(0.0, 20.0);
        field.box.setWrapping(true);
        field.box.stepBy(10);
        QCOMPARE(field.box.value(), 0.0);
        field.box.setStepMode(DoubleSpinBox::DigitSteps);
        field.box.setRange(-1e6, 1e6);
        field.box.setValue(12345.25);
        QVERIFY(Test::turnWheel(field.box, 120, QPoint(6, 12)));
        QCOMPARE(field.box.value(), 22345.25);
        QCOMPARE(field.log.text.left(6), QStringLiteral("SEFSEF"));
    }

    void assistiveTechnology() {
        Field field;
        QLabel label(QStringLiteral("&Gain"));
        field.box.setLabel(&label);
        field.box.setUnits(ValueUnits::percent());
        field.box.setValue(0.5);
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&field.box);
        QVERIFY(seen && seen->valueInterface());
        QCOMPARE(seen->role(), QAccessible::SpinBox);
        QCOMPARE(seen->text(QAccessible::Name), QStringLiteral("Gain"));
        QCOMPARE(seen->text(QAccessible::Value), QStringLiteral("50%"));
        QCOMPARE(seen->valueInterface()->currentValue().toDouble(), 0.5);
        QCOMPARE(seen->valueInterface()->minimumStepSize().toDouble(), 0.0001);
        seen->valueInterface()->setCurrentValue(std::numeric_limits<double>::quiet_NaN());
        seen->valueInterface()->setCurrentValue(0.25);
        QCOMPARE(field.box.value(), 0.25);
        QCOMPARE(field.log.text, QStringLiteral("SEF"));
        QVERIFY(!seen->textInterface());
        field.type(QStringLiteral("3+"));
        QVERIFY(seen->textInterface());
        QVERIFY(seen->state().invalid);
    }

    void menuOfTheField() {
        Field field;
        field.box.setUnits(ValueUnits::angle());
        QContextMenuEvent event(QContextMenuEvent::Keyboard, Middle);
        QCoreApplication::sendEvent(&field.box, &event);
        const QPointer<QMenu> menu = field.box.findChild<QMenu*>();
        QVERIFY(menu);
        QStringList texts;
        const auto actions = menu->actions();
        for (QAction* action : actions) {
            texts += action->text();
            if (action->text() == QLatin1String("Negate"))
                action->trigger();
        }
        QCOMPARE(field.box.value(), -10.0);
        QVERIFY(texts.contains(QLatin1String("Show in")));
        menu->close();
        QTest::keyClick(&field.box, Qt::Key_F2);
        QCoreApplication::sendEvent(&field.box, &event);
        const auto menus = field.box.findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
        QVERIFY(menus.last()->actions().size() > texts.size());
        QVERIFY(!field.line()->isHidden());
    }
};

KXUI_TEST(DoubleSpinBoxTest);
#include "DoubleSpinBoxTest.moc"
