#pragma once

#include <KxUI/curves/KeyCurve.h>

#include <vector>

namespace Kestrel::UI {

/** Keys of a curve between which a change shows, both included. */
struct KeyRange {
    int first = 0;
    int last = -1;

    /** What looks other when the keys from `first` up to but without `end` are replaced, or were:
        their neighbours, those that look at two neighbours, and whole runs of natural pieces. All
        keys where the curve repeats what changes. */
    static KeyRange touched(const KeyCurve& curve, std::size_t first, std::size_t end);

    /** What differs between two curves with as many keys; empty where none does. */
    static KeyRange between(const KeyCurve& was, const KeyCurve& becomes);

    /** What will look other with `keys` from the key `first` on; empty where they are the same. */
    static KeyRange changed(const KeyCurve& was, std::size_t first,
                            const std::vector<KeyCurve::Key>& keys);

    bool isEmpty() const { return last < first; }
    KeyRange united(const KeyRange& other) const;
};

} // namespace Kestrel::UI
