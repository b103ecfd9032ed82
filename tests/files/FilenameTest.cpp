#include <KxUI/files/filename.h>
#include <KxUI/files/filename_p.h>

#include <support/TestRegistry.h>

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <random>

namespace {

// The position behind the group, or of its next alternative (null for none).
const char* skipped(const char* p, bool toAlternative) {
    for (int depth = 0; *p != '\0'; ++p) {
        if (*p == '\\' && p[1] != '\0')
            ++p;
        else if (*p == '{')
            ++depth;
        else if (*p == '}' && depth-- == 0)
            return toAlternative ? nullptr : p + 1;
        else if (toAlternative && (*p == ',' || *p == '|'))
            return depth == 0 ? p + 1 : nullptr;
    }
    return toAlternative ? nullptr : p;
}

// The pattern language without sets as it is told: one try after the other, in exponential time.
bool literalMatch(const char* s, const char* p) {
    switch (*p) {
    case '\0':
        return *s == '\0';
    case '?':
        return *s != '\0' && literalMatch(s + 1, p + 1);
    case '*':
        return literalMatch(s, p + 1) || (*s != '\0' && literalMatch(s + 1, p));
    case '{':
        for (++p; p; p = skipped(p, true)) {
            if (literalMatch(s, p))
                return true;
        }
        return false;
    case '}':
        return literalMatch(s, p + 1);
    case ',':
    case '|':
        return literalMatch(s, skipped(p + 1, false));
    case '\\':
        p += p[1] != '\0' ? 1 : 0;
        [[fallthrough]];
    default:
        return *s == *p && literalMatch(s + 1, p + 1);
    }
}

} // namespace

class FilenameTest : public QObject {
    Q_OBJECT

private slots:
    void absolute() {
        const char* const rows[][4] = {{"./../x", "/a/b", "", "/a/x"},
                                       {"../x", "", "", "/../x"},
                                       {"../../../x", "/a/b", "", "/../x"},
                                       {".", "/a/b", "", "/a/b/."},
                                       {"..x/y", "/a/b", "", "/a/b/..x/y"},
                                       {"../x", "/a/b/", "", "/a/b/x"},
                                       {"", "/a", "", "/a/"},
                                       {"..\\x\\y", "C:\\a\\b", "", "C:/a/x/y"},
                                       {"\\x", "/a", "", "/x"},
                                       {"C:", "/a", "", "C:"},
                                       {"~/x", "/a", "/home/u", "/a/~/x"},
                                       {"~", nullptr, "/home/u", "/home/u/"},
                                       {"~/../x", nullptr, "/home/u", "/home/x"},
                                       {"~bob/x", nullptr, "/home/u", "/home/bob/x"},
                                       {"~/x", nullptr, "", "~/x"}};
        const QByteArray kept = qgetenv("HOME");
        for (const auto& [from, cwd, home, expected] : rows) {
            qputenv("HOME", home);
            char to[64];
            QCOMPARE(filename_absolute(to, sizeof to, from, cwd), std::uint64_t(qstrlen(expected)));
            QCOMPARE(to, expected);
            // Never outside the buffer.
            for (int room = 0; room < int(qstrlen(expected)); ++room) {
                std::fill_n(to, sizeof to, '?');
                filename_absolute(to, room, from, cwd);
                QVERIFY(to[room] == '?' && (room == 0 || qstrlen(to) < unsigned(room)));
            }
        }
        qputenv("HOME", kept);
    }

    void absoluteFromHere() {
        char path[4096] = "./x";
        const auto length = filename_absolute(path, sizeof path, path, nullptr);
        QCOMPARE(QString::fromUtf8(path), QDir::currentPath() + "/x");
        QCOMPARE(length, std::uint64_t(qstrlen(path)));
        char small[8];
        QCOMPARE(filename_absolute(small, sizeof small, "name", "/long/base"), std::uint64_t(10));
        QCOMPARE(small, "/long/n");
    }

    void name() {
        const char* const rows[][2] = {{"/a/b.exr", "b.exr"}, {"a\\b/c\\d", "d"}, {"dir/", ""},
                                       {"C:foo", "foo"},      {"plain", "plain"}, {"", ""}};
        for (const auto& [path, expected] : rows)
            QCOMPARE(filename_name(path), expected);
        QVERIFY(filename_name(nullptr) == nullptr);
    }

