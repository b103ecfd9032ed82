#include <KxUI/dock/DockSplitter.h>

#include <KxUI/dock/DockTreeEdit_p.h>

#include <QEvent>

namespace Kestrel::UI {

class DockSplitter::Private {
public:
    QList<int> savedSizes; // empty while no child is expanded
};

DockSplitter::DockSplitter(QWidget* parent)
    : DockSplitter(Qt::Vertical, parent) {}

DockSplitter::DockSplitter(Qt::Orientation orientation, QWidget* parent)
    : QSplitter(orientation, parent)
    , d(std::make_unique<Private>()) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
}

DockSplitter::~DockSplitter() = default;

void DockSplitter::expand(int index) {
    if (index == -1) {
        if (!d->savedSizes.isEmpty() && d->savedSizes.size() == count())
            setSizes(d->savedSizes);
        d->savedSizes.clear();
        return;
    }
    if (index < 0 || index >= count())
        return;
    if (d->savedSizes.size() != count())
        d->savedSizes = sizes();
    QList<int> expanded;
    for (int i = 0; i < count(); ++i)
        expanded.append(i == index ? 100 : 0);
    setSizes(expanded);
}

QList<int> DockSplitter::realSizes() const {
    // Children that came or went since the expansion make the kept sizes meaningless.
    return d->savedSizes.size() == count() && !d->savedSizes.isEmpty() ? d->savedSizes : sizes();
}

void DockSplitter::updateDocks() {
    const QWidget* parent = parentWidget();
    if (count() > 0 || DockTreeEdit::isRunning() || !parent || parent == window())
        return;
    hide();
    setParent(nullptr);
    close();
}

bool DockSplitter::event(QEvent* event) {
    const bool handled = QSplitter::event(event);
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::ChildRemoved)
        updateDocks();
    return handled;
}

} // namespace Kestrel::UI
