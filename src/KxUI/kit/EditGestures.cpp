#include <KxUI/kit/EditGestures_p.h>

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include <utility>

namespace Kestrel::UI {
namespace {

bool isModifierOnly(int key) {
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
        return true;
    default:
        return false;
    }
}

} // namespace

EditGestures::EditGestures(QWidget* widget)
    : m_widget(widget) {}

EditGestures::~EditGestures() = default;

void EditGestures::begin(Gesture gesture) {
    m_gesture = gesture;
    keepStart();
}

bool EditGestures::beginDrag(Qt::MouseButton button) {
    if (m_closing)
        return true;
    if (!finish())
        return false;
    m_button = button;
    begin(Drag);
    return true;
}

bool EditGestures::beginKey(const QKeyEvent& event) {
    if (m_closing || m_gesture == Drag || (m_gesture == Keys && m_key == event.key()))
        return true;
    if (!finish())
        return false;
    m_key = event.key();
    begin(Keys);
    return true;
}

bool EditGestures::beginWheel() {
    if (m_closing || m_gesture == Drag)
        return true;
    if (m_gesture != Wheel) {
        if (!finish())
            return false;
        begin(Wheel);
    }
    if (!m_rest)
        m_rest = std::make_unique<EditRest>([this] { finish(); });
    m_rest->start();
    return true;
}

int EditGestures::turnWheel(const QWheelEvent& event) {
    if (!beginWheel() || m_gesture != Wheel)
        return 0;
    return m_notches.add(event.angleDelta().y());
}

bool EditGestures::open() {
    if (m_open)
        return !m_closing;
    m_open = true;
    const int edit = ++m_edit;
    if (m_gesture == Drag) {
        // The press need not have taken the focus.
        if (!m_escape)
            m_escape = std::make_unique<EscapeWatch>([this] { cancel(); });
        m_escape->setActive(true);
    }
    const QPointer<QWidget> alive(m_widget);
    tellStarted();
    return alive && isOpen(edit);
}

bool EditGestures::finish() {
    if (m_closing)
        return true;
    m_gesture = NoGesture;
    m_notches.drop();
    if (m_rest)
        m_rest->stop();
    if (!std::exchange(m_open, false))
        return true;
    if (m_escape)
        m_escape->setActive(false);
    const QPointer<QWidget> alive(m_widget);
    tellFinished(true);
    return !alive.isNull();
}

bool EditGestures::interrupt() {
    m_adrift = m_adrift || (m_gesture == Drag && m_button == Qt::NoButton);
    return finish();
}

bool EditGestures::cancel() {
    if (!m_open || m_closing)
        return true;
    m_closing = true;
    m_gesture = NoGesture;
    m_notches.drop();
    if (m_rest)
        m_rest->stop();
    if (m_escape)
        m_escape->setActive(false);
    const QPointer<QWidget> alive(m_widget);
    goToStart();
    if (!alive)
        return false;
    m_closing = false;
    m_open = false;
    tellFinished(false);
    return !alive.isNull();
}

bool EditGestures::takes(QEvent* event) {
    bool taken = false;
    switch (event->type()) {
    case QEvent::Hide:
        return !interrupt();
    case QEvent::EnabledChange:
        return !m_widget->isEnabled() && !interrupt();
    case QEvent::FocusOut:
        return takesFocusOut(*static_cast<QFocusEvent*>(event));
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        taken = takesPress(*static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseMove:
        taken = takesMove(*static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseButtonRelease:
        taken = takesRelease(*static_cast<QMouseEvent*>(event));
        break;
    case QEvent::Wheel:
        taken = isHeld() || m_adrift;
        break;
    case QEvent::ContextMenu:
        taken = m_menuSuppressed &&
                static_cast<QContextMenuEvent*>(event)->reason() == QContextMenuEvent::Mouse;
        break;
    case QEvent::ShortcutOverride:
        taken = takesEscape(*static_cast<QKeyEvent*>(event));
        break;
    case QEvent::KeyPress:
        taken = takesKey(*static_cast<QKeyEvent*>(event));
        break;
    case QEvent::KeyRelease: {
        const auto* key = static_cast<QKeyEvent*>(event);
        return m_gesture == Keys && key->key() == m_key && !key->isAutoRepeat() && !finish();
    }
    default:
        break;
    }
    if (taken)
        event->accept();
    return taken;
}

// Until no button is down; the widget needs the release to let go.
bool EditGestures::takesAdrift(const QMouseEvent& event) {
    const Qt::MouseButtons others = event.buttons() & ~Qt::MouseButtons(event.button());
    m_adrift = m_adrift && others != Qt::NoButton;
    if (event.type() == QEvent::MouseButtonRelease)
        return false;
    m_menuSuppressed = m_menuSuppressed || (m_adrift && event.button() == Qt::RightButton);
    return m_adrift;
}

bool EditGestures::takesPress(const QMouseEvent& event) {
    m_menuSuppressed = false;
    if (m_adrift && takesAdrift(event))
        return true;
    if (!isHeld())
        return m_gesture != Drag && !finish();
    if (event.button() == m_button) { // its release went to somebody else
        m_button = Qt::NoButton;
        return !finish();
    }
    if (event.button() == Qt::RightButton) {
        m_menuSuppressed = true;
        cancel();
    }
    return true;
}

bool EditGestures::takesMove(const QMouseEvent& event) {
    if (m_adrift && takesAdrift(event))
        return true;
    if (!isHeld())
        return false;
    if (!(event.buttons() & m_button)) { // its release went to somebody else
        m_button = Qt::NoButton;
        return !finish();
    }
    return m_gesture != Drag;
}

bool EditGestures::takesRelease(const QMouseEvent& event) {
    if (m_adrift)
        return takesAdrift(event);
    if (!isHeld())
        return false;
    if (event.button() == m_button) {
        m_button = Qt::NoButton;
        return m_gesture != Drag;
    }
    return true;
}

bool EditGestures::takesEscape(const QKeyEvent& event) const {
    return event.key() == Qt::Key_Escape && m_open && m_gesture != Wheel;
}

bool EditGestures::takesKey(const QKeyEvent& event) {
    if (takesEscape(event)) {
        cancel();
        return true;
    }
    const bool another = m_gesture == Wheel || (m_gesture == Keys && event.key() != m_key);
    return another && !isModifierOnly(event.key()) && !finish();
}

bool EditGestures::takesFocusOut(const QFocusEvent& event) {
    const bool lost = event.reason() == Qt::PopupFocusReason ||
                      event.reason() == Qt::ActiveWindowFocusReason || m_gesture != Drag;
    return lost && !interrupt();
}

} // namespace Kestrel::UI
