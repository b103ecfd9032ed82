#include <KxUI/dock/DockLayout_p.h>

#include <KxUI/dock/DockMainWindow.h>
#include <KxUI/kit/XmlLimits_p.h>
#include <KxUI/kit/Xml_p.h>

#include <QIODevice>
#include <QWidget>
#include <QXmlStreamReader>

namespace Kestrel::UI {

namespace {

using Xml::number;
using Xml::text;

QLatin1String formatVersion() {
    return QLatin1String("1.0");
}

bool isLayoutElement(const QXmlStreamReader& xml) {
    return xml.name() == QLatin1String("layout") &&
           xml.attributes().value(QLatin1String("version")) == formatVersion();
}

class Reader {
public:
    explicit Reader(QIODevice* device)
        : m_limits(device, LayoutBounds) {
        m_limits.open(QIODevice::ReadOnly | QIODevice::Unbuffered);
        m_xml.setDevice(&m_limits);
    }

    LayoutReading read() {
        while (nextStart()) {
            if (isLayoutElement(m_xml)) {
                readDocument();
            } else {
                m_xml.raiseError(
                    DockMainWindow::tr("The file is not a Kestrel panel layout version 1.0 file."));
            }
        }
        if (!m_limits.violation().isEmpty())
            m_xml.raiseError(m_limits.violation());
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
            m_xml.readNext();
            if (m_xml.isStartElement())
                return true;
            if (m_xml.isEndElement())
                return false;
        }
        return false;
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
                m_xml.skipCurrentElement();
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
        const auto rect = [&](const char* x, const char* y, const char* w, const char* h) {
            return QRect(number(attributes, x, -most, most), number(attributes, y, -most, most),
                         number(attributes, w, 0, most), number(attributes, h, 0, most));
        };
        window.place.rect = rect("x", "y", "w", "h");
        window.place.normal = rect("normalX", "normalY", "normalW", "normalH");
        window.place.stacking = number(attributes, "stacking");
        window.place.screen = number(attributes, "screen");
        window.place.maximized = number(attributes, "maximized") != 0;
        window.place.fullScreen = number(attributes, "fullscreen") != 0;
        while (nextStart()) {
            if (is("splitter")) {
                window.splitters.emplace_back();
                readSplitter(window.splitters.back(), 1);
            } else {
                m_xml.skipCurrentElement();
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
                splitter.splits.append({number(attributes, "size", 0, QWIDGETSIZE_MAX),
                                        number(attributes, "stretch", 0, 255)});
                m_xml.skipCurrentElement();
            } else {
                m_xml.skipCurrentElement();
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
            m_xml.skipCurrentElement();
        }
        return pane;
    }

    XmlLimits m_limits;
    QXmlStreamReader m_xml;
    Layout m_layout;
    int m_windows = 0;
    int m_splitters = 0;
    int m_splits = 0;
    int m_panes = 0;
    int m_pages = 0;
};

} // namespace

QString DockLayoutError::message() const {
    if (line <= 0)
        return reason;
    return DockMainWindow::tr("%1 (line %2, column %3)").arg(reason).arg(line).arg(column);
}

LayoutReading readLayout(QIODevice* device) {
    return Reader(device).read();
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
