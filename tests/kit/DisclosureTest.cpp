#include <KxUI/kit/Disclosure.h>
#include <KxUI/kit/DisclosureHeader_p.h>
#include <KxUI/settings/AppSettings.h>

#include <support/Columns.h>
#include <support/EditBracket.h>
#include <support/Input.h>
#include <support/TestRegistry.h>

#include <QtWidgets>

#include <functional>
#include <memory>

using namespace Kestrel::UI;
using Kestrel::Test::sendKey;

namespace {

constexpr int HeaderClick = 60; // x, on the title

/** Lets widgets be animated for so long, which no test waits for. */
class Animating : public QProxyStyle {
public:
    explicit Animating(int duration)
        : m_duration(duration) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        return hint == SH_Widget_Animation_Duration
                   ? m_duration
                   : QProxyStyle::styleHint(hint, option, widget, data);
    }

private:
    int m_duration;
};

QWidget* box(int height) {
    auto* made = new QWidget;
    made->setMinimumSize(50, height);
    made->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    return made;
}

DisclosureHeader* headerOf(const Disclosure& section) {
    return section.findChild<DisclosureHeader*>(QString(), Qt::FindDirectChildrenOnly);
}

/** Three sections in a column, each with a content of 100 pixels. */
struct Panel {
    explicit Panel(int duration = 0)
        : style(duration) {
        auto* layout = new QVBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(0);
        for (const char* title : {"&First", "&Second", "&Third"}) {
            auto* section = new Disclosure;
            section->setTitle(QLatin1String(title));
            section->setStyle(&style);
            section->setContent(box(100));
            layout->addWidget(section);
            sections.append(section);
        }
        layout->addStretch(1);
        window.resize(300, 500);
    }

    bool show() {
        window.show();
        return QTest::qWaitForWindowActive(&window);
    }

    /** "o" for each open one, "c" for a closed one; capital where the focus is. */
    QString states() const {
        QString text;
        for (const Disclosure* section : sections) {
            const QChar state = QLatin1Char(section->isExpanded() ? 'o' : 'c');
            text += headerOf(*section)->hasFocus() ? state.toUpper() : state;
        }
        return text;
    }

    Animating style;
    QWidget window;
    QVector<Disclosure*> sections;
};

void click(Disclosure& section, int x, Qt::KeyboardModifiers modifiers = {}) {
    QTest::mouseClick(headerOf(section), Qt::LeftButton, modifiers, QPoint(x, 8));
}

void layOut() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

using Act = std::function<void(Panel&)>;

} // namespace

Q_DECLARE_METATYPE(Act)

class DisclosureTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { AppSettings().remove(QStringLiteral("disclosures")); }

    void header() {
        const DisclosureHeaderParts parts{10, 14, 60, 6, 80, 42};
        const std::pair<int, const char*> rows[] = {
            // The width, and the arrow, check, title, dot, summary and widgets.
            {250, "4+10 20+14 40+60 106+6 118+80 204+42"}, // as wanted
            {300, "4+10 20+14 40+60 106+6 118+80 254+42"},
            {200, "4+10 20+14 40+60 106+6 118+30 154+42"}, // the summary is elided
            {130, "4+10 20+14 40+26 72+6 - 84+42"},        // the title, too
            {134, "4+10 20+14 40+30 76+6 - 88+42"},        // at the least
            {40, "- - - - - -6+42"},
        };
        for (const auto& [width, places] : rows) {
            for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
                const auto layout = DisclosureHeaderLayout::of({width, 20}, parts, direction);
                QStringList text;
                for (const QRect& part : {layout.arrow, layout.check, layout.title, layout.dot,
                                          layout.summary, layout.widgets}) {
                    const int left =
                        direction == Qt::LeftToRight ? part.left() : width - part.right() - 1;
                    text += part.isEmpty() ? QStringLiteral("-")
                                           : QStringLiteral("%1+%2").arg(left).arg(part.width());
                }
                QCOMPARE(text.join(QLatin1Char(' ')), QString::fromLatin1(places));
            }
        }
        QCOMPARE(DisclosureHeaderLayout::wantedWidth(parts), 250);
        QCOMPARE(DisclosureHeaderLayout::leastWidth(parts), 134);
    }

    void reveal() {
        QCOMPARE(revealedOffset(20, 80, 100, 10), 10);    // in sight
        QCOMPARE(revealedOffset(120, 180, 100, 10), 80);  // below
        QCOMPARE(revealedOffset(20, 80, 100, 50), 20);    // above
        QCOMPARE(revealedOffset(120, 400, 100, 10), 120); // higher than the view: its top
    }

    void user_data() {
        const Kestrel::Test::Columns<QString, Act> row("states", "act");
        const auto keys = [](int index, std::initializer_list<int> all) {
            return Act([index, codes = std::vector<int>(all)](Panel& panel) {
                headerOf(*panel.sections[index])->setFocus();
                for (const int key : codes)
                    QVERIFY(sendKey(*headerOf(*panel.sections[index]), key));
            });
        };
        row("click", "coC", [](Panel& panel) { click(*panel.sections[1], HeaderClick); });
        row("two clicks", "ccC", [](Panel& panel) {
            click(*panel.sections[1], HeaderClick);
            click(*panel.sections[1], HeaderClick);
        });
        row("alt: all are opened", "ooO",
            [](Panel& panel) { click(*panel.sections[0], HeaderClick, Qt::AltModifier); });
        row("alt: all are closed", "ccC", [](Panel& panel) {
            panel.sections[1]->setExpanded(true);
            click(*panel.sections[1], HeaderClick, Qt::AltModifier);
        });
        row("space", "Occ", keys(0, {Qt::Key_Space}));
        row("return twice", "Ccc", keys(0, {Qt::Key_Return, Qt::Key_Enter}));
        row("right opens, and only that", "cOc", keys(1, {Qt::Key_Right, Qt::Key_Right}));
        row("left closes", "cCc", keys(1, {Qt::Key_Right, Qt::Key_Left, Qt::Key_Left}));
        row("from right to left", "cOc", [=](Panel& panel) {
            panel.window.setLayoutDirection(Qt::RightToLeft);
            keys(1, {Qt::Key_Left})(panel);
        });
        row("star", "oOo", keys(1, {Qt::Key_Asterisk}));
        row("down", "cCc", keys(0, {Qt::Key_Down}));
        row("down passes what is hidden", "ccC", [=](Panel& panel) {
            panel.sections[1]->hide();
            keys(0, {Qt::Key_Down})(panel);
        });
        row("up at the first", "Ccc", keys(0, {Qt::Key_Up}));
        row("letter", "cOc",
            [](Panel& panel) { QTest::keyClick(&panel.window, Qt::Key_S, Qt::AltModifier); });
        row("exclusive group", "coC", [](Panel& panel) {
            for (Disclosure* section : qAsConst(panel.sections)) {
                section->setGroup(QStringLiteral("one"));
                section->setExclusiveGroup(true);
            }
            click(*panel.sections[0], HeaderClick);
            click(*panel.sections[1], HeaderClick);
        });
        row("alt in an exclusive group", "ocC", [](Panel& panel) {
            for (Disclosure* section : qAsConst(panel.sections))
                section->setExclusiveGroup(true);
            panel.sections[1]->setExpanded(true);
            click(*panel.sections[0], HeaderClick, Qt::AltModifier);
        });
        row("another group", "ocC", [](Panel& panel) {
            panel.sections[0]->setGroup(QStringLiteral("one"));
            click(*panel.sections[0], HeaderClick, Qt::AltModifier);
        });
        row("the check box is not the header", "ccC", [](Panel& panel) {
            panel.sections[0]->setCheckable(true);
            click(*panel.sections[0], 27);
            QVERIFY(!panel.sections[0]->isChecked());
        });
        row("right button", "ccC", [](Panel& panel) {
            QTest::mouseClick(headerOf(*panel.sections[0]), Qt::RightButton, {}, {60, 8});
        });
    }

    void user() {
        QFETCH(Act, act);
        Panel panel;
        QVERIFY(panel.show());
        for (Disclosure* section : qAsConst(panel.sections))
            headerOf(*section)->setFocusPolicy(Qt::TabFocus); // clicks leave the focus
        headerOf(*panel.sections[2])->setFocus();
        act(panel);
        QTEST(panel.states(), "states");
    }

    void checkBoxIsABracket() {
        Kestrel::Test::EditedWidget<Disclosure> edited;
        edited.make = [] {
            auto made = std::make_unique<Disclosure>();
            made->setCheckable(true);
            return made;
        };
        edited.another = false;
        edited.once = [](Disclosure& made) {
            sendKey(*headerOf(made), Qt::Key_Space, Qt::ControlModifier);
        };
        edited.assisted = false;
        Kestrel::Test::EditBracketCheck<Disclosure>(edited).run();
    }

    void heightsWhileItMoves() {
        Panel panel(200);
        QVERIFY(panel.show());
        Disclosure& section = *panel.sections[0];
        QWidget* content = section.content();
        QSignalSpy expanded(&section, &Disclosure::expandedChanged);
        const int closed = section.height();
        section.setExpanded(true);
        QCOMPARE(expanded.count(), 1);
        auto* animation = section.findChild<QVariantAnimation*>();
        QVERIFY(animation);
        animation->pause();
        int before = closed;
        int resizes = 0;
        for (int time = 0; time < 200; time += 20) {
            animation->setCurrentTime(time);
            const QSize size = content->size();
            layOut();
            resizes += content->size() != size ? 1 : 0;
            QVERIFY(section.height() >= before && section.height() <= closed + 100);
            QCOMPARE(content->height(), 100);
            QCOMPARE(panel.sections[1]->y(), section.height());
            before = section.height();
        }
        QCOMPARE(resizes, 0);
        QVERIFY(before > closed + 50);
        section.setExpanded(false); // on the way
        layOut();
        QVERIFY(section.height() <= before && content->isVisible());
        animation->setCurrentTime(animation->duration());
        layOut();
        QCOMPARE(section.height(), closed);
        QVERIFY(!content->isVisible());
        section.setExpanded(true);
        section.setAnimated(false); // ends it
        layOut();
        QCOMPARE(section.height(), closed + 100);
        section.setAnimated(true);
        section.setExpanded(false);
        panel.window.hide();
        QCOMPARE(animation->state(), QAbstractAnimation::Stopped);
    }

    void noAnimation() {
        const struct {
            int height;
            bool shown;
            int duration;
        } rows[] = {{100, false, 200}, // nobody sees it
                    {2001, true, 200}, // too high
                    {100, true, 0}};   // not by the style
        for (const auto& row : rows) {
            Panel panel(row.duration);
            panel.sections[0]->setContent(box(row.height));
            if (row.shown)
                QVERIFY(panel.show());
            panel.sections[0]->setExpanded(true);
            QVERIFY(!panel.sections[0]->findChild<QVariantAnimation*>());
            QCOMPARE(panel.sections[0]->sizeHint().height(),
                     headerOf(*panel.sections[0])->sizeHint().height() + row.height);
        }
    }

    void scrollsIntoSight() {
        Panel panel(200);
        auto* area = new QScrollArea;
        area->setWidgetResizable(true);
        auto* column = new QWidget;
        auto* layout = new QVBoxLayout(column);
        layout->addWidget(box(200));
        layout->addWidget(panel.sections[0]);
        layout->addWidget(box(400));
        area->setWidget(column);
        area->resize(200, 240);
        area->show();
        layOut();
        panel.sections[0]->setExpanded(true);
        auto* animation = panel.sections[0]->findChild<QVariantAnimation*>();
        QVERIFY(animation);
        const int high = headerOf(*panel.sections[0])->height() + 100;
        for (int time = 0; time < 200; time += 40) {
            animation->pause();
            animation->setCurrentTime(time);
            layOut();
            QVERIFY(panel.sections[0]->height() <= high);
        }
        animation->setCurrentTime(200);
        layOut();
        layOut();
        const QRect seen(panel.sections[0]->mapTo(area->viewport(), QPoint()),
                         panel.sections[0]->size());
        QVERIFY(area->verticalScrollBar()->value() > 0);
        QVERIFY(area->viewport()->rect().contains(seen));
        delete area;
        panel.sections.removeFirst();
    }

    void contentComesAndGoes() {
        Disclosure section;
        section.setAnimated(false);
        int made = 0;
        section.setContentFactory([&made] {
            ++made;
            auto* content = box(40);
            auto* hidden = new QLabel(content);
            hidden->hide();
            hidden->setObjectName(QStringLiteral("hidden"));
            return content;
        });
        section.show();
        const int closed = section.sizeHint().height();
        QCOMPARE(made, 0);
        section.setExpanded(true);
        section.setExpanded(false);
        section.setExpanded(true);
        QCOMPARE(made, 1);
        QVERIFY(section.content()->isVisible());
        QVERIFY(section.findChild<QLabel*>(QStringLiteral("hidden"))->isHidden());
        QCOMPARE(section.sizeHint().height(), closed + 40);
        section.content()->setMinimumHeight(60);
        layOut();
        QCOMPARE(section.sizeHint().height(), closed + 60);
        delete section.content();
        QCOMPARE(section.content(), nullptr);
        QCOMPARE(section.sizeHint().height(), closed);
        section.setExpanded(false);
        section.setExpanded(true);

        section.setContent(box(30));
        const std::unique_ptr<QWidget> taken(section.takeContent());
        QVERIFY(taken && !taken->parent());
        QCOMPARE(section.sizeHint().height(), closed);
        section.setContentFactory([] { return nullptr; });
        QCOMPARE(section.content(), nullptr);

        auto* words = new QLabel(QStringLiteral("many words that need several lines in a panel"));
        words->setWordWrap(true);
        section.setContent(words);
        QVERIFY(section.hasHeightForWidth());
        QVERIFY(section.heightForWidth(80) > section.heightForWidth(800));
        words->hide(); // by the host
        layOut();
        section.setExpanded(false);
        section.setExpanded(true);
        QVERIFY(words->isHidden());
        QCOMPARE(section.sizeHint().height(), closed);
    }

    void growsWithItsContent() {
        Panel panel;
        auto* grows = new QWidget;
        grows->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
        panel.sections[1]->setContent(grows);
        delete panel.window.layout()->takeAt(3); // the stretch
        QVERIFY(panel.show());
        panel.sections[1]->setExpanded(true);
        layOut();
        QCOMPARE(grows->height(), 500 - 3 * headerOf(*panel.sections[1])->height());
        QCOMPARE(panel.sections[2]->geometry().bottom(), 499);
    }

    void growsBeforeItIsShown() {
        QWidget window;
        auto* column = new QVBoxLayout(&window);
        auto* section = new Disclosure;
        auto* content = new QWidget;
        auto* inner = new QVBoxLayout(content);
        QWidget* part = box(20);
        inner->addWidget(part);
        section->setContent(content);
        section->setExpanded(true);
        column->addWidget(section);
        column->addStretch(1);
        window.ensurePolished();
        column->activate();
        part->setMinimumHeight(150);
        window.resize(200, 400);
        window.show();
        QTRY_VERIFY(content->height() >= 150);
    }

    void focusStaysInSight() {
        Panel panel;
        QVERIFY(panel.show());
        Disclosure& first = *panel.sections[0];
        auto* reset = new QPushButton(QStringLiteral("Reset"));
        first.addHeaderWidget(reset);
        // Made late, and reached right after its header all the same.
        first.setContentFactory([] {
            auto* content = new QWidget;
            auto* layout = new QVBoxLayout(content);
            layout->addWidget(new QLineEdit);
            layout->addWidget(new QLineEdit);
            return content;
        });
        first.setExpanded(true);
        const auto edits = first.findChildren<QLineEdit*>();
        headerOf(first)->setFocus();
        const QVector<QWidget*> expected{reset, edits[0], edits[1], headerOf(*panel.sections[1])};
        for (QWidget* widget : expected) {
            QTest::keyClick(panel.window.focusWidget(), Qt::Key_Tab);
            QCOMPARE(panel.window.focusWidget(), widget);
        }
        edits[1]->setFocus();
        first.setExpanded(false);
        QCOMPARE(panel.window.focusWidget(), headerOf(first));
        QTest::keyClick(headerOf(first), Qt::Key_Tab);
        QTest::keyClick(reset, Qt::Key_Tab);
        QCOMPARE(panel.window.focusWidget(), headerOf(*panel.sections[1]));
    }

    void isRemembered() {
        const QString key = QStringLiteral("test/gain");
        Disclosure first;
        first.setExpanded(true);
        first.setSettingsKey(key); // nothing is known yet
        QVERIFY(first.isExpanded());
        first.setExpanded(false);
        first.setExpanded(true);
        Disclosure second;
        second.setSettingsKey(key);
        QVERIFY(second.isExpanded());
        second.setExpanded(false);
        Disclosure third;
        third.setExpanded(true);
        third.setSettingsKey(key);
        QVERIFY(!third.isExpanded());
        Disclosure other;
        other.setSettingsKey(QStringLiteral("test/other"));
        QVERIFY(!other.isExpanded());
    }

    void nestedDeeply() {
        constexpr int levels = 50;
        QWidget window;
        auto* layout = new QVBoxLayout(&window);
        QVector<Disclosure*> all;
        for (int level = 0; level < levels; ++level) {
            auto* section = new Disclosure;
            auto* content = new QWidget;
            layout->addWidget(section);
            layout->addStretch(1);
            section->setContent(content);
            layout = new QVBoxLayout(content);
            layout->setContentsMargins(4, 0, 0, 0);
            all.append(section);
        }
        layout->addWidget(box(10));
        window.resize(400, 2000);
        window.show();
        for (Disclosure* section : qAsConst(all)) {
            section->setAnimated(false);
            section->setExpanded(true);
        }
        layOut();
        QVERIFY(all.last()->content()->isVisible());
        const int header = headerOf(*all.last())->height();
        QCOMPARE(all.last()->height(), header + all.last()->content()->height());
        QVERIFY(all.first()->height() >= levels * header + 10);
        all.last()->setExpanded(false);
        layOut();
        QCOMPARE(all.last()->height(), header);
    }

    void readersHear() {
        Panel panel;
        QVERIFY(panel.show());
        Disclosure& section = *panel.sections[0];
        section.setSummary(QStringLiteral("1.2"));
        section.setModified(true);
        section.setCheckable(true);
        QAccessibleInterface* group = QAccessible::queryAccessibleInterface(&section);
        QAccessibleInterface* header = QAccessible::queryAccessibleInterface(headerOf(section));
        QCOMPARE(group->role(), QAccessible::Grouping);
        QCOMPARE(header->role(), QAccessible::Button);
        QCOMPARE(group->text(QAccessible::Name), QStringLiteral("First"));
        QCOMPARE(header->text(QAccessible::Name), QStringLiteral("First"));
        QCOMPARE(header->text(QAccessible::Description), QStringLiteral("changed; 1.2"));
        QVERIFY(header->state().expandable && header->state().collapsed);
        QVERIFY(header->state().checkable && header->state().checked);

        header->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QVERIFY(section.isExpanded());
        QVERIFY(header->state().expanded && group->state().expanded);
        QSignalSpy edited(&section, &Disclosure::valueEdited);
        header->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
        QCOMPARE(edited.count(), 1);
        QVERIFY(!header->state().checked);
    }

    void deletedInASlot() {
        for (const bool all : {false, true}) {
            QWidget parent;
            QPointer<Disclosure> one(new Disclosure(&parent));
            QPointer<Disclosure> two(new Disclosure(&parent));
            connect(one, &Disclosure::expandedChanged, [one] { delete one; });
            if (all)
                two->setAllExpanded(true);
            else
                click(*one, HeaderClick);
            QVERIFY(!one);
            QCOMPARE(two->isExpanded(), all);
            two->setContentFactory([two]() -> QWidget* {
                delete two;
                return nullptr;
            });
            if (two)
                two->setExpanded(true);
            QVERIFY(!two);
        }
    }
};

KXUI_TEST(DisclosureTest);
#include "DisclosureTest.moc"
