#include <KxUI/browse/Completion_p.h>

#include <KxUI/files/RawName_p.h>
#include <KxUI/files/platform/Directory_p.h>

#include <algorithm>
#include <utility>

namespace Kestrel::UI {
namespace {

constexpr int PageRows = 8;

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Whether a name cannot begin as the stem does, told by its bytes where that is possible: decoding
// a hundred thousand names at every key is too much.
class Screen {
public:
    explicit Screen(const QString& stem)
        : m_stem(stem)
        , m_isDotted(stem.startsWith(QLatin1Char('.'))) {
        const bool isAscii =
            std::all_of(stem.begin(), stem.end(), [](QChar c) { return c.unicode() < 0x80; });
        if (isAscii)
            m_bytes = stem.toLatin1();
        for (char& c : m_bytes)
            c = lower(c);
    }

    bool passes(std::string_view name) const {
        if (!m_isDotted && !name.empty() && name.front() == '.')
            return false;
        const std::string_view bytes = viewOf(m_bytes);
        return name.size() >= bytes.size() &&
               std::equal(bytes.begin(), bytes.end(), name.begin(),
                          [](char a, char b) { return a == lower(b); });
    }

    bool matches(const QString& text) const { return text.startsWith(m_stem, Qt::CaseInsensitive); }

private:
    QString m_stem;
    QByteArray m_bytes; ///< in lower case; empty where the stem is not of plain letters
    bool m_isDotted;
};

// What a number of names begin with.
class Common {
public:
    explicit Common(Qt::CaseSensitivity sensitivity)
        : m_sensitivity(sensitivity) {}

    void add(const CompletionMatches::Row& row) {
        if (m_count++ == 0) {
            m_first = row;
            m_text = row.text;
            return;
        }
        int same = 0;
        const int most = static_cast<int>(std::min(m_text.size(), row.text.size()));
        while (same < most && isSame(m_text.at(same), row.text.at(same)))
            ++same;
        // Not through the middle of a character.
        if (same > 0 && m_text.at(same - 1).isHighSurrogate())
            --same;
        m_text.truncate(same);
    }

    int count() const { return m_count; }
    const QString& text() const { return m_text; }
    const CompletionMatches::Row& first() const { return m_first; }

private:
    bool isSame(QChar a, QChar b) const {
        return a == b ||
               (m_sensitivity == Qt::CaseInsensitive && a.toCaseFolded() == b.toCaseFolded());
    }

