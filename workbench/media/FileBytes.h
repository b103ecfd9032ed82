#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace Kestrel::Workbench {

/** A file that is read at places. It is never mapped into memory: a file that another program cuts
    short would end this one. */
class FileBytes {
public:
    /** @param path  the file's name in the bytes of the file system */
    explicit FileBytes(const std::string& path);
    ~FileBytes();

    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    /** Bytes of the file as it is now; 0 where it cannot be read. */
    std::uint64_t size() const;

    /** Reads all of these bytes, or returns false. */
    bool read(std::uint64_t offset, void* to, std::size_t bytes) const;

    /** Reads what there is, up to so many bytes; returns how many these are. */
    std::size_t readSome(std::uint64_t offset, void* to, std::size_t bytes) const;

private:
    int m_file;
};

} // namespace Kestrel::Workbench
