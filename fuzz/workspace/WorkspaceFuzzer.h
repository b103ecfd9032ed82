#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

namespace Kestrel::Fuzz {

/** Random operations on a workspace and on its model, side by side, each followed by a look over
    the whole workspace. Returns what went wrong, empty when all went well. */
QString runOperations(unsigned seed, int steps);

/** The same with operations chosen by bytes, until there are no more. */
QString runOperations(std::string_view bytes);

/** One layout document with a little of everything in it. */
QByteArray sampleLayout();

/** Damages `document` in `count` ways and restores each; to be run in a process of its own, which
    ends when a document takes longer than a second. Returns the process's exit code: 0 when nothing
    crashed, hung, lost a page, or changed a workspace that it refused to change. */
int restoreDamaged(const QByteArray& document, unsigned seed, int count);

} // namespace Kestrel::Fuzz
