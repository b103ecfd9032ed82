#include <support/TestRegistry.h>

#include <KxUI/browse/Completion_p.h>

#include <QtTest>

using namespace Kestrel::UI;
using Key = Completion::Key;

namespace {

/** Names as a listing has them: folders with a slash at their end. */
std::vector<CompletionName> namesOf(std::initializer_list<const char*> texts) {
    std::vector<CompletionName> names;
    for (const char* text : texts) {
        const std::string_view name(text);
        const bool isFolder = name.back() == '/';
        names.push_back({isFolder ? name.substr(0, name.size() - 1) : name, isFolder});
    }
    return names;
}

/** A field that is completed: `|` is the cursor. */
class Field {
public:
    explicit Field(std::initializer_list<const char*> names, bool files = false)
        : m_names(namesOf(names)) {
        m_completion.setTakesFiles(files);
    }

    Field& type(const char* text) {
        m_text = QString::fromUtf8(text);
        m_cursor = static_cast<int>(m_text.indexOf(QLatin1Char('|')));
        m_text.remove(m_cursor, 1);
        m_completion.edited(m_text, m_cursor);
        return *this;
    }

    Field& focus(const char* text) {
        type(text);
        m_completion.reset(m_text, m_cursor);
        return *this;
    }

    /** The folder was listed. */
    Field& list() {
        take(m_completion.setNames(m_names));
        return *this;
    }

    bool press(Key key) {
        const Completion::Outcome outcome = m_completion.press(key);
        take(outcome);
        return outcome.isTaken;
    }

    QString text() const {
        QString text = m_text;
        return text.insert(m_cursor, QLatin1Char('|'));
    }

    /** What the list shows, with `>` before the row that is chosen. */
    QString rows() const {
        QStringList rows;
        for (const auto& row : m_completion.matches().rows) {
            const bool isCurrent = static_cast<int>(rows.size()) == m_completion.current();
            rows += (isCurrent ? QStringLiteral(">") : QString()) + row.text;
        }
        return m_completion.isOpen() ? rows.join(QLatin1Char(' ')) : QStringLiteral("-");
    }

    Completion& completion() { return m_completion; }
    QByteArray name() const { return m_name; }

private:
    void take(const Completion::Outcome& outcome) {
        if (!outcome.hasText)
            return;
        m_text = outcome.text;
        m_cursor = outcome.cursor;
        m_name = outcome.name;
    }

    Completion m_completion;
    std::vector<CompletionName> m_names;
    QString m_text;
    int m_cursor = 0;
    QByteArray m_name;
};

} // namespace

class CompletionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void listsWhatBeginsSo() {
        const auto& all = {"Plates/",  "plots/",    "render/",
                           ".hidden/", "plate.exr", "\xC3\x89t\xC3\xA9/"};
        struct Row {
            const char* typed;
            bool files;
            const char* rows;
        };
        const Row rows[] = {
            {"/a/pl|", false, "Plates plots"},
            {"/a/pl|", true, "Plates plots plate.exr"},
            {"/a/|", false, "Plates plots render \u00c9t\u00e9"},
            {"/a/.|", false, ".hidden"},
            {"/a/\u00e9|", false, "\u00c9t\u00e9"},
            {"/a/x|", false, "-"},
            {"/a/render|", false, "-"}, // it stands there already
            {"/a/re|/b", false, "render"},
            {"/a/r|e", false, "-"}, // in the middle of a name
        };
        for (const Row& row : rows) {
            Field field(all, row.files);
            QCOMPARE(field.type(row.typed).list().rows(), QString::fromUtf8(row.rows));
        }
    }

    void tab() {
        struct Row {
            const char* typed;
            const char* first; ///< after one Tab
            const char* second;
            const char* rows; ///< after both
        };
        const Row rows[] = {
            {"/a/s|", "/a/shot|", "/a/shot|", "shot shot_2 shotgun"},
            {"/a/pl|", "/a/Plates/|", "/a/Plates/|", "-"},
            {"/a/X|", "/a/X1/|", "/a/X1/|", "-"}, // the case that was typed is there
            {"/a/x|", "/a/x2/|", "/a/x2/|", "-"},
            {"/a/re|/b", "/a/render|/b", "/a/render|/b", "-"},
            {"/a/none|", "/a/none|", "/a/none|", "-"},
        };
        for (const Row& row : rows) {
            Field field({"Plates/", "render/", "shot/", "shot_2/", "shotgun/", "X1/", "x2/"});
            field.type(row.typed).list();
            field.completion().close(); // as though it had come late
            field.press(Key::Tab);
            QCOMPARE(field.text(), QString::fromLatin1(row.first));
            field.press(Key::Tab);
            QCOMPARE(field.text(), QString::fromLatin1(row.second));
            QCOMPARE(field.rows(), QString::fromLatin1(row.rows));
        }
    }

    void tabIsNoTrap() {
        Field fresh({"a/"});
        QVERIFY(!fresh.focus("/x/a|").press(Key::Tab)); // nothing was typed
        Field slow({"a/"});
        slow.type("/x/a|");
        QVERIFY(slow.press(Key::Tab));
        QVERIFY(!slow.press(Key::Tab)); // nothing has come
        Field all({"a/", "ab/"});
        all.type("/x/a|").list();
        QVERIFY(!all.press(Key::Tab)); // the list shows what there is
        Field none({"a/"});
        QVERIFY(!none.type("/x/b|").list().press(Key::Tab));
    }

    void keysThatComeBeforeTheNames() {
        Field tab({"plates/"});
        tab.type("/a/p|");
        QVERIFY(tab.press(Key::Tab));
        QCOMPARE(tab.list().text(), QStringLiteral("/a/plates/|"));
        Field typedOn({"plates/", "plots/"});
        typedOn.type("/a/p|").press(Key::Tab);
        QCOMPARE(typedOn.type("/a/pl|").list().text(), QStringLiteral("/a/pl|"));
        Field down({"plates/"});
        down.focus("/a/|").press(Key::Down);
        QCOMPARE(down.list().rows(), QStringLiteral("plates"));
        Field late({"plates/"});
        late.type("/a/p|").completion().giveUp();
        QCOMPARE(late.list().rows(), QStringLiteral("-"));
        QVERIFY(late.press(Key::Down));
        QCOMPARE(late.rows(), QStringLiteral("plates"));
    }

    void choosing() {
        Field field({"b1/", "b2/", "b\xE9/"});
        field.type("/a/b|").list();
        QVERIFY(!field.press(Key::Return)); // nothing was chosen: the text counts
        QCOMPARE(field.rows(), QStringLiteral("-"));
        field.press(Key::Down);
        field.press(Key::Down);
        QCOMPARE(field.rows(), QStringLiteral(">b1 b2 b\ufffd"));
        field.press(Key::PageDown);
        QCOMPARE(field.rows(), QStringLiteral("b1 b2 >b\ufffd"));
        QCOMPARE(field.text(), QStringLiteral("/a/b|")); // it is chosen, not yet taken
        QVERIFY(field.press(Key::Return));
        QCOMPARE(field.text(), QStringLiteral("/a/b\ufffd/|"));
        QCOMPARE(field.name(), QByteArray("b\xE9"));
        QCOMPARE(field.rows(), QStringLiteral("-"));
        QVERIFY(!field.press(Key::Return));

        // Backspace takes the slash away and opens nothing.
        QCOMPARE(field.type("/a/b1|").list().rows(), QStringLiteral("-"));
        field.type("/a/b|");
        QCOMPARE(field.rows(), QStringLiteral("b1 b2 b\ufffd"));
        field.press(Key::Down);
        field.press(Key::Up);
        QCOMPARE(field.rows(), QStringLiteral("b1 b2 b\ufffd")); // back to what was typed
        QVERIFY(field.press(Key::Escape));
        QCOMPARE(field.rows(), QStringLiteral("-"));
        QVERIFY(!field.press(Key::Escape));
    }

    void longListsAreCut() {
        std::vector<std::string> texts;
        std::vector<CompletionName> names;
        for (int i = 0; i < 1000; ++i)
            texts.push_back("shot_" + std::to_string(i));
        for (const std::string& text : texts)
            names.push_back({text, true});
        const CompletionMatches matches = matchesOf(names, QStringLiteral("SH"), true, 200);
        QCOMPARE(static_cast<int>(matches.rows.size()), 200);
        QCOMPARE(matches.count, 1000);
        QCOMPARE(matches.common, QStringLiteral("SHot_")); // of all, in the case of the typed part
    }
};

KXUI_TEST(CompletionTest);
#include "CompletionTest.moc"
