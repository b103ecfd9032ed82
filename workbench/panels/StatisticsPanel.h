#pragma once

#include <QWidget>

class QMenu;

namespace Kestrel::UI {
class ImageStatisticsPanel;
}

namespace Kestrel::Workbench {

class ScopeFeed;
class Session;

/** Figures of what the viewer shows, or of the region that is drawn on it. A double click on a least
    or greatest value marks its pixel in the viewer. Nothing is counted while the panel is not seen. */
class StatisticsPanel : public QWidget {
    Q_OBJECT
    /** What a workspace remembers, as JSON. */
    Q_PROPERTY(QString layoutState READ layoutState WRITE setLayoutState)

public:
    /** @param session  borrowed; outlives the panel */
    explicit StatisticsPanel(Session* session, QWidget* parent = nullptr);

    UI::ImageStatisticsPanel* figures() const { return m_figures; }

    QString layoutState() const;
    /** Takes what it knows. */
    void setLayoutState(const QString& state);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void fillMenu(QMenu* menu);
    void addColumns(QMenu* menu);

    ScopeFeed* m_feed;
    UI::ImageStatisticsPanel* m_figures;
};

} // namespace Kestrel::Workbench
