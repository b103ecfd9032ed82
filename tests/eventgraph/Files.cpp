#include "FakeTimer.h"

#include <KxUI/eventgraph/EventFileScanner_p.h>
#include <KxUI/eventgraph/EventGraphReader.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventGraphWriter.h>
#include <KxUI/eventgraph/EventTraceWriter_p.h>
#include <KxUI/eventgraph/EventTrack.h>
#include <KxUI/eventgraph/EventUserDataString.h>
#include <support/Columns.h>
#include <support/TestRegistry.h>

#include <algorithm>
#include <limits>
#include <random>

using namespace Kestrel::UI;
using namespace Kestrel::Test;
using Type = EventTrack::Type;

namespace {

constexpr int withData = EventGraphWriter::IncludeUserData;
constexpr int skipping = EventGraphWriter::SkipDuplicates;

std::unique_ptr<EventTrack> makeTrack(const QString& name, int sortKey) {
    return std::make_unique<EventTrack>(name, QColor("#ff8000"), sortKey,
                                        EventTrack::TrackType::Timeline, 0.0f, 1.0f, 5000, 100000,
                                        50, nullptr);
}

QByteArray written(const EventGraphView& view, int flags) {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EventGraphWriter(view, flags).write(&buffer);
    return buffer.data();
}

// One line per track and event.
QStringList contents(const EventGraphView& view) {
    QStringList lines{QString("%1 %2").arg(view.startTime()).arg(view.endTime())};
    for (const EventTrack* track : view.tracks()) {
        lines
            << QString("%1 %2 %3").arg(track->name(), track->color().name()).arg(track->sortKey());
        for (const EventTrack::Event& event : track->events())
            lines << QString("%1@%2 %3")
                         .arg(int(event.type))
                         .arg(event.time)
                         .arg(event.userData ? '"' + event.userData->text() + '"'
                                             : QString("null"));
    }
    return lines;
}

struct Loaded {
    explicit Loaded(QByteArray document) {
        QBuffer buffer(&document);
        buffer.open(QIODevice::ReadOnly);
        EventGraphReader reader(view);
        ok = reader.read(&buffer);
        error = reader.errorString();
    }
    FakeTimer timer;
    EventGraphView view{nullptr, &timer};
    bool ok = false;
    QString error;
};

bool isCanonical(QByteArray document) {
    QBuffer buffer(&document);
    buffer.open(QIODevice::ReadOnly);
    return scanEventFile(&buffer).has_value();
}

// A document of the right shape that only a real XML reader reads.
QByteArray commented(QByteArray document) {
    return document.replace("?>", "?><!-- -->");
}

// Bytes that come in two reads.
class Pieces : public QIODevice {
public:
    Pieces(const QByteArray& bytes, int cut)
        : m_pieces{bytes.left(cut), bytes.mid(cut)} {
        open(ReadOnly | Unbuffered);
    }
    bool isSequential() const override { return true; }

private:
    qint64 readData(char* data, qint64 most) override {
        if (m_pieces.isEmpty())
            return -1;
        const QByteArray piece = m_pieces.takeFirst();
        std::copy_n(piece.begin(), std::min<qint64>(most, piece.size()), data);
        return piece.size();
    }
    qint64 writeData(const char*, qint64) override { return -1; }

    QList<QByteArray> m_pieces;
};

// A file during whose writing as much is recorded as is written.
class Recorded : public QBuffer {
public:
    explicit Recorded(EventTrack& track)
        : m_track(track) {
        open(WriteOnly);
    }

private:
    qint64 writeData(const char* data, qint64 size) override {
        if (++m_writes > 100)
            return -1;
        for (int i = 0; i < 4000; ++i)
            m_track.addEvent(Type::Sample, nullptr);
        return QBuffer::writeData(data, size);
    }

