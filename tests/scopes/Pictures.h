#pragma once

#include <KxUI/scopes/ScopeImage.h>

#include <array>
#include <cstring>
#include <limits>
#include <memory>
#include <random>
#include <vector>

namespace Kestrel::Test {

/** A picture with memory of its own. */
struct Picture {
    Picture(UI::PixelLayout layout, int width, int height, unsigned seed = 1,
            bool bottomUp = false) {
        const std::size_t stride = UI::rowBytes(layout, width) + 7;
        auto bytes = std::make_shared<std::vector<unsigned char>>(stride * std::size_t(height));
        std::mt19937 random(seed);
        for (unsigned char& each : *bytes)
            each = static_cast<unsigned char>(random());
        image.layout = layout;
        image.width = width;
        image.height = height;
        image.stride = bottomUp ? -std::ptrdiff_t(stride) : std::ptrdiff_t(stride);
        image.pixels = bytes->data() + (bottomUp ? stride * std::size_t(height - 1) : 0);
        image.owner = bytes;
        memory = bytes->data();
    }

    /** Floats around 0 to 1, with what is rare strewn in. */
    static Picture ofFloats(int width, int height, unsigned seed = 1) {
        using Limits = std::numeric_limits<float>;
        Picture picture(UI::PixelLayout::RGBAFloat, width, height, seed);
        std::mt19937 random(seed);
        const std::array<float, 12> rare{Limits::quiet_NaN(),
                                         Limits::infinity(),
                                         -Limits::infinity(),
                                         -0.0F,
                                         0.0F,
                                         1e-8F,
                                         1.0F,
                                         65504.0F,
                                         65520.0F,
                                         -1.0F,
                                         3e38F,
                                         1.1F};
        for (int y = 0; y < height; ++y) {
            for (int i = 0; i < 4 * width; ++i) {
                const float usual = float(random() % 4096) / 2048.0F - 0.4F;
                picture.setFloat(y, i, random() % 16 == 0 ? rare[random() % rare.size()] : usual);
            }
        }
        return picture;
    }

    /** A grey picture of 8-bit codes. */
    static Picture ofGrey(unsigned char code, int width = 64, int height = 32) {
        Picture picture(UI::PixelLayout::RGB8, width, height);
        std::memset(picture.memory, code, std::size_t(picture.image.stride) * std::size_t(height));
        return picture;
    }

    void setFloat(int y, int index, float value) const {
        std::memcpy(memory + image.stride * y + 4 * index, &value, sizeof value);
    }

    UI::ScopeImage image;
    unsigned char* memory = nullptr;
};

} // namespace Kestrel::Test
