#pragma once

#include <KxUI/Export.h>

#include <QString>
#include <QVector>

#include <memory>

namespace Kestrel::UI {

/** What somebody searches for: words, of which every one must be in a text, in any order and
    written in capitals or not. Words between two quotation marks belong together. A plain value:
    made once and then asked of every row. Any thread. */
class KXUI_EXPORT SearchPattern {
public:
    /** A part of a text, in QChars. */
    struct Range {
        int start = 0;  ///< of the first character
        int length = 0; ///< at least 1
    };

    /** Finds every text. */
    SearchPattern();
    explicit SearchPattern(const QString& words);
    ~SearchPattern();
    SearchPattern(const SearchPattern& other);
    SearchPattern(SearchPattern&& other) noexcept;
    SearchPattern& operator=(const SearchPattern& other);
    SearchPattern& operator=(SearchPattern&& other) noexcept;

    /** Whether there is no word to find. */
    bool isEmpty() const;

    /** Whether the text has every word; true for a pattern without words. */
    bool matches(const QString& text) const;

    /** Every place of every word, in the order of the text; those that overlap or touch are one.
        None where the text does not match. */
    QVector<Range> ranges(const QString& text) const;

private:
    struct Private;
    std::shared_ptr<const Private> d;
};

} // namespace Kestrel::UI
