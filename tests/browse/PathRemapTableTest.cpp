#include <KxUI/browse/FilePathEdit.h>
#include <KxUI/browse/PathRemapModel.h>
#include <KxUI/browse/PathRemapTable.h>

#include <support/Input.h>
#include <support/TestRegistry.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QMimeData>
#include <QSettings>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QUndoStack>
#include <QUrl>
#include <QtTest>

using namespace Kestrel::UI;

namespace {

PathRule rule(const std::string& from, const std::string& to) {
    PathRule made;
    made.from = from;
    made.to = to;
    made.fromStyle = PathRemapModel::guessedStyle(QString::fromStdString(from));
    return made;
}

QString textOf(const std::vector<PathRule>& rules) {
    QStringList lines;
    for (const PathRule& each : rules)
        lines << QString::fromStdString(each.from + ">" + each.to) +
                     (each.fromStyle == PathStyle::Windows ? "w" : "") +
                     (each.isEnabled ? "" : "-");
    return lines.join(' ');
}

} // namespace

class PathRemapTableTest : public QObject {
    Q_OBJECT

private slots:
    // Every edit is one bracket and one step, whatever it is.
    void editsByBrackets() {
        PathRemapTable table;
        PathRemapModel& model = *table.model();
        QAbstractItemModelTester tester(&model,
                                        QAbstractItemModelTester::FailureReportingMode::QtTest);
        QSignalSpy started(&table, &PathRemapTable::editStarted);
        QSignalSpy edited(&table, &PathRemapTable::valueEdited);
        QSignalSpy finished(&table, &PathRemapTable::editFinished);
        QSignalSpy changed(&model, &PathRemapModel::rulesChanged);
        QUndoStack& stack = *table.undoStack();
        const auto isOne = [&](int count) {
            return started.count() == count && edited.count() == count &&
                   finished.count() == count && changed.count() == count && stack.count() == count;
        };
        // A row that is half typed is no rule.
        QVERIFY(model.setData(model.index(0, PathRemapModel::To), "/z"));
        QVERIFY(table.rules().empty() && isOne(0));
        QVERIFY(model.setData(model.index(0, PathRemapModel::From), " Z:\\ "));
        QCOMPARE(textOf(table.rules()), QString("Z:\\>/zw"));
        QVERIFY(isOne(1) && model.rowCount() == 2);
        QVERIFY(model.setData(model.index(0, PathRemapModel::From), "Z:\\")); // the same
        QVERIFY(isOne(1));
        QVERIFY(
            model.setData(model.index(0, PathRemapModel::On), Qt::Unchecked, Qt::CheckStateRole));
        QVERIFY(isOne(2));
        QMimeData folder;
        folder.setUrls({QUrl("file:///mnt/y")});
        QVERIFY(model.dropMimeData(&folder, Qt::CopyAction, -1, -1,
                                   model.index(0, PathRemapModel::To)));
        QCOMPARE(textOf(table.rules()), QString("Z:\\>/mnt/yw-"));
        QVERIFY(isOne(3));
        stack.undo();
        stack.undo();
        QCOMPARE(textOf(table.rules()), QString("Z:\\>/zw"));
        QVERIFY(started.count() == 3 && changed.count() == 5);
        table.setRules({rule("/a", "/b")});
        QVERIFY(started.count() == 3 && changed.count() == 6);
    }

    void keysOfTheTable() {
        PathRemapTable table;
        QTableView& view = *table.view();
        table.setRules({rule("/a", "/1"), rule("/b", "/2"), rule("/c", "/3")});
        table.resize(700, 300);
        table.show();
        QVERIFY(Kestrel::Test::focus(view));
        view.selectRow(0);
        QTest::keyClick(&view, Qt::Key_Up, Qt::AltModifier);
        QTest::keyClick(&view, Qt::Key_Down, Qt::AltModifier);
        QTest::keyClick(&view, Qt::Key_Down, Qt::AltModifier);
        QCOMPARE(textOf(table.rules()), QString("/b>/2 /c>/3 /a>/1"));
        QCOMPARE(view.selectionModel()->selectedRows()[0].row(), 2);
        QTest::keyClick(&view, Qt::Key_Delete);
        QCOMPARE(textOf(table.rules()), QString("/b>/2 /c>/3"));
        QTest::keyClick(&view, Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(textOf(table.rules()), QString("/b>/2 /c>/3 /a>/1"));

        view.selectAll();
        QTest::keyClick(&view, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), QString("/b\t/2\n/c\t/3\n/a\t/1\n"));
        QApplication::clipboard()->setText("\\\\srv\\x\t/x\nalone\n/d\t/4");
        QTest::keyClick(&view, Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(textOf(table.rules()), QString("/b>/2 /c>/3 /a>/1 \\\\srv\\x>/xw /d>/4"));

        // Return, type, Tab, type, Tab: a new rule, and on to the next.
        table.setRules({});
        view.setCurrentIndex(table.model()->index(0, PathRemapModel::From));
        QTest::keyClick(&view, Qt::Key_Return);
        for (const char* text : {"/f", "/t"}) {
            QWidget* const editor = QApplication::focusWidget();
            QVERIFY(qobject_cast<QLineEdit*>(editor));
            QTest::keyClicks(editor, text);
            QTest::keyClick(editor, Qt::Key_Tab);
            QCoreApplication::processEvents();
        }
        QCOMPARE(textOf(table.rules()), QString("/f>/t"));
        QCOMPARE(view.currentIndex(), table.model()->index(1, PathRemapModel::From));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);

        // Where it leads to may be looked for.
        view.setCurrentIndex(table.model()->index(0, PathRemapModel::To));
        QTest::keyClick(&view, Qt::Key_Return);
        auto* const field = qobject_cast<FilePathEdit*>(QApplication::focusWidget());
        QVERIFY(field && field->kind() == FilePathEdit::Folder && field->path() == "/t");
        field->setBrowser([](FilePathEdit* asked) { asked->chooseRawPath("/chosen"); });
        field->browse();
        QTest::keyClick(field, Qt::Key_Return);
        QTRY_COMPARE(textOf(table.rules()), QString("/f>/chosen"));
    }

