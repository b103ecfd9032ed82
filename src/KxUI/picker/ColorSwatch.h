#pragma once

#include <KxUI/Export.h>
#include <KxUI/picker/ColorValue.h>
#include <KxUI/picker/DisplayTransform.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class ColorSwatch;
class ColorSwatchPrivate;

/** Shows one colour, and gives and takes colours: by dragging and dropping, by Control with C and
    V, and from a menu. Other programs understand the colours as well; text is taken in all
    notations that are usual for colours. What lets something through is shown without and with its
    alpha, over a checker.

    A colour that is dropped or pasted is an edit by itself. Text that has no alpha leaves the
    swatch's. Where the display transform has no way back, colours of the screen are refused, and a
    frame flashes; colours of this library are taken always. Interface thread. */
class KXUI_EXPORT ColorSwatch : public QWidget {
    Q_OBJECT
    Q_PROPERTY(
        Kestrel::UI::ColorValue color READ color WRITE setColor NOTIFY colorChanged USER true)
    Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly NOTIFY readOnlyChanged)

public:
    /** Black, which can be edited. */
    explicit ColorSwatch(QWidget* parent = nullptr);
    ~ColorSwatch() override;

    /** The colour as it was set. */
    ColorValue color() const;

    /** How it is shown. None at first: as it is. */
    DisplayTransform displayTransform() const;
    void setDisplayTransform(const DisplayTransform& transform);

    /** Whether the user can only look, click and copy. */
    bool isReadOnly() const;
    void setReadOnly(bool readOnly);

    /** Between editStarted() and editFinished(). */
    bool isEditing() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Shows the colour. One with a part that is not finite is ignored; alpha is limited to 0-1. */
    void setColor(const Kestrel::UI::ColorValue& color);
    /** Puts the colour on the clipboard. */
    void copy();
    /** Takes the colour from the clipboard, as the user does; nothing if the swatch is read-only.
     */
    void paste();
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** The colour became another one, by whomever. */
    void colorChanged(const Kestrel::UI::ColorValue& color);
    /** The user begins to change the colour. Always followed by exactly one editFinished(). */
    void editStarted();
    /** The user changed the colour. */
    void valueEdited(const Kestrel::UI::ColorValue& color);
    /** The edit is over. Not accepted: taken back; the colour is what it was at editStarted(), and
        valueEdited() said so before. */
    void editFinished(bool accepted);
    /** The user clicked the swatch, or pressed Space or Return on it. */
    void clicked();
    /** The user may edit it, or no longer. */
    void readOnlyChanged(bool readOnly);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    friend class ColorSwatchPrivate;

    const std::unique_ptr<ColorSwatchPrivate> d;
};

} // namespace Kestrel::UI
