#pragma once

#include <KxUI/Export.h>

#include <QPushButton>

namespace Kestrel::UI {

/** A small flat button in the title bar of a pane: its icon and 2 pixels around it. Interface
    thread. */
class KXUI_EXPORT TitleBarButton : public QPushButton {
    Q_OBJECT

public:
    /** A button that `titleBar` owns. Panes make their own. */
    explicit TitleBarButton(QWidget* titleBar = nullptr);
    ~TitleBarButton() override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace Kestrel::UI
