#include <KxUI/picker/ColorSlider.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/picker/ColorSlider_p.h>

namespace Kestrel::UI {

ColorSlider::ColorSlider(QWidget* parent)
    : LinearSlider(std::make_unique<ColorSliderLook>(), parent) {
    installAccessible<ColorSliderAccessible, ColorSlider>();
    qRegisterMetaType<ColorValue>();
    qRegisterMetaType<ColorModel::Component>();
    // The first to hear of a value, so that all others find the colour that belongs to it.
    connect(this, &LinearSlider::valueChanged, this,
            [this](double value) { ColorSliderLook::of(this).noteValue(value); });
    connect(this, &LinearSlider::editFinished, this,
            [this] { ColorSliderLook::of(this).settleRange(); });
}

ColorSlider::~ColorSlider() = default;

ColorModel::Component ColorSlider::component() const {
    return ColorSliderLook::of(this).component;
}

void ColorSlider::setComponent(ColorModel::Component component) {
    KXUI_INTERFACE_THREAD(this);
    if (component == this->component() || component < ColorModel::Red || component > ColorModel::Cr)
        return;
    const QPointer<ColorSlider> alive(this);
    cancelEdit();
    if (alive)
        ColorSliderLook::of(this).setComponent(component);
    if (alive)
        Q_EMIT componentChanged(component);
}

ColorValue ColorSlider::color() const {
    return ColorSliderLook::of(this).state.color();
}

void ColorSlider::setColor(const ColorValue& color) {
    KXUI_INTERFACE_THREAD(this);
    if (!isFinite(color))
        return;
    ColorSliderLook& look = ColorSliderLook::of(this);
    ColorState state = look.state;
    state.setEdited(color); // value and light are one thing where there is no exposure
    const QPointer<ColorSlider> alive(this);
    look.show(state);
    if (alive && !isEditing())
        look.settleRange();
}

int ColorSlider::colorSpace() const {
    return ColorSliderLook::of(this).state.ycbcr();
}

void ColorSlider::setColorSpace(int option) {
    KXUI_INTERFACE_THREAD(this);
    ColorState state = ColorSliderLook::of(this).state;
    state.setYCbCr(option);
    if (state.ycbcr() == colorSpace())
        return;
    const QPointer<ColorSlider> alive(this);
    ColorSliderLook::of(this).show(state);
    if (alive)
        Q_EMIT colorSpaceChanged(state.ycbcr());
}

DisplayTransform ColorSlider::displayTransform() const {
    return ColorSliderLook::of(this).display.transform();
}

void ColorSlider::setDisplayTransform(const DisplayTransform& transform) {
    KXUI_INTERFACE_THREAD(this);
    ColorSliderLook::of(this).setDisplay(DisplayCall(transform));
}

QString ColorSliderAccessible::standardName() const {
    return componentName(widgetAs<ColorSlider>()->component());
}

} // namespace Kestrel::UI
