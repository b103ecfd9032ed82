#include "TestImages.h"

#include <support/TestRegistry.h>

#include "app/MainWindow.h"
#include "export/CaptureExport.h"
#include "export/SequenceExport.h"
#include "grade/PreparedGrade.h"
#include "media/FrameDecoder.h"
#include "panels/ExportOptions.h"

#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/progress/ProgressManager.h>

#include <QJsonDocument>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>
#include <QStatusBar>

#include <atomic>
#include <cerrno>
#include <thread>

using namespace Kestrel::Workbench;
using namespace Kestrel::UI;
using Kestrel::Base::Time;
using Kestrel::Base::TimeBase;

namespace {

std::error_code errorOf(int code) {
    return {code, std::generic_category()};
}

/** Red, green and blue of the first pixel of a file, as its numbers. */
std::vector<float> firstPixel(const std::string& path, OIIO::TypeDesc* type) {
    const auto input = OIIO::ImageInput::open(path);
    if (!input || input->spec().nchannels != 3)
        return {};
    *type = input->spec().format;
    std::vector<float> row(std::size_t(input->spec().width) * 3);
    if (!input->read_scanline(0, 0, OIIO::TypeDesc::FLOAT, row.data()))
        return {};
    row.resize(3);
    return row;
}

} // namespace

