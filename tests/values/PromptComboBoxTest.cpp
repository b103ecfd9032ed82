#include <KxUI/values/PromptComboBox.h>
#include <KxUI/values/PromptPopup_p.h>
#include <KxUI/values/SearchField.h>

#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QAbstractItemView>
#include <QListView>
#include <QStandardItemModel>

using namespace Kestrel::UI;
using Kestrel::Test::sendKey;

namespace {

QStringList cameras(int count) {
    QStringList names;
    for (int i = 0; i < count; ++i)
        names += QStringLiteral("camera %1").arg(i);
    return names;
}

std::unique_ptr<PromptComboBox> makeBox(int count, int index = -1) {
    auto box = std::make_unique<PromptComboBox>();
    box->setPrompt(QStringLiteral("Choose a camera with a long name"));
    box->addItems(cameras(count));
    box->setCurrentIndex(index);
    return box;
}

} // namespace

class PromptComboBoxTest : public QObject {
    Q_OBJECT

private slots:
    void nothingIsChosenByItself() {
        PromptComboBox box;
        QSignalSpy changed(&box, &PromptComboBox::valueChanged);
        QSignalSpy chosen(&box, &PromptComboBox::chosen);
        box.addItem(QStringLiteral("a"));
        box.addItems(cameras(3));
        QVERIFY(!box.hasChoice());
        QStandardItemModel items(3, 1);
        box.setModel(&items);
        QVERIFY(!box.hasChoice());
        items.clear();
        items.appendRow(new QStandardItem(QStringLiteral("b")));
        QVERIFY(!box.hasChoice());
        QStringListModel names;
        box.setModel(&names);
        names.setStringList(cameras(5)); // a reset
        QVERIFY(!box.hasChoice());
        box.setPrompt(QString());
        box.clear();
        box.addItems(cameras(2));
        QVERIFY(!box.hasChoice());
        box.setCurrentIndex(1);
        QVERIFY(box.hasChoice());
        box.clearChoice();
        QVERIFY(!box.hasChoice());
        QCOMPARE(chosen.count(), 0);
        QVERIFY(changed.count() >= 2);
    }

    void promptIsShownAndNamed() {
        auto box = makeBox(3);
        QVERIFY(box->sizeHint().width() > box->fontMetrics().horizontalAdvance(box->prompt()));
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(box.get());
        QCOMPARE(seen->text(QAccessible::Name), box->prompt());
        const QImage prompting = box->grab().toImage();
        box->setPrompt(QStringLiteral("Camera"));
        QVERIFY(box->grab().toImage() != prompting);
        box->setCurrentIndex(1);
        QCOMPARE(seen->text(QAccessible::Value), QStringLiteral("camera 1"));
        box->clearChoice();
        QCOMPARE(seen->text(QAccessible::Name), QStringLiteral("Camera"));
        box->setAccessibleName(QStringLiteral("View from"));
        box->setCurrentIndex(0);
        box->clearChoice();
        QCOMPARE(seen->text(QAccessible::Name), QStringLiteral("View from"));
        box->setEditable(true);
        QCoreApplication::processEvents();
        QCOMPARE(box->lineEdit()->placeholderText(), QStringLiteral("Camera"));
    }

    void keysAndWheelAreBrackets() {
        Kestrel::Test::EditedWidget<PromptComboBox> edited;
        edited.make = [] { return makeBox(12, 2); };
        edited.value = [](const PromptComboBox& box) { return box.currentIndex(); };
        edited.set = [](PromptComboBox& box, const QVariant& index) {
            box.setCurrentIndex(index.toInt());
        };
        edited.another = 9;
        edited.key = Qt::Key_Down;
        edited.keyIsOwn = false; // as for any combo box
        edited.notch = [](PromptComboBox& box) { return Kestrel::Test::turnWheel(box, -120); };
        edited.assisted = false;
        Kestrel::Test::checkEditBracket(edited);

        auto box = makeBox(5);
        QSignalSpy finished(box.get(), &PromptComboBox::editFinished);
        sendKey(*box, Qt::Key_Down);
        QCOMPARE(box->currentIndex(), 0);
        QVERIFY(box->isEditing());
        QVERIFY(sendKey(*box, Qt::Key_Escape));
        QVERIFY(!box->hasChoice());
        QCOMPARE(finished.takeFirst().at(0).toBool(), false);
    }

