#include <KxUI/progress/ProgressDialog.h>
#include <KxUI/progress/ProgressListModel.h>
#include <KxUI/progress/ProgressManager.h>
#include <KxUI/progress/ProgressManager_p.h>
#include <KxUI/progress/ProgressNews_p.h>
#include <KxUI/progress/ProgressStrip.h>
#include <KxUI/progress/ProgressText.h>

#include <support/TestRegistry.h>

#include <QAbstractItemModelTester>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <thread>

using namespace Kestrel::UI;
using std::chrono::seconds;
using State = ProgressTask::State;

namespace {

QPushButton* button(QWidget& widget, const QString& text) {
    for (QPushButton* each : widget.findChildren<QPushButton*>()) {
        if (each->text().remove('&') == text && !each->isHidden())
            return each;
    }
    return nullptr;
}

} // namespace

class ProgressManagerTest : public QObject {
    Q_OBJECT

    std::unique_ptr<ProgressManager> m_manager;
    double m_now = 0;

    // A second of work after the other.
    void work(ProgressTask& task, int count) {
        for (int i = 0; i < count; ++i) {
            task.advance();
            m_now += 1;
            m_manager->look();
        }
    }

private slots:
    void init() {
        m_now = 100;
        m_manager = std::make_unique<ProgressManager>();
        ProgressManagerClock::of(*m_manager) = [this] { return m_now; };
    }

    void tellsTheTime() {
        const auto task = m_manager->start("Render", ProgressTask::Pausable);
        QCOMPARE(m_manager->statusText(0), QString("Waiting to start"));
        // What waited does not stand still.
        m_now += 50;
        m_manager->look();
        task->setTotal(100);
        task->start();
        m_manager->look();
        QCOMPARE(m_manager->statusText(0), QString());
        work(*task, 40);
        QVERIFY(std::abs(m_manager->timeToGo(0)->count() - 60) <= 2);
        QCOMPARE(m_manager->statusText(0), QString("1 minute left"));
        task->pause();
        m_manager->look();
        m_now += 1000;
        m_manager->look();
        QCOMPARE(m_manager->statusText(0), QString("Paused"));
        task->resume();
        work(*task, 5);
        QVERIFY(std::abs(m_manager->timeToGo(0)->count() - 55) <= 3);
        m_now += 100;
        m_manager->look();
        QVERIFY(!m_manager->timeToGo(0));
        QVERIFY2(m_manager->statusText(0).startsWith("No progress for 1 min"),
                 qPrintable(m_manager->statusText(0)));
        task->finish();
    }

    // A bar does not go back for little, nor for a moment.
    void barsAreCalm() {
        const auto task = m_manager->start("Copy");
        task->setTotal(1000);
        const auto shown = [&](int done, double after) {
            task->setDone(done);
            m_now += after;
            m_manager->look();
            return m_manager->shownFraction(0);
        };
        QCOMPARE(shown(500, 0.1), 0.5);
        QCOMPARE(shown(495, 2), 0.5);
        QCOMPARE(shown(495, 2), 0.5);
        QCOMPARE(shown(300, 0.5), 0.3); // that low for long enough with what was before
        QCOMPARE(shown(600, 0.1), 0.6);
        QCOMPARE(shown(100, 0.5), 0.6);
        QCOMPARE(shown(610, 0.1), 0.61);
        QCOMPARE(m_manager->fraction(), 0.61);
        task->setTotal(0);
        m_manager->look();
        QCOMPARE(m_manager->shownFraction(0), -1.0);
        task->finish();
    }

