#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <string_view>

namespace Kestrel::UI {

/** Letters typed into a list lead to the next name that begins with them. Without a clock: times are
    milliseconds of any that only goes forward. */
class TypeAhead {
public:
    /** After which a text is over. */
    static constexpr std::int64_t Pause = 1000;

    /** The name of a row, in UTF-8 where it can be. */
    using NameOf = std::function<std::string_view(int row)>;

    /** Whether a text is being typed, of which a blank is a part. */
    bool isActive(std::int64_t now) const { return !m_text.isEmpty() && now - m_last <= Pause; }

    /** The row to go to for what was typed, from the current row (-1 for none) on and round to it;
        -1 where no name begins so. A text goes on with the row it has found; the same letter
        again and again goes through all that begin with it. */
    int find(const QString& typed, int current, int rows, const NameOf& nameOf, std::int64_t now);

    void forget() { m_text.clear(); }

private:
    QString m_text;
    std::int64_t m_last = 0;
};

} // namespace Kestrel::UI
