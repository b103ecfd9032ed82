#include <KxUI/scopes/ScopeStatisticsModel_p.h>

#include <QLocale>

#include <cmath>
#include <utility>

namespace Kestrel::UI {
namespace {

using Panel = ImageStatisticsPanel;

constexpr double LeastLegal = 0.99;

QString channelName(ScopeHistogram::Channel channel) {
    switch (channel) {
    case ScopeHistogram::Red:
        return ImageStatisticsPanel::tr("Red");
    case ScopeHistogram::Green:
        return ImageStatisticsPanel::tr("Green");
    case ScopeHistogram::Blue:
        return ImageStatisticsPanel::tr("Blue");
    case ScopeHistogram::Alpha:
        return ImageStatisticsPanel::tr("Alpha");
    case ScopeHistogram::Luma:
        return ImageStatisticsPanel::tr("Luma");
    default:
        return ImageStatisticsPanel::tr("Largest");
    }
}

struct Title {
    QString name;
    QString help;
};

Title title(Panel::Column column) {
    switch (column) {
    case Panel::Minimum:
        return {ImageStatisticsPanel::tr("Min"),
                ImageStatisticsPanel::tr("Smallest finite value; a double click finds it")};
    case Panel::Maximum:
        return {ImageStatisticsPanel::tr("Max"),
                ImageStatisticsPanel::tr("Largest finite value; a double click finds it")};
    case Panel::Mean:
        return {ImageStatisticsPanel::tr("Mean"),
                ImageStatisticsPanel::tr("Mean of the finite values")};
    case Panel::Deviation:
        return {ImageStatisticsPanel::tr("Deviation"),
                ImageStatisticsPanel::tr("Standard deviation of the finite values")};
    case Panel::Low:
        return {ImageStatisticsPanel::tr("1 %"),
                ImageStatisticsPanel::tr("The value that 1 % do not exceed")};
    case Panel::Median:
        return {ImageStatisticsPanel::tr("Median"),
                ImageStatisticsPanel::tr("The value that half do not exceed")};
    case Panel::High:
        return {ImageStatisticsPanel::tr("99 %"),
                ImageStatisticsPanel::tr("The value that 99 % do not exceed")};
    case Panel::Below:
        return {ImageStatisticsPanel::tr("< 0"), ImageStatisticsPanel::tr("Values below 0")};
    case Panel::Above:
        return {ImageStatisticsPanel::tr("> 1"), ImageStatisticsPanel::tr("Values above 1")};
    case Panel::NotANumber:
        return {ImageStatisticsPanel::tr("NaN"),
                ImageStatisticsPanel::tr("Values that are no number")};
    case Panel::PositiveInfinity:
        return {ImageStatisticsPanel::tr("+inf"), ImageStatisticsPanel::tr("Positive infinities")};
    case Panel::NegativeInfinity:
        return {ImageStatisticsPanel::tr("-inf"), ImageStatisticsPanel::tr("Negative infinities")};
    case Panel::Distinct:
        return {ImageStatisticsPanel::tr("Distinct"),
                ImageStatisticsPanel::tr("Values that differ")};
    case Panel::Legal:
        return {ImageStatisticsPanel::tr("Legal %"),
                ImageStatisticsPanel::tr("Share of the values within 0 to 1")};
    default:
        return {ImageStatisticsPanel::tr("R 103 %"),
                ImageStatisticsPanel::tr(
                    "Share of the values within the preferred range of EBU R 103")};
    }
}

} // namespace

int ScopeStatisticsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_rows.size());
}

int ScopeStatisticsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(m_columns.size());
}

const ChannelStatistics& ScopeStatisticsModel::statistics(int row) const {
    return m_result->statistics.channels[channel(row)];
}

double ScopeStatisticsModel::valueOf(const ChannelStatistics& channel, Column column) {
    switch (column) {
    case Panel::Minimum:
        return channel.minimum;
    case Panel::Maximum:
        return channel.maximum;
    case Panel::Mean:
        return channel.mean;
    case Panel::Deviation:
        return channel.deviation;
    case Panel::Low:
        return channel.low;
    case Panel::Median:
        return channel.median;
    default:
        return channel.high;
    }
}

std::uint64_t ScopeStatisticsModel::countOf(const ChannelStatistics& channel, Column column) {
    switch (column) {
    case Panel::Below:
        return channel.below;
    case Panel::Above:
        return channel.above;
    case Panel::NotANumber:
        return channel.nan;
    case Panel::PositiveInfinity:
        return channel.positiveInfinity;
    case Panel::NegativeInfinity:
        return channel.negativeInfinity;
    default:
        return channel.distinct;
    }
}

bool ScopeStatisticsModel::isWarning(int row, int section) const {
    const Column kind = column(section);
    if (kind == Panel::Legal || kind == Panel::EbuR103) {
        // 1 % may leave either range.
        const ChannelStatistics& now = statistics(row);
        const double share = kind == Panel::Legal ? now.legalShare() : now.ebuR103Share();
        return now.all() > 0 && share < LeastLegal;
    }
    return kind >= Panel::NotANumber && kind <= Panel::NegativeInfinity &&
           countOf(statistics(row), kind) > 0;
}

