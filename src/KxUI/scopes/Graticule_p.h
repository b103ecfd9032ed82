#pragma once

#include <KxUI/scopes/ScopeReadout.h>
#include <KxUI/scopes/ScopeUnit.h>

#include <QLocale>
#include <QString>
#include <QVector>

#include <functional>
#include <vector>

namespace Kestrel::UI {

/** A line across a scope, at a value of the signal. */
struct GraticuleLine {
    enum Weight { Faint, Strong, Limit, User };

    double value = 0;
    double place = 0; ///< 0 at the lower end of the axis, 1 at the upper one
    Weight weight = Faint;
    QString text; ///< empty where there is no room for it
    QColor color; ///< of the user's own lines; may be invalid
};

/** What lines are planned for. */
struct GraticuleRules {
    ScopeUnit unit = ScopeUnit::Percent;
    ScopeEncoding encoding;
    bool chroma = false; ///< the axis is one of Cb or Cr
    double lower = 0;    ///< values at the ends of the axis
    double upper = 1;
    double length = 0;   ///< of the axis, in logical pixels
    bool limits = false; ///< with those of EBU R 103
    QVector<ScopeLine> userLines;
    /** Where a value lies on an axis that spreads others evenly; null: values are. */
    std::function<double(double)> position;
    /** Values to have lines at, in place of those of the unit. */
    std::vector<double> landmarks;
    /** The room that a text takes along the axis, in logical pixels; without it, none. */
    std::function<double(const QString&)> textLength;
    QLocale locale;
};

/** The lines within the axis, from the lowest. Those at the ends of the signal get their texts first,
    then the user's own; no two texts overlap. */
std::vector<GraticuleLine> planGraticule(const GraticuleRules& rules);

/** A value as an axis shows it. */
QString graticuleText(double value, bool chroma, ScopeUnit unit, const ScopeEncoding& encoding,
                      const QLocale& locale);

} // namespace Kestrel::UI
