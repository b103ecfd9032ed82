#include "TestImages.h"

#include <support/TestRegistry.h>

#include <QImage>

#include <set>

/** The program itself, as its user starts it: on real files, without a screen, in the C locale. */
class TourTest : public QObject {
    Q_OBJECT

private:
    struct Result {
        int code = -1;
        QString output;
        QString errors;
    };

    static Result start(const QString& program, const QStringList& arguments) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("LC_ALL", "C");
        environment.remove("QT_QPA_PLATFORM");
        environment.remove("DISPLAY");
        environment.remove("WAYLAND_DISPLAY");
        process.setProcessEnvironment(environment);
        process.start(program, arguments);
        if (!process.waitForFinished(240000) || process.exitStatus() != QProcess::NormalExit)
            return {};
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    static bool hasLine(const QString& output, const QString& pattern) {
        const QRegularExpression line(pattern, QRegularExpression::MultilineOption |
                                                   QRegularExpression::UseUnicodePropertiesOption);
        return line.match(output).hasMatch();
    }

    /** Whether there is more to see than a few flat areas. */
    static bool hasContent(const QImage& image) {
        std::set<QRgb> colors;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                colors.insert(image.pixel(x, y));
        }
        return colors.size() >= 8;
    }

private slots:
    void tour() {
        const QTemporaryDir root;
        const QString shots = root.filePath(QString::fromUtf8("Aufnahmen für heute"));
        QVERIFY(QDir().mkpath(shots));
        const QDir folder(shots);
        for (int frame = 1; frame <= 20; ++frame) {
            if (frame < 8 || frame > 11)
                QVERIFY(Kestrel::Test::writeImage(folder.filePath(
                    QStringLiteral("comp.%1.exr").arg(frame, 4, 10, QLatin1Char('0')))));
            QVERIFY(Kestrel::Test::writeImage(folder.filePath(
                QString::fromUtf8("höhe_%1.png").arg(frame, 3, 10, QLatin1Char('0')))));
        }
        QVERIFY(Kestrel::Test::truncate(folder.filePath(QString::fromUtf8("höhe_007.png")), 0));

        const QString out = root.filePath("out");
        const Result result =
            start(KXUI_WORKBENCH_TOOL, {shots, "--fps", "30000/1001", "--tour", out});
        QVERIFY2(result.code == 0, qPrintable(result.output + result.errors));
        QVERIFY2(hasLine(result.output, "^comp\\.####\\.exr +1.20 +4 .*16 of 16 +0 "),
                 qPrintable(result.output));
        QVERIFY2(hasLine(result.output, "^h.he_###\\.png +1.20 .*19 of 20 +1 "),
                 qPrintable(result.output));

        const QStringList pictures = QDir(out).entryList(QDir::Files);
        for (const char* widget :
             {"main-window", "sequence-list", "viewer", "timeline", "viewer-missing",
              "viewer-unreadable", "viewer-graded", "grade-panel", "history-panel", "profiler",
              "layout-review", "layout-grade", "layout-wide", "layout-scopes", "floating-pane",
              "scopes-panel", "statistics-panel", "viewer-region"}) {
            for (const char* theme : {"dark", "light"}) {
                QSize sizes[2];
                for (const int scale : {1, 2}) {
                    const QString name =
                        QStringLiteral("%1-%2-%3x.png").arg(widget, theme).arg(scale);
                    QVERIFY2(pictures.contains(name), qPrintable(name));
                    const QImage image(QDir(out).filePath(name));
                    QVERIFY2(hasContent(image), qPrintable(name));
                    sizes[scale - 1] = image.size();
                }
                QCOMPARE(sizes[1], sizes[0] * 2);
            }
        }
    }

    void refusals() {
        QCOMPARE(start(KXUI_WORKBENCH, {"--help"}).code, 0);
        QCOMPARE(start(KXUI_WORKBENCH, {"--fps", "fast"}).code, 2);
        const Result missing = start(KXUI_WORKBENCH, {"/no/such/folder"});
        QCOMPARE(missing.code, 2);
        QVERIFY(missing.errors.contains("/no/such/folder"));
        // A window needs a screen.
        QCOMPARE(start(KXUI_WORKBENCH, {"/"}).code, 1);
        QCOMPARE(start(KXUI_WORKBENCH_TOOL, {"/", "--robot", "1:1"}).code, 1);
        QCOMPARE(start(KXUI_WORKBENCH_TOOL, {"/", "--tour", "/proc/none"}).code, 1);
        for (const QStringList& bad :
             {QStringList{"/"}, QStringList{"--tour", ""}, QStringList{"--robot", "1"},
              QStringList{"--robot", "1:1", "--tour", "out"}})
            QCOMPARE(start(KXUI_WORKBENCH_TOOL, bad).code, 2);
    }
};

KXUI_TEST(TourTest);
#include "TourTest.moc"
