#include <KxUI/scopes/ImageStatisticsPanel.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/scopes/ImageStatisticsPanel_p.h>
#include <KxUI/scopes/ScopeModelLink_p.h>

#include <QApplication>
#include <QClipboard>
#include <QEvent>
#include <QKeyEvent>

#include <algorithm>

namespace Kestrel::UI {

ImageStatisticsPanel::ImageStatisticsPanel(QWidget* parent)
    : QWidget(parent)
    , d(std::make_unique<ImageStatisticsPanelPrivate>(this)) {}

ImageStatisticsPanel::~ImageStatisticsPanel() {
    if (d->model)
        d->model->require(this, {});
}

ScopeModel* ImageStatisticsPanel::model() const {
    return d->model;
}

void ImageStatisticsPanel::setModel(ScopeModel* model) {
    KXUI_INTERFACE_THREAD(this);
    if (!borrowScopeModel(this, *d, d->model, model))
        return;
    if (model) {
        connect(model, &ScopeModel::found, this, [this](const QObject* who, const QPoint& pixel) {
            if (who == this)
                Q_EMIT pixelRequested(pixel);
        });
    }
    d->modelGone();
}

ScopeUnit ImageStatisticsPanel::unit() const {
    return d->unit;
}

void ImageStatisticsPanel::setUnit(ScopeUnit unit) {
    KXUI_INTERFACE_THREAD(this);
    if (d->unit == unit || int(unit) < 0 || int(unit) >= ScopeUnitCount)
        return;
    d->unit = unit;
    d->changeForm();
    Q_EMIT unitChanged();
}

int ImageStatisticsPanel::precision() const {
    return d->precision;
}

void ImageStatisticsPanel::setPrecision(int digits) {
    KXUI_INTERFACE_THREAD(this);
    constexpr int Most = 9;
    const int wanted = std::clamp(digits, -1, Most);
    if (d->precision == wanted)
        return;
    d->precision = wanted;
    d->changeForm();
    Q_EMIT precisionChanged(wanted);
}

ImageStatisticsPanel::Columns ImageStatisticsPanel::columns() const {
    return d->columns;
}

void ImageStatisticsPanel::setColumns(Columns columns) {
    KXUI_INTERFACE_THREAD(this);
    const Columns known = columns & Columns(AllColumns);
    if (d->columns == known)
        return;
    d->columns = known;
    d->changeForm();
    Q_EMIT columnsChanged(known);
}

QString ImageStatisticsPanel::columnText(Column column) {
    return ScopeStatisticsModel::columnText(column);
}

bool ImageStatisticsPanel::showDifference() const {
    return d->showDifference;
}

void ImageStatisticsPanel::setShowDifference(bool show) {
    KXUI_INTERFACE_THREAD(this);
    if (d->showDifference == show)
        return;
    d->showDifference = show;
    d->refresh();
    Q_EMIT showDifferenceChanged(show);
}

QString ImageStatisticsPanel::toText(QChar separator) const {
    const ScopeStatisticsModel& table = d->table;
    QString text = tr("Channel");
    for (int column = 0; column < table.columnCount(); ++column)
        text += separator + table.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
    text += QLatin1Char('\n');
    for (int row = 0; row < table.rowCount(); ++row) {
        text += table.headerData(row, Qt::Vertical, Qt::DisplayRole).toString();
        for (int column = 0; column < table.columnCount(); ++column)
            text += separator + table.text(row, column, true);
        text += QLatin1Char('\n');
    }
    return text;
}

QSize ImageStatisticsPanel::sizeHint() const {
    return {640, 240};
}

void ImageStatisticsPanel::copy() {
    QApplication::clipboard()->setText(toText());
}

void ImageStatisticsPanel::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    d->askModel();
    d->refresh();
}

void ImageStatisticsPanel::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    d->askModel();
}

void ImageStatisticsPanel::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        d->takePalette();
    else if (event->type() == QEvent::LanguageChange || event->type() == QEvent::LocaleChange)
        d->changeForm();
}

void ImageStatisticsPanel::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy))
        copy();
    else
        QWidget::keyPressEvent(event);
}

} // namespace Kestrel::UI
