#include "panels/BalancePanel.h"

#include "panels/GradeParts.h"

#include <KxUI/kit/ChannelColors.h>
#include <KxUI/picker/TrackBall.h>
#include <KxUI/values/DoubleSpinBox.h>

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace Kestrel::Workbench {

namespace {

constexpr int gap = 5;
constexpr double titleSize = 0.9; // of the panel's font, so that all three fit beside each other
constexpr int smallestBall = 72;
constexpr int largestBall = 168;
constexpr int numberWidth = 46;

const char* channelName(std::size_t channel) {
    constexpr const char* names[] = {QT_TRANSLATE_NOOP("Kestrel::Workbench::BalancePanel", "Red"),
                                     QT_TRANSLATE_NOOP("Kestrel::Workbench::BalancePanel", "Green"),
                                     QT_TRANSLATE_NOOP("Kestrel::Workbench::BalancePanel", "Blue")};
    return names[channel];
}

float inverted(float number, bool isPower) {
    return isPower ? 1.0F / number : number;
}

Factors inverted(Factors numbers, bool isPower) {
    for (float& number : numbers)
        number = inverted(number, isPower);
    return numbers;
}

Factors factorsOf(const UI::TrackBall& ball) {
    const QVector3D factors = ball.factors();
    return {factors.x(), factors.y(), factors.z()};
}

} // namespace

BalancePanel::BalancePanel(GradeHistory* grades, QWidget* parent)
    : QWidget(parent)
    , m_grades(grades) {
    setObjectName(QStringLiteral("BalancePanel"));
    const double gamma = double(Balance::MostPower);
    m_parts[0] = {&Balance::shadows, tr("Shadows"), false, -double(Balance::MostOffset),
                  double(Balance::MostOffset)};
    m_parts[1] = {&Balance::midtones, tr("Midtones"), true, 1.0 / gamma, gamma};
    m_parts[2] = {&Balance::highlights, tr("Highlights"), false, 0.0, double(Balance::MostSlope)};
    auto* columns = new QHBoxLayout(this);
    columns->setContentsMargins(0, 0, 0, 0);
    columns->setSpacing(gap);
    for (Part& part : m_parts)
        columns->addLayout(make(part), 1);
    connect(m_grades, &GradeHistory::gradeChanged, this, &BalancePanel::showGrade);
    applyColors();
    showGrade();
}

QLayout* BalancePanel::make(Part& part) {
    makeBall(part);
    auto* numbers = new QGridLayout;
    numbers->setHorizontalSpacing(gap);
    numbers->setVerticalSpacing(gap / 2);
    numbers->setColumnStretch(1, 1);
    for (std::size_t channel = 0; channel < part.numbers.size(); ++channel) {
        makeNumber(part, channel);
        numbers->addWidget(part.labels[channel], int(channel), 0);
        numbers->addWidget(part.numbers[channel], int(channel), 1);
    }
    part.reset = makeTextButton(tr("Reset"));
    part.reset->setAccessibleName(tr("Reset %1").arg(part.name));
    connect(part.reset, &QToolButton::clicked, part.ball, &UI::TrackBall::resetToNeutral);
    auto* column = new QVBoxLayout;
    column->setSpacing(gap);
    column->addWidget(part.ball);
    column->addLayout(numbers);
    column->addWidget(part.reset, 0, Qt::AlignHCenter);
    return column;
}

void BalancePanel::makeBall(Part& part) {
    part.ball = new UI::TrackBall;
    QFont font = part.ball->font();
    if (font.pointSizeF() > 0.0) // or else it is one in pixels
        font.setPointSizeF(font.pointSizeF() * titleSize);
    part.ball->setFont(font);
    part.ball->setTitle(part.name);
    if (part.stored != &Balance::shadows)
        part.ball->setMode(UI::TrackBall::Gain);
    part.ball->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    part.ball->setToolTip(tr("Drag the ball for the colour, the ring for the brightness"));
    bracket(part.ball, part, [this, &part](Factors& stored) {
        stored = inverted(factorsOf(*part.ball), part.isPower);
        const auto [least, most] = std::minmax(
            {inverted(float(part.least), part.isPower), inverted(float(part.most), part.isPower)});
        for (float& number : stored)
            number = std::clamp(number, least, most);
    });
}

void BalancePanel::makeNumber(Part& part, std::size_t channel) {
    const QString name = tr(channelName(channel));
    auto* label = new QLabel(name.left(1));
    label->setToolTip(name);
    UI::DoubleSpinBox* box = Workbench::makeNumber(part.least, part.most, 3, 0.005);
    box->setDefaultValue(part.ball->neutral());
    box->setLabel(label);
    box->setButtonSymbols(QAbstractSpinBox::NoButtons);
    box->setMinimumWidth(numberWidth);
    box->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    box->setAccessibleName(tr("%1, %2").arg(part.name, name));
    part.labels[channel] = label;
    part.numbers[channel] = box;
    bracket(box, part, [this, &part, box, channel](Factors& stored) {
        const float before = (m_grades->gradeBefore().balance.*part.stored)[channel];
        const auto number = float(box->value());
        // A field back at what it showed means what that stood for.
        const bool isSame = number == float(typed(inverted(before, part.isPower)));
        stored[channel] = isSame ? before : inverted(number, part.isPower);
    });
}

/** What the user does to the widget is an edit of what `set` makes of the part. */
template <typename Widget, typename Set>
void BalancePanel::bracket(Widget* widget, const Part& part, Set set) {
    connect(widget, &Widget::valueEdited, this, [this, widget, &part, set] {
        Grade grade = m_grades->grade();
        set(grade.balance.*part.stored);
        m_grades->change(widget, grade, part.name);
    });
    connect(widget, &Widget::editFinished, this, [this, widget](bool accepted) {
        m_grades->finish(widget, accepted);
        showGrade();
    });
    connect(m_grades, &GradeHistory::editInterrupted, widget, &Widget::cancelEdit);
}

void BalancePanel::showGrade() {
    for (const Part& part : m_parts)
        show(part);
}

void BalancePanel::show(const Part& part) {
    const Factors& stored = m_grades->grade().balance.*part.stored;
    const Factors shown = inverted(stored, part.isPower);
    // Not what is just the ball's own, inverted twice.
    if (inverted(factorsOf(*part.ball), part.isPower) != stored)
        part.ball->setFactors(shown[0], shown[1], shown[2]);
    for (std::size_t channel = 0; channel < shown.size(); ++channel)
        showNumber(part.numbers[channel], shown[channel]);
    part.reset->setEnabled(stored != Balance().*part.stored);
}

void BalancePanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

void BalancePanel::fitTo(int room) {
    const int column = (room - 2 * gap) / int(m_parts.size());
    for (const Part& part : m_parts) {
        const QSize smallest = part.ball->minimumSizeHint();
        const int title = smallest.height() - smallest.width();
        part.ball->setFixedHeight(std::clamp(column, smallestBall, largestBall) + title);
    }
}

void BalancePanel::applyColors() {
    using Colors = UI::ChannelColors;
    const Colors colors = Colors::of(palette());
    constexpr Colors::Channel channels[] = {Colors::Red, Colors::Green, Colors::Blue};
    for (const Part& part : m_parts) {
        for (std::size_t channel = 0; channel < part.labels.size(); ++channel)
            setTextColor(part.labels[channel], QPalette::WindowText,
                         colors.text(channels[channel]));
    }
}

} // namespace Kestrel::Workbench
