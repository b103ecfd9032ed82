#pragma once

#include <KxUI/Export.h>
#include <KxUI/picker/ColorValue.h>
#include <KxUI/picker/DisplayTransform.h>

#include <QAbstractListModel>
#include <QByteArray>

#include <memory>

namespace Kestrel::UI {

class SwatchModelPrivate;

/** A list of colours, each with a name or without one: a palette, or the colours that were used
    last. Any view shows it, and drags its rows about; `SwatchGrid` is made for it.

    Roles: the name is `Qt::DisplayRole` and `Qt::EditRole`; a QColor of what the screen shows is
    `Qt::DecorationRole`; both texts of a colour are `Qt::ToolTipRole`. Colours, but no names, have
    to be finite; alpha is limited to 0-1. A name is one line of at most 256 characters without
    spaces around it. There are at most 16,384 colours; what goes beyond is not taken.

    Palettes, whose codes are what the screen shows, are read and written through the display
    transform. Interface thread. */
class KXUI_EXPORT SwatchModel : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    /** What data() tells besides name and picture. */
    enum Role {
        ColorRole = Qt::UserRole ///< the `ColorValue`; can be set
    };

    /** How a list is written. */
    enum Form {
        OwnForm = 0,    ///< all of each colour, and its name
        PaletteForm = 1 ///< "GIMP Palette": codes of eight bits without alpha, for other programs
    };
    Q_ENUM(Form)

    /** How many colours without a name remember() keeps. */
    static constexpr int MostRemembered = 24;

    /** An empty list. */
    explicit SwatchModel(QObject* parent = nullptr);
    ~SwatchModel() override;

    /** How many colours there are. */
    int count() const;

    /** A colour and its name; black and an empty one for a row that is not there. */
    ColorValue color(int row) const;
    QString name(int row) const;

    /** Adds a colour at the end. False where it can not be taken. */
    bool append(const ColorValue& color, const QString& name = QString());
    /** Adds a colour before that row, which is limited to those there are. False where it can not
        be taken. */
    bool insert(int row, const ColorValue& color, const QString& name = QString());

    /** Adds a colour that was used, at the beginning: nothing where the first one is the same; one
        of the same further behind moves there. The oldest ones without a name go where there are
        more than `MostRemembered`; those with a name stay, and a colour that has one is not
        added again. */
    void remember(const ColorValue& color);

    /** What palettes, and colours for other programs, go through. None at first. */
    DisplayTransform displayTransform() const;
    void setDisplayTransform(const DisplayTransform& transform);

    /** Replaces the list by that of a file, of either form. False where it can not be read at all,
        and the list as it was. Lines without a colour are left out. `error`, if given, is told what
        was not read and in which lines, for the user, also where the rest was; empty where all
        was. Waits for the disk: where that may be slow, read the file in another thread and call
        setContent(). */
    bool load(const QString& path, QString* error = nullptr);
    /** Writes the list to a file: as `PaletteForm` where its name ends in ".gpl", else as `OwnForm`.
        Where that fails, `error`, if given, is told why, and what was there stays as it was. Waits
        for the disk, as load(). */
    bool save(const QString& path, QString* error = nullptr) const;

    /** The same with the bytes of such a file. */
    bool setContent(const QByteArray& bytes, QString* error = nullptr);
    QByteArray content(Form form = OwnForm) const;

    /** Reimplemented from Qt. */
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QHash<int, QByteArray> roleNames() const override;
    bool removeRows(int row, int count, const QModelIndex& parent = QModelIndex()) override;
    bool moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                  const QModelIndex& destinationParent, int destinationChild) override;
    QStringList mimeTypes() const override;
    QMimeData* mimeData(const QModelIndexList& indexes) const override;
    bool canDropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                         const QModelIndex& parent) const override;
    bool dropMimeData(const QMimeData* data, Qt::DropAction action, int row, int column,
                      const QModelIndex& parent) override;
    Qt::DropActions supportedDropActions() const override;

public Q_SLOTS:
    /** Removes all. */
    void clear();

Q_SIGNALS:
    /** There are more colours, or fewer. */
    void countChanged(int count);

private:
    friend class SwatchModelPrivate;

    const std::unique_ptr<SwatchModelPrivate> d;
};

} // namespace Kestrel::UI
