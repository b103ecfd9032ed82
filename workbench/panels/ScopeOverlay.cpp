#include "panels/ScopeOverlay.h"

#include "panels/ViewerCanvas.h"
#include "play/ScopeFeed.h"

#include <KxUI/style/ApplicationStyle.h>

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace Kestrel::Workbench {

namespace {

constexpr int fasterKeys = 10;
constexpr double gripSize = 7.0;
constexpr double markRadius = 9.0;
const QColor shade(0, 0, 0, 150);
const QColor line(255, 214, 92);

bool isArrow(int key) {
    return key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Up || key == Qt::Key_Down;
}

/** Whether the overlay acts on the key before the window's shortcuts do. */
bool isOwnKey(const QKeyEvent& event) {
    const auto others = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier);
    if (isArrow(event.key()))
        return others == Qt::NoModifier || others == Qt::ControlModifier;
    constexpr int keys[] = {Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_Escape, Qt::Key_Return,
                            Qt::Key_Enter};
    return others == Qt::NoModifier &&
           std::find(std::begin(keys), std::end(keys), event.key()) != std::end(keys);
}

Qt::CursorShape shapeOf(int edges) {
    switch (edges) {
    case LeftEdge:
    case RightEdge:
        return Qt::SizeHorCursor;
    case TopEdge:
    case BottomEdge:
        return Qt::SizeVerCursor;
    case LeftEdge | TopEdge:
    case RightEdge | BottomEdge:
        return Qt::SizeFDiagCursor;
    case RightEdge | TopEdge:
    case LeftEdge | BottomEdge:
        return Qt::SizeBDiagCursor;
    case AllEdges:
        return Qt::SizeAllCursor;
    default:
        return Qt::CrossCursor;
    }
}

/** A region to begin with. */
QRect middleOf(const QSize& picture) {
    const QSize half(std::max(picture.width() / 2, 1), std::max(picture.height() / 2, 1));
    return {QPoint((picture.width() - half.width()) / 2, (picture.height() - half.height()) / 2),
            half};
}

/** A light line that is seen on any picture. */
template <typename Shape>
void stroke(QPainter& painter, const Shape& shape, const QColor& color) {
    painter.setPen(QPen(shade, 3));
    painter.drawPath(shape);
    painter.setPen(QPen(color, 1));
    painter.drawPath(shape);
}

QPainterPath boxPath(const QRectF& box) {
    QPainterPath path;
    path.addRect(box);
    return path;
}

} // namespace

ScopeOverlay::ScopeOverlay(ScopeFeed* feed, ViewerCanvas* canvas)
    : QWidget(canvas)
    , m_feed(feed)
    , m_canvas(canvas) {
    setObjectName(QStringLiteral("ScopeOverlay"));
    setAccessibleName(tr("Region of the scopes"));
    setMouseTracking(true);
    setFocusPolicy(Qt::TabFocus);
    setGeometry(canvas->rect());
    canvas->installEventFilter(this);
    connect(feed->model(), &UI::ScopeModel::changed, this, &ScopeOverlay::followModel);
    connect(feed, &ScopeFeed::watchedChanged, this, [this](bool watched) {
        setVisible(watched);
        makeMask();
        describe();
    });
    connect(feed, &ScopeFeed::markChanged, this, &ScopeOverlay::describe);
    connect(feed, &ScopeFeed::regionEditAsked, this, &ScopeOverlay::editByKeys);
    connect(&m_mask, &SelectionMask::changed, this, [this] { update(); });
    setVisible(feed->isWatched());
    describe();
}

QRect ScopeOverlay::region() const {
    return m_feed->model()->region();
}

PicturePlace ScopeOverlay::place() const {
    return {m_canvas->pictureRect(), m_feed->frameSize()};
}

bool ScopeOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_canvas && event->type() == QEvent::Resize) {
        setGeometry(m_canvas->rect());
        makeMask();
    }
    // The keyboard is elsewhere while the mouse drags.
    const bool isKey =
        event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress;
    if (isKey && m_drag.isPressed() && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        event->accept();
        if (event->type() == QEvent::KeyPress)
            cancelEdit();
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

bool ScopeOverlay::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isOwnKey(*static_cast<QKeyEvent*>(event)))
        event->accept();
    return QWidget::event(event);
}

