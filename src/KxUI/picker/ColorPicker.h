#pragma once

#include <KxUI/Export.h>
#include <KxUI/picker/ColorValue.h>
#include <KxUI/picker/DisplayTransform.h>

#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

namespace Kestrel::UI {

class ColorPickerPrivate;
class SwatchModel;

/** Picks a colour: by a wheel or a field, by sliders and numbers of several models, by its code, and
    from swatches, with the old colour beside the new one. A panel, not a dialog: it can be docked.

    A colour can be as bright as light is. The exposure says how bright the wheel, the field, hue,
    saturation and value see it: they are of the colour divided by two to the power of the stops. A
    brighter colour that the host sets raises the exposure to where the colour has the value 1; what
    the user does to the colour leaves it; moving it moves the colour along. Hue and saturation stay
    where they are while the colour is grey or black. Parts below 0 are kept, but hue, saturation
    and value see them as 0, and an edit there clears them.

    Whatever the user does is told as one edit. A click on the old colour takes that one again. The
    numbers calculate and can be dragged by their labels. Linked channels keep to their ratios.
    Control with 1 to 7 shows a page.

    The pipette, by its button, by I or while Space is held, takes a colour from elsewhere: first from
    the host's pictures, then from the windows of this program and, where the desktop permits it,
    from the screen. The new half shows what is under the pointer. A click takes it, and with Shift
    more may follow; a drag takes the mean of a rectangle; Escape ends it. Alpha stays. Interface
    thread. */
class KXUI_EXPORT ColorPicker : public QWidget {
    Q_OBJECT
    Q_PROPERTY(
        Kestrel::UI::ColorValue color READ color WRITE setColor NOTIFY colorChanged USER true)
    Q_PROPERTY(Kestrel::UI::ColorValue previousColor READ previousColor WRITE setPreviousColor
                   NOTIFY previousColorChanged)
    Q_PROPERTY(Pages pages READ pages WRITE setPages NOTIFY pagesChanged)
    Q_PROPERTY(Page currentPage READ currentPage WRITE setCurrentPage NOTIFY shownPagesChanged)
    Q_PROPERTY(Pages shownPages READ shownPages NOTIFY shownPagesChanged)
    Q_PROPERTY(bool alphaEnabled READ isAlphaEnabled WRITE setAlphaEnabled NOTIFY displayChanged)
    Q_PROPERTY(bool compact READ isCompact WRITE setCompact NOTIFY displayChanged)
    Q_PROPERTY(int decimals READ decimals WRITE setDecimals NOTIFY displayChanged)
    Q_PROPERTY(double exposure READ exposure NOTIFY exposureChanged)
    Q_PROPERTY(bool sampling READ isSampling NOTIFY samplingChanged)

public:
    /** One of wheel, field and swatches is seen, and one of the pages of numbers. */
    enum Page {
        WheelPage = 1,  ///< hue and saturation on a disc in a ring of values
        FieldPage = 2,  ///< two numbers of the model that is seen, the third is pinned
        RgbPage = 4,    ///< red, green and blue, which can be linked
        HsvPage = 8,    ///< hue, saturation, value
        TmiPage = 16,   ///< temperature, magenta, intensity
        YCbCrPage = 32, ///< luma, Cb and Cr by one of the options of colorSpaceName()
        SwatchPage = 64 ///< the swatches
    };
    Q_ENUM(Page)
    /** Bits of Page. */
    Q_DECLARE_FLAGS(Pages, Page)
    Q_FLAG(Pages)

    /** All pages. */
    static constexpr int AllPages = 127;

    /** Black, with all pages, of which wheel and red, green, blue are seen. */
    explicit ColorPicker(QWidget* parent = nullptr);
    ~ColorPicker() override;

    /** The colour as it was set or picked. */
    ColorValue color() const;
    /** The one to compare with, and to go back to. */
    ColorValue previousColor() const;

    /** How colours are shown, and what codes and colours of the screen come back by. None at first:
        as they are. */
    DisplayTransform displayTransform() const;
    void setDisplayTransform(const DisplayTransform& transform);

    /** Which pages the user can have; all at first. */
    Pages pages() const;
    void setPages(Pages pages);
    /** The page that was chosen last. Choosing one of the numbers leaves what is seen of wheel,
        field and swatches, and the other way round. One that is not offered is ignored. */
    Page currentPage() const;
    void setCurrentPage(Page page);
    /** The pages that are seen: one of wheel, field and swatches, and one of numbers. */
    Pages shownPages() const;

    /** Whether the user can change alpha; true at first. Without, colours keep theirs. */
    bool isAlphaEnabled() const;
    void setAlphaEnabled(bool enabled);

    /** Whether all is in one column, for 220 pixels, with short labels; false at first. */
    bool isCompact() const;
    void setCompact(bool compact);

    /** The places of the numbers, 0 to 9; 4 at first. */
    int decimals() const;
    void setDecimals(int decimals);

    /** In stops; 0 while the host sets no brighter colour than white. */
    double exposure() const;

    /** The palette that is offered: borrowed; null, as at first, for one of the picker's own. */
    SwatchModel* swatches() const;
    void setSwatches(SwatchModel* model);

    /** The colour of a host's picture under a place of the desktop; null where there is none, and
        the screen's is taken. */
    using SampleSource = std::function<std::optional<ColorValue>(const QPoint& global)>;

    /** What the pipette asks first where it is over `where` or a part of it; an empty source asks
        nobody there any more. The widget is borrowed and may go before the picker. */
    void addSampleSource(QWidget* where, SampleSource source);
    /** Whether the pipette is on. */
    bool isSampling() const;

    /** Between editStarted() and editFinished(). */
    bool isEditing() const;

    /** The pages that are offered and seen and the options of the user, for the host's settings. */
    QByteArray saveState() const;
    /** False, and nothing changed, for bytes that are no such state. */
    bool restoreState(const QByteArray& state);

public Q_SLOTS:
    /** Shows the colour. One with a part that is not finite is ignored; alpha is limited to 0-1. */
    void setColor(const Kestrel::UI::ColorValue& color);
    void setPreviousColor(const Kestrel::UI::ColorValue& color);
    /** Puts the pipette on, if the picker is visible, and off. */
    void startSampling();
    void stopSampling();
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** The colour became another one, by whomever. */
    void colorChanged(const Kestrel::UI::ColorValue& color);
    /** The user begins to change the colour. Always followed by exactly one editFinished(). */
    void editStarted();
    /** The user changed the colour; at every movement of a drag, every notch, every key repeat. */
    void valueEdited(const Kestrel::UI::ColorValue& color);
    /** The edit is over. Not accepted: taken back; the colour is what it was at editStarted(), and
        valueEdited() said so before. */
    void editFinished(bool accepted);

    /** These became other ones, by whomever. */
    void previousColorChanged(const Kestrel::UI::ColorValue& color);
    void exposureChanged(double stops);
    void samplingChanged(bool on);
    void pagesChanged();
    void shownPagesChanged();
    /** Alpha, columns or decimals became other ones. */
    void displayChanged();

protected:
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    friend class ColorPickerPrivate;

    const std::unique_ptr<ColorPickerPrivate> d;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(ColorPicker::Pages)

} // namespace Kestrel::UI
