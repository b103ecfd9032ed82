#include <KxUI/picker/ColorPicker.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/picker/ColorPicker_p.h>
#include <KxUI/picker/ColorSampler_p.h>

#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

ColorPicker::ColorPicker(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<ColorPickerPrivate>(this)) {
    qRegisterMetaType<ColorValue>();
    qRegisterMetaType<Page>();
    qRegisterMetaType<Pages>();
}

ColorPicker::~ColorPicker() {
    // They go later, and an edit ends with the part that it was made by.
    for (QObject* part : findChildren<QObject*>())
        part->disconnect(this);
}

ColorValue ColorPicker::color() const {
    return d->state.color();
}

void ColorPicker::setColor(const ColorValue& color) {
    KXUI_INTERFACE_THREAD(this);
    if (isFinite(color))
        d->setColor({color.red, color.green, color.blue, std::clamp(color.alpha, 0.0F, 1.0F)});
}

ColorValue ColorPicker::previousColor() const {
    return d->previous;
}

void ColorPicker::setPreviousColor(const ColorValue& color) {
    KXUI_INTERFACE_THREAD(this);
    if (!isFinite(color) || color == d->previous)
        return;
    d->previous = color;
    d->parts.oldSwatch->setColor(color);
    Q_EMIT previousColorChanged(color);
}

DisplayTransform ColorPicker::displayTransform() const {
    return d->display.transform();
}

void ColorPicker::setDisplayTransform(const DisplayTransform& transform) {
    KXUI_INTERFACE_THREAD(this);
    d->setDisplay(transform);
}

ColorPicker::Pages ColorPicker::pages() const {
    return d->pages;
}

void ColorPicker::setPages(Pages pages) {
    KXUI_INTERFACE_THREAD(this);
    d->setPages(pages);
}

ColorPicker::Page ColorPicker::currentPage() const {
    return d->currentPage;
}

void ColorPicker::setCurrentPage(Page page) {
    KXUI_INTERFACE_THREAD(this);
    d->setCurrentPage(page);
}

ColorPicker::Pages ColorPicker::shownPages() const {
    return d->shownPages();
}

bool ColorPicker::isAlphaEnabled() const {
    return d->alphaEnabled;
}

void ColorPicker::setAlphaEnabled(bool enabled) {
    KXUI_INTERFACE_THREAD(this);
    if (enabled == d->alphaEnabled)
        return;
    d->alphaEnabled = enabled;
    d->parts.alpha.setVisible(enabled);
    d->showAll();
    Q_EMIT displayChanged();
}

bool ColorPicker::isCompact() const {
    return d->compact;
}

void ColorPicker::setCompact(bool compact) {
    KXUI_INTERFACE_THREAD(this);
    if (compact == d->compact)
        return;
    d->compact = compact;
    d->layOut();
    Q_EMIT displayChanged();
}

int ColorPicker::decimals() const {
    return d->decimals;
}

void ColorPicker::setDecimals(int decimals) {
    KXUI_INTERFACE_THREAD(this);
    const int limited = std::clamp(decimals, 0, 9);
    if (limited == d->decimals)
        return;
    d->decimals = limited;
    d->layOut();
    Q_EMIT displayChanged();
}

double ColorPicker::exposure() const {
    return static_cast<double>(d->state.stops());
}

SwatchModel* ColorPicker::swatches() const {
    return d->swatches();
}

void ColorPicker::setSwatches(SwatchModel* model) {
    KXUI_INTERFACE_THREAD(this);
    d->setSwatches(model);
}

void ColorPicker::addSampleSource(QWidget* where, SampleSource source) {
    KXUI_INTERFACE_THREAD(this);
    d->sampler->addSource(where, std::move(source));
}

bool ColorPicker::isSampling() const {
    return d->sampler->isActive();
}

void ColorPicker::startSampling() {
    KXUI_INTERFACE_THREAD(this);
    d->sampler->start();
}

void ColorPicker::stopSampling() {
    KXUI_INTERFACE_THREAD(this);
    d->sampler->stop();
}

bool ColorPicker::isEditing() const {
    return d->isEditing();
}

QByteArray ColorPicker::saveState() const {
    return d->save();
}

bool ColorPicker::restoreState(const QByteArray& state) {
    KXUI_INTERFACE_THREAD(this);
    return d->restore(state);
}

void ColorPicker::cancelEdit() {
    KXUI_INTERFACE_THREAD(this);
    d->cancel();
}

void ColorPicker::changeEvent(QEvent* event) {
    if (event->type() == QEvent::LanguageChange || event->type() == QEvent::FontChange)
        d->layOut();
    QWidget::changeEvent(event);
}

void ColorPicker::mousePressEvent(QMouseEvent* event) {
    // Between the parts of it, where the press of a drag was not.
    if (event->button() == Qt::RightButton && isEditing())
        cancelEdit();
    else
        QWidget::mousePressEvent(event);
}

void ColorPicker::keyPressEvent(QKeyEvent* event) {
    // From the parts that have no use for it.
    if (event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier &&
        !event->isAutoRepeat())
        d->sampler->startHeld(Qt::Key_Space);
    else
        QWidget::keyPressEvent(event);
}

} // namespace Kestrel::UI
