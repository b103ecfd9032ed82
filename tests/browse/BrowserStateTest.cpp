#include <KxUI/browse/BrowserState_p.h>

#include <support/TestRegistry.h>

using namespace Kestrel::UI;

namespace {

using Listing = BrowserFacts::Listing;
using Error = BrowserFacts::Error;
using Notice = BrowserNotice;
using Order = BrowserState::Order;

BrowserFacts gathering(std::int64_t silence, int rows = 0) {
    BrowserFacts facts;
    facts.isGathering = true;
    facts.silence = silence;
    facts.rows = rows;
    return facts;
}

BrowserFacts ended(Listing listing, int rows = 0, Error error = Error::None) {
    BrowserFacts facts;
    facts.listing = listing;
    facts.rows = rows;
    facts.error = error;
    return facts;
}

BrowserPlace place(const char* folder, const char* selected = "", const char* top = "") {
    BrowserPlace place;
    place.folder = folder;
    place.current = selected;
    place.selected = {selected};
    place.top = top;
    return place;
}

// A folder that is read at once.
void visit(BrowserState& state, const char* folder, const BrowserPlace& left = {}) {
    state.go(folder, left, false, 0);
    state.update(ended(Listing::Complete, 3), 0);
}

} // namespace

class BrowserStateTest : public QObject {
    Q_OBJECT

private slots:
    // A folder that is slow to answer: what is seen at which time, and when to look again.
    void waiting() {
        const struct {
            std::int64_t now;
            BrowserFace face;
            std::int64_t next;
        } table[] = {{0, {true, false, false, Notice::None}, 300},
                     {299, {true, false, false, Notice::None}, 300},
                     {300, {true, true, true, Notice::None}, 2000},
                     {1999, {true, true, true, Notice::None}, 2000},
                     {2000, {false, false, true, Notice::Waiting}, 10000},
                     {10000, {false, false, true, Notice::WaitingLong}, -1}};
        BrowserState state;
        visit(state, "/a");
        const std::int64_t start = 5000;
        state.go("/b", place("/a"), true, start);
        for (const auto& row : table) {
            state.update(gathering(row.now), start + row.now);
            QVERIFY2(state.face(start + row.now) == row.face, qPrintable(QString::number(row.now)));
            const auto next = state.nextChange(start + row.now);
            QCOMPARE(next ? *next - start : -1, row.next);
        }
        // A disk that answers again after a long while: rows, and no words.
        state.update(gathering(0, 7), start + 20000);
        QVERIFY((state.face(start + 20000) == BrowserFace{false, false, true, Notice::None}));
        // Silent in the middle of it: words above the rows.
        QCOMPARE(state.face(start + 22000).notice, Notice::Waiting);
        // Nothing moves where nothing is left to wait for.
        state.update(ended(Listing::Complete, 7), start + 22000);
        QVERIFY(state.face(start + 90000) == BrowserFace() && !state.nextChange(start + 90000));
    }

    void words() {
        const auto empty = [](bool hasEntries, bool isSearched, bool isFiltered) {
            BrowserFacts facts = ended(Listing::Complete);
            facts.hasEntries = hasEntries;
            facts.isSearched = isSearched;
            facts.isFiltered = isFiltered;
            return facts;
        };
        const struct {
            BrowserFacts facts;
            Notice notice;
        } table[] = {{ended(Listing::Complete, 1), Notice::None},
                     {empty(false, false, true), Notice::Empty},
                     {empty(true, true, true), Notice::NoMatch},
                     {empty(true, false, true), Notice::NoneOfKind},
                     {empty(true, false, false), Notice::OnlyHidden},
                     {ended(Listing::Stopped, 4), Notice::Stopped},
                     {ended(Listing::Failed, 4, Error::Other), Notice::Failed},
                     {ended(Listing::Failed, 0, Error::Missing), Notice::Vanished}};
        for (const auto& row : table) {
            BrowserState state;
            state.go("/a", {}, false, 0);
            QCOMPARE(state.update(row.facts, 10), Order::Nothing);
            QCOMPARE(state.face(10).notice, row.notice);
        }
        // Rows of a folder that is gone stay, in grey.
        BrowserState state;
        visit(state, "/a");
        state.update(ended(Listing::Failed, 3, Error::Missing), 9);
        QVERIFY((state.face(9) == BrowserFace{false, true, false, Notice::Vanished}));
        QVERIFY(BrowserState().face(9) == BrowserFace());
    }