    Qt::CaseSensitivity m_sensitivity;
    CompletionMatches::Row m_first;
    QString m_text;
    int m_count = 0;
};

} // namespace

CompletionMatches matchesOf(const std::vector<CompletionName>& names, const QString& stem,
                            bool foldersOnly, int limit) {
    CompletionMatches found;
    const Screen screen(stem);
    Common folded(Qt::CaseInsensitive);
    Common exact(Qt::CaseSensitive);
    for (const CompletionName& each : names) {
        const bool isWanted = !foldersOnly || each.isFolder || each.mayBeFolder;
        if (!isWanted || !screen.passes(each.name))
            continue;
        const QByteArray bytes = bytesOf(each.name);
        CompletionMatches::Row row{decodedName(bytes), bytes, each.isFolder};
        if (!screen.matches(row.text))
            continue;
        ++found.count;
        folded.add(row);
        if (row.text.startsWith(stem))
            exact.add(row);
        if (static_cast<int>(found.rows.size()) < limit)
            found.rows.push_back(std::move(row));
    }
    const Common& meant = exact.count() > 0 ? exact : folded;
    // What was typed stays as it is while it may mean names of either case.
    found.common = meant.count() > 1 ? stem + meant.text().mid(stem.size()) : meant.text();
    if (meant.count() == 1)
        found.single = meant.first();
    return found;
}

void Completion::reset(const QString& text, int cursor) {
    close();
    edited(text, cursor);
    m_isTyped = false;
    m_opensByItself = false;
}

bool Completion::edited(const QString& text, int cursor) {
    m_text = text;
    m_cursor = cursor;
    m_waiting.reset();
    m_current = -1;
    m_isTyped = true;
    m_opensByItself = true;
    const auto separators = [](QChar c) {
        return c == QLatin1Char('/') || (c == QLatin1Char('\\') && Platform::backslashSeparates());
    };
    int begin = cursor;
    while (begin > 0 && !separators(text.at(begin - 1)))
        --begin;
    const QString folder = text.left(begin);
    m_isPossible = cursor == text.size() || separators(text.at(cursor));
    if (folder != m_folder) {
        m_folder = folder;
        forgetNames();
    }
    if (m_hasNames)
        setNames(std::move(m_names));
    else
        m_isOpen = false;
    return m_isPossible;
}

void Completion::forgetNames() {
    m_names.clear();
    m_hasNames = false;
    m_matches = {};
    m_isOpen = false;
    m_current = -1;
}

void Completion::find() {
    m_matches = matchesOf(m_names, stem(), !m_takesFiles, MostRows);
    m_current = std::min(m_current, static_cast<int>(m_matches.rows.size()) - 1);
}

// A list of what stands there already says nothing.
bool Completion::showsNews() const {
    return m_matches.count > 1 || (m_matches.count == 1 && m_matches.rows.front().text != stem());
}

bool Completion::open() {
    if (!m_matches.rows.empty())
        m_isOpen = true;
    return m_isOpen;
}

Completion::Outcome Completion::setNames(std::vector<CompletionName> names) {
    m_names = std::move(names);
    m_hasNames = true;
    if (!m_isPossible) {
        m_isOpen = false;
        return {};
    }
    find();
    if (const auto waiting = std::exchange(m_waiting, std::nullopt))
        return press(*waiting);
    m_isOpen = (m_isOpen || m_opensByItself) && showsNews();
    return {};
}

void Completion::giveUp() {
    m_waiting.reset();
    m_opensByItself = false;
}

void Completion::close() {
    m_isOpen = false;
    m_current = -1;
    m_waiting.reset();
    m_opensByItself = false;
}

Completion::Outcome Completion::press(Key key) {
    Outcome outcome;
    switch (key) {
    case Key::Tab:
        return m_isTyped ? complete() : outcome;
    case Key::Open:
    case Key::Down:
        if (m_isOpen)
            return move(1);
        if (!m_isPossible)
            return outcome;
        outcome.isTaken = true;
        outcome.wantsNames = !m_hasNames;
        if (m_hasNames)
            open();
        else
            m_waiting = key;
        return outcome;
    case Key::Up:
        return move(-1);
    case Key::PageDown:
        return move(PageRows);
    case Key::PageUp:
        return move(-PageRows);
    case Key::Return:
        if (m_isOpen && m_current >= 0)
            return choose(m_current);
        close();
        return outcome;
    case Key::Escape:
        outcome.isTaken = m_isOpen;
        close();
        return outcome;
    }
    return outcome;
}

Completion::Outcome Completion::move(int rows) {
    Outcome outcome;
    outcome.isTaken = m_isOpen;
    const int last = static_cast<int>(m_matches.rows.size()) - 1;
    if (m_isOpen) // above the first row is what was typed
        m_current = std::clamp(m_current + rows, -1, last);
    return outcome;
}

Completion::Outcome Completion::complete() {
    Outcome outcome;
    if (!m_isPossible)
        return outcome;
    if (!m_hasNames) {
        // The second one does not wait: the key must lead out of the field.
        outcome.isTaken = !m_waiting;
        outcome.wantsNames = !m_waiting;
        if (outcome.isTaken)
            m_waiting = Key::Tab;
        else
            m_waiting.reset();
        return outcome;
    }
    if (m_isOpen && m_current >= 0)
        return choose(m_current);
    if (m_matches.single) {
        const CompletionMatches::Row row = *m_matches.single;
        if (row.isFolder || row.text != stem())
            return put(row.text, row.isFolder, row.name);
        return outcome; // a file's name that is complete
    }
    if (m_matches.common.size() > stemSize())
        return put(m_matches.common, false, {});
    outcome.isTaken = !m_isOpen && open();
    return outcome;
}

Completion::Outcome Completion::choose(int row) {
    if (row < 0 || row >= static_cast<int>(m_matches.rows.size()))
        return {};
    const CompletionMatches::Row chosen = m_matches.rows[static_cast<std::size_t>(row)];
    const Outcome outcome = put(chosen.text, chosen.isFolder, chosen.name);
    close();
    return outcome;
}

Completion::Outcome Completion::put(const QString& name, bool isFolder, const QByteArray& bytes) {
    Outcome outcome;
    outcome.isTaken = true;
    outcome.hasText = true;
    QString rest = m_text.mid(m_cursor);
    QString end;
    if (isFolder && rest.isEmpty())
        end = QStringLiteral("/");
    outcome.text = m_folder + name + end + rest;
    outcome.cursor = static_cast<int>(m_folder.size() + name.size() + end.size());
    outcome.name = bytes;
    // What follows is asked for when somebody types on, or presses another key.
    const bool isTyped = m_isTyped;
    const bool wasOpen = m_isOpen;
    edited(outcome.text, outcome.cursor);
    m_isTyped = isTyped;
    m_opensByItself = false;
    if (!wasOpen || m_matches.count < 2)
        m_isOpen = false;
    return outcome;
}

} // namespace Kestrel::UI
