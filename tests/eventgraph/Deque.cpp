#include <KxUI/eventgraph/SharedDeque.h>
#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <deque>
#include <memory>
#include <random>

using Kestrel::UI::SharedDeque;

class Deque : public QObject {
    Q_OBJECT

private Q_SLOTS:
    // Two deques that are copied into each other, and their like from the standard library.
    void randomOperations_data() { Kestrel::Test::addSeeds(20); }
    void randomOperations() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        const auto upTo = [&](unsigned n) { return unsigned(random()) % n; };
        using Value = std::shared_ptr<int>;
        SharedDeque<Value> ours[2];
        std::deque<Value> expected[2];
        std::vector<SharedDeque<Value>::Block> unneeded;
        for (int step = 0; step < 20'000; ++step) {
            const std::size_t i = upTo(2);
            const unsigned count = upTo(100) == 0 ? upTo(3000) : 1;
            switch (upTo(200) == 0 ? 0 : 1 + upTo(2)) {
            case 0:
                if (upTo(8) == 0) {
                    ours[i].takeAll(unneeded);
                    expected[i].clear();
                } else {
                    ours[1 - i] = ours[i];
                    expected[1 - i] = expected[i];
                }
                break;
            case 1:
                for (unsigned n = 0; n < count; ++n) {
                    auto value = std::make_shared<int>(step);
                    expected[i].push_back(value);
                    ours[i].push_back(std::move(value), unneeded);
                }
                break;
            default:
                for (unsigned n = 0; n < count && !expected[i].empty(); ++n) {
                    QCOMPARE(ours[i].takeFront(unneeded), expected[i].front());
                    expected[i].pop_front();
                }
            }
            if (upTo(16) == 0)
                unneeded.clear();
            QCOMPARE(ours[i].size(), expected[i].size());
            if (!expected[i].empty()) {
                QCOMPARE(ours[i].front(), expected[i].front());
                QCOMPARE(ours[i].back(), expected[i].back());
            }
            if (step % 500 == 0) {
                for (const std::size_t k : {0U, 1U})
                    QVERIFY(std::equal(ours[k].begin(), ours[k].end(), expected[k].begin(),
                                       expected[k].end()));
            }
        }
        // Nothing is kept that none of them holds.
        for (const std::size_t k : {0U, 1U})
            ours[k].takeAll(unneeded);
        unneeded.clear();
        for (auto& values : expected) {
            for (const Value& value : values)
                QVERIFY(value.use_count() <= 2);
        }
    }

    // What is taken from a deque of its own goes at once, without waiting for its block.
    void takenValuesGo() {
        SharedDeque<std::shared_ptr<int>> deque;
        std::vector<SharedDeque<std::shared_ptr<int>>::Block> unneeded;
        std::weak_ptr<int> first;
        for (int i = 0; i < 3; ++i) {
            auto value = std::make_shared<int>(i);
            if (i == 0)
                first = value;
            deque.push_back(std::move(value), unneeded);
        }
        deque.takeFront(unneeded);
        QVERIFY(first.expired());
    }
};

KXUI_TEST(Deque);
#include "Deque.moc"