    EventTrack& m_track;
    int m_writes = 0;
};

const char head[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

} // namespace

class Files : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void theDocument() {
        FakeTimer timer;
        timer.now = 1000;
        EventGraphView view(nullptr, &timer);
        QCOMPARE(written(view, withData),
                 QByteArray(head) + "<EventGraph StartTime=\"1000\" EndTime=\"1000\"/>\n");
        const auto track = makeTrack("A <b>", -3), other = makeTrack("B", 4);
        const EventUserDataIP data(new EventUserDataString("x & y"));
        view.addTrack(other.get());
        view.addTrack(track.get());
        view.start(1, EventGraphMode::Forwards);
        track->addEvent(Type::Start, data, 1001);
        track->addEvent(Type::End, data, -1);
        other->addEvent(Type::Sample, data, 1002);
        other->addEvent(Type::Sample, nullptr, 1003);
        other->addEvent(Type::Sample, data, 1004);
        view.stop();
        const QByteArray text = "<EventData>x &amp; y</EventData>";
        const auto expected = [&](const QByteArray& end, const QByteArray& sample,
                                  const QByteArray& last) {
            const auto event = [](const char* type, const char* time, const QByteArray& inside) {
                const QByteArray tag =
                    QByteArray("        <Event Type=\"") + type + "\" Time=\"" + time;
                return inside.isEmpty()
                           ? tag + "\"/>\n"
                           : tag + "\">\n            " + inside + "\n        </Event>\n";
            };
            return QByteArray(head) +
                   "<EventGraph StartTime=\"1000\" EndTime=\"1000\">\n"
                   "    <Track Name=\"A &lt;b&gt;\" Color=\"#ff8000\" Priority=\"-3\">\n" +
                   event("1", "1001", last) + event("2", "1000", end) +
                   "    </Track>\n"
                   "    <Track Name=\"B\" Color=\"#ff8000\" Priority=\"4\">\n" +
                   event("0", "1002", sample) + event("0", "1003", {}) + event("0", "1004", last) +
                   "    </Track>\n</EventGraph>\n";
        };
        // The object is remembered from track to track, and forgotten at an event without one.
        QCOMPARE(written(view, withData | skipping), expected({}, {}, text));
        QCOMPARE(written(view, withData), expected(text, text, text));
        QCOMPARE(written(view, skipping), expected({}, {}, {}));
        QVERIFY(EventGraphWriter(view, withData).write(nullptr));
        QBuffer closed;
        QVERIFY(!EventGraphWriter(view, withData).write(&closed));
        for (QIODevice* device :
             {static_cast<QIODevice*>(nullptr), static_cast<QIODevice*>(&closed)}) {
            EventGraphReader reader(view);
            QVERIFY(!reader.read(device));
            QCOMPARE(reader.errorString(),
                     QString("The device is not open for reading\nLine 1, column 0"));
        }
    }

    // What is written is the state at the call, whatever is recorded and forgotten meanwhile.
    void savingDuringAHistory() {
        FakeTimer timer;
        EventGraphView view(nullptr, &timer);
        const auto track = makeTrack("t", 1), next = makeTrack("u", 2);
        for (EventTrack* each : {track.get(), next.get()})
            view.addTrack(each);
        view.start(1, EventGraphMode::History);
        for (int i = 0; i < 6000; ++i) {
            timer.now = i;
            track->addEvent(Type::Sample, nullptr);
            next->addEvent(Type::Sample, nullptr);
        }
        const QByteArray expected = written(view, withData);
        for (EventTrack* recorded : {track.get(), next.get()}) {
            Recorded device(*recorded);
            QVERIFY(EventGraphWriter(view, withData).write(&device));
            if (recorded == track.get())
                QVERIFY(device.data() == expected);
            Recorded trace(*recorded);
            QVERIFY(writeEventTrace(view.snapshot(), &trace));
        }
    }

    // Beside those that were there; the file's own stay together.
    void tracksOfOnePriorityKeepTheirOrder() {
        QByteArray document("<EventGraph StartTime='0' EndTime='0'>");
        for (const char* name : {"a", "b", "c"})
            document += QByteArray("<Track Name='") + name +
                        "' Color='red' Priority='5'><Event Type='0' Time='1'/></Track>";
        for (const QByteArray& end : {QByteArray("</EventGraph>"), QByteArray()}) {
            QByteArray bytes = document + end;
            QBuffer buffer(&bytes);
            buffer.open(QIODevice::ReadOnly);
            EventGraphView view;
            const auto before = makeTrack("before", 5);
            view.addTrack(before.get());
            EventGraphReader(view).read(&buffer);
            QStringList names;
            for (const EventTrack* track : view.tracks())
                names << track->name() + QString::number(track->events().size());
            QCOMPARE(names, QStringList({"a1", "b1", "c1", "before0"}));
        }
    }

