#include <KxUI/eventgraph/EventUserDataIP.h>
#include <KxUI/eventgraph/EventUserDataInt.h>
#include <KxUI/eventgraph/EventUserDataPtr.h>
#include <KxUI/eventgraph/EventUserDataQObject.h>
#include <KxUI/eventgraph/EventUserDataQObjectEvent.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/eventgraph/EventUserDataVarList.h>
#include <support/TestRegistry.h>

#include <QWidget>
#include <QtTest>

using namespace Kestrel::UI;

namespace {

struct Counted : IEventUserData {
    explicit Counted(int& aliveCount)
        : alive(aliveCount) {
        ++alive;
    }
    ~Counted() override { --alive; }
    QString text() const override { return {}; }
    int& alive;
    EventUserDataIP next;
};

} // namespace

class UserData : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void text_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* name, IEventUserData* data, const QString& expected) {
            QTest::newRow(name) << EventUserDataIP(data)->text() << expected;
        };
        QWidget viewer;
        viewer.setObjectName("viewer");
        const QString address = "0x" + QString::number(quintptr(&viewer), 16);
        const QString described = address + " (viewer) = QWidget = QObject";
        row("int", new EventUserDataInt(42), "42 (0x2a)");
        row("negative", new EventUserDataInt(-2), "-2 (0xfffffffe)");
        row("pointer", new EventUserDataPtr(reinterpret_cast<void*>(0x7f0A)), "0x7f0a");
        row("null pointer", new EventUserDataPtr(nullptr), "0x0");
        row("string", new EventUserDataString("a < b\n"), "a < b\n");
        row("object", new EventUserDataQObject(&viewer), described);
        row("no object", new EventUserDataQObject(nullptr), "0x0");
        row("event", new EventUserDataQObjectEvent(&viewer, 12),
            "Event=12 (0xc), RxObject=" + described);
        auto* list = new EventUserDataVarList;
        list->append("frame", 7);
        list->append("file", "a.exr");
        row("list", list, "frame = 7\nfile = a.exr\n");
    }

    void text() {
        QFETCH(QString, text);
        QTEST(text, "expected");
    }

    void describesTheObjectWhenMade() {
        auto object = std::make_unique<QObject>();
        object->setObjectName("early");
        const EventUserDataQObject data(object.get());
        object.reset();
        QVERIFY(data.text().endsWith(" (early) = QObject"));
    }

    void ownership() {
        int alive = 0;
        {
            EventUserDataIP a(new Counted(alive));
            EventUserDataIP b(a);
            const EventUserDataIP& same = a;
            a = same;
            a = a.get();
            a = nullptr;
            QCOMPARE(alive, 1);
            b = EventUserDataIP(new Counted(alive));
            QCOMPARE(alive, 1);
            // The old object is all that keeps the new one alive.
            auto* chain = new Counted(alive);
            chain->next = b;
            b = chain;
            b = chain->next;
            QCOMPARE(alive, 1);
        }
        QCOMPARE(alive, 0);
    }
};

KXUI_TEST(UserData);
#include "UserData.moc"
