#pragma once

#include <KxUI/browse/BrowserState_p.h>
#include <KxUI/files/FileListing.h>

#include <QString>

namespace Kestrel::UI::BrowserTexts {

/** What is listed, or selected. */
struct Sum {
    int folders = 0;
    int sequences = 0;
    int files = 0;
    std::uint64_t bytes = 0; ///< as long as all sizes are known
    bool isEstimate = false;
    bool isUnknown = false; ///< the size of some

    int rows() const { return folders + sequences + files; }

    /** An item without its size. */
    void count(FileListing::Kind kind);
    void add(const FileListing& listing, int item);
};

/** "12 folders, 3 sequences, 40 files". */
QString listed(const Sum& sum);

/** "2 selected, ≈ 14 GB". */
QString selected(const Sum& sum);

/** "Folder read, 12 items": what is said of it. */
QString read(int rows);

/** "Reading: 12,000 entries". */
QString reading(std::int64_t entries);

/** The words of a notice; those of an error tell how far the reading came. */
QString notice(BrowserNotice notice, const FileListing& listing, const QString& search);

} // namespace Kestrel::UI::BrowserTexts
