#include <KxUI/values/SliderEntry_p.h>

#include <KxUI/values/DoubleSpinBox.h>

#include <QCoreApplication>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QScreen>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

SliderEntry::SliderEntry(double value, const QString& suffix, QWidget* slider)
    : QFrame(slider, Qt::Popup)
    , m_field(new DoubleSpinBox) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_WindowPropagation);
    setLocale(slider->locale());
    setFrameStyle(QFrame::StyledPanel | QFrame::Plain);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_field);
    setFocusProxy(m_field);
    m_field->setButtonSymbols(QAbstractSpinBox::NoButtons);
    m_field->setSuffix(suffix);
    m_field->setValue(value);
    m_field->setAccessibleName(slider->accessibleName());
    // Both see keys, and their order is theirs.
    m_field->installEventFilter(this);
    for (auto* line : m_field->findChildren<QLineEdit*>())
        line->installEventFilter(this);
    connect(m_field, &DoubleSpinBox::textRefused, this, [this] { m_refused = true; });
    connect(m_field, &DoubleSpinBox::valueEdited, this, [this](double edited) {
        if (!std::exchange(m_done, true))
            Q_EMIT taken(edited);
    });
}

SliderEntry::~SliderEntry() {
    m_field->disconnect(this); // it may take its text when it loses the focus
}

void SliderEntry::open(const QPoint& place, const QKeyEvent& key) {
    adjustSize();
    QPoint corner = parentWidget()->mapToGlobal(place) - rect().center();
    if (const QScreen* screen = QGuiApplication::screenAt(corner + rect().center())) {
        const QRect free = screen->availableGeometry();
        corner.setX(
            std::clamp(corner.x(), free.left(), std::max(free.left(), free.right() - width())));
        corner.setY(
            std::clamp(corner.y(), free.top(), std::max(free.top(), free.bottom() - height())));
    }
    move(corner);
    show();
    m_field->setFocus(Qt::PopupFocusReason);
    QKeyEvent first(QEvent::KeyPress, key.key(), key.modifiers(), key.text());
    QCoreApplication::sendEvent(m_field, &first);
}

bool SliderEntry::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return QFrame::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const bool isPress = event->type() == QEvent::KeyPress;
    if (key->key() == Qt::Key_Escape) {
        event->accept();
        m_done = true; // whatever the field makes of losing the focus
        if (isPress)
            close();
        return true;
    }
    if (isPress && (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter)) {
        m_refused = false;
        // The field comes first: it takes the number, or refuses it.
        QMetaObject::invokeMethod(this, &SliderEntry::closeUnlessRefused, Qt::QueuedConnection);
    }
    return QFrame::eventFilter(watched, event);
}

void SliderEntry::closeUnlessRefused() {
    if (m_refused)
        return;
    m_done = true;
    close();
}

} // namespace Kestrel::UI
