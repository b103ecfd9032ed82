#pragma once

#include "Pictures.h"

#include <QFile>
#include <QStringList>
#include <QVector>

#include <vector>

namespace Kestrel::Test {

/** The lines of a file of tools/goldens, without comments, in words. */
inline QVector<QStringList> goldenLines(const QString& name) {
    QFile file(QStringLiteral(KXUI_GOLDEN) + QLatin1Char('/') + name);
    QVector<QStringList> result;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return result;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (!line.startsWith(QLatin1Char('#')))
            result.append(line.split(QLatin1Char(' ')));
    }
    return result;
}

/** Codes of colour bars as another program makes them, and a picture of them, 16 pixels wide each. */
struct Bars {
    struct Codes {
        int luma;
        int cb;
        int cr;
    };
    static constexpr int Width = 16;

    explicit Bars(const QString& source)
        : picture(UI::PixelLayout::CbYCrA8, 1, 1) {
        for (const QStringList& line : goldenLines(QStringLiteral("bars.txt"))) {
            if (line[0] == source)
                all.push_back({line[1].toInt(), line[2].toInt(), line[3].toInt()});
        }
        picture = Picture(UI::PixelLayout::CbYCrA8, Width * int(all.size()), 32);
        for (int y = 0; y < picture.image.height; ++y) {
            for (int x = 0; x < picture.image.width; ++x) {
                const Codes& codes = all[std::size_t(x / Width)];
                unsigned char* const pixel = picture.memory + picture.image.stride * y + 4 * x;
                pixel[0] = static_cast<unsigned char>(codes.cb);
                pixel[1] = static_cast<unsigned char>(codes.luma);
                pixel[2] = static_cast<unsigned char>(codes.cr);
                pixel[3] = 255;
            }
        }
        picture.image.colorSpace = source.startsWith(QLatin1String("pal")) ? UI::ColorSpace::Rec601
                                                                           : UI::ColorSpace::Rec709;
    }

    std::vector<Codes> all;
    Picture picture;
};

} // namespace Kestrel::Test
