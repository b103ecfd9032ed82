#pragma once

#include <filesystem>
#include <random>
#include <string>

namespace Kestrel::Test {

/** A folder that is gone with what it holds when the test ends; the process is then where it was.
 */
class TempFolder {
public:
    TempFolder()
        : m_path(std::filesystem::canonical(std::filesystem::temp_directory_path()) /
                 ("kxui-" + std::to_string(std::random_device{}()))) {
        std::filesystem::create_directory(m_path);
    }

    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::current_path(m_before, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& path() const { return m_path; }

    /** As UTF-8 with `/` only. */
    std::string utf8() const { return m_path.generic_u8string(); }

private:
    std::filesystem::path m_before = std::filesystem::current_path();
    std::filesystem::path m_path;
};

} // namespace Kestrel::Test
