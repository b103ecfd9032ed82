#include <KxUI/picker/ColorPopup_p.h>

#include <KxUI/kit/WindowPlacement.h>
#include <KxUI/kit/WindowSystem_p.h>
#include <KxUI/picker/ColorPicker.h>

#include <QApplication>
#include <QCursor>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int Gap = 2;

bool isWithin(const QWidget* widget, const QWidget* window) {
    while (widget && widget != window)
        widget = widget->parentWidget();
    return widget != nullptr;
}

// The one of the areas that holds the place, else the first.
QRect areaAt(const QPoint& place) {
    const QVector<QRect> areas = WindowPlacement::availableAreas();
    const auto found = std::find_if(areas.begin(), areas.end(),
                                    [&](const QRect& area) { return area.contains(place); });
    if (found != areas.end())
        return *found;
    return areas.isEmpty() ? QRect() : areas.first();
}

} // namespace

ColorPopup::ColorPopup(QWidget* button, std::function<void(bool kept)> leave)
    : QFrame(button, Qt::Tool | Qt::FramelessWindowHint)
    , m_leave(std::move(leave))
    , m_title(new QLabel) {
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(4);
    layout->addWidget(m_title);
    m_title->hide();
    m_title->setTextFormat(Qt::PlainText);
}

ColorPopup::~ColorPopup() {
    m_isDone = true;
    if (!m_picker || m_picker->parentWidget() != this)
        return;
    m_picker->hide();
    m_picker->setParent(nullptr);
}

ColorPopup* ColorPopup::of(const ColorPicker* picker) {
    return picker ? dynamic_cast<ColorPopup*>(picker->parentWidget()) : nullptr;
}

QRect ColorPopup::placeBeside(const QRect& button, const QSize& size, const QRect& area,
                              bool isMirrored) {
    const QSize fitting = area.isEmpty() ? size : size.boundedTo(area.size());
    QRect place(button.left(), button.bottom() + 1 + Gap, fitting.width(), fitting.height());
    if (isMirrored)
        place.moveRight(button.right());
    if (area.isEmpty())
        return place;
    const bool fitsAbove = button.top() - Gap - place.height() >= area.top();
    if (place.bottom() > area.bottom() && fitsAbove)
        place.moveBottom(button.top() - 1 - Gap);
    place.moveLeft(std::clamp(place.left(), area.left(), area.right() + 1 - place.width()));
    place.moveTop(std::clamp(place.top(), area.top(), area.bottom() + 1 - place.height()));
    return place;
}

void ColorPopup::open(ColorPicker* picker, const QString& title) {
    m_picker = picker;
    m_title->setText(title);
    m_title->setVisible(!title.isEmpty());
    setWindowTitle(title);
    layout()->addWidget(picker);
    picker->show();
    adjustSize();
    const QWidget* const button = parentWidget();
    const QRect beside(button->mapToGlobal(QPoint()), button->size());
    setGeometry(placeBeside(beside, size(), areaAt(beside.center()), button->isRightToLeft()));
    show();
    bringToFront(this);
    picker->setFocus(Qt::PopupFocusReason);
}

void ColorPopup::leave(bool kept) {
    if (std::exchange(m_isDone, true))
        return;
    const std::function<void(bool)> told = m_leave;
    told(kept);
}

// Not where the picker opened the window, and not where the pointer is on the button, which is
// about to close this one itself.
void ColorPopup::leaveIfElsewhere() {
    const QWidget* const active = QApplication::activeWindow();
    if (!isVisible() || (active && isWithin(active, this)))
        return;
    const QWidget* const button = parentWidget();
    const bool onButton = button->rect().contains(button->mapFromGlobal(QCursor::pos()));
    if (!active || active != button->window() || !onButton)
        leave(true);
}

bool ColorPopup::event(QEvent* event) {
    // Which window comes next is known later.
    if (event->type() == QEvent::WindowDeactivate)
        QMetaObject::invokeMethod(
            this, [this] { leaveIfElsewhere(); }, Qt::QueuedConnection);
    if (event->type() == QEvent::Close) {
        event->ignore();
        leave(true);
        return true;
    }
    return QFrame::event(event);
}

void ColorPopup::keyPressEvent(QKeyEvent* event) {
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == 0;
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isPlain || (event->key() != Qt::Key_Escape && !isReturn))
        QFrame::keyPressEvent(event);
    else
        leave(isReturn);
}

} // namespace Kestrel::UI
