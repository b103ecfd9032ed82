#include <KxUI/files/filename.h>
#include <KxUI/files/filename_p.h>

#include <support/TestRegistry.h>

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <cstring>
#include <random>

namespace {

// The pattern language as it is told: each alternative, each length of a star, one after the other.
// Takes exponential time.
class LiteralMatch {
public:
    static bool match(const char* s, const char* p) {
        for (;;) {
            switch (*p++) {
            case '\0':
                return *s == '\0';
            case '?':
                if (*s++ == '\0')
                    return false;
                break;
            case '*':
                if (*p == '\0')
                    return true;
                for (;; ++s) {
                    if (match(s, p))
                        return true;
                    if (*s == '\0')
                        return false;
                }
            case '[':
                if (*s == '\0' || !inSet(*s++, p))
                    return false;
                break;
            case '{':
                for (;;) {
                    if (match(s, p))
                        return true;
                    int depth = 0;
                    for (bool next = false; !next;) {
                        const char c = *p++;
                        if (c == '\0' || (c == '}' && depth-- == 0))
                            return false;
                        if (c == '\\' && *p != '\0')
                            ++p;
                        depth += c == '{' ? 1 : 0;
                        next = c == ',' || c == '|';
                        if (next && depth > 0)
                            return false;
                    }
                }
            case ',':
            case '|':
                for (int depth = 0; *p != '\0';) {
                    const char c = *p++;
                    if (c == '\\' && *p != '\0')
                        ++p;
                    depth += c == '{' ? 1 : 0;
                    if (c == '}' && depth-- == 0)
                        break;
                }
                break;
            case '}':
                break;
            case '\\':
                if (*p != '\0')
                    ++p;
                [[fallthrough]];
            default:
                if (*s++ != p[-1])
                    return false;
            }
        }
    }

private:
    // Leaves p behind the set.
    static bool inSet(char c, const char*& p) {
        const bool inverted = *p == '^' || *p == '!';
        p += inverted ? 1 : 0;
        bool found = false;
        for (const char* const first = p; *p != '\0'; ++p) {
            if (*p == ']' && p != first) {
                ++p;
                return found != inverted;
            }
            if (*p == '-' && p != first && p[1] != ']' && p[1] != '\0') {
                const auto low = static_cast<signed char>(p[-1]);
                const auto high = static_cast<signed char>(*++p);
                found = found ||
                        (low <= static_cast<signed char>(c) && static_cast<signed char>(c) <= high);
            } else {
                found = found || *p == c;
            }
        }
        return false;
    }
};

} // namespace

class FilenameTest : public QObject {
    Q_OBJECT

private slots:
    void absolute_data() {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("cwd");
        QTest::addColumn<QByteArray>("home");
        QTest::addColumn<QByteArray>("expected");
        const auto row = [](const char* from, const char* cwd, const char* home,
                            const char* expected) {
            QTest::addRow("%s in %s, home %s", from, cwd ? cwd : "-", home ? home : "-")
                << QByteArray(from) << QByteArray(cwd) << QByteArray(home) << QByteArray(expected);
        };
        row("./../x", "/a/b", nullptr, "/a/x");
        row("../x", "", nullptr, "/../x");
        row("../../../x", "/a/b", nullptr, "/../x");
        row(".", "/a/b", nullptr, "/a/b/.");
        row("..", "/a/b", nullptr, "/a/b/..");
        row("..x/y", "/a/b", nullptr, "/a/b/..x/y");
        row("x", "/a/b/", nullptr, "/a/b/x");
        row("../x", "/a/b/", nullptr, "/a/b/x");
        row("", "/a", nullptr, "/a/");
        row("..\\x\\y", "C:\\a\\b", nullptr, "C:/a/x/y");
        row("\\x", "/a", nullptr, "/x");
        row("C:", "/a", nullptr, "C:");
        row("~/x", "/a", "/home/u", "/a/~/x");
        row("~", nullptr, "/home/u", "/home/u/");
        row("~/x", nullptr, "/home/u", "/home/u/x");
        row("~bob/x", nullptr, "/home/u", "/home/bob/x");
        row("~\\../x", nullptr, "/home/u", "/home/x");
        row("~/x", nullptr, "", "~/x");
    }

    void absolute() {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, cwd);
        QFETCH(QByteArray, home);
        QFETCH(QByteArray, expected);
        const char* const base = cwd.isNull() ? nullptr : cwd.constData();
        const QByteArray kept = qgetenv("HOME");
        qputenv("HOME", home);
        char to[64];
        QCOMPARE(filename_absolute(to, sizeof to, from, base), std::uint64_t(expected.size()));
        QCOMPARE(QByteArray(to), expected);

