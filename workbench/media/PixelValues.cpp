#include "media/PixelValues.h"

#include <QStringList>

namespace Kestrel::Workbench {

std::optional<PixelValues> PixelValues::of(const Frame& source, const Frame& shown,
                                           const QPoint& at) {
    if (source.state != Frame::State::Ready || !source.image.rect().contains(at) ||
        !shown.image.rect().contains(at))
        return std::nullopt;
    PixelValues values;
    values.at = at;
    values.shown = shown.image.pixel(at);
    const QRgb codes = source.image.pixel(at);
    const std::array<int, 3> bytes{qRed(codes), qGreen(codes), qBlue(codes)};
    values.ownIsExact = source.samples != nullptr;
    const auto first =
        (std::size_t(at.y()) * std::size_t(source.image.width()) + std::size_t(at.x())) * 3;
    const SampleFormat format = source.samples ? source.samples->format : SampleFormat();
    for (std::size_t channel = 0; channel < 3; ++channel) {
        const std::uint16_t sample =
            source.samples ? source.samples->rgb[first + channel] : std::uint16_t(bytes[channel]);
        values.own[channel] = valueOf(format.type, sample);
        values.light[channel] = lightOf(format, sample);
    }
    return values;
}

QString PixelValues::text() const {
    QStringList before;
    for (const double value : own)
        before << (ownIsExact ? QString::number(value, 'g', 4)
                              : QString::number(qRound(value * 255.0)));
    return QStringLiteral("%1 \u2192 %2 %3 %4")
        .arg(before.join(QLatin1Char(' ')))
        .arg(qRed(shown))
        .arg(qGreen(shown))
        .arg(qBlue(shown));
}

} // namespace Kestrel::Workbench
