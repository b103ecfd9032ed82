#include "panels/CurveView.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QFontInfo>
#include <QLocale>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace Kestrel::Workbench {
namespace {

constexpr int NominalSize = 240;
constexpr int SmallestSize = 112;
constexpr double KnotRadius = 4.0;

QString coordinates(const UI::Knot& knot) {
    const QLocale locale;
    return CurveView::tr("x %1  y %2")
        .arg(locale.toString(double(knot.x), 'f', 3), locale.toString(double(knot.y), 'f', 3));
}

QColor faint(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

QString valueText(const UI::Curve& curve) {
    const int selected = selectedKnot(curve);
    return selected < 0 ? CurveView::tr("%n knots", nullptr, curve.numKnots())
                        : CurveView::tr("Knot %1 of %2, %3")
                              .arg(selected + 1)
                              .arg(curve.numKnots())
                              .arg(coordinates(curve.knot(selected)));
}

/** Tells the selected knot as the view's value. */
class CurveViewAccessible : public QAccessibleWidget {
public:
    explicit CurveViewAccessible(CurveView* view)
        : QAccessibleWidget(view, QAccessible::Graphic) {}

    static QAccessibleInterface* create(const QString& className, QObject* object) {
        auto* view = className == QLatin1String(CurveView::staticMetaObject.className())
                         ? qobject_cast<CurveView*>(object)
                         : nullptr;
        return view ? new CurveViewAccessible(view) : nullptr;
    }

    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Value)
            return QAccessibleWidget::text(kind);
        return valueText(static_cast<CurveView*>(object())->curve());
    }
};

} // namespace

CurveView::CurveView(QWidget* parent)
    : QWidget(parent)
    , m_geometry(CurveViewGeometry::of(size())) {
    static const bool accessible = [] {
        qRegisterMetaType<UI::Curve>("Kestrel::UI::Curve");
        QAccessible::installFactory(CurveViewAccessible::create);
        return true;
    }();
    Q_UNUSED(accessible)
    setAccessibleName(tr("Curve"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    showCurve(m_curve);
}

CurveView::~CurveView() = default;

void CurveView::setCurve(const UI::Curve& curve) {
    if (curve == m_curve && curve.maxKnots() == m_curve.maxKnots())
        return;
    m_drag.reset();
    m_hovered = -1;
    m_notice.clear();
    showCurve(curve);
}

void CurveView::setColor(const QColor& color) {
    m_color = color;
    update();
}

void CurveView::setBackdrop(std::vector<Backdrop> curves) {
    m_backdrop = std::move(curves);
    rebuildBackdrop();
    update();
}

QSize CurveView::sizeHint() const {
    return {NominalSize, NominalSize};
}

QSize CurveView::minimumSizeHint() const {
    return {SmallestSize, SmallestSize};
}

// Keys that the window would take for its own.
bool CurveView::isOwnKey(const QKeyEvent& event) const {
    if ((event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) != 0)
        return false;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
    case Qt::Key_Insert:
        return true;
    case Qt::Key_Escape:
        return m_editing;
    default:
        return false;
    }
}

bool CurveView::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isOwnKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void CurveView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    update();
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        finishDrag();
}

void CurveView::contextMenuEvent(QContextMenuEvent* event) {
    if (m_drag)
        return;
    if (event->reason() == QContextMenuEvent::Mouse)
        select(m_geometry.knotAt(m_curve, event->pos()));
    const int selected = selectedKnot(m_curve);
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* remove = menu->addAction(tr("Delete Knot"), this, &CurveView::deleteSelected);
    remove->setEnabled(selected >= 0 && m_curve.numKnots() > 2);
    QAction* reset =
        menu->addAction(tr("Reset Knot"), this, [this] { resetKnot(selectedKnot(m_curve)); });
    reset->setEnabled(selected >= 0);
    menu->addSeparator();
    menu->addAction(tr("Reset Curve"), this, [this] {
        editOnce(UI::Curve(static_cast<unsigned int>(m_curve.maxKnots())), tr("reset curve"));
    });
    const QPoint atKnot = m_geometry.positionOf(m_curve.knot(selected)).toPoint();
    menu->popup(event->reason() == QContextMenuEvent::Mouse ? event->globalPos()
                                                            : mapToGlobal(atKnot));
}

