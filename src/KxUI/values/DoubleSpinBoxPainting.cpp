#include <KxUI/values/DoubleSpinBox_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/values/NumberSteps_p.h>

#include <QEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyleOptionFrame>
#include <QStyleOptionSpinBox>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

// As a line edit places its text.
constexpr int TextMargin = 2;

} // namespace

QRect DoubleSpinBoxPrivate::textRect() const {
    QStyleOptionFrame panel;
    panel.initFrom(edit());
    panel.rect = edit()->rect();
    const QRect inside = q->style()->subElementRect(QStyle::SE_LineEditContents, &panel, edit());
    return inside.adjusted(TextMargin, 0, -TextMargin, 0).translated(edit()->pos());
}

int DoubleSpinBoxPrivate::textLeft(const QString& text) const {
    const QRect room = textRect();
    const int rest = room.width() - q->fontMetrics().horizontalAdvance(text);
    const Qt::Alignment alignment =
        QStyle::visualAlignment(q->layoutDirection(), edit()->alignment());
    if (rest <= 0 || alignment.testFlag(Qt::AlignLeft))
        return room.left();
    return room.left() + (alignment.testFlag(Qt::AlignHCenter) ? rest / 2 : rest);
}

std::optional<double> DoubleSpinBoxPrivate::grainAt(const QPoint& at) {
    if (stepMode != DoubleSpinBox::DigitSteps || mixed || !q->rect().contains(at))
        return {};
    const QString number = numberTextOf(value);
    const QString& shown = shownText();
    const int begin = int(shown.indexOf(number));
    if (begin < 0)
        return {};
    const QFontMetrics metrics = q->fontMetrics();
    const int wanted = at.x() - textLeft(shown);
    int caret = 0;
    while (caret + 1 < number.size() &&
           metrics.horizontalAdvance(shown.left(begin + caret + 1)) <= wanted)
        ++caret;
    const std::optional<DigitPlace> place = digitAt(number, caret, notation);
    if (!place)
        return {};
    // Of a text with a power of ten the digits count that much.
    const int e = int(number.indexOf(QLatin1Char('e')));
    const int exponent = e < 0 ? 0 : decimalExponentOf(numberOf(value));
    return powerOfTen(place->exponent + exponent);
}

void DoubleSpinBoxPrivate::paintBar(QPainter& painter) const {
    const double low = usualEnd(false);
    const double high = usualEnd(true);
    if (!(low < high))
        return;
    const double part = std::clamp((value - low) / (high - low), 0.0, 1.0);
    const QRectF room(edit()->geometry());
    const double width = room.width() * part;
    const bool mirrored = q->layoutDirection() == Qt::RightToLeft;
    QColor color = q->palette().color(QPalette::Highlight);
    color.setAlpha(90);
    painter.fillRect(
        QRectF(mirrored ? room.right() - width : room.left(), room.top(), width, room.height()),
        color);
}

void DoubleSpinBoxPrivate::paintText(QPainter& painter) {
    QLineEdit* line = edit();
    QStyleOptionFrame panel;
    panel.initFrom(line);
    panel.rect = line->rect();
    panel.state |= QStyle::State_Sunken;
    panel.lineWidth =
        line->hasFrame() ? q->style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &panel, line) : 0;
    painter.translate(line->pos());
    q->style()->drawPrimitive(QStyle::PE_PanelLineEdit, &panel, &painter, line);
    painter.translate(-line->pos());
    if (barVisible && !mixed)
        paintBar(painter);
    const QFontMetrics metrics = q->fontMetrics();
    const QRect room = textRect();
    QString text = shownText();
    const int left = textLeft(text);
    if (left == room.left())
        text = metrics.elidedText(text, Qt::ElideRight, room.width());
    const int top = room.top() + (room.height() - metrics.height() + 1) / 2;
    painter.setPen(panel.palette.color(QPalette::Text));
    painter.drawText(left, top + metrics.ascent(), text);
}

void DoubleSpinBoxPrivate::paintProblem(QPainter& painter) const {
    const QColor base = q->palette().color(QPalette::Base);
    painter.setPen(
        QPen(firstVisible({QColor(205, 45, 45), QColor(255, 115, 105)}, {base}, 3.0), 2));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawRoundedRect(QRectF(q->rect()).adjusted(1, 1, -1, -1), 2, 2);
}

QString DoubleSpinBoxPrivate::sample(int digits) const {
    QString number = QLatin1Char('-') + QString(digits, QLatin1Char('9'));
    if (decimals > 0)
        number += QChar(notation.point) + QString(std::min(decimals, digits), QLatin1Char('9'));
    return number;
}

QSize DoubleSpinBoxPrivate::sizeFor(const QStringList& numbers) const {
    constexpr int caret = 2;
    const QFontMetrics metrics = q->fontMetrics();
    int width = metrics.horizontalAdvance(specialText);
    for (const QString& number : numbers)
        width = std::max(width, metrics.horizontalAdvance(prefix + number + suffixText()));
    QStyleOptionSpinBox option;
    q->initStyleOption(&option);
    const QSize contents(width + caret + 2 * TextMargin, edit()->sizeHint().height());
    return q->style()->sizeFromContents(QStyle::CT_SpinBox, &option, contents, q);
}

QSize DoubleSpinBox::sizeHint() const {
    ensurePolished();
    // Ends that are short are what is longest; else a number as people use them.
    constexpr int usual = 10;
    const QStringList ends{d->numberTextOf(d->minimum), d->numberTextOf(d->maximum)};
    const bool isShort = std::all_of(ends.begin(), ends.end(),
                                     [](const QString& end) { return end.size() < usual; });
    const QString places(d->decimals, QLatin1Char('9'));
    return d->sizeFor(isShort ? QStringList{ends[0] + QLatin1Char('.') + places,
                                            ends[1] + QLatin1Char('.') + places}
                              : QStringList{d->sample(4)});
}

QSize DoubleSpinBox::minimumSizeHint() const {
    ensurePolished();
    return d->sizeFor({d->sample(1)});
}

void DoubleSpinBox::paintEvent(QPaintEvent* event) {
    Q_UNUSED(event)
    QPainter painter(this);
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    if (d->pressedArrow() != QStyle::SC_None) {
        option.activeSubControls = d->pressedArrow();
        option.state |= QStyle::State_Sunken;
    }
    style()->drawComplexControl(QStyle::CC_SpinBox, &option, &painter, this);
    if (!d->typing)
        d->paintText(painter);
    if (!d->problem.isNull())
        d->paintProblem(painter);
}

void DoubleSpinBox::changeEvent(QEvent* event) {
    QAbstractSpinBox::changeEvent(event);
    if (event->type() == QEvent::LocaleChange)
        d->changeDisplay();
    else
        update();
}

} // namespace Kestrel::UI
