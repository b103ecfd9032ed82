#include <KxUI/files/FileManager.h>

#include <KxUI/files/FileInfo.h>
#include <KxUI/files/FileListing.h>
#include <KxUI/files/FileTexts_p.h>
#include <KxUI/files/RawName_p.h>
#include <KxUI/files/RecentListings_p.h>
#include <KxUI/files/WorkerPool_p.h>
#include <KxUI/files/platform/Directory_p.h>

#include <QCoreApplication>

#include <algorithm>
#include <climits>

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

QString noAnswerText() {
    return Text::tr("The server of this folder does not answer.");
}

QString ownErrorText(int error) {
    switch (error) {
    case FileManager::NoAnswer:
        return noAnswerText();
    case FileManager::Stopped:
        return Text::tr("It was stopped.");
    default:
        return Text::tr("Too many folders do not answer.");
    }
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

void FileManager::forgetListings() {
    RecentListings::instance().clear();
}

QString FileManager::errorText(int error) {
    using Platform::Failure;
    if (error < 0)
        return ownErrorText(error);
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
        return noAnswerText();
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

QString FileManager::errorText(const FileListing& listing) {
    using Platform::Failure;
    using State = FileListing::State;
    const auto entries = static_cast<int>(std::min<std::int64_t>(listing.entriesRead(), INT_MAX));
    if (listing.state() == State::Stopped)
        return Text::tr("Reading was stopped after %n entries.", nullptr, entries);
    if (listing.state() != State::Failed)
        return {};
    const QString reason = errorText(listing.error());
    switch (const auto failure = Platform::failureOf(listing.error())) {
    case Failure::Other:
    case Failure::Stale:
    case Failure::Unreachable:
    case Failure::OutOfMemory:
        break;
    default:
        // It was not even opened: what is listed was there before.
        return failure == Failure::NotFound && listing.size() > 0
                   ? Text::tr("This folder does not exist any more.")
                   : reason;
    }
    if (entries == 0 || listing.error() < 0)
        return reason;
    return Text::tr("Reading stopped after %n entries: %1", nullptr, entries).arg(reason);
}

QString FileManager::errorText(int error, const QByteArray& path) {
    using Platform::Failure;
    if (error < 0 && error != NoFrames)
        return ownErrorText(error);
    // In marks that keep what is written from right to left apart from the sentence.
    QByteArray lastName = path;
    while (lastName.size() > 1 && lastName.endsWith('/'))
        lastName.chop(1);
    if (lastName.size() > 1)
        lastName = lastName.mid(lastName.lastIndexOf('/') + 1);
    const QString name = QChar(0x2068) + FileTexts::name(viewOf(lastName)) + QChar(0x2069);
    if (error == NoFrames)
        return Text::tr("\u201c%1\u201d has no place for the numbers of frames.").arg(name);
    switch (Platform::failureOf(error)) {
    case Failure::None:
        return {};
    case Failure::NotFound:
        return Text::tr("\u201c%1\u201d does not exist.").arg(name);
    case Failure::NotADirectory:
        return Text::tr("\u201c%1\u201d does not lie in a folder.").arg(name);
    case Failure::Denied:
        return Text::tr("You have no permission to change \u201c%1\u201d.").arg(name);
    case Failure::Unreachable:
        return Text::tr("The server of \u201c%1\u201d does not answer.").arg(name);
    case Failure::NameTooLong:
        return Text::tr("The name \u201c%1\u201d is too long.").arg(name);
    case Failure::Exists:
        return Text::tr("\u201c%1\u201d exists already.").arg(name);
    case Failure::DiskFull:
        return Text::tr("There is no room left on the disk of \u201c%1\u201d.").arg(name);
    case Failure::ReadOnly:
        return Text::tr("The disk of \u201c%1\u201d can only be read.").arg(name);
    case Failure::OtherDisk:
        return Text::tr("\u201c%1\u201d cannot be moved to another disk by renaming.").arg(name);
    default:
        return Text::tr("\u201c%1\u201d cannot be changed: %2.").arg(name, qt_error_string(error));
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
