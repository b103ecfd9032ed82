#pragma once

#include <KxUI/picker/ColorModel.h>
#include <KxUI/picker/ColorValue.h>
#include <KxUI/picker/DisplayTransform.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class ColorFieldPrivate;

/** A plane of colours: two numbers of a model, rightwards and upwards, while the third is pinned.
    The numbers go from end to end of what is usual for them; the marker of a colour beyond stands at
    the edge.

    Mouse: a press brings the marker there, a drag goes on outside, along the edges; with Control
    only rightwards, with Shift only upwards. Escape, or the right button, takes a drag back. Keys:
    arrows by a hundredth, with Shift by a tenth, with Control by a thousandth. Interface thread. */
class KXUI_EXPORT ColorField : public QWidget {
    Q_OBJECT
    Q_PROPERTY(
        Kestrel::UI::ColorValue color READ color WRITE setColor NOTIFY colorChanged USER true)
    Q_PROPERTY(
        Kestrel::UI::ColorModel::Component pinned READ pinned WRITE setPinned NOTIFY pinnedChanged)
    Q_PROPERTY(int colorSpace READ colorSpace WRITE setColorSpace NOTIFY colorSpaceChanged)

public:
    /** Black, with the hue pinned. */
    explicit ColorField(QWidget* parent = nullptr);
    ~ColorField() override;

    /** The colour as it was set or picked. Its alpha stays. */
    ColorValue color() const;

    /** What stays; `Hue` at first. The two others of its model are picked. `Alpha` is ignored. */
    ColorModel::Component pinned() const;
    void setPinned(ColorModel::Component component);
    /** What runs rightwards and what upwards. */
    ColorModel::Component horizontalComponent() const;
    ColorModel::Component verticalComponent() const;

    /** The option of colorSpaceName() for luma, Cb and Cr; `ColorSpace::Rec709` at first, and for
        any other number. */
    int colorSpace() const;
    void setColorSpace(int option);

    /** How the colours are shown. None at first: as they are. */
    DisplayTransform displayTransform() const;
    void setDisplayTransform(const DisplayTransform& transform);

    /** Between editStarted() and editFinished(). */
    bool isEditing() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** Shows the colour. One with a part that is not finite is ignored. */
    void setColor(const Kestrel::UI::ColorValue& color);
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** The colour became another one, by whomever. */
    void colorChanged(const Kestrel::UI::ColorValue& color);
    /** The user begins to change the colour. Always followed by exactly one editFinished(). */
    void editStarted();
    /** The user changed the colour; at every movement of a drag, every key repeat. */
    void valueEdited(const Kestrel::UI::ColorValue& color);
    /** The edit is over. Not accepted: taken back; the colour is what it was at editStarted(), and
        valueEdited() said so before. */
    void editFinished(bool accepted);
    /** A setter had an effect. */
    void pinnedChanged(Kestrel::UI::ColorModel::Component component);
    void colorSpaceChanged(int option);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    friend class ColorFieldPrivate;

    const std::unique_ptr<ColorFieldPrivate> d;
};

} // namespace Kestrel::UI
