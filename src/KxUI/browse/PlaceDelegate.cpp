#include <KxUI/browse/PlaceDelegate_p.h>

#include <KxUI/browse/FavoritesModel.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int rowHeight = 24; // a target that a pen hits

} // namespace

PlaceDelegate::PlaceDelegate(QObject* parent)
    : QStyledItemDelegate(parent) {}

QSize PlaceDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const QSize size = QStyledItemDelegate::sizeHint(option, index);
    return {size.width(), std::max(size.height() + 2, rowHeight)};
}

void PlaceDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    option->textElideMode = Qt::ElideMiddle;
    // Its arrow says that a row is open; icons are in the colour of the text.
    option->state &= ~QStyle::State_Open;
    QColor ink = option->palette.color(QPalette::Text);
    if (!index.parent().isValid()) {
        option->font.setBold(true);
        ink = option->palette.color(QPalette::PlaceholderText);
    }
    const auto reach = index.data(FavoritesModel::ReachRole).value<FavoritesModel::Reach>();
    if (reach == FavoritesModel::Unreachable) {
        ink = option->palette.color(QPalette::Disabled, QPalette::Text);
        option->icon = QIcon(option->icon.pixmap(option->decorationSize, QIcon::Disabled));
        // Not by its colour alone.
        option->font.setItalic(true);
    }
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        option->palette.setColor(group, QPalette::Text, ink);
}

} // namespace Kestrel::UI
