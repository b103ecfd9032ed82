#pragma once

#include <QWidget>

class QHBoxLayout;
class QLabel;
class QMenu;

namespace Kestrel::UI {
class ChoiceBar;
}

namespace Kestrel::Workbench {

class ScopeFeed;

/** The row above scopes and figures: which values are counted, what they are, and a menu of what
    concerns all panes that look at them. */
class ScopeBar : public QWidget {
    Q_OBJECT

public:
    /** @param feed  borrowed; outlives the bar */
    explicit ScopeBar(ScopeFeed* feed, QWidget* parent = nullptr);

    /** Puts a widget after the choice of the source. */
    void addWidget(QWidget* widget);

    QMenu* menu() const { return m_menu; }

signals:
    /** The menu is about to be shown and has nothing yet; what is added comes first. */
    void menuFilling(QMenu* menu);

private:
    void makeSource();
    void fillMenu();
    void addMatrices(QMenu* menu);
    void showSettings();

    ScopeFeed* m_feed;
    UI::ChoiceBar* m_source;
    QHBoxLayout* m_row;
    QLabel* m_description;
    QMenu* m_menu;
};

} // namespace Kestrel::Workbench