// `held` is the value to be subtracted, in the same unit; 0 for none.
QString ScopeStatisticsModel::valueText(double value, double held, bool plain) const {
    const double number = value - held;
    if (!std::isfinite(number))
        return std::isnan(number) ? QStringLiteral("nan")
                                  : QString::fromLatin1(number < 0 ? "-inf" : "inf");
    const int digits = m_precision >= 0 ? m_precision : scopeUnitDecimals(m_unit, value);
    QLocale locale = plain ? QLocale::c() : QLocale();
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    const QString text = locale.toString(number, 'f', digits);
    return m_reference && number > 0 && !plain ? QLatin1Char('+') + text : text;
}

// In percent, where all is told from nearly all.
QString ScopeStatisticsModel::shareText(double share, double held, bool plain) const {
    constexpr double NearlyAll = 99.99;
    const bool isNearlyAll = share < 1 && 100 * share > NearlyAll;
    const double percent = 100 * (share - held);
    const QString text = (plain ? QLocale::c() : QLocale())
                             .toString(isNearlyAll && !m_reference ? NearlyAll : percent, 'f', 2);
    return m_reference && percent > 0 && !plain ? QLatin1Char('+') + text : text;
}

QString ScopeStatisticsModel::text(int row, int section, bool plain) const {
    const ChannelStatistics& now = statistics(row);
    const Column kind = column(section);
    const bool isHeld = m_reference && m_reference->statistics.channels[channel(row)].counted;
    const ChannelStatistics held =
        isHeld ? m_reference->statistics.channels[channel(row)] : ChannelStatistics();
    if (isCount(kind)) {
        const auto count = qint64(countOf(now, kind)) - qint64(countOf(held, kind));
        return plain ? QString::number(count) : QLocale().toString(count);
    }
    if (isShare(kind)) {
        const bool isLegal = kind == Panel::Legal;
        const auto share = [isLegal](const ChannelStatistics& each) {
            return isLegal ? each.legalShare() : each.ebuR103Share();
        };
        return shareText(share(now), isHeld ? share(held) : 0, plain);
    }
    if (now.finite == 0)
        return plain ? QString() : QStringLiteral("\u2013");
    const ScopeEncoding& encoding = m_result->encoding;
    const auto inUnit = [&](double value) { return toScopeUnit(m_unit, value, encoding); };
    // A deviation is a distance, which only units in proportion have.
    const bool isDistance = kind == Panel::Deviation;
    const auto number = [&](const ChannelStatistics& each) {
        const double value = valueOf(each, kind);
        if (!isDistance)
            return inUnit(value);
        const bool even = m_unit <= ScopeUnit::Millivolt;
        return even ? inUnit(value) - inUnit(0) : value;
    };
    const QString shown = valueText(number(now), isHeld ? number(held) : 0, plain);
    const bool isRounded =
        now.rounded && (kind == Panel::Low || kind == Panel::Median || kind == Panel::High);
    return isRounded && !plain ? QStringLiteral("\u2248 ") + shown : shown;
}

QVariant ScopeStatisticsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount() || index.column() >= columnCount())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return text(index.row(), index.column(), false);
    case Qt::TextAlignmentRole:
        return int(Qt::AlignRight | Qt::AlignVCenter);
    case Qt::ForegroundRole:
        return isWarning(index.row(), index.column()) ? QVariant(m_warning) : QVariant();
    case Qt::AccessibleTextRole:
        return ImageStatisticsPanel::tr("%1, %2: %3")
            .arg(channelName(channel(index.row())), title(column(index.column())).name,
                 text(index.row(), index.column(), false));
    default:
        return {};
    }
}

QVariant ScopeStatisticsModel::headerData(int section, Qt::Orientation orientation,
                                          int role) const {
    const bool isRow = orientation == Qt::Vertical;
    if (section < 0 || section >= (isRow ? rowCount() : columnCount()))
        return {};
    if (role == Qt::TextAlignmentRole)
        return int((isRow ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    if (role == Qt::DisplayRole)
        return isRow ? channelName(channel(section)) : title(column(section)).name;
    if (role == Qt::ToolTipRole && !isRow)
        return title(column(section)).help;
    return {};
}

QString ScopeStatisticsModel::columnText(Column column) {
    return title(column).name;
}

void ScopeStatisticsModel::show(std::shared_ptr<const ScopeResult> result,
                                std::shared_ptr<const ScopeResult> reference) {
    std::vector<ScopeHistogram::Channel> rows;
    for (int i = 0; i < ScopeHistogram::Channels; ++i) {
        if (result->statistics.channels[std::size_t(i)].counted)
            rows.push_back(ScopeHistogram::Channel(i));
    }
    const bool isOtherTable = rows != m_rows;
    if (isOtherTable)
        beginResetModel();
    m_result = std::move(result);
    m_reference = std::move(reference);
    m_rows = std::move(rows);
    if (isOtherTable)
        endResetModel();
    else if (!m_rows.empty() && !m_columns.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void ScopeStatisticsModel::setForm(ScopeUnit unit, int precision, Panel::Columns columns) {
    beginResetModel();
    m_unit = unit;
    m_precision = precision;
    m_columns.clear();
    for (int bit = 1; bit < Panel::AllColumns; bit *= 2) {
        if (int(columns) & bit)
            m_columns.push_back(Column(bit));
    }
    endResetModel();
}

} // namespace Kestrel::UI
