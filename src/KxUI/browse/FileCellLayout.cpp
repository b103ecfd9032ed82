#include <KxUI/browse/FileCellLayout_p.h>

#include <QStyle>

#include <algorithm>

namespace Kestrel::UI {

FileCellLayout FileCellLayout::compact(const QRect& cell, int factsWidth, bool isRightToLeft) {
    const QRect inner = cell.adjusted(Margin, 0, -Margin, 0);
    const int rest = std::max(0, inner.width() - IconSide - Gap);
    const int facts = std::min(factsWidth, rest * 3 / 5);
    FileCellLayout layout;
    layout.picture = QRect(inner.left(), inner.center().y() + 1 - IconSide / 2, IconSide, IconSide);
    layout.facts = QRect(inner.right() + 1 - facts, inner.top(), facts, inner.height());
    layout.name = inner;
    layout.name.setLeft(layout.picture.right() + 1 + Gap);
    const int end = layout.facts.left() - 1 - (facts > 0 ? Gap : 0);
    layout.name.setRight(std::max(end, layout.name.left() - 1));
    if (isRightToLeft) {
        for (QRect* const part : {&layout.picture, &layout.name, &layout.facts})
            *part = QStyle::visualRect(Qt::RightToLeft, cell, *part);
    }
    return layout;
}

FileCellLayout FileCellLayout::thumbnail(const QRect& cell, int lineHeight) {
    const QRect inner = cell.adjusted(Margin, Margin, -Margin, -Margin);
    FileCellLayout layout;
    layout.picture = QRect(inner.left(), inner.top(), inner.width(), PictureHeight);
    layout.name =
        QRect(inner.left(), layout.picture.bottom() + 1 + Margin, inner.width(), lineHeight);
    layout.facts = layout.name.translated(0, lineHeight);
    return layout;
}

QSize FileCellLayout::compactSize(int lineHeight, int letter) {
    constexpr int letters = 52; // a name of 24, frames, and that some are missing
    return {letters * letter, std::max(lineHeight, IconSide) + Margin};
}

QSize FileCellLayout::thumbnailSize(int lineHeight, int letter) {
    constexpr int letters = 22; // of a line below the picture
    return {std::max(PictureHeight * 16 / 9, letters * letter) + 2 * Margin,
            PictureHeight + 3 * Margin + 2 * lineHeight};
}

QRect FileCellLayout::fitted(const QSizeF& picture, const QRect& frame) {
    if (picture.isEmpty())
        return {};
    const qreal scale =
        std::min({1.0, frame.width() / picture.width(), frame.height() / picture.height()});
    QRect place(QPoint(), QSize(std::max(1, qRound(picture.width() * scale)),
                                std::max(1, qRound(picture.height() * scale))));
    place.moveTopLeft(frame.topLeft() + QPoint((frame.width() - place.width()) / 2,
                                               (frame.height() - place.height()) / 2));
    return place;
}

} // namespace Kestrel::UI
