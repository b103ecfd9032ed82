#include "Transforms.h"

#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/ColorSwatch.h>
#include <KxUI/picker/SwatchFile_p.h>
#include <KxUI/picker/SwatchModel.h>
#include <support/EditBracket.h>
#include <support/TestRegistry.h>

#include <QAbstractItemModelTester>
#include <QClipboard>
#include <QDropEvent>
#include <QMimeData>
#include <QTemporaryDir>
#include <QVector4D>

#include <cmath>

using namespace Kestrel::UI;

namespace {

const ColorValue Orange{1.0F, 0.5F, 0.0F, 1.0F};
const ColorValue Bright{12.5F, 0.18F, -0.25F, 0.5F};

DisplayTransform inverting(bool hasWayBack = true) {
    DisplayTransform transform = Kestrel::Test::inverseTransform();
    if (!hasWayBack)
        transform.fromDisplay = {};
    return transform;
}

QVector4D vectorOf(const ColorValue& color) {
    return {color.red, color.green, color.blue, color.alpha};
}

template <class Widget>
bool drop(Widget& widget, const QMimeData& data, const QPoint& at = QPoint(5, 5)) {
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(&widget, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent event(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&widget, &event);
    return event.isAccepted();
}

QByteArray fileBytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class SwatchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // The best of what the data have is taken; what can not be read is passed over.
    void mime() {
        const DisplayCall plain;
        const auto data = colorMime(Bright, plain, QStringLiteral("Key light"));
        QCOMPARE(vectorOf(*colorIn(data.get(), plain, 1.0F)), vectorOf(Bright));
        QCOMPARE(colorNameIn(data.get()), QStringLiteral("Key light"));
        QVERIFY(!data->text().startsWith(QLatin1Char('#'))); // no code for what no screen shows
        for (const char* broken : {"", "1 2 3", "1 2 3 nan", "1 2 3 4 5", "1 2 x 4"}) {
            data->setData(QStringLiteral("application/x-kxui-color"), broken);
            data->setColorData(QColor(255, 0, 0, 51));
            const auto read = colorIn(data.get(), plain, 1.0F);
            QVERIFY2(read && std::fabs(read->alpha - 0.2F) < 1e-4F && read->red == 1.0F, broken);
        }
        QMimeData text;
        text.setText(QStringLiteral("#ff8000"));
        QCOMPARE(colorIn(&text, plain, 0.25F)->alpha, 0.25F);
        QCOMPARE(colorIn(&text, DisplayCall(inverting()), 1.0F)->red, 0.0F);
        QVERIFY(!colorIn(&text, DisplayCall(inverting(false)), 1.0F));
        text.setText(QStringLiteral("no colour"));
        QVERIFY(!colorIn(&text, plain, 1.0F));
        QVERIFY(!colorIn(nullptr, plain, 1.0F));
    }

    void swatchTakesColors() {
        ColorSwatch swatch;
        Kestrel::Test::EditLog<ColorSwatch> log(
            swatch, [](const ColorSwatch& each) { return vectorOf(each.color()); });
        const auto data = colorMime(Bright, {});
        QVERIFY(drop(swatch, *data));
        QCOMPARE(vectorOf(swatch.color()), vectorOf(Bright));
        QCOMPARE(log.text, QStringLiteral("SEF"));
        swatch.copy();
        swatch.setColor(Orange);
        swatch.paste();
        QCOMPARE(vectorOf(swatch.color()), vectorOf(Bright));
        QCOMPARE(log.text, QStringLiteral("SEFSEF"));
        swatch.setReadOnly(true);
        swatch.setColor(Orange);
        swatch.paste();
        QVERIFY(!drop(swatch, *data));
        swatch.setReadOnly(false);
        QMimeData text;
        text.setText(QStringLiteral("words"));
        QVERIFY(!drop(swatch, text));
        swatch.setColor({std::nanf(""), 0.0F, 0.0F, 1.0F});
        QCOMPARE(vectorOf(swatch.color()), vectorOf(Orange));
        QCOMPARE(log.text, QStringLiteral("SEFSEF"));
        QAccessibleInterface* seen = QAccessible::queryAccessibleInterface(&swatch);
        QVERIFY(seen->text(QAccessible::Value).startsWith(QLatin1String("#ff8000")));
    }

    void swatchBracket() {
        Kestrel::Test::EditedWidget<ColorSwatch> edited;
        edited.make = [] {
            auto swatch = std::make_unique<ColorSwatch>();
            swatch->setColor(Orange);
            copyColor(Bright, {});
            return swatch;
        };
        edited.value = [](const ColorSwatch& swatch) { return vectorOf(swatch.color()); };
        edited.set = [](ColorSwatch& swatch, const QVariant& wanted) {
            const auto to = wanted.value<QVector4D>();
            swatch.setColor({to.x(), to.y(), to.z(), to.w()});
        };
        edited.another = QVector4D(0.5F, 0.25F, 0.125F, 1.0F);
        edited.once = [](ColorSwatch& swatch) { swatch.paste(); };
        edited.assisted = false;
        Kestrel::Test::checkEditBracket(edited);
    }

    // A click is none where a drag came of it, and a host may delete what is dragged.
    void swatchClickAndDrag() {
        static QPointer<ColorSwatch> victim;
        static int drags;
        drags = 0;
        const auto real =
            std::exchange(runColorDrag, [](std::unique_ptr<QMimeData> data, const QColor&, double) {
                ++drags;
                QVERIFY(data->hasColor());
                delete victim.data();
            });
        for (const bool isDeleted : {false, true}) {
            auto* swatch = new ColorSwatch;
            swatch->resize(40, 20);
            const QPointer<ColorSwatch> alive(swatch);
            QSignalSpy clicked(swatch, &ColorSwatch::clicked);
            QTest::mouseClick(swatch, Qt::LeftButton);
            Kestrel::Test::sendKey(*swatch, Qt::Key_Space);
            QCOMPARE(clicked.count(), 2);
            victim = isDeleted ? swatch : nullptr;
            QTest::mousePress(swatch, Qt::LeftButton, {}, QPoint(5, 5));
            Kestrel::Test::moveMouse(*swatch, QPoint(38, 5));
            QCOMPARE(alive.isNull(), isDeleted);
            if (alive) {
                QTest::mouseRelease(swatch, Qt::LeftButton, {}, QPoint(38, 5));
                QCOMPARE(clicked.count(), 2);
            }
            delete alive.data();
        }
        QCOMPARE(drags, 2);
        runColorDrag = real;
    }

    void readsFiles() {
        struct Row {
            const char* name;
            QByteArray bytes;
            int count; ///< -1: refused
            const char* error;
        };
        const Row rows[] = {
            {"own", "KxUI swatches\n1 0.5 0 1 Orange\n\n# no colour\n2e3 -1 0 0.5\n", 2, ""},
            {"broken", "KxUI swatches\r\n1 0.5 0\r\n1 2 3 4 good\r\nnan 0 0 1\r\n1 2 3x 1\r\n", 1,
             "2, 4, 5"},
            {"many broken", "KxUI swatches\n" + QByteArray("x\n").repeated(9), 0, "and 4 more"},
            {"palette", "GIMP Palette\nName: P\nColumns: 4\n#\n255 128   0\tOrange\n  0 0 0\n", 2,
             ""},
            {"palette's broken", "GIMP Palette\n256 0 0\n-1 0 0\n1 2\n1 2 3.5\n1 2 3", 1,
             "2, 3, 4, 5"},
            {"marked", "\xef\xbb\xbfKxUI swatches\n1 1 1 1", 1, ""},
            {"empty", "", -1, "no file of swatches"},
            {"another", "<svg/>", -1, "no file of swatches"},
            {"too many", "KxUI swatches\n" + QByteArray("1 1 1 1\n").repeated(16385), -1,
             "more than"},
            {"long numbers", "KxUI swatches\n1e999 0 0 1\n" + QByteArray("9").repeated(100000), 0,
             "2, 3"},
        };
        for (const Row& row : rows) {
            SwatchModel model;
            model.append(Orange);
            QString error;
            QCOMPARE(model.setContent(row.bytes, &error), row.count >= 0);
            QVERIFY2(model.count() == (row.count < 0 ? 1 : row.count), row.name);
            QVERIFY2(error.contains(QLatin1String(row.error)) && error.isEmpty() == !*row.error,
                     qPrintable(QLatin1String(row.name) + error));
        }
        SwatchModel model;
        QVERIFY(model.setContent("GIMP Palette\n255 0 51 Gr\xfc\xdf"
                                 "e  \n"));
        QCOMPARE(model.name(0), QStringLiteral("Gr\u00fc\u00dfe"));
        QCOMPARE(model.color(0).blue, 0.2F);
        model.setDisplayTransform(inverting());
        QVERIFY(model.setContent("GIMP Palette\n255 0 0\n"));
        QCOMPARE(vectorOf(model.color(0)), QVector4D(0, 1, 1, 1));
        model.setDisplayTransform(inverting(false));
        QVERIFY(!model.setContent("GIMP Palette\n0 0 0\n"));
        QCOMPARE(model.count(), 1);
    }

    void savesFiles() {
        QTemporaryDir folder;
        const QString own = folder.filePath(QStringLiteral("a.swatches"));
        const QString palette = folder.filePath(QStringLiteral("a.GPL"));
        SwatchModel model;
        model.append(Bright, QStringLiteral("  Key\nlight \u2600 "));
        model.append({1.0F / 3.0F, 1e-30F, 0.0F, 1.0F}, QStringLiteral("# 1 2 3"));
        model.append(Orange);
        QVERIFY(model.save(own));
        QVERIFY(model.save(palette));
        QVERIFY(fileBytes(palette).startsWith("GIMP Palette\nName: a\n#\n255  46   0\tKey light"));
        SwatchModel again;
        QString error;
        QVERIFY(again.load(own, &error));
        QVERIFY(error.isEmpty());
        QCOMPARE(again.count(), 3);
        for (int row = 0; row < 3; ++row) {
            QCOMPARE(vectorOf(again.color(row)), vectorOf(model.color(row)));
            QCOMPARE(again.name(row), model.name(row));
        }
        QVERIFY(again.load(palette));
        QCOMPARE(again.count(), 3);
        QCOMPARE(again.color(2).green, 128.0F / 255.0F);
    }

    // No trouble with files touches the list, or a good file.
    void troubleWithFiles() {
        QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("a"));
        writeFile(file, "good");
        SwatchModel model;
        model.append(Orange);
        const QString paths[] = {folder.filePath(QStringLiteral("none")), folder.path(),
                                 QStringLiteral("/dev/zero"), file};
        for (const QString& path : paths) {
            QString error;
            QVERIFY(!model.load(path, &error));
            QVERIFY(error.contains(path));
            QCOMPARE(model.count(), 1);
        }
        writeFile(file, QByteArray(5 << 20, 'x'));
        QVERIFY(!model.load(file));
        writeFile(file, "good");
        for (const QString& path : {file + QStringLiteral("/b"), folder.path()}) {
            QString error;
            QVERIFY(!model.save(path, &error));
            QVERIFY(error.contains(path));
        }
        QCOMPARE(fileBytes(file), QByteArray("good"));
        QFile::setPermissions(file, QFileDevice::ReadOwner);
        if (!QFileInfo(file).isWritable()) { // not so for the system's administrator
            QVERIFY(!model.save(file));
            QCOMPARE(fileBytes(file), QByteArray("good"));
        }
    }

