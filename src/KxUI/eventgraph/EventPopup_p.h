#pragma once

#include <QFrame>

QT_BEGIN_NAMESPACE
class QTextEdit;
QT_END_NAMESPACE

namespace Kestrel::UI {

/** The text of an event beside the mouse, from which it can be copied. */
class EventPopup : public QFrame {
    Q_OBJECT

public:
    explicit EventPopup(QWidget* parent);

    /** Shows a text with the corner at a point of the desktop, or as near as the screen allows. */
    void showText(const QString& text, const QPoint& globalPosition);

private:
    QTextEdit* m_text;
};

} // namespace Kestrel::UI
