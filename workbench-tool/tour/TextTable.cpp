#include "tour/TextTable.h"

#include <algorithm>

namespace Kestrel::Workbench {

TextTable::TextTable(QStringList header) {
    m_rows.push_back(std::move(header));
}

void TextTable::add(QStringList row) {
    m_rows.push_back(std::move(row));
}

QString TextTable::text() const {
    QString text;
    for (const QStringList& row : m_rows) {
        QString line;
        for (int column = 0; column < row.size(); ++column) {
            int width = 0;
            for (const QStringList& other : m_rows)
                width = std::max(width, int(other.value(column).size()));
            line += column == 0 ? row[column].leftJustified(width)
                                : QStringLiteral("  ") + row[column].rightJustified(width);
        }
        while (line.endsWith(QLatin1Char(' ')))
            line.chop(1);
        text += line + QLatin1Char('\n');
    }
    return text;
}

} // namespace Kestrel::Workbench
