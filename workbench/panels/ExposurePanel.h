#pragma once

#include "grade/GradeHistory.h"

#include <QWidget>

class QToolButton;

namespace Kestrel::UI {
class DoubleSpinBox;
class LogSlider;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class Session;

/** The exposure of the shown frame, as a slider over factors of the light and as a number of stops.
    As long as the grade has no keys for it, it is that of all frames; else an edit sets the key of
    the frame, and the button beside it tells whether it has one. */
class ExposurePanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit ExposurePanel(Session* session, QWidget* parent = nullptr);

    /** What is shown, in a word. */
    QString summary() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    void makeSlider();
    void makeNumber();
    void makeKeyButton();
    template <typename Widget, typename Stops>
    void bracket(Widget* widget, Stops stopsOf);
    void toggleKey();
    void showGrade();
    void applyColors();

    Session* m_session;
    GradeHistory* m_grades;
    UI::LogSlider* m_slider;
    UI::DoubleSpinBox* m_stops;
    QToolButton* m_key;
    int m_shownPosition = 0;      ///< where the slider stood before the edit that goes on
    Base::Time m_editedFrame = 0; ///< whose exposure that edit changes, wherever the playhead goes
};

} // namespace Kestrel::Workbench
