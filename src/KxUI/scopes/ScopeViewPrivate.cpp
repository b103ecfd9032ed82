#include <KxUI/scopes/ScopeView_p.h>

#include <KxUI/draw/PainterDrawingContext.h>
#include <KxUI/kit/ValueAccessible_p.h>

#include <QActionGroup>
#include <QKeyEvent>
#include <QLocale>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr double KeyZoom = 1.25;
constexpr double BrightnessStep = 0.5;
constexpr double FasterBins = 10;
constexpr double SmallLabel = 0.85; // of the widget's font

} // namespace

ScopeViewPrivate::ScopeViewPrivate() = default;
ScopeViewPrivate::~ScopeViewPrivate() = default;

void ScopeViewPrivate::setView(ScopeView* view) {
    q = view;
    surface = std::make_unique<DrawingSurface>(view, [view] { Q_EMIT view->drawingChanged(); });
}

QString ScopeViewPrivate::unitText(ScopeUnit unit) {
    switch (unit) {
    case ScopeUnit::Percent:
        return ScopeView::tr("Percent");
    case ScopeUnit::Ire:
        return ScopeView::tr("IRE");
    case ScopeUnit::Code8:
        return ScopeView::tr("8-bit codes");
    case ScopeUnit::Code10:
        return ScopeView::tr("10-bit codes");
    case ScopeUnit::Code12:
        return ScopeView::tr("12-bit codes");
    case ScopeUnit::Millivolt:
        return ScopeView::tr("Millivolts");
    case ScopeUnit::NitsSdr:
        return ScopeView::tr("Nits, SDR");
    case ScopeUnit::NitsPq:
        return ScopeView::tr("Nits, PQ");
    case ScopeUnit::NitsHlg:
        return ScopeView::tr("Nits, HLG");
    case ScopeUnit::Stops:
        return ScopeView::tr("Stops");
    case ScopeUnit::Value:
        break;
    }
    return ScopeView::tr("Values");
}

ScopeGeometry ScopeViewPrivate::geometry() const {
    return geometry(q->size(), q->devicePixelRatioF());
}

ScopeGeometry ScopeViewPrivate::geometry(const QSizeF& size, double ratio) const {
    return {size, margins(), viewport, isSquare(), ratio};
}

ToneCurve ScopeViewPrivate::toneCurve() const {
    ToneCurve curve;
    curve.kind = tone == ScopeView::LogTone ? ToneCurve::Logarithmic : ToneCurve::Linear;
    curve.brightness = brightness;
    if (!singlePixels)
        curve.least = 0;
    return curve;
}

std::shared_ptr<const ScopeResult> ScopeViewPrivate::result() const {
    static const auto none = std::make_shared<const ScopeResult>();
    return model ? model->result() : none;
}

std::shared_ptr<const ScopeResult> ScopeViewPrivate::shownReference() const {
    return model && showReference ? model->reference() : nullptr;
}

const ScopeEncoding& ScopeViewPrivate::encoding() const {
    static const ScopeEncoding standard;
    return model ? model->encoding() : standard;
}

QFont ScopeViewPrivate::labelFont() const {
    QFont font = q->font();
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * SmallLabel);
    return font;
}

QString ScopeViewPrivate::valueText(double value, bool chroma) const {
    return graticuleText(value, chroma, unit, encoding(), q->locale()) +
           QString::fromLatin1(scopeUnitSuffix(unit));
}

void ScopeViewPrivate::describe(ScopeReadout& readout) const {
    const QString count = ScopeView::tr("%1 px").arg(q->locale().toString(readout.count));
    readout.text = readout.channel.isEmpty()
                       ? ScopeView::tr("%1, %2").arg(readout.valueText, count)
                       : ScopeView::tr("%1 %2, %3").arg(readout.channel, readout.valueText, count);
}

void ScopeViewPrivate::paint(DrawingContext& context, const ScopeGeometry& geometry,
                             bool withCursor) {
    // The painter keeps the trace as a picture, so that a cursor costs next to nothing.
    if (withCursor && !surface->usesOpenGL()) {
        const QSize size = (geometry.bounds.size() * geometry.ratio).toSize();
        if (m_traceIsOld || m_trace.size() != size ||
            m_trace.devicePixelRatio() != geometry.ratio) {
            m_trace = QImage(size, QImage::Format_RGB32);
            m_trace.setDevicePixelRatio(geometry.ratio);
            m_trace.fill(colors.ground);
            QPainter painter(&m_trace);
            PainterDrawingContext trace(painter, geometry.bounds.size(), geometry.ratio);
            paintTrace(trace, geometry);
            m_traceIsOld = false;
        }
        context.image(geometry.bounds, m_trace);
    } else {
        context.fill(geometry.bounds, colors.ground);
        paintTrace(context, geometry);
    }
    paintBadges(context, geometry);
    if (!withCursor)
        return;
    context.setClip(geometry.plot);
    paintSelection(context, geometry);
    paintMarks(context, geometry);
    context.setClip(QRectF());
    paintCursor(context, geometry);
}