    void roundTrips_data() { Kestrel::Test::addSeeds(10); }
    void roundTrips() {
        QFETCH(unsigned, seed);
        std::mt19937 random(seed);
        const auto upTo = [&](int n) { return int(random() % unsigned(n)); };
        const QStringList pieces{"plain", "",       " ",      "<&>\"'", "]]>", "\n",
                                 "\t",    "\r",     "\r\n",   "é",      "文",  "🎬",
                                 "&amp;", "\u2028", "\ufeff", "\ue000", "a=b", "&#13;"};
        const auto anyText = [&] {
            QString text;
            for (int i = upTo(5); i > 0; --i)
                text += pieces.at(upTo(int(pieces.size())));
            return upTo(200) == 0 ? text.repeated(3000) : text;
        };
        FakeTimer timer;
        timer.now = -upTo(100000);
        EventGraphView view(nullptr, &timer);
        std::vector<std::unique_ptr<EventTrack>> tracks;
        for (int i = upTo(5); i >= 0; --i) {
            tracks.push_back(makeTrack(anyText(), 10 * (i / 2) - 20));
            view.addTrack(tracks.back().get());
        }
        view.start(unlimited, EventGraphMode::Forwards);
        for (int i = 0; i < 1500; ++i) {
            EventTrack& track = *tracks[std::size_t(upTo(int(tracks.size())))];
            const EventUserDataIP data(upTo(3) ? new EventUserDataString(anyText()) : nullptr);
            timer.now = timer.now + upTo(30);
            switch (upTo(3)) {
            case 0:
                track.addEvent(Type::Sample, data);
                break;
            case 1:
                track.addEvent(Type::Start, data);
                track.addEvent(Type::End, data);
                break;
            default:
                track.addEvent(Type::Start, data, timer.now + upTo(1000000));
                track.addEvent(Type::End, EventUserDataIP(), -1);
            }
        }
        view.stop();

        const QByteArray document = written(view, withData);
        QVERIFY(isCanonical(document));
        QVERIFY(!isCanonical(commented(document)));
        Loaded fast(document), slow(commented(document));
        QVERIFY2(fast.ok && slow.ok, qPrintable(fast.error + slow.error));
        QCOMPARE(contents(fast.view), contents(slow.view));
        // An activity whose end has no data gets that of its start.
        QStringList expected = contents(view);
        for (int i = 1; i < expected.size(); ++i) {
            const int data = int(expected.at(i - 1).indexOf(QLatin1Char(' '))) + 1;
            if (expected.at(i).startsWith("2@") && expected.at(i).endsWith("null") &&
                expected.at(i - 1).startsWith("1@"))
                expected[i].replace("null", expected.at(i - 1).mid(data));
        }
        QCOMPARE(contents(fast.view), expected);

        const QByteArray shorter = written(view, withData | skipping);
        QVERIFY(shorter.size() < document.size());
        QCOMPARE(contents(Loaded(shorter).view).size(), expected.size());
        QCOMPARE(written(Loaded(written(view, 0)).view, withData), written(view, 0));
    }

    void textsThatXmlCannotCarry() {
        EventGraphView view;
        const auto track = makeTrack(QString("n\u0001") + QChar(0xd800), 0);
        view.addTrack(track.get());
        view.start(5, EventGraphMode::Forwards);
        const QString bad = QString("a\u0001b") + QChar(0xd83c) + 'c' + QChar(0xdfac) +
                            QChar(0xffff) + QChar(0) + QString("\u007f\u0085🎬");
        track->addEvent(Type::Sample, new EventUserDataString(bad), 1);
        Loaded loaded(written(view, withData));
        QVERIFY2(loaded.ok, qPrintable(loaded.error));
        const EventTrack* read = *loaded.view.tracks().begin();
        QCOMPARE(read->name(), QString("n\ufffd\ufffd"));
        QCOMPARE(read->events().front().userData->text(),
                 QString("a\ufffdb\ufffdc\ufffd\ufffd\ufffd\u007f\u0085🎬"));
    }