    void listsFromThreads() {
        ProgressListModel model;
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        model.setManager(m_manager.get());
        m_manager->setKeptFor(std::chrono::milliseconds(0));
        QSignalSpy idle(m_manager.get(), &ProgressManager::idleChanged);
        QSignalSpy failed(m_manager.get(), &ProgressManager::taskFailed);
        std::vector<std::thread> threads;
        for (int i = 0; i < 8; ++i)
            threads.emplace_back([manager = m_manager.get(), i] {
                for (int k = 0; k < 50; ++k) {
                    const auto task = ProgressTask::create(QString::number(i));
                    manager->add(task);
                    task->setTotal(2);
                    task->advance(2);
                    if (k == 7)
                        continue; // gone without a word
                    task->finish();
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        QTRY_COMPARE(failed.count(), 8);
        QTRY_COMPARE(m_manager->count(), 8);
        QVERIFY(m_manager->isIdle());
        QCOMPARE(model.rowCount(), 8);
        QCOMPARE(model.index(0, ProgressListModel::State).data().toString(), QString("Failed"));
        QCOMPARE(failed[0][1].toString(), QString("The work ended without a result."));
        while (m_manager->count() > 0)
            m_manager->acknowledge(m_manager->task(0).get());
        QCOMPARE(model.rowCount(), 0);
        model.setManager(nullptr);
    }

    void lastsNoLongerThanItsTasks() {
        auto task = m_manager->start("Long");
        auto queued = ProgressTask::create("Queued");
        m_manager->add(queued);
        m_manager.reset();
        QVERIFY(task->isCancelled() && queued->isCancelled());
        task->finishCancelled();
    }

    void dialogOpensForWhatIsLong() {
        ProgressDialog dialog;
        dialog.setManager(m_manager.get());
        dialog.setShowAfter(std::chrono::milliseconds(100));
        {
            const auto quick = m_manager->start("Quick");
            quick->setTotal(10);
            quick->setDone(9);
            QTest::qWait(350);
            QVERIFY(!dialog.isVisible());
            quick->finish();
        }
        const auto task = m_manager->start("Long");
        task->setTotal(1000);
        task->setDone(1);
        QTRY_VERIFY(dialog.isVisible());
        QVERIFY(dialog.testAttribute(Qt::WA_ShowWithoutActivating));
        // Hidden it stays hidden for this one; the work goes on.
        QSignalSpy hidden(&dialog, &ProgressDialog::hiddenByUser);
        QTest::keyClick(&dialog, Qt::Key_Escape);
        QVERIFY(!dialog.isVisible() && hidden.count() == 1 && !task->isCancelled());
        dialog.show();
        QVERIFY(dialog.close() && hidden.count() == 2 && !task->isCancelled());
        QTest::qWait(250);
        QVERIFY(!dialog.isVisible());
        task->finish();
        QTRY_VERIFY(m_manager->isIdle());
    }

    void cancelAnswersAtOnce() {
        ProgressDialog dialog;
        dialog.setManager(m_manager.get());
        const auto task = m_manager->start("Long");
        const auto fixed = m_manager->start("Fixed", ProgressTask::NoAbility);
        task->start();
        fixed->start();
        m_manager->look();
        dialog.show();
        QTest::keyClick(&dialog, Qt::Key_Return);
        QTest::keyClick(&dialog, Qt::Key_Enter);
        QVERIFY(!task->isCancelled() && dialog.isVisible());
        for (QPushButton* each : dialog.findChildren<QPushButton*>())
            QVERIFY(!each->isDefault() && !each->autoDefault());
        QPushButton* const cancel = button(dialog, "Cancel");
        QVERIFY(cancel);
        QTest::keyClick(cancel, Qt::Key_Space);
        QVERIFY(task->isCancelled() && !cancel->isEnabled());
        QCOMPARE(cancel->text(), QString("Cancelling\u2026"));
        QVERIFY(!button(dialog, "Cancel")); // none that does nothing
        task->finishCancelled();
        fixed->fail("The disk is full.");
        m_manager->look();
        m_now += 20;
        m_manager->look();
        // What went wrong stays, and can be read.
        QCOMPARE(m_manager->count(), 1);
        QCOMPARE(m_manager->statusText(0), QString("The disk is full."));
        QTest::qWait(150);
        QVERIFY(dialog.isVisible());
        QVERIFY(button(dialog, "Close"));
        button(dialog, "Close")->click();
        QCOMPARE(m_manager->count(), 0);
        QTRY_VERIFY(!dialog.isVisible());
    }

    // What does not stop after half a minute can be put out of sight; the other tasks stay.
    void whatDoesNotStopCanBeHidden() {
        ProgressDialog dialog;
        dialog.setManager(m_manager.get());
        const auto stuck = m_manager->start("Stuck");
        const auto other = m_manager->start("Other");
        stuck->start();
        other->start();
        dialog.show();
        stuck->cancel();
        m_manager->look();
        for (const auto& [after, text] : QList<QPair<double, QString>>{
                 {0, "Cancelling\u2026"}, {29, "Cancelling\u2026"}, {2, "Hide"}}) {
            m_now += after;
            other->advance();
            stuck->setDetail(QString::number(m_now)); // something to look at
            m_manager->look();
            QVERIFY2(button(dialog, text), qPrintable(text));
        }
        QPushButton* hide = nullptr;
        for (QPushButton* each : dialog.findChildren<QPushButton*>()) {
            if (each->text() == "Hide" && each->parentWidget() != &dialog)
                hide = each;
        }
        QVERIFY(hide && hide->isEnabled());
        QWidget* const row = hide->parentWidget();
        hide->click();
        QVERIFY(row->isHidden() && dialog.isVisible());
        other->finish();
        dialog.hide();
        dialog.show();
        QVERIFY(row->isVisible());
        stuck->finishCancelled();
    }

    void remembersItsPlace() {
        const QRect place(120, 90, 500, 240);
        for (const bool isFirst : {true, false}) {
            ProgressDialog dialog;
            dialog.setObjectName("RemembersItsPlace");
            dialog.setRemembersPlace(true);
            dialog.show();
            if (isFirst)
                dialog.setGeometry(place);
            QCOMPARE(dialog.geometry(), place);
            dialog.hide();
        }
    }

    // To who cannot see: each tenth, but not more often than each half minute, and the end.
    void newsAreRare() {
        ProgressNews news;
        QVERIFY(!news.isDue(0, 0, State::Running));
        QVERIFY(!news.isDue(20, 0.5, State::Running));
        QVERIFY(news.isDue(30, 0.5, State::Running));
        QVERIFY(!news.isDue(100, 0.59, State::Running));
        QVERIFY(news.isDue(101, 0.6, State::Running));
        QVERIFY(!news.isDue(1000, -1, State::Running));
        QVERIFY(news.isDue(1001, 1, State::Failed));
        QVERIFY(!news.isDue(2000, 1, State::Failed));
        ProgressNews late;
        QVERIFY(!late.isDue(0, 1, State::Finished)); // it was over before anybody looked
    }

    void followsOne() {
        QWidget window;
        window.show();
        auto task = ProgressTask::create("Export");
        const QPointer<ProgressDialog> dialog = ProgressDialog::follow(task, &window, true);
        dialog->show();
        QVERIFY(dialog->isModal());
        QTest::keyClick(dialog.data(), Qt::Key_Escape);
        QVERIFY(task->isCancelled() && dialog->isVisible());
        task->finishCancelled();
        QTRY_VERIFY(dialog.isNull());
        // One that is over before it opened leaves nothing.
        const QPointer<ProgressDialog> early = ProgressDialog::follow(task, &window);
        QTRY_VERIFY(early.isNull());
    }

    // A handler may throw everything away.
    void survivesItsHandlers() {
        QPointer<ProgressDialog> dialog = new ProgressDialog;
        dialog->setManager(m_manager.get());
        const auto task = m_manager->start("Long");
        task->start();
        m_manager->look();
        dialog->show();
        task->setCancelHandler([&] { delete dialog.data(); });
        QTest::mouseClick(button(*dialog, "Cancel"), Qt::LeftButton);
        QVERIFY(dialog.isNull());
        task->finishCancelled();
    }

    void stripShowsTheFirst() {
        ProgressStrip strip;
        strip.setManager(m_manager.get());
        strip.resize(400, 24);
        strip.show();
        const QSize size = strip.sizeHint();
        const auto task = m_manager->start("Render");
        const auto other = m_manager->start("Copy");
        task->setTotal(4);
        task->setDone(1);
        m_now += 1;
        m_manager->look();
        QCOMPARE(strip.accessibleName(), QString("Render"));
        QCOMPARE(strip.findChild<QProgressBar*>()->value(), 250);
        QSignalSpy clicked(&strip, &ProgressStrip::clicked);
        QTest::mouseClick(&strip, Qt::LeftButton);
        QTest::keyClick(&strip, Qt::Key_Space);
        QCOMPARE(clicked.count(), 2);
        task->finish();
        m_manager->look();
        QCOMPARE(strip.accessibleName(), QString("Copy"));
        other->finish();
        m_manager->look();
        QCOMPARE(strip.sizeHint(), size);
        QTest::mouseClick(&strip, Qt::LeftButton);
        QCOMPARE(clicked.count(), 2);
    }

    void texts() {
        const QList<QPair<double, QString>> rows{{-1, ""},
                                                 {0, "A few seconds left"},
                                                 {12, "10 seconds left"},
                                                 {56, "55 seconds left"},
                                                 {59, "1 minute left"},
                                                 {76, "1 minute 15 seconds left"},
                                                 {113, "About 2 minutes left"},
                                                 {500, "About 8 minutes left"},
                                                 {620, "About 10 minutes left"},
                                                 {3550, "About 1 hour left"},
                                                 {5700, "About 1 hour 35 minutes left"},
                                                 {7300, "About 2 hours left"},
                                                 {13000, "About 3 hours 40 minutes left"},
                                                 {90000, "More than a day left"},
                                                 {1e300, "More than a day left"}};
        for (const auto& [time, text] : rows)
            QCOMPARE(ProgressText::timeToGo(time), text);
        QCOMPARE(ProgressText::duration(3725), QString("1 h 2 min"));
        QCOMPARE(ProgressText::duration(-5), QString("0 s"));
        QCOMPARE(ProgressText::stillRunning(1), QString("1 task is still running."));
    }
};

KXUI_TEST(ProgressManagerTest);
#include "ProgressManagerTest.moc"
