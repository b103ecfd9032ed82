#include <KxUI/scopes/ScopeResult.h>

#include <KxUI/scopes/CodeCounts_p.h>
#include <KxUI/scopes/HueCounting_p.h>
#include <KxUI/scopes/ScopePass_p.h>
#include <KxUI/scopes/ScopeScratch_p.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <functional>
#include <mutex>
#include <system_error>
#include <thread>

namespace Kestrel::UI {
namespace {

using Scratches = std::vector<ScopePass::Scratch*>;
using Counters = std::vector<std::uint32_t>;

void scale(std::vector<std::uint32_t>& counts, std::uint32_t factor) {
    for (std::uint32_t& each : counts)
        each *= factor;
}

// What all threads have counted, `factor` times. The counters of the first one become the sum.
template <class CountersOf>
std::vector<std::uint32_t> sumOf(const Scratches& scratches, std::size_t size, std::uint32_t factor,
                                 CountersOf countersOf) {
    std::vector<std::uint32_t> sum;
    for (ScopePass::Scratch* each : scratches) {
        std::vector<std::uint32_t>& counters = countersOf(*each);
        if (sum.empty())
            sum = std::move(counters);
        else
            std::transform(sum.begin(), sum.end(), counters.begin(), sum.begin(), std::plus<>());
    }
    sum.resize(size);
    if (factor > 1)
        scale(sum, factor);
    return sum;
}

// Exceptions of a pass that several threads count; the first is kept.
class Failure {
public:
    void keep(std::exception_ptr error) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_error)
            m_error = std::move(error);
        m_failed.store(true, std::memory_order_relaxed);
    }
    bool failed() const { return m_failed.load(std::memory_order_relaxed); }
    std::exception_ptr error() const { return m_error; }

private:
    std::mutex m_mutex;
    std::exception_ptr m_error;
    std::atomic<bool> m_failed{false};
};

} // namespace

int ScopeWaveform::firstPixel(int column) const noexcept {
    if (columns == 0)
        return 0;
    return int((std::int64_t(column) * pictureColumns + columns - 1) / columns);
}

void ScopePass::Scratch::addDirection(float cb, float cr) {
    constexpr double Degrees = 180 / 3.14159265358979323846;
    const double angle = std::atan2(double(cr), double(cb)) * Degrees;
    if (!std::isfinite(angle))
        return;
    const int degree = int(std::floor(angle < 0 ? angle + 360 : angle));
    ++outsideByDegree[std::size_t(std::clamp(degree, 0, 359))];
}

void ScopePass::addValues(const Scratches& scratches, ScopeResult& result) const {
    const auto step = std::uint32_t(m_request.rowStep);
    auto counts = std::make_shared<CodeCounts>();
    counts->encoding = m_request.encoding;
    for (int i = 0; i < ScopeHistogram::Channels; ++i) {
        const auto channel = ScopeHistogram::Channel(i);
        if (!wants(channel))
            continue;
        counts->axes[channel] = axis(channel);
        counts->counts[channel] =
            sumOf(scratches, std::size_t(axis(channel).count()), step,
                  [channel](Scratch& each) -> Counters& { return each.codes[channel]; });
        const bool derived = channel == ScopeHistogram::Luma;
        counts->rounded[channel] =
            channel == ScopeHistogram::Alpha ? m_reader.isFine() : derived || !m_reader.isExact();
        // Sums of some rows only would not be those of the counts.
        if (!m_reader.isFine() || step > 1)
            continue;
        counts->sums[channel] = std::make_unique<ExactSums>();
        for (const Scratch* each : scratches)
            counts->sums[channel]->add(*each->sums[channel]);
    }
    for (const Scratch* each : scratches) {
        counts->pixels += each->pixels * step;
        counts->transparent += each->transparent * step;
        counts->illegal += each->legal.illegal * step;
        counts->outsideEbuR103 += each->legal.outsideEbuR103 * step;
    }
    result.statistics = counts->statistics();
    result.values = ScopeValues(std::move(counts));
}

void ScopePass::addVectors(const Scratches& scratches, ScopeResult& result) const {
    const auto step = std::uint32_t(m_request.rowStep);
    ScopeVectors& vectors = result.vectors;
    vectors.range = m_request.vectors.chroma;
    vectors.size = vectors.range.bins;
    const VectorSlots slot(vectors.size);
    vectors.counts = sumOf(scratches, slot.count(), step,
                           [](Scratch& each) -> Counters& { return each.vectors; });
    vectors.outside = vectors.counts[slot.outside()];
    vectors.nan = vectors.counts[slot.notANumber()];
    vectors.gated = vectors.counts[slot.gated()];
    vectors.counts.resize(slot.cells);
    for (const Scratch* each : scratches) {
        for (std::size_t i = 0; i < vectors.outsideByDegree.size(); ++i)
            vectors.outsideByDegree[i] += each->outsideByDegree[i] * step;
        vectors.pixels += each->pixels * step;
    }
}

