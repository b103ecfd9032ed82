// Curves and sets of curves from text: whatever is read fits its capacity and comes back from what
// is written of it.

#include <KxUI/curves/Curves.h>

#include <support/Require.h>

#include <sstream>

using namespace Kestrel::Fuzz;
using namespace Kestrel::UI;

namespace {

template <class Value>
std::string written(const Value& value) {
    std::ostringstream stream;
    stream.precision(9);
    stream << value;
    return stream.str();
}

template <class Value>
bool read(const std::string& text, Value& value) {
    std::istringstream stream(text);
    return !(stream >> value).fail();
}

void checkCurve(const std::string& text, int capacity) {
    Curve curve{unsigned(capacity), 2};
    read(text, curve);
    require(curve.maxKnots() == capacity, "reading leaves the capacity alone");
    require(curve.numKnots() >= 2 && curve.numKnots() <= capacity, "the count grows up to it");
    Curve again{unsigned(capacity), 2};
    require(read(written(curve), again) && again == curve, "a curve comes back from its text");
}

void checkCurves(const std::string& text) {
    Curves curves;
    const bool readAll = read(text, curves);
    require(curves.numCurves() <= Curves::MaximumCurves, "no more curves than slots");
    require(readAll || curves.numCurves() > 0, "only a group can be wrong");
    Curves again;
    require(read(written(curves), again) && again == curves, "a set comes back from its text");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(textOf(data, size));
    if (text.find('[') == std::string::npos)
        checkCurve(text, 2 + int(size % 7));
    else
        checkCurves(text);
    return 0;
}