void ScopeViewPrivate::paintMarks(DrawingContext&, const ScopeGeometry&) {}

void ScopeViewPrivate::paintSelection(DrawingContext& context, const ScopeGeometry& geometry) {
    if (!drag.isSelecting() || drag.path().isEmpty())
        return;
    context.fill(QRectF(drag.path().first(), drag.path().last()).normalized() & geometry.plot,
                 colors.selection);
}

QStringList ScopeViewPrivate::badges() const {
    const auto counted = result();
    QStringList texts;
    if (!model || model->image().isEmpty())
        return {ScopeView::tr("No picture")};
    if (!counted->error.empty())
        return {ScopeView::tr("Transform failed: %1").arg(QString::fromStdString(counted->error))};
    if (counted->parts == 0)
        return {};
    if (counted->region.isEmpty())
        texts.append(ScopeView::tr("No pixels in the region"));
    std::uint64_t none = std::max(counted->vectors.nan, counted->solid.nan);
    for (const ChannelStatistics& channel : counted->statistics.channels)
        none = std::max(none, channel.nan);
    for (const auto& channel : counted->waveform.nan) {
        std::uint64_t sum = 0;
        for (const std::uint32_t each : channel)
            sum += each;
        none = std::max(none, sum);
    }
    if (none > 0)
        texts.append(ScopeView::tr("NaN %1").arg(q->locale().toString(quint64(none))));
    if (counted->proxy > 1)
        texts.append(ScopeView::tr("Proxy 1/%1").arg(counted->proxy));
    if (counted->rowStep > 1)
        texts.append(ScopeView::tr("1/%1 of rows").arg(counted->rowStep));
    return texts;
}

void ScopeViewPrivate::paintBadges(DrawingContext& context, const ScopeGeometry& geometry) const {
    const QStringList texts = badges();
    if (texts.isEmpty())
        return;
    const QRectF area = geometry.plot.adjusted(4, 2, -4, -2);
    const bool isNotice = !model || model->image().isEmpty() || !result()->error.empty();
    const int flags = isNotice ? Qt::AlignCenter : Qt::AlignRight | Qt::AlignTop;
    context.text(area, flags, texts.join(QStringLiteral("   ")), labelFont(),
                 isNotice && result()->error.empty() ? colors.text : colors.warning);
}

void ScopeViewPrivate::paintCursor(DrawingContext& context, const ScopeGeometry& geometry) const {
    if (!cursor)
        return;
    const ScopeReadout readout = readoutAt(*cursor);
    if (readout.isNull())
        return;
    const QFont font = labelFont();
    const QFontMetricsF metrics(font);
    const QSizeF size(metrics.horizontalAdvance(readout.text) + 12, metrics.height() + 4);
    const QPointF at = geometry.toWidget(*cursor);
    // Beside the cursor, where it hides none of what it speaks of.
    double x = at.x() + 12;
    if (x + size.width() > geometry.plot.right())
        x = at.x() - 12 - size.width();
    const double y = at.y() > geometry.plot.center().y()
                         ? geometry.plot.top() + 4
                         : geometry.plot.bottom() - 4 - size.height();
    const QRectF box(QPointF(std::max(x, geometry.plot.left()), y), size);
    if (cursorIsOfKeys) {
        context.line({at.x() - 6, at.y()}, {at.x() + 6, at.y()}, colors.cursor);
        context.line({at.x(), at.y() - 6}, {at.x(), at.y() + 6}, colors.cursor);
    }
    context.fill(box, QColor(0, 0, 0, 200));
    context.text(box, Qt::AlignCenter, readout.text, font, colors.text);
}

