#include <KxUI/eventgraph/EventUserDataIP.h>
#include <KxUI/eventgraph/EventUserDataInt.h>
#include <KxUI/eventgraph/EventUserDataPtr.h>
#include <KxUI/eventgraph/EventUserDataQObject.h>
#include <KxUI/eventgraph/EventUserDataQObjectEvent.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <KxUI/eventgraph/EventUserDataVarList.h>
#include <support/TestRegistry.h>

#include <QWidget>

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
    void texts() {
        const auto text = [](IEventUserData* data) { return EventUserDataIP(data)->text(); };
        QWidget viewer;
        viewer.setObjectName("viewer");
        const QString address = "0x" + QString::number(quintptr(&viewer), 16);
        const QString described = address + " (viewer) = QWidget = QObject";
        QCOMPARE(text(new EventUserDataInt(42)), QString("42 (0x2a)"));
        QCOMPARE(text(new EventUserDataInt(-2)), QString("-2 (0xfffffffe)"));
        QCOMPARE(text(new EventUserDataPtr(reinterpret_cast<void*>(0x7f0A))), QString("0x7f0a"));
        QCOMPARE(text(new EventUserDataString("a < b\n")), QString("a < b\n"));
        QCOMPARE(text(new EventUserDataQObject(&viewer)), described);
        QCOMPARE(text(new EventUserDataQObject(nullptr)), QString("0x0"));
        QCOMPARE(text(new EventUserDataQObjectEvent(&viewer, 12)),
                 "Event=12 (0xc), RxObject=" + described);
        auto* list = new EventUserDataVarList;
        list->append("frame", 7);
        list->append("file", "a.exr");
        QCOMPARE(text(list), QString("frame = 7\nfile = a.exr\n"));
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
