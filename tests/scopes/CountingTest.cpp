#include "Pictures.h"
#include "SlowCount.h"

#include <KxUI/scopes/ScopePass_p.h>
#include <KxUI/scopes/ScopeSelection.h>

#include <hwy/targets.h>
#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <functional>
#include <limits>

using namespace Kestrel::UI;
using Kestrel::Test::Picture;
using Kestrel::Test::SlowCount;

namespace {

constexpr float Infinity = std::numeric_limits<float>::infinity();
constexpr float NaN = std::numeric_limits<float>::quiet_NaN();

// All processors that this one can be.
std::vector<std::int64_t> targets() {
    std::vector<std::int64_t> all;
    for (std::int64_t left = hwy::SupportedTargets(); left != 0; left &= left - 1)
        all.push_back(left & -left);
    return all;
}

void useTarget(std::int64_t target) {
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

ScopeRequest wholeRequest() {
    ScopeRequest request;
    request.parts = ScopeRequest::AllParts | ScopeRequest::Hues;
    request.waveform.channels = WaveformRange::Rgb | WaveformRange::YCbCr;
    request.waveform.values.bins = 37;
    request.waveform.chroma.bins = 21;
    request.vectors.chroma.bins = 19;
    request.solid.bins = 7;
    return request;
}

using Change = std::function<void(ScopeImage&, ScopeRequest&)>;

} // namespace

Q_DECLARE_METATYPE(Change)

class CountingTest : public QObject {
    Q_OBJECT

private slots:
    void everyLayout_data() {
        QTest::addColumn<int>("layout");
        for (int i = 0; i < PixelLayoutCount; ++i)
            QTest::addRow("layout %d", i) << i;
    }

    void everyLayout() {
        QFETCH(int, layout);
        for (const int width : {1, 6, 97, 401}) {
            for (const bool bottomUp : {false, true}) {
                const Picture picture(PixelLayout(layout), width, 5, unsigned(width), bottomUp);
                const SlowCount slow(picture.image, wholeRequest());
                const auto result = countScopes(picture.image, wholeRequest());
                QCOMPARE(slow.differs(result), std::string());
            }
        }
    }

    void everyRule_data() {
        const Kestrel::Test::Columns<Change> add("change");
        using Image = ScopeImage;
        using Request = ScopeRequest;
        add("plain", [](Image&, Request&) {});
        add("unpremultiplied",
            [](Image& image, Request&) { image.alpha = Image::Alpha::Unpremultiply; });
        add("without transparent pixels",
            [](Image& image, Request&) { image.alpha = Image::Alpha::SkipTransparent; });
        add("rows as columns", [](Image& image, Request& request) {
            image.alpha = Image::Alpha::Unpremultiply;
            request.waveform.byRows = true;
        });
        add("folded", [](Image&, Request& request) { request.waveform.mostColumns = 50; });
        add("folded rows", [](Image&, Request& request) {
            request.waveform.mostColumns = 9;
            request.waveform.byRows = true;
        });
        add("a region", [](Image&, Request& request) {
            request.wholeFrame = false;
            request.region = {13, 2, 101, 5};
        });
        add("a region partly outside", [](Image& image, Request& request) {
            image.left = -20;
            image.top = 7;
            request.wholeFrame = false;
            request.region = {-30, -30, 1000, 45};
        });
        add("a region far outside", [](Image&, Request& request) {
            request.wholeFrame = false;
            request.region = {2000000000, 2000000000, 2000000000, 2000000000};
        });
        add("every third row", [](Image&, Request& request) { request.rowStep = 3; });
        add("every third row as a column", [](Image&, Request& request) {
            request.rowStep = 3;
            request.waveform.byRows = true;
        });
        add("luma gate", [](Image&, Request& request) {
            request.vectors.lumaLower = 0.25F;
            request.vectors.lumaUpper = 0.75F;
        });
        add("light as PQ", [](Image&, Request& request) {
            request.encoding.transfer = ScopeEncoding::Transfer::Pq;
        });
        add("transformed", [](Image&, Request& request) {
            request.encoding.transfer = ScopeEncoding::Transfer::Srgb;
            request.encoding.transform = [](float* rgb, int pixels) {
                for (int i = 0; i < pixels; ++i)
                    rgb[3 * i + 1] = rgb[3 * i] * 0.5F;
            };
        });
        add("only vectors", [](Image&, Request& request) { request.parts = Request::Vectors; });
        add("only luma", [](Image&, Request& request) {
            request.parts = Request::Waveform;
            request.waveform.channels = WaveformRange::Luma;
        });
    }

