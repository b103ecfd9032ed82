#include <KxUI/style/ApplicationStyle_p.h>

#include <QPainter>

namespace Kestrel::UI {
namespace {

QPalette::ColorGroup groupOf(const QStyleOption& option) {
    if (!(option.state & QStyle::State_Enabled))
        return QPalette::Disabled;
    return (option.state & QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

} // namespace

unsigned stateOf(const QStyleOption& option) {
    unsigned state = 0;
    const auto add = [&](QStyle::StateFlag flag, unsigned bit) {
        if (option.state & flag)
            state |= bit;
    };
    if (!(option.state & QStyle::State_Enabled)) {
        add(QStyle::State_On, StateOn);
        return state;
    }
    state = StateEnabled;
    add(QStyle::State_MouseOver, StateHover);
    add(QStyle::State_Sunken, StateSunken);
    add(QStyle::State_On, StateOn);
    // A click does not leave a frame.
    if (option.state & QStyle::State_KeyboardFocusChange)
        add(QStyle::State_HasFocus, StateFocus);
    return state;
}

StyleCanvas::StyleCanvas(QPainter* painter, StyleCaches& caches, const QStyleOption& option)
    : m_caches(caches)
    , m_shades(caches.shades.of(option.palette, groupOf(option)))
    , m_space(painter) {}

void StyleCanvas::bevel(StyleElement element, const QRectF& area, unsigned state, unsigned edges) {
    m_caches.textures.drawBevel(m_space, element, area, state, edges, m_shades);
}

void StyleCanvas::mark(StyleMark mark, const QRectF& area, QRgb color) {
    m_caches.textures.drawMark(m_space, mark, area, color);
}

void StyleCanvas::mark(StyleMark mark, const QRectF& area, int side, QRgb color) {
    QRectF square(0, 0, side, side);
    square.moveCenter(area.center());
    this->mark(mark, square, color);
}

void StyleCanvas::fill(const QRectF& area, QRgb color) {
    if (m_space.isExact())
        m_space.painter()->fillRect(m_space.toPixels(area), QColor(color));
    else
        m_space.painter()->fillRect(area, QColor(color));
}

void StyleCanvas::line(StyleEdge side, const QRectF& area, QRgb color) {
    QRect line = m_space.isExact() ? m_space.toPixels(area) : area.toRect();
    switch (side) {
    case JoinLeft:
        line.setWidth(1);
        break;
    case JoinTop:
        line.setHeight(1);
        break;
    case JoinRight:
        line.setLeft(line.right());
        break;
    case JoinBottom:
        line.setTop(line.bottom());
        break;
    }
    m_space.painter()->fillRect(line, QColor(color));
}

} // namespace Kestrel::UI
