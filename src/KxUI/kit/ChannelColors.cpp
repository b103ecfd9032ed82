#include <KxUI/kit/ChannelColors.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <algorithm>
#include <array>

namespace Kestrel::UI {
namespace {

/** A channel's colour where the background is dark, and where it is light. */
struct Pair {
    QRgb onDark;
    QRgb onLight;
};

constexpr std::array<Pair, 5> Pairs{{{0xfff07068, 0xffb8201c},
                                     {0xff6cc86c, 0xff1c7226},
                                     {0xff78a8f8, 0xff1c4cb8},
                                     {0xffc890f0, 0xff7a2ea8},
                                     {0xffd8d8d8, 0xff303030}}};

double ratioOf(double a, double b) {
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace

ChannelColors::ChannelColors(const QColor& window, const QColor& base)
    : m_window(window)
    , m_base(base)
    , m_windowLuminance(relativeLuminance(window))
    , m_baseLuminance(relativeLuminance(base)) {}

ChannelColors ChannelColors::of(const QPalette& palette) {
    return {palette.color(QPalette::Window), palette.color(QPalette::Base)};
}

QColor ChannelColors::line(Channel channel) const {
    return visible(channel, VisibleContrast);
}

QColor ChannelColors::text(Channel channel) const {
    return visible(channel, ReadableContrast);
}

QColor ChannelColors::visible(Channel channel, double contrast) const {
    constexpr int steps = 16;
    const bool dark = brightness(m_window) + brightness(m_base) < 1.0;
    const auto index =
        static_cast<std::size_t>(channel >= X && channel <= Z ? channel - X : channel);
    const Pair& pair = Pairs[std::min(index, Pairs.size() - 1)];
    const QColor color(dark ? pair.onDark : pair.onLight);

    QColor best = color;
    double bestContrast = 0;
    // First away from the background, then the other way: a window may be dark around a light base.
    for (const Qt::GlobalColor end : {dark ? Qt::white : Qt::black, dark ? Qt::black : Qt::white}) {
        for (int step = 0; step <= steps; ++step) {
            const QColor candidate = mixed(color, end, static_cast<double>(step) / steps);
            const double luminance = relativeLuminance(candidate);
            const double least = std::min(ratioOf(luminance, m_windowLuminance),
                                          ratioOf(luminance, m_baseLuminance));
            if (least >= contrast)
                return candidate;
            if (least > bestContrast) {
                best = candidate;
                bestContrast = least;
            }
        }
    }
    return best;
}

} // namespace Kestrel::UI
