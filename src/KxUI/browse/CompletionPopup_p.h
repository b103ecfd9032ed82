#pragma once

#include <KxUI/browse/Completion_p.h>

#include <QListView>

#include <functional>

namespace Kestrel::UI {

/** The list under a field: names to choose from, by the field's keys or by the mouse. It takes
    neither the focus nor a key. */
class CompletionPopup : public QListView {
    Q_OBJECT

public:
    explicit CompletionPopup(QWidget* field);
    ~CompletionPopup() override;

    /** Shows these rows under the field, or above it where there is more room. */
    void show(const CompletionMatches& matches, int current);

    /** Is told of the row that was clicked. */
    std::function<void(int row)> onChosen;
    /** Is told when something happens for which a list goes: a click elsewhere, a window that
        moves. */
    std::function<void()> onLeft;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    class Rows;

    void place();
    void tellCurrent();

    QWidget* m_field;
    Rows* m_rows;
};

} // namespace Kestrel::UI
