#pragma once

#include <KxUI/Export.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::UI {

class Curve;

/** A function through any number of keys, sorted by x, each with the way it goes on to the next
    one: the curve of an animated parameter, or a transfer curve. Every piece is a cubic of x in the
    form of Hermite, so that no slope can make it turn back.

    Coordinates and slopes are finite and below `Largest` in magnitude. A piece so narrow or so
    steep that a double does not hold its slopes is a straight line, so that finite keys never give
    an infinite value.

    A plain value; copies share their keys until one is changed. Any number of threads may evaluate
    one curve that none of them changes, and change curves of their own. */
class KXUI_EXPORT KeyCurve {
public:
    /** Keys at or beyond this, in any of their numbers, are not taken. */
    static constexpr double Largest = 1e150;

    /** How the curve goes from a key to the next one. */
    enum class Shape : std::uint8_t {
        Constant, ///< keeps the key's y up to the next key, and steps there
        Linear,   ///< a straight line
        Smooth,   ///< the slope at a key is that from its neighbour to its other one (Catmull-Rom);
                  ///< at the ends that of the line to the neighbour
        Monotone, ///< never leaves the range between two keys: slopes by Fritsch and Butland's
                  ///< weighted harmonic mean, 0 at peaks and at the ends
        Natural,  ///< a natural cubic spline over all keys that follow each other with this shape
        Free      ///< the slopes of the keys
    };

    /** What the curve does before its first and after its last key. */
    enum class Beyond : std::uint8_t {
        Hold,   ///< the y of that key
        Line,   ///< a straight line with the slope that the curve has there
        Repeat, ///< the same again; it steps where the ends differ
        Mirror  ///< the same backwards, then forwards, and so on
    };

    /** A place that the curve goes through. */
    struct Key {
        double x = 0; ///< along the axis: a time, or what goes in
        double y = 0; ///< the curve's value there
        /** For `Free` pieces: dy/dx where the piece before the key arrives (only if `broken`, else
            it is `slopeOut`) and where the one after it leaves. */
        double slopeIn = 0;
        double slopeOut = 0;
        /** Of the piece after the key. */
        Shape shape = Shape::Monotone;
        bool broken = false;
        /** For views; makes no curve differ from another one. */
        bool selected = false;
    };

    /** The slopes of a curve at a key, whatever its shapes. */
    struct Slopes {
        double in = 0;  ///< of the piece before the key
        double out = 0; ///< of the one after it
    };

    /** No keys; 0 everywhere. */
    KeyCurve();
    explicit KeyCurve(std::vector<Key> keys);
    KeyCurve(const KeyCurve&);
    KeyCurve(KeyCurve&&) noexcept;
    KeyCurve& operator=(const KeyCurve&);
    KeyCurve& operator=(KeyCurve&&) noexcept;
    ~KeyCurve();

    /** The same function, all `Natural`, within the rounding of `Curve`'s floats. Where two knots
        coincide, the step between them is `Linear`. */
    static KeyCurve of(const Curve& curve);

    /** Makes `curve` the same function within `tolerance`, over the keys' range, with as many knots
        as it can hold at most. False, and `curve` as it was, where it cannot. */
    bool toCurve(Curve& curve, float tolerance) const;

    /** How many keys there are. */
    std::size_t size() const noexcept;
    /** Whether there are none. */
    bool isEmpty() const noexcept { return size() == 0; }

    /** The key at `index`; a default one outside the count. */
    Key key(std::size_t index) const noexcept;
    const std::vector<Key>& keys() const noexcept;

    /** All keys anew: sorted; those with a number that is not finite or too large are dropped; of
        several at one x the last one stays. */
    void setKeys(std::vector<Key> keys);

    /** Puts the key at its place, instead of one at the same x. Its index, or size() where it was
        not taken. */
    std::size_t insert(const Key& key);

    /** Puts a key on the curve at `x`, which changes nothing else of the function: pieces whose
        slopes would have followed the new key become `Free`. Its index; that of the key which is
        there already; size() where x is outside of the keys' range or not finite. */
    std::size_t insertOnCurve(double x);

    /** Replaces the key at `index`. False, and nothing changed, outside the count, for a key that
        is not taken, and where its x is not between its neighbours'. */
    bool setKey(std::size_t index, const Key& key);

    /** Replaces the keys from `first` on by as many as `keys` has; false as setKey(). */
    bool setKeys(std::size_t first, const std::vector<Key>& keys);

    /** Removes the keys first to first + count - 1, those of them that exist. */
    void erase(std::size_t first, std::size_t count = 1);

    /** Selects the key at `index` or not; nothing outside the count. */
    void setSelected(std::size_t index, bool selected);

    /** The index of the first key at or after `x`; size() without one. */
    std::size_t firstFrom(double x) const noexcept;

    /** The slopes that the curve has at the key at `index`; 0 outside the count. At a key without a
        piece on one side that side's is the other one's. */
    Slopes slopes(std::size_t index) const noexcept;

    /** The value at `x`; at a step that after it. 0 without keys, the last key's y for an x that is
        not a number. */
    double valueAt(double x) const noexcept;

    /** dy/dx at `x`, at a corner that after it. */
    double slopeAt(double x) const noexcept;

    /** `count` values, evenly spaced: entry i is the value at from + i (to - from) / (count - 1).
        A single one is that at `from`. Nothing for null. */
    void sample(double from, double to, std::size_t count, double* out) const noexcept;

    /** The least and the greatest value of a stretch of the curve. */
    struct Range {
        double low = 0;  ///< the least one
        double high = 0; ///< the greatest one
    };
    /** Those between two places, both included. Extremes inside of pieces count. */
    Range range(double from, double to) const noexcept;

    /** What the curve does before its first key. */
    Beyond before() const noexcept;
    /** What it does after its last one. */
    Beyond after() const noexcept;
    /** Chooses both; `Hold` at first. */
    void setBeyond(Beyond before, Beyond after);

    /** The curve as text, from which setText() makes the same one to the last bit, selection
        included. A natural key is written as a knot of `Curve` is, so that the text of either can be
        read by the other; what is more than that follows in words, in this order where it is there:

            (0, 0, monotone), (0.5, 0.6, free, in -1, out 2, broken, selected), (1, 1) after repeat

        No keys are "()". Numbers are as short as possible, in the classic locale. */
    std::string text() const;

    /** Makes the curve what text() says, or any text of that kind: words in any order, spaces and
        line ends between all parts. Keys without a word for their shape are `Natural`. False, and
        the curve as it was, for any other text, and for numbers that no key takes. */
    bool setText(std::string_view text);

    /** The same keys, selection apart, and the same beyond. */
    bool operator==(const KeyCurve& other) const noexcept;
    bool operator!=(const KeyCurve& other) const noexcept { return !(*this == other); }

private:
    struct Data;

    Data& own();

    std::shared_ptr<Data> m;
};

} // namespace Kestrel::UI
