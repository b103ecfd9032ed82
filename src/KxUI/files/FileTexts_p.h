#pragma once

#include <KxUI/files/FileListing.h>

#include <QDateTime>
#include <QString>

namespace Kestrel::UI::FileTexts {

/** A name as it is shown: on one line, in the order of its letters, whatever its bytes are. */
QString name(std::string_view bytes);

/** "1001-1100" or "1-99,2"; empty for what is no sequence. Digits are never grouped. */
QString frames(const FileListing::Item& item);

/** "1-3 5-10". */
QString ranges(const std::vector<Base::FrameRange>& ranges);

/** A size in steps of 1,024 bytes, with a sign where it is an estimate. */
QString size(std::uint64_t bytes, bool isEstimate);

/** A time by the day of `now`. */
QString time(const QDateTime& time, const QDateTime& now);

/** "Folder", "OpenEXR sequence", "TXT file". */
QString type(const FileListing::Item& item);

/** A row to be read aloud. */
QString spoken(const FileListing& listing, int index, const QDateTime& now);

/** Words of the columns. */
QString column(int column);

} // namespace Kestrel::UI::FileTexts
