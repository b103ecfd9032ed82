#include <KxUI/browse/FileItemDelegate_p.h>

#include <KxUI/browse/FileCellLayout_p.h>
#include <KxUI/browse/ThumbnailLoader_p.h>
#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileTexts_p.h>
#include <KxUI/kit/ColorContrast_p.h>
#include <KxUI/kit/IconFactory.h>

#include <QApplication>
#include <QLineEdit>
#include <QPainter>

namespace Kestrel::UI {
namespace {

using Kind = FileListing::Kind;
using Status = FileListing::Status;

/** Colours of a cell by what it stands on. */
struct Inks {
    QColor text;
    QColor quiet;   ///< of what is said beside the name
    QColor warning; ///< of frames that are missing
};

Inks inksOf(const QStyleOptionViewItem& option) {
    const QPalette& palette = option.palette;
    const QPalette::ColorGroup group = !(option.state & QStyle::State_Enabled) ? QPalette::Disabled
                                       : option.state & QStyle::State_Active   ? QPalette::Active
                                                                               : QPalette::Inactive;
    Inks inks;
    if (option.state & QStyle::State_Selected) {
        inks.text = palette.color(group, QPalette::HighlightedText);
        inks.quiet = inks.text;
        inks.warning = inks.text;
        return inks;
    }
    const QColor ground = palette.color(group, QPalette::Base);
    const QColor striped = palette.color(group, QPalette::AlternateBase);
    inks.text = palette.color(group, QPalette::Text);
    if (group == QPalette::Disabled) {
        inks.quiet = inks.text;
        inks.warning = inks.text;
        return inks;
    }
    inks.quiet = firstVisible({mixed(inks.text, ground, 0.35), inks.text}, {ground, striped},
                              ReadableContrast);
    inks.warning = firstVisible({QColor(217, 150, 60), QColor(150, 84, 0), inks.text},
                                {ground, striped}, ReadableContrast);
    return inks;
}

QStyle* styleOf(const QStyleOptionViewItem& option) {
    return option.widget ? option.widget->style() : QApplication::style();
}

bool isGone(const Status& status) {
    return status.known == Status::Gone || status.isBrokenLink;
}

// How much of a name is likely to be changed: not its extension, nor the place of the frame.
int stemOf(const QString& name, Kind kind) {
    auto end = kind == Kind::Directory ? name.size() : name.lastIndexOf(QLatin1Char('.'));
    if (kind == Kind::Sequence) {
        end = name.lastIndexOf(QLatin1Char('#'));
        while (end > 0 && name.at(end - 1) == QLatin1Char('#'))
            --end;
        if (end > 0 && !name.at(end - 1).isLetterOrNumber())
            --end;
    }
    return static_cast<int>(end > 0 ? end : name.size());
}

} // namespace

/** What is drawn of an item where there are no columns. */
struct FileItemDelegate::Row {
    std::shared_ptr<const FileListing> listing;
    int item = 0;
    Inks inks;
    QString name;
    QString frames;
    QString missing;

