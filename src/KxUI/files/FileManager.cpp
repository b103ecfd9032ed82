#include <KxUI/files/FileManager.h>

#include <KxUI/files/FileInfo.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/files/platform/Directory_p.h>

#include <QCoreApplication>

namespace Kestrel::UI {
namespace {

struct Text {
    Q_DECLARE_TR_FUNCTIONS(FileManager)
};

// Names of formats are the same in all languages.
const char* formatOf(const QByteArray& extension) {
    static constexpr struct {
        const char* extension;
        const char* format;
    } formats[] = {{"exr", "OpenEXR"},  {"sxr", "OpenEXR"},  {"dpx", "DPX"},     {"cin", "Cineon"},
                   {"tif", "TIFF"},     {"tiff", "TIFF"},    {"jpg", "JPEG"},    {"jpeg", "JPEG"},
                   {"png", "PNG"},      {"tga", "Targa"},    {"targa", "Targa"}, {"bmp", "BMP"},
                   {"gif", "GIF"},      {"hdr", "Radiance"}, {"psd", "PSD"},     {"sgi", "SGI"},
                   {"rgb", "SGI"},      {"iff", "IFF"},      {"dng", "DNG"},     {"ari", "ARRIRAW"},
                   {"arri", "ARRIRAW"}, {"cr2", "CR2"},      {"xpm", "XPM"},     {"yuv", "YUV"},
                   {"webp", "WebP"},    {"jp2", "JPEG 2000"}};
    for (const auto& each : formats) {
        if (extension == each.extension)
            return each.format;
    }
    return nullptr;
}

} // namespace

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

void FileManager::setThreadLimit(int count) {
    WorkerPool::instance().setThreadLimit(count);
}

QStringList FileManager::stuckDirectories() {
    QStringList directories;
    for (const std::string& each : WorkerPool::instance().stuckDirectories())
        directories << QString::fromStdString(each);
    return directories;
}

QString FileManager::errorText(int error) {
    using Platform::Failure;
    if (error < 0)
        return Text::tr("Too many folders do not answer.");
    switch (Platform::failureOf(error)) {
    case Failure::None:
        return {};
    case Failure::NotFound:
        return Text::tr("This folder does not exist.");
    case Failure::NotADirectory:
        return Text::tr("This is not a folder.");
    case Failure::Denied:
        return Text::tr("You have no permission to read this folder.");
    case Failure::Unreachable:
        return Text::tr("The server of this folder does not answer.");
    case Failure::LinkLoop:
        return Text::tr("This folder is a link that leads round in a circle.");
    case Failure::TooManyOpenFiles:
        return Text::tr("Too many files are open. Close some and try again.");
    case Failure::OutOfMemory:
        return Text::tr("There is not enough memory to list this folder.");
    case Failure::NameTooLong:
        return Text::tr("The name is too long.");
    default:
        return Text::tr("This folder cannot be read: %1.").arg(qt_error_string(error));
    }
}

QString FileManager::fileTypeName(const QByteArray& name) {
    const auto dot = name.lastIndexOf('.');
    const QByteArray extension = dot > 0 ? name.mid(dot + 1) : QByteArray();
    if (extension.isEmpty())
        return Text::tr("File");
    if (const char* const format = formatOf(extension.toLower()))
        return Text::tr("%1 image").arg(QLatin1String(format));
    return Text::tr("%1 file").arg(decodedName(extension).toUpper());
}

} // namespace Kestrel::UI
