#pragma once

#include <QStyledItemDelegate>

namespace Kestrel::UI {

/** Rows of places: sections as quiet headings, what cannot be reached in grey. */
class PlaceDelegate final : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit PlaceDelegate(QObject* parent);

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace Kestrel::UI