void CurveView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason)
        select(0);
    else if (event->reason() == Qt::BacktabFocusReason)
        select(m_curve.numKnots() - 1);
}

void CurveView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    if (!m_drag || event->reason() == Qt::PopupFocusReason ||
        event->reason() == Qt::ActiveWindowFocusReason)
        finishDrag();
}

bool CurveView::focusNextPrevChild(bool next) {
    const int selected = selectedKnot(m_curve);
    const int wanted = next ? selected + 1 : selected - 1;
    if (m_drag || wanted < 0 || wanted >= m_curve.numKnots())
        return QWidget::focusNextPrevChild(next);
    select(wanted);
    return true;
}

void CurveView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    finishDrag();
}

void CurveView::keyPressEvent(QKeyEvent* event) {
    m_notice.clear();
    if (m_editing && event->key() == Qt::Key_Escape)
        return cancelEdit();
    if (m_drag)
        return;
    const double step = event->modifiers().testFlag(Qt::ShiftModifier) ? 0.1 : 0.01;
    const int selected = selectedKnot(m_curve);
    const auto nudge = [&](double x, double y) {
        UI::Curve curve = m_curve;
        const UI::Knot knot = curve.knot(selected);
        moveKnot(curve, selected, {double(knot.x) + x, double(knot.y) + y});
        if (m_heldKey != event->key())
            finishEdit();
        m_heldKey = event->key();
        edit(curve, tr("move knot"));
    };
    if (event->key() == Qt::Key_Insert)
        return insertBehindSelected();
    if (selected >= 0) {
        switch (event->key()) {
        case Qt::Key_Left:
            return nudge(-step, 0.0);
        case Qt::Key_Right:
            return nudge(step, 0.0);
        case Qt::Key_Up:
            return nudge(0.0, step);
        case Qt::Key_Down:
            return nudge(0.0, -step);
        case Qt::Key_Home:
            return resetKnot(selected);
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            return deleteSelected();
        default:
            break;
        }
    }
    QWidget::keyPressEvent(event);
}

void CurveView::keyReleaseEvent(QKeyEvent* event) {
    QWidget::keyReleaseEvent(event);
    if (!event->isAutoRepeat() && event->key() == m_heldKey && !m_drag)
        finishEdit();
}

void CurveView::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    m_notice.clear();
    hover(-1);
    update();
}

void CurveView::mouseDoubleClickEvent(QMouseEvent* event) {
    const int index = m_geometry.knotAt(m_curve, event->localPos());
    // The knot that the first of the two clicks added stays where the user wanted it.
    if (event->button() != Qt::LeftButton || index < 0 || m_addedByPress)
        mousePressEvent(event);
    else
        resetKnot(index);
}

void CurveView::mouseMoveEvent(QMouseEvent* event) {
    if (m_drag && !(event->buttons() & Qt::LeftButton))
        finishDrag(); // the release went to somebody else
    else if (m_drag)
        edit(m_drag->curveAt(m_geometry, event->localPos()), m_editText);
    else
        hover(m_geometry.knotAt(m_curve, event->localPos()));
}

