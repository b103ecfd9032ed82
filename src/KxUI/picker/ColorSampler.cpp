#include <KxUI/picker/ColorSampler_p.h>

#include <KxUI/kit/WindowSystem_p.h>
#include <KxUI/picker/SampleMagnifier_p.h>
#include <KxUI/picker/SwatchPainting_p.h>
#include <KxUI/picker/platform/ScreenColor_p.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPixmap>
#include <QScreen>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int MostSamples = 64; // in a row and in a column of a mean

// From one place to another, both included.
QRect areaBetween(const QPoint& a, const QPoint& b) {
    return {QPoint(std::min(a.x(), b.x()), std::min(a.y(), b.y())),
            QPoint(std::max(a.x(), b.x()), std::max(a.y(), b.y()))};
}

/** Adds up colours to their mean. */
class Mean {
public:
    void add(const float* rgb, float alpha) {
        m_sum[0] += static_cast<double>(rgb[0]);
        m_sum[1] += static_cast<double>(rgb[1]);
        m_sum[2] += static_cast<double>(rgb[2]);
        m_sum[3] += static_cast<double>(alpha);
        ++m_count;
    }

    std::optional<ColorValue> color() const {
        if (m_count == 0)
            return {};
        const auto part = [this](std::size_t i) { return static_cast<float>(m_sum[i] / m_count); };
        const ColorValue mean{part(0), part(1), part(2), part(3)};
        return isFinite(mean) ? std::optional(mean) : std::nullopt;
    }

private:
    std::array<double, 4> m_sum{};
    int m_count = 0;
};

int strideOf(int length) {
    return (length + MostSamples - 1) / MostSamples;
}

} // namespace

ColorSampler::ColorSampler(QWidget* owner)
    : QObject(owner)
    , m_owner(owner) {}

ColorSampler::~ColorSampler() {
    if (m_active)
        QGuiApplication::restoreOverrideCursor();
}

void ColorSampler::addSource(QWidget* where, Source source) {
    m_sources.erase(std::remove_if(m_sources.begin(), m_sources.end(),
                                   [where](const SourceOf& each) {
                                       return !each.where || each.where == where;
                                   }),
                    m_sources.end());
    if (where && source)
        m_sources.push_back({where, std::move(source)});
}

void ColorSampler::start() {
    if (m_active || !m_owner->isVisible())
        return;
    m_active = true;
    m_pressed.reset();
    m_magnifier = std::make_unique<SampleMagnifier>();
    m_magnifier->setPalette(m_owner->palette());
    QGuiApplication::setOverrideCursor(Qt::CrossCursor);
    qApp->installEventFilter(this);
    m_hasGrab = ScreenColor::current().canGrab() && grabMouse(m_owner);
    Q_EMIT activeChanged(true);
}

void ColorSampler::startHeld(int key) {
    if (m_active)
        return;
    m_heldKey = key;
    start();
}

void ColorSampler::stop() {
    if (!std::exchange(m_active, false))
        return;
    m_heldKey = 0;
    m_magnifier.reset();
    qApp->removeEventFilter(this);
    if (std::exchange(m_hasGrab, false))
        m_owner->releaseMouse();
    QGuiApplication::restoreOverrideCursor();
    const QPointer<ColorSampler> alive(this);
    Q_EMIT hoverEnded();
    if (alive && std::exchange(m_pressed, std::nullopt))
        Q_EMIT dragFinished();
    if (alive)
        Q_EMIT activeChanged(false);
}

bool ColorSampler::canAskDesktop() {
    const ScreenColor& screen = ScreenColor::current();
    return !screen.canGrab() && screen.canAsk();
}

void ColorSampler::askDesktop() {
    stop();
    ScreenColor::current().ask(this, [this](const std::optional<ScreenColor::Rgb>& rgb) {
        const std::optional<ColorValue> color = rgb ? m_display.colorOf(*rgb, 1.0F) : std::nullopt;
        if (!color)
            return;
        const QPointer<ColorSampler> alive(this);
        Q_EMIT dragStarted();
        if (alive)
            Q_EMIT sampled(*color);
        if (alive)
            Q_EMIT dragFinished();
    });
}

QString ColorSampler::hint() {
    if (ScreenColor::current().canGrab())
        return tr("Take a colour from anywhere on the screen (I)");
    return tr("Take a colour from the windows of this application (I); the desktop keeps those of "
              "others to itself");
}

const ColorSampler::Source* ColorSampler::sourceAt(const QWidget* widget) const {
    for (; widget; widget = widget->isWindow() ? nullptr : widget->parentWidget()) {
        for (const SourceOf& each : m_sources) {
            if (each.where == widget)
                return &each.source;
        }
    }
    return nullptr;
}

// What is seen in an area, of the window that `from` is in; null where nothing can be.
QImage ColorSampler::pixels(const QRect& area, const QPoint& from) const {
    QWidget* const widget = QApplication::widgetAt(from);
    if (!widget)
        return ScreenColor::current().grab(area);
    QWidget* const window = widget->window();
    const QRect inside(window->mapFromGlobal(area.topLeft()), area.size());
    return window->grab(inside).toImage();
}

std::optional<ColorValue> ColorSampler::meanOfSource(const Source& source,
                                                     const QRect& area) const {
    const Source kept = source; // adding another one moves it
    Mean mean;
    const int across = strideOf(area.width());
    const int down = strideOf(area.height());
    for (int y = area.top(); y <= area.bottom(); y += down) {
        for (int x = area.left(); x <= area.right(); x += across) {
            const std::optional<ColorValue> color = kept(QPoint(x, y));
            if (color && isFinite(*color))
                mean.add(&color->red, color->alpha);
        }
    }
    return mean.color();
}