    void match() {
        using Rows = std::vector<std::pair<const char*, const char*>>;
        const Rows matching{{"abc", "abc,def"},
                            {"a.dpx", "*.{exr,dpx}"},
                            {"dx", "[^a-c]x"},
                            {"]", "[]a]"},
                            {"-", "[a-]"},
                            {"\\", "[\\]"},
                            {"d", "[a-c-e]"},
                            {"\xff", "[\x80-\xff]"},
                            {"a", "[\x80-z]"},
                            {"a", "{a,[b"},
                            {"xbz", "x{a|b}z"},
                            {"xbcz", "x{a,b{c,d}}z"},
                            {"a*", "a\\*"},
                            {"a\\", "a\\"},
                            {"a,b", "{x,a\\,b}"},
                            {"ab", "a}b"},
                            {"", "*"}};
        const Rows different{
            {"def", "abc,def"}, {"a.DPX", "*.{exr,dpx}"}, {"bx", "[!a-c]x"}, {"b", "[c-a]"},
            {"a", "[a"},        {"e", "{a{b,c}d,e}"},     {"ab", "a\\*"},    {"", "?"},
            {"", "[!a]"}};
        for (const auto& [text, pattern] : matching)
            QVERIFY2(filename_match(text, pattern), pattern);
        for (const auto& [text, pattern] : different)
            QVERIFY2(!filename_match(text, pattern), pattern);

        std::mt19937 random(11);
        const auto below = [&](int limit) { return int(random() % unsigned(limit)); };
        for (int round = 0; round < 300000; ++round) {
            QByteArray text;
            QByteArray pattern;
            for (int length = below(6); length > 0; --length)
                text += "aab,"[below(4)];
            for (int length = below(10); length > 0; --length)
                pattern += "aabb*?{},|\\{"[below(12)];
            if (filename_match(text, pattern) != literalMatch(text, pattern))
                QFAIL(qPrintable(QString("'%1' against '%2'").arg(text.data(), pattern.data())));
        }
    }

    // Each of these would outlast any patience if alternatives were tried one by one.
    void hardPatternsEnd() {
        const QByteArray text(100, 'a');
        QVERIFY(!filename_match(text, QByteArray("*a").repeated(50) + 'b'));
        QVERIFY(!filename_match(text, QByteArray("{a,a}").repeated(40)));
        QVERIFY(filename_match(text, QByteArray("{a,aa,*}").repeated(40)));
        QVERIFY(!filename_match(text, QByteArray("{").repeated(200)));
    }

    void statusCache() {
        QTemporaryDir root;
        QDir dir(root.path());
        const QByteArray sub = dir.filePath("sub").toUtf8();
        QVERIFY(dir.mkdir("sub") && filename_isdir(sub));
        QVERIFY(dir.rmdir("sub") && filename_isdir(sub));
        QVERIFY(!filename_isdir("") && !filename_isdir(nullptr));
        QVERIFY(!filename_isdir(sub));
        QVERIFY(dir.mkdir("sub") && !filename_isdir(sub));

        QFile file(dir.filePath("file"));
        QVERIFY(file.open(QFile::WriteOnly) && file.write("12345") == 5);
        file.close();
        const QByteArray path = file.fileName().toUtf8();
        QVERIFY(!filename_isdir(path) && file.remove());
        QCOMPARE(Kestrel::UI::filename_size(path), std::uint64_t(5));
        QVERIFY(Kestrel::UI::filename_time(path) > 0);

        const QString kept = QDir::currentPath();
        QVERIFY(QDir::setCurrent(root.path()) && QDir().mkpath("C:/a"));
        QVERIFY(filename_isdir("C:") && filename_isdir("C:\\a"));
        QVERIFY(QDir::setCurrent(kept));
    }

    void unreadable() {
        struct dirent** list = nullptr;
        for (const char* folder :
             {"/no/such/folder", "/dev/null", static_cast<const char*>(nullptr)})
            QVERIFY(filename_list(folder, &list, 1) == 0 && !list);
        QCOMPARE(filename_list("/", nullptr, 0), 0);
    }
};

KXUI_TEST(FilenameTest);

#include "FilenameTest.moc"