void CurveView::mousePressEvent(QMouseEvent* event) {
    m_notice.clear();
    if (event->button() != Qt::LeftButton || m_drag) {
        if (m_drag && event->button() == Qt::RightButton)
            cancelEdit();
        update();
        return;
    }
    finishEdit(); // of a key that is held
    const QPointF position = event->localPos();
    const int index = m_geometry.knotAt(m_curve, position);
    m_addedByPress = index < 0;
    if (index >= 0) {
        select(index);
        startDrag(index, position, tr("move knot"));
    } else if (m_geometry.plot.contains(position)) {
        QPointF point = m_geometry.toCurve(position);
        if (m_geometry.isOnLine(m_curve, position))
            point.setY(double(m_curve.valueAt(float(point.x()))));
        const QPointer<CurveView> self(this);
        const int added = addAt(point);
        if (self && added >= 0)
            startDrag(added, position, tr("add knot"));
    } else {
        select(-1);
    }
}

void CurveView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        finishDrag();
}

void CurveView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (!isEnabled())
        painter.setOpacity(0.4);
    paintGrid(painter);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(rect().adjusted(1, 1, -1, -1));
    for (const Line& line : m_backdropLines) {
        painter.setPen(QPen(faint(line.color, 0.55), 1.0));
        painter.drawPolyline(line.points);
    }
    painter.setPen(QPen(lineColor(), 2.0));
    painter.drawPolyline(m_line);
    paintKnots(painter);
    paintReadout(painter);
    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.75, 0.75, -0.75, -0.75), 3.0, 3.0);
    }
}

void CurveView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    m_geometry = CurveViewGeometry::of(size());
    m_line = m_geometry.line(m_curve);
    rebuildBackdrop();
}

void CurveView::showCurve(const UI::Curve& curve) {
    m_curve = curve;
    if (m_hovered >= curve.numKnots())
        m_hovered = -1;
    m_line = m_geometry.line(curve);
    update();
    if (QAccessible::isActive()) {
        QAccessibleValueChangeEvent event(this, valueText(curve));
        QAccessible::updateAccessibility(&event);
    }
}

void CurveView::select(int index) {
    if (index == selectedKnot(m_curve))
        return;
    UI::Curve curve = m_curve;
    selectKnot(curve, index);
    showCurve(curve);
}

void CurveView::hover(int index) {
    setCursor(index >= 0 ? Qt::SizeAllCursor : Qt::CrossCursor);
    if (std::exchange(m_hovered, index) != index)
        update();
}

// A change by the user. False when somebody who was told deleted the view.
bool CurveView::edit(const UI::Curve& curve, const QString& what) {
    if (curve == m_curve)
        return true;
    const QPointer<CurveView> self(this);
    if (!std::exchange(m_editing, true)) {
        m_beforeEdit = m_curve;
        emit editStarted();
    }
    if (!self || !m_editing)
        return self;
    m_editText = what;
    showCurve(curve);
    emit curveEdited(curve, what);
    return self;
}

void CurveView::editOnce(const UI::Curve& curve, const QString& what) {
    finishEdit();
    if (edit(curve, what))
        finishEdit();
}

void CurveView::finishEdit() {
    m_heldKey = 0;
    if (std::exchange(m_editing, false))
        emit editFinished(true);
}

void CurveView::cancelEdit() {
    if (!m_editing)
        return;
    m_drag.reset();
    m_heldKey = 0;
    const QPointer<CurveView> self(this);
    edit(m_beforeEdit, m_editText);
    if (self && std::exchange(m_editing, false))
        emit editFinished(false);
}

// The new knot's index; -1 where there is none to drag.
int CurveView::addAt(const QPointF& point) {
    UI::Curve curve = m_curve;
    const int index = addKnot(curve, point);
    if (index >= 0)
        return edit(curve, tr("add knot")) && m_curve == curve ? index : -1;
    if (curve.numKnots() >= curve.maxKnots())
        m_notice = tr("%n knots at most", nullptr, curve.maxKnots());
    update();
    return -1;
}

void CurveView::deleteSelected() {
    UI::Curve curve = m_curve;
    if (removeKnot(curve, selectedKnot(curve)))
        editOnce(curve, tr("delete knot"));
}