std::optional<ColorValue> ColorSampler::meanOfPixels(const QImage& image) const {
    std::vector<float> light;
    const int across = strideOf(image.width());
    const int down = strideOf(image.height());
    for (int y = 0; y < image.height(); y += down) {
        for (int x = 0; x < image.width(); x += across) {
            const QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) == 0) // beside the window, or the screen
                continue;
            for (const int code : {qRed(pixel), qGreen(pixel), qBlue(pixel)})
                light.push_back(static_cast<float>(code) / 255.0F);
        }
    }
    const auto count = light.size() / 3;
    if (!m_display.fromDisplay(light.data(), static_cast<int>(count)))
        return {};
    Mean mean;
    for (std::size_t i = 0; i < count; ++i)
        mean.add(&light[3 * i], 1.0F);
    return mean.color();
}

std::optional<ColorValue> ColorSampler::meanOf(const QRect& area, const QPoint& from) const {
    if (const Source* const source = sourceAt(QApplication::widgetAt(from))) {
        if (const auto color = meanOfSource(*source, area))
            return color;
    }
    return meanOfPixels(pixels(area, from));
}

std::optional<ColorValue> ColorSampler::colorAt(const QPoint& global) const {
    return meanOf(QRect(global, QSize(1, 1)), global);
}

void ColorSampler::showMagnifier(const QPoint& global, const std::optional<ColorValue>& color) {
    const int reach = Magnified / 2;
    const QRect around(global - QPoint(reach, reach), QSize(Magnified, Magnified));
    QImage image = pixels(around, global);
    // Of a scaled screen the nearest pixels of the device.
    if (!image.isNull() && image.width() > Magnified)
        image = image.copy((image.width() - Magnified) / 2, (image.height() - Magnified) / 2,
                           Magnified, Magnified);
    image.setDevicePixelRatio(1.0);
    QString words = color ? QString() : tr("No colour can be taken here");
    if (color) {
        for (const float part : {color->red, color->green, color->blue})
            words += QString::number(static_cast<double>(part), 'g', 4) + QLatin1Char('\n');
    }
    m_magnifier->setContent(image, color ? shownColor(*color, m_display) : QColor(),
                            words.trimmed());
    m_magnifier->moveBeside(global, m_pressed.value_or(global));
    m_magnifier->show();
}

void ColorSampler::press(const QPoint& global) {
    m_pressed = global;
    m_isArea = false;
    Q_EMIT dragStarted();
}

void ColorSampler::move(const QPoint& global) {
    const QPointer<ColorSampler> alive(this);
    std::optional<ColorValue> color;
    if (m_pressed) {
        const QPoint way = global - *m_pressed;
        m_isArea = m_isArea || way.manhattanLength() >= QApplication::startDragDistance();
        if (m_isArea)
            color = meanOf(areaBetween(*m_pressed, global), *m_pressed);
        else
            color = colorAt(*m_pressed);
    } else {
        color = colorAt(global);
    }
    if (!alive || !m_active)
        return;
    showMagnifier(global, color);
    if (m_pressed && m_isArea && color)
        Q_EMIT sampled(*color);
    else if (!m_pressed && color)
        Q_EMIT hovered(*color);
    else if (!m_pressed)
        Q_EMIT hoverEnded();
}

void ColorSampler::release(const QPoint& global, bool goesOn) {
    const QPointer<ColorSampler> alive(this);
    const QPoint from = *m_pressed;
    const std::optional<ColorValue> color =
        m_isArea ? meanOf(areaBetween(from, global), from) : colorAt(from);
    if (alive && color)
        Q_EMIT sampled(*color);
    if (!alive || !std::exchange(m_pressed, std::nullopt))
        return;
    Q_EMIT dragFinished();
    if (alive && !goesOn && m_heldKey == 0)
        stop();
}

void ColorSampler::cancelDrag() {
    if (std::exchange(m_pressed, std::nullopt))
        Q_EMIT dragCancelled();
}

void ColorSampler::cancel() {
    const QPointer<ColorSampler> alive(this);
    cancelDrag();
    if (alive)
        stop();
}

bool ColorSampler::takesMouse(const QMouseEvent& event) {
    const QPoint global = event.globalPos();
    switch (event.type()) {
    case QEvent::MouseMove:
        move(global);
        return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (event.button() == Qt::LeftButton && !m_pressed)
            press(global);
        return true;
    default:
        // Not at its press: the release would go to whatever is below.
        if (event.button() == Qt::RightButton)
            cancel();
        else if (event.button() == Qt::LeftButton && m_pressed)
            release(global, event.modifiers().testFlag(Qt::ShiftModifier));
        return true;
    }
}

bool ColorSampler::takesKey(QKeyEvent& event) {
    const bool isHeld = m_heldKey != 0 && event.key() == m_heldKey;
    if (!isHeld && event.key() != Qt::Key_Escape)
        return false;
    event.accept();
    if (isHeld && event.type() == QEvent::KeyRelease && !event.isAutoRepeat())
        stop();
    else if (!isHeld && event.type() == QEvent::KeyPress)
        cancel();
    return true;
}

bool ColorSampler::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
        return takesMouse(*static_cast<QMouseEvent*>(event));
    case QEvent::ContextMenu:
        return true;
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return takesKey(*static_cast<QKeyEvent*>(event));
    case QEvent::ApplicationDeactivate:
        stop();
        return false;
    case QEvent::Hide:
        if (watched == m_owner)
            stop();
        return false;
    default:
        return false;
    }
}

} // namespace Kestrel::UI
