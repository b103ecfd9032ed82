#include <KxUI/dock/TitleBarButton.h>

#include <QMenu>
#include <QStyle>
#include <QStyleOptionToolButton>
#include <QStylePainter>

#include <algorithm>

namespace Kestrel::UI {

TitleBarButton::TitleBarButton(QWidget* titleBar)
    : QPushButton(titleBar) {
    setFocusPolicy(Qt::NoFocus);
    setFlat(true);
    setAttribute(Qt::WA_Hover);
}

TitleBarButton::~TitleBarButton() = default;

QSize TitleBarButton::sizeHint() const {
    ensurePolished();
    int side = 4;
    if (!icon().isNull()) {
        const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
        const QSize actual = icon().actualSize(QSize(iconSize, iconSize));
        side += std::max(actual.width(), actual.height());
    }
    return {side, side};
}

void TitleBarButton::paintEvent(QPaintEvent*) {
    QStylePainter painter(this);
    const bool isDown = this->isDown() || (menu() && menu()->isVisible());
    if (isEnabled() && (underMouse() || isDown)) {
        QStyleOption raised;
        raised.initFrom(this);
        raised.state.setFlag(QStyle::State_AutoRaise);
        raised.state.setFlag(QStyle::State_Raised, !isDown);
        raised.state.setFlag(QStyle::State_Sunken, isDown);
        painter.drawPrimitive(QStyle::PE_PanelButtonTool, raised);
    }
    const int iconSize = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    QRect place(0, 0, iconSize, iconSize);
    place.moveCenter(rect().center());
    icon().paint(&painter, place, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

} // namespace Kestrel::UI
