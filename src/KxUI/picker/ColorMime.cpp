#include <KxUI/picker/ColorMime_p.h>

#include <KxUI/picker/ColorSwatch.h>
#include <KxUI/picker/ColorText_p.h>
#include <KxUI/picker/SwatchPainting_p.h>

#include <QClipboard>
#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QWidget>

#include <algorithm>
#include <charconv>
#include <utility>

namespace Kestrel::UI {
namespace {

const QString LightFormat = QStringLiteral("application/x-kxui-color");
const QString NameFormat = QStringLiteral("application/x-kxui-color-name");
constexpr int LongestLight = 128;
constexpr int LongestName = 1024;
constexpr int DragSide = 24;

QPointer<QWidget> dragSource;

QByteArray lightBytes(const ColorValue& color) {
    QByteArray bytes;
    for (const float part : {color.red, color.green, color.blue, color.alpha}) {
        if (!bytes.isEmpty())
            bytes += ' ';
        bytes += QByteArray::number(static_cast<double>(part), 'g', 9);
    }
    return bytes;
}

std::optional<ColorValue> lightIn(const QByteArray& bytes) {
    if (bytes.size() > LongestLight)
        return {};
    const QList<QByteArray> parts = bytes.simplified().split(' ');
    if (parts.size() != 4)
        return {};
    ColorValue color;
    float* const numbers[]{&color.red, &color.green, &color.blue, &color.alpha};
    for (int i = 0; i < 4; ++i) {
        const char* const end = parts[i].constData() + parts[i].size();
        const auto [stop, error] = std::from_chars(parts[i].constData(), end, *numbers[i]);
        if (error != std::errc() || stop != end)
            return {};
    }
    if (!isFinite(color))
        return {};
    color.alpha = std::clamp(color.alpha, 0.0F, 1.0F);
    return color;
}

std::optional<ColorValue> screenColorIn(const QMimeData& data, const DisplayCall& display) {
    const auto color = qvariant_cast<QColor>(data.colorData());
    if (!color.isValid())
        return {};
    const QColor rgb = color.toRgb();
    return display.colorOf({static_cast<float>(rgb.redF()), static_cast<float>(rgb.greenF()),
                            static_cast<float>(rgb.blueF())},
                           static_cast<float>(rgb.alphaF()));
}

QPixmap dragPicture(const QColor& shown, double ratio) {
    QPixmap picture(qRound(DragSide * ratio), qRound(DragSide * ratio));
    picture.setDevicePixelRatio(ratio);
    QPainter painter(&picture);
    const QRectF area(0.0, 0.0, DragSide, DragSide);
    painter.fillRect(area, Qt::black);
    painter.fillRect(area.adjusted(1, 1, -1, -1), Qt::white);
    paintSwatch(painter, area.adjusted(2, 2, -2, -2), shown, ratio);
    return picture;
}

void runDrag(std::unique_ptr<QMimeData> data, const QColor& shown, double ratio) {
    // Not the widget's, which may be deleted before the drag is over.
    QPointer<QDrag> drag = new QDrag(qApp);
    drag->setMimeData(data.release());
    drag->setPixmap(dragPicture(shown, ratio));
    drag->setHotSpot(QPoint(-8, -8)); // the pointer does not hide what it carries
    drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction);
}

} // namespace

void (*runColorDrag)(std::unique_ptr<QMimeData>, const QColor&, double) = runDrag;

std::unique_ptr<QMimeData> colorMime(const ColorValue& color, const DisplayCall& display,
                                     const QString& name) {
    auto data = std::make_unique<QMimeData>();
    data->setData(LightFormat, lightBytes(color));
    data->setColorData(shownColor(color, display));
    data->setText(colorPlainText(color, display));
    if (!name.isEmpty())
        data->setData(NameFormat, name.toUtf8());
    return data;
}

std::optional<ColorValue> colorIn(const QMimeData* data, const DisplayCall& display, float alpha) {
    if (!data)
        return {};
    std::optional<ColorValue> color;
    if (data->hasFormat(LightFormat))
        color = lightIn(data->data(LightFormat));
    if (!color && data->hasColor())
        color = screenColorIn(*data, display);
    if (color || !data->hasText())
        return color;
    const ColorText text = readColorText(data->text(), display);
    if (text.problem != ColorText::None)
        return {};
    color = text.color;
    if (!text.hasAlpha)
        color->alpha = alpha;
    return color;
}

QString colorNameIn(const QMimeData* data) {
    return data ? QString::fromUtf8(data->data(NameFormat).left(LongestName)) : QString();
}

void copyColor(const ColorValue& color, const DisplayCall& display, const QString& name) {
    QGuiApplication::clipboard()->setMimeData(colorMime(color, display, name).release());
}

std::optional<ColorValue> copiedColor(const DisplayCall& display, float alpha) {
    return colorIn(QGuiApplication::clipboard()->mimeData(), display, alpha);
}

QString copiedColorName() {
    return colorNameIn(QGuiApplication::clipboard()->mimeData());
}

void dragColor(QWidget* source, const ColorValue& color, const DisplayCall& display,
               const QString& name) {
    dragSource = source;
    runColorDrag(colorMime(color, display, name), shownColor(color, display),
                 source->devicePixelRatioF());
    dragSource.clear();
}

const QWidget* colorDragSource() {
    return dragSource;
}

QString colorWords(const ColorValue& color, const DisplayCall& display, const QString& separator) {
    const ColorCode code = colorCode(color, display);
    QString words = code.isClipped ? QStringLiteral("\u2248 ") + code.text : code.text;
    if (const QString space = display.transform().name; !space.isEmpty())
        words += QStringLiteral(" (%1)").arg(space);
    const auto number = [](float part) {
        return QString::number(static_cast<double>(part), 'g', 4);
    };
    words += separator + ColorSwatch::tr("Red %1, green %2, blue %3")
                             .arg(number(color.red), number(color.green), number(color.blue));
    if (color.alpha != 1.0F)
        words += ColorSwatch::tr(", alpha %1").arg(number(color.alpha));
    return words;
}

} // namespace Kestrel::UI
