#pragma once

#include <KxUI/picker/DisplayCall_p.h>

#include <QByteArray>
#include <QString>

#include <vector>

/** \file
    Colours with names as files have them: in this library's own form, which keeps all of a colour,
    and as the palettes that many paint programs read, whose codes of eight bits are what the screen
    shows. The form of a file is told by its first line. */

namespace Kestrel::UI {

/** A colour, and what it is called. */
struct Swatch {
    QString name;
    ColorValue color;
};

/** What a file may ask of its reader. */
struct SwatchLimits {
    static constexpr qint64 Bytes = 4 << 20;
    static constexpr int Count = 16384;
    static constexpr int NameLength = 256;
};

enum class SwatchForm {
    Own,    ///< "r g b a name" in each line, after a first one
    Palette ///< "GIMP Palette"
};

/** What was read of a file. */
struct SwatchReading {
    std::vector<Swatch> swatches;
    QString error;       ///< what could not be read, for the user; empty where all was
    bool isRead = false; ///< else the file is no such file at all
};

/** A name as it is kept: in one line, without spaces around it, and not too long. */
QString swatchName(const QString& name);

/** The form that a file of this name has. */
SwatchForm swatchFormOf(const QString& path);

SwatchReading readSwatches(const QByteArray& bytes, const DisplayCall& display);
QByteArray writeSwatches(const std::vector<Swatch>& swatches, SwatchForm form,
                         const DisplayCall& display, const QString& title);

/** Waits for the disk. Reads none but plain files, and no long ones. */
SwatchReading loadSwatches(const QString& path, const DisplayCall& display);
/** Waits for the disk. An error for the user; empty where the file is written. What was there
    before stays until all of the new file is. */
QString saveSwatches(const QString& path, const std::vector<Swatch>& swatches,
                     const DisplayCall& display);

} // namespace Kestrel::UI
