#include <KxUI/scopes/PixelReader_p.h>

#include <hwy/cache_control.h>

#include <cmath>

namespace Kestrel::UI {
namespace {

enum class Storage { YCbCr, Codes, Floats, Halves };

struct Kind {
    Storage storage;
    int codes = 0;      // the code of 1.0
    int alphaCodes = 0; // likewise
};

Kind kindOf(PixelLayout layout) {
    switch (layout) {
    case PixelLayout::RGB8:
    case PixelLayout::RGBA8:
    case PixelLayout::BGRA8:
        return {Storage::Codes, 255, 255};
    case PixelLayout::RGB10A2:
        return {Storage::Codes, 1023, 3};
    case PixelLayout::RGB16:
    case PixelLayout::RGBA16:
        return {Storage::Codes, 65535, 65535};
    case PixelLayout::RGBFloat:
    case PixelLayout::RGBAFloat:
        return {Storage::Floats};
    case PixelLayout::CbYCrY8:
    case PixelLayout::CbYCrY8LegacyMpeg:
    case PixelLayout::YCbYCr8Legacy:
    case PixelLayout::AYCbCr8:
    case PixelLayout::CbYCrA8:
    case PixelLayout::V210:
    case PixelLayout::AYCbCr16:
    case PixelLayout::AYCbCr16From8:
    case PixelLayout::AYCbCrFloat:
        return {Storage::YCbCr};
    case PixelLayout::RGBHalf:
    case PixelLayout::RGBAHalf:
        break;
    }
    return {Storage::Halves};
}

int groupOf(PixelLayout layout) {
    switch (layout) {
    case PixelLayout::CbYCrY8:
    case PixelLayout::CbYCrY8LegacyMpeg:
    case PixelLayout::YCbYCr8Legacy:
        return 2;
    case PixelLayout::V210:
        return 6;
    default:
        return 1;
    }
}

} // namespace

PixelReader::PixelReader(const ScopeImage& image, const ScopeEncoding& encoding, bool readsAlpha)
    : m_image(image)
    , m_coefficients(colorSpaceYCbCrToRgb(image.colorSpace))
    , m_transform(encoding.transform)
    , m_group(groupOf(image.layout))
    , m_readsAlpha(readsAlpha || image.alpha != ScopeImage::Alpha::AsStored) {
    const Kind kind = kindOf(image.layout);
    const bool unpremultiplied =
        image.alpha == ScopeImage::Alpha::Unpremultiply && image.hasAlpha();
    const bool asStored = !m_transform && !unpremultiplied;
    const bool isCoded = kind.storage == Storage::Codes;
    if (encoding.transfer != ScopeEncoding::Transfer::AsStored) {
        m_tableAxis.unit = asStored ? kind.codes : 0;
        m_table = transferTable(encoding, m_tableAxis);
    } else if (asStored) {
        m_exact = isCoded || kind.storage == Storage::Halves;
        m_fine = kind.storage == Storage::Floats;
        m_colorAxis.unit = kind.codes;
    }
    m_alphaAxis.unit = kind.alphaCodes;
}

const unsigned char* PixelReader::row(int y) const {
    return static_cast<const unsigned char*>(m_image.pixels) + m_image.stride * y;
}

void PixelMemory::ask(std::size_t lines) {
    for (; lines > 0 && m_rows > 0; --lines) {
        hwy::Prefetch(m_row + m_at);
        m_at += Line;
        if (m_at < m_bytes + Line)
            continue;
        m_at = 0;
        m_row += --m_rows > 0 ? m_stride : 0;
    }
}

PixelMemory PixelReader::memory(const PixelBlock& block) const {
    if (block.y >= m_image.height)
        return {};
    const int rows = std::min(block.rows, (m_image.height - block.y - 1) / block.step + 1);
    const std::size_t begin = rowBytes(m_image.layout, block.x - block.x % m_group);
    const std::size_t end = rowBytes(m_image.layout, block.x + int(block.width));
    return {row(block.y) + begin, end - begin, rows, m_image.stride * block.step};
}

bool PixelReader::readsSeveralRows(int x, std::size_t width) const {
    return x % m_group == 0 && width % std::size_t(m_group) == 0;
}

void PixelReader::read(const PixelBlock& block, PixelPiece& piece) const {
    piece.width = block.width;
    piece.count = block.width * std::size_t(block.rows);
    piece.transparent = 0;
    decode(block, piece);
    if (m_image.alpha != ScopeImage::Alpha::AsStored && m_image.hasAlpha()) {
        leaveOut(piece);
        if (m_image.alpha == ScopeImage::Alpha::Unpremultiply)
            unpremultiply(piece);
    }
    if (m_transform)
        transform(piece);
    if (m_table) {
        applyTransfer(piece.red.data() + piece.first, piece);
        applyTransfer(piece.green.data() + piece.first, piece);
        applyTransfer(piece.blue.data() + piece.first, piece);
    }
}

void PixelReader::decode(const PixelBlock& block, PixelPiece& piece) const {
    const int begin = block.x - block.x % m_group;
    int end = block.x + int(block.width);
    end = std::min(end + (m_group - end % m_group) % m_group, m_image.usableWidth());
    piece.first = std::size_t(block.x - begin);
    std::size_t at = 0;
    for (int i = 0; i < block.rows; ++i, at += block.width) {
        const PlanarRow to{m_readsAlpha ? piece.alpha.data() + at : nullptr, piece.red.data() + at,
                           piece.green.data() + at, piece.blue.data() + at, 1};
        decodeRow(m_image.layout, row(block.y + i * block.step) + rowBytes(m_image.layout, begin),
                  to, end - begin, m_coefficients);
    }
}

void PixelReader::leaveOut(PixelPiece& piece) const {
    const bool divides = m_image.alpha == ScopeImage::Alpha::Unpremultiply;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < piece.count; ++i) {
        const std::size_t from = piece.first + i;
        const float alpha = piece.alpha[from];
        if (divides ? !(alpha > 0 && std::isfinite(alpha)) : alpha == 0)
            continue;
        piece.red[kept] = piece.red[from];
        piece.green[kept] = piece.green[from];
        piece.blue[kept] = piece.blue[from];
        piece.alpha[kept] = alpha;
        piece.places[kept++] = std::uint16_t(i % piece.width);
    }
    piece.transparent = piece.count - kept;
    piece.count = kept;
    piece.first = 0;
}

