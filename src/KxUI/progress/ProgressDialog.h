#pragma once

#include <KxUI/Export.h>

#include <QDialog>

#include <chrono>
#include <memory>

namespace Kestrel::UI {

class ProgressManager;
class ProgressTask;

/** Shows the tasks of a manager, with buttons to pause and cancel them. It opens by itself for what
    takes longer, without taking the focus, and closes when nothing goes on; what has failed stays
    until somebody has seen it. No event loop is nested, and no task waits for it.

    Return does nothing here: nothing is cancelled by a key that was meant for another window. Escape
    hides it and the work goes on; where it is modal, Escape cancels. Interface thread. */
class KXUI_EXPORT ProgressDialog : public QDialog {
    Q_OBJECT
    Q_PROPERTY(bool opensByItself READ opensByItself WRITE setOpensByItself NOTIFY settingsChanged)
    Q_PROPERTY(
        bool closesWhenIdle READ closesWhenIdle WRITE setClosesWhenIdle NOTIFY settingsChanged)
    Q_PROPERTY(
        bool remembersPlace READ remembersPlace WRITE setRemembersPlace NOTIFY settingsChanged)

public:
    /** Without a manager. */
    explicit ProgressDialog(QWidget* parent = nullptr);
    ~ProgressDialog() override;

    /** Shows one task and ends with it, and then deletes itself.
        @param task    what is shown
        @param parent  over whose window
        @param modal   whether that window is blocked meanwhile */
    static ProgressDialog* follow(const std::shared_ptr<Kestrel::UI::ProgressTask>& task,
                                  QWidget* parent, bool modal = false);

    /** Whose tasks are shown; null when it is gone. Borrowed. */
    ProgressManager* manager() const;
    void setManager(ProgressManager* manager);

    /** How long a task must have gone on before the dialog opens; at first 500 ms. It opens then if
        more than two seconds are left, and after 1.5 s also where nobody knows. */
    std::chrono::milliseconds showAfter() const;
    void setShowAfter(std::chrono::milliseconds time);

    /** Whether it opens by itself; at first it does. */
    bool opensByItself() const;
    void setOpensByItself(bool opens);

    /** Whether it closes when no task goes on and none has failed; at first it does. */
    bool closesWhenIdle() const;
    void setClosesWhenIdle(bool closes);

    /** Whether it comes up where it was the last time, in this session or an earlier one; at first
        it does not. AppSettings keeps the place under the object name of the dialog; one without a
        name gets the name "ProgressDialog". Set it before the dialog is shown. */
    bool remembersPlace() const;
    void setRemembersPlace(bool remembers);

    /** Reimplemented from Qt. */
    void reject() override;

Q_SIGNALS:
    /** The user has hidden it while tasks go on. */
    void hiddenByUser();
    /** A switch was set. */
    void settingsChanged();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct Private;

    const std::unique_ptr<Private> d;
};

} // namespace Kestrel::UI
