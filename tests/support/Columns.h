#pragma once

#include <QtTest>

namespace Kestrel::Test {

/** The columns of a data-driven test; called with a name and a value for each, it adds a row. */
template <class... Types>
class Columns {
public:
    template <class... Names>
    explicit Columns(Names... names) {
        (QTest::addColumn<Types>(names), ...);
    }

    void operator()(const char* row, const Types&... values) const {
        (QTest::newRow(row) << ... << values);
    }
};

/** A row for every seed from 1, of a test that draws its input by lot. */
inline void addSeeds(unsigned count) {
    QTest::addColumn<unsigned>("seed");
    for (unsigned seed = 1; seed <= count; ++seed)
        QTest::addRow("seed %u", seed) << seed;
}

} // namespace Kestrel::Test
