#pragma once

#include <KxUI/Export.h>
#include <KxUI/picker/ColorValue.h>
#include <KxUI/picker/DisplayTransform.h>

#include <QAbstractButton>

#include <memory>

namespace Kestrel::UI {

class ColorButtonPrivate;
class ColorPicker;

/** A button that shows a colour and opens a picker for it, which stays open while it is used. Each
    thing done there is an edit by itself, told at once. The button, Return and another window that
    gets the focus close the picker; Escape first goes back to the colour that the picker was opened
    with, in one edit.

    Colours are also dragged out of the button and dropped on it, and copied and pasted by Control
    with C and V or from a menu, as with a `ColorSwatch`. Interface thread. */
class KXUI_EXPORT ColorButton : public QAbstractButton {
    Q_OBJECT
    Q_PROPERTY(
        Kestrel::UI::ColorValue color READ color WRITE setColor NOTIFY colorChanged USER true)
    Q_PROPERTY(bool alphaEnabled READ isAlphaEnabled WRITE setAlphaEnabled NOTIFY displayChanged)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY displayChanged)

public:
    /** Black, with a picker of its own. */
    explicit ColorButton(QWidget* parent = nullptr);
    ~ColorButton() override;

    /** The colour as it was set or picked. */
    ColorValue color() const;

    /** How it is shown, here and in the picker. None at first: as it is. */
    DisplayTransform displayTransform() const;
    void setDisplayTransform(const DisplayTransform& transform);

    /** Whether the user can change alpha; true at first. Without, colours keep theirs. */
    bool isAlphaEnabled() const;
    void setAlphaEnabled(bool enabled);

    /** What the colour is for, above the picker and for assistive technology; empty at first. */
    QString title() const;
    void setTitle(const QString& title);

    /** One picker for many buttons: borrowed, and shown in the window of the one that is open. It
        takes over that button's colour, transform and alpha, and is hidden without a parent
        afterwards. Null, as at first: one of the button's own, made when it is needed. */
    ColorPicker* picker() const;
    void setPicker(ColorPicker* shared);

    /** Whether the picker is open. */
    bool isOpen() const;

    /** Between editStarted() and editFinished(). */
    bool isEditing() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Shows the colour. One with a part that is not finite is ignored; alpha is limited to 0-1. */
    void setColor(const Kestrel::UI::ColorValue& color);
    /** Opens the picker beside the button, or closes it, which keeps the colour. */
    void setOpen(bool open);
    /** Puts the colour on the clipboard. */
    void copy();
    /** Takes the colour from the clipboard, as the user does. */
    void paste();
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** The colour became another one, by whomever. */
    void colorChanged(const Kestrel::UI::ColorValue& color);
    /** The user begins to change the colour. Always followed by exactly one editFinished(). */
    void editStarted();
    /** The user changed the colour; at every movement of a drag in the picker. */
    void valueEdited(const Kestrel::UI::ColorValue& color);
    /** The edit is over. Not accepted: taken back; the colour is what it was at editStarted(), and
        valueEdited() said so before. */
    void editFinished(bool accepted);
    /** The picker was opened, or closed. */
    void openChanged(bool open);
    /** Alpha or title became another one. */
    void displayChanged();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    friend class ColorButtonPrivate;

    const std::unique_ptr<ColorButtonPrivate> d;
};

} // namespace Kestrel::UI
