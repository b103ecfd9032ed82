#pragma once

#include <QString>

#include <optional>
#include <vector>

class QSettings;

namespace Kestrel::UI {

/** What a browser looks like, as it is remembered. */
struct BrowserMemory {
    struct Column {
        int column = 0; ///< FileListModel::Column
        int width = 0;  ///< 0 for what fits
        bool isShown = true;
    };

    int view = 0; ///< FileBrowser::ViewMode
    std::vector<Column>
        columns;    ///< each once, from the first on; empty where nothing is remembered
    int sorted = 0; ///< the column
    bool isDescending = false;
    bool showsHidden = false;
    bool foldsSequences = true;
    int side = 0; ///< width of what is beside the list, 0 for what fits

    /** "0:0 2:60 -1:90": columns and widths, those that are hidden behind a dash. */
    static QString written(const std::vector<Column>& columns);

    /** Nothing for what written() does not write; what it leaves out comes last, hidden. */
    static std::optional<std::vector<Column>> columnsOf(const QString& text);

    void save(QSettings& settings, const QString& key) const;

    /** What is missing or makes no sense is as it was. */
    void load(QSettings& settings, const QString& key);
};

} // namespace Kestrel::UI
