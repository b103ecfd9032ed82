// Captures read into a view: the fast reader agrees with the XML reader, and what was read is
// written and comes back.

#include <KxUI/eventgraph/EventGraphReader.h>
#include <KxUI/eventgraph/EventGraphSnapshot.h>
#include <KxUI/eventgraph/EventGraphView.h>
#include <KxUI/eventgraph/EventGraphWriter.h>
#include <KxUI/eventgraph/EventTraceWriter_p.h>
#include <KxUI/eventgraph/IEventGraphTimer.h>

#include <support/Require.h>
#include <support/Snippets.h>

#include <QBuffer>
#include <QImage>
#include <QJsonDocument>

#include <algorithm>
#include <cstring>

using namespace Kestrel::Fuzz;
using namespace Kestrel::UI;

namespace {

const Snippets& snippets() {
    static const Snippets all(
        {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<EventGraph StartTime=\"%\" EndTime=\"%\">",
         "<Track Name=\"$\" Color=\"#ff8000\" Priority=\"%\">", "</",
         "<Event Type=\"1\" Time=\"%\"/>", "<Event Type=\"2\" Time=\"%\"/>",
         "<Event Type=\"0\" Time=\"%\"/>",
         "<Event Type=\"%\" Time=\"%\"><EventData>$</EventData></Event>",
         "<Event Type=\"1\" Time=\"%\">", "<EventData>", "$", "\n    ", "<Other a=\"$\">",
         "<Track Name=\"$\" Color=\"$\" Priority=\"%\"/>", "<!--$-->", "<Track>",
         "<Event Time='%'>"},
        {"a",      "red", "#80ff0000", "&amp;",  "&#13;",      "&#10;",        "&#9;",
         "\t",     "\n",  "\r\n",      "\u00e9", "\U0001f600", "\xff",         "&lt;",
         "&quot;", "]]>", "&#x41;",    ">",      " ",          "\xef\xbf\xbf", "'"});
    return all;
}

// A view that has no start time of its own.
class Clock : public IEventGraphTimer {
public:
    int time() override { return 0; }
};
Clock clockAtZero;

// Cannot be read a second time, so that only the XML reader takes it.
class Stream : public QIODevice {
public:
    explicit Stream(QByteArray* bytes)
        : m_bytes(*bytes) {}
    bool isSequential() const override { return true; }

private:
    qint64 readData(char* data, qint64 most) override {
        const int count = int(std::min<qint64>(most, m_bytes.size() - m_at));
        std::memcpy(data, m_bytes.constData() + m_at, std::size_t(count));
        m_at += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

    QByteArray m_bytes;
    int m_at = 0;
};

template <class Device>
bool read(EventGraphView& view, QByteArray document, QString* error = nullptr) {
    Device device(&document);
    device.open(QIODevice::ReadOnly);
    EventGraphReader reader(view);
    const bool ok = reader.read(&device);
    require(ok == reader.errorString().isEmpty(), "an error where reading stopped");
    if (error)
        *error = reader.errorString();
    return ok;
}

QByteArray written(const EventGraphView& view) {
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    require(EventGraphWriter(view, EventGraphWriter::IncludeUserData).write(&device),
            "a capture can be written");
    return device.data();
}

QByteArray readAndWritten(const QByteArray& document) {
    EventGraphView view(nullptr, &clockAtZero);
    require(read<QBuffer>(view, document), "what was written can be read");
    return written(view);
}

void look(EventGraphView& view, bool paint) {
    view.resize(view.sizeHint().boundedTo(QSize(300, 200)));
    view.zoomToFit();
    view.eventTextAt(QPoint(40, 30));
    view.findNext(QStringLiteral("a"));
    QBuffer trace;
    trace.open(QIODevice::WriteOnly);
    require(writeEventTrace(view.snapshot(), &trace), "a trace can be written");
    require(!QJsonDocument::fromJson(trace.data()).isNull(), "a trace is JSON");
    if (paint) {
        static QImage image(300, 200, QImage::Format_ARGB32_Premultiplied);
        view.render(&image, QPoint(), image.rect());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto document = QByteArray::fromStdString(snippets().document(textOf(data, size)));
    EventGraphView view(nullptr, &clockAtZero);
    EventGraphView slow(nullptr, &clockAtZero);
    QString error;
    QString slowError;
    const bool ok = read<QBuffer>(view, document, &error);
    require(read<Stream>(slow, document, &slowError) == ok && error == slowError,
            "both readers accept the same");
    const QByteArray first = written(view);
    require(written(slow) == first, "both readers read the same");
    // The first reading gives an event without a text that of the start before it.
    const QByteArray settled = readAndWritten(first);
    require(readAndWritten(settled) == settled, "a capture comes back");
    look(view, size % 16 == 0);
    return 0;
}
