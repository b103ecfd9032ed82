#pragma once

#include <KxUI/browse/CrumbButton_p.h>
#include <KxUI/browse/CrumbLayout_p.h>
#include <KxUI/browse/PathBar.h>
#include <KxUI/browse/PathCompleter_p.h>
#include <KxUI/browse/PathProbe_p.h>
#include <KxUI/browse/PathText_p.h>

#include <QBasicTimer>
#include <QPointer>

class QLabel;
class QLineEdit;
class QMimeData;

namespace Kestrel::UI {

class BusyMark;
class CrumbMenu;

class PathBarPrivate {
public:
    static constexpr int AnswerWithin = 10000; // milliseconds
    static constexpr int FreeSpace = 24;       // behind the crumbs, to be clicked

    explicit PathBarPrivate(PathBar* bar);

    void setUpField();
    int rowHeight() const;
    QRect rowRect() const;

    // The buttons.
    void showPath();
    void layOut();
    std::vector<CrumbButton*> row() const; ///< those that are seen, from left to right
    CrumbButton* add(CrumbButton::Part part);
    void setFocused(CrumbButton* button);
    void goAlong(int key);
    void press(CrumbButton* button);
    void openMenu(CrumbButton* button);
    void openHidden();
    void popUp(QMenu* menu, CrumbButton* button);

    // Going somewhere.
    void go(const QByteArray& path);
    void enter(const QString& text, const QByteArray& filled);
    void look(const PathText::Meaning& meaning);
    void takeAnswer(const PathText::Meaning& meaning, const PathFound& found);
    bool take(const QMimeData& data);
    PathText::Place place() const;

    // The field.
    void stop(bool keepsFocus);
    bool takesFieldKey(const QKeyEvent& event);
    void forgetQuestion();
    void setBusy(bool busy);
    void setError(const QString& text);

    PathBar* const q;
    QByteArray path;
    std::vector<PathText::Crumb> crumbs;
    std::vector<CrumbButton*> names;
    std::vector<CrumbButton*> arrows;
    CrumbButton* dots = nullptr;
    CrumbButton* dotsArrow = nullptr;
    CrumbLayout layout;
    QPointer<CrumbButton> focused; ///< which has the focus when the bar has it

    QLineEdit* field = nullptr;
    PathCompleter* completer = nullptr;
    BusyMark* busyMark = nullptr;
    QLabel* error = nullptr;
    QByteArray filled; ///< what the field's text was made from
    QPointer<QWidget> focusBefore;
    PathProbe probe{q};
    std::function<QString(const QString&)> expander;
    bool isEditing = false;
    bool isBusy = false;
};

} // namespace Kestrel::UI
