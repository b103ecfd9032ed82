#include <KxUI/dock/DockLayout_p.h>

#include <KxUI/dock/DockMainWindow.h>

#include <QIODevice>
#include <QWidget>
#include <QXmlStreamReader>

#include <algorithm>

namespace Kestrel::UI {

namespace {

QLatin1String formatVersion() {
    return QLatin1String("1.0");
}

bool isLayoutElement(const QXmlStreamReader& xml) {
    return xml.name() == QLatin1String("layout") &&
           xml.attributes().value(QLatin1String("version")) == formatVersion();
}

int number(const QXmlStreamAttributes& attributes, const char* name) {
    return attributes.value(QLatin1String(name)).toInt();
}

int clampedNumber(const QXmlStreamAttributes& attributes, const char* name, int low, int high) {
    return std::max(low, std::min(number(attributes, name), high));
}

QString text(const QXmlStreamAttributes& attributes, const char* name) {
    return attributes.value(QLatin1String(name)).toString();
}

/** Nesting inside unknown elements; the parser keeps a record for each open one. */
constexpr int MaxSkippedNesting = 1000;

class Reader {
public:
    explicit Reader(const QByteArray& document)
        : m_xml(document) {}

    LayoutReading read() {
        while (nextStart()) {
            if (isLayoutElement(m_xml)) {
                readDocument();
            } else {
                m_xml.raiseError(
                    DockMainWindow::tr("The file is not a Kestrel panel layout version 1.0 file."));
            }
        }
        LayoutReading result;
        result.layout = std::move(m_layout);
        if (m_xml.hasError())
            result.error = {m_xml.errorString(), m_xml.lineNumber(), m_xml.columnNumber()};
        return result;
    }

private:
    /** Moves on to the next start element of this level; false at the level's end or an error. */
    bool nextStart() {
        while (!m_xml.atEnd()) {
            switch (m_xml.readNext()) {
            case QXmlStreamReader::StartElement:
                return true;
            case QXmlStreamReader::EndElement:
                return false;
            case QXmlStreamReader::DTD:
                m_xml.raiseError(
                    DockMainWindow::tr("A layout cannot have a document type declaration."));
                return false;
            default:
                break;
            }
        }
        return false;
    }

    /** Leaves the current element, whatever is in it. */
    void skipElement() {
        for (int depth = 1; depth > 0 && !m_xml.atEnd();) {
            m_xml.readNext();
            if (m_xml.isStartElement() && ++depth > MaxSkippedNesting)
                m_xml.raiseError(DockMainWindow::tr("The layout has too many nested elements."));
            else if (m_xml.isEndElement())
                --depth;
        }
    }

    bool is(const char* element) const { return m_xml.name() == QLatin1String(element); }

    /** Counts one more of a bounded kind of element; false and an error beyond the bound. */
    bool admit(int& count, int bound) {
        if (++count <= bound)
            return true;
        m_xml.raiseError(DockMainWindow::tr("The layout has too many elements."));
        return false;
    }

    void readDocument() {
        while (nextStart()) {
            if (is("window"))
                readWindow();
            else if (is("dock"))
                m_layout.loosePanes.append(readPane());
            else
                skipElement();
        }
    }

    void readWindow() {
        if (!admit(m_windows, MaxLayoutItems))
            return;
        const QXmlStreamAttributes attributes = m_xml.attributes();
        const int most = QWIDGETSIZE_MAX;
        // In the list before its contents are read: what was read before an error counts.
        m_layout.windows.emplace_back();
        LayoutWindow& window = m_layout.windows.back();
        window.place.rect =
            QRect(clampedNumber(attributes, "x", -most, most),
                  clampedNumber(attributes, "y", -most, most),
                  clampedNumber(attributes, "w", 0, most), clampedNumber(attributes, "h", 0, most));
        window.place.screen = number(attributes, "screen");
        window.place.maximized = number(attributes, "maximized") != 0;
        window.place.fullScreen = number(attributes, "fullscreen") != 0;
        while (nextStart()) {
            if (is("splitter")) {
                window.splitters.emplace_back();
                readSplitter(window.splitters.back(), 1);
            } else {
                skipElement();
            }
        }
    }

    void readSplitter(LayoutSplitter& splitter, int nesting) {
        if (!admit(m_splitters, MaxLayoutItems))
            return;
        if (nesting > MaxSplitterNesting) {
            m_xml.raiseError(DockMainWindow::tr("The layout has too many nested splitters."));
            return;
        }
        const bool isHorizontal = number(m_xml.attributes(), "orientation") == Qt::Horizontal;
        splitter.orientation = isHorizontal ? Qt::Horizontal : Qt::Vertical;
        while (nextStart()) {
            if (is("splitter")) {
                splitter.children.push_back({LayoutSplitter()});
                readSplitter(std::get<LayoutSplitter>(splitter.children.back().value), nesting + 1);
            } else if (is("dock")) {
                splitter.children.push_back({readPane()});
            } else if (is("split")) {
                const QXmlStreamAttributes attributes = m_xml.attributes();
                if (!admit(m_splits, 2 * MaxLayoutItems))
                    return;
                splitter.splits.append({clampedNumber(attributes, "size", 0, QWIDGETSIZE_MAX),
                                        clampedNumber(attributes, "stretch", 0, 255)});
                skipElement();
            } else {
                skipElement();
            }
        }
    }

    LayoutPane readPane() {
        LayoutPane pane;
        if (!admit(m_panes, MaxLayoutItems))
            return pane;
        const QXmlStreamAttributes attributes = m_xml.attributes();
        pane.id = text(attributes, "id");
        pane.hasActivePage = attributes.hasAttribute(QLatin1String("activePageId"));
        pane.activePage = text(attributes, "activePageId");
        pane.hasFocus = attributes.hasAttribute(QLatin1String("focus"));
        pane.hideTitles = number(attributes, "hideTitles") != 0;
        while (nextStart()) {
            if (is("page")) {
                if (!admit(m_pages, MaxLayoutPages))
                    break;
                const QXmlStreamAttributes page = m_xml.attributes();
                pane.pages.append({text(page, "id"), text(page, "layout")});
            }
            skipElement();
        }
        return pane;
    }

    QXmlStreamReader m_xml;
    Layout m_layout;
    int m_windows = 0;
    int m_splitters = 0;
    int m_splits = 0;
    int m_panes = 0;
    int m_pages = 0;
};

} // namespace

LayoutReading readLayout(QIODevice* device) {
    QByteArray document;
    while (document.size() <= MaxLayoutBytes) {
        // In pieces: asked for the bound at once, the device would make room for all of it.
        constexpr qint64 Piece = 64 << 10;
        const QByteArray part = device->read(Piece);
        if (part.isEmpty())
            break;
        document += part;
    }
    if (document.size() > MaxLayoutBytes) {
        LayoutReading refused;
        refused.error.reason = DockMainWindow::tr("The layout is larger than 64 MiB.");
        document.truncate(int(MaxLayoutBytes));
        refused.error.line = document.count('\n') + 1;
        refused.error.column = document.size() - (document.lastIndexOf('\n') + 1);
        return refused;
    }
    return Reader(document).read();
}

bool startsLayout(QIODevice* device) {
    const qint64 position = device->pos();
    bool isLayout = false;
    {
        QXmlStreamReader xml(device);
        isLayout = xml.readNextStartElement() && isLayoutElement(xml);
    }
    if (!device->isSequential())
        device->seek(position);
    return isLayout;
}

} // namespace Kestrel::UI
