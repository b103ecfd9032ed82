#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace Kestrel::Workbench {

/** Columns of text for a terminal: the first one aligned left, the others right. */
class TextTable {
public:
    explicit TextTable(QStringList header);

    /** Adds a row of as many cells as the header has. */
    void add(QStringList row);

    /** The table, two blanks between columns, each line ended. */
    QString text() const;

private:
    std::vector<QStringList> m_rows;
};

} // namespace Kestrel::Workbench