void PixelReader::unpremultiply(PixelPiece& piece) const {
    for (std::size_t i = 0; i < piece.count; ++i) {
        piece.red[i] /= piece.alpha[i];
        piece.green[i] /= piece.alpha[i];
        piece.blue[i] /= piece.alpha[i];
    }
}

void PixelReader::transform(PixelPiece& piece) const {
    if (piece.count == 0)
        return;
    piece.interleaved.resize(3 * PixelPiece::Room);
    float* at = piece.interleaved.data();
    for (std::size_t i = piece.first; i < piece.first + piece.count; ++i) {
        *at++ = piece.red[i];
        *at++ = piece.green[i];
        *at++ = piece.blue[i];
    }
    m_transform(piece.interleaved.data(), int(piece.count));
    at = piece.interleaved.data();
    for (std::size_t i = piece.first; i < piece.first + piece.count; ++i) {
        piece.red[i] = *at++;
        piece.green[i] = *at++;
        piece.blue[i] = *at++;
    }
}

void PixelReader::applyTransfer(float* values, PixelPiece& piece) const {
    const CountingKernels& kernels = countingKernels();
    if (m_tableAxis.isHalf())
        kernels.halfCodes(values, piece.count, piece.codes.data());
    else
        kernels.unitCodes(values, piece.count, float(m_tableAxis.unit), piece.codes.data());
    const float* const table = m_table->data();
    for (std::size_t i = 0; i < piece.count; ++i)
        values[i] = table[piece.codes[i]];
}

} // namespace Kestrel::UI
