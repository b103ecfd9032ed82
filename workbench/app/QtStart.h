#pragma once

namespace Kestrel::Workbench {

/** \file
    What is to be said before the application object is made; one source file for each version of
    Qt. */

/** File names are UTF-8 whatever the locale says, also in the C locale. */
void prepareFileNames();

/** Windows are sharp, and as large as the scale of their screen wants them if `followScale`. */
void prepareScreens(bool followScale);

} // namespace Kestrel::Workbench
