#include <KxUI/values/SearchField.h>
#include <KxUI/values/SearchFieldLogic_p.h>

#include <support/Input.h>
#include <support/TestRegistry.h>

#include <QtWidgets>

using namespace Kestrel::UI;
using Kestrel::Test::sendKey;

namespace {

/** What a field tells, in one line. */
class Told : public QObject {
public:
    explicit Told(SearchField& field) {
        connect(&field, &SearchField::searchChanged, this,
                [this](const QString& text) { add(QStringLiteral("'%1'").arg(text)); });
        connect(&field, &SearchField::nextWanted, this, [this] { add(QStringLiteral("next")); });
        connect(&field, &SearchField::previousWanted, this,
                [this] { add(QStringLiteral("previous")); });
        connect(&field, &SearchField::leaveWanted, this, [this](Qt::Key key) {
            add(key == Qt::Key_Down ? QStringLiteral("down") : QStringLiteral("up"));
        });
    }
    QString take() { return std::exchange(m_text, QString()); }

private:
    void add(const QString& word) {
        m_text += (m_text.isEmpty() ? QString() : QStringLiteral(" ")) + word;
    }
    QString m_text;
};

} // namespace

class SearchFieldTest : public QObject {
    Q_OBJECT

private slots:
    void tellsOnceTypingRests() {
        SearchFieldLogic logic;
        QSignalSpy told(&logic, &SearchFieldLogic::told);
        logic.edited(QStringLiteral("p"));
        logic.edited(QStringLiteral("pl"));
        QCOMPARE(told.count(), 0);
        logic.pass();
        QCOMPARE(told.takeFirst().at(0).toString(), QStringLiteral("pl"));
        logic.edited(QStringLiteral("pla"));
        logic.edited(QStringLiteral("pl"));
        logic.pass(); // told already
        logic.edited(QStringLiteral("old"));
        logic.set(QStringLiteral("new")); // the host's text stays the newer one
        logic.pass();
        QCOMPARE(told.count(), 0);
    }

    void historyIsShort() {
        SearchFieldLogic logic;
        for (int i = 0; i < 30; ++i) {
            logic.edited(QString::number(i % 25));
            logic.use();
        }
        QCOMPARE(logic.history().size(), 20);
        QCOMPARE(logic.history().first(), QStringLiteral("4"));
        QCOMPARE(logic.history().count(QStringLiteral("4")), 1);
        logic.edited(QStringLiteral("  "));
        logic.use();
        QCOMPARE(logic.history().first(), QStringLiteral("4"));
        logic.setHistoryEnabled(false);
        logic.edited(QStringLiteral("secret"));
        logic.use();
        QCOMPARE(logic.history().first(), QStringLiteral("4"));
    }

    void keys() {
        QWidget window;
        SearchField field(&window);
        Told told(field);
        QTest::keyClicks(&field, QStringLiteral("plate"));
        QCOMPARE(told.take(), QString());
        struct Row {
            int key;
            Qt::KeyboardModifiers modifiers;
            const char* told;
        };
        const Row rows[] = {
            {Qt::Key_Return, {}, "'plate' next"},
            {Qt::Key_Return, {}, "next"},
            {Qt::Key_Enter, Qt::KeypadModifier, "next"},
            {Qt::Key_Return, Qt::ShiftModifier, "previous"},
            {Qt::Key_F3, {}, "next"},
            {Qt::Key_F3, Qt::ShiftModifier, "previous"},
            {Qt::Key_Down, {}, "down"},
            {Qt::Key_Up, {}, "up"},
            {Qt::Key_Escape, {}, "''"},
        };
        for (const Row& row : rows) {
            QVERIFY(sendKey(field, row.key, row.modifiers));
            QCOMPARE(told.take(), QString::fromLatin1(row.told));
        }
        QVERIFY(field.text().isEmpty());
        QVERIFY(!sendKey(field, Qt::Key_Escape)); // the window's
        field.undo();
        QCOMPARE(field.text(), QStringLiteral("plate"));
        QVERIFY(sendKey(field, Qt::Key_Down));
        QCOMPARE(told.take(), QStringLiteral("'plate' down"));
        QCOMPARE(field.history(), QStringList(QStringLiteral("plate")));
    }

    void clearButtonTellsTheUsersDeed() {
        SearchField field;
        field.setText(QStringLiteral("set"));
        Told told(field);
        field.show();
        for (auto* button : field.findChildren<QToolButton*>()) {
            if (button->pos().x() > field.width() / 2)
                button->click();
        }
        QVERIFY(field.text().isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(told.take(), QStringLiteral("''"));
        field.setText(QStringLiteral("host"));
        field.clear();
        QCoreApplication::processEvents();
        QCOMPARE(told.take(), QString());
    }

    void dialogKeepsItsEscape() {
        QDialog dialog;
        auto* field = new SearchField;
        (new QVBoxLayout(&dialog))->addWidget(field);
        dialog.show();
        QVERIFY(Kestrel::Test::focus(*field));
        QTest::keyClicks(field, QStringLiteral("x"));
        QTest::keyClick(field, Qt::Key_Return);
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(dialog.isVisible());
        QTest::keyClick(field, Qt::Key_Escape);
        QVERIFY(!dialog.isVisible());
    }

    void hostsMayDeleteIt() {
        for (const int key : {Qt::Key_Return, Qt::Key_Down, Qt::Key_Escape}) {
            auto* field = new SearchField;
            QPointer<SearchField> alive(field);
            connect(field, &SearchField::searchChanged, qApp, [field] { delete field; });
            if (key == Qt::Key_Escape) {
                field->setText(QStringLiteral("x"));
            } else {
                QTest::keyClicks(field, QStringLiteral("x"));
                QVERIFY(alive);
            }
            sendKey(*field, key);
            QVERIFY(!alive);
        }
    }

    void matchesAndMenu() {
        SearchField field;
        field.resize(200, 26);
        const QImage empty = field.grab().toImage();
        field.setMatches(3, 17);
        QVERIFY(field.grab().toImage() != empty);
        QVERIFY(field.textMargins().right() > 0);
        QCOMPARE(QAccessible::queryAccessibleInterface(&field)->role(), QAccessible::EditableText);
        QVERIFY(QAccessible::queryAccessibleInterface(&field)
                    ->text(QAccessible::Description)
                    .contains(QStringLiteral("17")));
        field.setMatches(0, -1);
        QCOMPARE(field.textMargins().right(), 0);
        QCOMPARE(field.grab().toImage(), empty);

        field.openMenu();
        QVERIFY(!field.findChild<QMenu*>()); // nothing to offer
        QMenu options;
        options.addAction(QStringLiteral("Match capitals"));
        field.setOptionsMenu(&options);
        field.setHistory({QStringLiteral("A&B"), QStringLiteral("A&B"), QString()});
        field.openMenu();
        auto* menu = field.findChild<QMenu*>();
        QVERIFY(menu);
        Told told(field);
        menu->actions().first()->trigger();
        QCOMPARE(told.take(), QStringLiteral("'A&B'"));
        QCOMPARE(menu->actions().last(), options.actions().first());
        menu->close();
    }
};

KXUI_TEST(SearchFieldTest);
#include "SearchFieldTest.moc"
