#include <KxUI/kit/ChoiceBar.h>
#include <KxUI/kit/ChoiceBarLayout_p.h>
#include <KxUI/kit/ChoiceButton.h>
#include <KxUI/kit/PushButton.h>
#include <KxUI/style/ApplicationStyle.h>

#include <support/Columns.h>
#include <support/EditBracket.h>
#include <support/Input.h>
#include <support/TestRegistry.h>

#include <QAccessible>
#include <QMenu>
#include <QStyleFactory>
#include <QStyleOptionComboBox>

#include <functional>
#include <memory>

using namespace Kestrel::UI;
using Kestrel::Test::turnWheel;

namespace {

using Do = std::function<void(ChoiceBar&)>;

/** Presses a key and lets it go; returns whether the widget took it. */
bool sendKey(QWidget& widget, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    const QPointer<QWidget> alive(&widget);
    const bool taken = Kestrel::Test::sendKey(widget, key, modifiers);
    if (alive)
        QTest::keyRelease(&widget, Qt::Key(key), modifiers);
    return taken;
}

/** What a bar or a button told, in order: "start edit(2) chosen(2) end". */
template <class Widget>
struct Log {
    explicit Log(Widget* widget) {
        const auto number = [this](const char* name) {
            return [this, name](int value) {
                text += QStringLiteral("%1(%2) ").arg(QLatin1String(name)).arg(value);
            };
        };
        QObject::connect(widget, &Widget::currentIndexChanged, number("current"));
        QObject::connect(widget, &Widget::checkedChanged, [this] { text += "checked "; });
        QObject::connect(widget, &Widget::chosen, number("chosen"));
        QObject::connect(widget, &Widget::editStarted, [this] { text += "start "; });
        QObject::connect(widget, &Widget::valueEdited, number("edit"));
        QObject::connect(widget, &Widget::editFinished, [this](bool accepted) {
            text += accepted ? QStringLiteral("end ") : QStringLiteral("back ");
        });
    }
    QString take() { return std::exchange(text, QString()).trimmed(); }

    QString text;
};

QIcon someIcon() {
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    return picture;
}

template <class Widget>
void fill(Widget& widget, bool icons = false) {
    for (const char* name : {"&One", "Two", "Thr&ee", "Four && more"})
        widget.addChoice(QLatin1String(name), icons ? someIcon() : QIcon(), QLatin1String(name));
}

QAction* action(QWidget& widget, int index) {
    auto* menu = widget.findChild<QMenu*>();
    Q_EMIT menu->aboutToShow();
    return menu->actions().at(index);
}

} // namespace

Q_DECLARE_METATYPE(Do)

class ChoicesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void layout() {
        const struct {
            int width;
            bool icons, uniform;
            const char* parts; ///< widths, i: icons only, then the menu's
        } rows[] = {
            {180, true, false, "40 60 80"},   {240, true, true, "80 80 80"},
            {190, true, false, "43 63 84"},   {179, true, false, "59 60 60 i"},
            {89, true, false, "30 i 59"},     {179, false, false, "40 60 i 79"},
            {230, false, true, "80 80 i 70"}, {25, true, false, "i 25"},
        };
        for (const auto& row : rows) {
            const int icon = row.icons ? 30 : 0;
            const std::vector<ChoiceWidth> widths{{40, icon}, {60, icon}, {80, icon}};
            for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
                const auto layout =
                    ChoiceBarLayout::of(widths, {{row.width, 20}, 35, row.uniform, direction});
                QStringList text;
                int edge = direction == Qt::LeftToRight ? 0 : row.width;
                for (int i = 0; i < layout.seen(); ++i) {
                    const QRect part = layout.partOf(i);
                    QCOMPARE(direction == Qt::LeftToRight ? part.left() : part.right() + 1, edge);
                    edge += direction == Qt::LeftToRight ? part.width() : -part.width();
                    QCOMPARE(layout.choiceAt(part.center()), i);
                    text += QString::number(part.width());
                }
                if (layout.iconsOnly)
                    text += QStringLiteral("i");
                if (!layout.menu.isEmpty())
                    text += QString::number(layout.menu.width());
                QCOMPARE(text.join(QLatin1Char(' ')), QString::fromLatin1(row.parts));
            }
        }
    }

    void settersTellWhatChanged() {
        ChoiceBar bar;
        Log<ChoiceBar> log(&bar);
        fill(bar);
        QCOMPARE(bar.currentIndex(), -1);
        QCOMPARE(log.take(), QString());
        bar.setCurrentIndex(1);
        bar.setCurrentIndex(1);
        bar.setCurrentIndex(7);
        QCOMPARE(log.take(), QStringLiteral("checked current(1)"));
        bar.setChoiceChecked(2, true); // exclusive: the other goes off
        QCOMPARE(bar.checkedChoices(), QList<int>{2});
        QCOMPARE(log.take(), QStringLiteral("checked current(2)"));
        bar.removeChoice(0);
        QCOMPARE(log.take(), QStringLiteral("checked current(1)"));
        QCOMPARE(bar.currentData(), QVariant(QStringLiteral("Thr&ee")));
        bar.setExclusive(false);
        bar.setChoiceChecked(0, true);
        QCOMPARE(log.take(), QStringLiteral("checked current(0)"));
        QCOMPARE(bar.checkedChoices(), (QList<int>{0, 1}));
        bar.setExclusive(true);
        QCOMPARE(log.take(), QStringLiteral("checked"));
        bar.removeChoice(0);
        QCOMPARE(bar.currentIndex(), -1);
        bar.clearChoices();
        QCOMPARE(bar.choiceCount(), 0);
        QCOMPARE(bar.choiceText(0), QString());
        QVERIFY(bar.minimumSizeHint().width() == 0);
    }

    void user_data() {
        const Kestrel::Test::Columns<QString, QList<int>, Do> row("told", "on", "act");
        const char* third = "start checked current(2) edit(2) chosen(2) end";
        const auto click = [](ChoiceBar& bar, int x, int to) {
            QTest::mousePress(&bar, Qt::LeftButton, {}, QPoint(x, 5));
            Kestrel::Test::moveMouse(bar, QPoint(to, 5));
            QTest::mouseRelease(&bar, Qt::LeftButton, {}, QPoint(to, 5));
        };
        row("click", third, {2}, [=](ChoiceBar& bar) { click(bar, 250, 260); });
        row("click on what is on", "chosen(1)", {1}, [=](ChoiceBar& bar) { click(bar, 150, 150); });
        row("press, and release elsewhere", "", {1}, [=](ChoiceBar& bar) { click(bar, 250, 50); });
        row("disabled", "", {1}, [=](ChoiceBar& bar) {
            bar.setChoiceEnabled(2, false);
            click(bar, 250, 250);
        });
        row("right", third, {2}, [](ChoiceBar& bar) { sendKey(bar, Qt::Key_Right); });
        row("left, from right to left", third, {2}, [](ChoiceBar& bar) {
            bar.setLayoutDirection(Qt::RightToLeft);
            sendKey(bar, Qt::Key_Left);
        });
        row("right over a disabled one", "start checked current(3) edit(3) chosen(3) end", {3},
            [](ChoiceBar& bar) {
                bar.setChoiceEnabled(2, false);
                sendKey(bar, Qt::Key_Right);
                sendKey(bar, Qt::Key_End); // there already
            });
        row("home", "start checked current(0) edit(0) chosen(0) end", {0},
            [](ChoiceBar& bar) { sendKey(bar, Qt::Key_Home); });
        row("letter", third, {2},
            [](ChoiceBar& bar) { QTest::keyClick(&bar, Qt::Key_E, Qt::AltModifier); });
        row("several: keys move, space chooses", "start checked edit(2) chosen(2) end", {1, 2},
            [](ChoiceBar& bar) {
                bar.setExclusive(false);
                for (const int key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Left})
                    sendKey(bar, key);
                sendKey(bar, Qt::Key_Space);
            });
        row("several: off again", "start checked current(-1) edit(1) chosen(1) end", {},
            [=](ChoiceBar& bar) {
                bar.setExclusive(false);
                click(bar, 150, 150);
            });
        row("taken back by the host", "start checked current(2) checked current(1) edit(1) back",
            {1}, [](ChoiceBar& bar) {
                connect(&bar, &ChoiceBar::currentIndexChanged, &bar, [&bar](int index) {
                    if (index == 2)
                        bar.cancelEdit();
                });
                sendKey(bar, Qt::Key_Right);
            });
        row("host sets another one",
            "start checked current(2) checked current(0) edit(2) chosen(2) "
            "end",
            {0}, [](ChoiceBar& bar) {
                connect(&bar, &ChoiceBar::currentIndexChanged, &bar, [&bar](int index) {
                    if (index == 2)
                        bar.setCurrentIndex(0);
                });
                sendKey(bar, Qt::Key_Right);
            });
        row("host takes all away", "start checked current(-1) edit(2) chosen(2) end", {},
            [](ChoiceBar& bar) {
                connect(&bar, &ChoiceBar::editStarted, &bar, [&bar] { bar.clearChoices(); });
                sendKey(bar, Qt::Key_Right);
            });
        row("other keys are not taken", "", {1}, [](ChoiceBar& bar) {
            QVERIFY(!sendKey(bar, Qt::Key_Escape));
            QVERIFY(!sendKey(bar, Qt::Key_Right, Qt::ControlModifier));
        });
        row("nothing is on", "checked current(-1) start checked current(0) edit(0) chosen(0) end",
            {0}, [](ChoiceBar& bar) {
                bar.setCurrentIndex(-1);
                sendKey(bar, Qt::Key_Space);
            });
    }

    void user() {
        QFETCH(Do, act);
        ChoiceBar bar;
        fill(bar);
        bar.setCurrentIndex(1);
        bar.setUniformSizes(true);
        bar.resize(std::max(400, bar.sizeHint().width() / 4 * 4), 24);
        bar.show();
        QVERIFY(QTest::qWaitForWindowActive(&bar));
        bar.setFocus();
        Log<ChoiceBar> log(&bar);
        act(bar);
        QTEST(log.take(), "told");
        QTEST(bar.checkedChoices(), "on");
        QVERIFY(!bar.isEditing());
    }

    void editsAreBrackets() {
        Kestrel::Test::EditedWidget<ChoiceBar> bar;
        bar.make = [] {
            auto made = std::make_unique<ChoiceBar>();
            fill(*made);
            fill(*made);
            made->setCurrentIndex(1);
            made->resize(made->sizeHint());
            return made;
        };
        bar.another = 0;
        bar.key = Qt::Key_Right;
        bar.once = [](ChoiceBar& made) {
            QTest::mouseClick(&made, Qt::LeftButton, {}, QPoint(made.width() - 4, 5));
        };
        bar.assisted = false;
        Kestrel::Test::EditBracketCheck<ChoiceBar>(bar).run();

        Kestrel::Test::EditedWidget<ChoiceButton> button;
        button.make = [] {
            auto made = std::make_unique<ChoiceButton>();
            fill(*made);
            fill(*made);
            made->setCurrentIndex(1);
            return made;
        };
        button.another = 0;
        button.key = Qt::Key_Down;
        button.notch = [](ChoiceButton& made) { return turnWheel(made, -120); };
        button.once = [](ChoiceButton& made) { action(made, 6)->trigger(); };
        button.assisted = false;
        Kestrel::Test::EditBracketCheck<ChoiceButton>(button).run();
    }

    void deletedInASlot() {
        for (const auto signal : {&ChoiceBar::editStarted, &ChoiceBar::checkedChanged}) {
            auto* bar = new ChoiceBar;
            fill(*bar);
            const QPointer<ChoiceBar> guard(bar);
            connect(bar, signal, [bar] { delete bar; });
            sendKey(*bar, Qt::Key_End);
            QVERIFY(!guard);
        }
        auto* button = new ChoiceButton;
        fill(*button);
        connect(button, &ChoiceButton::valueEdited, [button] { delete button; });
        sendKey(*button, Qt::Key_Down);
    }

    void narrowBarHasAMenu() {
        ChoiceBar bar;
        fill(bar);
        bar.setCurrentIndex(3);
        bar.resize(bar.sizeHint().width() - 20, 24);
        bar.show();
        bar.setFocus();
        Log<ChoiceBar> log(&bar);
        QTest::mouseClick(&bar, Qt::LeftButton, {}, QPoint(bar.width() - 4, 5));
        auto* menu = bar.findChild<QMenu*>();
        QVERIFY(menu && menu->isVisible());
        menu->close();
        QCOMPARE(log.take(), QString());
        QVERIFY(menu->actions().last()->isChecked());
        QVERIFY(menu->actions().size() < 4);
        bar.setCurrentIndex(0);
        bar.setFocus();
        menu->actions().last()->trigger();
        QCOMPARE(bar.currentIndex(), 3);
        sendKey(bar, Qt::Key_Down); // the keyboard is in the menu
        QVERIFY(menu->isVisible());
    }

    void buttonChooses() {
        ChoiceButton button;
        button.setPlaceholderText(QStringLiteral("None"));
        fill(button);
        button.addSection(QStringLiteral("More"));
        button.addChoice(QStringLiteral("Five"));
        QCOMPARE(button.text(), QStringLiteral("None"));
        const QSize size = button.sizeHint();
        Log<ChoiceButton> log(&button);
        button.show();
        action(button, 3)->trigger();
        QCOMPARE(log.take(), QStringLiteral("start checked current(3) edit(3) chosen(3) end"));
        QCOMPARE(button.text(), QStringLiteral("Four & more"));
        QCOMPARE(button.sizeHint(), size);
        QVERIFY(action(button, 4)->isSeparator());
        QVERIFY(action(button, 3)->isChecked());

        button.setChoiceEnabled(2, false);
        QVERIFY(sendKey(button, Qt::Key_Up));
        QCOMPARE(button.currentIndex(), 1);
        for (const int key : {Qt::Key_End, Qt::Key_Down, Qt::Key_Home})
            sendKey(button, key);
        QCOMPARE(button.currentIndex(), 0);
        button.setExclusive(false);
        action(button, 1)->trigger();
        QCOMPARE(button.text(), QStringLiteral("One, Two"));
        log.take();
        sendKey(button, Qt::Key_Up);
        QCOMPARE(log.take(), QString());
    }

    // Whatever the style, none of the choices is cut at the hinted size.
    void choicesHaveRoom() {
        std::vector<std::unique_ptr<QStyle>> styles;
        for (const QString& name : QStyleFactory::keys())
            styles.emplace_back(QStyleFactory::create(name));
        styles.push_back(std::make_unique<ApplicationStyle>());
        for (const auto& style : styles) {
            ChoiceButton button;
            button.setStyle(style.get());
            button.addChoice(QStringLiteral("A"));
            button.addChoice(QStringLiteral("Monotone"));
            button.setCurrentIndex(1);
            QStyleOptionComboBox option;
            option.initFrom(&button);
            option.rect = QRect(QPoint(), button.sizeHint());
            const QRect field = style->subControlRect(QStyle::CC_ComboBox, &option,
                                                      QStyle::SC_ComboBoxEditField, &button);
            const int text = button.fontMetrics().horizontalAdvance(button.text());
            QVERIFY2(field.width() >= text + 2, style->metaObject()->className());
        }
    }

    // Between device pixels, too, a bar has a frame on all sides.
    void framesOnFractions() {
        for (const double ratio : {1.0, 1.25, 1.5, 1.75}) {
            for (const int top : {0, 1, 2, 3}) {
                QWidget window;
                ChoiceBar bar(&window);
                bar.addChoice(QStringLiteral("A"));
                bar.addChoice(QStringLiteral("B"));
                bar.setGeometry(top, top, 91, 23);
                QImage picture(QSize(100, 30) * ratio, QImage::Format_RGB32);
                picture.setDevicePixelRatio(ratio);
                picture.fill(Qt::magenta);
                bar.render(&picture, QPoint(top, top), {}, {});
                const int x = qRound((top + 20) * ratio);
                std::vector<QRgb> column;
                for (int y = 0; y < picture.height(); ++y) {
                    if (picture.pixel(x, y) != QColor(Qt::magenta).rgb())
                        column.push_back(picture.pixel(x, y));
                }
                QVERIFY(int(column.size()) >= int(22 * ratio) - 1);
                QVERIFY2(column.front() == column.back() && column[1] != column.front(),
                         qPrintable(QStringLiteral("%1 %2").arg(ratio).arg(top)));
            }
        }
    }

    void wheelOnTheButton() {
        const struct {
            WheelPolicy::Policy policy;
            bool focused, taken;
        } rows[] = {{WheelPolicy::WheelWhenFocused, false, false},
                    {WheelPolicy::WheelWhenFocused, true, true},
                    {WheelPolicy::WheelAlways, false, true},
                    {WheelPolicy::WheelNever, true, false}};
        for (const auto& row : rows) {
            QWidget window;
            auto* button = new ChoiceButton(&window);
            auto* other = new QToolButton(&window);
            other->setFocusPolicy(Qt::StrongFocus);
            fill(*button);
            button->setWheelPolicy(row.policy);
            window.show();
            QVERIFY(QTest::qWaitForWindowActive(&window));
            (row.focused ? static_cast<QWidget*>(button) : other)->setFocus();
            QCOMPARE(turnWheel(*button, -60), row.taken); // half a notch
            QCOMPARE(button->currentIndex(), -1);
            turnWheel(*button, -60);
            turnWheel(*button, -240);
            QCOMPARE(button->currentIndex(), row.taken ? 2 : -1);
            turnWheel(*button, 120);
            QCOMPARE(button->currentIndex(), row.taken ? 1 : -1);
        }
    }

    void busyButtonIsNotClicked() {
        PushButton button(QStringLiteral("&Render"));
        QSignalSpy clicked(&button, &PushButton::clicked);
        QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(&button);
        QCOMPARE(reader->text(QAccessible::Name), QStringLiteral("Render"));
        const QSize size = button.sizeHint();
        const auto clickAll = [&] {
            QTest::mouseClick(&button, Qt::LeftButton);
            QTest::keyClick(&button, Qt::Key_Space);
            return clicked.count();
        };
        QCOMPARE(clickAll(), 2);
        button.setBusy(true);
        QCOMPARE(clickAll(), 2);
        QVERIFY(reader->state().busy);
        QVERIFY(!reader->actionInterface()->actionNames().contains(
            QAccessibleActionInterface::pressAction()));
        reader->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(!button.isDown());
        QCOMPARE(button.sizeHint(), size);
        button.setBusy(false);
        QCOMPARE(clickAll(), 4);

        button.setRole(PushButton::DefaultRole);
        QVERIFY(button.isDefault());
        button.setRole(PushButton::DangerRole);
        QVERIFY(!button.isDefault() && !button.autoDefault());
    }

    void readersSeeTheChoices() {
        auto bar = std::make_unique<ChoiceBar>();
        fill(*bar);
        bar->setCurrentIndex(1);
        bar->setAccessibleName(QStringLiteral("View"));
        bar->resize(bar->sizeHint());
        bar->show();
        QAccessibleInterface* reader = QAccessible::queryAccessibleInterface(bar.get());
        QCOMPARE(reader->role(), QAccessible::Grouping);
        QCOMPARE(reader->text(QAccessible::Name), QStringLiteral("View"));
        QCOMPARE(reader->childCount(), 4);
        QAccessibleInterface* second = reader->child(1);
        QCOMPARE(second->role(), QAccessible::RadioButton);
        QCOMPARE(second->text(QAccessible::Name), QStringLiteral("Two"));
        QCOMPARE(second->text(QAccessible::Description), QStringLiteral("2 of 4"));
        QVERIFY(second->state().checked && second->state().checkable);
        QCOMPARE(reader->indexOfChild(second), 1);
        QCOMPARE(second->parent(), reader);
        const QPoint middle = second->rect().center();
        QCOMPARE(reader->childAt(middle.x(), middle.y()), second);

        Log<ChoiceBar> log(bar.get());
        reader->child(3)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(log.take(), QStringLiteral("start checked current(3) edit(3) chosen(3) end"));
        QCOMPARE(reader->child(3)->text(QAccessible::Name), QStringLiteral("Four & more"));
        bar->setExclusive(false);
        QCOMPARE(second->role(), QAccessible::CheckBox);
        bar->removeChoice(3);
        QVERIFY(!reader->child(3));
        bar.reset();

        ChoiceButton button;
        fill(button);
        button.setCurrentIndex(2);
        reader = QAccessible::queryAccessibleInterface(&button);
        QCOMPARE(reader->role(), QAccessible::ComboBox);
        QCOMPARE(reader->text(QAccessible::Value), QStringLiteral("Three"));
        QVERIFY(reader->state().hasPopup);
        reader->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
        QCOMPARE(button.currentIndex(), 3);
    }
};

KXUI_TEST(ChoicesTest);
#include "ChoicesTest.moc"
