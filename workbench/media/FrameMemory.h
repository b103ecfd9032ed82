#pragma once

#include <QImage>

#include <cstddef>
#include <memory>

namespace Kestrel::Workbench {

/** Memory for pictures. A few freed pieces are kept for the next ones of their size: while frames
    are played, each takes the memory that another one gave back, which the system need not fill
    with zeros first. Any thread. */
class FrameMemory {
public:
    /** A picture of 32-bit pixels of no certain colour; null when there is not enough memory. It may
        be freed on any thread. */
    static QImage picture(const QSize& size);

    /** Bytes of no certain value; null when there is not enough memory. */
    class Free;
    using Bytes = std::unique_ptr<std::byte[], Free>;
    static Bytes bytes(std::size_t count);

    /** Gives what is kept back to the system. */
    static void release();
};

/** How FrameMemory's bytes are freed. */
class FrameMemory::Free {
public:
    explicit Free(std::size_t count = 0)
        : m_count(count) {}
    void operator()(std::byte* bytes) const;

private:
    std::size_t m_count;
};

} // namespace Kestrel::Workbench
