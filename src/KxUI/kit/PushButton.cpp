#include <KxUI/kit/PushButton.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/kit/PushButtonAccessible_p.h>
#include <KxUI/kit/QtCompat_p.h>

#include <QBasicTimer>
#include <QKeyEvent>
#include <QPointer>
#include <QStyleOptionButton>
#include <QStylePainter>
#include <QTimerEvent>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int TickInterval = 40; // milliseconds
constexpr int TicksInATurn = 25;
constexpr int RingGap = 6;
constexpr QRgb DangerRed = 0xff98201c; // styles make it lighter

/** Where the ring is, and the text; that is empty where there is no room for both. */
struct RingPlace {
    QRect ring;
    QRect text;
};

RingPlace placeRing(const QRect& contents, int textWidth, int size, Qt::LayoutDirection direction) {
    const bool both = textWidth > 0 && size + RingGap + textWidth <= contents.width();
    const int width = both ? size + RingGap + textWidth : size;
    const int left = contents.left() + (contents.width() - width) / 2;
    const int top = contents.top() + (contents.height() - size) / 2;
    RingPlace place{QStyle::visualRect(direction, contents, QRect(left, top, size, size)), {}};
    if (both)
        place.text = QStyle::visualRect(
            direction, contents,
            QRect(left + size + RingGap, contents.top(), textWidth, contents.height()));
    return place;
}

} // namespace

/** The data of a PushButton. */
class PushButtonPrivate {
public:
    explicit PushButtonPrivate(PushButton* button)
        : q(button) {}

    void run();
    /** Whether the user's click comes by this event. */
    static bool clicks(const QEvent& event);
    void colour(QPalette& palette) const;
    void makeRoom(QStyleOptionButton& option, QPainter& painter) const;
    void paintRing(QPainter& painter, const QRectF& ring, const QColor& color) const;

    PushButton* const q;
    PushButton::Role role = PushButton::NormalRole;
    bool busy = false;
    int tick = 0;
    QBasicTimer timer;
};

PushButton::PushButton(QWidget* parent)
    : QPushButton(parent)
    , d(std::make_unique<PushButtonPrivate>(this)) {
    PushButtonAccessible::install();
}

PushButton::PushButton(const QString& text, QWidget* parent)
    : PushButton(parent) {
    // Not by the base class: that tells assistive technology of it, which would take the button for
    // one of the base class from then on.
    setText(text);
}

PushButton::~PushButton() = default;

bool PushButton::isBusy() const {
    return d->busy;
}

void PushButton::setBusy(bool busy) {
    KXUI_INTERFACE_THREAD(this);
    if (busy == d->busy)
        return;
    d->busy = busy;
    const QPointer<PushButton> guard(this);
    setDown(false);
    if (!guard)
        return;
    d->run();
    update();
    PushButtonAccessible::tellBusy(this);
    Q_EMIT busyChanged(busy);
}

PushButton::Role PushButton::role() const {
    return d->role;
}

void PushButton::setRole(Role role) {
    KXUI_INTERFACE_THREAD(this);
    if (role == d->role)
        return;
    d->role = role;
    setDefault(role == DefaultRole);
    if (role == DangerRole)
        setAutoDefault(false);
    update();
    Q_EMIT roleChanged(role);
}

void PushButtonPrivate::run() {
    // A style without animations has the ring stand still.
    const bool runs = busy && q->isVisible() &&
                      q->style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, q) > 0;
    if (runs && !timer.isActive())
        timer.start(TickInterval, q);
    else if (!runs)
        timer.stop();
}

bool PushButtonPrivate::clicks(const QEvent& event) {
    switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::Shortcut:
        return true;
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
        const int key = static_cast<const QKeyEvent&>(event).key();
        return key == Qt::Key_Space || key == Qt::Key_Select || key == Qt::Key_Return ||
               key == Qt::Key_Enter;
    }
    default:
        return false;
    }
}

bool PushButton::event(QEvent* event) {
    if (d->busy && PushButtonPrivate::clicks(*event)) {
        event->accept();
        return true;
    }
    return QPushButton::event(event);
}

void PushButton::timerEvent(QTimerEvent* event) {
    if (event->timerId() != d->timer.timerId()) {
        QPushButton::timerEvent(event);
        return;
    }
    d->tick = (d->tick + 1) % TicksInATurn;
    update();
}

void PushButton::showEvent(QShowEvent* event) {
    QPushButton::showEvent(event);
    d->run();
}

void PushButton::hideEvent(QHideEvent* event) {
    QPushButton::hideEvent(event);
    d->run();
}

void PushButtonPrivate::colour(QPalette& palette) const {
    if (!q->isEnabled() || role == PushButton::NormalRole)
        return;
    const QColor button =
        role == PushButton::DangerRole ? QColor(DangerRed) : palette.color(QPalette::Highlight);
    palette.setColor(QPalette::Button, button);
    palette.setColor(QPalette::ButtonText,
                     firstVisible({palette.color(QPalette::HighlightedText), Qt::white, Qt::black},
                                  {button}, ReadableContrast));
}

void PushButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    d->colour(option.palette);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    option.rect = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this);
    if (d->busy)
        d->makeRoom(option, painter);
    painter.drawControl(QStyle::CE_PushButtonLabel, option);
    if (option.state & QStyle::State_HasFocus) {
        initStyleOption(&option);
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = style()->subElementRect(QStyle::SE_PushButtonFocusRect, &option, this);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

/** Draws the ring where the icon would be, and leaves the rest to the label. */
void PushButtonPrivate::makeRoom(QStyleOptionButton& option, QPainter& painter) const {
    const QSize text = option.fontMetrics.size(Qt::TextShowMnemonic, option.text);
    const int size = std::min(option.fontMetrics.height(), option.rect.height());
    const RingPlace place =
        placeRing(option.rect, option.text.isEmpty() ? 0 : text.width(), size, option.direction);
    option.icon = QIcon();
    option.rect = place.text;
    if (place.text.isEmpty())
        option.text.clear();
    paintRing(painter, place.ring, option.palette.color(QPalette::ButtonText));
}

void PushButtonPrivate::paintRing(QPainter& painter, const QRectF& ring,
                                  const QColor& color) const {
    constexpr int degree = 16;
    const double width = std::max(1.5, ring.width() / 8.0);
    const QRectF line = ring.adjusted(width, width, -width, -width);
    QColor track = color;
    track.setAlphaF(ColorPart(0.3));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(track, width));
    painter.drawEllipse(line);
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(line, (90 - 360 * tick / TicksInATurn) * degree, -100 * degree);
    painter.restore();
}

} // namespace Kestrel::UI
