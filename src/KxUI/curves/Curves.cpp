#include <KxUI/curves/Curves.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>

namespace Kestrel::UI {

Curves::Curves(int numCurves, unsigned int maxKnots, unsigned int numKnots)
    : m_count(std::clamp(numCurves, 0, MaximumCurves)) {
    m_curves.fill(Curve(maxKnots, numKnots));
}

const Curve& Curves::curve(int slot) const noexcept {
    return m_curves[std::size_t(std::clamp(slot, 0, MaximumCurves - 1))];
}

void Curves::setCurve(int slot, const Curve& curve) noexcept {
    if (slot >= 0 && slot < m_count)
        m_curves[std::size_t(slot)] = curve;
}

void Curves::addCurve(const Curve& curve) noexcept {
    if (m_count < MaximumCurves)
        m_curves[std::size_t(m_count++)] = curve;
}

void Curves::buildRGBALUT(unsigned int size, unsigned short* out) const noexcept {
    if (!out)
        return;
    constexpr int Channels = 4;
    constexpr int ColorChannels = 3;
    using Values = std::array<float, Curve::CodeChunk>;

    const Curve identity;
    const Curve& master = m_count == MaximumCurves ? m_curves.back() : identity;
    for (unsigned int begin = 0; begin < size;) {
        const unsigned int count = std::min(Curve::CodeChunk, size - begin);
        Values unchanged;
        identity.fill(begin, begin + count, size, unchanged.data());
        unsigned short* const entry = out + std::ptrdiff_t(begin) * Channels;
        for (int channel = 0; channel < ColorChannels; ++channel) {
            const int slot = m_count == 1 ? 0 : channel;
            Values values = unchanged;
            if (slot < m_count && !curve(slot).isIdentity())
                curve(slot).fill(begin, begin + count, size, values.data());
            if (!master.isIdentity())
                std::transform(values.begin(), values.begin() + count, values.begin(),
                               [&](float value) { return master.valueAt(value); });
            Curve::storeCodes(values.data(), count, entry + channel, Channels);
        }
        Curve::storeCodes(unchanged.data(), count, entry + ColorChannels, Channels);
        begin += count;
    }
}

bool Curves::operator==(const Curves& other) const noexcept {
    return std::equal(m_curves.begin(), m_curves.begin() + m_count, other.m_curves.begin(),
                      other.m_curves.begin() + other.m_count);
}

std::ostream& operator<<(std::ostream& stream, const Curves& curves) {
    for (int i = 0; i < curves.numCurves(); ++i)
        stream << (i == 0 ? "[" : ", [") << curves.curve(i) << ']';
    return stream;
}

std::istringstream& operator>>(std::istringstream& stream, Curves& curves) {
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    std::ios_base::iostate state = std::ios_base::eofbit;
    std::size_t from = 0;
    for (int slot = 0; slot < Curves::MaximumCurves; ++slot) {
        const std::size_t open = text.find('[', from);
        const std::size_t close = text.find(']', open);
        if (open == std::string::npos || close == std::string::npos)
            break;
        std::istringstream group(text.substr(open + 1, close - open - 1));
        group >> curves.m_curves[std::size_t(slot)];
        curves.m_count = std::max(curves.m_count, slot + 1);
        if (group.fail())
            state |= std::ios_base::failbit;
        from = close + 1;
    }
    stream.setstate(state);
    return stream;
}

} // namespace Kestrel::UI
