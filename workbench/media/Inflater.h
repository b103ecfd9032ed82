#pragma once

#include <libdeflate.h>

#include <cstddef>
#include <memory>

namespace Kestrel::Workbench {

/** Unpacks what was packed by zlib, whole pieces at a time. For one thread. */
class Inflater {
public:
    Inflater()
        : m_state(libdeflate_alloc_decompressor()) {}

    /** False where the bytes are damaged, or do not make exactly so many. */
    bool inflate(const void* packed, std::size_t packedBytes, void* to, std::size_t bytes) const {
        std::size_t unpacked = 0;
        return m_state &&
               libdeflate_zlib_decompress(m_state.get(), packed, packedBytes, to, bytes,
                                          &unpacked) == LIBDEFLATE_SUCCESS &&
               unpacked == bytes;
    }

private:
    struct Free {
        void operator()(libdeflate_decompressor* state) const {
            libdeflate_free_decompressor(state);
        }
    };

    std::unique_ptr<libdeflate_decompressor, Free> m_state;
};

} // namespace Kestrel::Workbench