    void everyRule() {
        QFETCH(Change, change);
        for (const std::int64_t target : targets()) {
            useTarget(target);
            for (const int unit : {0, 1, 7, 1000}) {
                Picture floats = Picture::ofFloats(301, 11);
                Picture codes(PixelLayout::RGB10A2, 301, 11);
                for (ScopeImage& image : std::array<ScopeImage, 2>{floats.image, codes.image}) {
                    ScopeRequest request = wholeRequest();
                    change(image, request);
                    const SlowCount slow(image, request);
                    const auto result = countScopes(image, request, unit == 7 ? 3 : 1, unit);
                    QCOMPARE(slow.differs(result), std::string());
                }
            }
        }
        useTarget(0);
    }

    // 16-bit counters of a strip are emptied in time.
    void manyHitsInOneCounter() {
        Picture picture(PixelLayout::RGB8, 4, 70000);
        std::memset(picture.memory, 128, std::size_t(picture.image.stride) * 70000);
        ScopeRequest request = wholeRequest();
        for (const bool byRows : {false, true}) {
            request.waveform.byRows = byRows;
            request.waveform.mostColumns = 1;
            const auto result = countScopes(picture.image, request);
            const auto& range = result.waveform.luma;
            QCOMPARE(result.waveform.count(ScopeWaveform::Red, 0, range.binOf(128.0F / 255)),
                     280000U);
        }
    }

    void nothingToCount_data() {
        const Kestrel::Test::Columns<Change> add("change");
        add("no memory", [](ScopeImage& image, ScopeRequest&) { image.pixels = nullptr; });
        add("no width", [](ScopeImage& image, ScopeRequest&) { image.width = 0; });
        add("negative height", [](ScopeImage& image, ScopeRequest&) { image.height = -5; });
        add("less than a group of V210", [](ScopeImage& image, ScopeRequest&) {
            image.layout = PixelLayout::V210;
            image.width = 5;
        });
        add("no such layout",
            [](ScopeImage& image, ScopeRequest&) { image.layout = PixelLayout(PixelLayoutCount); });
        add("empty region", [](ScopeImage&, ScopeRequest& request) { request.wholeFrame = false; });
        add("region elsewhere", [](ScopeImage&, ScopeRequest& request) {
            request.wholeFrame = false;
            request.region = {100, 0, 5, 5};
        });
    }

    void nothingToCount() {
        QFETCH(Change, change);
        Picture picture(PixelLayout::RGBA8, 40, 10);
        ScopeRequest request = wholeRequest();
        change(picture.image, request);
        for (const bool byRows : {false, true}) {
            request.waveform.byRows = byRows;
            const auto result = countScopes(picture.image, request, 4);
            QVERIFY(result.region.isEmpty());
            QVERIFY(result.values.isEmpty());
            QCOMPARE(result.waveform.columns, 0);
            QCOMPARE(result.vectors.pixels, std::uint64_t(0));
            QCOMPARE(result.statistics.channels[0].finite, std::uint64_t(0));
        }
    }

