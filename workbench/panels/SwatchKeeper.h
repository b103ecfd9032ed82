#pragma once

#include <QObject>
#include <QString>
#include <QTimer>

namespace Kestrel::UI {
class SwatchModel;
} // namespace Kestrel::UI

namespace Kestrel::Workbench {

/** Keeps a list of swatches in a file: reads it at once and writes it soon after every change, both
    on a thread of its own. A file that is none of swatches is left alone, and the list is not kept
    then. Of a file that could be read in part a copy is kept beside it, before it is written. */
class SwatchKeeper : public QObject {
    Q_OBJECT

public:
    /** @param swatches  borrowed; outlives the keeper */
    SwatchKeeper(UI::SwatchModel* swatches, const QString& path, QObject* parent = nullptr);
    /** Writes what is not written yet, later. */
    ~SwatchKeeper() override;

    /** "swatches" beside the settings. */
    static QString standardPath();

    /** Adds the colours of a file of swatches or of a palette at the end, later. */
    void importFile(const QString& path);
    /** Writes all to a file, later: to a palette of other programs where its name ends in ".gpl". */
    void exportFile(const QString& path);

signals:
    /** What could not be read or written, for the user. */
    void failed(const QString& reason);

private:
    void take(const QByteArray& bytes);
    void add(const QString& path, const QByteArray& bytes);
    void save();
    void write(const QString& path, const QByteArray& bytes, bool keepsOld);

    UI::SwatchModel* m_swatches;
    QString m_path;
    QTimer m_rest;
    bool m_keeps = false;     ///< the file was read, or there was none
    bool m_isDamaged = false; ///< it has lines that could not be read
};

} // namespace Kestrel::Workbench
