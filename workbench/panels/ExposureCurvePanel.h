#pragma once

#include "grade/GradeHistory.h"

#include <KxUI/curveedit/KeyCurveModel.h>

#include <QWidget>

class QLabel;

namespace Kestrel::UI {
class CurveEditor;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

class Session;

/** The exposure of the open sequence over its frames: a curve through keys, which lie on whole
    frames and snap to the marks and keyframes of the timeline. Times are written as there. */
class ExposureCurvePanel : public QWidget {
    Q_OBJECT

public:
    /** @param session  borrowed; outlives the panel */
    explicit ExposureCurvePanel(Session* session, QWidget* parent = nullptr);

    UI::CurveEditor* editor() const { return m_editor; }

private:
    void connectEditor();
    void showSequence();
    void showGrade();
    void showPlayhead();
    void showSnapLines();

    Session* m_session;
    GradeHistory* m_grades;
    UI::KeyCurveModel m_model;
    UI::CurveEditor* m_editor;
    QLabel* m_hint;
    QString m_editText;
};

} // namespace Kestrel::Workbench
