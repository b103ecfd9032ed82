#include <KxUI/values/DoubleSpinBox.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/values/DoubleSpinBoxAccessible_p.h>
#include <KxUI/values/DoubleSpinBox_p.h>

#include <QLineEdit>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int MostDecimals = 15;

} // namespace

DoubleSpinBox::DoubleSpinBox(QWidget* parent)
    : QAbstractSpinBox(parent)
    , d(std::make_unique<DoubleSpinBoxPrivate>(this)) {
    installAccessible<DoubleSpinBoxAccessible, DoubleSpinBox>();
    setFocusPolicy(Qt::StrongFocus);
    lineEdit()->hide();
}

DoubleSpinBox::~DoubleSpinBox() = default;

double DoubleSpinBox::value() const {
    return d->value;
}

bool DoubleSpinBox::isEditing() const {
    return d->bracket.isEditing() || d->relativeEditing;
}

void DoubleSpinBox::setValue(double value) {
    KXUI_INTERFACE_THREAD(this);
    if (!std::isfinite(value))
        return;
    const double wanted = d->clamped(value) + 0.0; // never -0
    d->bracket.hostSet(wanted);
    d->keep(wanted);
}

void DoubleSpinBox::resetToDefault() {
    KXUI_INTERFACE_THREAD(this);
    d->setOnce(d->clamped(d->defaultValue));
}

void DoubleSpinBox::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->bracket.cancel();
}

void DoubleSpinBox::stepBy(int steps) {
    KXUI_INTERFACE_THREAD(this);
    d->setOnce(d->stepped(steps, 1.0));
}

double DoubleSpinBox::minimum() const {
    return d->minimum;
}

double DoubleSpinBox::maximum() const {
    return d->maximum;
}

void DoubleSpinBox::setMinimum(double minimum) {
    KXUI_INTERFACE_THREAD(this);
    d->limit(minimum, std::max(minimum, d->maximum));
}

void DoubleSpinBox::setMaximum(double maximum) {
    KXUI_INTERFACE_THREAD(this);
    d->limit(std::min(maximum, d->minimum), maximum);
}

void DoubleSpinBox::setRange(double minimum, double maximum) {
    KXUI_INTERFACE_THREAD(this);
    if (!std::isnan(minimum) && !std::isnan(maximum))
        d->limit(std::min(minimum, maximum), std::max(minimum, maximum));
}

double DoubleSpinBox::softMinimum() const {
    return d->softMinimum;
}

double DoubleSpinBox::softMaximum() const {
    return d->softMaximum;
}

void DoubleSpinBox::setSoftMinimum(double minimum) {
    KXUI_INTERFACE_THREAD(this);
    d->limitSoftly(minimum, d->softMaximum);
}

void DoubleSpinBox::setSoftMaximum(double maximum) {
    KXUI_INTERFACE_THREAD(this);
    d->limitSoftly(d->softMinimum, maximum);
}

void DoubleSpinBox::setSoftRange(double minimum, double maximum) {
    KXUI_INTERFACE_THREAD(this);
    d->limitSoftly(minimum, maximum);
}

double DoubleSpinBox::defaultValue() const {
    return d->defaultValue;
}

void DoubleSpinBox::setDefaultValue(double value) {
    KXUI_INTERFACE_THREAD(this);
    if (value == d->defaultValue || !std::isfinite(value))
        return;
    d->defaultValue = value;
    Q_EMIT handlingChanged();
}

double DoubleSpinBox::singleStep() const {
    return d->singleStep;
}

void DoubleSpinBox::setSingleStep(double step) {
    KXUI_INTERFACE_THREAD(this);
    if (step == d->singleStep || !std::isfinite(step) || step <= 0.0)
        return;
    d->singleStep = step;
    Q_EMIT handlingChanged();
}

DoubleSpinBox::StepMode DoubleSpinBox::stepMode() const {
    return d->stepMode;
}

void DoubleSpinBox::setStepMode(StepMode mode) {
    KXUI_INTERFACE_THREAD(this);
    if (mode == d->stepMode)
        return;
    d->stepMode = mode;
    Q_EMIT handlingChanged();
}

WheelPolicy::Policy DoubleSpinBox::wheelPolicy() const {
    return d->wheelPolicy;
}

void DoubleSpinBox::setWheelPolicy(WheelPolicy::Policy policy) {
    KXUI_INTERFACE_THREAD(this);
    if (policy == d->wheelPolicy)
        return;
    d->wheelPolicy = policy;
    Q_EMIT handlingChanged();
}

bool DoubleSpinBox::isFineTuneEnabled() const {
    return d->fineTune;
}

void DoubleSpinBox::setFineTuneEnabled(bool enabled) {
    KXUI_INTERFACE_THREAD(this);
    if (enabled == d->fineTune)
        return;
    d->fineTune = enabled;
    Q_EMIT handlingChanged();
}

