#include "panels/GradePanel.h"

#include "panels/CurveView.h"
#include "play/Session.h"

#include <KxUI/color/ColorWheel.h>
#include <KxUI/values/LogSlider.h>

#include <QButtonGroup>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

constexpr int margin = 10;
constexpr int gap = 6;
constexpr int betweenSections = 16;
constexpr int numberWidth = 78;

/** Two decades either way, a third of a stop in twenty positions. */
constexpr int exposureDecades = 2;
constexpr int positionsADecade = 200;
constexpr int thirdOfAStop = 20;

constexpr double mostGain = 16.0;

const char* curveName(int slot) {
    constexpr const char* names[] = {QT_TRANSLATE_NOOP("Kestrel::Workbench::GradePanel", "Red"),
                                     QT_TRANSLATE_NOOP("Kestrel::Workbench::GradePanel", "Green"),
                                     QT_TRANSLATE_NOOP("Kestrel::Workbench::GradePanel", "Blue"),
                                     QT_TRANSLATE_NOOP("Kestrel::Workbench::GradePanel", "Master")};
    return names[slot];
}

/** To be read on the window's grey and on that of a plot; text colour for the master. */
QColor slotColor(int slot, const QPalette& palette) {
    const bool dark = palette.color(QPalette::Window).lightness() < 128;
    switch (slot) {
    case Grade::Red:
        return dark ? QColor(0xf0, 0x70, 0x68) : QColor(0xb8, 0x20, 0x1c);
    case Grade::Green:
        return dark ? QColor(0x6c, 0xc8, 0x6c) : QColor(0x1c, 0x72, 0x26);
    case Grade::Blue:
        return dark ? QColor(0x78, 0xa8, 0xf8) : QColor(0x1c, 0x4c, 0xb8);
    default:
        return palette.color(QPalette::WindowText);
    }
}

float stopsOf(double stops) {
    return std::clamp(float(stops), -Grade::MostStops, Grade::MostStops);
}

QToolButton* textButton(const QString& text) {
    auto* button = new QToolButton;
    button->setText(text);
    button->setAutoRaise(true);
    return button;
}

void setTextColor(QWidget* widget, QPalette::ColorRole role, const QColor& color) {
    QPalette palette;
    palette.setColor(QPalette::Active, role, color);
    palette.setColor(QPalette::Inactive, role, color);
    widget->setPalette(palette);
}

} // namespace

GradePanel::GradePanel(Session* session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
    , m_grades(session->grades()) {
    setObjectName(QStringLiteral("GradePanel"));
    auto* content = new QWidget;
    auto* sections = new QVBoxLayout(content);
    sections->setContentsMargins(margin, gap, margin, margin);
    sections->setSpacing(betweenSections);
    sections->addLayout(makeHeader());
    sections->addLayout(makeGain());
    sections->addLayout(makeExposure());
    sections->addLayout(makeCurves(), 1);
    sections->addLayout(makePreview());

    auto* scroll = new QScrollArea;
    scroll->setWidget(content);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setMinimumWidth(content->minimumSizeHint().width());
    scroll->setFocusPolicy(Qt::NoFocus);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);

    connect(m_grades, &GradeHistory::gradeChanged, this, &GradePanel::showGrade);
    connect(session, &Session::sequenceChanged, this, &GradePanel::showGrade);
    applyColors();
    showGrade();
}

QLayout* GradePanel::makeHeader() {
    m_title = new QLabel;
    m_title->setTextFormat(Qt::PlainText);
    m_title->setMinimumWidth(40);
    m_title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_bypass = textButton(tr("Bypass"));
    m_bypass->setCheckable(true);
    m_bypass->setToolTip(tr("Shows the sequence without its grade"));
    connect(m_bypass, &QToolButton::toggled, m_grades, &GradeHistory::setBypassed);
    connect(m_grades, &GradeHistory::bypassChanged, m_bypass, &QToolButton::setChecked);
    m_resetAll = resetButton(tr("grade"), [](Grade& grade) { grade = Grade(); });
    m_resetAll->setText(tr("Reset All"));

    auto* row = new QHBoxLayout;
    row->addWidget(m_title, 1);
    row->addWidget(m_bypass);
    row->addWidget(m_resetAll);
    return row;
}

