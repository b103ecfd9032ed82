#include <KxUI/browse/FavoritesStore_p.h>

#include <support/Faults.h>
#include <support/TestRegistry.h>

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <random>

using namespace Kestrel::UI;
using FavoritesStore::Change;
using Kestrel::Test::inChild;

namespace {

enum Content { Old, New };

// One favourite, and many more beside it.
std::vector<Change> changesTo(Content content) {
    std::vector<Change> changes;
    for (int i = 0; i < (content == New ? 1000 : 1); ++i) {
        Change change;
        change.id = "n" + std::to_string(i);
        change.entry = Xbel::bookmark("file:///" + std::string(40, 'x') + std::to_string(i), "",
                                      change.id, "");
        changes.push_back(change);
    }
    for (int i = 1; content == Old && i < 1000; ++i) {
        Change change;
        change.kind = Change::Kind::Remove;
        change.id = "n" + std::to_string(i);
        changes.push_back(change);
    }
    return changes;
}

} // namespace

// The file of the favourites is the old one or the new one, whatever becomes of who writes it.
class FavoritesFaultsTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;
    const QString m_name = m_folder.filePath("f.xbel");
    QByteArray m_contents[2];
    const std::vector<Change> m_changes[2]{changesTo(Old), changesTo(New)};

    QByteArray read() const {
        QFile file(m_name);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    bool save(Content content) const {
        return FavoritesStore::save(m_name, m_changes[content], 0).hasSaved;
    }

    // No fault of the past keeps the file from being saved.
    void goesOn() const {
        // A lock without a name in it is taken for dead when it is old.
        if (QFileInfo(m_name + ".lock").size() == 0)
            QFile::remove(m_name + ".lock");
        for (const Content content : {New, Old}) {
            QVERIFY(save(content));
            QCOMPARE(read(), m_contents[content]);
        }
    }

private Q_SLOTS:
    void initTestCase() {
        for (const Content content : {New, Old, New, Old}) {
            QVERIFY(save(content));
            QVERIFY(m_contents[content].isEmpty() || read() == m_contents[content]);
            m_contents[content] = read();
        }
        QVERIFY(m_contents[New].size() > 100 * m_contents[Old].size());
    }

    void aFullDiskLeavesTheOld() {
        const auto saved = [this] {
            const QStringList before = QDir(m_folder.path()).entryList(QDir::Files);
            const auto result = FavoritesStore::save(m_name, m_changes[New], 0);
            return (result.failure == FavoritesStore::Failure::None ? 1 : 0) +
                   (result.detail.isEmpty() ? 2 : 0) + (read() == m_contents[Old] ? 0 : 4) +
                   (QDir(m_folder.path()).entryList(QDir::Files) == before ? 0 : 8);
        };
        for (const int pages : {0, 1, 4}) {
            QCOMPARE(inChild([&] {
                         Kestrel::Test::fillDisk(m_folder.path(), pages, [&] { save(Old); });
                         return saved();
                     }),
                     0);
            goesOn();
        }
        for (const int bytes : {1, 5000, int(m_contents[New].size()) - 1}) {
            QCOMPARE(inChild([&] {
                         Kestrel::Test::limitFiles(rlim_t(bytes), false);
                         return saved();
                     }),
                     0);
            goesOn();
        }
    }

    void deathLeavesOldOrNew() {
        std::mt19937 random(8);
        for (int i = 0; i < 20; ++i) {
            // Behind the lock, which is written first.
            const auto byte = 100 + random() % unsigned(m_contents[New].size() - 100);
            QVERIFY(WIFSIGNALED(inChild([&] {
                Kestrel::Test::limitFiles(byte, true);
                return save(New);
            })));
            QCOMPARE(read(), m_contents[Old]);
            goesOn();
        }
        for (int i = 0; i < 60; ++i) {
            const auto saveOnAndOn = [&] {
                for (bool more = true; save(more ? New : Old); more = !more) {
                }
                return EXIT_FAILURE;
            };
            QVERIFY(WIFSIGNALED(inChild(saveOnAndOn, int(random() % 30000))));
            const QByteArray left = read();
            QVERIFY(left == m_contents[Old] || left == m_contents[New]);
            goesOn();
        }
    }
};

KXUI_TEST(FavoritesFaultsTest);
#include "FavoritesFaultsTest.moc"
