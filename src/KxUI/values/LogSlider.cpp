#include <KxUI/values/LogSlider.h>

#include <KxUI/values/LogSliderTicks_p.h>

#include <QFontMetrics>
#include <QLocale>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionSlider>

#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>

namespace Kestrel::UI {
namespace {

constexpr int LongTick = 4;  // pixels
constexpr int ShortTick = 1; // pixels
// Powers of ten that are finite and normal doubles.
constexpr int LowestExponent = -307;
constexpr int HighestExponent = 308;

} // namespace

LogSlider::LogSlider(QWidget* parent)
    : LogSlider(Qt::Vertical, parent) {}

LogSlider::LogSlider(Qt::Orientation orientation, QWidget* parent)
    : QSlider(orientation, parent)
    , m_scale(std::make_unique<LogScale>()) {}

LogSlider::~LogSlider() = default;

void LogSlider::setRealRange(int minExp, int maxExp, int precision) {
    if (precision < 1)
        throw std::invalid_argument("precision argument should be > 0");
    if (minExp == maxExp)
        throw std::invalid_argument("minExp cannot be equal to maxExp");
    const auto [low, high] = std::minmax(minExp, maxExp);
    if (low < LowestExponent || high > HighestExponent)
        throw std::invalid_argument("exponents should be between -307 and 308");
    const int farthest = std::max(std::abs(low), std::abs(high));
    // QSlider computes with the difference of its ends, too.
    if (precision > INT_MAX / 2 / farthest)
        throw std::invalid_argument("the range has too many positions");
    *m_scale = {low, high, precision, std::pow(10.0, low), std::pow(10.0, high)};
    setRange(low * precision, high * precision);
}

void LogSlider::requireRange() const {
    if (m_scale->precision == 0)
        throw std::logic_error("Call setRealRange method first");
}

double LogSlider::realValue() const {
    requireRange();
    return calculateRealValue(value());
}

void LogSlider::setRealValue(double value) {
    requireRange();
    if (std::isnan(value))
        throw std::invalid_argument("the value is not a number");
    // Cutting toward zero would move a slider that is told what it reads, one position each time.
    if (value != realValue())
        setValue(calculateSliderValue(value));
}

double LogSlider::calculateRealValue(int position) const {
    return m_scale->valueAt(position);
}

int LogSlider::calculateSliderValue(double value) const {
    return m_scale->positionOf(value);
}

QSize LogSlider::withLabels(QSize hint) const {
    if (m_drawLogTicks) {
        if (orientation() == Qt::Horizontal)
            hint.rheight() += m_tickTextSize;
        else
            hint.rwidth() += m_tickTextSize;
    }
    return hint;
}

QSize LogSlider::sizeHint() const {
    return withLabels(QSlider::sizeHint());
}

QSize LogSlider::minimumSizeHint() const {
    return withLabels(QSlider::minimumSizeHint());
}

void LogSlider::paintEvent(QPaintEvent* event) {
    QSlider::paintEvent(event);
    if (!m_drawLogTicks || m_scale->precision == 0)
        return;
    QPainter painter(this);
    paintTicks(painter);
}

bool LogSlider::checkTick(const QRect& rect, int position) const {
    return rect.contains(orientation() == Qt::Horizontal ? QPoint(position, rect.center().y())
                                                         : QPoint(rect.center().x(), position));
}

void LogSlider::paintTicks(QPainter& painter) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect groove =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
    const QRect handle =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    const QColor midlight = option.palette.color(QPalette::Midlight);
    if (!m_expTickColor.isValid())
        m_expTickColor = midlight.darker(170);
    if (!m_tickColor.isValid())
        m_tickColor = midlight;

    QFont labelFont = font();
    labelFont.setPixelSize(std::max(1, m_tickTextSize));
    painter.setFont(labelFont);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFontMetrics metrics(labelFont);
    const auto labelOf = [this](double value) { return locale().toString(value, 'g', 6); };
    const auto widthOf = [&](double value) { return metrics.horizontalAdvance(labelOf(value)); };

    const bool horizontal = orientation() == Qt::Horizontal;
    const int origin = horizontal ? groove.left() : groove.bottom();
    const int length = horizontal ? groove.width() - 1 : 1 - groove.height();
    if (length == 0)
        return;
    std::vector<int> labelSpacing;
    for (int decade = m_scale->minExp; decade < m_scale->maxExp; ++decade)
        labelSpacing.push_back((widthOf(std::pow(10.0, decade)) + 2) * 3);
    const std::vector<LogTick> ticks = planTicks(*m_scale, origin, length, labelSpacing);

    for (const LogTick& tick : ticks) {
        if (!tick.marked || checkTick(handle, tick.pixel))
            continue;
        painter.setPen(tick.wholePower ? m_expTickColor : m_tickColor);
        const int mark = tick.labelled ? LongTick : ShortTick;
        if (horizontal)
            painter.drawLine(tick.pixel, groove.top() - mark, tick.pixel, groove.top());
        else
            painter.drawLine(groove.right(), tick.pixel, groove.right() + mark, tick.pixel);
    }

    // Labels stand on the edge of the widget that lies across the groove from the ticks. In the
    // turned painter of a vertical slider x runs down and y from right to left.
    if (!horizontal) {
        painter.rotate(90);
        painter.translate(0, -width());
    }
    const int bottom = horizontal ? height() : width();
    const int lastWidth = widthOf(m_scale->maxReal);
    int freeFrom = 0; // distance from the origin up to which labels are drawn
    for (const LogTick& tick : ticks) {
        const bool atEnd = &tick == &ticks.back();
        const int distance = std::abs(tick.pixel - origin);
        const int labelWidth = widthOf(tick.value);
        // Every label goes from its tick towards the larger values, but for the last one, which
        // ends at its tick; the ones before it leave it its room.
        if (!tick.labelled || (!atEnd && (distance < freeFrom ||
                                          distance + labelWidth >= std::abs(length) - lastWidth)))
            continue;
        freeFrom = distance + labelWidth + 2;
        painter.setPen(tick.wholePower ? m_expTickColor : m_tickColor);
        const bool leftOfTick = horizontal == atEnd;
        const QRect room(leftOfTick ? tick.pixel - labelWidth + 1 : tick.pixel, 0, labelWidth,
                         bottom);
        painter.drawText(room,
                         int(Qt::AlignBottom | Qt::TextDontClip) |
                             int(leftOfTick ? Qt::AlignRight : Qt::AlignLeft),
                         labelOf(tick.value));
    }
}

} // namespace Kestrel::UI
