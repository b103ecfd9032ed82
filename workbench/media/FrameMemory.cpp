#include "media/FrameMemory.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

namespace Kestrel::Workbench {

namespace {

/** As many as are on their way at a time, and not more than the status line may conceal. */
constexpr std::size_t mostPieces = 4;
constexpr std::size_t mostBytes = std::size_t(96) << 20;

struct Piece {
    std::byte* bytes = nullptr;
    std::size_t count = 0;
};

struct Pieces {
    std::mutex mutex;
    /** The one freed last at the end. */
    std::vector<Piece> kept;
    std::size_t bytes = 0;
};

/** Never destroyed: pictures may be freed after everything else. */
Pieces& pieces() {
    static auto* const all = new Pieces;
    return *all;
}

std::byte* takeKept(std::size_t count) {
    Pieces& all = pieces();
    const std::lock_guard lock(all.mutex);
    const auto found = std::find_if(all.kept.rbegin(), all.kept.rend(),
                                    [count](const Piece& piece) { return piece.count == count; });
    if (found == all.kept.rend())
        return nullptr;
    std::byte* bytes = found->bytes;
    all.bytes -= count;
    all.kept.erase(std::next(found).base());
    return bytes;
}

/** Keeps a piece; returns what has to go for it. */
std::vector<Piece> keep(const Piece& piece) {
    Pieces& all = pieces();
    const std::lock_guard lock(all.mutex);
    all.kept.push_back(piece);
    all.bytes += piece.count;
    std::vector<Piece> gone;
    while (all.kept.size() > mostPieces || all.bytes > mostBytes) {
        gone.push_back(all.kept.front());
        all.bytes -= all.kept.front().count;
        all.kept.erase(all.kept.begin());
    }
    return gone;
}

void freePieces(const std::vector<Piece>& gone) {
    for (const Piece& piece : gone)
        delete[] piece.bytes;
}

} // namespace

FrameMemory::Bytes FrameMemory::bytes(std::size_t count) {
    std::byte* kept = takeKept(count);
    return {kept ? kept : new (std::nothrow) std::byte[count], Free(count)};
}

void FrameMemory::Free::operator()(std::byte* bytes) const {
    freePieces(keep({bytes, m_count}));
}

QImage FrameMemory::picture(const QSize& size) {
    if (size.isEmpty())
        return {};
    const auto line = std::size_t(size.width()) * sizeof(QRgb);
    auto owner = std::make_unique<Bytes>(bytes(line * std::size_t(size.height())));
    if (!*owner)
        return {};
    auto* pixels = reinterpret_cast<uchar*>(owner->get());
    const auto destroy = [](void* bytes) { delete static_cast<Bytes*>(bytes); };
    QImage image(pixels, size.width(), size.height(), int(line), QImage::Format_RGB32, destroy,
                 owner.get());
    if (!image.isNull())
        owner.release();
    return image;
}

void FrameMemory::release() {
    Pieces& all = pieces();
    std::vector<Piece> gone;
    {
        const std::lock_guard lock(all.mutex);
        gone.swap(all.kept);
        all.bytes = 0;
    }
    freePieces(gone);
}

} // namespace Kestrel::Workbench
