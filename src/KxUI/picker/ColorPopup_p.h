#pragma once

#include <QFrame>
#include <QPointer>

#include <functional>

class QLabel;

namespace Kestrel::UI {

class ColorPicker;

/** The window that a colour button has its picker in. No popup in the sense of a menu: those lose
    the mouse to the boxes and dialogs that a picker opens itself. */
class ColorPopup : public QFrame {
public:
    /** A child of the button; `leave` is told that the user is done: keeping the colour, or going
        back to the one before. It may delete the popup. */
    ColorPopup(QWidget* button, std::function<void(bool kept)> leave);
    /** Gives the picker back. */
    ~ColorPopup() override;

    /** The popup that a picker lies in; null for none. */
    static ColorPopup* of(const ColorPicker* picker);

    /** Shows the picker beside the button, which has the picker no other popup's. */
    void open(ColorPicker* picker, const QString& title);
    /** Tells it to end, as the user does. */
    void leave(bool kept);

    /** Where a window goes beside a button: below it, else above it, within the area. */
    static QRect placeBeside(const QRect& button, const QSize& size, const QRect& area,
                             bool isMirrored);

protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void leaveIfElsewhere();

    std::function<void(bool kept)> m_leave;
    QPointer<ColorPicker> m_picker;
    QLabel* m_title;
    bool m_isDone = false;
};

} // namespace Kestrel::UI
