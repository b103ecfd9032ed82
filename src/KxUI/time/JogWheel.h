#pragma once

#include <KxUI/Export.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {

/** A small wheel that is dragged sideways to change a whole number.

    Beside the mouse: Left and Down, Right and Up count by 1, Page Up and Page Down by 10, Home and
    End go to the limits, and a notch of the mouse wheel counts by 1. Escape, or the right button
    while another one drags, goes back to the value that the drag began at. What the user does is
    told as one edit from the first change to the release of the button or key, or half a second
    after the last notch. Interface thread. */
class KXUI_EXPORT JogWheel : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged USER true)
    Q_PROPERTY(int minimum READ minimum WRITE setMinimum NOTIFY rangeChanged)
    Q_PROPERTY(int maximum READ maximum WRITE setMaximum NOTIFY rangeChanged)
    Q_PROPERTY(float sensitivity READ sensitivity WRITE setSensitivity NOTIFY sensitivityChanged)

public:
    /** A wheel at 0 of 0 to 1000, with a sensitivity of 0.3. */
    explicit JogWheel(QWidget* parent = nullptr);
    ~JogWheel() override;

    /** Within minimum() to maximum(). */
    int value() const;

    /** Brings the value into the range. A `maximum` below `minimum` becomes `minimum`. */
    void setRange(int minimum, int maximum);
    /** One limit; the other one gives way where they would cross. */
    void setMinimum(int minimum);
    int minimum() const;
    void setMaximum(int maximum);
    int maximum() const;

    /** How far a drag by one pixel counts; a negative one counts backwards. What is not a finite
        number is ignored. */
    void setSensitivity(float sensitivity);
    float sensitivity() const;

    /** Whether the user has begun to change the value: from editStarted() to editFinished(). */
    bool isEditing() const;

    QSize sizeHint() const override;

public Q_SLOTS:
    /** Goes to the value, or to the limit that it is beyond. */
    void setValue(int value);
    /** Takes the current edit back, as Escape does. Nothing without an edit. */
    void cancelEdit();

Q_SIGNALS:
    /** The value became another one, by the user or by the program. */
    void valueChanged(int value);
    /** The user begins to change the value. Always followed by one editFinished(), unless the wheel
        is deleted. */
    void editStarted();
    /** The user changed the value. */
    void valueEdited(int value);
    /** The edit is over. Not accepted: it was taken back, the value is what it was at
        editStarted(), and valueEdited() said so before. */
    void editFinished(bool accepted);
    /** The limits became other ones; before the value that they limit. */
    void rangeChanged(int minimum, int maximum);
    /** The sensitivity became another one. */
    void sensitivityChanged(float sensitivity);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    friend class JogWheelAccessible;
    struct Private;
    const std::unique_ptr<Private> m;
};

} // namespace Kestrel::UI
