#pragma once

#include <KxUI/Export.h>

#include <QWidget>

#include <memory>

class QAbstractButton;

namespace Kestrel::UI {

class CollapsibleToolbarPrivate;

/** A row of widgets that gives up its less important buttons when it gets too narrow: they move, by
    name, into the menu of a button at the right end. A click in that menu clicks the button.
    Interface thread. */
class KXUI_EXPORT CollapsibleToolbar : public QWidget {
    Q_OBJECT

public:
    explicit CollapsibleToolbar(QWidget* parent = nullptr);
    ~CollapsibleToolbar() override;

    /** Appends a widget that always stays in the row. The toolbar becomes its parent.
        Null is ignored. */
    void addItem(QWidget* widget);

    /** Appends a button that may move into the menu, where it is shown as `name`. Buttons of lower
        priority go first, and of equal priority the rightmost. The toolbar becomes its parent.
        Null is ignored. */
    void addOverflowItem(QAbstractButton* button, const QString& name, int priority);

    /** Whether an item is there at all, in the row or in the menu; all are at first. In place of
        QWidget::setVisible(), which the toolbar needs for itself. Nothing for what is no item. */
    void setItemVisible(QWidget* item, bool visible);
    bool isItemVisible(const QWidget* item) const;

    /** The names of the buttons that are in the menu now, from left to right. */
    QStringList overflowNames() const;

    /** The width that shows every item. */
    QSize sizeHint() const override;
    /** The width that shows what can not move into the menu, and the menu's button. */
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    const std::unique_ptr<CollapsibleToolbarPrivate> d;
};

} // namespace Kestrel::UI
