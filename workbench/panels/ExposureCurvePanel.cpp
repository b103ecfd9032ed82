#include "panels/ExposureCurvePanel.h"

#include "play/Session.h"

#include <KxUI/curveedit/CurveEditor.h>
#include <KxUI/curveedit/CurveView.h>

#include <QLabel>
#include <QLocale>
#include <QVBoxLayout>

#include <algorithm>
#include <limits>

namespace Kestrel::Workbench {

namespace {

/** What is shown at least, in stops. */
constexpr double nominalStops = 2.0;

} // namespace

ExposureCurvePanel::ExposureCurvePanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_grades(session->grades())
    , m_editor(new UI::CurveEditor)
    , m_hint(new QLabel) {
    setObjectName(QStringLiteral("ExposureCurvePanel"));
    m_model.addCurve(tr("Exposure"));
    m_model.setColor(0, {});
    m_editor->setModel(&m_model);
    m_editor->view()->setTimeAxis(session->formatter());
    m_editor->view()->setSnapEnabled(true);
    m_editor->view()->setAccessibleName(tr("Exposure over the frames, in stops"));
    m_hint->setEnabled(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->setSpacing(2);
    layout->addWidget(m_hint);
    layout->addWidget(m_editor, 1);
    connectEditor();
    connect(m_grades, &GradeHistory::gradeChanged, this, &ExposureCurvePanel::showGrade);
    connect(session, &Session::sequenceChanged, this, &ExposureCurvePanel::showSequence);
    connect(session->model(), &UI::TimeSliderModel::timeChanged, this,
            [this](UI::TimeSliderModel::TimeFlags flags) {
                showPlayhead();
                if (flags != UI::TimeSliderModel::CurrentTime)
                    showSnapLines();
            });
    showSequence();
}

void ExposureCurvePanel::connectEditor() {
    connect(m_editor, &UI::CurveEditor::editStarted, this,
            [this](const QString& what) { m_editText = tr("Exposure: %1").arg(what); });
    connect(m_editor, &UI::CurveEditor::edited, this, [this] {
        Grade grade = m_grades->grade();
        grade.setExposureKeys(m_model.keyCurve(0));
        m_grades->change(m_editor, grade, m_editText);
    });
    connect(m_editor, &UI::CurveEditor::editFinished, this,
            [this](bool accepted) { m_grades->finish(m_editor, accepted); });
    connect(m_grades, &GradeHistory::editInterrupted, m_editor, &UI::CurveEditor::cancelEdit);
}

void ExposureCurvePanel::showSequence() {
    const Sequence& sequence = m_session->sequence();
    setEnabled(m_grades->hasSequence());
    if (!sequence.isEmpty()) {
        UI::CurveModel::Limits limits;
        limits.lowX = double(sequence.firstTime());
        limits.highX = double(sequence.lastTime());
        limits.lowY = -double(Grade::MostStops);
        limits.highY = double(Grade::MostStops);
        limits.stepX = 1.0;
        m_model.setLimits(0, limits);
        // A single frame has a width, too.
        m_editor->view()->setNominalRange(QRectF(limits.lowX, -nominalStops,
                                                 std::max(limits.highX - limits.lowX, 1.0),
                                                 2.0 * nominalStops));
    }
    showGrade();
    showPlayhead();
    showSnapLines();
    m_editor->view()->showAll();
}

void ExposureCurvePanel::showGrade() {
    const Grade& grade = m_grades->grade();
    m_model.setKeyCurve(0, grade.exposureKeys);
    m_hint->setVisible(!grade.isKeyed());
    m_hint->setText(tr("%1 stops on every frame. A press below sets the first key.")
                        .arg(QLocale().toString(double(grade.exposure), 'f', 2)));
}

void ExposureCurvePanel::showPlayhead() {
    const Base::Time time = m_session->model()->currentTime();
    m_editor->view()->setPlayhead(
        time == Base::InvalidTime ? std::numeric_limits<double>::quiet_NaN() : double(time));
}

void ExposureCurvePanel::showSnapLines() {
    const UI::TimeSliderModel& times = *m_session->model();
    QVector<double> lines;
    for (const Base::Time time : {times.inTime(), times.outTime()}) {
        if (time != Base::InvalidTime)
            lines.append(double(time));
    }
    for (const Base::Time time : times.keyFrames())
        lines.append(double(time));
    m_editor->view()->setSnapLines(lines, {0.0});
}

} // namespace Kestrel::Workbench
