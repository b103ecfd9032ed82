#include <KxUI/picker/ColorCodeEdit_p.h>

#include <KxUI/kit/RefusalFlash_p.h>

#include <QKeyEvent>

namespace Kestrel::UI {
namespace {

constexpr QChar AlmostEqual(0x2248);

} // namespace

ColorCodeEdit::ColorCodeEdit(QWidget* parent)
    : QLineEdit(parent) {
    setMaxLength(LongestColorText);
    setAccessibleName(tr("Colour code"));
    connect(this, &QLineEdit::returnPressed, this, [this] { take(true); });
}

void ColorCodeEdit::show(const ColorValue& color, const DisplayCall& display, bool withAlpha) {
    m_display = display;
    ColorValue shown = color;
    if (!withAlpha)
        shown.alpha = 1.0F;
    const ColorCode code = colorCode(shown, display);
    const QString text = code.isClipped ? QString(AlmostEqual) + code.text : code.text;
    setReadOnly(!display.isInvertible());
    if (text == m_shown)
        return;
    m_shown = text;
    if (!isModified())
        showShown();
}

void ColorCodeEdit::showShown() {
    setText(m_shown);
    setModified(false);
}

void ColorCodeEdit::take(bool refusalStays) {
    if (!isModified())
        return;
    QString typed = text();
    typed.remove(AlmostEqual);
    const ColorText read = readColorText(typed, m_display);
    if (read.problem == ColorText::None) {
        m_shown.clear(); // the same colour is to be seen in the usual notation, too
        setModified(false);
        Q_EMIT taken(read.color, read.hasAlpha);
        return;
    }
    RefusalFlash::over(this);
    if (!refusalStays)
        showShown();
}

// Made when it is asked for: the colour changes far more often.
void ColorCodeEdit::nameShown() {
    const QString& name = m_display.transform().name;
    QString tip = name.isEmpty() ? tr("The code of what the screen shows")
                                 : tr("The code of what the screen shows: %1").arg(name);
    if (m_shown.startsWith(AlmostEqual))
        tip +=
            QLatin1Char('\n') + tr("The screen can not show this colour; the code is only near it");
    setToolTip(tip);
}

bool ColorCodeEdit::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip)
        nameShown();
    // Before whatever closes the window around.
    if (event->type() == QEvent::ShortcutOverride && isModified() &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        return true;
    }
    return QLineEdit::event(event);
}

void ColorCodeEdit::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && isModified()) {
        showShown();
        selectAll();
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
    // A dialog's default button is not meant.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        event->accept();
}

void ColorCodeEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        take(false);
}

int ColorCodeEdit::widthOf(const QString& text) const {
    constexpr int Frame = 18;
    return fontMetrics().horizontalAdvance(text) + Frame;
}

QSize ColorCodeEdit::sizeHint() const {
    return {widthOf(QStringLiteral("\u2248#88888888")), QLineEdit::sizeHint().height()};
}

QSize ColorCodeEdit::minimumSizeHint() const {
    return {widthOf(QStringLiteral("#888888")), QLineEdit::minimumSizeHint().height()};
}

} // namespace Kestrel::UI
