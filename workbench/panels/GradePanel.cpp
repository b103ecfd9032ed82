#include "panels/GradePanel.h"

#include "panels/BalancePanel.h"
#include "panels/CurveView.h"
#include "panels/GradeParts.h"
#include "play/Session.h"

#include <KxUI/color/ColorWheel.h>
#include <KxUI/kit/ChannelColors.h>
#include <KxUI/kit/Disclosure.h>
#include <KxUI/values/DoubleSpinBox.h>
#include <KxUI/values/LogSlider.h>

#include <QButtonGroup>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
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

UI::ChannelColors::Channel channelOf(int slot) {
    using Colors = UI::ChannelColors;
    constexpr Colors::Channel channels[] = {Colors::Red, Colors::Green, Colors::Blue, Colors::Luma};
    return channels[slot];
}

float stopsOf(double stops) {
    return std::clamp(float(stops), -Grade::MostStops, Grade::MostStops);
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
    sections->addWidget(makeGain());
    sections->addWidget(makeBalance());
    sections->addWidget(makeExposure());
    sections->addWidget(makeCurves());
    sections->addWidget(makePreview());
    sections->addStretch(1);

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
    m_bypass = makeTextButton(tr("Bypass"));
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

UI::Disclosure* GradePanel::makeGain() {
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
        m_gains[at]->setDefaultValue(1.0);
        m_gains[at]->setLabel(m_gainLabels[at]);
        m_gains[at]->setAccessibleName(tr("%1 gain").arg(tr(curveName(channel))));
        numbers->addWidget(m_gainLabels[at], channel, 0);
        numbers->addWidget(m_gains[at], channel, 1);
        bracket(m_gains[at], tr("Gain"), [this, at](Grade& grade) {
            const GainColor& before = m_grades->gradeBefore().gain;
            Factors factors = gainFactors(before);
            const float factor = float(m_gains[at]->value());
            const bool same = factor == float(typed(factors[at]));
            factors[at] = factor;
            grade.gain = same ? before : gainColor(factors, before);
        });
    }

    m_resetGain = resetButton(tr("gain"), [](Grade& grade) { grade.gain = {}; });
    auto* row = new QHBoxLayout;
    row->setSpacing(betweenSections);
    row->addWidget(m_wheel, 1);
    row->addLayout(numbers);
    m_gainSection = section(tr("Gain"), QStringLiteral("gain"), row);
    m_gainSection->addHeaderWidget(m_resetGain);
    return m_gainSection;
}

UI::Disclosure* GradePanel::makeBalance() {
    m_resetBalance = resetButton(tr("balance"), [](Grade& grade) { grade.balance = {}; });
    auto* row = new QHBoxLayout;
    row->addWidget(new BalancePanel(m_grades));
    m_balanceSection = section(tr("Balance"), QStringLiteral("balance"), row);
    m_balanceSection->addHeaderWidget(m_resetBalance);
    return m_balanceSection;
}

UI::Disclosure* GradePanel::makeExposure() {
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
    bracket(m_stops, tr("Exposure"), [this](Grade& grade) {
        const float before = m_grades->gradeBefore().exposure;
        const float stops = stopsOf(m_stops->value());
        grade.exposure = stops == float(typed(before)) ? before : stops;
    });

    m_resetExposure = resetButton(tr("exposure"), [](Grade& grade) { grade.exposure = 0.0F; });
    auto* stopsLabel = new QLabel(tr("Stops"));
    m_stops->setLabel(stopsLabel);
    auto* row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(m_exposure, 1);
    row->addSpacing(betweenSections - gap);
    row->addWidget(stopsLabel);
    row->addWidget(m_stops);
    m_exposureSection = section(tr("Exposure"), QStringLiteral("exposure"), row);
    m_exposureSection->addHeaderWidget(m_resetExposure);
    return m_exposureSection;
}

UI::Disclosure* GradePanel::makeCurves() {
    m_resetCurve = makeTextButton(tr("Reset"));
    connect(m_resetCurve, &QToolButton::clicked, this, [this] {
        Grade grade = m_grades->grade();
        grade.curves.setCurve(m_slot, UI::Curve());
        m_grades->edit(grade, tr("Reset %1 Curve").arg(tr(curveName(m_slot))));
    });
    auto* top = new QHBoxLayout;
    top->setSpacing(gap);
    auto* choice = new QButtonGroup(this);
    for (const Grade::Slot slot : {Grade::Master, Grade::Red, Grade::Green, Grade::Blue}) {
        QToolButton* button = makeTextButton(tr(curveName(slot)));
        button->setCheckable(true);
        button->setChecked(slot == m_slot);
        choice->addButton(button);
        top->addWidget(button);
        m_curveButtons[slot] = button;
        connect(button, &QToolButton::clicked, this, [this, slot] { showCurve(slot); });
    }
    top->addStretch(1);

    m_curve = new CurveView;
    connect(m_curve, &CurveView::curveEdited, this, &GradePanel::editCurve);
    connect(m_curve, &CurveView::editFinished, m_grades,
            [this](bool accepted) { m_grades->finish(m_curve, accepted); });
    connect(m_grades, &GradeHistory::editInterrupted, m_curve, &CurveView::cancelEdit);
    auto* column = new QVBoxLayout;
    column->setSpacing(gap);
    column->addLayout(top);
    column->addWidget(m_curve, 1);
    m_curveSection = section(tr("Curves"), QStringLiteral("curves"), column);
    m_curveSection->addHeaderWidget(m_resetCurve);
    return m_curveSection;
}