        // Never outside the buffer, and as much of the result as fits.
        for (int room = 0; room < expected.size(); ++room) {
            std::memset(to, '?', sizeof to);
            const auto length = filename_absolute(to, room, from, base);
            QCOMPARE(to[room], '?');
            if (room > 0)
                QVERIFY(expected.startsWith(to) || int(length) < expected.size());
            QVERIFY(room == 0 || qstrlen(to) < unsigned(room));
        }
        qputenv("HOME", kept);
    }

    void absoluteFromHere() {
        char path[4096] = "./x";
        const auto length = filename_absolute(path, sizeof path, path, nullptr);
        QCOMPARE(QString::fromUtf8(path), QDir::currentPath() + "/x");
        QCOMPARE(length, std::uint64_t(qstrlen(path)));
        char small[8];
        QVERIFY(filename_absolute(small, sizeof small, "name", "/long/base") >= sizeof small);
        QCOMPARE(small, "/long/n");
    }

    void name() {
        const auto last = [](const char* path) { return QByteArray(filename_name(path)); };
        QCOMPARE(last("/a/b.exr"), QByteArray("b.exr"));
        QCOMPARE(last("a\\b/c\\d"), QByteArray("d"));
        QCOMPARE(last("dir/"), QByteArray(""));
        QCOMPARE(last("C:foo"), QByteArray("foo"));
        QCOMPARE(last("plain"), QByteArray("plain"));
        QCOMPARE(last(""), QByteArray(""));
        QVERIFY(filename_name(nullptr) == nullptr);
    }

    void match_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("pattern");
        QTest::addColumn<bool>("expected");
        const auto row = [](const char* text, const char* pattern, bool expected) {
            QTest::addRow("%s %s", text, pattern)
                << QByteArray(text) << QByteArray(pattern) << expected;
        };
        row("abc", "abc,def", true);
        row("def", "abc,def", false);
        row("a.dpx", "*.{exr,dpx}", true);
        row("a.DPX", "*.{exr,dpx}", false);
        row("bx", "[!a-c]x", false);
        row("dx", "[^a-c]x", true);
        row("]", "[]a]", true);
        row("-", "[a-]", true);
        row("\\", "[\\]", true);
        row("b", "[c-a]", false);
        row("d", "[a-c-e]", true);
        row("\xff", "[\x80-\xff]", true);
        row("a", "[\x80-z]", true);
        row("a", "[a", false);
        row("a", "{a,[b", true);
        row("xbz", "x{a|b}z", true);
        row("xbcz", "x{a,b{c,d}}z", true);
        row("e", "{a{b,c}d,e}", false);
        row("a*", "a\\*", true);
        row("ab", "a\\*", false);
        row("a\\", "a\\", true);
        row("a,b", "{x,a\\,b}", true);
        row("ab", "a}b", true);
        row("", "*", true);
        row("", "?", false);
    }

    void match() {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, pattern);
        QTEST(filename_match(text, pattern), "expected");
    }

    void matchesLikeTheLiteralRules() {
        std::mt19937 random(11);
        const auto below = [&](int limit) { return int(random() % unsigned(limit)); };
        const QByteArray signs("aabb-*?[]!^{},|\\");
        for (int round = 0; round < 300000; ++round) {
            QByteArray text;
            QByteArray pattern;
            for (int length = below(6); length > 0; --length)
                text += "aab,]"[below(5)];
            for (int length = below(10); length > 0; --length)
                pattern += signs[below(signs.size())];
            if (filename_match(text, pattern) != LiteralMatch::match(text, pattern))
                QFAIL(qPrintable(QString("'%1' against '%2'").arg(text.data(), pattern.data())));
        }
    }

    // Each of these would outlast any patience if alternatives were tried one by one.
    void hardPatternsEnd() {
        const QByteArray text(100, 'a');
        QVERIFY(!filename_match(text, QByteArray("*a").repeated(50) + 'b'));
        QVERIFY(filename_match(text, QByteArray("*a").repeated(50)));
        QVERIFY(!filename_match(text, QByteArray("{a,a}").repeated(40)));
        QVERIFY(filename_match(text, QByteArray("{a,aa,*}").repeated(40)));
        QVERIFY(!filename_match(text, QByteArray("{").repeated(200)));
    }

    void statusCache() {
        QTemporaryDir root;
        QDir dir(root.path());
        QVERIFY(dir.mkdir("sub"));
        const QByteArray sub = dir.filePath("sub").toUtf8();
        QVERIFY(filename_isdir(sub));
        QVERIFY(dir.rmdir("sub"));
        QVERIFY(filename_isdir(sub));
        QVERIFY(!filename_isdir(""));
        QVERIFY(!filename_isdir(sub));
        QVERIFY(dir.mkdir("sub"));
        QVERIFY(!filename_isdir(sub));

        QFile file(dir.filePath("file"));
        QVERIFY(file.open(QFile::WriteOnly) && file.write("12345") == 5);
        file.close();
        const QByteArray path = file.fileName().toUtf8();
        QVERIFY(!filename_isdir(path));
        QVERIFY(file.remove());
        QCOMPARE(Kestrel::UI::filename_size(path), std::uint64_t(5));
        QVERIFY(Kestrel::UI::filename_time(path) > 0);
        QVERIFY(!filename_isdir(nullptr));
    }

    void driveMeansItsRoot() {
        QTemporaryDir root;
        const QString kept = QDir::currentPath();
        QVERIFY(QDir::setCurrent(root.path()));
        QVERIFY(QDir().mkpath("C:") && QDir().mkpath("a/b"));
        QVERIFY(filename_isdir("C:"));
        QVERIFY(filename_isdir("a\\b"));
        QVERIFY(QDir::setCurrent(kept));
    }

    void unreadable() {
        struct dirent** list = nullptr;
        QCOMPARE(filename_list("/no/such/folder", &list, 1), 0);
        QVERIFY(!list);
        QCOMPARE(filename_list("/dev/null", &list, 0), 0);
        QVERIFY(!list);
        QCOMPARE(filename_list(nullptr, &list, 0), 0);
        QCOMPARE(filename_list("/", nullptr, 0), 0);
    }
};

KXUI_TEST(FilenameTest);

#include "FilenameTest.moc"
