#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/kit/EditModifiers.h>
#include <KxUI/kit/OwnKeys_p.h>
#include <KxUI/kit/WheelPolicy.h>

#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QLineEdit>
#include <QScrollArea>
#include <QScrollBar>

#include <algorithm>

using Kestrel::Test::focus;
using Kestrel::Test::moveMouse;
using Kestrel::Test::sendKey;
using Kestrel::Test::turnWheel;
using Kestrel::UI::EditBracket;
using Kestrel::UI::EditGestures;
using Kestrel::UI::EditModifiers;
using Kestrel::UI::WheelPolicy;

namespace {

// A number that counts the pixels of a drag, in the fewest lines.
class Number : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged USER true)

public:
    Number()
        : m_bracket(
              this, [this] { return m_value; }, [this](int value) { store(value); }) {
        setFocusPolicy(Qt::StrongFocus);
        setMouseTracking(true);
    }

    int value() const { return m_value; }
    void setValue(int value) {
        m_bracket.hostSet(value);
        store(value);
    }
    bool isEditing() const { return m_bracket.isEditing(); }
    void cancelEdit() { m_bracket.cancel(); }
    void reset() { m_bracket.editOnce(0); }

signals:
    void valueChanged(int value);
    void editStarted();
    void valueEdited(int value);
    void editFinished(bool accepted);

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::ShortcutOverride &&
            Kestrel::UI::isSliderKey(*static_cast<QKeyEvent*>(event))) {
            event->accept();
            return true;
        }
        return m_bracket.takes(event) || QWidget::event(event);
    }
    void mousePressEvent(QMouseEvent* event) override {
        m_x = event->x();
        m_bracket.beginDrag(event->button());
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (m_bracket.gesture() != EditGestures::Drag)
            return;
        const int from = m_bracket.takeRebase().value_or(m_value);
        const int moved = event->x() - std::exchange(m_x, event->x());
        m_bracket.change(from + moved);
    }
    void mouseReleaseEvent(QMouseEvent*) override { m_bracket.finish(); }
    void wheelEvent(QWheelEvent* event) override {
        if (!WheelPolicy::takes(WheelPolicy::WheelWhenFocused, this)) {
            event->ignore();
            return;
        }
        event->accept();
        if (const int notches = m_bracket.turnWheel(*event))
            m_bracket.change(m_value + notches);
    }
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() != Qt::Key_Up) {
            QWidget::keyPressEvent(event);
            return;
        }
        if (m_bracket.beginKey(*event) && m_bracket.gesture() == EditGestures::Keys)
            m_bracket.change(m_value + 1);
    }

private:
    void store(int value) {
        if (std::exchange(m_value, value) != value)
            Q_EMIT valueChanged(value);
    }

    EditBracket<Number, int> m_bracket;
    int m_value = 10;
    int m_x = 0;
};

using NumberLog = Kestrel::Test::EditLog<Number>;

QVariant valueOf(const Number& number) {
    return number.value();
}

} // namespace

class EditBracketTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Kestrel::UI::EditRest::stopTheClock(); }

    void ofAWidget() {
        Kestrel::Test::EditedWidget<Number> number;
        number.make = [] {
            auto made = std::make_unique<Number>();
            made->resize(200, 20);
            return made;
        };
        number.another = 77;
        number.press = [](Number& n) { QTest::mousePress(&n, Qt::LeftButton, {}, {50, 5}); };
        number.move = [](Number& n, int nth) { moveMouse(n, {50 + 3 * nth, 5}); };
        number.release = [](Number& n) { QTest::mouseRelease(&n, Qt::LeftButton, {}, {50, 5}); };
        number.key = Qt::Key_Up;
        number.notch = [](Number& n) { return turnWheel(n, 120); };
        number.once = [](Number& n) { n.reset(); };
        number.assisted = false;
        Kestrel::Test::checkEditBracket(number);
    }

    // What another input does to an edit that goes on.
    void anotherInput() {
        const auto up = [](Number& n) { sendKey(n, Qt::Key_Up); };
        const auto notch = [](Number& n) { turnWheel(n, 120); };
        const auto escape = [](Number& n) { sendKey(n, Qt::Key_Escape); };
        const auto press = [](Number& n) { QTest::mousePress(&n, Qt::LeftButton, {}, {5, 5}); };
        const auto other = [](Number& n) { QTest::mouseClick(&n, Qt::MiddleButton, {}, {9, 5}); };
        const auto move = [](Number& n) { moveMouse(n, {9, 5}); };
        const auto hover = [](Number& n) { moveMouse(n, {20, 5}, Qt::NoButton); };
        const auto shift = [](Number& n) { sendKey(n, Qt::Key_Shift); };
        using Act = std::function<void(Number&)>;
        const struct {
            std::vector<Act> acts;
            const char* told;
            int value;
        } rows[] = {
            {{notch, up}, "SEFSE", 12},
            {{up, notch}, "SEFSE", 12},
            {{up, shift, up}, "SEE", 12},
            {{up, escape}, "SEER", 10},
            {{notch, escape}, "SEF", 11}, // it depends on no clock who gets the key
            {{notch, press}, "SEF", 11},
            {{press, move, notch, other, up}, "SE", 14},
            {{press, move, hover}, "SEF", 14}, // the release went to somebody else
            {{press, move, press, move}, "SEFSE", 18},
        };
        for (const auto& row : rows) {
            Number number;
            number.resize(100, 20);
            number.show();
            QVERIFY(focus(number));
            NumberLog log(number, valueOf);
            for (const Act& act : row.acts)
                act(number);
            QCOMPARE(log.text, QString::fromLatin1(row.told));
            QCOMPARE(number.value(), row.value);
        }
    }

    // A host that keeps values even is followed without jitter, one that answers late is, too.
    void hostsThatAnswer() {
        Number number;
        number.resize(100, 20);
        NumberLog log(number, valueOf);
        log.answer = [&] { number.setValue(number.value() / 2 * 2); };
        QTest::mousePress(&number, Qt::LeftButton, {}, {5, 5});
        moveMouse(number, {8, 5});
        QCOMPARE(number.value(), 12);
        moveMouse(number, {9, 5});
        QCOMPARE(number.value(), 12);
        moveMouse(number, {12, 5});
        QCOMPARE(number.value(), 14);
        number.setValue(50); // somebody else, meanwhile
        moveMouse(number, {13, 5});
        QCOMPARE(number.value(), 50);
        QVERIFY(sendKey(number, Qt::Key_Escape));
        QCOMPARE(number.value(), 10);
    }

    // Who is told may end the edit, take it back or begin it again.
    void endedByWhoIsTold() {
        for (const bool atStart : {true, false}) {
            for (const bool accepted : {true, false}) {
                Number number;
                number.resize(100, 20);
                number.show();
                NumberLog log(number, valueOf);
                const auto end = [&] {
                    if (accepted)
                        number.hide();
                    else
                        number.cancelEdit();
                };
                if (atStart)
                    connect(&number, &Number::editStarted, &number, end);
                else
                    connect(&number, &Number::valueChanged, &number, end);
                QTest::mousePress(&number, Qt::LeftButton, {}, {5, 5});
                moveMouse(number, {9, 5});
                moveMouse(number, {13, 5});
                const int shown = atStart || !accepted ? 10 : 14;
                QCOMPARE(number.value(), shown);
                QVERIFY(!number.isEditing());
                QCOMPARE(log.text, accepted ? QStringLiteral("SF") : QStringLiteral("SER"));
            }
        }
    }

    void escapeWithoutTheFocus() {
        QWidget window;
        QLineEdit elsewhere(&window);
        Number number;
        number.setParent(&window);
        number.resize(100, 20);
        window.show();
        QVERIFY(focus(elsewhere));
        QTest::mousePress(&number, Qt::LeftButton, {}, {5, 5});
        QVERIFY(!sendKey(window, Qt::Key_Escape));
        moveMouse(number, {9, 5});
        QVERIFY(sendKey(elsewhere, Qt::Key_Escape));
        QCOMPARE(number.value(), 10);
        QVERIFY(!sendKey(window, Qt::Key_Escape));
    }

    void wheelScrollsPast() {
        QScrollArea area;
        auto* number = new Number;
        number->resize(100, 2000);
        area.setWidget(number);
        area.resize(200, 100);
        area.show();
        number->clearFocus();
        QVERIFY(turnWheel(*area.viewport(), -120));
        const int scrolled = area.verticalScrollBar()->value();
        QVERIFY(scrolled > 0);
        QVERIFY(!turnWheel(*number, 120));
        QCOMPARE(number->value(), 10);
        QVERIFY(focus(*number));
        for (int part = 0; part < 3; ++part)
            QVERIFY(turnWheel(*number, 60));
        QCOMPARE(number->value(), 11);
        Kestrel::UI::EditRest::pass(); // and the half notch is forgotten
        turnWheel(*number, 60);
        QCOMPARE(number->value(), 11);
    }

    void factors() {
        const Qt::KeyboardModifiers both = Qt::ShiftModifier | Qt::ControlModifier;
        QCOMPARE(EditModifiers::factor(Qt::AltModifier), 1.0);
        QCOMPARE(EditModifiers::factor(Qt::ShiftModifier), 10.0);
        QCOMPARE(EditModifiers::factor(Qt::ControlModifier), 0.1);
        QCOMPARE(EditModifiers::factor(both), 0.01);
        EditModifiers::set(4.0, 0.25);
        EditModifiers::set(0.0, qQNaN());
        QCOMPARE(EditModifiers::factor(Qt::ShiftModifier), 4.0);
        QCOMPARE(EditModifiers::factor(both), 0.0625);
        EditModifiers::set(10.0, 0.1);
    }
};

KXUI_TEST(EditBracketTest);
#include "EditBracketTest.moc"
