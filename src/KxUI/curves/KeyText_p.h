#pragma once

#include <KxUI/curves/KeyCurve.h>

#include <string>
#include <string_view>
#include <vector>

namespace Kestrel::UI {

/** What the text of a curve says, before anything is sorted or left out. */
struct KeyText {
    std::vector<KeyCurve::Key> keys;
    KeyCurve::Beyond before = KeyCurve::Beyond::Hold;
    KeyCurve::Beyond after = KeyCurve::Beyond::Hold;

    /** False for what is no such text; what has been read so far is in the members. */
    bool read(std::string_view text);
};

/** Writes keys one after the other. */
class KeyTextWriter {
public:
    void add(const KeyCurve::Key& key);
    /** A natural one, whose numbers are the shortest that are these floats again. */
    void add(float x, float y, bool selected);
    void addBeyond(KeyCurve::Beyond before, KeyCurve::Beyond after);
    std::string take();

private:
    void open();
    template <class Number>
    void number(Number value);
    void word(const char* name);

    std::string m_text;
};

} // namespace Kestrel::UI
