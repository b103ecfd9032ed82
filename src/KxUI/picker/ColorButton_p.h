#pragma once

#include <KxUI/kit/EditBracket_p.h>
#include <KxUI/picker/ColorButton.h>
#include <KxUI/picker/ColorPlace_p.h>
#include <KxUI/picker/ColorPopup_p.h>
#include <KxUI/picker/DisplayCall_p.h>

#include <memory>
#include <optional>

class QPainter;

namespace Kestrel::UI {

/** The state of a ColorButton. Functions that change the colour may delete it. */
class ColorButtonPrivate {
public:
    explicit ColorButtonPrivate(ColorButton* button);

    void store(const ColorValue& newColor);
    /** Takes a colour that came from elsewhere, or refuses what is none. */
    void take(std::optional<ColorValue> taken);

    void open();
    /** Closes the picker, if it is open. */
    void close();
    /** Has the picker show the button's colour. */
    void showInPicker();
    void paint(QPainter& painter) const;

    ColorValue color;
    DisplayCall display;
    EditBracket<ColorButton, ColorValue> bracket;
    QString title;
    bool isAlphaEnabled = true;
    QPointer<ColorPicker> shared;
    std::unique_ptr<ColorPicker> own;
    std::unique_ptr<ColorPopup> popup; ///< while it is open
    ColorPlace place;

private:
    ColorPicker* picker();
    void connectPicker(ColorPicker* picker);
    void leave(bool kept);

    ColorButton* const q;
    QPointer<ColorPicker> m_shown; ///< the one in the popup
    ColorValue m_before;           ///< the colour that it was opened with
};

} // namespace Kestrel::UI
