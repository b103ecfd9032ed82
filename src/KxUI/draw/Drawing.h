#pragma once

namespace Kestrel::UI {

/** What a view draws itself by. The numbers are part of saved settings. */
enum class Drawing : int {
    Painter,  ///< the painter, which works everywhere
    OpenGL,   ///< OpenGL; the painter where there is none
    Automatic ///< OpenGL where a graphics processor does the work, else the painter
};

} // namespace Kestrel::UI
