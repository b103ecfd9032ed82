#pragma once

#include <KxUI/progress/ProgressManager.h>
#include <KxUI/progress/ProgressNews_p.h>

#include <QPointer>
#include <QWidget>

#include <memory>
#include <vector>

class QLabel;
class QProgressBar;
class QPushButton;
class QToolButton;
class QHBoxLayout;
class QVBoxLayout;

namespace Kestrel::UI {

class ElidedLabel;

/** A bar that says what is done, or that nobody knows. */
void showOnBar(QProgressBar& bar, double fraction);

/** A task in the dialog, with its parts. */
class ProgressRow final : public QWidget {
    Q_OBJECT

public:
    ProgressRow(ProgressManager* manager, std::shared_ptr<ProgressTask> task, QWidget* parent);
    ~ProgressRow() override;

    const ProgressTask* task() const { return m_task.get(); }
    /** Shows what the manager knows now. */
    void refresh();
    /** That a task cannot be stopped is said where it stops others. */
    void setModal(bool modal) { m_isModal = modal; }

Q_SIGNALS:
    /** It does not stop, and the user has waited for long enough. */
    void hideWanted();

private:
    struct Part {
        std::shared_ptr<ProgressTask> task;
        QWidget* row;
        QProgressBar* bar;
    };

    void makeHead(QVBoxLayout& column);
    void makeBar(QVBoxLayout& column);
    void makeFoot(QVBoxLayout& column);
    QPushButton* addButton(QHBoxLayout& row, const QString& text, void (ProgressRow::*pressed)());
    void refreshButtons(bool canBeHidden);
    void refreshParts();
    QString statusText() const;
    double now() const;
    double cancellingFor();
    void tell(double fraction, const QString& status);
    void cancel();
    void pauseOrResume();
    void copyDetails();
    void close();

    const QPointer<ProgressManager> m_manager;
    const std::shared_ptr<ProgressTask> m_task;
    QLabel* m_icon = nullptr;
    ElidedLabel* m_title = nullptr;
    QToolButton* m_fold = nullptr;
    ElidedLabel* m_detail = nullptr;
    QProgressBar* m_bar = nullptr;
    QPushButton* m_pause = nullptr;
    QPushButton* m_cancel = nullptr;
    QPushButton* m_copy = nullptr;
    QPushButton* m_close = nullptr;
    QLabel* m_error = nullptr;
    ElidedLabel* m_amount = nullptr;
    QLabel* m_status = nullptr;
    QWidget* m_parts = nullptr;
    std::vector<Part> m_partRows;
    ProgressNews m_news;
    double m_cancellingSince = -1; ///< on the manager's clock; -1 while it is not
    bool m_isModal = false;
};

} // namespace Kestrel::UI
