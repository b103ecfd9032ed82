// Counts of small pictures, whose layout, size, stride, region, encoding and bytes are drawn by lot,
// against a count pixel by pixel; and the same with another size of units and with the scalar kernels.

#include <scopes/SlowCount.h>

#include <KxUI/scopes/ScopePass_p.h>

#include <support/Require.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <vector>

using namespace Kestrel::UI;
using Kestrel::Fuzz::require;
using Kestrel::Test::SlowCount;

namespace {

ValueRange rangeFrom(FuzzedDataProvider& data, int mostBins) {
    ValueRange range;
    range.bins = data.ConsumeIntegralInRange(1, mostBins);
    if (data.ConsumeBool()) {
        range.lower = data.ConsumeFloatingPoint<float>();
        range.upper = data.ConsumeFloatingPoint<float>();
    }
    return range.normalized();
}

ScopeRequest requestFrom(FuzzedDataProvider& data) {
    ScopeRequest request;
    request.parts =
        data.ConsumeIntegralInRange<int>(0, ScopeRequest::AllParts | ScopeRequest::Hues);
    request.encoding.transfer =
        ScopeEncoding::Transfer(data.ConsumeIntegralInRange(0, 3) == 1 ? 1 : 0);
    request.wholeFrame = data.ConsumeBool();
    request.region = {data.ConsumeIntegralInRange(-3, 9), data.ConsumeIntegralInRange(-3, 9),
                      data.ConsumeIntegralInRange(-1, 20), data.ConsumeIntegralInRange(-1, 9)};
    request.waveform.channels = data.ConsumeIntegralInRange(0, 63);
    request.waveform.values = rangeFrom(data, 9);
    request.waveform.chroma = rangeFrom(data, 9);
    request.waveform.mostColumns = data.ConsumeIntegralInRange(1, 20);
    request.waveform.byRows = data.ConsumeBool();
    request.vectors.chroma = rangeFrom(data, 9);
    request.solid = rangeFrom(data, 5);
    request.rowStep = data.ConsumeIntegralInRange(1, 3);
    // Mostly one channel: the tables of each are what an execution costs.
    const int channel = data.ConsumeIntegralInRange<int>(0, 4 * ScopeHistogram::Channels);
    request.values =
        channel < 4 * ScopeHistogram::Channels ? 1 << channel / 4 : ScopeRequest::AllValues;
    return request;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    ScopeImage image;
    image.layout = PixelLayout(data.ConsumeIntegralInRange(0, PixelLayoutCount - 1));
    image.width = data.ConsumeIntegralInRange(0, 19);
    image.height = data.ConsumeIntegralInRange(0, 6);
    image.alpha = ScopeImage::Alpha(data.ConsumeIntegralInRange(0, 2));
    image.colorSpace = data.ConsumeIntegralInRange(0, 4);
    const ScopeRequest request = requestFrom(data);
    const int unit = data.ConsumeIntegralInRange(0, 7);
    const bool bottomUp = data.ConsumeBool();

    const std::size_t stride = rowBytes(image.layout, image.width) + data.ConsumeBool();
    const std::vector<std::uint8_t> drawn = data.ConsumeRemainingBytes<std::uint8_t>();
    std::vector<std::uint8_t> memory(stride * std::size_t(image.height));
    for (std::size_t i = 0; i < memory.size() && !drawn.empty(); ++i)
        memory[i] = drawn[i % drawn.size()];
    image.pixels = memory.data();
    image.stride = std::ptrdiff_t(stride);
    if (bottomUp && image.height > 0) {
        image.pixels = memory.data() + stride * std::size_t(image.height - 1);
        image.stride = -image.stride;
    }

    const ScopeResult result = countScopes(image, request, 1, unit);
    const std::string different = SlowCount(image, request).differs(result);
    require(different.empty(), different.c_str());
    if (result.values.isEmpty())
        return 0;
    const ScopeHistogram histogram = result.values.histogram({0, 1, 7});
    for (std::size_t i = 0; i < histogram.bins.size(); ++i) {
        std::uint64_t sum = histogram.below[i] + histogram.above[i] + histogram.nan[i] +
                            histogram.positiveInfinity[i] + histogram.negativeInfinity[i];
        for (const std::uint32_t count : histogram.bins[i])
            sum += count;
        require(histogram.bins[i].empty() || sum == histogram.pixels, "a histogram lost pixels");
        const ChannelStatistics& channel = result.statistics.channels[i];
        require(!channel.counted || channel.finite + channel.nan + channel.positiveInfinity +
                                            channel.negativeInfinity ==
                                        histogram.pixels,
                "figures lost pixels");
        require(channel.minimum <= channel.mean + 1e-6 * std::fabs(channel.mean) &&
                    channel.mean <= channel.maximum + 1e-6 * std::fabs(channel.mean),
                "a mean outside");
    }
    return 0;
}
