#pragma once

#include <KxUI/Export.h>
#include <KxUI/kit/Choices.h>

#include <QWidget>

class QHelpEvent;

namespace Kestrel::UI {

class ChoiceBarPrivate;

/** A few choices, all seen, as a row of joined buttons of which one is on, or any number where the
    bar is not exclusive. Where the row is narrower than it wants to be, choices with icons lose
    their texts; then the last ones move into a menu, whose button shows the present one if it is
    among them.

    One tab stop. Left and Right, Home and End choose; where the bar is not exclusive, they only
    move and Space chooses. Space or Down opens the menu where the keyboard is in it. Alt with a
    choice's letter chooses it. Each choice is an edit that is complete at once: editStarted(),
    valueEdited() and editFinished() follow each other. Interface thread. */
class KXUI_EXPORT ChoiceBar : public QWidget, public Choices {
    Q_OBJECT
    Q_PROPERTY(int currentIndex READ currentIndex WRITE setCurrentIndex NOTIFY currentIndexChanged
                   USER true)
    Q_PROPERTY(bool exclusive READ isExclusive WRITE setExclusive NOTIFY exclusiveChanged)
    Q_PROPERTY(Qt::ToolButtonStyle buttonStyle READ buttonStyle WRITE setButtonStyle NOTIFY
                   buttonStyleChanged)
    Q_PROPERTY(bool uniformSizes READ uniformSizes WRITE setUniformSizes NOTIFY uniformSizesChanged)
    Q_PROPERTY(int count READ choiceCount NOTIFY countChanged)

public:
    /** An exclusive bar without choices. */
    explicit ChoiceBar(QWidget* parent = nullptr);
    ~ChoiceBar() override;

    /** Whether texts are beside icons, as at first, below them, or which of the two is seen.
        A choice without an icon always shows its text. */
    Qt::ToolButtonStyle buttonStyle() const;
    void setButtonStyle(Qt::ToolButtonStyle style);

    /** Whether all buttons are as wide as the widest; false at first. */
    bool uniformSizes() const;
    void setUniformSizes(bool uniform);

    /** The size that shows all texts, and that of the menu's button alone. */
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public Q_SLOTS:
    /** As Choices::setCurrentIndex(). */
    void setCurrentIndex(int index);
    /** Ends an edit as Escape does; nothing without one. */
    void cancelEdit();

Q_SIGNALS:
    /** Another choice is the current one, by whomever. */
    void currentIndexChanged(int index);
    /** Others are on, by whomever. Before currentIndexChanged(). */
    void checkedChanged();
    /** The user chose, also what was on already. */
    void chosen(int index);

    /** The user begins to change what is on. Always followed by exactly one editFinished(). */
    void editStarted();
    /** The user chose this one, which was not on; where the bar is not exclusive, it may have been:
        ask isChoiceChecked(). */
    void valueEdited(int index);
    /** The edit is over. Not accepted: it was taken back. */
    void editFinished(bool accepted);

    /** Setters had an effect. */
    void countChanged(int count);
    void exclusiveChanged(bool exclusive);
    void buttonStyleChanged(Qt::ToolButtonStyle style);
    void uniformSizesChanged(bool uniform);

protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    friend class ChoiceBarPrivate;
    friend class ChoiceAccessible;
    friend class ChoiceBarAccessible;

    void showToolTip(QHelpEvent* event);
    ChoiceBarPrivate& d() const;
};

} // namespace Kestrel::UI
