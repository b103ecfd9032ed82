#include <KxUI/kit/Xml_p.h>

#include <QXmlStreamWriter>

#include <algorithm>

namespace Kestrel::UI::Xml {

namespace {

bool isPlain(QChar c) {
    const ushort u = c.unicode();
    return (u >= 0x20 && u < 0xd800) || (u >= 0xe000 && u < 0xfffe) || u == '\t' || u == '\n' ||
           u == '\r';
}

} // namespace

QString writable(const QString& text) {
    if (std::all_of(text.begin(), text.end(), isPlain))
        return text;
    QString mended = text;
    for (int i = 0; i < mended.size(); ++i) {
        if (isPlain(mended.at(i)))
            continue;
        if (mended.at(i).isHighSurrogate() && i + 1 < mended.size() &&
            mended.at(i + 1).isLowSurrogate())
            ++i;
        else
            mended[i] = QChar::ReplacementCharacter;
    }
    return mended;
}

void writeText(QXmlStreamWriter& xml, const char* name, const QString& value) {
    xml.writeAttribute(QLatin1String(name), writable(value));
}

void writeNumber(QXmlStreamWriter& xml, const char* name, int value) {
    xml.writeAttribute(QLatin1String(name), QString::number(value));
}

QString text(const QXmlStreamAttributes& attributes, const char* name) {
    return attributes.value(QLatin1String(name)).toString();
}

int number(const QXmlStreamAttributes& attributes, const char* name) {
    return attributes.value(QLatin1String(name)).toInt();
}

int number(const QXmlStreamAttributes& attributes, const char* name, int low, int high) {
    return std::max(low, std::min(number(attributes, name), high));
}

} // namespace Kestrel::UI::Xml
