#include <support/Dropping.h>
#include <support/EditBracket.h>
#include <support/Input.h>
#include <support/TempFolder.h>
#include <support/TestRegistry.h>

#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/browse/FilePathEdit.h>
#include <KxUI/browse/PathProbe_p.h>
#include <KxUI/kit/ParameterBinding.h>
#include <KxUI/kit/PropertyParameter.h>

#include <QtWidgets>

#include <fstream>

using namespace Kestrel::UI;
using Kestrel::Test::dropOn;
using Kestrel::Test::EditedWidget;
using Kestrel::Test::focus;
using Kestrel::Test::sendKey;
using Kestrel::Test::TempFolder;

namespace {

/** A field in a window, with another one to leave it for. */
struct Stage {
    Stage() {
        layout.addWidget(&field);
        layout.addWidget(&other);
        window.resize(300, 80);
        window.show();
        QObject::connect(&field, &FilePathEdit::pathChanged, &field,
                         [this](const QString& path) { told += path + QLatin1Char(';'); });
        QObject::connect(&field, &FilePathEdit::editFinished, &field, [this](bool accepted) {
            told += accepted ? QLatin1Char('F') : QLatin1Char('R');
        });
    }

    QString take() { return std::exchange(told, QString()); }

    QWidget window;
    QVBoxLayout layout{&window};
    FilePathEdit field;
    QLineEdit other;
    QString told;
};

void type(QLineEdit& field, const QString& text) {
    field.selectAll();
    QTest::keyClicks(&field, text);
}

} // namespace

class FilePathEditTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void editBracket() {
        EditedWidget<FilePathEdit> edited;
        edited.make = [] {
            auto field = std::make_unique<FilePathEdit>();
            field->setPath(QStringLiteral("/start"));
            return field;
        };
        edited.another = QStringLiteral("/another");
        edited.assisted = false;
        edited.once = [](FilePathEdit& field) {
            type(field, QStringLiteral("/typed"));
            sendKey(field, Qt::Key_Return);
        };
        Kestrel::Test::checkEditBracket(std::move(edited));
    }

    void isToldOnceAnEdit() {
        Stage stage;
        QVERIFY(focus(stage.field));
        type(stage.field, QStringLiteral(" /a/b "));
        QCOMPARE(stage.take(), QString());
        QCOMPARE(stage.field.path(), QStringLiteral("/a/b"));
        QVERIFY(sendKey(stage.field, Qt::Key_Return));
        QCOMPARE(stage.take(), QStringLiteral("/a/b;F"));
        QVERIFY(!sendKey(stage.field, Qt::Key_Return)); // the window's default button
        type(stage.field, QStringLiteral("/c"));
        stage.field.setPath(QStringLiteral("/a/b")); // an echo leaves what is typed
        stage.other.setFocus();
        QCOMPARE(stage.take(), QStringLiteral("/c;F"));
        stage.field.setPath(QStringLiteral("/c"));
        stage.field.setPath(QStringLiteral("/d"));
        stage.field.setText(QStringLiteral("/e"));
        QCOMPARE(stage.take(), QStringLiteral("/d;/e;"));
        type(stage.field, QStringLiteral("/f"));
        stage.field.setPath(QStringLiteral("/host")); // who wins
        QCOMPARE(stage.field.text(), QStringLiteral("/host"));
        type(stage.field, QStringLiteral("file:///x%20y"));
        stage.field.finishEditing();
        QCOMPARE(stage.take(), QStringLiteral("/host;/x y;F"));
    }

    void escapeBringsBack() {
        Stage stage;
        stage.field.setPath(QStringLiteral("/a"));
        QVERIFY(focus(stage.field));
        QVERIFY(!sendKey(stage.field, Qt::Key_Escape)); // the window's
        type(stage.field, QStringLiteral("/b"));
        QVERIFY(sendKey(stage.field, Qt::Key_Escape));
        QCOMPARE(stage.field.text(), QStringLiteral("/a"));
        QVERIFY(!sendKey(stage.field, Qt::Key_Escape));
        stage.field.undo();
        QCOMPARE(stage.field.text(), QStringLiteral("/b"));
        QCOMPARE(stage.take(), QStringLiteral("/a;"));
    }

    void keepsBytes() {
        Stage stage;
        stage.field.setRawPath("/plates/\xE9/x ");
        QCOMPARE(stage.field.rawPath(), QByteArray("/plates/\xE9/x "));
        QVERIFY(focus(stage.field));
        stage.field.end(false);
        QTest::keyClicks(&stage.field, QStringLiteral("/y"));
        QVERIFY(sendKey(stage.field, Qt::Key_Return));
        QCOMPARE(stage.field.rawPath(), QByteArray("/plates/\xE9/x /y"));
        stage.field.setPath(stage.field.path()); // an echo of the text
        QCOMPARE(stage.field.rawPath(), QByteArray("/plates/\xE9/x /y"));
        type(stage.field, QStringLiteral("/z"));
        sendKey(stage.field, Qt::Key_Escape);
        QCOMPARE(stage.field.rawPath(), QByteArray("/plates/\xE9/x /y"));
    }

    void meansAPath() {
        Stage stage;
        stage.field.setBaseFolder(QStringLiteral("/show/shot"));
        stage.field.setExpander([](const QString& text) {
            return QString(text).replace(QStringLiteral("$JOB"), QStringLiteral("/jobs/a"));
        });
        for (const auto& [path, raw] : {std::pair("plates/../x", "/show/shot/x"),
                                        {"$JOB/x", "/jobs/a/x"},
                                        {"file://server/x", ""},
                                        {" ", ""}}) {
            stage.field.setPath(QString::fromLatin1(path));
            QCOMPARE(stage.field.rawPath(), QByteArray(raw));
        }
        stage.field.setPrefersRelative(true);
        stage.field.setRawPath("/show/plates/a.exr");
        QCOMPARE(stage.field.path(), QStringLiteral("../plates/a.exr"));
        QCOMPARE(stage.field.rawPath(), QByteArray("/show/plates/a.exr"));
    }

    void chosenPathsAreUndone() {
        Stage stage;
        stage.field.setPath(QStringLiteral("/old"));
        stage.field.setBrowser([](FilePathEdit* field) { field->chooseRawPath("/chosen"); });
        QVERIFY(focus(stage.field));
        stage.take();
        QVERIFY(sendKey(stage.field, Qt::Key_F4));
        QVERIFY(sendKey(stage.field, Qt::Key_Down, Qt::AltModifier));
        QCOMPARE(stage.take(), QStringLiteral("/chosen;F"));
        stage.field.undo();
        QCOMPARE(stage.field.path(), QStringLiteral("/old"));
        sendKey(stage.field, Qt::Key_Return);
        QCOMPARE(stage.take(), QStringLiteral("/old;F"));
    }

    void choosesByDefault() {
        TempFolder folder;
        std::filesystem::create_directory(folder.path() / "sub");
        Stage stage;
        stage.field.setKind(FilePathEdit::Folder);
        stage.field.setRawPath(QByteArray::fromStdString(folder.utf8()));
        stage.field.browse();
        stage.field.browse(); // the one that is open
        QCOMPARE(stage.field.findChildren<FileChooserDialog*>().size(), 1);
        QPointer<FileChooserDialog> chooser = stage.field.findChild<FileChooserDialog*>();
        QVERIFY(chooser->isVisible());
        QTRY_COMPARE(chooser->folder(), QByteArray::fromStdString(folder.utf8()));
        stage.take();
        chooser->setFolder(QByteArray::fromStdString(folder.utf8()) + "/sub");
        QTRY_COMPARE(chooser->choices().size(), std::size_t(1));
        chooser->accept();
        QTRY_COMPARE(stage.told, QString::fromStdString(folder.utf8()) + QStringLiteral("/sub;F"));
    }

    void versions() {
        Stage stage;
        stage.field.setPath(QStringLiteral("/v009/a_v009.####.exr"));
        QVERIFY(focus(stage.field));
        stage.take();
        QVERIFY(!sendKey(stage.field, Qt::Key_Plus, Qt::ControlModifier));
        stage.field.setKind(FilePathEdit::SaveFile);
        QVERIFY(sendKey(stage.field, Qt::Key_Plus, Qt::ControlModifier));
        QVERIFY(stage.field.isEditing());
        QTest::keyRelease(&stage.field, Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(stage.take(), QStringLiteral("/v010/a_v010.####.exr;F"));
        sendKey(stage.field, Qt::Key_Minus, Qt::ControlModifier);
        sendKey(stage.field, Qt::Key_Minus, Qt::ControlModifier);
        QVERIFY(sendKey(stage.field, Qt::Key_Escape));
        QCOMPARE(stage.field.path(), QStringLiteral("/v010/a_v010.####.exr"));
        stage.field.setPath(QStringLiteral("/v000"));
        sendKey(stage.field, Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(stage.field.path(), QStringLiteral("/v000"));
    }

    void drops_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("before"); // % is the folder
        QTest::addColumn<QStringList>("dropped");
        QTest::addColumn<QString>("after"); // empty where it is refused
        const auto row = [](const char* name, FilePathEdit::Kind kind, const char* before,
                            const QStringList& dropped, const char* after) {
            QTest::newRow(name) << int(kind) << QString::fromLatin1(before) << dropped
                                << QString::fromLatin1(after);
        };
        row("file", FilePathEdit::OpenFile, "/x", {QStringLiteral("%/a.1.exr")}, "%/a.1.exr");
        row("frames", FilePathEdit::OpenFile, "/x",
            {QStringLiteral("%/a.1.exr"), QStringLiteral("%/a.2.exr")}, "%/a.#.exr");
        row("two files", FilePathEdit::OpenFile, "",
            {QStringLiteral("%/a.1.exr"), QStringLiteral("%/b.exr")}, "%/a.1.exr");
        row("folder for a file", FilePathEdit::SaveFile, "/x/c.exr", {QStringLiteral("%/sub")},
            "%/sub/c.exr");
        row("file for a folder", FilePathEdit::Folder, "/x", {QStringLiteral("%/a.1.exr")}, "%");
        row("folder", FilePathEdit::Folder, "/x", {QStringLiteral("%/sub")}, "%/sub");
        row("other kind", FilePathEdit::OpenFile, "/x", {QStringLiteral("%/notes.txt")}, "");
        row("any", FilePathEdit::Any, "/x", {QStringLiteral("%/sub")}, "%/sub");
    }

    void drops() {
        QFETCH(int, kind);
        QFETCH(QString, before);
        QFETCH(QStringList, dropped);
        QFETCH(QString, after);
        TempFolder folder;
        const QString path = QString::fromStdString(folder.utf8());
        std::filesystem::create_directory(folder.path() / "sub");
        std::ofstream(folder.path() / "a.1.exr") << "x";
        Stage stage;
        stage.field.setKind(static_cast<FilePathEdit::Kind>(kind));
        stage.field.setAcceptsSequences(true);
        stage.field.setNameFilters({QStringLiteral("Images (*.exr *.dpx)")});
        stage.field.setPath(before);
        stage.take();
        QByteArray list;
        for (const QString& each : dropped)
            list += "file://" + QString(each).replace(QLatin1Char('%'), path).toUtf8() + "\r\n";
        QMimeData data;
        data.setData(QStringLiteral("text/uri-list"), list);
        QCOMPARE(dropOn(stage.field, data), !after.isEmpty());
        const QString wanted = after.replace(QLatin1Char('%'), path);
        QTRY_COMPARE(stage.told, wanted.isEmpty() ? QString() : wanted + QStringLiteral(";F"));
    }

    void checks_data() {
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("validity");
        QTest::addColumn<bool>("says");
        const auto row = [](FilePathEdit::Kind kind, const char* name,
                            FilePathEdit::Validity validity, bool says) {
            QTest::addRow("%d %s", int(kind), name)
                << int(kind) << QString::fromLatin1(name) << int(validity) << says;
        };
        row(FilePathEdit::OpenFile, "a.1.exr", FilePathEdit::Valid, false);
        row(FilePathEdit::OpenFile, "a.#.exr", FilePathEdit::Valid, false);
        row(FilePathEdit::OpenFile, "sub", FilePathEdit::WrongKind, true);
        row(FilePathEdit::OpenFile, "none", FilePathEdit::Missing, true);
        row(FilePathEdit::SaveFile, "a.1.exr", FilePathEdit::Valid, true);
        row(FilePathEdit::SaveFile, "none", FilePathEdit::Valid, false);
        row(FilePathEdit::SaveFile, "none/none", FilePathEdit::Missing, true);
        row(FilePathEdit::Folder, "sub", FilePathEdit::Valid, false);
        row(FilePathEdit::Folder, "a.1.exr", FilePathEdit::WrongKind, true);
        row(FilePathEdit::Any, "sub", FilePathEdit::Valid, false);
    }

    void checks() {
        QFETCH(int, kind);
        QFETCH(QString, name);
        QFETCH(int, validity);
        QFETCH(bool, says);
        TempFolder folder;
        std::filesystem::create_directory(folder.path() / "sub");
        std::ofstream(folder.path() / "a.1.exr") << "x";
        FilePathEdit field;
        field.setKind(static_cast<FilePathEdit::Kind>(kind));
        field.setBaseFolder(QString::fromStdString(folder.utf8()));
        field.setPath(name);
        auto* timer = field.findChild<QTimer*>(QStringLiteral("check"));
        QVERIFY(!timer->isActive()); // nobody asked for it
        field.setChecks(true);
        QVERIFY(timer->isActive());
        timer->start(0);
        QTRY_COMPARE(int(field.validity()), validity);
        QCOMPARE(!field.validityText().isEmpty(), says);
        field.setPath(QString());
        QCOMPARE(field.validity(), FilePathEdit::NotChecked);
    }

    void theClearButtonEdits() {
        Stage stage;
        stage.field.setClearButtonEnabled(true);
        stage.field.setPath(QStringLiteral("/a"));
        stage.take();
        QToolButton* clear = nullptr;
        for (auto* const button : stage.field.findChildren<QToolButton*>()) {
            if (!button->actions().isEmpty() && button->actions().front()->text().isEmpty())
                clear = button;
        }
        QVERIFY(clear);
        clear->click();
        QCOMPARE(stage.take(), QStringLiteral(";F"));
        clear->click(); // nothing is left
        stage.field.setText(QStringLiteral("/host"));
        QCOMPARE(stage.take(), QStringLiteral("/host;"));
    }

    // The example of a parameter: what is edited goes there, once, and its value is shown.
    void bindsToAParameter() {
        QObject project;
        project.setObjectName(QStringLiteral("/a"));
        PropertyParameter parameter(&project, "objectName");
        Stage stage;
        QVERIFY(ParameterBinding::bind(&stage.field, &parameter));
        QCOMPARE(stage.field.path(), QStringLiteral("/a"));
        type(stage.field, QStringLiteral("/b"));
        sendKey(stage.field, Qt::Key_Return);
        QCOMPARE(project.objectName(), QStringLiteral("/b"));
        project.setObjectName(QStringLiteral("/c"));
        QCOMPARE(stage.field.path(), QStringLiteral("/c"));
    }
};

KXUI_TEST(FilePathEditTest);
#include "FilePathEditTest.moc"