UI::Disclosure* GradePanel::makePreview() {
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
    auto* row = new QHBoxLayout;
    row->addWidget(m_preview);
    row->addStretch(1);
    m_previewSection = section(tr("YCbCr preview"), QStringLiteral("preview"), row);
    return m_previewSection;
}

/** Open at first, then as the user left it. */
UI::Disclosure* GradePanel::section(const QString& title, const QString& key, QLayout* layout) {
    auto* content = new QWidget;
    layout->setContentsMargins(0, gap, 0, 0);
    content->setLayout(layout);
    auto* made = new UI::Disclosure;
    made->setTitle(title);
    made->setGroup(QStringLiteral("Grade"));
    made->setContent(content);
    made->setExpanded(true);
    made->setSettingsKey(QStringLiteral("grade/") + key);
    return made;
}

UI::DoubleSpinBox* GradePanel::number(double least, double most, int decimals, double step) {
    UI::DoubleSpinBox* box = makeNumber(least, most, decimals, step);
    box->setFixedWidth(numberWidth);
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
    QToolButton* button = makeTextButton(tr("Reset"));
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
    for (std::size_t channel = 0; channel < m_gains.size(); ++channel)
        showNumber(m_gains[channel], factors[channel]);
    m_exposure->setRealValue(std::exp2(double(grade.exposure)));
    if (!m_exposure->isEditing())
        m_shownPosition = m_exposure->value();
    showNumber(m_stops, grade.exposure);
    m_preview->setCurrentIndex(m_preview->findData(grade.preview));
    m_resetAll->setEnabled(grade != Grade());
    m_resetGain->setEnabled(!(grade.gain == GainColor()));
    m_resetBalance->setEnabled(!grade.balance.isNeutral());
    m_resetExposure->setEnabled(grade.exposure != 0.0F);
    summarize();
    showCurves();
}

/** What the closed sections say. */
void GradePanel::summarize() {
    const Grade& grade = m_grades->grade();
    QStringList factors;
    for (const UI::DoubleSpinBox* box : m_gains)
        factors << box->cleanText();
    m_gainSection->setSummary(factors.join(QStringLiteral("  ")));
    m_gainSection->setModified(!(grade.gain == GainColor()));
    m_balanceSection->setModified(!grade.balance.isNeutral());
    m_exposureSection->setSummary(m_stops->cleanText());
    m_exposureSection->setModified(grade.exposure != 0.0F);
    QStringList changed;
    for (const Grade::Slot slot : {Grade::Master, Grade::Red, Grade::Green, Grade::Blue}) {
        if (!grade.curves.curve(slot).isIdentity())
            changed << tr(curveName(slot));
    }
    m_curveSection->setSummary(changed.join(QStringLiteral(", ")));
    m_curveSection->setModified(!changed.isEmpty());
    m_previewSection->setSummary(m_preview->currentText());
    m_previewSection->setModified(grade.preview != Grade::NoPreview);
}

void GradePanel::showCurves() {
    const UI::Curves& curves = m_grades->grade().curves;
    m_curve->setCurve(curves.curve(m_slot));
    const UI::ChannelColors colors = UI::ChannelColors::of(palette());
    m_curve->setColor(colors.line(channelOf(m_slot)));
    m_curve->setAccessibleName(tr("%1 curve").arg(tr(curveName(m_slot))));
    std::vector<CurveView::Backdrop> others;
    for (int slot = 0; slot < Grade::Slots; ++slot) {
        if (slot != m_slot && !curves.curve(slot).isIdentity())
            others.push_back({curves.curve(slot), colors.line(channelOf(slot))});
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
    const UI::ChannelColors colors = UI::ChannelColors::of(palette());
    for (int slot = 0; slot < Grade::Slots; ++slot) {
        const auto at = std::size_t(slot);
        const QColor color = slot == Grade::Master ? text : colors.text(channelOf(slot));
        setTextColor(m_curveButtons[at], QPalette::ButtonText, color);
        if (at < m_gainLabels.size())
            setTextColor(m_gainLabels[at], QPalette::WindowText, color);
    }
    showCurves();
}

} // namespace Kestrel::Workbench
