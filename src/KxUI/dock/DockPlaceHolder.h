#pragma once

#include <KxUI/Export.h>

#include <QWidget>

namespace Kestrel::UI {

/** Keeps the place of a page that is not there: in a layout whose page the host does not create, or
    for a page that is shown elsewhere for a while. Carries the page's object name, so that a page
    of that name added to the pane takes its place. Closed (and deleted) with its pane. Interface
    thread.
 */
class KXUI_EXPORT DockPlaceHolder : public QWidget {
    Q_OBJECT

public:
    explicit DockPlaceHolder(QWidget* parent = nullptr);
    ~DockPlaceHolder() override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace Kestrel::UI
