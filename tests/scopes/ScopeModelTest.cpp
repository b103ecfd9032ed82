#include "Pictures.h"

#include <KxUI/scopes/ScopeModel.h>

#include <support/TestRegistry.h>

#include <QPointer>
#include <QtTest>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>

using namespace Kestrel::UI;
using Kestrel::Test::Picture;

namespace {

// Where threads wait until they are let through.
class Gate {
public:
    ~Gate() { open(); }

    void pass() {
        std::unique_lock<std::mutex> lock(m_mutex);
        ++m_waiting;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_isOpen; });
        --m_waiting;
    }
    void open() {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isOpen = true;
        m_changed.notify_all();
    }
    int waiting() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_waiting;
    }

private:
    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_isOpen = false;
    int m_waiting = 0;
};

ScopeEncoding gated(const std::shared_ptr<Gate>& gate) {
    ScopeEncoding encoding;
    encoding.transform = [gate](float*, int) { gate->pass(); };
    return encoding;
}

double mean(const ScopeModel& model) {
    return model.result()->statistics.channels[ScopeHistogram::Red].mean;
}

} // namespace

class ScopeModelTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_model = std::make_unique<ScopeModel>();
        m_model->setMaximumRate(1000);
    }
    void cleanup() { m_model.reset(); }

    void countsWhatIsNeeded() {
        QVERIFY(m_model->result());
        QVERIFY(m_model->isCurrent());
        m_model->setImage(Picture::ofGrey(51).image);
        QTest::qWait(5);
        QCOMPARE(m_model->passCount(), quint64(0));
        QVERIFY(!m_model->isCurrent());

        m_model->require(this, ScopeModel::Values);
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->passCount(), quint64(1));
        QCOMPARE(mean(*m_model), double(51 / 255.0F));
        QCOMPARE(m_model->result()->waveform.columns, 0);

        // Less is no reason to count again, and neither is the same; another range is.
        m_model->require(this, ScopeModel::Values | ScopeModel::Waveform);
        QTRY_VERIFY(m_model->isCurrent());
        m_model->require(this, ScopeModel::Waveform);
        QVERIFY(m_model->isCurrent());
        QCOMPARE(m_model->passCount(), quint64(2));
        WaveformRange fine;
        fine.values.bins = 1024;
        m_model->require(this, ScopeModel::Waveform, fine);
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->result()->waveform.luma.bins, 1024);
        QCOMPARE(m_model->passCount(), quint64(3));

        // Two views are served by one pass.
        QObject other;
        WaveformRange luma = fine;
        luma.channels = WaveformRange::YCbCr;
        m_model->require(&other, ScopeModel::Waveform | ScopeModel::Vectors, luma);
        QTRY_VERIFY(m_model->isCurrent());
        QVERIFY(m_model->result()->waveform.has(ScopeWaveform::Red));
        QVERIFY(m_model->result()->waveform.has(ScopeWaveform::Cr));
        QCOMPARE(m_model->passCount(), quint64(4));
    }

    void forgetsWhoIsGone() {
        auto view = std::make_unique<QObject>();
        m_model->require(view.get(), ScopeModel::Solid);
        QCOMPARE(m_model->requiredParts(), ScopeModel::Parts(ScopeModel::Solid));
        view.reset();
        QCOMPARE(m_model->requiredParts(), ScopeModel::Parts());
        m_model->setImage(Picture::ofGrey(1).image);
        QTest::qWait(5);
        QCOMPARE(m_model->passCount(), quint64(0));
    }

    void newestWins() {
        const auto gate = std::make_shared<Gate>();
        m_model->require(this, ScopeModel::Values);
        m_model->setEncoding(gated(gate));
        m_model->setImage(Picture::ofGrey(1).image);
        QTRY_VERIFY(gate->waiting() > 0);
        for (unsigned char code = 2; code <= 40; ++code)
            m_model->setImage(Picture::ofGrey(code).image);
        QVERIFY(!m_model->isCurrent());
        gate->open();
        QTRY_VERIFY(m_model->isCurrent());
        QVERIFY(mean(*m_model) > 39 / 255.0);
        // The one that ran, perhaps one that was set before the gate, and the last.
        QVERIFY(m_model->passCount() <= 3);
    }

    void rateIsKept() {
        m_model->setMaximumRate(0.1);
        m_model->require(this, ScopeModel::Values);
        m_model->setImage(Picture::ofGrey(1).image);
        QTRY_VERIFY(m_model->isCurrent());
        m_model->setImage(Picture::ofGrey(2).image);
        m_model->setImage(Picture::ofGrey(3).image);
        QTest::qWait(20);
        QCOMPARE(m_model->passCount(), quint64(1));
        QVERIFY(!m_model->isCurrent());
        m_model->setMaximumRate(1000);
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(mean(*m_model), double(3 / 255.0F));
        QCOMPARE(m_model->passCount(), quint64(2));
    }

    void transformThrows() {
        m_model->require(this, ScopeModel::Values);
        ScopeEncoding encoding;
        encoding.transform = [](float*, int) { throw std::runtime_error("no display"); };
        m_model->setEncoding(encoding);
        m_model->setImage(Picture::ofGrey(9).image);
        m_model->setSample({3, 3});
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->result()->error, std::string("no display"));
        QVERIFY(m_model->result()->values.isEmpty());
        QVERIFY(!m_model->sample());
        m_model->setEncoding(ScopeEncoding());
        QTRY_COMPARE(m_model->result()->error, std::string());
        QTRY_COMPARE(mean(*m_model), double(9 / 255.0F));
        QVERIFY(m_model->sample());
    }

    void destroyedWhileItCounts() {
        const auto gate = std::make_shared<Gate>();
        std::weak_ptr<const void> memory;
        {
            const Picture picture = Picture::ofGrey(7, 400, 400);
            memory = picture.image.owner;
            m_model->require(this, ScopeModel::Values | ScopeModel::Waveform);
            m_model->setEncoding(gated(gate));
            m_model->setImage(picture.image);
        }
        QTRY_VERIFY(gate->waiting() > 0);
        m_model.reset();
        // The pass still reads the picture.
        QVERIFY(!memory.expired());
        gate->open();
        QTRY_VERIFY(memory.expired());
    }

    void hangingPassIsReplaced() {
        const auto gate = std::make_shared<Gate>();
        m_model->require(this, ScopeModel::Values);
        m_model->setEncoding(gated(gate));
        m_model->setImage(Picture::ofGrey(7).image);
        QTRY_VERIFY(gate->waiting() > 0);
        m_model->setEncoding(ScopeEncoding());
        QTRY_VERIFY_WITH_TIMEOUT(m_model->isCurrent(), 20000);
        QCOMPARE(mean(*m_model), double(7 / 255.0F));
    }

    void interactiveRows() {
        m_model->require(this, ScopeModel::Values);
        m_model->setInteractiveRowStep(4);
        m_model->setInteractive(true);
        m_model->setImage(Picture::ofGrey(7).image);
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->result()->rowStep, 4);
        QCOMPARE(m_model->result()->values.pixels(), std::uint64_t(64 * 32));
        m_model->setInteractive(false);
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->result()->rowStep, 1);
    }

    void regionAndRow() {
        m_model->require(this, ScopeModel::Values);
        m_model->setImage(Picture::ofGrey(7).image);
        m_model->setRegion({10, 4, 20, 10});
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->result()->region, (ScopeRegion{10, 4, 20, 10}));
        m_model->setRow(6);
        QTRY_VERIFY(m_model->isCurrent());
        QCOMPARE(m_model->result()->region, (ScopeRegion{10, 6, 20, 1}));
        m_model->setRow(20);
        QTRY_VERIFY(m_model->isCurrent());
        QVERIFY(m_model->result()->region.isEmpty());
    }

    void samples() {
        m_model->setImage(Picture::ofGrey(51).image);
        m_model->setSample({63, 31}, 5);
        QVERIFY(m_model->sample());
        QCOMPARE(m_model->sample()->pixels, 36);
        QCOMPARE(m_model->sample()->rgb[0], 51 / 255.0F);
        m_model->setSample({64, 31});
        QVERIFY(!m_model->sample());
        m_model->setSample({1, 1});
        m_model->setImage(Picture::ofGrey(255).image);
        QCOMPARE(m_model->sample()->luma, 1.0F);
        ScopeEncoding inverted;
        inverted.transform = [](float* rgb, int pixels) {
            for (int i = 0; i < 3 * pixels; ++i)
                rgb[i] = 1 - rgb[i];
        };
        m_model->setEncoding(inverted);
        QTRY_COMPARE(m_model->sample()->luma, 0.0F);
        m_model->setImage(ScopeImage());
        QTRY_VERIFY(!m_model->sample());
    }

    void slotDeletesModel() {
        for (const auto change : {ScopeModel::Image, ScopeModel::Result, ScopeModel::Sample}) {
            const QPointer<ScopeModel> model = new ScopeModel;
            connect(model, &ScopeModel::changed, model, [model, change](auto changes) {
                if (changes & change)
                    delete model.data();
            });
            model->require(this, ScopeModel::Values);
            model->setImage(Picture::ofGrey(5).image);
            if (model)
                model->setSample({1, 1});
            QTRY_VERIFY(!model);
        }
    }

    // Passes of several models end in any order while images and needs change.
    void manyModels() {
        std::vector<std::unique_ptr<ScopeModel>> models;
        const Picture picture = Picture::ofFloats(200, 100);
        for (int round = 0; round < 40; ++round) {
            models.push_back(std::make_unique<ScopeModel>());
            models.back()->setMaximumRate(1000);
            models.back()->require(this, ScopeModel::Values | ScopeModel::Vectors);
            for (auto& each : models)
                each->setImage(picture.image);
            QCoreApplication::processEvents();
            if (round % 3 == 2)
                models.erase(models.begin());
        }
        for (auto& each : models)
            QTRY_VERIFY(each->isCurrent());
    }

private:
    std::unique_ptr<ScopeModel> m_model;
};

KXUI_TEST(ScopeModelTest);
#include "ScopeModelTest.moc"