// In the middle of the gap behind the selected knot, or before it where it is the last.
void CurveView::insertBehindSelected() {
    const int left = std::max(0, std::min(selectedKnot(m_curve), m_curve.numKnots() - 2));
    const float x = (m_curve.knot(left).x + m_curve.knot(left + 1).x) / 2.0F;
    const QPointer<CurveView> self(this);
    addAt({double(x), double(m_curve.valueAt(x))});
    if (self)
        finishEdit();
}

void CurveView::resetKnot(int index) {
    UI::Curve curve = m_curve;
    selectKnot(curve, index);
    moveKnot(curve, index, {double(curve.knot(index).x), double(curve.knot(index).x)});
    editOnce(curve, tr("reset knot"));
}

void CurveView::startDrag(int index, const QPointF& position, const QString& what) {
    m_drag = CurveDrag{m_curve, index, position - m_geometry.positionOf(m_curve.knot(index))};
    m_editText = what;
    update();
}

// Also where `setCurve` ended the drag itself: who saw edits sees the end of them.
void CurveView::finishDrag() {
    m_drag.reset();
    update();
    finishEdit();
}

void CurveView::rebuildBackdrop() {
    m_backdropLines.clear();
    for (const Backdrop& each : m_backdrop)
        m_backdropLines.push_back({m_geometry.line(each.curve), each.color});
}

QColor CurveView::lineColor() const {
    return m_color.isValid() ? m_color : palette().color(QPalette::Text);
}

// What the user points at comes before what is selected.
QString CurveView::readout() const {
    if (!m_notice.isEmpty())
        return m_notice;
    const int shown = m_hovered >= 0 && !m_drag ? m_hovered : selectedKnot(m_curve);
    return shown >= 0 ? coordinates(m_curve.knot(shown)) : QString();
}

void CurveView::paintGrid(QPainter& painter) const {
    const QRectF& plot = m_geometry.plot;
    const QColor ink = palette().color(QPalette::Text);
    painter.fillRect(rect(), palette().base());
    painter.setPen(faint(ink, 0.14));
    for (int quarter = 1; quarter < 4; ++quarter) {
        const QPointF across = m_geometry.toWidget({quarter / 4.0, quarter / 4.0});
        painter.drawLine(QPointF(across.x(), plot.top()), QPointF(across.x(), plot.bottom()));
        painter.drawLine(QPointF(plot.left(), across.y()), QPointF(plot.right(), across.y()));
    }
    painter.setPen(faint(ink, 0.3));
    painter.drawRect(plot);
    painter.setPen(QPen(faint(ink, 0.3), 1.0, Qt::DashLine));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawLine(plot.bottomLeft(), plot.topRight());
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void CurveView::paintKnots(QPainter& painter) const {
    for (int i = 0; i < m_curve.numKnots(); ++i) {
        const UI::Knot knot = m_curve.knot(i);
        const double radius = i == m_hovered || knot.selected ? KnotRadius + 1.0 : KnotRadius;
        painter.setPen(QPen(knot.selected ? palette().color(QPalette::Text) : lineColor(), 1.5));
        painter.setBrush(knot.selected ? lineColor() : palette().color(QPalette::Base));
        painter.drawEllipse(m_geometry.positionOf(knot), radius, radius);
    }
}

// At the lower right, where grading curves seldom go.
void CurveView::paintReadout(QPainter& painter) const {
    const QString text = readout();
    if (text.isEmpty())
        return;
    QFont small = font();
    small.setPointSizeF(QFontInfo(small).pointSizeF() * 0.85);
    painter.setFont(small);
    const QRectF place = m_geometry.plot.adjusted(6.0, 4.0, -6.0, -4.0);
    const int flags = Qt::AlignRight | Qt::AlignBottom;
    const QRectF box = painter.boundingRect(place, flags, text).adjusted(-4.0, -1.0, 4.0, 1.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(faint(palette().color(QPalette::Base), 0.8));
    painter.drawRoundedRect(box, 3.0, 3.0);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(place, flags, text);
}

} // namespace Kestrel::Workbench
