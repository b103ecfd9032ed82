#pragma once

#include "grade/GradeHistory.h"

#include <QWidget>

#include <array>
#include <vector>

class QComboBox;
class QLabel;
class QLayout;
class QToolButton;

namespace Kestrel::UI {
class ColorWheel;
class Disclosure;
class DoubleSpinBox;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class BalancePanel;
class CurvesPanel;
class ExposurePanel;
class Session;

/** Grades the open sequence: gain on a wheel, three balances, exposure, curves, and a preview of what YCbCr keeps
    of the picture. Every edit is a step of the shared history. */
class GradePanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit GradePanel(Session* session, QWidget* parent = nullptr);

    /** Shows another of the four curves. */
    void showCurve(Grade::Slot slot);

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QLayout* makeHeader();
    UI::Disclosure* makeGain();
    UI::Disclosure* makeBalance();
    UI::Disclosure* makeExposure();
    UI::Disclosure* makeCurves();
    UI::Disclosure* makePreview();
    UI::Disclosure* section(const QString& title, const QString& key, QLayout* layout);
    UI::DoubleSpinBox* number(double least, double most, int decimals, double step);
    template <typename Widget, typename Set>
    void bracket(Widget* widget, const QString& text, Set set);
    template <typename Change>
    QToolButton* resetButton(const QString& what, Change change);

    int scrollBarWidth() const;
    void showGrade();
    void summarize();
    void applyColors();

    Session* m_session;
    GradeHistory* m_grades;
    QLabel* m_title;
    QToolButton* m_bypass;
    QToolButton* m_resetAll;
    UI::ColorWheel* m_wheel;
    std::array<QLabel*, 3> m_gainLabels{};
    std::array<UI::DoubleSpinBox*, 3> m_gains{};
    QToolButton* m_resetGain;
    BalancePanel* m_balance;
    QToolButton* m_resetBalance;
    ExposurePanel* m_exposure;
    QToolButton* m_resetExposure;
    CurvesPanel* m_curves;
    QToolButton* m_resetCurves;
    QComboBox* m_preview;
    UI::Disclosure* m_gainSection;
    UI::Disclosure* m_balanceSection;
    UI::Disclosure* m_exposureSection;
    UI::Disclosure* m_curveSection;
    UI::Disclosure* m_previewSection;
};

} // namespace Kestrel::Workbench
