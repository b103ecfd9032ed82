#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QSlider>

#include <memory>

namespace Kestrel::UI {

struct LogScale;

/** A slider over several decades: its whole positions stand for real values on a base-10
   logarithmic scale between two powers of ten. Decade ticks are drawn on one side of the groove and
   labels on the other. Call setRealRange() before anything that reads or writes a real value.
    Interface thread. */
class KXUI_EXPORT LogSlider : public QSlider {
    Q_OBJECT

public:
    /** A vertical slider without a range, as a plain QSlider is. */
    explicit LogSlider(QWidget* parent = nullptr);
    /** The same in the orientation given. */
    explicit LogSlider(Qt::Orientation orientation, QWidget* parent = nullptr);
    ~LogSlider() override;

    /** The range 10^minExp to 10^maxExp, in either order, with `precision` positions a decade.
        Throws std::invalid_argument, and changes nothing, for a precision below 1, for equal
        exponents, for exponents that a double can not hold (below -307 or above 308) and for a
        range that whole positions can not hold. */
    void setRealRange(int minExp, int maxExp, int precision);

    /** 10^(value() / precision). Throws std::logic_error before a range was set. */
    double realValue() const;

    /** Goes to the position of the value, clamped into the range. A slider that reads exactly this
        value already stays where it is. Throws std::logic_error before a range was set, and
        std::invalid_argument for a value that is not a number. */
    void setRealValue(double value);

    /** The hints of a plain slider, with room for the labels if they are drawn. */
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    /** Whether ticks and labels are drawn; true at first. Takes effect with the next painting, as
        do the size and the colours. */
    bool drawLogTicks() const { return m_drawLogTicks; }
    void setDrawLogTicks(bool draw) { m_drawLogTicks = draw; }

    /** The pixel size of the labels, and the room that is reserved for them; 8 at first. */
    int tickTextSize() const { return m_tickTextSize; }
    void setTickTextSize(int size) { m_tickTextSize = size; }

    /** The colour of the ticks and labels between powers of ten; an invalid one is replaced at the
        next painting by one of the palette. */
    QColor tickColor() const { return m_tickColor; }
    void setTickColor(const QColor& color) { m_tickColor = color; }

    /** The colour of the ticks and labels at powers of ten, as tickColor(). */
    QColor expTickColor() const { return m_expTickColor; }
    void setExpTickColor(const QColor& color) { m_expTickColor = color; }

protected:
    /** The real value of a position, for a slider whose range was set. */
    double calculateRealValue(int position) const;
    /** The position of a real value, for a slider whose range was set. */
    int calculateSliderValue(double value) const;

    void paintEvent(QPaintEvent* event) override;

private:
    void requireRange() const;
    QSize withLabels(QSize hint) const;
    void paintTicks(QPainter& painter);
    bool checkTick(const QRect& rect, int position) const;

    std::unique_ptr<LogScale> m_scale;
    QColor m_tickColor;
    QColor m_expTickColor;
    int m_tickTextSize = 8;
    bool m_drawLogTicks = true;
};

} // namespace Kestrel::UI
