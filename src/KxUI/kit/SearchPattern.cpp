#include <KxUI/kit/SearchPattern.h>

#include <QStringList>
#include <QStringMatcher>

#include <algorithm>
#include <vector>

namespace Kestrel::UI {
namespace {

QStringList wordsOf(const QString& text) {
    QStringList words;
    QString word;
    bool quoted = false;
    const auto finish = [&] {
        if (!word.isEmpty() && !words.contains(word, Qt::CaseInsensitive))
            words += word;
        word.clear();
    };
    for (const QChar c : text) {
        if (c == QLatin1Char('"')) {
            finish();
            quoted = !quoted;
        } else if (c.isSpace() && !quoted) {
            finish();
        } else {
            word += c;
        }
    }
    finish();
    return words;
}

} // namespace

struct SearchPattern::Private {
    std::vector<QStringMatcher> words;
};

SearchPattern::SearchPattern() = default;

SearchPattern::SearchPattern(const QString& words) {
    auto own = std::make_shared<Private>();
    for (const QString& word : wordsOf(words))
        own->words.emplace_back(word, Qt::CaseInsensitive);
    if (!own->words.empty())
        d = std::move(own);
}

SearchPattern::~SearchPattern() = default;
SearchPattern::SearchPattern(const SearchPattern& other) = default;
SearchPattern::SearchPattern(SearchPattern&& other) noexcept = default;
SearchPattern& SearchPattern::operator=(const SearchPattern& other) = default;
SearchPattern& SearchPattern::operator=(SearchPattern&& other) noexcept = default;

bool SearchPattern::isEmpty() const {
    return !d;
}

bool SearchPattern::matches(const QString& text) const {
    return !d || std::all_of(d->words.begin(), d->words.end(),
                             [&](const QStringMatcher& word) { return word.indexIn(text) >= 0; });
}

QVector<SearchPattern::Range> SearchPattern::ranges(const QString& text) const {
    QVector<Range> found;
    if (!d || !matches(text))
        return found;
    for (const QStringMatcher& word : d->words) {
        const int length = static_cast<int>(word.pattern().size());
        for (int at = static_cast<int>(word.indexIn(text)); at >= 0;
             at = static_cast<int>(word.indexIn(text, at + length)))
            found.push_back({at, length});
    }
    std::sort(found.begin(), found.end(),
              [](const Range& a, const Range& b) { return a.start < b.start; });
    QVector<Range> joined;
    for (const Range& range : found) {
        if (joined.isEmpty() || range.start > joined.back().start + joined.back().length) {
            joined.push_back(range);
        } else {
            Range& last = joined.back();
            last.length =
                std::max(last.start + last.length, range.start + range.length) - last.start;
        }
    }
    return joined;
}

} // namespace Kestrel::UI
