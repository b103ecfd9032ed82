#pragma once

#include "grade/GradeHistory.h"
#include "media/HistogramCounter.h"

#include <KxUI/curveedit/CurvesModel.h>

#include <QWidget>

namespace Kestrel::UI {
class CurveEditor;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class Session;

/** The curves of the open sequence's grade. Behind them lies the histogram of the shown frame, of
    one that plays as soon as it stands still; what the user points at in the viewer is marked where
    it comes to the curve. */
class CurvesPanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit CurvesPanel(Session* session, QWidget* parent = nullptr);

    UI::CurveEditor* editor() const { return m_editor; }

    /** What a curve is called. */
    static QString nameOf(int slot);

protected:
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void connectEditor();
    void showGrade();
    void countFrame();
    void showHistogram();
    void showPixel();

    Session* m_session;
    GradeHistory* m_grades;
    UI::CurvesModel m_model;
    UI::CurveEditor* m_editor;
    HistogramCounter m_counter;
    QString m_editText;
};

} // namespace Kestrel::Workbench
