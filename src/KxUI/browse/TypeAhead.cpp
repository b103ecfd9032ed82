#include <KxUI/browse/TypeAhead_p.h>

#include <algorithm>

namespace Kestrel::UI {
namespace {

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/** The beginning that names are looked at for: a list may have a million of them. */
class Beginning {
public:
    explicit Beginning(const QString& text)
        : m_text(text)
        , m_bytes(text.toUtf8())
        , m_isPlain(std::all_of(m_bytes.begin(), m_bytes.end(), [](char c) { return c > 0; })) {
        std::transform(m_bytes.begin(), m_bytes.end(), m_bytes.begin(), lowered);
    }

    bool operator()(std::string_view name) const {
        const auto length = static_cast<std::size_t>(m_bytes.size());
        if (m_isPlain)
            return name.size() >= length &&
                   std::equal(m_bytes.begin(), m_bytes.end(), name.begin(),
                              [](char a, char b) { return a == lowered(b); });
        return QString::fromUtf8(name.data(), static_cast<int>(name.size()))
            .startsWith(m_text, Qt::CaseInsensitive);
    }

private:
    QString m_text;
    QByteArray m_bytes;
    bool m_isPlain;
};

int findFrom(int first, int rows, const TypeAhead::NameOf& nameOf, const QString& text) {
    const Beginning begins(text);
    for (int i = 0; i < rows; ++i) {
        const int row = (first + i) % rows;
        if (begins(nameOf(row)))
            return row;
    }
    return -1;
}

} // namespace

int TypeAhead::find(const QString& typed, int current, int rows, const NameOf& nameOf,
                    std::int64_t now) {
    const bool goesOn = isActive(now);
    m_text = goesOn ? m_text + typed : typed;
    m_last = now;
    if (rows <= 0 || m_text.isEmpty())
        return -1;
    const int next = current < 0 ? 0 : current + 1;
    const int found = findFrom(goesOn ? std::max(current, 0) : next, rows, nameOf, m_text);
    if (found >= 0 || m_text.count(m_text.front()) != m_text.size())
        return found;
    return findFrom(next, rows, nameOf, m_text.left(1));
}

} // namespace Kestrel::UI
