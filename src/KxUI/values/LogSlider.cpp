#include <KxUI/values/LogSlider.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/OwnKeys_p.h>
#include <KxUI/values/LogSliderAccessible_p.h>
#include <KxUI/values/LogSliderLayout_p.h>
#include <KxUI/values/LogSlider_p.h>

#include <QContextMenuEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLocale>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QStyle>
#include <QStyleOptionSlider>

#include <algorithm>
#include <climits>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace Kestrel::UI {
namespace {

// Powers of ten that are finite and normal doubles.
constexpr int LowestExponent = -307;
constexpr int HighestExponent = 308;

// While it lives, the base class handles what the user does, which changes the value once at most:
// further changes are answers of those who were told.
class UserInput {
public:
    UserInput(LogSlider* slider, bool* flag)
        : m_slider(slider)
        , m_flag(flag) {
        *flag = true;
    }
    ~UserInput() {
        if (m_slider)
            *m_flag = false;
    }
    UserInput(const UserInput&) = delete;
    UserInput& operator=(const UserInput&) = delete;

    bool isOver() const { return m_slider.isNull(); }

private:
    QPointer<LogSlider> m_slider;
    bool* m_flag;
};

} // namespace

LogSliderPrivate::LogSliderPrivate(LogSlider* slider)
    : q(slider)
    , bracket(
          slider, [slider] { return slider->value(); }, [this](int position) { goTo(position); },
          [slider](int) { Q_EMIT slider->valueEdited(slider->realValueOrZero()); }) {}

void LogSliderPrivate::goTo(int position) {
    if (!dragStart) {
        q->setValue(position);
        return;
    }
    takenBack = true;
    q->setRepeatAction(QAbstractSlider::SliderNoAction);
    const QPointer<LogSlider> slider(q);
    slider->setSliderPosition(position);
    if (slider)
        slider->setSliderDown(false);
}

LogSlider::LogSlider(QWidget* parent)
    : LogSlider(Qt::Vertical, parent) {}

LogSlider::LogSlider(Qt::Orientation orientation, QWidget* parent)
    : QSlider(orientation, parent)
    , d(std::make_unique<LogSliderPrivate>(this)) {
    installAccessible<LogSliderAccessible, LogSlider>();
    connect(this, &QSlider::valueChanged, this, &LogSlider::moved);
}

LogSlider::~LogSlider() = default;

void LogSlider::moved(int position) {
    const auto tell = [this, position] {
        if (d->scale.precision != 0)
            Q_EMIT realValueChanged(calculateRealValue(position));
    };
    if (std::exchange(d->byUser, false)) {
        d->bracket.note(position, tell);
    } else {
        d->bracket.hostSet(position);
        tell();
    }
}

bool LogSlider::isEditing() const {
    return d->bracket.isEditing();
}

void LogSlider::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->bracket.cancel();
}

void LogSlider::setRealRange(int minExp, int maxExp, int precision) {
    KXUI_INTERFACE_THREAD(this);
    if (precision < 1)
        throw std::invalid_argument("precision argument should be > 0");
    if (minExp == maxExp)
        throw std::invalid_argument("minExp cannot be equal to maxExp");
    const auto [low, high] = std::minmax(minExp, maxExp);
    if (low < LowestExponent || high > HighestExponent)
        throw std::invalid_argument("exponents should be between -307 and 308");
    const int farthest = std::max(std::abs(low), std::abs(high));
    // QSlider computes with the difference of its ends, too.
    if (precision > INT_MAX / 2 / farthest)
        throw std::invalid_argument("the range has too many positions");
    const double real = realValueOrZero();
    const int position = value();
    d->scale = {low, high, precision, std::pow(10.0, low), std::pow(10.0, high)};
    const QPointer<LogSlider> self(this);
    setRange(low * precision, high * precision);
    if (self && value() == position && realValue() != real)
        Q_EMIT realValueChanged(realValue());
}

void LogSlider::requireRange() const {
    if (d->scale.precision == 0)
        throw std::logic_error("Call setRealRange method first");
}

double LogSlider::realValue() const {
    requireRange();
    return calculateRealValue(value());
}

