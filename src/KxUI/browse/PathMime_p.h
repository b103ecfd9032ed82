#pragma once

#include <QByteArray>

#include <vector>

class QMimeData;

namespace Kestrel::UI::PathMime {

/** The type of data that carries paths byte for byte, each with a NUL behind it. */
inline constexpr char Type[] = "application/x-kxui-paths";

/** The absolute paths that are dropped or pasted: those of Type, else of file addresses, else a
    text that looks like one path. */
std::vector<QByteArray> pathsOf(const QMimeData& data);

} // namespace Kestrel::UI::PathMime