    void orders() {
        BrowserState state;
        state.go("/a/b.txt", {}, false, 0);
        QCOMPARE(state.update(ended(Listing::Failed, 0, Error::NotAFolder), 1), Order::GoToFile);
        state.go("/a", {}, false, 1);
        QCOMPARE(state.wish()->current, QByteArray("b.txt"));
        // Once, and no more until another visit.
        QCOMPARE(state.update(ended(Listing::Failed, 0, Error::Stale), 1), Order::Retry);
        QCOMPARE(state.update(ended(Listing::Failed, 0, Error::Stale), 2), Order::Nothing);
        QCOMPARE(state.face(2).notice, Notice::Failed);
        QVERIFY(!state.canGoBack()); // the file was never shown
        // A folder that turns into a file says so.
        visit(state, "/c");
        QCOMPARE(state.update(ended(Listing::Failed, 3, Error::NotAFolder), 3), Order::Nothing);
    }

    void history() {
        BrowserState state;
        QVERIFY(!state.canGoBack() && !state.canGoForward() && !state.goBack({}, false, 0));
        visit(state, "/a");
        visit(state, "/a/b", place("/a", "b", "aa"));
        visit(state, "/a/b/c", place("/a/b", "c"));
        QVERIFY(state.canGoBack() && !state.canGoForward());
        // Up: what one came from.
        state.go("/a", place("/a/b/c", "x"), false, 0);
        QCOMPARE(state.wish()->selected, std::vector<QByteArray>{"b"});
        // It does not answer: back is the folder before, which knows what was selected.
        QCOMPARE(state.goBack({}, false, 1).value(), QByteArray("/a/b/c"));
        QCOMPARE(state.wish()->current, QByteArray("x"));
        // Before that has answered, back again.
        QCOMPARE(state.goBack({}, false, 1).value(), QByteArray("/a/b"));
        QCOMPARE(state.goBack({}, false, 1).value(), QByteArray("/a"));
        QVERIFY(!state.canGoBack() && !state.goBack({}, false, 1));
        QCOMPARE(state.wish()->top, QByteArray("aa"));
        state.update(ended(Listing::Failed, 0, Error::Other), 1);
        QVERIFY(!state.canGoBack() && state.canGoForward());
        QCOMPARE(state.goForward(place("/a", "z"), false, 2).value(), QByteArray("/a/b"));
        state.update(gathering(0, 1), 2);
        QCOMPARE(state.wish()->current, QByteArray("c"));
        // Elsewhere: what lay before is forgotten.
        visit(state, "/d", place("/a/b"));
        QVERIFY(!state.canGoForward());
        QCOMPARE(state.goBack(place("/d"), false, 3).value(), QByteArray("/a/b"));
        QCOMPARE(state.goBack({}, false, 3).value(), QByteArray("/a"));
        QCOMPARE(state.wish()->current, QByteArray("z"));
        // It does not grow for ever, and a folder that is shown again is no second entry.
        for (int i = 0; i < 500; ++i)
            visit(state, i % 2 ? "/e" : "/f");
        visit(state, "/e");
        int steps = 0;
        while (state.goBack({}, false, 4))
            ++steps;
        QCOMPARE(steps, 99);
    }
};

KXUI_TEST(BrowserStateTest);
#include "BrowserStateTest.moc"
