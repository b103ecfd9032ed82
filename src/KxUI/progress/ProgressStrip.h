#pragma once

#include <KxUI/Export.h>

#include <QWidget>

#include <memory>

namespace Kestrel::UI {

class ProgressManager;

/** One line for a status bar: the first task that goes on, a bar, the time that is left, and how many
    others there are. A click, or Space, opens what shows all of them. Empty while nothing goes on and
    nothing has failed. Interface thread. */
class KXUI_EXPORT ProgressStrip : public QWidget {
    Q_OBJECT

public:
    /** Without a manager. */
    explicit ProgressStrip(QWidget* parent = nullptr);
    ~ProgressStrip() override;

    /** Whose tasks are shown; null when it is gone. Borrowed. */
    ProgressManager* manager() const;
    void setManager(ProgressManager* manager);

    /** What a click shows, as a ProgressDialog, beside clicked(); null for nothing. Borrowed. */
    QWidget* opened() const;
    void setOpened(QWidget* dialog);

    /** Reimplemented from Qt. */
    QSize sizeHint() const override;

Q_SIGNALS:
    /** The user wants to see the tasks. */
    void clicked();

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
