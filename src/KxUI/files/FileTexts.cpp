#include <KxUI/files/FileTexts_p.h>

#include <KxUI/files/FileListModel.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/RawName_p.h>

#include <QCoreApplication>
#include <QLocale>

namespace Kestrel::UI::FileTexts {
namespace {

using Item = FileListing::Item;
using Kind = FileListing::Kind;
using Status = FileListing::Status;

struct Text {
    Q_DECLARE_TR_FUNCTIONS(FileListModel)
};

bool turnsText(QChar c) {
    const ushort code = c.unicode();
    return (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069) ||
           code == 0x200E || code == 0x200F;
}

QString rangeText(const Base::FrameRange& range) {
    QString text = QString::number(range.first);
    if (range.first != range.last)
        text += QLatin1Char('-') + QString::number(range.last);
    if (range.step > 1 && range.first != range.last)
        text += QLatin1Char(',') + QString::number(range.step);
    return text;
}

} // namespace

QString name(std::string_view bytes) {
    QString text = decodedName(bytesOf(bytes));
    for (QChar& c : text) {
        if (c.unicode() < 0x20)
            c = QChar(0x2400 + c.unicode()); // the picture of it
        else if (c.unicode() == 0x7F)
            c = QChar(0x2421);
        else if (turnsText(c) || c.unicode() == 0x2028 || c.unicode() == 0x2029)
            c = QChar::ReplacementCharacter;
    }
    return text;
}

QString frames(const Item& item) {
    return item.kind == Kind::Sequence ? rangeText({item.first, item.last, item.step}) : QString();
}

QString ranges(const std::vector<Base::FrameRange>& ranges) {
    QString text;
    for (const Base::FrameRange& range : ranges) {
        if (!text.isEmpty())
            text += QLatin1Char(' ');
        text += rangeText(range);
    }
    return text;
}

QString size(std::uint64_t bytes, bool isEstimate) {
    const QString text = QLocale().formattedDataSize(static_cast<qint64>(bytes), 1,
                                                     QLocale::DataSizeTraditionalFormat);
    return isEstimate ? QChar(0x2248) + QStringLiteral(" ") + text : text;
}

QString time(const QDateTime& time, const QDateTime& now) {
    const QLocale locale;
    // Without seconds, which some locales have in their short form, too.
    QString format = locale.timeFormat(QLocale::ShortFormat);
    format.remove(QLatin1String(":ss"));
    const QString clock = locale.toString(time.time(), format);
    const qint64 days = time.date().daysTo(now.date());
    if (days == 0)
        return Text::tr("Today %1").arg(clock);
    if (days == 1)
        return Text::tr("Yesterday %1").arg(clock);
    return locale.toString(time.date(), QLocale::ShortFormat) + QLatin1Char(' ') + clock;
}

QString type(const Item& item) {
    switch (item.kind) {
    case Kind::Directory:
        return Text::tr("Folder");
    case Kind::Unknown:
        return Text::tr("Link");
    case Kind::Sequence:
        return Text::tr("%1, sequence").arg(FileManager::fileTypeName(bytesOf(item.name)));
    case Kind::File:
        break;
    }
    return FileManager::fileTypeName(bytesOf(item.name));
}

QString spoken(const FileListing& listing, int index, const QDateTime& now) {
    const Item& item = listing.item(index);
    QStringList parts{name(item.name), type(item)};
    if (item.kind == Kind::Sequence) {
        parts << Text::tr("frames %1 to %2").arg(item.first).arg(item.last);
        if (item.missing > 0)
            parts << Text::tr("%1 missing").arg(item.missing);
    }
    const Status status = listing.status(index);
    if (status.known == Status::Told) {
        const QString bytes = size(status.size, false);
        if (item.kind != Kind::Directory)
            parts << (status.isEstimate ? Text::tr("about %1").arg(bytes) : bytes);
        const QDateTime modified = QDateTime::fromSecsSinceEpoch(status.modified);
        parts << Text::tr("modified %1").arg(time(modified, now));
    } else if (status.known == Status::Gone) {
        parts << Text::tr("does not exist any more");
    }
    return parts.join(QStringLiteral(", "));
}

QString column(int column) {
    switch (column) {
    case FileListModel::Name:
        return Text::tr("Name");
    case FileListModel::Frames:
        return Text::tr("Frames");
    case FileListModel::Missing:
        return Text::tr("Missing");
    case FileListModel::Size:
        return Text::tr("Size");
    case FileListModel::Modified:
        return Text::tr("Modified");
    case FileListModel::Type:
        return Text::tr("Type");
    default:
        return {};
    }
}

} // namespace Kestrel::UI::FileTexts
