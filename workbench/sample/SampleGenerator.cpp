#include "sample/SampleGenerator.h"

#include "sample/SampleFrame.h"

#include <OpenImageIO/imageio.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <cmath>
#include <vector>

namespace Kestrel::Workbench {

namespace {

/** Raised when the shots change, so that an older sample is left alone and a new one made. */
constexpr int sampleVersion = 1;

constexpr int firstRender = 1001;
constexpr int renderFrames = 240;
constexpr int lastPlate = 112;

/** The holes of the second shot: a dropped stretch, a single frame, another stretch. */
bool isPlateGap(int frame) {
    return (frame >= 23 && frame <= 26) || frame == 61 || (frame >= 80 && frame <= 86);
}

SampleLook renderLook() {
    SampleLook look;
    look.label = QStringLiteral("leader   EXR half, scene-linear");
    return look;
}

SampleLook plateLook() {
    SampleLook look;
    look.size = {640, 360};
    look.tint[0] = 0.20F;
    look.tint[1] = 0.13F;
    look.tint[2] = 0.08F;
    look.label = QStringLiteral("plate   PNG 8 bit, with gaps");
    return look;
}

float displaySignal(float light) {
    return light <= 0.0031308F ? 12.92F * light : 1.055F * std::pow(light, 1.0F / 2.4F) - 0.055F;
}

} // namespace

struct SampleGenerator::Job {
    QByteArray path;
    SampleLook look;
    int frame = 0;
    int index = 0;
    bool sceneLinear = true;
};

QString SampleGenerator::standardFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) +
           QStringLiteral("/sample-%1").arg(sampleVersion);
}

SampleGenerator::SampleGenerator(QString folder, QObject* parent)
    : QObject(parent)
    , m_folder(std::move(folder)) {}

SampleGenerator::~SampleGenerator() {
    m_stop = true;
    m_pool.waitForDone();
}

bool SampleGenerator::exists() const {
    return QFileInfo(m_folder).isDir();
}

void SampleGenerator::start() {
    if (m_partial)
        return;
    const QString parent = QFileInfo(m_folder).path();
    QDir().mkpath(parent);
    m_partial = std::make_unique<QTemporaryDir>(parent + QStringLiteral("/partial-XXXXXX"));
    if (!m_partial->isValid()) {
        const QString message =
            tr("The sample cannot be written to %1: %2").arg(parent, m_partial->errorString());
        QMetaObject::invokeMethod(
            this, [this, message] { emit finished(false, message); }, Qt::QueuedConnection);
        return;
    }
    std::vector<Job> jobs;
    const auto add = [&](const QString& name, const SampleLook& look, int frame, int index,
                         bool linear) {
        jobs.push_back({QFile::encodeName(m_partial->filePath(name)), look, frame, index, linear});
    };
    for (int i = 0; i < renderFrames; ++i)
        add(QStringLiteral("leader.%1.exr").arg(firstRender + i, 4, 10, QLatin1Char('0')),
            renderLook(), firstRender + i, i, true);
    for (int frame = 1; frame <= lastPlate; ++frame) {
        if (!isPlateGap(frame))
            add(QStringLiteral("plate_%1.png").arg(frame, 3, 10, QLatin1Char('0')), plateLook(),
                frame, frame - 1, false);
    }
    m_total = int(jobs.size());
    for (const auto& job : jobs) {
        m_pool.start([this, job] {
            writeFrame(job);
            QMetaObject::invokeMethod(
                this, [this] { frameDone(); }, Qt::QueuedConnection);
        });
    }
}

void SampleGenerator::cancel() {
    m_stop = true;
}

void SampleGenerator::writeFrame(const Job& job) {
    if (m_stop)
        return;
    std::vector<float> pixels = paintSampleFrame(job.look, job.frame, job.index);
    OIIO::ImageSpec spec(job.look.size.width(), job.look.size.height(), 3,
                         job.sceneLinear ? OIIO::TypeDesc::HALF : OIIO::TypeDesc::UINT8);
    if (job.sceneLinear) {
        spec["compression"] = "zip:1";
    } else {
        for (float& sample : pixels)
            sample = displaySignal(sample);
        spec["oiio:ColorSpace"] = "sRGB";
        spec["png:compressionLevel"] = 1;
    }
    const std::string path = job.path.toStdString();
    const auto output = OIIO::ImageOutput::create(path);
    const bool written = output && output->open(path, spec) &&
                         output->write_image(OIIO::TypeDesc::FLOAT, pixels.data()) &&
                         output->close();
    if (!written)
        fail(QString::fromStdString(output ? output->geterror() : OIIO::geterror()));
}

void SampleGenerator::fail(const QString& message) {
    const std::lock_guard lock(m_mutex);
    if (m_error.isEmpty())
        m_error = tr("The sample cannot be written: %1").arg(message.trimmed());
    m_stop = true;
}

void SampleGenerator::frameDone() {
    ++m_done;
    emit progressed(m_done, m_total);
    if (m_done == m_total)
        finish();
}

void SampleGenerator::finish() {
    QString error;
    {
        const std::lock_guard lock(m_mutex);
        error = m_error;
    }
    const bool complete = !m_stop;
    if (complete) {
        // Another process may have been faster; its sample is as good as this one.
        if (QDir().rename(m_partial->path(), m_folder))
            m_partial->setAutoRemove(false);
        else if (!exists())
            error = tr("The sample cannot be moved to %1.").arg(m_folder);
    }
    m_partial.reset();
    emit finished(complete && error.isEmpty(), error);
}

} // namespace Kestrel::Workbench
