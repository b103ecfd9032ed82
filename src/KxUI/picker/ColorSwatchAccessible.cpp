#include <KxUI/picker/ColorSwatchAccessible_p.h>

#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/ColorSwatch.h>

namespace Kestrel::UI {
namespace {

const QString CopyAction = QStringLiteral("Copy");
const QString PasteAction = QStringLiteral("Paste");

} // namespace

ColorSwatchAccessible::ColorSwatchAccessible(ColorSwatch* swatch)
    : QAccessibleWidget(swatch, QAccessible::ColorChooser) {}

ColorSwatch* ColorSwatchAccessible::swatch() const {
    return static_cast<ColorSwatch*>(object());
}

void ColorSwatchAccessible::tellColor(ColorSwatch* swatch) {
    if (QAccessible::isActive())
        tellAccessibleValue(swatch,
                            colorWords(swatch->color(), DisplayCall(swatch->displayTransform()),
                                       QStringLiteral(", ")));
}

QString ColorSwatchAccessible::text(QAccessible::Text kind) const {
    if (kind == QAccessible::Value)
        return colorWords(swatch()->color(), DisplayCall(swatch()->displayTransform()),
                          QStringLiteral(", "));
    const QString text = QAccessibleWidget::text(kind);
    return kind == QAccessible::Name && text.isEmpty() ? ColorSwatch::tr("Colour swatch") : text;
}

QAccessible::State ColorSwatchAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.readOnly = swatch()->isReadOnly();
    return state;
}

QStringList ColorSwatchAccessible::actionNames() const {
    QStringList names = QAccessibleWidget::actionNames();
    if (!swatch()->isEnabled())
        return names;
    names << pressAction() << CopyAction;
    if (!swatch()->isReadOnly())
        names << PasteAction;
    return names;
}

QString ColorSwatchAccessible::localizedActionName(const QString& name) const {
    if (name == CopyAction)
        return ColorSwatch::tr("Copy colour");
    if (name == PasteAction)
        return ColorSwatch::tr("Paste colour");
    return QAccessibleWidget::localizedActionName(name);
}

void ColorSwatchAccessible::doAction(const QString& name) {
    if (!actionNames().contains(name))
        return;
    if (name == pressAction())
        Q_EMIT swatch()->clicked();
    else if (name == CopyAction)
        swatch()->copy();
    else if (name == PasteAction)
        swatch()->paste();
    else
        QAccessibleWidget::doAction(name);
}

} // namespace Kestrel::UI
