#pragma once

#include <KxUI/picker/DisplayCall_p.h>

#include <QString>

#include <memory>
#include <optional>

class QMimeData;
class QWidget;

namespace Kestrel::UI {

/** \file
    Colours on the clipboard and under way from one widget to another, of this program or another
    one: as light, as a colour of the screen, and as text. They are read in that order. */

/** A colour for others to take, and what it is called. */
std::unique_ptr<QMimeData> colorMime(const ColorValue& color, const DisplayCall& display,
                                     const QString& name = QString());

/** The colour in the data, with this alpha where they say nothing of one; null without a colour
    that can be read, and for null. */
std::optional<ColorValue> colorIn(const QMimeData* data, const DisplayCall& display, float alpha);

/** What the colour in the data is called; empty for most. */
QString colorNameIn(const QMimeData* data);

/** The clipboard. */
void copyColor(const ColorValue& color, const DisplayCall& display,
               const QString& name = QString());
std::optional<ColorValue> copiedColor(const DisplayCall& display, float alpha);
QString copiedColorName();

/** Lets the user drag a colour out of a widget, until it is dropped. Anything may be deleted
    meanwhile, the widget, too. */
void dragColor(QWidget* source, const ColorValue& color, const DisplayCall& display,
               const QString& name = QString());

/** The widget that the user drags a colour out of; null while there is none. */
const QWidget* colorDragSource();

/** What dragColor() hands the data to; tests put a user of their own in its place. */
extern void (*runColorDrag)(std::unique_ptr<QMimeData> data, const QColor& shown, double ratio);

/** A colour in a few words, for tool tips and for assistive technology: its code, with a sign where
    the screen can only come near to it, and its light. */
QString colorWords(const ColorValue& color, const DisplayCall& display,
                   const QString& separator = QStringLiteral("\n"));

} // namespace Kestrel::UI
