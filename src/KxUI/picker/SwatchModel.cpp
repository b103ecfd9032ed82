#include <KxUI/picker/SwatchModel.h>

#include <KxUI/kit/InterfaceThread_p.h>
#include <KxUI/picker/ColorMime_p.h>
#include <KxUI/picker/SwatchFile_p.h>
#include <KxUI/picker/SwatchPainting_p.h>

#include <QMimeData>
#include <QPointer>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {

/** The data of a SwatchModel. */
class SwatchModelPrivate {
public:
    explicit SwatchModelPrivate(SwatchModel* model)
        : q(model) {}

    int count() const { return static_cast<int>(swatches.size()); }
    bool has(int row) const { return row >= 0 && row < count(); }
    Swatch& at(int row) { return swatches[static_cast<std::size_t>(row)]; }

    /** Replaces all of them. */
    void reset(std::vector<Swatch> now);
    bool take(SwatchReading reading, QString* error);
    void tell(int row, const QVector<int>& roles);
    /** Removes the oldest ones without a name. */
    void forget();

    std::vector<Swatch> swatches;
    DisplayCall display;

private:
    SwatchModel* const q;
};

void SwatchModelPrivate::reset(std::vector<Swatch> now) {
    const QPointer<SwatchModel> alive(q);
    const int before = count();
    q->beginResetModel();
    swatches = std::move(now);
    q->endResetModel();
    if (alive && count() != before)
        Q_EMIT q->countChanged(count());
}

bool SwatchModelPrivate::take(SwatchReading reading, QString* error) {
    if (error)
        *error = reading.error;
    if (reading.isRead)
        reset(std::move(reading.swatches));
    return reading.isRead;
}

void SwatchModelPrivate::tell(int row, const QVector<int>& roles) {
    const QModelIndex index = q->index(row);
    Q_EMIT q->dataChanged(index, index, roles);
}

void SwatchModelPrivate::forget() {
    const QPointer<SwatchModel> alive(q);
    int nameless =
        static_cast<int>(std::count_if(swatches.begin(), swatches.end(),
                                       [](const Swatch& swatch) { return swatch.name.isEmpty(); }));
    for (int row = count() - 1; alive && nameless > SwatchModel::MostRemembered && row >= 0;
         --row) {
        if (row < count() && at(row).name.isEmpty()) {
            q->removeRows(row, 1);
            --nameless;
        }
    }
}

SwatchModel::SwatchModel(QObject* parent)
    : QAbstractListModel(parent)
    , d(std::make_unique<SwatchModelPrivate>(this)) {
    qRegisterMetaType<ColorValue>();
}

SwatchModel::~SwatchModel() = default;

int SwatchModel::count() const {
    return d->count();
}

ColorValue SwatchModel::color(int row) const {
    return d->has(row) ? d->at(row).color : ColorValue();
}

QString SwatchModel::name(int row) const {
    return d->has(row) ? d->at(row).name : QString();
}

bool SwatchModel::append(const ColorValue& color, const QString& name) {
    return insert(count(), color, name);
}

bool SwatchModel::insert(int row, const ColorValue& color, const QString& name) {
    KXUI_INTERFACE_THREAD(this);
    if (!isFinite(color) || count() >= SwatchLimits::Count)
        return false;
    Swatch swatch{swatchName(name), color};
    swatch.color.alpha = std::clamp(color.alpha, 0.0F, 1.0F);
    const int at = std::clamp(row, 0, count());
    const QPointer<SwatchModel> alive(this);
    beginInsertRows({}, at, at);
    d->swatches.insert(d->swatches.begin() + at, std::move(swatch));
    endInsertRows();
    if (alive)
        Q_EMIT countChanged(count());
    return true;
}

void SwatchModel::remember(const ColorValue& color) {
    KXUI_INTERFACE_THREAD(this);
    const auto found = std::find_if(d->swatches.begin(), d->swatches.end(),
                                    [&](const Swatch& each) { return each.color == color; });
    const QPointer<SwatchModel> alive(this);
    if (found == d->swatches.end()) {
        if (insert(0, color) && alive)
            d->forget();
    } else if (found->name.isEmpty()) {
        moveRows({}, static_cast<int>(found - d->swatches.begin()), 1, {}, 0);
    }
}

DisplayTransform SwatchModel::displayTransform() const {
    return d->display.transform();
}

void SwatchModel::setDisplayTransform(const DisplayTransform& transform) {
    KXUI_INTERFACE_THREAD(this);
    d->display = DisplayCall(transform);
    if (count() > 0)
        Q_EMIT dataChanged(index(0), index(count() - 1), {Qt::DecorationRole, Qt::ToolTipRole});
}

bool SwatchModel::load(const QString& path, QString* error) {
    KXUI_INTERFACE_THREAD(this);
    return d->take(loadSwatches(path, d->display), error);
}

bool SwatchModel::save(const QString& path, QString* error) const {
    const QString problem = saveSwatches(path, d->swatches, d->display);
    if (error)
        *error = problem;
    return problem.isEmpty();
}

