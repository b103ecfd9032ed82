#include <KxUI/undo/UndoAction.h>

#include <KxUI/kit/InterfaceThread_p.h>

namespace Kestrel::UI {

/** The data of an UndoAction. */
class UndoActionPrivate {
public:
    const QString prefix;
};

UndoAction::UndoAction(const QString& text, QObject* parent)
    : QAction(text, parent)
    , d(new UndoActionPrivate{text}) {}

UndoAction::~UndoAction() = default;

void UndoAction::setActionText(const QString& text) {
    KXUI_INTERFACE_THREAD(this);
    setText(d->prefix + QLatin1Char(' ') + text);
}

} // namespace Kestrel::UI
