#pragma once

#include <KxUI/charts/Chart_p.h>

#include <algorithm>
#include <vector>

/** \file
    How charts of one kind take series of one kind in, and give them back. */
namespace Kestrel::UI {

/** Gives `series` back, if it is one of `all`. */
template <class Series>
void giveBack(ChartPrivate& chart, std::vector<Series*>& all, Series* series) {
    const auto found = std::find(all.begin(), all.end(), series);
    if (found == all.end())
        return;
    all.erase(found);
    chart.release(series);
    chart.itemsChanged();
}

/** Takes `series` into `all`, from the other chart of the kind that has it; a series that is deleted
    leaves by itself. */
template <class Kind, class Series>
void takeIn(Kind* chart, ChartPrivate& facts, std::vector<Series*>& all, Series* series) {
    if (!series || std::find(all.begin(), all.end(), series) != all.end())
        return;
    if (auto* other = qobject_cast<Kind*>(series->parent()))
        other->removeSeries(series);
    all.push_back(series);
    facts.adopt(series);
    QObject::connect(series, &QObject::destroyed, chart, [&facts, &all](QObject* gone) {
        // Only its address is used: the rest of it is no more.
        all.erase(std::remove(all.begin(), all.end(), gone), all.end());
        facts.itemsChanged();
    });
    facts.itemsChanged();
}

} // namespace Kestrel::UI