QLayout* GradePanel::makeGain() {
    m_wheel = new UI::ColorWheel({}, UI::ColorWheel::ValueRingWheel);
    m_wheel->setAccessibleName(tr("Gain"));
    m_wheel->setMinimumSize(168, 168);
    m_wheel->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_wheel->setToolTip(tr("Left button: colour, on the ring value. F1 tells the rest."));
    bracket(m_wheel, tr("Gain"), [this](Grade& grade) {
        const QVector3D hsv = m_wheel->hsv();
        grade.gain = {hsv.x(), hsv.y(), hsv.z()};
    });

    auto* numbers = new QGridLayout;
    numbers->setHorizontalSpacing(gap);
    numbers->setVerticalSpacing(gap);
    for (int channel = 0; channel < 3; ++channel) {
        const auto at = std::size_t(channel);
        m_gainLabels[at] = new QLabel(tr(curveName(channel)));
        m_gains[at] = number(0.0, mostGain, 3, 0.01);
        m_gainLabels[at]->setBuddy(m_gains[at]);
        m_gains[at]->setAccessibleName(tr("%1 gain").arg(tr(curveName(channel))));
        numbers->addWidget(m_gainLabels[at], channel, 0);
        numbers->addWidget(m_gains[at], channel, 1);
        connect(m_gains[at], QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
                [this, channel](double factor) { editGain(channel, factor); });
    }

    m_resetGain = resetButton(tr("gain"), [](Grade& grade) { grade.gain = {}; });
    auto* row = new QHBoxLayout;
    row->setSpacing(betweenSections);
    row->addWidget(m_wheel, 1);
    row->addLayout(numbers);
    auto* section = new QVBoxLayout;
    section->setSpacing(gap);
    section->addLayout(heading(tr("Gain"), m_resetGain));
    section->addLayout(row);
    return section;
}

QLayout* GradePanel::makeExposure() {
    m_exposure = new UI::LogSlider(Qt::Horizontal);
    m_exposure->setRealRange(-exposureDecades, exposureDecades, positionsADecade);
    m_exposure->setPageStep(thirdOfAStop);
    m_exposure->setTickTextSize(10);
    m_exposure->setAccessibleName(tr("Exposure"));
    m_exposure->setToolTip(tr("Multiplies the light"));
    bracket(m_exposure, tr("Exposure"), [this](Grade& grade) {
        // A slider back in its place means what it meant there, not what it would be rounded to.
        grade.exposure = m_exposure->value() == m_shownPosition
                             ? m_grades->gradeBefore().exposure
                             : stopsOf(std::log2(m_exposure->realValue()));
    });

    m_stops = number(-double(Grade::MostStops), double(Grade::MostStops), 2, 0.1);
    m_stops->setAccessibleName(tr("Exposure in stops"));
    connect(m_stops, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            [this](double stops) {
                Grade grade = m_grades->grade();
                grade.exposure = stopsOf(stops);
                m_grades->edit(grade, tr("Exposure"));
            });

    m_resetExposure = resetButton(tr("exposure"), [](Grade& grade) { grade.exposure = 0.0F; });
    auto* stopsLabel = new QLabel(tr("Stops"));
    stopsLabel->setBuddy(m_stops);
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(m_exposure, 1);
    row->addSpacing(betweenSections - gap);
    row->addWidget(stopsLabel);
    row->addWidget(m_stops);
    auto* section = new QVBoxLayout;
    section->setSpacing(gap);
    section->addLayout(heading(tr("Exposure"), m_resetExposure));
    section->addLayout(row);
    return section;
}

QLayout* GradePanel::makeCurves() {
    m_resetCurve = textButton(tr("Reset"));
    connect(m_resetCurve, &QToolButton::clicked, this, [this] {
        Grade grade = m_grades->grade();
        grade.curves.setCurve(m_slot, UI::Curve());
        m_grades->edit(grade, tr("Reset %1 Curve").arg(tr(curveName(m_slot))));
    });
    QHBoxLayout* top = heading(tr("Curves"), nullptr);
    auto* choice = new QButtonGroup(this);
    for (const Grade::Slot slot : {Grade::Master, Grade::Red, Grade::Green, Grade::Blue}) {
        QToolButton* button = textButton(tr(curveName(slot)));
        button->setCheckable(true);
        button->setChecked(slot == m_slot);
        choice->addButton(button);
        top->addWidget(button);
        m_curveButtons[slot] = button;
        connect(button, &QToolButton::clicked, this, [this, slot] { showCurve(slot); });
    }
    top->addStretch(1);
    top->addWidget(m_resetCurve);

    m_curve = new CurveView;
    connect(m_curve, &CurveView::curveEdited, this, &GradePanel::editCurve);
    connect(m_curve, &CurveView::editFinished, m_grades,
            [this](bool accepted) { m_grades->finish(m_curve, accepted); });
    connect(m_grades, &GradeHistory::editInterrupted, m_curve, &CurveView::cancelEdit);
    auto* section = new QVBoxLayout;
    section->setSpacing(gap);
    section->addLayout(top);
    section->addWidget(m_curve, 1);
    return section;
}

QLayout* GradePanel::makePreview() {
    m_preview = new QComboBox;
    m_preview->setAccessibleName(tr("YCbCr preview"));
    m_preview->setToolTip(tr("Shows what 8-bit 4:2:2 keeps of the picture"));
    m_preview->addItem(tr("Off"), Grade::NoPreview);
    for (int option = 0; option < UI::ColorSpace::Count; ++option)
        m_preview->addItem(QString::fromLatin1(UI::colorSpaceName(option)), option);
    connect(m_preview, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        Grade grade = m_grades->grade();
        grade.preview = m_preview->itemData(index).toInt();
        m_grades->edit(grade, tr("YCbCr preview"));
    });
    QHBoxLayout* row = heading(tr("YCbCr preview"), nullptr);
    row->addStretch(1);
    row->addWidget(m_preview);
    return row;
}

