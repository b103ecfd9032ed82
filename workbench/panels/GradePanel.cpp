#include "panels/GradePanel.h"

#include "panels/BalancePanel.h"
#include "panels/CurvesPanel.h"
#include "panels/ExposurePanel.h"
#include "panels/GradeParts.h"
#include "play/Session.h"

#include <KxUI/color/ColorWheel.h>
#include <KxUI/curveedit/CurveEditor.h>
#include <KxUI/curveedit/CurveView.h>
#include <KxUI/kit/ChannelColors.h>
#include <KxUI/kit/Disclosure.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

constexpr int margin = 10;
constexpr int gap = 6;
constexpr int betweenSections = 16;
constexpr int numberWidth = 78;

constexpr double mostGain = 16.0;

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
    // Where the texts of a language take more than that, the panel scrolls rather than take the room
    // from the viewer.
    constexpr int mostAsked = 400;
    scroll->setMinimumWidth(
        std::min(content->minimumSizeHint().width() + scrollBarWidth(), mostAsked));
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
    m_wheel->setMinimumSize(112, 168);
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
        m_gainLabels[at] = new QLabel(CurvesPanel::nameOf(channel));
        m_gains[at] = number(0.0, mostGain, 3, 0.01);
        m_gains[at]->setDefaultValue(1.0);
        m_gains[at]->setLabel(m_gainLabels[at]);
        m_gains[at]->setAccessibleName(tr("%1 gain").arg(CurvesPanel::nameOf(channel)));
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
    m_balance = new BalancePanel(m_grades);
    row->addWidget(m_balance);
    m_balanceSection = section(tr("Balance"), QStringLiteral("balance"), row);
    m_balanceSection->addHeaderWidget(m_resetBalance);
    return m_balanceSection;
}

UI::Disclosure* GradePanel::makeExposure() {
    m_exposure = new ExposurePanel(m_session);
    m_resetExposure = resetButton(tr("exposure"), [](Grade& grade) {
        grade.exposure = 0.0F;
        grade.exposureKeys = {};
    });
    auto* row = new QHBoxLayout;
    row->addWidget(m_exposure);
    m_exposureSection = section(tr("Exposure"), QStringLiteral("exposure"), row);
    m_exposureSection->addHeaderWidget(m_resetExposure);
    return m_exposureSection;
}

UI::Disclosure* GradePanel::makeCurves() {
    m_curves = new CurvesPanel(m_session);
    m_resetCurves = resetButton(tr("curves"), [](Grade& grade) { grade.curves = Grade().curves; });
    auto* row = new QHBoxLayout;
    row->addWidget(m_curves);
    m_curveSection = section(tr("Curves"), QStringLiteral("curves"), row);
    m_curveSection->addHeaderWidget(m_resetCurves);
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
    m_curves->editor()->view()->setCurrentCurve(slot);
}

void GradePanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

int GradePanel::scrollBarWidth() const {
    return style()->pixelMetric(QStyle::PM_ScrollBarExtent);
}

void GradePanel::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_balance->fitTo(width() - 2 * margin - scrollBarWidth());
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
    m_preview->setCurrentIndex(m_preview->findData(grade.preview));
    m_resetAll->setEnabled(grade != Grade());
    m_resetGain->setEnabled(!(grade.gain == GainColor()));
    m_resetBalance->setEnabled(!grade.balance.isNeutral());
    const bool isExposed = grade.isKeyed() || grade.exposure != 0.0F;
    m_resetExposure->setEnabled(isExposed);
    m_exposureSection->setModified(isExposed);
    m_resetCurves->setEnabled(grade.curves != Grade().curves);
    summarize();
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
    m_exposureSection->setSummary(m_exposure->summary());
    QStringList changed;
    for (const Grade::Slot slot : {Grade::Master, Grade::Red, Grade::Green, Grade::Blue}) {
        if (!grade.curves.curve(slot).isIdentity())
            changed << CurvesPanel::nameOf(slot);
    }
    m_curveSection->setSummary(changed.join(QStringLiteral(", ")));
    m_curveSection->setModified(!changed.isEmpty());
    m_previewSection->setSummary(m_preview->currentText());
    m_previewSection->setModified(grade.preview != Grade::NoPreview);
}

void GradePanel::applyColors() {
    const UI::ChannelColors colors = UI::ChannelColors::of(palette());
    for (std::size_t channel = 0; channel < m_gainLabels.size(); ++channel)
        setTextColor(m_gainLabels[channel], QPalette::WindowText,
                     colors.text(UI::ChannelColors::Channel(channel)));
}

} // namespace Kestrel::Workbench
