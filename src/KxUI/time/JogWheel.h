#pragma once

#include <KxUI/Export.h>

#include <QWidget>

namespace Kestrel::UI {

/** A small wheel that is dragged sideways to change a whole number.

    Beside the mouse: Left and Down, Right and Up count by 1, Page Up and Page Down by 10, Home and
    End go to the limits, and a notch of the mouse wheel counts by 1. Interface thread. */
class KXUI_EXPORT JogWheel : public QWidget {
    Q_OBJECT

public:
    /** A wheel at 0 of 0 to 1000, with a sensitivity of 0.3. */
    explicit JogWheel(QWidget* parent = nullptr);
    ~JogWheel() override;

    /** Within minimum() to maximum(). */
    int value() const { return m_value; }

    /** Brings the value into the range. A `maximum` below `minimum` becomes `minimum`. */
    void setRange(int minimum, int maximum);
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }

    /** How far a drag by one pixel counts; a negative one counts backwards. What is not a finite
        number is ignored. */
    void setSensitivity(float sensitivity);
    float sensitivity() const { return m_sensitivity; }

    QSize sizeHint() const override;

public Q_SLOTS:
    /** Goes to the value, or to the limit that it is beyond. */
    void setValue(int value);

Q_SIGNALS:
    /** The value became another one, by the user or by the program. */
    void valueChanged(int value);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void setCandidate(double value);

    int m_minimum = 0;
    int m_maximum = 1000;
    int m_value = 0;
    float m_sensitivity = 0.3F;
    int m_pressX = 0;
    int m_pressValue = 0;
    int m_wheelRest = 0; // eighths of a degree that do not yet make a notch
};

} // namespace Kestrel::UI