    void shapes_data() {
        const Columns<QByteArray, QStringList> addRow("document", "expected");
        const auto row = [&](const char* name, const QByteArray& inside,
                             const QStringList& events) {
            addRow(name, "<EventGraph StartTime='5' EndTime='x'>" + inside + "</EventGraph>",
                   QStringList{"5 0"} + events);
        };
        row("no tracks", "", {});
        row("nested pairs",
            "<Track Name='a' Color='red' Priority='7'><Event Type='1' Time='1'/>"
            "<Event Type='1' Time='2'/><Event Type='2' Time='3'/><Event Type='2' "
            "Time='4'/></Track>",
            {"a #ff0000 7", "1@1 null", "2@4 null"});
        row("missing and malformed numbers",
            "<Track><Event Time='99999999999'/><Event Type='0' Time='-'/></Track>",
            {" #000000 0", "0@0 null", "0@0 null"});
        row("minus one is a time", "<Track><Event Type='0' Time='-1'/></Track>",
            {" #000000 0", "0@-1 null"});
        row("last text holds, others are skipped",
            "<Extra><Track/></Extra><Track><Extra/><Event Type='0' Time='1'><x>y</x>"
            "<EventData>a</EventData><EventData><![CDATA[<b>]]></EventData></Event></Track>",
            {" #000000 0", "0@1 \"<b>\""});
        row("start data ends with its track",
            "<Track Priority='1'><Event Type='1' Time='1'><EventData>a</EventData></Event></Track>"
            "<Track Priority='2'><Event Type='0' Time='2'/></Track>",
            {" #000000 1", "1@1 \"a\"", " #000000 2", "0@2 null"});
        row("unknown type", "<Track><Event Type='3' Time='1'/></Track>", {" #000000 0"});
    }

    void shapes() {
        QFETCH(QByteArray, document);
        Loaded loaded(document);
        QVERIFY2(loaded.ok, qPrintable(loaded.error));
        QTEST(contents(loaded.view), "expected");
        QCOMPARE(contents(Loaded(document.replace('\'', '"').prepend(head)).view),
                 contents(loaded.view));
    }

    void errors_data() {
        const Columns<QByteArray, QString, int> row("document", "message", "lines");
        const QByteArray open = "<EventGraph StartTime=\"1\" EndTime=\"2\">";
        const QByteArray track = "<Track Name=\"a\" Color=\"#000000\" Priority=\"0\">"
                                 "<Event Type=\"0\" Time=\"1\"/>";
        const QString foreign = "The file doesn't contain an event graph\nLine 1, column ";
        row("empty", "", "Premature end of document.\nLine 1, column 0", 1);
        row("another root", "<Graph/>", foreign + "8", 1);
        row("case", "<eventgraph/>", foreign + "13", 1);
        row("cut off", head + open + track, "Premature end of document.\nLine 2, column", 3);
        row("cut off within an event", open + track + "<Event Type=\"0\" Ti",
            "Premature end of document.\n", 3);
        row("crossed tags", open + track + "</EventGraph>", "Opening and ending tag mismatch.\n",
            3);
        row("text after the end", open + "</EventGraph>x", "Extra content at end of document.\n",
            1);
        row("entity", open + "<Track Name=\"&x;\"/></EventGraph>", "Entity 'x' not declared.\n", 1);
        row("bytes that are no text", head + open + track + "<!--\xff-->",
            "Encountered incorrectly encoded content.\n", 1);
        row("element in a text",
            open + track + "<Event><EventData><b/></EventData></Event></Track>",
            "Expected character data.\n", 3);
        row("document type", "<!DOCTYPE a [<!ENTITY b 'c'>]>" + open + "</EventGraph>",
            "A document type declaration is not allowed\nLine 1", 1);
        row("document type in another encoding",
            "<?xml version='1.0' encoding='UTF-7'?>+ADwAIQ-DOCTYPE a>" + open + "</EventGraph>",
            "A document type declaration is not allowed\nLine 1", 1);
        row("65 deep", open + track + QByteArray("<x>").repeated(64),
            "Elements are nested more than 64 deep\nLine 1", 3);
        QByteArray attributes;
        for (int i = 0; i < 65; ++i)
            attributes += " a" + QByteArray::number(i) + "=\"\"";
        row("65 attributes", open + track + "<Event" + attributes + "/>",
            "An element has more than 64 attributes\nLine 1", 3);
    }

