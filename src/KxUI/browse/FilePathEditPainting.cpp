#include <KxUI/browse/FilePathEdit_p.h>

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolButton>

using namespace Kestrel::UI;
namespace Text = Kestrel::UI::PathText;

namespace {

constexpr int Margin = 2; // that a line edit leaves beside its text

} // namespace

QRect FilePathEdit::Private::textRoom() const {
    QStyleOptionFrame option;
    q->initStyleOption(&option);
    QRect room = q->style()->subElementRect(QStyle::SE_LineEditContents, &option, q);
    room = room.marginsRemoved(q->textMargins());
    const auto buttons = q->findChildren<QToolButton*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QToolButton* button : buttons) {
        if (button->isHidden())
            continue;
        const QRect place = button->geometry();
        if (place.center().x() > q->width() / 2)
            room.setRight(std::min(room.right(), place.left() - 1));
        else
            room.setLeft(std::max(room.left(), place.right() + 1));
    }
    return room.adjusted(Margin, 0, -Margin, 0);
}

QString FilePathEdit::Private::elided() const {
    const QFontMetricsF metrics(q->font());
    return Text::elided(q->text(), textRoom().width(), [&metrics](const QString& text) {
        return metrics.horizontalAdvance(text);
    });
}

// The end of a path says more than its middle: without the focus, both ends are seen.
void FilePathEdit::paintEvent(QPaintEvent* event) {
    const QString shown = hasFocus() ? text() : d->elided();
    if (shown == text()) {
        QLineEdit::paintEvent(event);
        return;
    }
    QPainter painter(this);
    QStyleOptionFrame option;
    initStyleOption(&option);
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(d->textRoom(), static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter), shown);
}

void FilePathEdit::changeEvent(QEvent* event) {
    QLineEdit::changeEvent(event);
    if (d && event->type() == QEvent::ReadOnlyChange)
        d->showButtons();
}
