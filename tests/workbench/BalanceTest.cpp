#include "panels/BalancePanel.h"
#include "panels/GradePanel.h"
#include "play/Session.h"

#include <support/Input.h>
#include <support/TestRegistry.h>

#include <KxUI/picker/TrackBall.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

using namespace Kestrel::Workbench;
using Kestrel::Base::TimeBase;
namespace UI = Kestrel::UI;

/** The three track balls of the grading panel. */
class BalanceTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<Session> m_session;
    std::unique_ptr<GradePanel> m_panel;

    QList<UI::TrackBall*> balls() const { return m_panel->findChildren<UI::TrackBall*>(); }
    QList<UI::DoubleSpinBox*> numbers() const {
        return m_panel->findChild<BalancePanel*>()->findChildren<UI::DoubleSpinBox*>();
    }
    const Balance& balance() const { return m_session->grades()->grade().balance; }
    int steps() const { return int(m_session->grades()->group()->undoCommands().size()); }

private slots:
    void init() {
        m_session = std::make_unique<Session>(TimeBase(24, false), std::size_t(1) << 20);
        m_session->open(Sequence(QStringLiteral("a.#.png"), "/nowhere", {{1, "a.1.png"}}), 1);
        m_panel = std::make_unique<GradePanel>(m_session.get());
        m_panel->resize(340, 900);
        m_panel->show();
    }

    // A drag is one step, the ball, the numbers and the grade say the same, and Escape leaves
    // nothing.
    void dragsAreSteps() {
        QCOMPARE(balls().size(), 3);
        for (int part = 0; part < 3; ++part) {
            UI::TrackBall& ball = *balls()[part];
            const Grade before = m_session->grades()->grade();
            const QPoint from = ball.rect().center() + QPoint(0, 10);
            for (const bool escapes : {true, false}) {
                QTest::mousePress(&ball, Qt::LeftButton, {}, from);
                for (int i = 1; i <= 20; ++i)
                    Kestrel::Test::moveMouse(ball, from + QPoint(2 * i, 0), Qt::LeftButton,
                                             Qt::ControlModifier);
                QVERIFY(ball.balance().x() > 0.1 && std::abs(ball.balance().y()) < 1e-6);
                QCOMPARE(steps(), part);
                if (escapes)
                    QVERIFY(Kestrel::Test::sendKey(ball, Qt::Key_Escape));
                QTest::mouseRelease(&ball, Qt::LeftButton, {}, from);
                QCOMPARE(m_session->grades()->grade() == before, escapes);
            }
            QCOMPARE(steps(), part + 1);
            for (int channel = 0; channel < 3; ++channel)
                QVERIFY(std::abs(numbers()[3 * part + channel]->value() -
                                 double(ball.factors()[channel])) < 1e-6);
        }
        QVERIFY(balance().shadows[0] > 0.0F && balance().highlights[0] > 1.0F);
        QVERIFY(balance().midtones[0] < 1.0F); // lighter red is a smaller power
        const Balance done = balance();
        m_session->grades()->group()->makeIndex(0);
        QVERIFY(balance().isNeutral());
        for (UI::TrackBall* ball : balls())
            QCOMPARE(ball->balance(), QPointF());
        m_session->grades()->group()->makeIndex(3);
        QVERIFY(balance() == done);
    }

    void numbersAndResets() {
        UI::DoubleSpinBox* gamma = numbers()[3];
        gamma->setFocus();
        Kestrel::Test::focus(*gamma);
        QTest::keyClick(gamma, Qt::Key_Up);
        QVERIFY(std::abs(balance().midtones[0] - 1.0F / 1.005F) < 1e-6F);
        QCOMPARE(balance().midtones[1], 1.0F);
        // Beyond its limits the grade wins, and the ball shows so.
        UI::TrackBall& shadows = *balls()[0];
        QTest::mousePress(&shadows, Qt::RightButton, {}, shadows.rect().center());
        for (int i = 1; i <= 9; ++i)
            Kestrel::Test::moveMouse(shadows, shadows.rect().center() + QPoint(100 * i, 0),
                                     Qt::RightButton);
        QTest::mouseRelease(&shadows, Qt::RightButton, {}, shadows.rect().center());
        QCOMPARE(balance().shadows, (Factors{1.0F, 1.0F, 1.0F}));
        QCOMPARE(shadows.master(), 1.0);
        for (auto* button : m_panel->findChild<BalancePanel*>()->findChildren<QToolButton*>())
            button->click();
        QVERIFY(balance().isNeutral());
    }

    void fitsNarrowPanels() {
        for (const int width : {300, 700, 300}) {
            m_panel->resize(width, 900);
            QCoreApplication::processEvents();
            m_panel->grab();
            const QRect whole = m_panel->rect();
            for (const QWidget* each :
                 m_panel->findChild<BalancePanel*>()->findChildren<QWidget*>()) {
                const QRect place(each->mapTo(m_panel.get(), QPoint()), each->size());
                QVERIFY2(place.left() >= 0 && place.right() <= whole.right(),
                         each->metaObject()->className());
            }
            const UI::TrackBall& ball = *balls()[0];
            QVERIFY(ball.width() >= 70 && ball.height() <= ball.width() + 40);
        }
    }
};

KXUI_TEST(BalanceTest);

#include "BalanceTest.moc"