void LogSlider::setRealValue(double value) {
    KXUI_INTERFACE_THREAD(this);
    requireRange();
    if (std::isnan(value))
        throw std::invalid_argument("the value is not a number");
    // Cutting toward zero would move a slider that is told what it reads, one position each time.
    if (value != realValue())
        setValue(calculateSliderValue(value));
}

double LogSlider::calculateRealValue(int position) const {
    return d->scale.valueAt(position);
}

int LogSlider::calculateSliderValue(double value) const {
    return d->scale.positionOf(value);
}

double LogSlider::realValueOrZero() const {
    return d->scale.precision == 0 ? 0.0 : realValue();
}

void LogSlider::setRealValueIfAny(double value) {
    KXUI_INTERFACE_THREAD(this);
    if (d->scale.precision != 0 && !std::isnan(value))
        setRealValue(value);
}

bool LogSlider::drawLogTicks() const {
    return d->drawLogTicks;
}

void LogSlider::setDrawLogTicks(bool draw) {
    KXUI_INTERFACE_THREAD(this);
    if (d->drawLogTicks == draw)
        return;
    d->drawLogTicks = draw;
    Q_EMIT ticksChanged();
}

int LogSlider::tickTextSize() const {
    return d->tickTextSize;
}

void LogSlider::setTickTextSize(int size) {
    KXUI_INTERFACE_THREAD(this);
    if (d->tickTextSize == size)
        return;
    d->tickTextSize = size;
    Q_EMIT ticksChanged();
}

QColor LogSlider::tickColor() const {
    return d->tickColor;
}

void LogSlider::setTickColor(const QColor& color) {
    KXUI_INTERFACE_THREAD(this);
    if (d->tickColor == color)
        return;
    d->tickColor = color;
    Q_EMIT ticksChanged();
}

QColor LogSlider::expTickColor() const {
    return d->expTickColor;
}

void LogSlider::setExpTickColor(const QColor& color) {
    KXUI_INTERFACE_THREAD(this);
    if (d->expTickColor == color)
        return;
    d->expTickColor = color;
    Q_EMIT ticksChanged();
}

QSize LogSlider::withLabels(QSize hint) const {
    if (d->drawLogTicks) {
        if (orientation() == Qt::Horizontal)
            hint.rheight() += d->tickTextSize;
        else
            hint.rwidth() += d->tickTextSize;
    }
    return hint;
}

QSize LogSlider::sizeHint() const {
    return withLabels(QSlider::sizeHint());
}

QSize LogSlider::minimumSizeHint() const {
    return withLabels(QSlider::minimumSizeHint());
}

void LogSlider::paintEvent(QPaintEvent* event) {
    QSlider::paintEvent(event);
    if (!d->drawLogTicks || d->scale.precision == 0)
        return;
    QPainter painter(this);
    paintTicks(painter);
}

bool LogSlider::event(QEvent* event) {
    bool ours = false;
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* key = static_cast<QKeyEvent*>(event);
        ours = key->key() == Qt::Key_Escape ? d->isHeld() : isSliderKey(*key);
    } else if (event->type() == QEvent::ContextMenu) {
        ours = d->menuSuppressed &&
               static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Mouse;
    }
    if (ours) {
        event->accept();
        return true;
    }
    return d->bracket.takes(event) || QSlider::event(event);
}

int LogSlider::along(const QPoint& point) const {
    return orientation() == Qt::Horizontal ? point.x() : point.y();
}

void LogSlider::mousePressEvent(QMouseEvent* event) {
    const bool dragging = d->isHeld() && event->button() != d->dragButton;
    d->menuSuppressed = dragging && event->button() == Qt::RightButton;
    if (dragging) {
        event->accept();
        if (d->menuSuppressed)
            cancelDrag();
        return;
    }
    if (!d->bracket.beginDrag(Qt::NoButton))
        return;
    d->takenBack = false;
    d->dragStart = value();
    d->dragButton = event->button();
    d->pressedAt = along(event->pos());
    const UserInput user(this, &d->byUser);
    QSlider::mousePressEvent(event);
    if (user.isOver() || event->isAccepted())
        return;
    d->dragStart.reset();
    d->bracket.finish();
}

