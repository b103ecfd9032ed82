#include "media/Paths.h"

#include <KxUI/files/filename.h>

#include <filesystem>
#include <future>
#include <memory>
#include <system_error>
#include <thread>
#include <vector>

namespace Kestrel::Workbench {

std::string joinPath(const std::string& folder, const std::string& name) {
    if (folder.empty() || folder.back() == '/')
        return folder + name;
    return folder + '/' + name;
}

std::string parentFolder(const std::string& path) {
    const auto end = path.find_last_not_of('/');
    const auto slash = end == std::string::npos ? end : path.rfind('/', end);
    return slash == std::string::npos || slash == 0 ? "/" : path.substr(0, slash);
}

std::string fileNameOf(const std::string& path) {
    return path.substr(path.rfind('/') + 1);
}

std::string absolutePath(const std::string& path) {
    std::string absolute = path;
    // filename_absolute() also turns back-slashes, which are part of names here, so that only a
    // path that needs it goes through it.
    if (path.empty() || path.front() != '/') {
        std::vector<char> text(path.size() + 4096);
        filename_absolute(text.data(), int(text.size()), path.c_str(), nullptr);
        absolute = text.data();
    }
    std::string clean = std::filesystem::path(absolute).lexically_normal().string();
    if (clean.size() > 1 && clean.back() == '/')
        clean.pop_back();
    return clean;
}

bool isMissing(const std::string& path, std::chrono::milliseconds patience) {
    const auto promise = std::make_shared<std::promise<bool>>();
    std::future<bool> answer = promise->get_future();
    // Left to itself when it does not come back.
    std::thread([path, promise] {
        std::error_code error;
        const auto status = std::filesystem::status(path, error);
        promise->set_value(status.type() == std::filesystem::file_type::not_found);
    }).detach();
    return answer.wait_for(patience) == std::future_status::ready && answer.get();
}

bool isFolder(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

} // namespace Kestrel::Workbench
