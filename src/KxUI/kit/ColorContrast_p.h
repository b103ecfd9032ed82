#pragma once

#include <QColor>
#include <QPalette>

#include <initializer_list>

/** \file
    How colours tell apart. A shape stands out and a text can be read by luminance alone, whatever
    the hues are. */

namespace Kestrel::UI {

/** The least contrast ratio at which text can be read (WCAG 2.1, 1.4.3). */
constexpr double ReadableContrast = 4.5;

/** The least contrast ratio at which a shape is seen (WCAG 2.1, 1.4.11). */
constexpr double VisibleContrast = 3.0;

/** The light that a colour gives off, from 0 for black to 1 for white. */
double relativeLuminance(const QColor& color);

/** How well two colours tell apart, from 1 to 21 (the contrast ratio of WCAG 2.1). */
double contrastRatio(const QColor& a, const QColor& b);

/** How bright a colour seems, from 0 for black to 1 for white, with the greys in even steps. */
double brightness(const QColor& color);

/** The first candidate that has the contrast `enough` to every background, else the one that comes
    nearest to it. Invalid without candidates. */
QColor firstVisible(std::initializer_list<QColor> candidates,
                    std::initializer_list<QColor> backgrounds, double enough);

/** The palette's highlight, as near to its text as it takes to be seen as a shape on `ground`. */
QColor visibleHighlight(const QPalette& palette, const QColor& ground);

/** The way from `a` (`part` 0) to `b` (1), opaque. */
QColor mixed(const QColor& a, const QColor& b, double part);

} // namespace Kestrel::UI
