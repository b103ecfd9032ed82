#include <KxUI/values/DoubleSpinBox_p.h>

#include <KxUI/kit/ValueAccessible_p.h>
#include <KxUI/values/NumberSteps_p.h>

#include <QLineEdit>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

// Fields by the hundred share one locale, which is slow to ask.
const NumberNotation& notationOf(const QLocale& locale) {
    static QLocale known = QLocale::c();
    static NumberNotation notation = NumberNotation::of(known);
    if (locale != known) {
        known = locale;
        notation = NumberNotation::of(locale);
    }
    return notation;
}

} // namespace

DoubleSpinBoxPrivate::DoubleSpinBoxPrivate(DoubleSpinBox* box)
    : q(box)
    , bracket(
          box, [this] { return value; }, [this](double wanted) { keep(wanted); })
    , notation(notationOf(box->locale())) {}

double DoubleSpinBoxPrivate::clamped(double wanted) const {
    return std::clamp(wanted, minimum, maximum);
}

void DoubleSpinBoxPrivate::keep(double wanted) {
    if (wanted == value)
        return;
    value = wanted;
    redisplay();
    tellAccessibleValue(q, value);
    Q_EMIT q->valueChanged(wanted);
}

void DoubleSpinBoxPrivate::limit(double lowest, double highest) {
    if (std::isnan(lowest) || std::isnan(highest))
        return;
    lowest = std::clamp(lowest, -DBL_MAX, DBL_MAX) + 0.0;
    highest = std::clamp(highest, -DBL_MAX, DBL_MAX) + 0.0;
    if (lowest == minimum && highest == maximum)
        return;
    minimum = lowest;
    maximum = highest;
    redisplay(); // the bar, and the text of the minimum
    q->updateGeometry();
    const QPointer<DoubleSpinBox> alive(q);
    q->setValue(value);
    if (alive)
        Q_EMIT alive->limitsChanged();
}

void DoubleSpinBoxPrivate::limitSoftly(double lowest, double highest) {
    const auto finite = [](double end) {
        return std::isfinite(end) ? end : std::numeric_limits<double>::quiet_NaN();
    };
    const auto same = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    lowest = finite(lowest);
    highest = finite(highest);
    if (lowest > highest)
        std::swap(lowest, highest);
    if (same(lowest, softMinimum) && same(highest, softMaximum))
        return;
    softMinimum = lowest;
    softMaximum = highest;
    q->update();
    Q_EMIT q->limitsChanged();
}

double DoubleSpinBoxPrivate::usualEnd(bool upper) const {
    const double soft = upper ? softMaximum : softMinimum;
    const double hard = upper ? maximum : minimum;
    if (!std::isnan(soft))
        return clamped(soft);
    return std::fabs(hard) < DBL_MAX ? hard : std::numeric_limits<double>::quiet_NaN();
}

int DoubleSpinBoxPrivate::unitOf(double base) const {
    if (shownUnit < 0 || std::isfinite(units.fromBase(shownUnit, base)))
        return shownUnit;
    for (int unit = 0; unit < units.count(); ++unit) {
        if (std::isfinite(units.fromBase(unit, base)))
            return unit;
    }
    return -1;
}

double DoubleSpinBoxPrivate::numberOf(double base) const {
    const int unit = unitOf(base);
    return unit < 0 ? base : units.fromBase(unit, base);
}

double DoubleSpinBoxPrivate::baseOf(double number, int unit) const {
    return unit < 0 ? number : units.toBase(unit, number);
}

QString DoubleSpinBoxPrivate::numberTextOf(double base) const {
    return numberText(numberOf(base), decimals, fewestDecimals, notation);
}

QString DoubleSpinBoxPrivate::suffixText() const {
    const int unit = unitOf(value);
    if (unit < 0)
        return QString();
    const QString& symbol = units.unit(unit).symbol;
    return ValueUnits::separator(symbol) + symbol;
}

const QString& DoubleSpinBoxPrivate::shownText() {
    if (!m_shown.isNull())
        return m_shown;
    if (mixed)
        m_shown = QString(QChar(0x2014)); // a dash
    else if (!specialText.isEmpty() && value == minimum)
        m_shown = specialText;
    else
        m_shown = prefix + numberTextOf(value) + suffixText();
    return m_shown;
}

QString DoubleSpinBoxPrivate::editText() const {
    return mixed ? QString() : exactNumberText(numberOf(value), notation);
}

void DoubleSpinBoxPrivate::redisplay() {
    m_shown = QString();
    if (typing && !m_keepsText && !isText())
        settle(editText());
    q->update();
}

void DoubleSpinBoxPrivate::changeDisplay() {
    notation = notationOf(q->locale());
    redisplay();
    q->updateGeometry();
    Q_EMIT q->displayChanged();
}

void DoubleSpinBoxPrivate::setMixed(bool isMixed) {
    if (isMixed == mixed)
        return;
    mixed = isMixed;
    changeDisplay();
}

double DoubleSpinBoxPrivate::stepped(double steps, double factor,
                                     std::optional<double> grain) const {
    const int unit = unitOf(value);
    const double number = numberOf(value);
    const double single = stepMode == DoubleSpinBox::AdaptiveSteps
                              ? adaptiveStep(number, steps, singleStep)
                              : singleStep;
    const double step = withoutDust(grain.value_or(single) * factor);
    const double wanted = baseOf(steppedNumber(number, step, steps), unit) + 0.0;
    if (!std::isfinite(wanted))
        return value;
    if (q->wrapping() && (wanted < minimum || wanted > maximum))
        return wanted < minimum ? maximum : minimum;
    return clamped(wanted);
}

// In the gesture that goes on. Where several values were shown, all become one now.
bool DoubleSpinBoxPrivate::changeTo(double wanted) {
    const QPointer<DoubleSpinBox> alive(q);
    if (wanted != value)
        setMixed(false);
    return alive && bracket.change(wanted);
}

bool DoubleSpinBoxPrivate::setOnce(double wanted) {
    if (q->isReadOnly())
        return true;
    NumberEntry entry;
    entry.kind = NumberEntry::Set;
    entry.value = wanted;
    if (typing)
        settle(editText());
    return take(entry);
}

// What was typed, or set without a text.
bool DoubleSpinBoxPrivate::take(const NumberEntry& entry) {
    if (mixed)
        return takeMixed(entry);
    const double wanted = clamped(entry.value) + 0.0;
    return bracket.editOnce(wanted);
}

bool DoubleSpinBoxPrivate::takeMixed(const NumberEntry& entry) {
    const QPointer<DoubleSpinBox> alive(q);
    if (!bracket.finish())
        return false;
    const bool isSet = entry.kind == NumberEntry::Set;
    const double operand = isSet ? clamped(entry.value) + 0.0 : entry.operand;
    relativeEditing = true;
    Q_EMIT q->editStarted();
    if (alive && isSet) {
        setMixed(false);
        if (alive)
            q->setValue(operand);
    }
    if (alive)
        Q_EMIT q->relativeEdited(isSet ? QChar(u'=') : entry.operation, operand);
    if (!alive)
        return false;
    relativeEditing = false;
    Q_EMIT q->editFinished(true);
    return !alive.isNull();
}

} // namespace Kestrel::UI
