#pragma once

#include <QIODevice>
#include <QString>

namespace Kestrel::UI {

/** How much a document may ask of its reader. */
struct XmlBounds {
    qint64 bytes;
    int nesting;    ///< of elements; the reader keeps a record for each open one
    int attributes; ///< of one element
};

/** Passes on the bytes of another device up to the point where they would make a stream reader do
    more work than the document is worth: beyond the bounds, and at a document type declaration.

    Looks at the bytes with a scanner that knows tags, quotes, comments and nothing else, at about a
    nanosecond each. Whether the document is well formed is left to the reader. */
class XmlLimits : public QIODevice {
    Q_OBJECT

public:
    /** Borrows `source`, open for reading. */
    XmlLimits(QIODevice* source, const XmlBounds& bounds);

    /** Why the bytes ended before the source did; empty otherwise. */
    QString violation() const { return m_violation; }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    enum class In { Text, Open, Bang, StartTag, Value, EndTag, Instruction, Comment, Section };

    enum class Units { Bytes, LittleEndian, BigEndian }; // the latter two of UTF-16

    bool acceptByte(unsigned char byte);
    void detectUnits(unsigned char first, unsigned char second);
    bool accept(unsigned char c);
    bool openTag(unsigned char c);
    bool violate(const QString& why);
    QString tooLarge() const;

    QIODevice* m_source;
    const XmlBounds m_bounds;
    qint64 m_position = 0;
    Units m_units = Units::Bytes;
    unsigned char m_lastByte = 0;
    In m_in = In::Text;
    unsigned char m_quote = 0;
    unsigned char m_last = 0;
    unsigned char m_secondLast = 0;
    int m_depth = 0;
    int m_attributes = 0;
    QString m_violation;
};

} // namespace Kestrel::UI