    void popupChoosesInOneEdit() {
        for (const int count : {5, 50}) {
            auto box = makeBox(count, 1);
            box->show();
            QSignalSpy chosen(box.get(), &PromptComboBox::chosen);
            QSignalSpy activated(box.get(), qOverload<int>(&QComboBox::activated));
            Kestrel::Test::EditLog<PromptComboBox> log(
                *box, [](const PromptComboBox& each) { return each.currentIndex(); });
            const auto choose = [&](const char* typed) {
                QTest::keyClicks(box.get(), QString::fromLatin1(typed));
                auto* popup = box->findChild<PromptPopup*>();
                QCOMPARE(popup != nullptr, count > 20);
                QWidget* const keys = popup ? static_cast<QWidget*>(popup->field()) : box->view();
                if (popup) {
                    popup->field()->selectAll();
                    QTest::keyClicks(keys, QStringLiteral("4 cam"));
                } else {
                    box->view()->setCurrentIndex(box->model()->index(4, 0));
                }
                QTest::keyClick(keys, Qt::Key_Return);
                QCoreApplication::processEvents();
            };
            choose("c");
            QCOMPARE(box->currentIndex(), 4);
            QCOMPARE(log.text, QStringLiteral("SEF"));
            QCOMPARE(chosen.count(), 1);
            QCOMPARE(activated.count(), 1);
        }
    }

    void actionsBringThePromptBack() {
        auto box = makeBox(5);
        box->setBehaviour(PromptComboBox::PromptAgain);
        box->show();
        QVERIFY(Kestrel::Test::focus(*box));
        QVERIFY(!Kestrel::Test::turnWheel(*box, -120));
        int during = -1;
        connect(box.get(), &PromptComboBox::chosen, this,
                [&](int index) { during = index == box->currentIndex() ? index : -2; });
        QSignalSpy edits(box.get(), &PromptComboBox::editStarted);
        sendKey(*box, Qt::Key_Down);
        QVERIFY(box->view()->isVisible()); // and nothing has been done yet
        QCOMPARE(during, -1);
        box->view()->setCurrentIndex(box->model()->index(2, 0));
        QTest::keyClick(box->view(), Qt::Key_Return);
        QCOMPARE(during, 2);
        QVERIFY(!box->hasChoice());
        QCOMPARE(edits.count(), 0);
    }

    void longListIsSearched() {
        auto box = makeBox(200, 150);
        qobject_cast<QStandardItemModel*>(box->model())->item(7)->setEnabled(false);
        box->show();
        box->showPopup();
        auto* popup = box->findChild<PromptPopup*>();
        QVERIFY(popup && popup->isVisible());
        QCOMPARE(popup->list()->currentIndex().row(), 150);
        QTest::keyClicks(popup->field(), QStringLiteral("CAM 7"));
        sendKey(*popup->field(), Qt::Key_Up); // told at once
        QCOMPARE(popup->list()->model()->rowCount(), 38);
        popup->field()->clear();
        QTest::keyClicks(popup->field(), QStringLiteral("nothing like it"));
        sendKey(*popup->field(), Qt::Key_Return); // nothing to choose
        QVERIFY(popup->isVisible());
        QTest::keyClick(popup->field(), Qt::Key_Escape);
        QVERIFY(popup->isVisible());
        QTest::keyClick(popup->field(), Qt::Key_Escape);
        QVERIFY(!popup->isVisible());
        QCOMPARE(box->currentIndex(), 150);
    }
};

KXUI_TEST(PromptComboBoxTest);
#include "PromptComboBoxTest.moc"