void ScopeViewPrivate::paintGraticule(DrawingContext& context, const QRectF& plot,
                                      const std::vector<GraticuleLine>& lines,
                                      bool vertical) const {
    const QFont font = labelFont();
    constexpr double Gap = 4;
    constexpr double Far = 200; // longer than any label
    for (const GraticuleLine& line : lines) {
        const bool isUser = line.weight == GraticuleLine::User;
        const bool isLimit = line.weight == GraticuleLine::Limit;
        QColor color = line.weight == GraticuleLine::Strong ? colors.strongLine : colors.line;
        if (isUser || isLimit)
            color = isLimit ? colors.limit : line.color.isValid() ? line.color : colors.user;
        const LineStroke stroke(color, 1,
                                isUser    ? Qt::DotLine
                                : isLimit ? Qt::DashLine
                                          : Qt::SolidLine);
        const double ratio = context.devicePixelRatio();
        if (vertical) {
            const double y = std::clamp(plot.bottom() - line.place * plot.height(), plot.top(),
                                        plot.bottom() - 1 / ratio);
            const double crisp = (std::floor(y * ratio) + 0.5) / ratio;
            context.line({plot.left(), crisp}, {plot.right(), crisp}, stroke);
            const QRectF room(plot.left() - Gap - Far, y - Far, Far, 2 * Far);
            context.text(room, Qt::AlignRight | Qt::AlignVCenter, line.text, font, colors.text);
        } else {
            const double x = std::clamp(plot.left() + line.place * plot.width(), plot.left(),
                                        plot.right() - 1 / ratio);
            const double crisp = (std::floor(x * ratio) + 0.5) / ratio;
            context.line({crisp, plot.top()}, {crisp, plot.bottom()}, stroke);
            const QRectF room(x - Far, plot.bottom() + Gap / 2, 2 * Far, Far);
            context.text(room, Qt::AlignHCenter | Qt::AlignTop, line.text, font, colors.text);
        }
    }
}

void ScopeViewPrivate::askModel() {
    if (!model)
        return;
    const QWidget* const window = q->window();
    const bool isSeen = q->isVisible() && !(window && window->isMinimized());
    model->require(q, isSeen ? parts() : ScopeModel::Parts(), waveformRange(), vectorRange());
}

void ScopeViewPrivate::changeTrace() {
    m_traceIsOld = true;
    q->update();
}

// Whether what is drawn of counts is another one. A film's next picture is not, until it is counted.
bool ScopeViewPrivate::isTraceOf(ScopeModel::Changes changes) {
    const ScopeImage image = model ? model->image() : ScopeImage();
    const bool isOtherKind = m_hadImage == image.isEmpty() || m_layout != image.layout;
    m_hadImage = !image.isEmpty();
    m_layout = image.layout;
    return changes & (ScopeModel::Result | ScopeModel::Reference | ScopeModel::Encoding) ||
           isOtherKind;
}

void ScopeViewPrivate::modelChanged(ScopeModel::Changes changes) {
    if (isTraceOf(changes)) {
        resultChanged();
        changeTrace();
    } else {
        q->update();
    }
    if (!cursor || !(changes & ScopeModel::Result))
        return;
    const ScopeReadout readout = readoutAt(*cursor);
    tellAccessibleValue(q, readout.text);
    Q_EMIT q->hovered(readout);
}

void ScopeViewPrivate::modelGone() {
    resultChanged();
    changeTrace();
}

void ScopeViewPrivate::setViewport(const ScopeViewport& wanted) {
    if (viewport == wanted)
        return;
    viewport = wanted;
    askModel();
    changeTrace();
    Q_EMIT q->viewChanged();
}

void ScopeViewPrivate::zoomAbout(const QPointF& uv, double factor) {
    setViewport(viewport.zoomed(uv, factor, zooms()));
}

void ScopeViewPrivate::setCursor(const std::optional<QPointF>& uv) {
    const bool had = cursor.has_value();
    cursor = uv;
    q->update();
    const ScopeReadout readout = uv ? readoutAt(*uv) : ScopeReadout();
    if (!readout.isNull()) {
        tellAccessibleValue(q, readout.text);
        Q_EMIT q->hovered(readout);
    } else if (had) {
        Q_EMIT q->hoverLeft();
    }
}