    void senselessRanges_data() {
        const Kestrel::Test::Columns<float, float, int> add("lower", "upper", "bins");
        add("not a number", NaN, NaN, 10);
        add("infinite", -Infinity, Infinity, 10);
        add("without width", 0.5F, 0.5F, 10);
        add("at zero", 0.0F, 0.0F, 10);
        add("upside down", 1.0F, 0.0F, 10);
        add("no bins", 0.0F, 1.0F, 0);
        add("too many bins", 0.0F, 1.0F, 2000000000);
        add("enormous", -3e38F, 3e38F, 4096);
        add("tiny", 0.0F, 1e-45F, 4096);
    }

    void senselessRanges() {
        QFETCH(float, lower);
        QFETCH(float, upper);
        QFETCH(int, bins);
        const ValueRange range{lower, upper, bins};
        const ValueRange usable = range.normalized();
        QVERIFY(usable.upper > usable.lower);
        QVERIFY(std::isfinite(usable.scale()) && usable.scale() > 0);
        QCOMPARE(usable.normalized(), usable);
        ScopeRequest request = wholeRequest();
        request.waveform.values = request.waveform.chroma = range;
        request.vectors.chroma = request.solid = range;
        const Picture picture = Picture::ofFloats(33, 9);
        const auto result = countScopes(picture.image, request);
        request.waveform.values = request.waveform.chroma = usable;
        QCOMPARE(SlowCount(picture.image, request).differs(result), std::string());
    }

    // A proxy counts its own pixels, and speaks of those of the full frame.
    void proxy() {
        Picture picture(PixelLayout::RGBA8, 40, 10);
        picture.image.proxy = 4;
        ScopeRequest request;
        request.wholeFrame = false;
        request.region = {5, 3, 10, 2};
        const auto result = countScopes(picture.image, request);
        QCOMPARE(result.region, (ScopeRegion{4, 0, 12, 8}));
        QCOMPARE(result.values.pixels(), std::uint64_t(6));
    }

    // Whoever counts in a histogram's own range counts the same.
    void histogramIsDirectCount() {
        const Picture picture = Picture::ofFloats(101, 31);
        const SlowCount slow(picture.image, ScopeRequest());
        const auto result = countScopes(picture.image, ScopeRequest());
        for (const ValueRange range :
             {ValueRange{0, 1, 256}, ValueRange{-0.3F, 1.3F, 100}, ValueRange{0.9F, 0.95F, 4096}}) {
            const ScopeHistogram histogram = result.values.histogram(range);
            std::vector<std::uint32_t> bins(std::size_t(range.bins) + 3);
            for (const auto& pixel : slow.pixels())
                ++bins[std::size_t(range.binOf(HalfCode::value(HalfCode::of(pixel.rgb[1]))))];
            QVERIFY(std::equal(histogram.bins[1].begin(), histogram.bins[1].end(), bins.begin()));
            QCOMPARE(histogram.nan[1], std::uint64_t(bins[std::size_t(range.notANumber())]));
            std::uint64_t all = histogram.below[1] + histogram.above[1] + histogram.nan[1] +
                                histogram.positiveInfinity[1] + histogram.negativeInfinity[1];
            for (const std::uint32_t count : histogram.bins[1])
                all += count;
            QCOMPARE(all, histogram.pixels);
        }
    }

    void masks() {
        const Picture picture = Picture::ofFloats(205, 7);
        ScopeSelection selection;
        selection.kind = ScopeSelection::Kind::Everything;
        const auto all = selectionMask(picture.image, ScopeEncoding(), selection);
        QCOMPARE(all, std::vector<std::uint8_t>(205U * 7U, 255));
        selection.kind = ScopeSelection::Kind::Values;
        selection.channel = ScopeSelection::Green;
        selection.lower = 0.2F;
        selection.upper = Infinity;
        const auto some = selectionMask(picture.image, ScopeEncoding(), selection);
        const SlowCount slow(picture.image, ScopeRequest());
        for (const auto& pixel : slow.pixels())
            QCOMPARE(some[std::size_t(pixel.y * 205 + pixel.x)] == 255, pixel.rgb[1] >= 0.2F);
    }
};

KXUI_TEST(CountingTest);
#include "CountingTest.moc"
