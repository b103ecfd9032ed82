#pragma once

#include "export/ExportPlan.h"

#include <QString>

#include <cstddef>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

namespace Kestrel::Workbench {

/** A picture on its way into a file. */
struct ExportImage {
    int width = 0;
    int height = 0;
    /** Width of a pixel divided by its height. */
    double pixelAspect = 1.0;
    ExportFormat format = ExportFormat::Exr;
    /** Red, green and blue of each pixel from the top, in the numbers of the format. */
    std::vector<std::byte> pixels;
};

using FileBytes = std::vector<unsigned char>;

/** The file of a picture, in memory: so that whatever the disk says later is heard. Empty, and why in
    `problem`, where there can be none. Any thread. */
FileBytes encodeImage(const ExportImage& image, QString* problem);

/** Makes a new file of a name that must be free, and of all these bytes. */
using WriteFile = std::function<std::error_code(const std::string& path, const FileBytes& bytes)>;
std::error_code writeNewFile(const std::string& path, const FileBytes& bytes);

/** Puts bytes into a file which is there as a whole or not at all: written beside its place under a
    hidden name, and moved there. What was begun is taken away where that fails. Any thread.
    @param path        where to, in the bytes of the file system
    @param mayReplace  whether a file that lies there may go; else it stays, and the answer is
                       std::errc::file_exists
    @param write       what writes the file; writeNewFile but in tests */
std::error_code putFile(const std::string& path, const FileBytes& bytes, bool mayReplace,
                        const WriteFile& write = writeNewFile);

/** What went wrong with a file, for the user. */
QString fileProblem(const std::error_code& error);

} // namespace Kestrel::Workbench