void ScopeOverlay::followModel(UI::ScopeModel::Changes changes) {
    using Model = UI::ScopeModel;
    if (changes & (Model::Image | Model::Encoding | Model::Selection))
        makeMask();
    if (changes & Model::Region)
        describe();
}

void ScopeOverlay::makeMask() {
    const UI::ScopeModel* model = m_feed->model();
    const QSize shown = (m_canvas->pictureRect().size() * devicePixelRatioF()).toSize();
    if (!isVisible() || model->image().isEmpty() ||
        model->selection().kind == UI::ScopeSelection::Kind::Nothing)
        m_mask.clear();
    else
        m_mask.make({model->image(), model->encoding(), model->selection(), shown});
}

/** For who cannot see it. */
void ScopeOverlay::describe() {
    const QRect box = region();
    QString text = box.isNull() ? tr("The whole picture")
                                : tr("%1 \u00d7 %2 pixels from %3, %4")
                                      .arg(box.width())
                                      .arg(box.height())
                                      .arg(box.x())
                                      .arg(box.y());
    if (const auto mark = m_feed->mark())
        text += tr("; marked pixel %1, %2").arg(mark->x()).arg(mark->y());
    setAccessibleDescription(text);
    update();
}

// ---- Edits.

void ScopeOverlay::edit(const QRect& region) {
    const QPointer<ScopeOverlay> guard(this);
    if (!m_isEditing) {
        m_isEditing = true;
        m_before = this->region();
        emit editStarted();
    }
    if (!guard || region == this->region())
        return;
    m_feed->model()->setRegion(region);
    if (guard)
        emit regionEdited(region);
}

void ScopeOverlay::finish(bool accepted) {
    if (!m_isEditing)
        return;
    const QPointer<ScopeOverlay> guard(this);
    if (!accepted)
        edit(m_before);
    if (!guard)
        return;
    m_isEditing = false;
    emit editFinished(accepted);
}

void ScopeOverlay::editAtOnce(const QRect& region) {
    const QPointer<ScopeOverlay> guard(this);
    edit(region);
    if (guard)
        finish(true);
}

void ScopeOverlay::cancelEdit() {
    endDrag();
    finish(false);
}

void ScopeOverlay::editByKeys() {
    if (!isVisible() || place().isEmpty())
        return;
    window()->activateWindow();
    setFocus(Qt::OtherFocusReason);
    if (region().isNull())
        editAtOnce(middleOf(m_feed->frameSize()));
}

// ---- Mouse.

void ScopeOverlay::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton && m_drag.isPressed())
        return cancelEdit();
    if (event->button() != Qt::LeftButton || place().isEmpty())
        return event->ignore();
    m_drag.press(place(), region(), event->localPos());
    qApp->installEventFilter(this);
}

bool ScopeOverlay::endDrag() {
    qApp->removeEventFilter(this);
    return m_drag.release();
}

void ScopeOverlay::mouseMoveEvent(QMouseEvent* event) {
    // The viewer tells of the pixel below the pointer as ever.
    event->ignore();
    if (!m_drag.isPressed())
        return showCursor(event->localPos());
    if (const auto moved = m_drag.move(place(), event->localPos()))
        edit(*moved);
}

void ScopeOverlay::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    if (!m_drag.isPressed())
        return;
    if (endDrag())
        finish(true);
    else
        m_feed->clearMark();
}

void ScopeOverlay::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && !region().isNull())
        editAtOnce({});
    else
        event->ignore();
}

void ScopeOverlay::leaveEvent(QEvent*) {
    m_isHovered = false;
    update();
}

void ScopeOverlay::showCursor(const QPointF& position) {
    const int edges = regionEdgesAt(place(), region(), position);
    const bool inPicture = place().target.contains(position);
    setCursor(inPicture || edges != 0 ? shapeOf(edges) : Qt::ArrowCursor);
    if (m_isHovered == (edges != 0))
        return;
    m_isHovered = edges != 0;
    update();
}

// ---- Keys.

