#include "export/ImageFile.h"

#include "media/Paths.h"

#include <OpenImageIO/filesystem.h>
#include <OpenImageIO/imageio.h>

#include <QCoreApplication>

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>

namespace Kestrel::Workbench {

namespace {

struct Message {
    Q_DECLARE_TR_FUNCTIONS(ImageFile)
};

OIIO::TypeDesc typeOf(ExportFormat format) {
    switch (format) {
    case ExportFormat::Exr:
        return OIIO::TypeDesc::HALF;
    case ExportFormat::Png16:
        return OIIO::TypeDesc::UINT16;
    case ExportFormat::Png8:
        break;
    }
    return OIIO::TypeDesc::UINT8;
}

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/** Beside the file, so that it is moved within one file system; hidden, so that nobody lists it. */
std::string nameBeside(const std::string& path) {
    static std::atomic<unsigned> count{0};
    return joinPath(parentFolder(path),
                    ".kxui-export-" + std::to_string(::getpid()) + "-" + std::to_string(++count));
}

/** Gives a file its name, if that is free. */
std::error_code moveToFreeName(const std::string& from, const std::string& to) {
    std::error_code error;
    std::filesystem::create_hard_link(from, to, error);
    if (!error) {
        std::filesystem::remove(from, error);
        return {};
    }
    if (error == std::errc::file_exists)
        return error;
    // Not every file system has links.
    if (std::error_code ignored;
        std::filesystem::exists(std::filesystem::symlink_status(to, ignored)))
        return std::make_error_code(std::errc::file_exists);
    std::filesystem::rename(from, to, error);
    return error;
}

} // namespace

FileBytes encodeImage(const ExportImage& image, QString* problem) {
    const bool isExr = image.format == ExportFormat::Exr;
    OIIO::ImageSpec spec(image.width, image.height, 3, typeOf(image.format));
    spec.attribute("PixelAspectRatio", float(image.pixelAspect));
    spec.attribute("oiio:ColorSpace", isExr ? "Linear" : "sRGB");
    spec.attribute("Software", "KxUI Workbench");
    if (isExr)
        spec.attribute("compression", "zip");
    FileBytes bytes;
    OIIO::Filesystem::IOVecOutput memory(bytes);
    const std::string name = isExr ? "frame.exr" : "frame.png";
    const auto output = OIIO::ImageOutput::create(name, &memory);
    const bool written = output && output->open(name, spec) &&
                         output->write_image(spec.format, image.pixels.data()) && output->close();
    if (!written || bytes.empty()) {
        const std::string why = output ? output->geterror() : OIIO::geterror();
        *problem = Message::tr("The picture cannot be encoded: %1")
                       .arg(QString::fromStdString(why).trimmed());
        bytes.clear();
    }
    return bytes;
}

std::error_code writeNewFile(const std::string& path, const FileBytes& bytes) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file < 0)
        return lastError();
    std::error_code error;
    for (std::size_t done = 0; done < bytes.size() && !error;) {
        const auto written = ::write(file, bytes.data() + done, bytes.size() - done);
        if (written > 0)
            done += std::size_t(written);
        else if (written == 0 || errno != EINTR)
            error = written == 0 ? std::make_error_code(std::errc::io_error) : lastError();
    }
    // Servers tell of a full disk only now.
    if (::close(file) != 0 && !error)
        error = lastError();
    return error;
}

std::error_code putFile(const std::string& path, const FileBytes& bytes, bool mayReplace,
                        const WriteFile& write) {
    const std::string beside = nameBeside(path);
    std::error_code error = write(beside, bytes);
    if (!error) {
        if (mayReplace)
            std::filesystem::rename(beside, path, error);
        else
            error = moveToFreeName(beside, path);
    }
    if (error) {
        std::error_code ignored;
        std::filesystem::remove(beside, ignored);
    }
    return error;
}

QString fileProblem(const std::error_code& error) {
    using std::errc;
    if (error == errc::no_space_on_device || error.value() == EDQUOT)
        return Message::tr("The disk is full.");
    if (error == errc::permission_denied || error == errc::operation_not_permitted ||
        error == errc::read_only_file_system)
        return Message::tr("The folder cannot be written to.");
    if (error == errc::no_such_file_or_directory || error == errc::not_a_directory)
        return Message::tr("The folder is not there.");
    if (error == errc::file_exists)
        return Message::tr("There is a file of this name by now, and it was not replaced.");
    if (error == errc::is_a_directory)
        return Message::tr("There is a folder of this name.");
    return QString::fromLocal8Bit(error.message().c_str());
}

} // namespace Kestrel::Workbench
