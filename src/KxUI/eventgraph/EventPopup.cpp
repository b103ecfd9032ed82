#include <KxUI/eventgraph/EventPopup_p.h>

#include <QGuiApplication>
#include <QScreen>
#include <QTextEdit>
#include <QVBoxLayout>

#include <algorithm>

namespace Kestrel::UI {

EventPopup::EventPopup(QWidget* parent)
    : QFrame(parent, Qt::Popup)
    , m_text(new QTextEdit(this)) {
    setFrameShape(QFrame::StyledPanel);
    m_text->setReadOnly(true);
    m_text->setLineWrapMode(QTextEdit::NoWrap);
    m_text->setFrameShape(QFrame::NoFrame);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_text);
    hide();
}

void EventPopup::showText(const QString& text, const QPoint& globalPosition) {
    const QScreen* screen = QGuiApplication::screenAt(globalPosition);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const QRect room = screen->geometry();
    const QFontMetrics metrics(m_text->document()->defaultFont());
    m_text->setPlainText(text);
    setFixedSize((metrics.size(0, text) + QSize(30, 30)).boundedTo(room.size()));
    QPoint corner = globalPosition;
    corner.setX(std::max(std::min(corner.x(), room.x() + room.width() - width()), room.x()));
    corner.setY(std::min(corner.y(), room.y() + room.height() - height()));
    move(corner);
    show();
}

} // namespace Kestrel::UI