    QString facts() const {
        return missing.isEmpty() ? frames : frames + QStringLiteral("  ") + missing;
    }
};

FileItemDelegate::FileItemDelegate(FileListModel* model, ThumbnailLoader* pictures, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_model(model)
    , m_pictures(pictures) {}

QString FileItemDelegate::missingText(const FileListing::Item& item) {
    return item.missing > 0 ? FileBrowser::tr("%1 missing").arg(item.missing) : QString();
}

QString FileItemDelegate::iconName(const FileListing& listing, int item) {
    switch (listing.item(item).kind) {
    case Kind::Directory:
        return listing.status(item).isLink ? QStringLiteral("BrowseFolderLink")
                                           : QStringLiteral("BrowseFolder");
    case Kind::Sequence:
        return QStringLiteral("BrowseSequence");
    case Kind::Unknown:
        return QStringLiteral("BrowseLink");
    case Kind::File:
        break;
    }
    return QStringLiteral("BrowseFile");
}

void FileItemDelegate::initStyleOption(QStyleOptionViewItem* option,
                                       const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const auto listing = m_model->listing();
    const int item = m_model->itemOf(index.row());
    const Inks inks = inksOf(*option);
    QColor ink = index.column() == FileListModel::Name ? inks.text : inks.quiet;
    if (index.column() == FileListModel::Name) {
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->icon = IconFactory::icon(iconName(*listing, item));
        option->decorationSize = QSize(FileCellLayout::IconSide, FileCellLayout::IconSide);
        option->textElideMode = Qt::ElideMiddle;
    } else if (index.column() == FileListModel::Missing) {
        ink = inks.warning;
    }
    if (isGone(listing->status(item)))
        ink = option->palette.color(QPalette::Disabled, QPalette::Text);
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        option->palette.setColor(group, QPalette::Text, ink);
}

FileItemDelegate::Row FileItemDelegate::rowOf(const QStyleOptionViewItem& option,
                                              const QModelIndex& index) const {
    Row row;
    row.listing = m_model->listing();
    row.item = m_model->itemOf(index.row());
    const FileListing::Item& item = row.listing->item(row.item);
    row.inks = inksOf(option);
    if (isGone(row.listing->status(row.item)))
        row.inks.text = option.palette.color(QPalette::Disabled, QPalette::Text);
    row.name = FileTexts::name(item.name);
    row.frames = FileTexts::frames(item);
    row.missing = missingText(item);
    return row;
}

void FileItemDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
    if (m_look == FileBrowser::Details) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    const Row row = rowOf(option, index);
    painter->save();
    styleOf(option)->drawPrimitive(QStyle::PE_PanelItemViewItem, &option, painter, option.widget);
    if (m_look == FileBrowser::Compact)
        paintCompact(*painter, option, row);
    else
        paintThumbnail(*painter, option, row);
    if (option.state & QStyle::State_HasFocus && option.state & QStyle::State_KeyboardFocusChange) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(option);
        focus.backgroundColor = option.palette.color(QPalette::Base);
        styleOf(option)->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
    }
    painter->restore();
}

void FileItemDelegate::paintCompact(QPainter& painter, const QStyleOptionViewItem& option,
                                    const Row& row) const {
    const QFontMetrics& metrics = option.fontMetrics;
    const bool isRightToLeft = option.direction == Qt::RightToLeft;
    const auto cell =
        FileCellLayout::compact(option.rect, metrics.horizontalAdvance(row.facts()), isRightToLeft);
    const bool isSelected = option.state & QStyle::State_Selected;
    IconFactory::icon(iconName(*row.listing, row.item))
        .paint(&painter, cell.picture, Qt::AlignCenter,
               isSelected ? QIcon::Selected : QIcon::Normal);
    painter.setPen(row.inks.text);
    painter.drawText(cell.name, Qt::AlignVCenter | Qt::AlignLeading,
                     metrics.elidedText(row.name, Qt::ElideMiddle, cell.name.width()));
    painter.setPen(row.inks.quiet);
    QRect rest = cell.facts;
    painter.drawText(
        rest, Qt::AlignVCenter | (row.missing.isEmpty() ? Qt::AlignTrailing : Qt::AlignLeading),
        row.missing.isEmpty() ? metrics.elidedText(row.frames, Qt::ElideRight, rest.width())
                              : row.frames);
    if (row.missing.isEmpty())
        return;
    const int frames = metrics.horizontalAdvance(row.frames + QStringLiteral("  "));
    rest.adjust(isRightToLeft ? 0 : frames, 0, isRightToLeft ? -frames : 0, 0);
    painter.setPen(row.inks.warning);
    painter.drawText(rest, Qt::AlignVCenter | Qt::AlignTrailing,
                     metrics.elidedText(row.missing, Qt::ElideRight, rest.width()));
}

