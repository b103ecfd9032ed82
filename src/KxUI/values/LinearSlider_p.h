#pragma once

#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/values/LinearSlider.h>
#include <KxUI/values/SliderDrag_p.h>
#include <KxUI/values/SliderEntry_p.h>
#include <KxUI/values/SliderGeometry_p.h>

#include <QBasicTimer>

#include <limits>
#include <optional>
#include <vector>

class QKeyEvent;
class QMouseEvent;
class QPainter;
class QWheelEvent;

namespace Kestrel::UI {

/** The state of a slider and the steps that its events consist of. How it looks and where its parts
    are is for derived classes to say. Functions that change the value may delete the slider. */
class LinearSliderPrivate {
public:
    virtual ~LinearSliderPrivate();

    /** To be called first. */
    void attach(LinearSlider* slider);
    static LinearSliderPrivate* of(const LinearSlider* slider) { return slider->d.get(); }

    virtual void paint(QPainter& painter, const QRect& exposed) = 0;
    virtual QSize hint(bool smallest) const = 0;

    /** Where the parts are; kept until something that they depend on changes. */
    const SliderGeometry& geometry();
    void forgetGeometry();
    /** After anything but the value became another one. */
    void relayout();

    void setByHost(double newValue);
    void setStep(double& member, double step);
    template <class T>
    void setDisplay(T& member, const T& now) {
        if (member == now)
            return;
        member = now;
        relayout();
        Q_EMIT q->displayChanged();
    }

    double step() const;
    double page() const;
    /** The value some steps on from the present one; null where the user cannot go on. */
    std::optional<double> stepped(double step, double count);
    std::optional<double> defaultInRange() const;
    /** The same of a number that was typed, or told by an assistive tool. */
    double editable(double wanted) const;
    /** Within the gesture that goes on; nothing for null. */
    void changeTo(const std::optional<double>& wanted);

    void press(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void release();
    /** Goes on to where the mouse is held down. Whether the timer is the slider's. */
    bool page(int timer);
    bool wasHandlePressed() const { return m_pressedHandle; }
    bool isOwnKey(const QKeyEvent& event) const;
    void pressKey(const QKeyEvent& event);
    /** Whether a wheel says anything to the slider. */
    bool turn(const QWheelEvent& event);
    /** Opens the field for an exact number by the key that asked for it. */
    void openEntry(const QKeyEvent& key);
    /** Takes nothing from it. */
    void closeEntry() { delete m_entry.data(); }
    void hover(const QPoint& at);
    QString numberText(double number) const;

    LinearSlider* q = nullptr;
    double value = 0.0;
    double minimum = 0.0;
    double maximum = 1.0;
    double singleStep = 0.0; ///< 0: by the range
    double pageStep = 0.0;   ///< 0: ten single steps
    double grid = 0.0;
    double defaultValue = 0.0;
    double exponent = 1.0;
    double centre = std::numeric_limits<double>::quiet_NaN();
    QString suffix;
    QVector<double> snapPoints;
    Qt::Orientation orientation = Qt::Horizontal;
    LinearSlider::TickMode tickMode = LinearSlider::NoTicks;
    LinearSlider::PressMode pressMode = LinearSlider::JumpToPress;
    WheelPolicy::Policy wheelPolicy = WheelPolicy::WheelWhenFocused;
    std::optional<EditBracket<LinearSlider, double>> bracket;

protected:
    virtual SliderGeometry plan() const = 0;
    /** All that is drawn of a handle that stands for this value. */
    virtual QRectF handleArea(double shown);

    bool isHorizontal() const { return orientation == Qt::Horizontal; }
    /** Whether values grow rightwards or downwards. */
    bool isForward() const;
    /** Whether the handle looks pressed, or hovered. */
    bool isDragged() const { return bracket->gesture() == EditGestures::Drag; }
    bool isHovered() const { return m_hovered; }
    /** -1 or 1 where the value lies below or above the range. */
    int side() const { return value < minimum ? -1 : value > maximum ? 1 : 0; }

private:
    void store(double newValue);
    SliderScene scene();
    SliderInput inputOf(const QMouseEvent& event);
    void stepToPress();
    std::optional<double> keyTarget(const QKeyEvent& event);

    std::optional<SliderGeometry> m_geometry;
    std::vector<double> m_snaps;
    SliderDrag m_drag;
    QBasicTimer m_paging;
    QPointer<SliderEntry> m_entry;
    double m_pressPixel = 0.0;
    double m_before = 0.0; ///< the value before the last movement
    bool m_pressedHandle = false;
    bool m_hovered = false;
};

} // namespace Kestrel::UI
