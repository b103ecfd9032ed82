#include <KxUI/files/FileManager.h>

#include <KxUI/files/FileInfo.h>

namespace Kestrel::UI {

void FileManager::setInitialSequenceExtensions() {
    static bool done = false;
    if (done)
        return;
    done = true;
    for (const char* extension :
         {"arri",  "ari",   "bmp",   "cin", "crw",  "cr2",  "dpx",   "dng",    "exr", "fpi",
          "ftif",  "ftiff", "gif",   "hdr", "hdri", "iff",  "iff16", "it8",    "jpg", "jpeg",
          "pic",   "png",   "png16", "psd", "rgb",  "rgba", "rgbe",  "rgbea",  "rla", "sgi",
          "sgi16", "sxr",   "targa", "tga", "tif",  "tiff", "tif16", "tiff16", "xpm", "yuv"})
        addSequenceFileExtension(extension);
}

void FileManager::addSequenceFileExtension(const char* extension) {
    FileInfo::addSequenceFileExtension(extension);
}

} // namespace Kestrel::UI