void FileItemDelegate::paintPicture(QPainter& painter, const QRect& frame, const Row& row) const {
    const QImage picture = m_pictures->picture(*row.listing, row.item);
    if (picture.isNull()) {
        constexpr int side = 32;
        QRect place(0, 0, side, side);
        place.moveCenter(frame.center());
        IconFactory::icon(iconName(*row.listing, row.item)).paint(&painter, place);
        return;
    }
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QRect place = FileCellLayout::fitted(QSizeF(picture.size()) / ratio, frame);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, picture);
}

void FileItemDelegate::paintThumbnail(QPainter& painter, const QStyleOptionViewItem& option,
                                      const Row& row) const {
    const QFontMetrics& metrics = option.fontMetrics;
    const auto cell = FileCellLayout::thumbnail(option.rect, metrics.height());
    paintPicture(painter, cell.picture, row);
    painter.setPen(row.inks.text);
    painter.drawText(cell.name, Qt::AlignCenter,
                     metrics.elidedText(row.name, Qt::ElideMiddle, cell.name.width()));
    painter.setPen(row.missing.isEmpty() ? row.inks.quiet : row.inks.warning);
    painter.drawText(cell.facts, Qt::AlignCenter,
                     metrics.elidedText(row.facts(), Qt::ElideRight, cell.facts.width()));
}

QSize FileItemDelegate::sizeHint(const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const {
    switch (m_look) {
    case FileBrowser::Compact:
        return FileCellLayout::compactSize(option.fontMetrics.height(),
                                           option.fontMetrics.averageCharWidth());
    case FileBrowser::Thumbnails:
        return FileCellLayout::thumbnailSize(option.fontMetrics.height(),
                                             option.fontMetrics.averageCharWidth());
    case FileBrowser::Details:
        break;
    }
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    // All rows alike, whatever font their names need.
    size.setHeight(std::max(option.fontMetrics.height(), FileCellLayout::IconSide) +
                   2 * FileCellLayout::Margin);
    return size;
}

QWidget* FileItemDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                        const QModelIndex&) const {
    auto* const field = new QLineEdit(parent);
    field->setAccessibleName(FileBrowser::tr("Name"));
    Q_EMIT editing(field);
    return field;
}

void FileItemDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* const field = static_cast<QLineEdit*>(editor);
    // News of the row do not overwrite what is being typed.
    if (field->isModified())
        return;
    const QString name = index.data(FileListModel::SearchTextRole).toString();
    if (field->text() == name)
        return;
    field->setText(name);
    // Later: the view selects all of what it begins to edit.
    const int stem =
        stemOf(name, static_cast<FileListing::Kind>(index.data(FileListModel::KindRole).toInt()));
    QMetaObject::invokeMethod(
        field, [field, stem] { field->setSelection(0, stem); }, Qt::QueuedConnection);
}

void FileItemDelegate::setModelData(QWidget* editor, QAbstractItemModel*,
                                    const QModelIndex& index) const {
    const auto* const field = static_cast<QLineEdit*>(editor);
    if (!field->isModified())
        return;
    Q_EMIT renamed(index.data(FileListModel::NameRole).toByteArray(), field->text());
}

void FileItemDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                            const QModelIndex& index) const {
    if (m_look == FileBrowser::Details) {
        QStyledItemDelegate::updateEditorGeometry(editor, option, index);
        return;
    }
    const bool isRightToLeft = option.direction == Qt::RightToLeft;
    QRect place = m_look == FileBrowser::Compact
                      ? FileCellLayout::compact(option.rect, 0, isRightToLeft).name
                      : FileCellLayout::thumbnail(option.rect, option.fontMetrics.height()).name;
    const int height = editor->sizeHint().height();
    place.adjust(-2, 0, 2, 0);
    place.moveTop(place.center().y() - height / 2);
    place.setHeight(height);
    editor->setGeometry(place);
}

} // namespace Kestrel::UI
