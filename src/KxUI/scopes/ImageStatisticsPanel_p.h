#pragma once

#include <KxUI/scopes/ImageStatisticsPanel.h>
#include <KxUI/scopes/ScopeStatisticsModel_p.h>

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

class QLabel;
class QTableView;

namespace Kestrel::UI {

/** What a panel of figures consists of. */
class ImageStatisticsPanelPrivate {
public:
    explicit ImageStatisticsPanelPrivate(ImageStatisticsPanel* panel);

    /** Tells the model whether figures are needed. */
    void askModel();
    void modelChanged(ScopeModel::Changes changes);
    void modelGone() { refresh(); }
    /** Shows what there is now. */
    void refresh();
    /** The same, but not more often than can be read. */
    void refreshSoon();
    void changeForm();
    void takePalette();
    void requestPixel(const QModelIndex& cell);
    QString summary(const ScopeResult& result) const;

    ImageStatisticsPanel* const q;
    QPointer<ScopeModel> model;
    ScopeUnit unit = ScopeUnit::Value;
    int precision = -1;
    ImageStatisticsPanel::Columns columns = ImageStatisticsPanel::AllColumns;
    bool showDifference = false;
    ScopeStatisticsModel table;

private:
    void fitColumns();

    QTableView* m_view = nullptr;
    QLabel* m_summary = nullptr;
    QTimer m_soon;
    QElapsedTimer m_sinceRefresh;
};

} // namespace Kestrel::UI
