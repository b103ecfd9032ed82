#pragma once

#include <filesystem>

namespace Kestrel::UI {

/** The file that this code was loaded from: the library, or a program that it is linked into. Empty
    where the system does not say. */
std::filesystem::path libraryFile();

} // namespace Kestrel::UI
