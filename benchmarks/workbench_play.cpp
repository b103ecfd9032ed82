#include "workbench_play.h"

#include <support/Bench.h>

#include "sample/SampleFrame.h"

#include <OpenImageIO/imageio.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>

using namespace Kestrel::Workbench;

namespace {

/** Files as renderers, scanners and cameras write them. */
struct Footage {
    const char* name;
    const char* extension;
    OIIO::TypeDesc type;
    QSize size;
    const char* compression;
    int bits;
    int frames;
};

const Footage footages[] = {
    {"EXR half ZIP, 1920 x 1080", "exr", OIIO::TypeDesc::HALF, {1920, 1080}, "zip", 0, 24},
    {"EXR float ZIP, 1920 x 1080", "exr", OIIO::TypeDesc::FLOAT, {1920, 1080}, "zip", 0, 24},
    {"DPX 10 bits, 1920 x 1080", "dpx", OIIO::TypeDesc::UINT16, {1920, 1080}, "", 10, 24},
    {"EXR half ZIP, 3840 x 2160", "exr", OIIO::TypeDesc::HALF, {3840, 2160}, "zip", 0, 12},
    {"PNG 8 bits, 3840 x 2160", "png", OIIO::TypeDesc::UINT8, {3840, 2160}, "", 0, 12},
    {"TIFF 16 bits LZW, 1920 x 1080", "tif", OIIO::TypeDesc::UINT16, {1920, 1080}, "lzw", 0, 24},
};

/** The workbench's sample with the grain of a camera: without it, files would be read faster than
    real ones are. */
std::vector<float> paintedFrame(const Footage& footage, int frame) {
    SampleLook look;
    look.size = footage.size;
    look.label = QString::fromLatin1(footage.name);
    std::vector<float> pixels = paintSampleFrame(look, frame, frame);
    const bool isSignal = footage.type.is_floating_point() == false;
    std::minstd_rand random(unsigned(frame) + 1);
    for (std::size_t i = 0; i < pixels.size(); i += 3) {
        const float grain = 1.0F + (float(random() % 1024) / 1024.0F - 0.5F) * 0.02F;
        for (std::size_t c = i; c < i + 3; ++c) {
            pixels[c] *= grain;
            if (isSignal)
                pixels[c] = std::pow(std::clamp(pixels[c], 0.0F, 1.0F), 1.0F / 2.2F);
        }
    }
    return pixels;
}

bool writeFrame(const Footage& footage, const QString& path, int frame) {
    OIIO::ImageSpec spec(footage.size.width(), footage.size.height(), 3, footage.type);
    if (*footage.compression)
        spec["compression"] = footage.compression;
    if (footage.bits > 0)
        spec["oiio:BitsPerSample"] = footage.bits;
    spec["png:compressionLevel"] = 1;
    const std::string name = QFile::encodeName(path).toStdString();
    const auto output = OIIO::ImageOutput::create(name);
    const std::vector<float> pixels = paintedFrame(footage, frame);
    return output && output->open(name, spec) &&
           output->write_image(OIIO::TypeDesc::FLOAT, pixels.data()) && output->close();
}

/** A folder of frames. Each file has many names, so that no cache meets a frame again while it is
    played. */
class Shot {
public:
    static constexpr int LastFrame = 960;

    explicit Shot(const Footage& footage)
        : m_footage(footage) {
        for (int frame = 1; frame <= footage.frames; ++frame) {
            if (!writeFrame(footage, path(frame), frame))
                return;
        }
        for (int frame = footage.frames + 1; frame <= LastFrame; ++frame) {
            if (!QFile::link(path((frame - 1) % footage.frames + 1), path(frame)))
                return;
        }
        m_isMade = true;
    }

    bool isMade() const { return m_isMade; }

    QString path(int frame) const {
        return m_folder.filePath(QStringLiteral("f.%1.%2")
                                     .arg(frame, 4, 10, QLatin1Char('0'))
                                     .arg(QLatin1String(m_footage.extension)));
    }

    QString pattern() const {
        return m_folder.filePath(QStringLiteral("f.%04d.") + QLatin1String(m_footage.extension));
    }

private:
    const Footage& m_footage;
    QTemporaryDir m_folder;
    bool m_isMade = false;
};

std::string outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    process.waitForFinished(-1);
    return process.readAll().toStdString();
}

double numberAfter(const std::string& text, const std::string& words) {
    const auto at = text.rfind(words);
    return at == std::string::npos ? 0.0 : std::atof(text.c_str() + at + words.size());
}

/** Frames a second that ffmpeg decodes on two threads, without the time that it takes to start. */
double nullDecodeRate(const Shot& shot) {
    constexpr int frames = 96;
    const std::string text = outputOf(
        QStringLiteral("ffmpeg"),
        {QStringLiteral("-nostdin"), QStringLiteral("-benchmark"), QStringLiteral("-threads"),
         QStringLiteral("2"), QStringLiteral("-start_number"), QStringLiteral("1"),
         QStringLiteral("-i"), shot.pattern(), QStringLiteral("-frames:v"), QString::number(frames),
         QStringLiteral("-f"), QStringLiteral("null"), QStringLiteral("-")});
    const double seconds = numberAfter(text, "rtime=");
    return seconds > 0.0 ? frames / seconds : 0.0;
}

/** Pictures a second that the workbench shows when it is asked for a little more than ffmpeg
    reaches. */
double playedRate(const Shot& shot, double asked) {
    const std::string text =
        outputOf(QStringLiteral(KXUI_WORKBENCH_TOOL),
                 {QStringLiteral("--play"), QStringLiteral("5"), QStringLiteral("--fresh"),
                  QStringLiteral("--cache"), QStringLiteral("512"), QStringLiteral("--fps"),
                  QString::number(std::clamp(asked, 1.0, 900.0), 'f', 3), shot.path(1)});
    return numberAfter(text, "shown ");
}

/** What was measured once is said in every repetition: each takes seconds. */
void report(benchmark::State& state, double rate) {
    for (auto _ : state)
        state.SetIterationTime(rate > 0.0 ? 1.0 / rate : 1.0);
    if (rate <= 0.0)
        state.SkipWithError("nothing was decoded");
    state.SetItemsProcessed(int64_t(state.iterations()));
}

struct Rates {
    double peer = 0.0;
    double ours = 0.0;
};

Rates measured(const Footage& footage) {
    static std::map<const Footage*, Rates> all;
    const auto [at, isNew] = all.try_emplace(&footage);
    if (isNew) {
        const Shot shot(footage);
        if (shot.isMade()) {
            at->second.peer = nullDecodeRate(shot);
            at->second.ours = playedRate(shot, at->second.peer * 1.25);
        }
    }
    return at->second;
}

} // namespace

void registerPlayBenchmarks() {
    using namespace Kestrel::Bench;
    for (const Footage& footage : footages) {
        const std::string work = std::string("playback, a frame of ") + footage.name;
        add(work, "ours",
            [&footage](benchmark::State& state) { report(state, measured(footage).ours); })
            ->UseManualTime()
            ->Iterations(1);
        add(work, "ffmpeg, null decode",
            [&footage](benchmark::State& state) { report(state, measured(footage).peer); })
            ->UseManualTime()
            ->Iterations(1);
        targetRatio(work, "ffmpeg, null decode", 0.9);
    }
}