/** A section's name in bold; with the button at the right end of the line, if there is one. */
QHBoxLayout* GradePanel::heading(const QString& title, QToolButton* reset) {
    auto* label = new QLabel(title);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(label);
    if (reset) {
        row->addStretch(1);
        row->addWidget(reset);
    }
    return row;
}

QDoubleSpinBox* GradePanel::number(double least, double most, int decimals, double step) {
    auto* box = new QDoubleSpinBox;
    box->setRange(least, most);
    box->setDecimals(decimals);
    box->setSingleStep(step);
    box->setKeyboardTracking(false);
    box->setFixedWidth(numberWidth);
    box->setAlignment(Qt::AlignRight);
    return box;
}

/** What the user does to the widget is an edit of what `set` takes over from it. */
template <typename Widget, typename Set>
void GradePanel::bracket(Widget* widget, const QString& text, Set set) {
    connect(widget, &Widget::valueEdited, this, [this, widget, text, set] {
        Grade grade = m_grades->grade();
        set(grade);
        m_grades->change(widget, grade, text);
    });
    connect(widget, &Widget::editFinished, this, [this, widget](bool accepted) {
        m_grades->finish(widget, accepted);
        showGrade();
    });
    connect(m_grades, &GradeHistory::editInterrupted, widget, &Widget::cancelEdit);
}

template <typename Change>
QToolButton* GradePanel::resetButton(const QString& what, Change change) {
    QToolButton* button = textButton(tr("Reset"));
    connect(button, &QToolButton::clicked, this, [this, what, change] {
        Grade grade = m_grades->grade();
        change(grade);
        m_grades->edit(grade, tr("Reset %1").arg(what));
    });
    return button;
}

void GradePanel::showCurve(Grade::Slot slot) {
    m_slot = slot;
    m_curveButtons[slot]->setChecked(true);
    showCurves();
}

void GradePanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

void GradePanel::editGain(int channel, double factor) {
    Grade grade = m_grades->grade();
    Factors factors = gainFactors(grade.gain);
    factors[std::size_t(channel)] = float(factor);
    grade.gain = gainColor(factors, grade.gain);
    m_grades->edit(grade, tr("Gain"));
}

void GradePanel::editCurve(const UI::Curve& curve, const QString& what) {
    Grade grade = m_grades->grade();
    grade.curves.setCurve(m_slot, curve);
    m_grades->change(m_curve, grade, tr("%1 Curve: %2").arg(tr(curveName(m_slot)), what));
}

void GradePanel::showGrade() {
    setEnabled(m_grades->hasSequence());
    m_title->setText(m_session->sequence().title());
    const Grade& grade = m_grades->grade();
    m_wheel->setHSV(grade.gain.hue, grade.gain.saturation, grade.gain.value);
    m_wheel->setRingValue(grade.gain.value);
    const Factors factors = gainFactors(grade.gain);
    for (std::size_t channel = 0; channel < m_gains.size(); ++channel) {
        const QSignalBlocker blocker(m_gains[channel]);
        m_gains[channel]->setValue(double(factors[channel]));
    }
    {
        const QSignalBlocker slider(m_exposure);
        const QSignalBlocker stops(m_stops);
        m_exposure->setRealValue(std::exp2(double(grade.exposure)));
        if (!m_exposure->isEditing())
            m_shownPosition = m_exposure->value();
        m_stops->setValue(double(grade.exposure));
    }
    m_preview->setCurrentIndex(m_preview->findData(grade.preview));
    m_resetAll->setEnabled(grade != Grade());
    m_resetGain->setEnabled(!(grade.gain == GainColor()));
    m_resetExposure->setEnabled(grade.exposure != 0.0F);
    showCurves();
}

void GradePanel::showCurves() {
    const UI::Curves& curves = m_grades->grade().curves;
    m_curve->setCurve(curves.curve(m_slot));
    m_curve->setColor(slotColor(m_slot, palette()));
    m_curve->setAccessibleName(tr("%1 curve").arg(tr(curveName(m_slot))));
    std::vector<CurveView::Backdrop> others;
    for (int slot = 0; slot < Grade::Slots; ++slot) {
        if (slot != m_slot && !curves.curve(slot).isIdentity())
            others.push_back({curves.curve(slot), slotColor(slot, palette())});
    }
    m_curve->setBackdrop(std::move(others));
    m_resetCurve->setEnabled(curves.curve(m_slot) != UI::Curve());
}

void GradePanel::applyColors() {
    const QColor text = palette().color(QPalette::WindowText);
    m_exposure->setExpTickColor(text);
    QColor between = text;
    between.setAlphaF(0.65f);
    m_exposure->setTickColor(between);
    m_exposure->update();
    for (int slot = 0; slot < Grade::Slots; ++slot) {
        const auto at = std::size_t(slot);
        setTextColor(m_curveButtons[at], QPalette::ButtonText, slotColor(slot, palette()));
        if (at < m_gainLabels.size())
            setTextColor(m_gainLabels[at], QPalette::WindowText, slotColor(slot, palette()));
    }
    showCurves();
}

} // namespace Kestrel::Workbench