/** Writing graded frames: what is in the files, and what is left when something goes wrong. */
class ExportTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    Sequence m_shot; ///< frames 1 to 8 without 4
    ProgressManager m_tasks;
    std::unique_ptr<QTemporaryDir> m_target;

    ExportPlan plan(const std::string& name = "g.####.exr") const {
        ExportPlan plan;
        plan.sequence = m_shot;
        plan.grade.exposure = 1.0F;
        plan.first = 1;
        plan.last = 8;
        plan.folder = m_target->path().toStdString();
        plan.name = name;
        plan.format = *exportFormatOf(name, false);
        return plan;
    }

    /** What lies in the target, hidden files too; all of it must be whole. */
    QStringList files() const {
        QStringList names =
            QDir(m_target->path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
        for (QString& name : names) {
            const Frame frame = decodeFrame(m_target->filePath(name).toStdString(), 1);
            if (frame.state != Frame::State::Ready)
                name += " is damaged: " + frame.message;
        }
        return names;
    }

    ExportResult run(const ExportPlan& plan, const WriteFile& write = writeNewFile,
                     const QVector<ExportAnswer>& answers = {}) {
        SequenceExport work(plan, &m_tasks, "Export", nullptr, write);
        int asked = 0;
        connect(&work, &SequenceExport::failed, this,
                [&] { work.answer(answers.value(asked++, ExportAnswer::Stop)); });
        QSignalSpy finished(&work, &SequenceExport::finished);
        if (!QTest::qWaitFor([&] { return finished.count() > 0; }, 60000))
            return {};
        return finished[0][0].value<ExportResult>();
    }

private slots:
    void initTestCase() {
        m_shot = Kestrel::Test::writeSequence(m_folder.path(), 8, {4});
        QCOMPARE(m_shot.members().size(), std::size_t(7));
    }

    void init() { m_target = std::make_unique<QTemporaryDir>(); }

    void writesWhatTheGradeMakes() {
        OIIO::TypeDesc type;
        const ExportResult result = run(plan());
        QCOMPARE(result.written, std::size_t(7));
        QCOMPARE(result.missing, std::vector<Time>{4});
        QVERIFY(result.end == ExportResult::End::Complete && result.skipped.empty());
        QCOMPARE(files().size(), 7);
        // Light is doubled, and what is brighter than white is kept.
        const auto light = firstPixel(plan().path(3), &type);
        QVERIFY(type == OIIO::TypeDesc::HALF && light.size() == 3);
        QVERIFY(std::abs(light[0] - 0.36F) < 0.001F && light[1] == 1.0F && light[2] == 2.0F);

        ExportPlan screen = plan("g.####.png");
        screen.grade.balance.midtones = {0.8F, 1.0F, 1.3F};
        screen.grade.curves.setCurve(Grade::Green, [] {
            Kestrel::UI::Curve curve(Kestrel::UI::Curve::MaximumKnots, 3);
            curve.setKnot(1, {0.4F, 0.6F, false});
            return curve;
        }());
        screen.first = screen.last = 2;
        for (const bool deep : {false, true}) {
            screen.format = *exportFormatOf(screen.name, deep);
            screen.replaces = {{2, 2}};
            QCOMPARE(run(screen).written, std::size_t(1));
            const auto signal = firstPixel(screen.path(2), &type);
            QVERIFY(type == (deep ? OIIO::TypeDesc::UINT16 : OIIO::TypeDesc::UINT8));
            // The same codes as on the screen.
            const Frame source = decodeFrame(m_shot.path(2), 2, {true});
            const PreparedGrade prepared(screen.grade, source.samples->format);
            QRgb pixel = 0;
            prepared.gradeRow(source.samples->rgb.data(), &pixel, 1);
            const int codes[] = {qRed(pixel), qGreen(pixel), qBlue(pixel)};
            for (std::size_t c = 0; c < 3; ++c)
                QVERIFY(std::abs(signal[c] * 255.0F - float(codes[c])) <= (deep ? 0.51F : 0.01F));
        }
    }

    // Whoever cancels finds whole files only, and no trace of the one that was being written.
    void cancelLeavesWholeFiles() {
        std::atomic<int> count{0};
        std::atomic<SequenceExport*> running{nullptr}; // the work may be ahead of its maker
        SequenceExport work(plan(), &m_tasks, "Export", nullptr,
                            [&](const std::string& path, const FileBytes& bytes) {
                                if (++count < 3)
                                    return writeNewFile(path, bytes);
                                writeNewFile(path, FileBytes(bytes.begin(), bytes.begin() + 100));
                                while (!running)
                                    std::this_thread::yield();
                                running.load()->task()->cancel();
                                return errorOf(EIO);
                            });
        running = &work;
        QSignalSpy finished(&work, &SequenceExport::finished);
        QSignalSpy failed(&work, &SequenceExport::failed);
        QTRY_COMPARE(finished.count(), 1);
        const auto result = finished[0][0].value<ExportResult>();
        QVERIFY(result.end == ExportResult::End::Cancelled);
        QCOMPARE(failed.count(), 0); // nobody is asked about what is to end anyway
        QCOMPARE(work.task()->state(), ProgressTask::State::Cancelled);
        QCOMPARE(files().size(), int(result.written));
        QVERIFY(files().filter("damaged").isEmpty() && result.written >= 2);
        // While it is paused, too, and by its end.
        SequenceExport paused(plan("p.####.exr"), &m_tasks, "Export");
        paused.task()->pause();
    }

    void errorsAreAnswered() {
        // The disk is full from the third file on.
        std::atomic<int> count{0};
        const auto write = [&](const std::string& path, const FileBytes& bytes) {
            if (++count < 3)
                return writeNewFile(path, bytes);
            writeNewFile(path, FileBytes(bytes.begin(), bytes.begin() + 100));
            return errorOf(ENOSPC);
        };
        ExportResult result = run(plan(), write, {ExportAnswer::Skip, ExportAnswer::SkipAll});
        QCOMPARE(result.written, std::size_t(2));
        QCOMPARE(result.skipped.size(), std::size_t(5));
        QCOMPARE(result.skipped.front().why, QString("The disk is full."));
        QCOMPARE(files().size(), 2);
        QVERIFY(files().filter("damaged").isEmpty());
        QVERIFY2(exportDetails(result).contains("Not written: "),
                 qPrintable(exportDetails(result)));

        init();
        count = 0;
        result = run(plan(), write, {ExportAnswer::Stop});
        QVERIFY(result.end == ExportResult::End::Stopped && result.written >= 2);
        QCOMPARE(files().size(), int(result.written));

        init();
        count = 0;
        const auto once = [&](const std::string& path, const FileBytes& bytes) {
            return ++count == 3 ? errorOf(EDQUOT) : writeNewFile(path, bytes);
        };
        QCOMPARE(run(plan(), once, {ExportAnswer::Retry}).written, std::size_t(7));
        QCOMPARE(files().size(), 7);

        ExportPlan nowhere = plan();
        nowhere.folder += "/none";
        result = run(nowhere, writeNewFile, {ExportAnswer::SkipAll});
        QCOMPARE(result.written, std::size_t(0));
        QCOMPARE(result.skipped.front().why, QString("The folder is not there."));
    }

    // What nobody agreed to lose is kept.
    void keepsWhatIsThere() {
        ExportPlan first = plan();
        first.last = 2;
        run(first);
        QFile kept(QString::fromStdString(plan().path(2)));
        QVERIFY(kept.open(QIODevice::ReadOnly));
        const QByteArray before = kept.readAll();
        ExportPlan second = plan();
        second.grade.exposure = -1.0F;
        second.replaces = {{1, 1}};
        const ExportResult result = run(second, writeNewFile, {ExportAnswer::Skip});
        QCOMPARE(result.skipped.size(), std::size_t(1));
        QCOMPARE(result.skipped[0].frame, Time(2));
        kept.seek(0);
        QCOMPARE(kept.readAll(), before);
        OIIO::TypeDesc type;
        QCOMPARE(firstPixel(plan().path(1), &type).at(2), 0.5F);
        // By whatever name, the source is not written over.
        QVERIFY(QFile::link(m_folder.path(), m_target->filePath("alias")));
        ExportPlan itself = plan("s.####.exr");
        itself.folder += "/alias";
        itself.replaces = {{1, 8}};
        QVERIFY(!itself.overwritesItself());
        QCOMPARE(run(itself, writeNewFile, {ExportAnswer::SkipAll}).written, std::size_t(0));
    }

    void namesAreChecked() {
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        session.open(m_shot);
        const ExportOptions all(&session, ExportOptions::What::Sequence);
        const ExportOptions one(&session, ExportOptions::What::Frame);
        const std::string folder = m_target->path().toStdString() + "/";
        QVERIFY(all.problemWith(folder + "a.####.exr", true).isEmpty());
        QVERIFY(one.problemWith(folder + "a.PNG", false).isEmpty());
        QVERIFY(all.problemWith(folder + "a.exr", false).contains("####"));
        QVERIFY(one.problemWith(folder + "a.tif", false).contains(".png"));
        const std::string source = m_folder.path().toStdString() + "/s.####.exr";
        QVERIFY(all.problemWith(source, true).contains("another name"));
        session.model()->markIn();
        session.model()->setCurrentTime(3);
        session.model()->markOut();
        const ExportOptions marked(&session, ExportOptions::What::Sequence);
        QCOMPARE(marked.last(), Time(3));
        QCOMPARE(framesText({1, 2, 3, 5, 7, 8}), QString("1-3, 5, 7-8"));
    }

    void windowAsksBeforeItCloses() {
        MainWindow window(TimeBase(24, false), std::size_t(1) << 20, Theme::Dark);
        window.show();
        window.session()->open(m_shot);
        // One that waits for an answer goes on for as long as it takes.
        ExportPlan nowhere = plan();
        nowhere.folder += "/none";
        SequenceExport* work = window.exports()->start(nowhere);
        QTRY_VERIFY(window.findChild<QMessageBox*>("ExportError"));
        window.close();
        QVERIFY(window.isVisible());
        const auto question = window.findChild<QMessageBox*>("StillRunning");
        QVERIFY(question);
        QCOMPARE(question->defaultButton()->text(), QString("&Keep Running"));
        question->defaultButton()->click();
        QVERIFY(window.isVisible() && !work->task()->isCancelled());
        QTRY_VERIFY(!window.findChild<QMessageBox*>("StillRunning"));
        window.close();
        for (QPushButton* button : window.findChildren<QPushButton*>()) {
            if (button->text() == "&Cancel Them and Quit")
                button->click();
        }
        QTRY_VERIFY(!window.isVisible());
        QTRY_VERIFY(!window.findChild<QMessageBox*>("ExportError"));
    }

    void windowAsksAboutErrors() {
        const QTemporaryDir folder;
        ExportPlan broken = plan();
        broken.sequence = Kestrel::Test::writeSequence(folder.path(), 3, {});
        QVERIFY(Kestrel::Test::truncate(folder.filePath("s.0002.exr"), 0));
        MainWindow window(TimeBase(24, false), std::size_t(1) << 20, Theme::Dark);
        window.show();
        window.exports()->start(broken);
        QTRY_VERIFY(window.findChild<QMessageBox*>("ExportError"));
        auto* error = window.findChild<QMessageBox*>("ExportError");
        QVERIFY2(error->informativeText().contains("empty"), qPrintable(error->informativeText()));
        error->defaultButton()->click();
        QTRY_VERIFY(window.findChild<QMessageBox*>("ExportReport"));
        QCOMPARE(window.findChild<QMessageBox*>("ExportReport")->text().section(' ', 0, 2),
                 QString("2 of 3"));
        QCOMPARE(window.exports()->count(), 0);
        QCOMPARE(files(), QStringList({"g.0001.exr", "g.0003.exr"}));
    }

    void capturesAreWrittenAsTasks() {
        EventGraphView view;
        Session session(TimeBase(24, false), std::size_t(1) << 20);
        session.profiling()->addTo(&view);
        view.start(EventGraphView::unlimitedDuration, EventGraphMode::Forwards);
        session.open(m_shot);
        QTRY_VERIFY(session.isSettled());
        view.stop();
        const EventGraphSnapshot capture = view.snapshot();
        const auto task = [&](const QString& name, bool cancelled = false) {
            auto work = ProgressTask::create("Capture");
            const auto watched = work->watched();
            if (cancelled)
                work->cancel();
            exportCapture(std::move(work), capture, m_target->filePath(name));
            return QTest::qWaitFor([&] { return watched->isEnded(); }) ? watched : nullptr;
        };
        QCOMPARE(task("c.xml")->state(), ProgressTask::State::Finished);
        QCOMPARE(task("c.json")->state(), ProgressTask::State::Finished);
        QCOMPARE(task("none/c.xml")->state(), ProgressTask::State::Failed);
        QCOMPARE(task("cancelled.xml", true)->state(), ProgressTask::State::Cancelled);
        QVERIFY(!QFile::exists(m_target->filePath("cancelled.xml")));
        EventGraphView loaded;
        QVERIFY(loaded.load(m_target->filePath("c.xml")));
        QCOMPARE(int(loaded.tracks().size()), int(capture.tracks.size()));
        QFile trace(m_target->filePath("c.json"));
        QVERIFY(trace.open(QIODevice::ReadOnly));
        QVERIFY(QJsonDocument::fromJson(trace.readAll()).isObject());
    }

    void cacheIsFilledOnRequest() {
        MainWindow window(TimeBase(24, false), std::size_t(1) << 20, Theme::Dark);
        Session* session = window.session();
        session->open(m_shot);
        window.tasks()->fillCache(session);
        const auto task = window.tasks()->manager()->task(0);
        QVERIFY(task);
        QTRY_COMPARE(task->state(), ProgressTask::State::Finished);
        QCOMPARE(session->cache().count(), std::size_t(7));
        window.tasks()->fillCache(session);
        window.tasks()->manager()->cancelAll();
    }
};

KXUI_TEST(ExportTest);
#include "ExportTest.moc"
