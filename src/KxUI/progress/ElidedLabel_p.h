#pragma once

#include <QLabel>

namespace Kestrel::UI {

/** A line that fits into any width: the middle of a long text goes. */
class ElidedLabel final : public QLabel {
public:
    explicit ElidedLabel(QWidget* parent);

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace Kestrel::UI
