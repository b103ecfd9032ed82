#pragma once

#include <KxUI/Export.h>

#include <QAction>

#include <memory>

namespace Kestrel::UI {

class UndoActionPrivate;

/** A menu action whose text is a fixed prefix ("Undo") and the text of the command it acts on.
    Interface thread. */
class KXUI_EXPORT UndoAction : public QAction {
    Q_OBJECT

public:
    /** An action with the text `text`, which is also the prefix of all later texts. */
    explicit UndoAction(const QString& text, QObject* parent = nullptr);
    ~UndoAction() override;

public Q_SLOTS:
    /** Sets the action's text to the prefix, one blank and `text`. The blank stands for an empty
        text, too. */
    void setActionText(const QString& text);

private:
    const std::unique_ptr<UndoActionPrivate> d;
};

} // namespace Kestrel::UI
