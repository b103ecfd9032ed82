#pragma once

#include "media/Sequence.h"

#include <OpenImageIO/imageio.h>

#include <QByteArray>
#include <QFile>
#include <QString>

#include <set>
#include <string>
#include <vector>

namespace Kestrel::Test {

/** A small image of one colour a channel, in the format that the name's extension says. */
struct TestImage {
    OIIO::ImageSpec spec{32, 18, 3, OIIO::TypeDesc::HALF};
    /** One value a channel, repeated over the channels. */
    std::vector<float> values{0.18F, 0.5F, 1.0F};

    bool write(const QString& path) const {
        std::vector<float> pixels;
        const auto count = std::size_t(spec.width) * std::size_t(spec.height);
        pixels.reserve(count * std::size_t(spec.nchannels));
        for (std::size_t i = 0; i < count; ++i) {
            for (std::size_t c = 0; c < std::size_t(spec.nchannels); ++c)
                pixels.push_back(values[c % values.size()]);
        }
        const std::string name = QFile::encodeName(path).toStdString();
        const auto output = OIIO::ImageOutput::create(name);
        if (!output || !output->open(name, spec))
            return false;
        const bool written = spec.tile_width > 0
                                 ? output->write_image(OIIO::TypeDesc::FLOAT, pixels.data())
                                 : output->write_scanlines(spec.y, spec.y + spec.height, 0,
                                                           OIIO::TypeDesc::FLOAT, pixels.data());
        return output->close() && written;
    }
};

/** An 8-bit or half image of the default colours. */
inline bool writeImage(const QString& path) {
    TestImage image;
    if (!path.endsWith(QLatin1String("exr")))
        image.spec.set_format(OIIO::TypeDesc::UINT8);
    return image.write(path);
}

/** The first `bytes` of a file are kept. */
inline bool truncate(const QString& path, qint64 bytes) {
    return QFile(path).resize(bytes);
}

/** Frames from 1 to `last` without the missing ones, "s.0001.exr" and so on; empty on failure. */
inline Workbench::Sequence writeSequence(const QString& folder, int last,
                                         const std::set<int>& missing) {
    std::vector<Workbench::Sequence::Member> members;
    for (int frame = 1; frame <= last; ++frame) {
        const QString name = QStringLiteral("s.%1.exr").arg(frame, 4, 10, QLatin1Char('0'));
        if (missing.count(frame) > 0)
            continue;
        if (!writeImage(folder + QLatin1Char('/') + name))
            return {};
        members.emplace_back(frame, name.toStdString());
    }
    return {QStringLiteral("s.####.exr"), folder.toStdString(), members};
}

} // namespace Kestrel::Test