void ScopeViewPrivate::execute(const ScopeCommand& command) {
    const ScopeGeometry where = geometry();
    const QPointer<ScopeView> guard(q);
    switch (command.kind) {
    case ScopeCommand::Nothing:
        break;
    case ScopeCommand::Click:
        if (drag.modifiers() & Qt::ControlModifier)
            requestPixel(where.fromWidget(command.to));
        else
            click(where, command.to);
        break;
    case ScopeCommand::Turn:
        turn(command.to - command.from);
        break;
    case ScopeCommand::BeginSelect:
        m_isEditing = true;
        m_before = model ? model->selection() : ScopeSelection();
        Q_EMIT q->editStarted();
        break;
    case ScopeCommand::Select: {
        QVector<QPointF> path;
        for (const QPointF& each : drag.path())
            path.append(where.fromWidget(each));
        select(selectionOf(where.fromWidget(command.from), where.fromWidget(command.to), path),
               false);
        break;
    }
    case ScopeCommand::EndSelect:
        m_isEditing = false;
        q->update();
        Q_EMIT q->editFinished(true);
        break;
    case ScopeCommand::CancelSelect:
        m_isEditing = false;
        select(m_before, false);
        if (guard)
            Q_EMIT q->editFinished(false);
        break;
    case ScopeCommand::Pan:
        setViewport(
            viewport.moved(panned(where.fromWidget(command.from) - where.fromWidget(command.to))));
        break;
    }
}

void ScopeViewPrivate::select(const ScopeSelection& selection, bool asWholeEdit) {
    const QPointer<ScopeView> guard(q);
    if (asWholeEdit)
        Q_EMIT q->editStarted();
    if (guard && model)
        model->setSelection(selection);
    if (guard)
        q->update();
    if (guard)
        Q_EMIT q->selectionEdited(selection);
    if (guard && asWholeEdit)
        Q_EMIT q->editFinished(true);
}

QRect ScopeViewPrivate::pixelsAt(const QPointF&) const {
    return {};
}

bool ScopeViewPrivate::click(const ScopeGeometry&, const QPointF&) {
    return false;
}

ScopeSelection ScopeViewPrivate::binAt(const QPointF& uv) const {
    const QPointF half(step().width() / 2, step().height() / 2);
    return selectionOf(uv - half, uv + half, {uv - half, uv + half});
}

void ScopeViewPrivate::requestPixel(const QPointF& uv) {
    if (model && !readoutAt(uv).isNull())
        model->find(q, binAt(uv), pixelsAt(uv));
}

void ScopeViewPrivate::moveCursor(const QPointF& bins) {
    const QSizeF bin = step();
    QPointF at = cursor.value_or(QPointF(0.5, 0.5));
    if (cursor)
        at += QPointF(bins.x() * bin.width(), bins.y() * bin.height());
    cursorIsOfKeys = true;
    const ScopeViewport& seen = viewport;
    setCursor(QPointF(std::clamp(at.x(), seen.left, seen.left + seen.width),
                      std::clamp(at.y(), seen.bottom, seen.bottom + seen.height)));
}

void ScopeViewPrivate::escape() {
    if (drag.isActive())
        execute(drag.cancel());
    else if (model && model->selection().kind != ScopeSelection::Kind::Nothing)
        select(ScopeSelection(), true);
    else
        setCursor(std::nullopt);
}

bool ScopeViewPrivate::pressKey(const QKeyEvent& event) {
    if (isMoreKey(event)) {
        pressMoreKey(event);
        return true;
    }
    const double bins = event.modifiers() & Qt::ShiftModifier ? FasterBins : 1;
    switch (event.key()) {
    case Qt::Key_Left:
        moveCursor({-bins, 0});
        return true;
    case Qt::Key_Right:
        moveCursor({bins, 0});
        return true;
    case Qt::Key_Up:
        moveCursor({0, bins});
        return true;
    case Qt::Key_Down:
        moveCursor({0, -bins});
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (cursor)
            select(binAt(*cursor), true);
        return true;
    case Qt::Key_Escape:
        escape();
        return true;
    default:
        return shortcut(event);
    }
}

bool ScopeViewPrivate::shortcut(const QKeyEvent& event) {
    const QPointF middle(viewport.left + viewport.width / 2, viewport.bottom + viewport.height / 2);
    switch (event.key()) {
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomAbout(cursor.value_or(middle), KeyZoom);
        return true;
    case Qt::Key_Minus:
        zoomAbout(cursor.value_or(middle), 1 / KeyZoom);
        return true;
    case Qt::Key_0:
        q->resetView();
        return true;
    case Qt::Key_B:
        q->setBrightness(brightness + (event.modifiers() & Qt::ShiftModifier ? -BrightnessStep
                                                                             : BrightnessStep));
        return true;
    case Qt::Key_U:
        q->setUnit(ScopeUnit((int(unit) + 1) % ScopeUnitCount));
        return true;
    case Qt::Key_H:
        if (model && model->reference())
            model->clearReference();
        else if (model)
            model->hold();
        return true;
    case Qt::Key_P:
        if (cursor)
            requestPixel(*cursor);
        return true;
    default:
        return false;
    }
}

} // namespace Kestrel::UI
