#include "TestImages.h"

#include <support/Input.h>
#include <support/TestRegistry.h>

#include "panels/ColorPanel.h"
#include "panels/SwatchKeeper.h"
#include "panels/ViewerCanvas.h"
#include "panels/ViewerPanel.h"
#include "play/Session.h"

#include <KxUI/picker/ColorPicker.h>
#include <KxUI/undo/MultiStackUndoGroup.h>

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

#include <cmath>

using namespace Kestrel::Workbench;
using Kestrel::Base::TimeBase;
namespace UI = Kestrel::UI;

class ColorPanelTest : public QObject {
    Q_OBJECT

private:
    static void writeFile(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }
    static QByteArray readFile(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private slots:
    void initTestCase() { QFile::remove(SwatchKeeper::standardPath()); }

    void gains() {
        const UI::ColorValue warm{0.4F, 0.3F, 0.1F, 1.0F};
        GainColor before;
        before.value = 2.0F;
        const auto tint = ColorPanel::tintOf(warm, before);
        QVERIFY(tint && tint->value == 2.0F && std::fabs(tint->saturation - 0.75F) < 1e-6F);
        const Factors factors = gainFactors(*ColorPanel::greyingOf(warm, before));
        QVERIFY(std::fabs(factors[0] * warm.red - factors[1] * warm.green) < 1e-5F);
        QVERIFY(std::fabs(factors[0] * warm.red - factors[2] * warm.blue) < 1e-5F);
        for (const UI::ColorValue& bad : {UI::ColorValue{0, 0, 0, 1}, UI::ColorValue{1, -1, 1, 1},
                                          UI::ColorValue{1, std::nanf(""), 1, 1}})
            QVERIFY(!ColorPanel::greyingOf(bad, before));
        QVERIFY(!ColorPanel::tintOf({0, 0, 0, 1}, before));
        QVERIFY(ColorPanel::tintOf({1, 0, 0, 1}, before));
    }

    // From the viewer the light of the file, whatever the grade makes of it.
    void takesLightOfTheFrame() {
        QTemporaryDir folder;
        Kestrel::Test::TestImage image;
        image.values = {4.0F, 0.5F, 0.25F};
        QVERIFY(image.write(folder.filePath(QStringLiteral("a.1.exr"))));
        Session session(TimeBase(24, false), std::size_t(64) << 20);
        session.open(
            Sequence(QStringLiteral("a.#.exr"), folder.path().toStdString(), {{1, "a.1.exr"}}), 1);
        Grade dark;
        dark.exposure = -3.0F;
        session.grades()->edit(dark, QStringLiteral("Exposure"));
        ViewerPanel viewer(&session);
        ColorPanel panel(&session);
        viewer.setGeometry(0, 0, 320, 240);
        panel.setGeometry(400, 0, 300, 700);
        viewer.show();
        panel.show();
        QTRY_VERIFY(session.isSettled() && !session.isLoading());
        auto* picker = panel.findChild<UI::ColorPicker*>();
        auto* canvas = viewer.findChild<ViewerCanvas*>();
        picker->startSampling();
        QVERIFY(picker->isSampling());
        QTest::mouseClick(canvas, Qt::LeftButton, {}, canvas->rect().center());
        QVERIFY(!picker->isSampling());
        QCOMPARE(picker->color(), (UI::ColorValue{4.0F, 0.5F, 0.25F, 1.0F}));
        QCOMPARE(picker->swatches()->color(0), picker->color());
        // The grade is as it was until it is asked for.
        QVERIFY(session.grades()->grade() == dark);
        const auto buttons = panel.findChildren<QToolButton*>();
        const auto grey = std::find_if(buttons.begin(), buttons.end(), [](QToolButton* button) {
            return button->text() == QLatin1String("Make Grey");
        });
        (*grey)->click();
        const Factors factors = gainFactors(session.grades()->grade().gain);
        QVERIFY(std::fabs(factors[0] * 4.0F - factors[2] * 0.25F) < 1e-5F);
        session.grades()->group()->undo();
        QVERIFY(session.grades()->grade() == dark);
    }

    void swatchesAreKept() {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("new/swatches"));
        {
            UI::SwatchModel swatches;
            SwatchKeeper keeper(&swatches, path);
            swatches.append({1, 2, 3, 1}, QStringLiteral("early"));
            QTRY_VERIFY(QFile::exists(path));
            swatches.append({4, 5, 6, 1}, QStringLiteral("late"));
        }
        UI::SwatchModel again;
        const SwatchKeeper keeper(&again, path);
        QTRY_COMPARE(again.count(), 2);
        QCOMPARE(again.name(1), QStringLiteral("late"));
        // What is something else is left alone.
        const QString other = folder.filePath(QStringLiteral("other"));
        QFile file(other);
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("mine") == 4);
        file.close();
        {
            UI::SwatchModel swatches;
            SwatchKeeper strange(&swatches, other);
            QSignalSpy failed(&strange, &SwatchKeeper::failed);
            QTRY_COMPARE(failed.count(), 1);
            swatches.append({1, 1, 1, 1});
        }
        UI::SwatchModel swatches;
        SwatchKeeper third(&swatches, other);
        QSignalSpy failed(&third, &SwatchKeeper::failed);
        QTRY_COMPARE(failed.count(), 1);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("mine"));
    }

    // What could not be read of the file stays beside it.
    void brokenLinesAreKept() {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("swatches"));
        const QByteArray before = "KxUI swatches\n1 2 3 1 good\n1 2 broken\n";
        writeFile(path, before);
        UI::SwatchModel swatches;
        QString told;
        {
            SwatchKeeper keeper(&swatches, path);
            connect(&keeper, &SwatchKeeper::failed, [&](const QString& text) { told = text; });
            QTRY_COMPARE(swatches.count(), 1);
            QVERIFY(told.contains(QLatin1String("line 3")));
            swatches.append({4, 5, 6, 1});
            QTRY_VERIFY(readFile(path).contains("4 5 6 1"));
            QTRY_VERIFY(told.contains(QLatin1String("damaged-1")));
            swatches.append({7, 8, 9, 1});
            QTRY_VERIFY(readFile(path).contains("7 8 9 1"));
        }
        QCOMPARE(readFile(path + QStringLiteral(".damaged-1")), before);
        QVERIFY(!QFile::exists(path + QStringLiteral(".damaged-2")));
    }

    void palettes() {
        QTemporaryDir folder;
        const QString palette = folder.filePath(QStringLiteral("p.gpl"));
        writeFile(palette, "GIMP Palette\n255 0 0\tred\nnothing\n0 128 255\n");
        UI::SwatchModel swatches;
        SwatchKeeper keeper(&swatches, folder.filePath(QStringLiteral("swatches")));
        QSignalSpy failed(&keeper, &SwatchKeeper::failed);
        swatches.append({4, 5, 6, 1}, QStringLiteral("bright"));
        keeper.importFile(palette);
        QTRY_COMPARE(swatches.count(), 3);
        QCOMPARE(swatches.name(1), QStringLiteral("red"));
        QCOMPARE(swatches.color(1), (UI::ColorValue{1, 0, 0, 1}));
        QCOMPARE(failed.count(), 1);
        QVERIFY(failed.takeFirst().first().toString().contains(QLatin1String("line 3")));
        for (const char* name : {"out.gpl", "out"})
            keeper.exportFile(folder.filePath(QLatin1String(name)));
        QTRY_VERIFY(readFile(folder.filePath(QStringLiteral("out"))).contains("4 5 6 1 bright"));
        QVERIFY(readFile(folder.filePath(QStringLiteral("out.gpl"))).startsWith("GIMP Palette"));
        keeper.importFile(folder.path());
        keeper.exportFile(folder.path());
        QTRY_COMPARE(failed.count(), 2);
        QCOMPARE(swatches.count(), 3);
        // Until all of it is written, the folder can not go.
        QTRY_COMPARE(readFile(folder.filePath(QStringLiteral("swatches"))), swatches.content());
    }
};

KXUI_TEST(ColorPanelTest);
#include "ColorPanelTest.moc"
