#pragma once

#include <QByteArray>
#include <QString>

#include <vector>

namespace Kestrel::Workbench {

/** An arrangement of the pages that comes with the program. */
struct BuiltInLayout {
    const char* id;
    /** In English, with the mnemonic; the reader sees its translation. */
    const char* name;
    /** The tree of splitters and panes, as in a layout document. */
    const char* tree;

    QString translatedName() const;

    /** The layout document; it leaves the window where and as large as it is. */
    QByteArray document() const;
};

/** Every layout; the first is the one that the program starts with. */
const std::vector<BuiltInLayout>& builtInLayouts();

} // namespace Kestrel::Workbench
