#include "panels/ExposurePanel.h"

#include "panels/GradeParts.h"
#include "play/Session.h"

#include <KxUI/kit/IconFactory.h>
#include <KxUI/values/DoubleSpinBox.h>
#include <KxUI/values/LogSlider.h>

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

constexpr int gap = 6;
constexpr int numberWidth = 78;

/** Two decades either way, a third of a stop in twenty positions. */
constexpr int exposureDecades = 2;
constexpr int positionsADecade = 200;
constexpr int thirdOfAStop = 20;

float limited(double stops) {
    return std::clamp(float(stops), -Grade::MostStops, Grade::MostStops);
}

} // namespace

ExposurePanel::ExposurePanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_grades(session->grades())
    , m_slider(new UI::LogSlider(Qt::Horizontal))
    , m_stops(Workbench::makeNumber(-double(Grade::MostStops), double(Grade::MostStops), 2, 0.1))
    , m_key(new QToolButton) {
    makeSlider();
    makeNumber();
    makeKeyButton();
    auto* label = new QLabel(tr("Stops"));
    m_stops->setLabel(label);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(gap);
    row->addWidget(m_slider, 1);
    row->addWidget(label);
    row->addWidget(m_stops);
    row->addWidget(m_key);

    connect(m_grades, &GradeHistory::gradeChanged, this, &ExposurePanel::showGrade);
    connect(session, &Session::sequenceChanged, this, &ExposurePanel::showGrade);
    connect(session->model(), &UI::TimeSliderModel::timeChanged, this,
            [this](UI::TimeSliderModel::TimeFlags flags) {
                if (flags.testFlag(UI::TimeSliderModel::CurrentTime) && m_grades->grade().isKeyed())
                    showGrade();
            });
    applyColors();
    showGrade();
}

QString ExposurePanel::summary() const {
    const Grade& grade = m_grades->grade();
    return grade.isKeyed() ? tr("%n keys", nullptr, int(grade.exposureKeys.size()))
                           : m_stops->cleanText();
}

void ExposurePanel::makeSlider() {
    m_slider->setRealRange(-exposureDecades, exposureDecades, positionsADecade);
    m_slider->setPageStep(thirdOfAStop);
    m_slider->setTickTextSize(10);
    m_slider->setAccessibleName(tr("Exposure"));
    m_slider->setToolTip(tr("Multiplies the light"));
    // Back in its place it means what it meant there, not what that would be rounded to.
    bracket(m_slider, [this](float before) {
        return m_slider->value() == m_shownPosition ? before
                                                    : limited(std::log2(m_slider->realValue()));
    });
}

void ExposurePanel::makeNumber() {
    m_stops->setFixedWidth(numberWidth);
    m_stops->setAccessibleName(tr("Exposure in stops"));
    bracket(m_stops, [this](float before) {
        const float stops = limited(m_stops->value());
        return stops == float(typed(before)) ? before : stops;
    });
}

void ExposurePanel::makeKeyButton() {
    m_key->setIcon(UI::IconFactory::icon(QStringLiteral("Key")));
    m_key->setAutoRaise(true);
    m_key->setCheckable(true);
    m_key->setAccessibleName(tr("Exposure key"));
    m_key->setToolTip(tr("Sets a key of the exposure at this frame, or removes it. With keys, the "
                         "exposure goes from one to the next."));
    connect(m_key, &QToolButton::clicked, this, &ExposurePanel::toggleKey);
}

/** What the user does to the widget is an edit of the exposure, which `stopsOf` tells by that of
    before. */
template <typename Widget, typename Stops>
void ExposurePanel::bracket(Widget* widget, Stops stopsOf) {
    connect(widget, &Widget::editStarted, this, [this] { m_editedFrame = m_session->heldTime(); });
    connect(widget, &Widget::valueEdited, this, [this, widget, stopsOf] {
        const Grade& before = m_grades->gradeBefore();
        Grade grade = m_grades->grade();
        grade.exposure = before.exposure;
        grade.exposureKeys = before.exposureKeys;
        const float was = before.exposureAt(m_editedFrame);
        const float stops = stopsOf(was);
        if (stops != was)
            grade.setExposureAt(m_editedFrame, stops);
        m_grades->change(widget, grade, tr("Exposure"));
    });
    connect(widget, &Widget::editFinished, this, [this, widget](bool accepted) {
        m_grades->finish(widget, accepted);
        showGrade();
    });
    connect(m_grades, &GradeHistory::editInterrupted, widget, &Widget::cancelEdit);
}

void ExposurePanel::toggleKey() {
    Grade grade = m_grades->grade();
    const Base::Time frame = m_session->heldTime();
    const int key = grade.exposureKeyAt(frame);
    if (key < 0) {
        grade.addExposureKey(frame);
    } else {
        UI::KeyCurve keys = grade.exposureKeys;
        keys.erase(std::size_t(key));
        grade.setExposureKeys(keys);
    }
    m_grades->edit(grade, key < 0 ? tr("Add Exposure Key") : tr("Remove Exposure Key"));
    showGrade(); // also where there is no sequence, and the button is on now
}

void ExposurePanel::showGrade() {
    const Grade& grade = m_grades->grade();
    const Base::Time frame = m_session->heldTime();
    const float stops = grade.exposureAt(frame);
    // A frame that comes by while the user drags is none that is edited.
    const bool isOther = grade.isKeyed() && frame != m_editedFrame;
    if (!m_slider->isEditing() || !isOther)
        m_slider->setRealValue(std::exp2(double(stops)));
    if (!m_slider->isEditing())
        m_shownPosition = m_slider->value();
    if (!m_stops->isEditing() || !isOther)
        showNumber(m_stops, stops);
    m_key->setChecked(grade.exposureKeyAt(frame) >= 0);
}

void ExposurePanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

void ExposurePanel::applyColors() {
    const QColor text = palette().color(QPalette::WindowText);
    m_slider->setExpTickColor(text);
    QColor between = text;
    between.setAlphaF(0.65f);
    m_slider->setTickColor(between);
    m_slider->update();
}

} // namespace Kestrel::Workbench
