#include <KxUI/scopes/ImageStatisticsPanel_p.h>

#include <KxUI/kit/ColorContrast_p.h>

#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace Kestrel::UI {
namespace {

constexpr int ReadableInterval = 100; // milliseconds
constexpr double HalfRounding = 1.0 / 2048;

QString percent(std::uint64_t part, std::uint64_t whole) {
    const double share = whole > 0 ? 100 * double(part) / double(whole) : 0;
    return QLocale().toString(share, 'f', share > 0 && share < 0.1 ? 4 : 2);
}

} // namespace

ImageStatisticsPanelPrivate::ImageStatisticsPanelPrivate(ImageStatisticsPanel* panel)
    : q(panel)
    , m_view(new QTableView(panel))
    , m_summary(new QLabel(panel)) {
    table.setForm(unit, precision, columns);
    m_view->setModel(&table);
    m_view->setAlternatingRowColors(true);
    m_view->setTabKeyNavigation(false);
    m_view->setWordWrap(false);
    m_view->horizontalHeader()->setHighlightSections(false);
    m_view->verticalHeader()->setHighlightSections(false);
    m_view->setAccessibleName(ImageStatisticsPanel::tr("Image statistics"));
    m_summary->setWordWrap(true);
    m_summary->setContentsMargins(4, 0, 4, 2);
    m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* const layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view, 1);
    layout->addWidget(m_summary);
    panel->setFocusProxy(m_view);
    takePalette();
    QObject::connect(m_view, &QTableView::doubleClicked, panel,
                     [this](const QModelIndex& cell) { requestPixel(cell); });
    m_soon.setSingleShot(true);
    QObject::connect(&m_soon, &QTimer::timeout, panel, [this] { refresh(); });
}

void ImageStatisticsPanelPrivate::askModel() {
    if (model)
        model->require(q, q->isVisible() ? ScopeModel::Values : ScopeModel::Parts());
}

void ImageStatisticsPanelPrivate::modelChanged(ScopeModel::Changes changes) {
    if (changes & (ScopeModel::Result | ScopeModel::Reference))
        refreshSoon();
}

void ImageStatisticsPanelPrivate::refreshSoon() {
    const qint64 passed = m_sinceRefresh.isValid() ? m_sinceRefresh.elapsed() : ReadableInterval;
    if (passed >= ReadableInterval)
        refresh();
    else if (!m_soon.isActive())
        m_soon.start(int(ReadableInterval - passed));
}

void ImageStatisticsPanelPrivate::refresh() {
    m_soon.stop();
    m_sinceRefresh.start();
    const auto result = model ? model->result() : std::make_shared<const ScopeResult>();
    table.show(result, model && showDifference ? model->reference() : nullptr);
    fitColumns();
    const QString text = summary(*result);
    if (m_summary->text() != text)
        m_summary->setText(text);
}

void ImageStatisticsPanelPrivate::changeForm() {
    table.setForm(unit, precision, columns);
    refresh();
}

// Columns that shrink and grow with each picture of a film could not be read.
void ImageStatisticsPanelPrivate::fitColumns() {
    QHeaderView* const header = m_view->horizontalHeader();
    const QFontMetrics metrics(m_view->font());
    constexpr int Gap = 18;
    for (int column = 0; column < table.columnCount(); ++column) {
        int width = header->sectionSizeHint(column);
        for (int row = 0; row < table.rowCount(); ++row)
            width =
                std::max(width, metrics.horizontalAdvance(table.text(row, column, false)) + Gap);
        const bool isFirst = header->sectionSize(column) == header->defaultSectionSize();
        if (isFirst || width > header->sectionSize(column))
            header->resizeSection(column, width);
    }
}

void ImageStatisticsPanelPrivate::takePalette() {
    const QPalette palette = q->palette();
    const QColor violet(200, 120, 255);
    table.setWarning(firstVisible(
        {violet, violet.darker(160), violet.darker(220)},
        {palette.color(QPalette::Base), palette.color(QPalette::AlternateBase)}, ReadableContrast));
}

void ImageStatisticsPanelPrivate::requestPixel(const QModelIndex& cell) {
    if (!model || !cell.isValid())
        return;
    const auto column = table.column(cell.column());
    const auto channel = table.channel(cell.row());
    if (column != ImageStatisticsPanel::Minimum && column != ImageStatisticsPanel::Maximum)
        return;
    const ChannelStatistics& figures = model->result()->statistics.channels[channel];
    if (figures.finite == 0 || channel == ScopeHistogram::Alpha)
        return;
    const double value =
        column == ImageStatisticsPanel::Minimum ? figures.minimum : figures.maximum;
    const double slack = figures.rounded ? std::fabs(value) * HalfRounding : 0;
    ScopeSelection wanted;
    wanted.kind = ScopeSelection::Kind::Values;
    wanted.lower = float(value - slack);
    wanted.upper = float(value + slack);
    if (channel <= ScopeHistogram::Blue)
        wanted.channel = ScopeSelection::Channel(channel);
    else
        wanted.channel =
            channel == ScopeHistogram::Luma ? ScopeSelection::Luma : ScopeSelection::Largest;
    model->find(q, wanted);
}

QString ImageStatisticsPanelPrivate::summary(const ScopeResult& result) const {
    const QLocale locale;
    if (!result.error.empty())
        return ImageStatisticsPanel::tr("Transform failed: %1")
            .arg(QString::fromStdString(result.error));
    const ImageStatistics& all = result.statistics;
    if (result.region.isEmpty() || !(result.parts & ScopeRequest::Values))
        return model && !model->image().isEmpty() && result.region.isEmpty() && result.parts != 0
                   ? ImageStatisticsPanel::tr("No pixels in the region")
                   : ImageStatisticsPanel::tr("No picture");
    QStringList parts;
    const ScopeRegion& region = result.region;
    parts.append(ImageStatisticsPanel::tr("%1 \u00d7 %2 at %3, %4: %5 pixels")
                     .arg(region.width)
                     .arg(region.height)
                     .arg(region.left)
                     .arg(region.top)
                     .arg(locale.toString(quint64(all.pixels))));
    if (all.transparent > 0)
        parts.append(ImageStatisticsPanel::tr("transparent %1")
                         .arg(locale.toString(quint64(all.transparent))));
    if (result.proxy > 1)
        parts.append(ImageStatisticsPanel::tr("proxy 1/%1").arg(result.proxy));
    if (result.rowStep > 1)
        parts.append(ImageStatisticsPanel::tr("1/%1 of rows").arg(result.rowStep));
    parts.append(
        ImageStatisticsPanel::tr("outside 0 to 1: %1 %").arg(percent(all.illegal, all.pixels)));
    parts.append((all.meetsEbuR103() ? ImageStatisticsPanel::tr("EBU R 103: %1 % outside, met")
                                     : ImageStatisticsPanel::tr("EBU R 103: %1 % outside, not met"))
                     .arg(percent(all.outsideEbuR103, all.pixels)));
    const auto nits = [&locale](double value) {
        return locale.toString(value, 'f', value < 10 ? 2 : 0);
    };
    parts.append(
        ImageStatisticsPanel::tr("MaxCLL %1 nits, frame average %2 nits, 99.995 %: %3 nits")
            .arg(nits(all.maxCll), nits(all.frameAverage), nits(all.level99995)));
    return parts.join(QStringLiteral(" \u00b7 "));
}

} // namespace Kestrel::UI
