#include "sample/SampleFrame.h"

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <array>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

/** The wipe turns once and the light goes round its orbit once in so many frames. */
constexpr int turnFrames = 24;
constexpr int orbitFrames = 96;

/** Light of an 8-bit sRGB code. */
const std::array<float, 256>& lightTable() {
    static const std::array<float, 256> table = [] {
        std::array<float, 256> light{};
        for (std::size_t i = 0; i < light.size(); ++i) {
            const double signal = double(i) / 255.0;
            light[i] =
                float(signal <= 0.04045 ? signal / 12.92 : std::pow((signal + 0.055) / 1.055, 2.4));
        }
        return light;
    }();
    return table;
}

void paintLeader(QPainter& painter, const QSize& size, int index) {
    const QPointF middle(size.width() / 2.0, size.height() * 0.46);
    const double radius = size.height() * 0.36;
    const QRectF ring(middle.x() - radius, middle.y() - radius, 2 * radius, 2 * radius);

    const double angle = 360.0 * (index % turnFrames) / turnFrames;
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 38));
    painter.drawPie(ring, 90 * 16, -qRound(angle * 16));

    QPen line(QColor(225, 228, 232, 190), std::max(1.0, size.height() / 270.0));
    painter.setPen(line);
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(ring);
    painter.drawEllipse(middle, radius * 0.86, radius * 0.86);
    painter.drawLine(QPointF(0, middle.y()), QPointF(size.width(), middle.y()));
    painter.drawLine(QPointF(middle.x(), 0), QPointF(middle.x(), size.height()));
    const double turn = qDegreesToRadians(angle - 90.0);
    painter.drawLine(middle, middle + radius * QPointF(std::cos(turn), std::sin(turn)));
}

void paintNumber(QPainter& painter, const QSize& size, int frame, const QString& label) {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(size.height() / 5);
    font.setBold(true);
    painter.setFont(font);
    const QRectF box(0, size.height() * 0.34, size.width(), size.height() * 0.24);
    const QString number = QString::number(frame);
    painter.setPen(QColor(0, 0, 0, 150));
    painter.drawText(box.translated(0, size.height() / 180.0), Qt::AlignCenter, number);
    painter.setPen(QColor(250, 250, 250));
    painter.drawText(box, Qt::AlignCenter, number);

    font.setPixelSize(std::max(size.height() / 30, 9));
    font.setBold(false);
    painter.setFont(font);
    painter.setPen(QColor(235, 235, 235, 210));
    const double margin = size.height() / 24.0;
    painter.drawText(QPointF(margin, margin + font.pixelSize()), label);
}

/** Eleven steps of grey and the six pure colours along the bottom. */
void paintWedge(QPainter& painter, const QSize& size) {
    constexpr int steps = 11;
    const std::array<QColor, 6> colours{QColor(190, 40, 40), QColor(190, 190, 40),
                                        QColor(40, 160, 60), QColor(40, 170, 180),
                                        QColor(40, 70, 180), QColor(170, 50, 160)};
    const double margin = size.height() / 24.0;
    const double width = (size.width() - 2 * margin) / (steps + double(colours.size()));
    const double height = size.height() / 14.0;
    double x = margin;
    painter.setPen(Qt::NoPen);
    const auto patch = [&](const QColor& colour) {
        painter.fillRect(QRectF(x, size.height() - margin - height, width - 2, height), colour);
        x += width;
    };
    for (int i = 0; i < steps; ++i) {
        const int grey = 255 * i / (steps - 1);
        patch(QColor(grey, grey, grey));
    }
    for (const auto& colour : colours)
        patch(colour);
}

QImage paintOverlay(const SampleLook& look, int frame, int index) {
    QImage overlay(look.size, QImage::Format_ARGB32_Premultiplied);
    overlay.fill(Qt::transparent);
    QPainter painter(&overlay);
    painter.setRenderHint(QPainter::Antialiasing);
    paintLeader(painter, look.size, index);
    paintWedge(painter, look.size);
    paintNumber(painter, look.size, frame, look.label);
    return overlay;
}

} // namespace

std::vector<float> paintSampleFrame(const SampleLook& look, int frame, int index) {
    const int width = look.size.width();
    const int height = look.size.height();
    const QImage overlay = paintOverlay(look, frame, index);
    const auto& light = lightTable();

    const double orbit = 2.0 * M_PI * index / orbitFrames;
    const double lampX = width * (0.5 + 0.38 * std::cos(orbit));
    const double lampY = height * (0.46 + 0.32 * std::sin(orbit));
    const double lampRadius = height * 0.035;
    const double glowRadius = lampRadius * 5.0;

    std::vector<float> pixels(std::size_t(width) * std::size_t(height) * 3);
    float* out = pixels.data();
    for (int y = 0; y < height; ++y) {
        const auto* over = reinterpret_cast<const QRgb*>(overlay.constScanLine(y));
        const float down = float(y) / float(height);
        for (int x = 0; x < width; ++x, out += 3) {
            const float across = float(x) / float(width);
            const float shade = 0.25F + 0.75F * down * (0.6F + 0.4F * across);
            float lamp = 0.0F;
            const double dx = x - lampX;
            const double dy = y - lampY;
            if (const double far = dx * dx + dy * dy; far < glowRadius * glowRadius) {
                const double edge = std::sqrt(far) / glowRadius;
                lamp = float((1.0 - edge) * (1.0 - edge) * 0.5);
                if (far < lampRadius * lampRadius)
                    lamp = 6.0F;
            }
            const QRgb painted = over[x];
            const int alpha = qAlpha(painted);
            const QRgb solid = qUnpremultiply(painted);
            const float mix = float(alpha) / 255.0F;
            const float base[3] = {look.tint[0] * shade + lamp, look.tint[1] * shade + lamp * 0.82F,
                                   look.tint[2] * shade + lamp * 0.5F};
            const int codes[3] = {qRed(solid), qGreen(solid), qBlue(solid)};
            for (std::size_t c = 0; c < 3; ++c)
                out[c] = base[c] * (1.0F - mix) + light[std::size_t(codes[c])] * mix;
        }
    }
    return pixels;
}

} // namespace Kestrel::Workbench
