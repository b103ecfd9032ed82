#include <KxUI/dock/DockLayout_p.h>

#include <KxUI/kit/Flush_p.h>
#include <KxUI/kit/Xml_p.h>

#include <QIODevice>
#include <QXmlStreamWriter>

#include <array>

namespace Kestrel::UI {

namespace {

class Writer {
public:
    explicit Writer(QIODevice* device)
        : m_xml(device) {
        m_xml.setAutoFormatting(true);
    }

    bool write(const Layout& layout) {
        m_xml.writeStartDocument(QStringLiteral("1.0"));
        m_xml.writeStartElement(QStringLiteral("layout"));
        text("version", QStringLiteral("1.0"));
        for (const LayoutWindow& window : layout.windows)
            write(window);
        m_xml.writeEndElement();
        m_xml.writeEndDocument();
        return !m_xml.hasError();
    }

private:
    void text(const char* name, const QString& value) { Xml::writeText(m_xml, name, value); }
    void number(const char* name, int value) { Xml::writeNumber(m_xml, name, value); }
    void rect(const std::array<const char*, 4>& names, const QRect& value) {
        number(names[0], value.x());
        number(names[1], value.y());
        number(names[2], value.width());
        number(names[3], value.height());
    }
    void flag(const char* name, bool value) {
        if (value)
            number(name, 1);
    }

    void write(const LayoutWindow& window) {
        const SavedWindow& place = window.place;
        m_xml.writeStartElement(QStringLiteral("window"));
        rect({"x", "y", "w", "h"}, place.rect);
        flag("maximized", place.maximized);
        flag("fullscreen", place.fullScreen);
        number("screen", place.screen);
        if (place.maximized && !place.normal.isEmpty())
            rect({"normalX", "normalY", "normalW", "normalH"}, place.normal);
        if (place.stacking != 0)
            number("stacking", place.stacking);
        for (const LayoutSplitter& splitter : window.splitters)
            write(splitter);
        m_xml.writeEndElement();
    }

    void write(const LayoutSplitter& splitter) {
        m_xml.writeStartElement(QStringLiteral("splitter"));
        number("orientation", splitter.orientation);
        for (std::size_t i = 0; i < splitter.children.size(); ++i) {
            const LayoutSplit split = splitter.splits.value(int(i));
            m_xml.writeStartElement(QStringLiteral("split"));
            number("size", split.size);
            if (split.stretch != 0)
                number("stretch", split.stretch);
            m_xml.writeEndElement();
            std::visit([this](const auto& child) { write(child); }, splitter.children[i].value);
        }
        m_xml.writeEndElement();
    }

    void write(const LayoutPane& pane) {
        m_xml.writeStartElement(QStringLiteral("dock"));
        text("id", pane.id);
        flag("hideTitles", pane.hideTitles);
        if (pane.hasActivePage)
            text("activePageId", pane.activePage);
        if (pane.hasFocus)
            text("focus", QStringLiteral("true"));
        for (const LayoutPage& page : pane.pages) {
            m_xml.writeStartElement(QStringLiteral("page"));
            text("id", page.id);
            if (!page.state.isEmpty())
                text("layout", page.state);
            m_xml.writeEndElement();
        }
        m_xml.writeEndElement();
    }

    void write(const LayoutStranger&) {}

    QXmlStreamWriter m_xml;
};

} // namespace

bool writeLayout(QIODevice* device, const Layout& layout) {
    return Writer(device).write(layout) && flushed(device);
}

} // namespace Kestrel::UI
