#pragma once

#include <QWidget>

#include <array>

class QGridLayout;
class QMenu;

namespace Kestrel::UI {
class ChoiceBar;
}

namespace Kestrel::Workbench {

class ScopeCell;
class ScopeFeed;
class Session;

/** One, two or four scopes of what the viewer shows, each chosen by a menu. Nothing is counted while
    none of them is seen. */
class ScopesPanel : public QWidget {
    Q_OBJECT
    /** What a workspace remembers, as JSON. */
    Q_PROPERTY(QString layoutState READ layoutState WRITE setLayoutState)

public:
    static constexpr int MostScopes = 4;

    /** @param session  borrowed; outlives the panel */
    explicit ScopesPanel(Session* session, QWidget* parent = nullptr);

    /** 1, 2 (at first) or 4. Others are ignored. */
    int scopeCount() const { return m_count; }
    void setScopeCount(int count);

    /** From the upper left; also of those that are not shown. */
    ScopeCell* cell(int index) const { return m_cells.at(std::size_t(index)); }

    QString layoutState() const;
    /** Takes what it knows. */
    void setLayoutState(const QString& state);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void makeCount();
    void arrange();
    void addUnits(QMenu* menu);

    ScopeFeed* m_feed;
    UI::ChoiceBar* m_counts;
    QGridLayout* m_grid;
    std::array<ScopeCell*, MostScopes> m_cells{};
    int m_count = 2;
    /** How two scopes lie. */
    bool m_sideBySide = false;
};

} // namespace Kestrel::Workbench