    void triesAndWarns() {
        PathRemapTable table;
        PathRemapModel& model = *table.model();
        table.setRules({rule("/a", "/1"), rule("/a/b", "/2"), rule("x", "/3"), rule("/..", "/4")});
        table.setTryPath("/a/b/c.exr");
        QCOMPARE(model.matchingRule(), 0);
        QCOMPARE(model.index(0, PathRemapModel::Result).data().toString(), QString("/1/b/c.exr"));
        QCOMPARE(model.index(1, PathRemapModel::Result).data().toString(), QString());
        QCOMPARE(model.index(1, PathRemapModel::Status).data().toString(),
                 QString("Never used: rule 1 comes first."));
        QVERIFY(model.index(2, PathRemapModel::Status).data().toString().contains("root"));
        QVERIFY(
            model.index(3, PathRemapModel::Status).data().toString().contains("\u201c..\u201d"));
        QVERIFY(model.index(3, PathRemapModel::From)
                    .data(Qt::AccessibleTextRole)
                    .toString()
                    .contains("\u201c..\u201d"));
        table.setTryPath("/q");
        QCOMPARE(model.matchingRule(), -1);
        QCOMPARE(model.triedResult(), QString("/q"));
    }

    void filesAndSettings() {
        const QTemporaryDir folder;
        const QString name = folder.filePath("rules.json");
        PathRule odd = rule("Z:\\", "/mnt/z");
        odd.isEnabled = false;
        odd.note = "n";
        PathRule bytes = rule("/\xff", "/\xfe");
        {
            QSettings settings(folder.filePath("s.ini"), QSettings::IniFormat);
            PathRemapTable::store(settings, {odd, bytes, odd});
            PathRemapTable::store(settings, {odd, bytes});
        }
        QSettings settings(folder.filePath("s.ini"), QSettings::IniFormat);
        const std::vector<PathRule> loaded = PathRemapTable::load(settings);
        QCOMPARE(loaded.size(), std::size_t(2));
        QVERIFY(loaded[0].note == "n" && loaded[1].from == bytes.from && loaded[1].to == bytes.to);

        PathRemapTable table;
        QSignalSpy finished(&table, &PathRemapTable::fileFinished);
        table.setRules(loaded);
        table.exportFile(name);
        QCOMPARE(finished.takeFirst()[0].toString(),
                 QString("Rule 2 has a path that cannot be written as text."));
        table.setRules({odd, rule("/long/er", "/l")});
        table.exportFile(name);
        QVERIFY(finished.wait());
        QCOMPARE(finished.takeFirst()[0].toString(), QString());
        table.setRules({odd});
        table.importFile(name);
        QVERIFY(finished.wait());
        QCOMPARE(textOf(table.rules()), QString("Z:\\>/mnt/zw- /long/er>/l"));
        table.undoStack()->undo();
        QCOMPARE(textOf(table.rules()), QString("Z:\\>/mnt/zw-"));
        table.importFile(folder.filePath("none"));
        QVERIFY(finished.wait() && !finished.last()[0].toString().isEmpty());

        QString error;
        const QByteArray head = "{\"version\":\"pathmapping-1.0\",\"path_mapping_rules\":[";
        const QByteArray whole = "{\"source_path_format\":\"WINDOWS\",\"source_path\":\"Z:\\\\\","
                                 "\"destination_path\":\"/mnt/z\"}";
        QCOMPARE(textOf(PathRemapModel::fromJson(head + whole + "]}", &error)),
                 QString("Z:\\>/mnt/zw"));
        QVERIFY(error.isEmpty());
        const QList<QPair<QByteArray, QString>> bad{{"{}", "version"},
                                                    {"{\n\n", "Line 3"},
                                                    {head + whole + ",{}]}", "Rule 2: source_path"},
                                                    {QByteArray(1 << 21, ' '), "too large"}};
        for (const auto& [json, part] : bad) {
            QVERIFY(PathRemapModel::fromJson(json, &error).empty());
            QVERIFY2(error.contains(part), qPrintable(error));
        }
    }
};

KXUI_TEST(PathRemapTableTest);
#include "PathRemapTableTest.moc"
