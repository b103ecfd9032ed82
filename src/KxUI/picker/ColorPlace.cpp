#include <KxUI/picker/ColorPlace_p.h>

#include <KxUI/picker/ColorMime_p.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QToolTip>
#include <QWidget>

#include <utility>

namespace Kestrel::UI {

ColorPlace::ColorPlace(QWidget* widget, const ColorValue& color, const DisplayCall& display)
    : m_widget(widget)
    , m_color(color)
    , m_display(display) {}

bool ColorPlace::takes(QEvent* event) const {
    if (event->type() == QEvent::ShortcutOverride) {
        const auto* const key = static_cast<QKeyEvent*>(event);
        const bool isOwn = key->matches(QKeySequence::Copy) || key->matches(QKeySequence::Paste);
        if (isOwn)
            event->accept();
        return isOwn;
    }
    if (event->type() != QEvent::ToolTip || !m_widget->toolTip().isEmpty())
        return false;
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), colorWords(m_color, m_display),
                       m_widget);
    return true;
}

void ColorPlace::press(const QMouseEvent& event) {
    if (event.button() == Qt::LeftButton)
        m_pressed = event.pos();
}

bool ColorPlace::drags(const QMouseEvent& event) {
    if (!m_pressed || !(event.buttons() & Qt::LeftButton) ||
        (event.pos() - *m_pressed).manhattanLength() < QApplication::startDragDistance())
        return false;
    m_pressed.reset();
    return true;
}

void ColorPlace::enter(QDragEnterEvent* event) {
    if (colorDragSource() == m_widget || !colorIn(event->mimeData(), m_display, m_color.alpha))
        return;
    setDropping(true);
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void ColorPlace::leave() {
    setDropping(false);
}

std::optional<ColorValue> ColorPlace::drop(QDropEvent* event) {
    setDropping(false);
    const std::optional<ColorValue> color = colorIn(event->mimeData(), m_display, m_color.alpha);
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(color.has_value());
    return color;
}

void ColorPlace::setDropping(bool dropping) {
    if (std::exchange(m_dropping, dropping) != dropping)
        m_widget->update();
}

} // namespace Kestrel::UI