bool SwatchModel::setContent(const QByteArray& bytes, QString* error) {
    KXUI_INTERFACE_THREAD(this);
    if (bytes.size() <= SwatchLimits::Bytes)
        return d->take(readSwatches(bytes, d->display), error);
    if (error)
        *error = tr("The file is too large.");
    return false;
}

QByteArray SwatchModel::content(Form form) const {
    return writeSwatches(d->swatches, form == PaletteForm ? SwatchForm::Palette : SwatchForm::Own,
                         d->display, objectName());
}

int SwatchModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant SwatchModel::data(const QModelIndex& index, int role) const {
    if (index.model() != this || !d->has(index.row()))
        return {};
    const Swatch& swatch = d->at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return swatch.name;
    case ColorRole:
        return QVariant::fromValue(swatch.color);
    case Qt::DecorationRole:
        return shownColor(swatch.color, d->display);
    case Qt::ToolTipRole: {
        const QString words = colorWords(swatch.color, d->display);
        return swatch.name.isEmpty() ? words : swatch.name + QLatin1Char('\n') + words;
    }
    default:
        return {};
    }
}

bool SwatchModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    KXUI_INTERFACE_THREAD(this);
    if (index.model() != this || !d->has(index.row()))
        return false;
    Swatch& swatch = d->at(index.row());
    if (role == Qt::EditRole || role == Qt::DisplayRole) {
        const QString name = swatchName(value.toString());
        if (std::exchange(swatch.name, name) != name)
            d->tell(index.row(), {Qt::DisplayRole, Qt::EditRole, Qt::ToolTipRole});
        return true;
    }
    if (role != ColorRole || !value.canConvert<ColorValue>())
        return false;
    auto color = value.value<ColorValue>();
    if (!isFinite(color))
        return false;
    color.alpha = std::clamp(color.alpha, 0.0F, 1.0F);
    if (std::exchange(swatch.color, color) != color)
        d->tell(index.row(), {ColorRole, Qt::DecorationRole, Qt::ToolTipRole});
    return true;
}

Qt::ItemFlags SwatchModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags inherited = QAbstractListModel::flags(index);
    return index.isValid() ? inherited | Qt::ItemIsEditable | Qt::ItemIsDragEnabled
                           : inherited | Qt::ItemIsDropEnabled;
}

QHash<int, QByteArray> SwatchModel::roleNames() const {
    QHash<int, QByteArray> names = QAbstractListModel::roleNames();
    names.insert(ColorRole, QByteArrayLiteral("color"));
    return names;
}

bool SwatchModel::removeRows(int row, int count, const QModelIndex& parent) {
    KXUI_INTERFACE_THREAD(this);
    if (parent.isValid() || row < 0 || count <= 0 || row > d->count() - count)
        return false;
    const QPointer<SwatchModel> alive(this);
    beginRemoveRows({}, row, row + count - 1);
    d->swatches.erase(d->swatches.begin() + row, d->swatches.begin() + row + count);
    endRemoveRows();
    if (alive)
        Q_EMIT countChanged(d->count());
    return true;
}

bool SwatchModel::moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                           const QModelIndex& destinationParent, int destinationChild) {
    KXUI_INTERFACE_THREAD(this);
    if (sourceParent.isValid() || destinationParent.isValid() || sourceRow < 0 || count <= 0 ||
        sourceRow > d->count() - count || destinationChild < 0 || destinationChild > d->count() ||
        !beginMoveRows({}, sourceRow, sourceRow + count - 1, {}, destinationChild))
        return false;
    const auto begin = d->swatches.begin();
    if (destinationChild < sourceRow)
        std::rotate(begin + destinationChild, begin + sourceRow, begin + sourceRow + count);
    else
        std::rotate(begin + sourceRow, begin + sourceRow + count, begin + destinationChild);
    endMoveRows();
    return true;
}

QStringList SwatchModel::mimeTypes() const {
    return {QStringLiteral("application/x-kxui-color"), QStringLiteral("application/x-color"),
            QStringLiteral("text/plain")};
}

QMimeData* SwatchModel::mimeData(const QModelIndexList& indexes) const {
    if (indexes.isEmpty() || !d->has(indexes.first().row()))
        return nullptr;
    const Swatch& swatch = d->at(indexes.first().row());
    return colorMime(swatch.color, d->display, swatch.name).release();
}

bool SwatchModel::canDropMimeData(const QMimeData* data, Qt::DropAction action, int, int,
                                  const QModelIndex& parent) const {
    return (action & supportedDropActions()) && !parent.isValid() &&
           colorIn(data, d->display, 1.0F);
}

bool SwatchModel::dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int,
                               const QModelIndex& parent) {
    if (action == Qt::IgnoreAction)
        return true;
    const std::optional<ColorValue> color = colorIn(data, d->display, 1.0F);
    if (!color || !(action & supportedDropActions()))
        return false;
    const int at = row >= 0 ? row : parent.isValid() ? parent.row() : count();
    return insert(at, *color, colorNameIn(data));
}

Qt::DropActions SwatchModel::supportedDropActions() const {
    return Qt::CopyAction | Qt::MoveAction;
}

void SwatchModel::clear() {
    KXUI_INTERFACE_THREAD(this);
    if (count() > 0)
        d->reset({});
}

} // namespace Kestrel::UI
