#pragma once

#include <KxUI/scopes/ImageStatisticsPanel.h>

#include <QAbstractTableModel>
#include <QColor>

#include <memory>
#include <vector>

namespace Kestrel::UI {

/** The figures of a result as a table: a row for each channel that was counted. */
class ScopeStatisticsModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using Column = ImageStatisticsPanel::Column;

    using QAbstractTableModel::QAbstractTableModel;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /** Shows other figures; `reference` is null where no differences are shown. */
    void show(std::shared_ptr<const ScopeResult> result,
              std::shared_ptr<const ScopeResult> reference);
    void setForm(ScopeUnit unit, int precision, ImageStatisticsPanel::Columns columns);
    void setWarning(const QColor& color) { m_warning = color; }

    ScopeHistogram::Channel channel(int row) const { return m_rows[std::size_t(row)]; }
    Column column(int section) const { return m_columns[std::size_t(section)]; }
    /** A column as users know it. */
    static QString columnText(Column column);
    /** A cell in the form that other programs read, or as users do. */
    QString text(int row, int section, bool plain) const;

private:
    const ChannelStatistics& statistics(int row) const;
    QString valueText(double value, double held, bool plain) const;
    static double valueOf(const ChannelStatistics& channel, Column column);
    static std::uint64_t countOf(const ChannelStatistics& channel, Column column);
    static bool isCount(Column column) {
        return column >= ImageStatisticsPanel::Below && column < ImageStatisticsPanel::Legal;
    }
    static bool isShare(Column column) { return column >= ImageStatisticsPanel::Legal; }
    QString shareText(double share, double held, bool plain) const;
    bool isWarning(int row, int section) const;

    std::shared_ptr<const ScopeResult> m_result = std::make_shared<ScopeResult>();
    std::shared_ptr<const ScopeResult> m_reference;
    std::vector<ScopeHistogram::Channel> m_rows;
    std::vector<Column> m_columns;
    ScopeUnit m_unit = ScopeUnit::Value;
    int m_precision = -1;
    QColor m_warning;
};

} // namespace Kestrel::UI
