#pragma once

#include "grade/GradeHistory.h"

#include <QWidget>

#include <array>

class QLabel;
class QLayout;
class QToolButton;

namespace Kestrel::UI {
class DoubleSpinBox;
class TrackBall;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

/** The balances of the open sequence's grade: a track ball for the shadows, one for the midtones and
    one for the highlights, each with its three numbers. More is lighter everywhere, so the midtones
    are shown as gammas, one over their powers. Every edit is a step of the shared history. */
class BalancePanel : public QWidget {
    Q_OBJECT

public:
    /** @param grades  borrowed; outlives the panel */
    explicit BalancePanel(GradeHistory* grades, QWidget* parent = nullptr);

    /** Makes the balls as large as fits into that width. Not the panel's own, which a scroll bar
        changes that comes and goes with the height of the balls. */
    void fitTo(int room);

protected:
    void changeEvent(QEvent* event) override;

private:
    /** One of the three, with its limits as they are shown. */
    struct Part {
        Factors Balance::*stored = nullptr;
        QString name;
        bool isPower = false;
        double least = 0.0;
        double most = 0.0;
        UI::TrackBall* ball = nullptr;
        std::array<QLabel*, 3> labels{};
        std::array<UI::DoubleSpinBox*, 3> numbers{};
        QToolButton* reset = nullptr;
    };

    QLayout* make(Part& part);
    void makeBall(Part& part);
    void makeNumber(Part& part, std::size_t channel);
    template <typename Widget, typename Set>
    void bracket(Widget* widget, const Part& part, Set set);

    void showGrade();
    void show(const Part& part);
    void applyColors();

    GradeHistory* m_grades;
    std::array<Part, 3> m_parts; ///< shadows, midtones, highlights
};

} // namespace Kestrel::Workbench
