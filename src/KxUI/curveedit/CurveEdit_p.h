#pragma once

#include <KxUI/curveedit/CurveModel.h>
#include <KxUI/kit/EditGestures_p.h>

#include <vector>

namespace Kestrel::UI {

class CurveView;

/** The edits of the curves in a view by its user, told by editStarted(), edited() and
    editFinished() of the view. All that the user changes goes through change() or editOnce().

    Functions that return bool return false where the view was deleted meanwhile. */
class CurveEdit final : public EditGestures {
public:
    explicit CurveEdit(CurveView* view);

    /** Changes the model in the gesture that goes on. Opens the edit, so call it with what is sure
        to change something. */
    template <class Change>
    bool change(const QString& what, Change change) {
        return gesture() == NoGesture || apply(what, change);
    }

    /** An edit that is complete by itself. What goes on is over before. */
    template <class Change>
    bool editOnce(const QString& what, Change change) {
        return isClosing() || (finish() && apply(what, change) && finish());
    }

    /** Whether the model is being changed from here, so that what it tells is no news. */
    bool isChanging() const { return m_changing > 0; }

    /** What the current edit, or the last one, did. */
    const QString& text() const { return m_text; }

protected:
    void keepStart() override {}
    void goToStart() override;
    void tellStarted() override;
    void tellFinished(bool accepted) override;

private:
    struct Saved {
        int curve;
        QByteArray bytes;
    };

    void save();
    bool tellEdited();

    template <class Change>
    bool apply(const QString& what, Change change) {
        const QPointer<QWidget> alive(widget());
        if (!isEditing()) {
            save();
            m_text = what;
        }
        if (!open())
            return !alive.isNull();
        const int current = edit();
        ++m_changing;
        change();
        if (!alive)
            return false;
        --m_changing;
        return !isOpen(current) || tellEdited();
    }

    CurveView* m_view;
    std::vector<Saved> m_start;
    QString m_text;
    int m_changing = 0;
};

} // namespace Kestrel::UI
