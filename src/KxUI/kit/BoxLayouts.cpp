#include <KxUI/kit/HorizontalLayout.h>
#include <KxUI/kit/VerticalLayout.h>

namespace Kestrel::UI {

HorizontalLayout::HorizontalLayout(QWidget* parent)
    : HorizontalLayout(0, Gap, parent) {}

HorizontalLayout::HorizontalLayout(int margin, int spacing, QWidget* parent)
    : QHBoxLayout(parent) {
    setContentsMargins(margin, margin, margin, margin);
    setSpacing(spacing);
}

VerticalLayout::VerticalLayout(QWidget* parent)
    : VerticalLayout(0, Gap, parent) {}

VerticalLayout::VerticalLayout(int margin, int spacing, QWidget* parent)
    : QVBoxLayout(parent) {
    setContentsMargins(margin, margin, margin, margin);
    setSpacing(spacing);
}

} // namespace Kestrel::UI
