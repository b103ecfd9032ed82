#pragma once

#include "grade/Grade.h"

#include <KxUI/picker/SwatchModel.h>

#include <QWidget>

#include <optional>

class QLabel;
class QToolButton;

namespace Kestrel::UI {
class ColorPicker;
struct ColorValue;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class Session;
class SwatchKeeper;

/** A colour to work with: picked, taken by the pipette (from the viewer the light of the frame as it
    is in its file, without the grade), and kept among the swatches. It changes the grade only where
    it is asked to: its tint becomes that of the gain, or the gain becomes the one that makes the
    colour grey. Both keep how bright the picture is, and are one step of the history. */
class ColorPanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit ColorPanel(Session* session, QWidget* parent = nullptr);
    ~ColorPanel() override;

    /** The gain of this tint; nothing for black, and for what has less than no light. */
    static std::optional<GainColor> tintOf(const UI::ColorValue& color, const GainColor& before);
    /** The gain by which this colour is grey; nothing where one of its channels has no light. */
    static std::optional<GainColor> greyingOf(const UI::ColorValue& color, const GainColor& before);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QLayout* makeButtons();
    QToolButton* makePaletteButton();
    void askForFile(bool imports);
    void findPictures();
    void showWhatIsPossible();
    void setGain(const std::optional<GainColor>& gain, const QString& text);

    Session* m_session;
    UI::SwatchModel m_swatches;
    UI::ColorPicker* m_picker;
    SwatchKeeper* m_keeper;
    QToolButton* m_tint;
    QToolButton* m_grey;
    QLabel* m_note;
};

} // namespace Kestrel::Workbench
