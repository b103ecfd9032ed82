#include <KxUI/undo/UndoAction.h>

namespace Kestrel::UI {

UndoAction::UndoAction(const QString& text, QObject* parent)
    : QAction(text, parent)
    , m_prefix(text) {}

void UndoAction::setActionText(const QString& text) {
    setText(m_prefix + QLatin1Char(' ') + text);
}

} // namespace Kestrel::UI
