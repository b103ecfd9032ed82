#include <KxUI/picker/SampleMagnifier_p.h>

#include <KxUI/picker/ColorSampler_p.h>
#include <KxUI/picker/SwatchPainting_p.h>

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int CellSide = 12;
constexpr int Side = ColorSampler::Magnified * CellSide;
constexpr int Margin = 4;
constexpr int Away = 20; // from the pointer
constexpr int Lines = 3;

} // namespace

SampleMagnifier::SampleMagnifier()
    : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput |
                           Qt::WindowDoesNotAcceptFocus) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    resize(Side + 2 * Margin, Side + 3 * Margin + Lines * fontMetrics().lineSpacing());
}

void SampleMagnifier::setContent(const QImage& pixels, const QColor& shown, const QString& words) {
    m_pixels = pixels;
    m_shown = shown;
    m_words = words;
    update();
}

QPoint SampleMagnifier::placeBeside(const QSize& size, const QPoint& pointer, const QPoint& from,
                                    const QRect& screen) {
    const auto place = [](int at, bool forwards, int length, int low, int high) {
        const int after = at + Away;
        const int before = at - Away - length;
        const bool fitsAfter = after + length <= high;
        const bool fitsBefore = before >= low;
        return forwards ? (fitsAfter || !fitsBefore ? after : before)
                        : (fitsBefore || !fitsAfter ? before : after);
    };
    const QPoint away = pointer - from;
    return {place(pointer.x(), away.x() >= 0, size.width(), screen.left(), screen.right() + 1),
            place(pointer.y(), away.y() >= 0, size.height(), screen.top(), screen.bottom() + 1)};
}

void SampleMagnifier::moveBeside(const QPoint& pointer, const QPoint& from) {
    const QScreen* screen = QGuiApplication::screenAt(pointer);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    move(placeBeside(size(), pointer, from, screen->geometry()));
}

void SampleMagnifier::paintPixels(QPainter& painter, const QRect& field) const {
    if (m_pixels.isNull())
        paintChecker(painter, field, devicePixelRatioF());
    else
        painter.drawImage(field, m_pixels);
    // Two frames, of which one is seen on any colour.
    const int middle = ColorSampler::Magnified / 2 * CellSide;
    const QRect centre(field.left() + middle, field.top() + middle, CellSide - 1, CellSide - 1);
    painter.setPen(Qt::black);
    painter.drawRect(centre.adjusted(-1, -1, 1, 1));
    painter.setPen(Qt::white);
    painter.drawRect(centre);
}

void SampleMagnifier::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPalette colors = palette();
    painter.fillRect(rect(), colors.color(QPalette::Text));
    painter.fillRect(rect().adjusted(1, 1, -1, -1), colors.color(QPalette::Window));
    const QRect field(Margin, Margin, Side, Side);
    paintPixels(painter, field);
    QRect words(Margin, field.bottom() + Margin, Side, height() - field.bottom() - 2 * Margin);
    if (m_shown.isValid()) {
        QRect swatch = words;
        swatch.setWidth(CellSide * 2);
        paintSwatch(painter, swatch, m_shown, devicePixelRatioF());
        words.setLeft(swatch.right() + 1 + Margin);
    }
    painter.setPen(colors.color(QPalette::WindowText));
    painter.drawText(words, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextWordWrap, m_words);
}

} // namespace Kestrel::UI
