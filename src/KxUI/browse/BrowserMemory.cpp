#include <KxUI/browse/BrowserMemory_p.h>

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/files/FileListModel.h>

#include <QSettings>
#include <QStringList>

#include <algorithm>

namespace Kestrel::UI {
namespace {

constexpr int WidestColumn = 4000;

std::optional<BrowserMemory::Column> columnOf(const QString& text) {
    BrowserMemory::Column column;
    column.isShown = !text.startsWith(QLatin1Char('-'));
    const QStringList parts = text.mid(column.isShown ? 0 : 1).split(QLatin1Char(':'));
    if (parts.size() != 2)
        return {};
    bool isNumber = false;
    bool isWidth = false;
    column.column = parts.at(0).toInt(&isNumber);
    column.width = parts.at(1).toInt(&isWidth);
    if (!isNumber || !isWidth || column.column < 0 || column.column >= FileListModel::ColumnCount ||
        column.width < 0 || column.width > WidestColumn)
        return {};
    return column;
}

} // namespace

QString BrowserMemory::written(const std::vector<Column>& columns) {
    QStringList parts;
    for (const Column& each : columns)
        parts << QStringLiteral("%1%2:%3")
                     .arg(each.isShown ? QString() : QStringLiteral("-"))
                     .arg(each.column)
                     .arg(each.width);
    return parts.join(QLatin1Char(' '));
}

std::optional<std::vector<BrowserMemory::Column>> BrowserMemory::columnsOf(const QString& text) {
    std::vector<Column> columns;
    const auto has = [&](int column) {
        return std::any_of(columns.begin(), columns.end(),
                           [=](const Column& each) { return each.column == column; });
    };
    for (const QString& part : text.simplified().split(QLatin1Char(' '))) {
        const auto column = columnOf(part);
        if (!column || has(column->column))
            return {};
        columns.push_back(*column);
    }
    // The names come first and are never hidden: they are what the rest is about.
    if (columns.front().column != FileListModel::Name || !columns.front().isShown)
        return {};
    for (int column = 0; column < FileListModel::ColumnCount; ++column) {
        if (!has(column))
            columns.push_back({column, 0, false});
    }
    return columns;
}

void BrowserMemory::save(QSettings& settings, const QString& key) const {
    settings.beginGroup(key);
    settings.setValue(QStringLiteral("View"), view);
    settings.setValue(QStringLiteral("Columns"), written(columns));
    settings.setValue(QStringLiteral("SortedBy"), sorted);
    settings.setValue(QStringLiteral("Descending"), isDescending);
    settings.setValue(QStringLiteral("ShowHidden"), showsHidden);
    settings.setValue(QStringLiteral("FoldSequences"), foldsSequences);
    settings.setValue(QStringLiteral("Side"), side);
    settings.endGroup();
}

void BrowserMemory::load(QSettings& settings, const QString& key) {
    settings.beginGroup(key);
    const auto number = [&](const char* name, int now, int most) {
        bool isNumber = false;
        const int value = settings.value(QLatin1String(name), now).toInt(&isNumber);
        return isNumber && value >= 0 && value <= most ? value : now;
    };
    view = number("View", view, FileBrowser::Thumbnails);
    sorted = number("SortedBy", sorted, FileListModel::ColumnCount - 1);
    side = number("Side", side, WidestColumn);
    isDescending = settings.value(QStringLiteral("Descending"), isDescending).toBool();
    showsHidden = settings.value(QStringLiteral("ShowHidden"), showsHidden).toBool();
    foldsSequences = settings.value(QStringLiteral("FoldSequences"), foldsSequences).toBool();
    if (auto known = columnsOf(settings.value(QStringLiteral("Columns")).toString()))
        columns = std::move(*known);
    settings.endGroup();
}

} // namespace Kestrel::UI