void LogSlider::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() == Qt::NoButton && !endDrag()) // the release went to somebody else
        return;
    if (d->takenBack) {
        event->accept();
        return;
    }
    const UserInput user(this, &d->byUser);
    // The base class would round the place of the press, which several positions share.
    if (isSliderDown() && d->dragStart && along(event->pos()) == d->pressedAt) {
        event->accept();
        setSliderPosition(*d->dragStart);
        return;
    }
    QSlider::mouseMoveEvent(event);
}

void LogSlider::mouseReleaseEvent(QMouseEvent* event) {
    const bool released = event->buttons() == Qt::NoButton;
    if (released) {
        d->dragStart.reset();
        d->takenBack = false;
    }
    const UserInput user(this, &d->byUser);
    QSlider::mouseReleaseEvent(event); // which changes the value where there is no tracking
    if (released && !user.isOver())
        d->bracket.finish();
}

void LogSlider::wheelEvent(QWheelEvent* event) {
    if (!d->bracket.beginWheel())
        return;
    const UserInput user(this, &d->byUser);
    QSlider::wheelEvent(event);
}

// The groove and the arrows of a style repeat while they are pressed.
void LogSlider::timerEvent(QTimerEvent* event) {
    if (d->bracket.isAdrift()) {
        setRepeatAction(SliderNoAction);
        return;
    }
    const UserInput user(this, &d->byUser);
    QSlider::timerEvent(event);
}

void LogSlider::keyPressEvent(QKeyEvent* event) {
    if (d->isHeld() && event->key() == Qt::Key_Escape) {
        event->accept();
        cancelDrag();
        return;
    }
    if (!d->bracket.beginKey(*event))
        return;
    const UserInput user(this, &d->byUser);
    QSlider::keyPressEvent(event);
}

void LogSlider::hideEvent(QHideEvent* event) {
    QSlider::hideEvent(event);
    d->dragStart.reset();
    d->takenBack = false;
}

bool LogSlider::endDrag() {
    d->dragStart.reset();
    d->takenBack = false;
    return d->bracket.gesture() != EditGestures::Drag || d->bracket.finish();
}

void LogSlider::cancelDrag() {
    if (!d->isHeld() || d->takenBack)
        return;
    if (d->bracket.isEditing())
        d->bracket.cancel();
    else
        d->goTo(*d->dragStart);
}

void LogSlider::paintTicks(QPainter& painter) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const auto place = [&](QStyle::SubControl part) {
        return style()->subControlRect(QStyle::CC_Slider, &option, part, this);
    };
    const QColor midlight = option.palette.color(QPalette::Midlight);
    if (!d->expTickColor.isValid())
        d->expTickColor = midlight.darker(170);
    if (!d->tickColor.isValid())
        d->tickColor = midlight;

    QFont labelFont = font();
    labelFont.setPixelSize(std::max(1, d->tickTextSize));
    painter.setFont(labelFont);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QFontMetrics metrics(labelFont);
    const auto textOf = [&](double value) {
        const QString text = locale().toString(value, 'g', 6);
        return LogSliderText{text, metrics.horizontalAdvance(text)};
    };
    const LogSliderRoom room{size(), place(QStyle::SC_SliderGroove), place(QStyle::SC_SliderHandle),
                             orientation(), !option.upsideDown};
    const LogSliderLayout layout = LogSliderLayout::of(d->scale, room, textOf);
    const auto setPen = [&](bool wholePower) {
        painter.setPen(wholePower ? d->expTickColor : d->tickColor);
    };
    for (const LogSliderMark& mark : layout.marks) {
        setPen(mark.wholePower);
        painter.drawLine(mark.line);
    }
    if (orientation() == Qt::Vertical) {
        painter.rotate(90);
        painter.translate(0, -width());
    }
    for (const LogSliderLabel& label : layout.labels) {
        setPen(label.wholePower);
        painter.drawText(label.room, Qt::AlignBottom | Qt::AlignLeft | Qt::TextDontClip,
                         label.text);
    }
}

} // namespace Kestrel::UI