    void errors() {
        QFETCH(QByteArray, document);
        QFETCH(QString, message);
        Loaded loaded(document);
        QVERIFY(!loaded.ok);
        QVERIFY2(loaded.error.startsWith(message), qPrintable(loaded.error));
        QVERIFY(loaded.error.contains(QRegularExpression("\nLine \\d+, column \\d+$")));
        // What stood before the error was kept.
        QTEST(int(contents(loaded.view).size()), "lines");
    }

    void withinTheLimits() {
        QByteArray attributes;
        for (int i = 0; i < 64; ++i)
            attributes += " a" + QByteArray::number(i) + "=\"=<\"";
        attributes.replace('<', "&lt;");
        const QByteArray deep = QByteArray("<x>").repeated(63) + QByteArray("</x>").repeated(63);
        const QByteArray document = "<!-- <!DOCTYPE --><?x <!DOCTYPE ?><EventGraph" + attributes +
                                    "><![CDATA[" + QByteArray("<y>").repeated(99) + "]]>" + deep +
                                    "</EventGraph>";
        Loaded loaded(document);
        QVERIFY2(loaded.ok, qPrintable(loaded.error));
        Loaded wide(QByteArray("\xff\xfe") + QByteArray::fromRawData(reinterpret_cast<const char*>(
                                                                         QString(document).utf16()),
                                                                     document.size() * 2));
        QVERIFY2(wide.ok, qPrintable(wide.error));
    }

    // A reader gets what a device gives at once, which may end amid a UTF-16 unit.
    void limitsHoldWhereverAReadEnds() {
        const QString text = "<!DOCTYPE a><EventGraph/>";
        for (const bool bigEndian : {false, true}) {
            QByteArray bytes;
            for (const QChar c : QChar(0xfeff) + text) {
                bytes += char(bigEndian ? c.row() : c.cell());
                bytes += char(bigEndian ? c.cell() : c.row());
            }
            for (int cut = 4; cut < bytes.size(); ++cut) {
                Pieces pieces(bytes, cut);
                EventGraphView view;
                EventGraphReader reader(view);
                QVERIFY(!reader.read(&pieces));
                QVERIFY2(reader.errorString().startsWith("A document type declaration"),
                         qPrintable(QString("cut at %1").arg(cut)));
            }
        }
    }

    // Costs that grow with the square of the input would not end.
    void hostileDocumentsEndSoon() {
        QByteArray attributes;
        for (int i = 0; i < 300000; ++i)
            attributes += " a" + QByteArray::number(i) + "=\"\"";
        QVERIFY(!Loaded("<EventGraph" + attributes + "/>").ok);
        QVERIFY(!Loaded("<EventGraph>" + QByteArray("<x>").repeated(1000000)).ok);

        struct Huge : QIODevice {
            qint64 size() const override { return (qint64(4) << 30) + 1; }
            qint64 readData(char*, qint64) override { return -1; }
            qint64 writeData(const char*, qint64) override { return -1; }
        } huge;
        huge.open(QIODevice::ReadOnly);
        EventGraphView view;
        EventGraphReader reader(view);
        QVERIFY(!reader.read(&huge));
        QVERIFY(reader.errorString().startsWith("The file is larger than 4 GiB\n"));
    }

    void savingReplacesOnlyWhenComplete() {
        const QTemporaryDir folder;
        const QString path = folder.filePath("capture.xml");
        EventGraphView view;
        QVERIFY(view.save(path, withData));
        QVERIFY(!view.save(folder.filePath("no/such/folder.xml"), withData));
        QVERIFY(!view.save(folder.path(), withData));
        if (QFile::exists("/dev/full"))
            QVERIFY(!view.save("/dev/full", withData));
        view.load(folder.filePath("missing.xml"));
        const auto track = makeTrack("own", 0);
        view.addTrack(track.get());
        QVERIFY(view.save(path, 0));
        view.load(path);
        QCOMPARE(view.tracks().size(), 2);
    }
};

KXUI_TEST(Files);
#include "Files.moc"
