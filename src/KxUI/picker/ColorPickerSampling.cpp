#include <KxUI/picker/ColorPicker_p.h>

#include <KxUI/picker/ColorSampler_p.h>

#include <QMenu>
#include <QShortcut>
#include <QToolButton>

namespace Kestrel::UI {

// Opens the edit with the first colour that is taken.
void ColorPickerPrivate::sample(const ColorValue& color) {
    const QPointer<ColorPicker> alive(q);
    ColorValue taken = color;
    taken.alpha = state.color().alpha;
    if (taken == state.color())
        return;
    if (m_active != sampler)
        begin(sampler, [this] { sampler->cancelDrag(); });
    if (alive)
        edit(sampler, [&](ColorState& edited, const ColorState&) { edited.setColor(taken); });
}

void ColorPickerPrivate::watchSampler() {
    sampler = new ColorSampler(q);
    using Sampler = ColorSampler;
    QObject::connect(sampler, &Sampler::sampled, q,
                     [this](const ColorValue& color) { sample(color); });
    QObject::connect(sampler, &Sampler::dragFinished, q, [this] { finish(sampler, true); });
    QObject::connect(sampler, &Sampler::dragCancelled, q, [this] { finish(sampler, false); });
    QObject::connect(sampler, &Sampler::hovered, q, [this](const ColorValue& color) {
        ColorValue shown = color;
        shown.alpha = state.color().alpha;
        parts.newSwatch->setColor(shown);
    });
    QObject::connect(sampler, &Sampler::hoverEnded, q,
                     [this] { parts.newSwatch->setColor(state.color()); });
    QObject::connect(sampler, &Sampler::activeChanged, q, [this](bool on) {
        parts.pipette->setChecked(on);
        Q_EMIT q->samplingChanged(on);
    });
    QObject::connect(parts.pipette, &QToolButton::clicked, q, [this](bool on) {
        if (on)
            sampler->start();
        else
            sampler->stop();
    });
    auto* const key = new QShortcut(QKeySequence(Qt::Key_I), q);
    key->setContext(Qt::WidgetWithChildrenShortcut);
    QObject::connect(key, &QShortcut::activated, q, &ColorPicker::startSampling);
    if (!Sampler::canAskDesktop())
        return;
    auto* const menu = new QMenu(parts.pipette);
    QObject::connect(menu->addAction(ColorPicker::tr("Pick from the &screen")), &QAction::triggered,
                     sampler, &Sampler::askDesktop);
    parts.pipette->setMenu(menu);
    parts.pipette->setPopupMode(QToolButton::MenuButtonPopup);
}

} // namespace Kestrel::UI
