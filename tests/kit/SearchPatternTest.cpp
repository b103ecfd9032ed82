#include <KxUI/kit/SearchPattern.h>

#include <support/TestRegistry.h>

using Kestrel::UI::SearchPattern;

class SearchPatternTest : public QObject {
    Q_OBJECT

private slots:
    void rangesOfWords() {
        struct Row {
            const char* pattern;
            const char* text;
            const char* ranges; ///< "-" where the text does not match
        };
        const Row rows[] = {
            {"", "anything", ""},
            {"  ", "anything", ""},
            {"late", "Plate.1001.exr", "1+4"},
            {"EXR pla", "plate.exr", "0+3 6+3"},
            {"exr jpg", "plate.exr", "-"},
            {"aa", "aaaaa", "0+4"}, // each once, and joined
            {"ab bc", "abc", "0+3"},
            {"a A", "a b a", "0+1 4+1"},
            {"\"b a\"", "a b a", "2+3"},
            {"\"b a", "a b", "-"},
            {"\xC3\x84", "\xC3\xA4hre", "0+1"},
            {"x", "", "-"},
        };
        for (const Row& row : rows) {
            const SearchPattern pattern(QString::fromUtf8(row.pattern));
            const QString text = QString::fromUtf8(row.text);
            QStringList found;
            for (const SearchPattern::Range& range : pattern.ranges(text))
                found += QStringLiteral("%1+%2").arg(range.start).arg(range.length);
            if (!pattern.matches(text))
                found = QStringList(QStringLiteral("-"));
            QCOMPARE(found.join(' '), QString::fromLatin1(row.ranges));
            QCOMPARE(pattern.isEmpty(), QString::fromUtf8(row.pattern).trimmed().isEmpty());
        }
    }
};

KXUI_TEST(SearchPatternTest);
#include "SearchPatternTest.moc"
