#include <KxUI/browse/FavoritesModel.h>
#include <KxUI/browse/FileBrowser.h>
#include <KxUI/browse/FileChooserDialog.h>
#include <KxUI/browse/FolderQuestion_p.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/settings/AppSettings.h>

#include <support/Input.h>
#include <support/TempFolder.h>
#include <support/TestRegistry.h>

#include "../files/HangingCalls.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QSignalSpy>
#include <QSpinBox>
#include <QtTest>

#include <fstream>

using namespace Kestrel;
using namespace Kestrel::UI;
using Dialog = FileChooserDialog;

namespace {

const QStringList filters{"Images (*.exr *.dpx)", "Notes (*.txt)"};

QLineEdit* field(const Dialog& dialog, const char* name = "name") {
    return dialog.findChild<QLineEdit*>(name);
}

QAbstractButton* button(const Dialog& dialog, const char* name) {
    return dialog.findChild<QAbstractButton*>(name);
}

bool hasSheet(const Dialog& dialog) {
    return dialog.findChild<QWidget*>("sheet")->isVisible();
}

QString notice(const Dialog& dialog) {
    return dialog.findChild<QWidget*>("notice")->accessibleName();
}

void type(const Dialog& dialog, const QString& text, const char* name = "name") {
    field(dialog, name)->setFocus();
    field(dialog, name)->selectAll();
    QTest::keyClicks(field(dialog, name), text);
}

/** A key to whatever has the focus, as the window system sends it. */
void press(Dialog& dialog, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* const focus = dialog.focusWidget();
    QTest::keyClick(focus ? focus : &dialog, key, modifiers);
}

} // namespace

class FileChooserDialogTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<Test::TempFolder> m_root;

    QByteArray root() const { return QByteArray::fromStdString(m_root->utf8()); }
    QByteArray folder() const { return root() + "/shot"; }
    QByteArray path(const char* name) const { return folder() + '/' + name; }
    void write(const QByteArray& name) const { std::ofstream(path(name).toStdString()) << "-"; }

    std::unique_ptr<Dialog> make(Dialog::Mode mode, const QByteArray& name = {}) const {
        auto dialog = std::make_unique<Dialog>(mode);
        dialog->setFolder(folder());
        dialog->setFilters(filters);
        if (!name.isEmpty())
            dialog->setFileName(name);
        return dialog;
    }

    static bool show(Dialog& dialog) {
        dialog.show();
        dialog.activateWindow();
        FileListModel* const model = dialog.browser()->model();
        return QTest::qWaitForWindowActive(&dialog) && QTest::qWaitFor([&] {
                   return !model->gatherer()->isGathering() && model->rowCount() > 0 &&
                          model->listing() == model->gatherer()->listing();
               });
    }

