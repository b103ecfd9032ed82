#include "panels/CurvesPanel.h"

#include "play/Session.h"

#include <KxUI/curveedit/CurveEditor.h>
#include <KxUI/curveedit/CurveView.h>
#include <KxUI/kit/ChannelColors.h>

#include <QEvent>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <limits>

namespace Kestrel::Workbench {

namespace {

constexpr int leastHeight = 320;

/** The user's own curves. */
QString presetFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/curves");
}

} // namespace

CurvesPanel::CurvesPanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_grades(session->grades())
    , m_editor(new UI::CurveEditor) {
    m_model.setNames(
        {nameOf(Grade::Red), nameOf(Grade::Green), nameOf(Grade::Blue), nameOf(Grade::Master)});
    m_model.setCurves(m_grades->grade().curves);
    m_editor->setModel(&m_model);
    m_editor->setPresetFolder(presetFolder());
    m_editor->setMinimumHeight(leastHeight);
    m_editor->view()->setCurrentCurve(Grade::Master);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_editor);
    connectEditor();
    connect(m_grades, &GradeHistory::gradeChanged, this, &CurvesPanel::showGrade);
    connect(session, &Session::frameChanged, this, &CurvesPanel::countFrame);
    connect(session->player(), &Player::playingChanged, this, &CurvesPanel::countFrame);
    connect(session, &Session::pointedPixelChanged, this, &CurvesPanel::showPixel);
    connect(&m_counter, &HistogramCounter::counted, this, &CurvesPanel::showHistogram);
    showGrade();
}

QString CurvesPanel::nameOf(int slot) {
    const std::array<QString, Grade::Slots> names{tr("Red"), tr("Green"), tr("Blue"), tr("Master")};
    return names.at(std::size_t(slot));
}

void CurvesPanel::connectEditor() {
    UI::CurveView* view = m_editor->view();
    connect(m_editor, &UI::CurveEditor::editStarted, this, [this, view](const QString& what) {
        m_editText = tr("%1 Curve: %2").arg(nameOf(view->currentCurve()), what);
    });
    connect(m_editor, &UI::CurveEditor::edited, this, [this] {
        Grade grade = m_grades->grade();
        grade.curves = m_model.curves();
        m_grades->change(m_editor, grade, m_editText);
    });
    connect(m_editor, &UI::CurveEditor::editFinished, this,
            [this](bool accepted) { m_grades->finish(m_editor, accepted); });
    connect(m_grades, &GradeHistory::editInterrupted, m_editor, &UI::CurveEditor::cancelEdit);
    connect(view, &UI::CurveView::currentCurveChanged, this, [this] {
        showHistogram();
        showPixel();
    });
}

void CurvesPanel::showGrade() {
    m_model.setCurves(m_grades->grade().curves);
    showPixel();
}

void CurvesPanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        showHistogram();
}

void CurvesPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    countFrame();
}

void CurvesPanel::countFrame() {
    if (isVisible() && !m_session->player()->isPlaying() && !m_session->isLoading())
        m_counter.count(m_session->shownFrame());
}

/** Of the channel that the curve changes; of all for the master. */
void CurvesPanel::showHistogram() {
    const UI::ChannelColors colors = UI::ChannelColors::of(palette());
    const int slot = m_editor->view()->currentCurve();
    QVector<UI::CurveHistogram> shown;
    for (int channel = Grade::Red; channel <= Grade::Blue; ++channel) {
        if (slot != Grade::Master && slot != channel)
            continue;
        UI::CurveHistogram histogram;
        histogram.counts = m_counter.histogram().channels[std::size_t(channel)];
        histogram.color = colors.line(UI::ChannelColors::Channel(channel));
        shown.append(histogram);
    }
    m_editor->view()->setHistogram(shown);
}

void CurvesPanel::showPixel() {
    double marker = std::numeric_limits<double>::quiet_NaN();
    if (const auto pixel = m_session->pointedPixel()) {
        const Grade& grade = m_grades->grade();
        const auto inputs =
            grade.curveInputs(pixel->light, grade.exposureAt(m_session->heldTime()));
        marker = inputs.at(std::size_t(m_editor->view()->currentCurve()));
    }
    m_editor->view()->setMarker(marker);
}

} // namespace Kestrel::Workbench