void ScopeOverlay::keyPressEvent(QKeyEvent* event) {
    const bool begins = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isOwnKey(*event) || place().isEmpty()) {
        QWidget::keyPressEvent(event);
    } else if (isArrow(event->key())) {
        pressArrow(*event);
    } else if (event->key() == Qt::Key_Escape) {
        escape();
    } else if (begins && region().isNull()) {
        editAtOnce(middleOf(m_feed->frameSize()));
    } else if (!begins && !region().isNull()) {
        editAtOnce({});
    }
}

void ScopeOverlay::pressArrow(const QKeyEvent& event) {
    const int step = event.modifiers() & Qt::ShiftModifier ? fasterKeys : 1;
    const int across = int(event.key() == Qt::Key_Right) - int(event.key() == Qt::Key_Left);
    const int down = int(event.key() == Qt::Key_Down) - int(event.key() == Qt::Key_Up);
    const bool resizes = event.modifiers() & Qt::ControlModifier;
    const QSize picture = m_feed->frameSize();
    const QRect start = region().isNull() ? middleOf(picture) : region();
    edit(movedRegion(start, resizes ? RightEdge | BottomEdge : AllEdges,
                     QPoint(across, down) * step, picture));
}

void ScopeOverlay::keyReleaseEvent(QKeyEvent* event) {
    if (!isArrow(event->key()))
        return QWidget::keyReleaseEvent(event);
    if (!event->isAutoRepeat() && !m_drag.isPressed())
        finish(true);
}

void ScopeOverlay::escape() {
    if (m_isEditing || m_drag.isPressed())
        cancelEdit();
    else if (m_feed->mark())
        m_feed->clearMark();
    else
        clearFocus();
}

void ScopeOverlay::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void ScopeOverlay::focusOutEvent(QFocusEvent* event) {
    const QPointer<ScopeOverlay> guard(this);
    endDrag();
    finish(true);
    if (guard)
        QWidget::focusOutEvent(event);
    if (guard)
        update();
}

void ScopeOverlay::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    endDrag();
    finish(true);
}

// ---- Painting.

void ScopeOverlay::paintEvent(QPaintEvent*) {
    const PicturePlace where = place();
    if (where.isEmpty())
        return;
    QPainter painter(this);
    if (!m_mask.image().isNull()) {
        painter.save();
        if (!region().isNull())
            painter.setClipRect(where.toWidget(region()));
        painter.drawImage(where.target, m_mask.image());
        painter.restore();
    }
    painter.setRenderHint(QPainter::Antialiasing);
    if (!region().isNull())
        paintRegion(painter, where);
    if (m_feed->mark())
        paintMark(painter, where);
    if (!hasFocus())
        return;
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(UI::ApplicationStyle::accentsOf(palette()).focus, 2));
    painter.drawRect(where.target.adjusted(1, 1, -1, -1));
}

void ScopeOverlay::paintRegion(QPainter& painter, const PicturePlace& place) const {
    const QRectF exact = place.toWidget(region());
    const QRectF box(std::floor(exact.x()) + 0.5, std::floor(exact.y()) + 0.5,
                     std::round(exact.width()), std::round(exact.height()));
    stroke(painter, boxPath(box), line);
    const bool showsGrips = m_isHovered || m_isEditing || hasFocus();
    if (!showsGrips || box.width() < 3 * gripSize || box.height() < 3 * gripSize)
        return;
    painter.setPen(QPen(shade, 1));
    painter.setBrush(line);
    const QPointF middle = box.center();
    for (const double x : {box.left(), middle.x(), box.right()}) {
        for (const double y : {box.top(), middle.y(), box.bottom()}) {
            if (QPointF(x, y) != middle)
                painter.drawRect(QRectF(x - gripSize / 2, y - gripSize / 2, gripSize, gripSize));
        }
    }
    painter.setBrush(Qt::NoBrush);
}

void ScopeOverlay::paintMark(QPainter& painter, const PicturePlace& place) const {
    const QPointF at = place.toWidget(QRect(*m_feed->mark(), QSize(1, 1))).center();
    QPainterPath path;
    path.addEllipse(at, markRadius, markRadius);
    for (const QPointF way : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
        path.moveTo(at + way * markRadius * 0.6);
        path.lineTo(at + way * markRadius * 1.6);
    }
    painter.setBrush(Qt::NoBrush);
    stroke(painter, path, Qt::white);
}

} // namespace Kestrel::Workbench
