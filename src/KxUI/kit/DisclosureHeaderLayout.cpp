#include <KxUI/kit/DisclosureHeaderLayout_p.h>

#include <QStyle>

#include <algorithm>

namespace Kestrel::UI {
namespace {

/** What a part takes with the gap after it. */
int withGap(int width) {
    return width > 0 ? width + DisclosureHeaderLayout::Gap : 0;
}

} // namespace

DisclosureHeaderLayout DisclosureHeaderLayout::of(const QSize& size,
                                                  const DisclosureHeaderParts& parts,
                                                  Qt::LayoutDirection direction) {
    const QRect whole(QPoint(0, 0), size);
    const auto place = [&](int left, int width) {
        return QStyle::visualRect(direction, whole, QRect(left, 0, width, size.height()));
    };
    DisclosureHeaderLayout layout;
    int left = Margin;
    int right = size.width() - Margin;
    if (parts.widgets > 0) {
        right -= parts.widgets;
        layout.widgets = place(right, parts.widgets);
        right -= Gap;
    }
    const auto take = [&](QRect& part, int wanted) {
        const int width = std::clamp(right - left, 0, wanted);
        part = place(left, width);
        left += withGap(width);
    };
    take(layout.arrow, parts.arrow);
    take(layout.check, parts.check);
    right -= withGap(parts.dot);
    take(layout.title, parts.title);
    right += withGap(parts.dot);
    take(layout.dot, parts.dot);
    take(layout.summary, parts.summary);
    return layout;
}

int DisclosureHeaderLayout::wantedWidth(const DisclosureHeaderParts& parts) {
    int width = 2 * Margin - Gap;
    for (const int part :
         {parts.arrow, parts.check, parts.title, parts.dot, parts.summary, parts.widgets})
        width += withGap(part);
    return std::max(width, 2 * Margin);
}

int DisclosureHeaderLayout::leastWidth(const DisclosureHeaderParts& parts) {
    DisclosureHeaderParts least = parts;
    least.title = std::min(parts.title, 3 * parts.arrow);
    least.summary = 0;
    return wantedWidth(least);
}

int revealedOffset(int top, int bottom, int viewHeight, int offset) {
    return std::min(top, std::max(offset, bottom - viewHeight));
}

} // namespace Kestrel::UI
