#include <KxUI/kit/CollapsibleToolbar.h>

#include <support/TestRegistry.h>

#include <QMenu>
#include <QPushButton>
#include <QToolButton>

using Kestrel::UI::CollapsibleToolbar;

namespace {

QPushButton* button(int width) {
    auto* made = new QPushButton;
    made->setFixedSize(width, 20);
    return made;
}

} // namespace

class CollapsibleToolbarTest : public QObject {
    Q_OBJECT

private slots:
    void collapsesByPriorityAndComesBack() {
        CollapsibleToolbar toolbar;
        QPushButton* low = button(100);
        QPushButton* high = button(100);
        QPushButton* deleted = button(100);
        toolbar.addOverflowItem(low, QStringLiteral("low"), 1);
        toolbar.addItem(button(100));
        toolbar.addOverflowItem(high, QStringLiteral("high"), 2);
        toolbar.addOverflowItem(deleted, QStringLiteral("deleted"), 0);
        QCOMPARE(toolbar.sizeHint(), QSize(400, 20));
        delete deleted;
        toolbar.resize(toolbar.sizeHint());
        toolbar.show();

        QVERIFY(toolbar.overflowNames().isEmpty());
        toolbar.resize(290, 20);
        QCOMPARE(toolbar.overflowNames(), QStringList{QStringLiteral("low")});
        QVERIFY(low->isHidden() && !high->isHidden());
        QCOMPARE(toolbar.sizeHint().width(), 300); // as if nothing had collapsed
        toolbar.resize(toolbar.minimumSizeHint());
        QCOMPARE(toolbar.overflowNames(),
                 (QStringList{QStringLiteral("low"), QStringLiteral("high")}));
        toolbar.resize(300, 20);
        QVERIFY(toolbar.overflowNames().isEmpty());
        QVERIFY(low->isVisible() && high->isVisible());

        high->hide(); // the host's own choice is kept
        toolbar.resize(200, 20);
        QVERIFY(toolbar.overflowNames().isEmpty());
        QVERIFY(high->isHidden());
    }

    /** Also what has moved into the menu. */
    void itemsThatAreNotThere() {
        CollapsibleToolbar toolbar;
        QPushButton* first = button(100);
        toolbar.addOverflowItem(first, QStringLiteral("first"), 0);
        toolbar.addItem(button(100));
        toolbar.resize(150, 20);
        toolbar.show();
        QCOMPARE(toolbar.overflowNames(), QStringList{QStringLiteral("first")});
        toolbar.setItemVisible(first, false);
        QVERIFY(toolbar.overflowNames().isEmpty() && !toolbar.isItemVisible(first));
        QCOMPARE(toolbar.sizeHint().width(), 100);
        toolbar.resize(250, 20);
        QVERIFY(first->isHidden());
        toolbar.setItemVisible(first, true);
        QVERIFY(first->isVisible());
        toolbar.setItemVisible(nullptr, false);
    }

    void menuClicksTheButton() {
        CollapsibleToolbar toolbar;
        QPushButton* first = button(100);
        QPushButton* second = button(100);
        second->setEnabled(false);
        first->setCheckable(true);
        toolbar.addOverflowItem(first, QStringLiteral("First"), 0);
        toolbar.addOverflowItem(second, QStringLiteral("Second"), 0);
        toolbar.resize(10, 20);
        toolbar.show();
        QSignalSpy clicked(first, &QPushButton::clicked);

        auto* menu = toolbar.findChild<QMenu*>();
        QVERIFY(menu);
        emit menu->aboutToShow();
        QCOMPARE(menu->actions().size(), 2);
        QCOMPARE(menu->actions().at(0)->text(), QStringLiteral("First"));
        QVERIFY(!menu->actions().at(1)->isEnabled());
        QVERIFY(menu->actions().at(0)->isCheckable());
        menu->actions().at(0)->trigger();
        QCOMPARE(clicked.count(), 1);
        QVERIFY(first->isChecked());
    }
};

KXUI_TEST(CollapsibleToolbarTest);
#include "CollapsibleToolbarTest.moc"