int DoubleSpinBox::decimals() const {
    return d->decimals;
}

void DoubleSpinBox::setDecimals(int decimals) {
    KXUI_INTERFACE_THREAD(this);
    const int most = std::clamp(decimals, 0, MostDecimals);
    if (most == d->decimals)
        return;
    d->decimals = most;
    d->changeDisplay();
}

int DoubleSpinBox::fewestDecimals() const {
    return d->fewestDecimals;
}

void DoubleSpinBox::setFewestDecimals(int decimals) {
    KXUI_INTERFACE_THREAD(this);
    const int fewest = std::clamp(decimals, 0, MostDecimals);
    if (fewest == d->fewestDecimals)
        return;
    d->fewestDecimals = fewest;
    d->changeDisplay();
}

QString DoubleSpinBox::prefix() const {
    return d->prefix;
}

void DoubleSpinBox::setPrefix(const QString& prefix) {
    KXUI_INTERFACE_THREAD(this);
    if (prefix == d->prefix)
        return;
    d->prefix = prefix;
    d->changeDisplay();
}

const ValueUnits& DoubleSpinBox::units() const {
    return d->units;
}

void DoubleSpinBox::setUnits(const ValueUnits& units) {
    KXUI_INTERFACE_THREAD(this);
    if (units == d->units)
        return;
    d->units = units;
    d->shownUnit = units.isEmpty() ? -1 : 0;
    d->changeDisplay();
}

QString DoubleSpinBox::unit() const {
    return d->shownUnit < 0 ? QString() : d->units.unit(d->shownUnit).symbol;
}

void DoubleSpinBox::setUnit(const QString& symbol) {
    KXUI_INTERFACE_THREAD(this);
    const int unit = d->units.indexOf(symbol);
    if (unit < 0 || unit == d->shownUnit)
        return;
    d->shownUnit = unit;
    d->changeDisplay();
}

QString DoubleSpinBox::suffix() const {
    return d->suffixText();
}

void DoubleSpinBox::setSuffix(const QString& suffix) {
    setUnits(ValueUnits::suffix(suffix));
}

QString DoubleSpinBox::specialValueText() const {
    return d->specialText;
}

void DoubleSpinBox::setSpecialValueText(const QString& text) {
    KXUI_INTERFACE_THREAD(this);
    if (text == d->specialText)
        return;
    d->specialText = text;
    d->changeDisplay();
}

bool DoubleSpinBox::isBarVisible() const {
    return d->barVisible;
}

void DoubleSpinBox::setBarVisible(bool visible) {
    KXUI_INTERFACE_THREAD(this);
    if (visible == d->barVisible)
        return;
    d->barVisible = visible;
    d->changeDisplay();
}

bool DoubleSpinBox::isMixed() const {
    return d->mixed;
}

void DoubleSpinBox::setMixed(bool mixed) {
    KXUI_INTERFACE_THREAD(this);
    d->setMixed(mixed);
}

QLabel* DoubleSpinBox::label() const {
    return qobject_cast<QLabel*>(d->label.data());
}

void DoubleSpinBox::setLabel(QLabel* label) {
    KXUI_INTERFACE_THREAD(this);
    QLabel* const old = this->label();
    if (label == old)
        return;
    if (old) {
        old->removeEventFilter(this);
        old->unsetCursor();
    }
    d->label = label;
    if (!label)
        return;
    label->installEventFilter(this);
    label->setCursor(Qt::SizeHorCursor);
}

QString DoubleSpinBox::text() const {
    return d->typing ? lineEdit()->text() : d->shownText();
}

QString DoubleSpinBox::cleanText() const {
    return d->numberTextOf(d->value);
}

QString DoubleSpinBox::exactText() const {
    return exactNumberText(d->numberOf(d->value), {});
}

QString DoubleSpinBox::textFromValue(double value) const {
    return d->numberTextOf(value);
}

double DoubleSpinBox::valueFromText(const QString& text) const {
    const NumberEntry entry = d->read(text);
    const bool isNumber = entry.kind == NumberEntry::Set || entry.kind == NumberEntry::Relative;
    return isNumber ? entry.value : std::numeric_limits<double>::quiet_NaN();
}

// Whatever is typed may be on its way to a number.
QValidator::State DoubleSpinBox::validate(QString& input, int& position) const {
    Q_UNUSED(input)
    Q_UNUSED(position)
    return QValidator::Acceptable;
}

QAbstractSpinBox::StepEnabled DoubleSpinBox::stepEnabled() const {
    if (isReadOnly())
        return StepNone;
    if (wrapping())
        return StepUpEnabled | StepDownEnabled;
    StepEnabled enabled = StepNone;
    enabled.setFlag(StepUpEnabled, d->value < d->maximum);
    enabled.setFlag(StepDownEnabled, d->value > d->minimum);
    return enabled;
}

} // namespace Kestrel::UI
