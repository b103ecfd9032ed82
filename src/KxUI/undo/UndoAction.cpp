#include <KxUI/undo/UndoAction.h>

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
    setText(d->prefix + QLatin1Char(' ') + text);
}

} // namespace Kestrel::UI
