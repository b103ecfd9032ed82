#pragma once

#include <QString>

class QXmlStreamAttributes;
class QXmlStreamWriter;

/** How the rooms write and read the attributes of their documents. What bounds a document that is
    read is XmlLimits. */
namespace Kestrel::UI::Xml {

/** `text` with every character replaced that XML 1.0 cannot hold: control characters,
    non-characters, halves of surrogate pairs. A stream writer would write them as they are, and no
    reader takes the document. */
QString writable(const QString& text);

/** Writes an attribute of the element that was started last; texts are made `writable`. */
void writeText(QXmlStreamWriter& xml, const char* name, const QString& value);
void writeNumber(QXmlStreamWriter& xml, const char* name, int value);

/** The value of an attribute, empty without it. */
QString text(const QXmlStreamAttributes& attributes, const char* name);

/** The value of an attribute as a decimal number, 0 when it is missing or none. */
int number(const QXmlStreamAttributes& attributes, const char* name);
/** The same, brought between `low` and `high`. */
int number(const QXmlStreamAttributes& attributes, const char* name, int low, int high);

} // namespace Kestrel::UI::Xml