    void model() {
        SwatchModel model;
        const QAbstractItemModelTester tester(&model);
        QSignalSpy counted(&model, &SwatchModel::countChanged);
        for (int i = 0; i < 5; ++i)
            QVERIFY(model.append({float(i), 0, 0, 7}, QString::number(i)));
        QCOMPARE(counted.count(), 5);
        QVERIFY(!model.append({INFINITY, 0, 0, 1}));
        const auto order = [&] {
            QString text;
            for (int row = 0; row < model.count(); ++row)
                text += model.name(row);
            return text;
        };
        QVERIFY(model.moveRow({}, 0, {}, 3));
        QCOMPARE(order(), QStringLiteral("12034"));
        QVERIFY(model.moveRow({}, 4, {}, 0));
        QCOMPARE(order(), QStringLiteral("41203"));
        QVERIFY(!model.moveRow({}, 1, {}, 2)); // where it is
        QVERIFY(!model.moveRow({}, 0, {}, 9));
        QVERIFY(model.removeRows(1, 2));
        QVERIFY(!model.removeRows(2, 2));
        QCOMPARE(order(), QStringLiteral("403"));
        const QModelIndex first = model.index(0);
        QVERIFY(model.setData(first, QStringLiteral(" a\tb ")));
        QCOMPARE(model.name(0), QStringLiteral("a b"));
        QVERIFY(model.setData(first, QVariant::fromValue(Orange), SwatchModel::ColorRole));
        QVERIFY(!model.setData(first, QStringLiteral("red"), SwatchModel::ColorRole));
        QCOMPARE(first.data(Qt::DecorationRole).value<QColor>(), QColor(255, 128, 0));
        const std::unique_ptr<QMimeData> data(model.mimeData({first}));
        QVERIFY(model.dropMimeData(data.get(), Qt::CopyAction, 2, 0, {}));
        QCOMPARE(model.name(2), QStringLiteral("a b"));
        model.clear();
        QCOMPARE(model.count(), 0);
    }

    void remembers() {
        SwatchModel model;
        model.append(Bright, QStringLiteral("kept"));
        for (int i = 0; i < 30; ++i)
            model.remember({float(i), 0, 0, 1});
        QCOMPARE(model.count(), SwatchModel::MostRemembered + 1);
        QCOMPARE(model.color(0).red, 29.0F);
        QCOMPARE(model.name(model.count() - 1), QStringLiteral("kept"));
        model.remember({20, 0, 0, 1});
        QCOMPARE(model.color(0).red, 20.0F);
        QCOMPARE(model.color(1).red, 29.0F);
        model.remember(Bright);
        model.remember({std::nanf(""), 0, 0, 1});
        QCOMPARE(model.count(), SwatchModel::MostRemembered + 1);
        QCOMPARE(model.color(0).red, 20.0F);
    }
};

KXUI_TEST(SwatchTest);
#include "SwatchTest.moc"