private Q_SLOTS:
    void initTestCase() { AppSettings().clear(); }
    void init() {
        m_root = std::make_unique<Test::TempFolder>();
        QDir(root()).mkpath("shot/lib");
        for (int frame = 1001; frame <= 1010; ++frame)
            write("plate." + QByteArray::number(frame) + ".exr");
        for (const char* name : {"notes.txt", "a b.txt", "comp_v001.exr", "odd\xff.exr"})
            write(name);
    }
    void cleanup() { m_root.reset(); }

    void opensByKeys() {
        const auto dialog = make(Dialog::OpenFile);
        QVERIFY(show(*dialog));
        QSignalSpy chosen(dialog.get(), &Dialog::chosen);
        QVERIFY(dialog->browser()->isAncestorOf(dialog->focusWidget()));
        press(*dialog, Qt::Key_Return); // nothing is current
        QVERIFY(dialog->isVisible());
        press(*dialog, Qt::Key_N, Qt::AltModifier);
        QTRY_VERIFY(field(*dialog)->hasFocus());
        type(*dialog, "plate.%04d.exr");
        QVERIFY(field(*dialog, "frames")->isVisible());
        type(*dialog, "1003-1006x2", "frames");
        QTRY_COMPARE(notice(*dialog), QString());
        press(*dialog, Qt::Key_Return);
        QCOMPARE(chosen.count(), 1);
        QVERIFY(!dialog->isVisible() && dialog->result() == QDialog::Accepted);
        const auto choice = dialog->choices().at(0);
        QCOMPARE(choice.path, path("plate.####.exr"));
        QVERIFY(choice.isSequence && choice.frames == Base::FrameRange(1003, 1006, 2));
        QCOMPARE(choice.info.frameName(), QString("plate.####.exr"));
        QCOMPARE(FavoritesModel().recentPlaces().value(0), folder());
    }

    void goesToFoldersAndFilters() {
        const auto dialog = make(Dialog::OpenFile);
        QVERIFY(show(*dialog));
        type(*dialog, "*.txt");
        press(*dialog, Qt::Key_Return);
        QTRY_COMPARE(dialog->browser()->model()->rowCount(), 3);
        QVERIFY(button(*dialog, "ownFilter")->isVisible());
        button(*dialog, "ownFilter")->click();
        QTRY_COMPARE(dialog->browser()->model()->rowCount(), 4);
        type(*dialog, "none.exr");
        press(*dialog, Qt::Key_Return);
        QTRY_VERIFY2(notice(*dialog).contains("none.exr"), qPrintable(notice(*dialog)));
        type(*dialog, "lib");
        press(*dialog, Qt::Key_Return);
        QTRY_COMPARE(dialog->folder(), path("lib"));
        type(*dialog, "../notes.txt"); // in a folder that is not shown
        press(*dialog, Qt::Key_Return);
        QTRY_VERIFY(!dialog->isVisible());
        QCOMPARE(dialog->choices().at(0).path, path("notes.txt"));
    }

    void keepsBytes() {
        const auto dialog = make(Dialog::OpenFile, "odd\xff.exr");
        QCOMPARE(dialog->choices().at(0).path, path("odd\xff.exr")); // before anything was listed
        QVERIFY(show(*dialog));
        QTRY_COMPARE(dialog->browser()->selection().size(), std::size_t(1));
        QCOMPARE(dialog->choices().at(0).path, path("odd\xff.exr"));
        dialog->accept();
        QTRY_COMPARE(dialog->result(), int(QDialog::Accepted));
        QCOMPARE(dialog->choices().at(0).info.rawFileName(), "odd\xff.exr");
        const auto several = make(Dialog::OpenFiles);
        QVERIFY(show(*several));
        type(*several, "\"notes.txt\" \"a b.txt\"");
        several->accept(); // the filter hides them: the folder is asked
        QTRY_COMPARE(several->result(), int(QDialog::Accepted));
        QCOMPARE(several->choices().at(1).path, path("a b.txt"));
    }

    void aSingleFrameSelectsItsSequence() {
        const auto dialog = make(Dialog::OpenFile, "plate.1004.exr");
        QVERIFY(show(*dialog));
        QTRY_COMPARE(field(*dialog)->text(), QString("plate.####.exr"));
        QVERIFY(dialog->choices().at(0).frames == Base::FrameRange(1001, 1010));
    }

    void asksBeforeReplacing() {
        const auto dialog = make(Dialog::SaveFile, "comp_v001.exr");
        QVERIFY(show(*dialog));
        QCOMPARE(field(*dialog)->selectedText(), QString("comp_v001"));
        QTRY_COMPARE(notice(*dialog), QString("This file exists and would be replaced."));
        QSignalSpy chosen(dialog.get(), &Dialog::chosen);
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) { // both take it back
            press(*dialog, Qt::Key_Return);
            QTRY_VERIFY(hasSheet(*dialog));
            QVERIFY(button(*dialog, "sheetCancel")->hasFocus());
            press(*dialog, key);
            QVERIFY(!hasSheet(*dialog) && dialog->isVisible() && field(*dialog)->hasFocus());
        }
        press(*dialog, Qt::Key_Return);
        QTRY_VERIFY(hasSheet(*dialog));
        button(*dialog, "sheetNextVersion")->click();
        QCOMPARE(field(*dialog)->text(), QString("comp_v002.exr"));
        QVERIFY(!hasSheet(*dialog) && chosen.isEmpty());
        type(*dialog, "comp_v001.exr");
        press(*dialog, Qt::Key_Return);
        QTRY_VERIFY(hasSheet(*dialog));
        press(*dialog, Qt::Key_R);
        QCOMPARE(chosen.count(), 1);
        QVERIFY(dialog->choices().at(0).replacesFile);
    }

    void savesSequences() {
        const auto dialog = make(Dialog::SaveFile, "plate");
        dialog->setFrameRange(Base::FrameRange(1009, 1020));
        dialog->setPatternStyle(FileNames::Style::Printf);
        QVERIFY(show(*dialog));
        QTest::keyClick(dialog->findChild<QWidget*>("as"), Qt::Key_Home);
        QCOMPARE(field(*dialog)->text(), QString("plate.%04d"));
        QTRY_COMPARE(notice(*dialog), QString("2 frames exist and would be replaced (1009-1010)."));
        dialog->findChild<QSpinBox*>("padding")->setValue(6);
        QCOMPARE(field(*dialog)->text(), QString("plate.%06d"));
        QCOMPARE(dialog->padding(), 6);
        QTRY_COMPARE(notice(*dialog), QString());
        dialog->accept();
        QTRY_COMPARE(dialog->result(), int(QDialog::Accepted));
        const auto choice = dialog->choices().at(0);
        QCOMPARE(choice.path, path("plate.%06d.exr"));
        QVERIFY(choice.isSequence && choice.frames == Base::FrameRange(1009, 1020));
        QVERIFY(choice.replaces.empty() && !choice.replacesFile);
    }

    void versionsAndSuffixes() {
        const auto dialog = make(Dialog::SaveFile, "comp_v001.exr");
        QVERIFY(show(*dialog));
        press(*dialog, Qt::Key_Plus, Qt::ControlModifier);
        press(*dialog, Qt::Key_Plus, Qt::ControlModifier);
        QCOMPARE(field(*dialog)->text(), QString("comp_v003.exr"));
        press(*dialog, Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(field(*dialog)->text(), QString("comp_v002.exr"));
        auto* const filter = dialog->findChild<QComboBox*>("filter");
        QTest::keyClick(filter, Qt::Key_Down);
        QCOMPARE(field(*dialog)->text(), QString("comp_v002.txt"));
        QCOMPARE(filter->count(), 3);
        type(*dialog, "v004/comp");
        dialog->accept();
        QTRY_COMPARE(notice(*dialog), QString("This folder does not exist."));
        dialog->setCreatesFolders(true);
        QTRY_VERIFY(notice(*dialog).contains("will be made"));
        dialog->accept();
        QTRY_COMPARE(dialog->result(), int(QDialog::Accepted));
        QCOMPARE(dialog->choices().at(0).path, path("v004/comp.txt"));
        QVERIFY(QDir(path("v004")).exists());
    }

    void aFolderThatDoesNotAnswer() {
        const auto dialog = make(Dialog::SaveFile, "new.exr");
        QVERIFY(show(*dialog));
        dialog->findChild<FolderQuestion*>()->setDeadline(50);
        Test::HangingCalls hanging(folder().toStdString());
        dialog->accept();
        QCOMPARE(button(*dialog, "accept")->text(), QString("Checking\u2026"));
        QTRY_VERIFY(hasSheet(*dialog));
        press(*dialog, Qt::Key_Escape);
        QVERIFY(!hasSheet(*dialog) && dialog->isVisible());
        dialog->accept();
        press(*dialog, Qt::Key_Escape); // gives the question up
        QVERIFY(dialog->isVisible());
        QCOMPARE(button(*dialog, "accept")->text(), QString("&Save"));
        dialog->accept();
        QTRY_VERIFY(hasSheet(*dialog));
        press(*dialog, Qt::Key_S);
        QCOMPARE(dialog->result(), int(QDialog::Accepted));
        QCOMPARE(dialog->choices().at(0).path, path("new.exr"));
    }

    void escapesOneStepAPress() {
        const auto dialog = make(Dialog::SaveFile, "comp_v001.exr");
        QVERIFY(show(*dialog));
        dialog->browser()->model()->setSearchText("comp");
        dialog->accept();
        QTRY_VERIFY(hasSheet(*dialog));
        for (int presses = 0; dialog->isVisible() && presses < 3; ++presses) {
            QVERIFY(presses == 0 || !hasSheet(*dialog));
            press(*dialog, Qt::Key_Escape);
        }
        QVERIFY(!dialog->isVisible() && dialog->result() == QDialog::Rejected);
    }

    void choosesFolders() {
        const auto dialog = make(Dialog::OpenFolder);
        QVERIFY(show(*dialog));
        QCOMPARE(dialog->browser()->model()->rowCount(), 1);
        dialog->accept();
        QCOMPARE(dialog->choices().at(0).path, folder());
        const auto other = make(Dialog::OpenFolder);
        QVERIFY(show(*other));
        type(*other, "none");
        other->accept();
        QTRY_COMPARE(notice(*other), QString("This folder does not exist."));
        other->browser()->select("lib");
        QTRY_COMPARE(field(*other)->text(), QString("lib"));
        other->accept();
        QTRY_COMPARE(other->result(), int(QDialog::Accepted));
        QCOMPARE(other->choices().at(0).path, path("lib"));
    }

    void hostsHaveAWord() {
        const auto dialog = make(Dialog::SaveFile, "new");
        auto* const extra = new QCheckBox;
        dialog->setExtraWidget(extra);
        dialog->setAcceptButtonText("Render");
        dialog->setSchemes({"asset"});
        bool refuses = true;
        dialog->setValidator([&](const std::vector<Dialog::Choice>& choices) {
            return refuses && choices.at(0).path.endsWith("new.exr") ? QString("Not that one.")
                                                                     : QString();
        });
        QVERIFY(show(*dialog));
        QTRY_COMPARE(notice(*dialog), QString("Not that one."));
        dialog->accept();
        QTest::qWait(1);
        QTRY_VERIFY(dialog->isVisible() && button(*dialog, "accept")->text() == "Render");
        refuses = false;
        QWidget* const filter = dialog->findChild<QComboBox*>("filter");
        filter->setFocus();
        QTest::keyClick(filter, Qt::Key_Tab);
        QVERIFY(extra->hasFocus());
        QTest::keyClick(extra, Qt::Key_Tab);
        QVERIFY(button(*dialog, "cancel")->hasFocus());
        type(*dialog, "asset://shot/12");
        dialog->accept();
        QCOMPARE(dialog->choices().at(0).path, QByteArray("asset://shot/12"));
        const QPointer<QCheckBox> alive(extra);
        dialog->setExtraWidget(nullptr);
        QVERIFY(!alive);
    }

    void remembersByPurpose() {
        for (const bool first : {true, false}) {
            Dialog dialog(Dialog::OpenFile);
            dialog.setPurpose("open/plate");
            dialog.setFilters(filters);
            if (first)
                dialog.setFolder(folder());
            QCOMPARE(dialog.folder(), folder());
            QCOMPARE(dialog.currentFilter(), first ? 0 : 2);
            QVERIFY(show(dialog));
            if (!first)
                break;
            QTest::keyClick(dialog.findChild<QComboBox*>("filter"), Qt::Key_End);
            type(dialog, "notes.txt");
            dialog.accept();
            QTRY_COMPARE(dialog.result(), int(QDialog::Accepted));
        }
        AppSettings settings;
        QCOMPARE(settings.value("FileChooser/open%2Fplate/Recent").toStringList().size(), 1);
        Dialog other(Dialog::OpenFile);
        other.setPurpose("open-matte");
        QCOMPARE(other.folder(), QByteArray());
    }

    void opensWithoutWaiting() {
        int calls = 0;
        const auto open = [&] {
            auto* const dialog = Dialog::open(
                Dialog::OpenFile, nullptr, {}, filters,
                [&](const std::vector<Dialog::Choice>& choices) { calls += int(choices.size()); });
            dialog->setFolder(folder());
            return QPointer<Dialog>(dialog);
        };
        auto dialog = open();
        QVERIFY(dialog->isVisible() && show(*dialog));
        button(*dialog, "cancel")->click();
        QTRY_VERIFY(!dialog);
        QCOMPARE(calls, 0);
        dialog = open();
        QVERIFY(show(*dialog));
        type(*dialog, "notes.txt");
        dialog->accept();
        QTRY_VERIFY(!dialog);
        QCOMPARE(calls, 1);
    }

    void mayBeDeletedByWhatItTells() {
        const auto deletedBy = [&](auto connect, auto deed) {
            auto* const dialog = make(Dialog::SaveFile, "new.exr").release();
            QPointer<Dialog> alive(dialog);
            if (!show(*dialog))
                return false;
            connect(dialog);
            deed(dialog);
            return QTest::qWaitFor([&] { return !alive; });
        };
        const auto accept = [](Dialog* dialog) { dialog->accept(); };
        QVERIFY(deletedBy(
            [](Dialog* dialog) {
                connect(dialog, &Dialog::chosen, dialog, [dialog] { delete dialog; });
            },
            accept));
        QVERIFY(deletedBy(
            [](Dialog* dialog) {
                connect(dialog, &QDialog::accepted, dialog, [dialog] { delete dialog; });
            },
            accept));
        QVERIFY(deletedBy(
            [](Dialog* dialog) {
                dialog->setValidator([dialog](const auto&) {
                    delete dialog;
                    return QString();
                });
            },
            accept));
        QVERIFY(deletedBy(
            [](Dialog* dialog) {
                connect(dialog, &Dialog::folderChanged, dialog, [dialog] { delete dialog; });
            },
            [this](Dialog* dialog) { dialog->setFolder(root()); }));
    }
};

KXUI_TEST(FileChooserDialogTest);

#include "FileChooserDialogTest.moc"