void ScopePass::addHues(const Scratches& scratches, ScopeResult& result) const {
    const auto step = std::uint32_t(m_request.rowStep);
    ScopeHues& hues = result.hues;
    auto all = sumOf(scratches, HueSlots::Count, step,
                     [](Scratch& each) -> Counters& { return each.hues; });
    auto saturations = sumOf(scratches, HueSlots::Count, step,
                             [](Scratch& each) -> Counters& { return each.saturations; });
    for (const Scratch* each : scratches)
        hues.pixels += each->pixels * step;
    hues.greys = all[HueSlots::Grey];
    hues.above = saturations[HueSlots::Above];
    hues.none = all[HueSlots::None];
    all.resize(HueSlots::Codes + 1);
    saturations.resize(HueSlots::Codes + 1);
    hues.hue = std::move(all);
    hues.saturation = std::move(saturations);
}

void ScopePass::addSolid(const Scratches& scratches, ScopeResult& result) const {
    const auto step = std::uint32_t(m_request.rowStep);
    ScopeSolid& solid = result.solid;
    solid.range = m_request.solid;
    solid.cells = solid.range.bins;
    const SolidSlots slot(solid.cells);
    solid.counts =
        sumOf(scratches, slot.count(), step, [](Scratch& each) -> Counters& { return each.solid; });
    solid.nan = solid.counts[slot.notANumber()];
    solid.outsideCounts.assign(solid.counts.begin() + slot.outside(),
                               solid.counts.begin() + slot.notANumber());
    solid.counts.resize(slot.cells);
    for (const Scratch* each : scratches)
        solid.pixels += each->pixels * step;
    for (const std::uint32_t count : solid.outsideCounts)
        solid.outside += count;
}

ScopeResult ScopePass::finish(const Scratches& scratches) {
    ScopeResult result;
    result.parts = m_request.parts & (ScopeRequest::AllParts | ScopeRequest::Hues);
    result.proxy = std::max(m_image.proxy, 1);
    result.rowStep = m_request.rowStep;
    result.encoding = m_request.encoding;
    const int proxy = result.proxy;
    if (m_units > 0)
        result.region = {m_image.left + m_x.begin * proxy, m_image.top + m_y.begin * proxy,
                         (m_x.end - m_x.begin) * proxy, (m_y.end - m_y.begin) * proxy};
    if (wants(ScopeRequest::Values))
        addValues(scratches, result);
    if (wants(ScopeRequest::Vectors))
        addVectors(scratches, result);
    if (wants(ScopeRequest::Solid))
        addSolid(scratches, result);
    if (wants(ScopeRequest::Hues))
        addHues(scratches, result);
    if (m_request.rowStep > 1) {
        const auto step = std::uint32_t(m_request.rowStep);
        scale(m_waveform.columnPixels, step);
        for (auto* group :
             {&m_waveform.counts, &m_waveform.below, &m_waveform.above, &m_waveform.nan}) {
            for (auto& counts : *group)
                scale(counts, step);
        }
    }
    result.waveform = std::move(m_waveform);
    return result;
}

ScopeResult countScopes(const ScopeImage& image, const ScopeRequest& request, int threads,
                        int unitSize) {
    ScopePass pass(image, request, unitSize);
    std::atomic<int> next{0};
    Failure failure;
    const auto work = [&](ScopePass::Scratch& scratch) {
        try {
            for (int unit = next++; unit < pass.units() && !failure.failed(); unit = next++)
                pass.count(unit, scratch);
        } catch (...) {
            failure.keep(std::current_exception());
        }
    };
    std::vector<std::unique_ptr<ScopePass::Scratch>> scratches;
    const int wanted = std::clamp(threads, 1, std::max(pass.units(), 1));
    for (int i = 0; i < wanted; ++i)
        scratches.push_back(pass.makeScratch());
    std::vector<std::thread> others;
    try {
        for (std::size_t i = 1; i < scratches.size(); ++i)
            others.emplace_back([&work, &scratches, i] { work(*scratches[i]); });
    } catch (const std::system_error&) {
        // Where no more threads are to be had, those that are there do the work.
    }
    work(*scratches[0]);
    for (std::thread& each : others)
        each.join();
    if (failure.error())
        std::rethrow_exception(failure.error());
    Scratches all;
    for (const auto& each : scratches)
        all.push_back(each.get());
    return pass.finish(all);
}

ScopeResult countScopes(const ScopeImage& image, const ScopeRequest& request, int threads) {
    return countScopes(image, request, threads, 0);
}

} // namespace Kestrel::UI
