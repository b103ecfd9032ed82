#include <KxUI/picker/ColorButton_p.h>

#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/Crisp_p.h>
#include <KxUI/kit/RefusalFlash_p.h>
#include <KxUI/picker/ColorButtonAccessible_p.h>
#include <KxUI/picker/ColorPicker.h>
#include <KxUI/picker/SwatchPainting_p.h>

#include <QPainter>
#include <QStyleOptionButton>

#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int Margin = 4; // of the bevel around the colour

} // namespace

ColorButtonPrivate::ColorButtonPrivate(ColorButton* button)
    : bracket(
          button, [this] { return color; }, [this](const ColorValue& edited) { store(edited); })
    , place(button, color, display)
    , q(button) {}

void ColorButtonPrivate::store(const ColorValue& newColor) {
    if (newColor == color)
        return;
    color = newColor;
    q->update();
    ColorButtonAccessible::tellColor(q);
    Q_EMIT q->colorChanged(newColor);
}

void ColorButtonPrivate::take(std::optional<ColorValue> taken) {
    if (!taken) {
        RefusalFlash::over(q);
        return;
    }
    if (!isAlphaEnabled)
        taken->alpha = color.alpha;
    if (bracket.editOnce(*taken))
        showInPicker();
}

ColorPicker* ColorButtonPrivate::picker() {
    if (shared)
        return shared;
    if (!own) {
        own = std::make_unique<ColorPicker>();
        own->setCompact(true);
    }
    return own.get();
}

// The edits of the picker are the button's. Whichever hears of Escape first, both take the edit
// back: the other one's ends with it.
void ColorButtonPrivate::connectPicker(ColorPicker* picker) {
    ColorPopup* const context = popup.get();
    QObject::connect(picker, &QObject::destroyed, context, [this] {
        m_shown.clear(); // not yet by itself
        close();
    });
    QObject::connect(picker, &ColorPicker::editStarted, context,
                     [this] { bracket.beginDrag(Qt::NoButton); });
    QObject::connect(picker, &ColorPicker::valueEdited, context, [this](const ColorValue& edited) {
        const QPointer<ColorButton> alive(q);
        bracket.change(edited);
        if (alive && popup && color != edited)
            showInPicker(); // the host answered
    });
    QObject::connect(picker, &ColorPicker::editFinished, context, [this](bool accepted) {
        if (accepted)
            bracket.finish();
        else
            bracket.cancel();
    });
    QObject::connect(q, &ColorButton::editFinished, picker, [this](bool accepted) {
        if (!accepted && popup && m_shown)
            m_shown->cancelEdit();
    });
}

void ColorButtonPrivate::open() {
    if (!q->isVisible() || !q->isEnabled() || !bracket.finish())
        return;
    const QPointer<ColorButton> alive(q);
    const QPointer<ColorPicker> shown(picker());
    if (ColorPopup* const other = ColorPopup::of(shown))
        other->leave(true); // of another button
    if (!alive || !shown || popup)
        return;
    popup = std::make_unique<ColorPopup>(q, [this](bool kept) { leave(kept); });
    m_shown = shown;
    m_before = color;
    shown->setDisplayTransform(display.transform());
    shown->setAlphaEnabled(isAlphaEnabled);
    shown->setPreviousColor(color);
    shown->setColor(color);
    connectPicker(shown);
    popup->open(shown, title);
    if (alive)
        Q_EMIT q->openChanged(true);
}

void ColorButtonPrivate::leave(bool kept) {
    const QPointer<ColorButton> alive(q);
    if (!kept && !bracket.editOnce(m_before))
        return;
    close();
}

void ColorButtonPrivate::close() {
    if (!popup)
        return;
    // Not deleted now: the popup, or the picker in it, may be who asks for it.
    ColorPopup* const closed = popup.release();
    if (m_shown) {
        QObject::disconnect(q, &ColorButton::editFinished, m_shown, nullptr);
        m_shown->disconnect(closed);
        m_shown->hide();
        m_shown->setParent(nullptr);
    }
    closed->hide();
    closed->deleteLater();
    m_shown.clear();
    const QPointer<ColorButton> alive(q);
    if (bracket.finish())
        Q_EMIT q->openChanged(false);
}

void ColorButtonPrivate::showInPicker() {
    if (popup && m_shown && m_shown->color() != color)
        m_shown->setColor(color);
}

void ColorButtonPrivate::paint(QPainter& painter) const {
    const double ratio = q->devicePixelRatioF();
    QStyleOptionButton option;
    option.initFrom(q);
    option.state |= q->isDown() || popup ? QStyle::State_Sunken : QStyle::State_Raised;
    q->style()->drawControl(QStyle::CE_PushButtonBevel, &option, &painter, q);
    const QRectF area =
        rectOnPixels(QRectF(q->rect()).adjusted(Margin, Margin, -Margin, -Margin), ratio);
    const QPalette palette = q->palette();
    const QColor ground = palette.color(QPalette::Button);
    const bool isMarked = place.isDropping() || q->hasFocus();
    painter.fillRect(area,
                     isMarked ? visibleHighlight(palette, ground) : swatchOutline(palette, ground));
    const double line = isMarked ? 2.0 : 1.0;
    paintSwatch(painter, rectOnPixels(area.adjusted(line, line, -line, -line), ratio),
                shownColor(color, display), ratio);
    if (q->isEnabled())
        return;
    QColor veil = ground;
    veil.setAlpha(150);
    painter.fillRect(area, veil);
}

} // namespace Kestrel::UI
