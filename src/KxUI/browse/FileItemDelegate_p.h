#pragma once

#include <KxUI/browse/FileBrowser.h>
#include <KxUI/files/FileListing.h>

#include <QStyledItemDelegate>

namespace Kestrel::UI {

class FileListModel;
class ThumbnailLoader;

/** Draws the rows of a browser in each of its views, and edits their names. */
class FileItemDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    FileItemDelegate(FileListModel* model, ThumbnailLoader* pictures, QObject* parent);

    FileBrowser::ViewMode look() const { return m_look; }
    void setLook(FileBrowser::ViewMode look) { m_look = look; }

    /** What frames of a sequence are missing: "3 missing". */
    static QString missingText(const FileListing::Item& item);

    /** Of an icon for an item. */
    static QString iconName(const FileListing& listing, int item);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const override;

Q_SIGNALS:
    /** The user gave an item another name. */
    void renamed(const QByteArray& name, const QString& newName) const;
    /** A name is being edited, as long as this lives. */
    void editing(QWidget* editor) const;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    struct Row;

    Row rowOf(const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintCompact(QPainter& painter, const QStyleOptionViewItem& option, const Row& row) const;
    void paintThumbnail(QPainter& painter, const QStyleOptionViewItem& option,
                        const Row& row) const;
    void paintPicture(QPainter& painter, const QRect& frame, const Row& row) const;

    FileListModel* const m_model;
    ThumbnailLoader* const m_pictures;
    FileBrowser::ViewMode m_look = FileBrowser::Details;
};

} // namespace Kestrel::UI
