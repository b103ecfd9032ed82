#include <KxUI/picker/SwatchFile_p.h>

#include <KxUI/kit/Flush_p.h>
#include <KxUI/kit/QtCompat_p.h>
#include <KxUI/picker/SwatchModel.h>
#include <KxUI/picker/SwatchPainting_p.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringList>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

namespace Kestrel::UI {
namespace {

constexpr std::string_view OwnHead = "KxUI swatches";
constexpr std::string_view PaletteHead = "GIMP Palette";
constexpr int LinesToName = 5;

// Takes the next line off the text, without its end.
std::string_view takeLine(std::string_view& text) {
    const std::size_t end = text.find_first_of("\r\n");
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(line.size(), text.size()));
    if (text.substr(0, 2) == "\r\n")
        text.remove_prefix(2);
    else if (!text.empty())
        text.remove_prefix(1);
    return line;
}

bool isSpace(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

void skipSpaces(std::string_view& text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
}

// Takes a number off the text, which a space or the end has to follow.
template <class Number>
std::optional<Number> takeNumber(std::string_view& text) {
    skipSpaces(text);
    Number number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc())
        return {};
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    if (!text.empty() && !isSpace(text.front()))
        return {};
    return number;
}

QString textOf(std::string_view bytes) {
    const int size = static_cast<int>(bytes.size());
    // Old palettes are not UTF-8.
    return fromStrictUtf8(bytes.data(), size).value_or(QString::fromLatin1(bytes.data(), size));
}

std::optional<Swatch> readOwn(std::string_view line) {
    Swatch swatch;
    for (float* part :
         {&swatch.color.red, &swatch.color.green, &swatch.color.blue, &swatch.color.alpha}) {
        const auto number = takeNumber<float>(line);
        if (!number || !std::isfinite(*number))
            return {};
        *part = *number;
    }
    swatch.color.alpha = std::clamp(swatch.color.alpha, 0.0F, 1.0F);
    swatch.name = swatchName(textOf(line));
    return swatch;
}

// With what the screen shows in the place of the colour.
std::optional<Swatch> readPalette(std::string_view line) {
    Swatch swatch;
    for (float* part : {&swatch.color.red, &swatch.color.green, &swatch.color.blue}) {
        const auto code = takeNumber<int>(line);
        if (!code || *code < 0 || *code > 255)
            return {};
        *part = static_cast<float>(*code) / 255.0F;
    }
    swatch.name = swatchName(textOf(line));
    return swatch;
}

bool isPaletteHeading(std::string_view line) {
    const auto begins = [line](std::string_view word) {
        return line.substr(0, word.size()) == word;
    };
    return begins("Name:") || begins("Columns:") || begins("Channels:");
}

// The lines that were not read, for the user.
class BrokenLines {
public:
    void add(int line) {
        if (++m_count <= LinesToName)
            m_lines += QString::number(line);
    }

    QString text() const {
        if (m_count == 0)
            return {};
        const QString lines = m_lines.join(QStringLiteral(", "));
        if (m_count <= LinesToName)
            return SwatchModel::tr("No colour could be read in line %1.").arg(lines);
        return SwatchModel::tr("No colour could be read in line %1 and %n more.", nullptr,
                               m_count - LinesToName)
            .arg(lines);
    }

private:
    QStringList m_lines;
    int m_count = 0;
};

bool toLight(std::vector<Swatch>& swatches, const DisplayCall& display) {
    std::vector<float> rgb;
    rgb.reserve(3 * swatches.size());
    for (const Swatch& swatch : swatches)
        rgb.insert(rgb.end(), {swatch.color.red, swatch.color.green, swatch.color.blue});
    if (!display.fromDisplay(rgb.data(), static_cast<int>(swatches.size())))
        return false;
    for (std::size_t i = 0; i < swatches.size(); ++i) {
        swatches[i].color = {rgb[3 * i], rgb[3 * i + 1], rgb[3 * i + 2]};
        if (!isFinite(swatches[i].color))
            return false;
    }
    return true;
}

SwatchReading refused(const QString& why) {
    SwatchReading reading;
    reading.error = why;
    return reading;
}

QString inFile(const QString& path, const QString& what) {
    return QDir::toNativeSeparators(path) + QStringLiteral(": ") + what;
}

QByteArray numberBytes(float number) {
    return QByteArray::number(static_cast<double>(number), 'g', 9);
}

QByteArray ownLine(const Swatch& swatch) {
    const ColorValue& color = swatch.color;
    QByteArray line;
    for (const float part : {color.red, color.green, color.blue, color.alpha})
        line += numberBytes(part) + ' ';
    return line + swatch.name.toUtf8();
}

QByteArray paletteLine(const Swatch& swatch, const QColor& shown) {
    QByteArray line;
    for (const int code : {shown.red(), shown.green(), shown.blue()})
        line += QByteArray::number(code).rightJustified(3) + ' ';
    line.chop(1);
    return swatch.name.isEmpty() ? line : line + '\t' + swatch.name.toUtf8();
}

} // namespace

QString swatchName(const QString& name) {
    QString kept;
    kept.reserve(name.size());
    for (const QChar each : name)
        kept += each.isSpace() || each.category() == QChar::Other_Control ? QLatin1Char(' ') : each;
    kept = kept.trimmed().left(SwatchLimits::NameLength);
    if (!kept.isEmpty() && kept.at(kept.size() - 1).isHighSurrogate())
        kept.chop(1);
    return kept.trimmed();
}

SwatchForm swatchFormOf(const QString& path) {
    return path.endsWith(QLatin1String(".gpl"), Qt::CaseInsensitive) ? SwatchForm::Palette
                                                                     : SwatchForm::Own;
}

SwatchReading readSwatches(const QByteArray& bytes, const DisplayCall& display) {
    std::string_view text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (text.substr(0, 3) == "\xef\xbb\xbf")
        text.remove_prefix(3);
    std::string_view head = takeLine(text);
    while (!head.empty() && isSpace(head.back()))
        head.remove_suffix(1);
    const bool isPalette = head == PaletteHead;
    if (!isPalette && head != OwnHead)
        return refused(SwatchModel::tr("This is no file of swatches."));
    SwatchReading reading;
    BrokenLines broken;
    for (int number = 2; !text.empty(); ++number) {
        std::string_view line = takeLine(text);
        skipSpaces(line);
        if (line.empty() || line.front() == '#' || (isPalette && isPaletteHeading(line)))
            continue;
        if (auto swatch = isPalette ? readPalette(line) : readOwn(line))
            reading.swatches.push_back(std::move(*swatch));
        else
            broken.add(number);
        if (reading.swatches.size() > SwatchLimits::Count)
            return refused(SwatchModel::tr("The file has more than %n colour(s).", nullptr,
                                           SwatchLimits::Count));
    }
    if (isPalette && !toLight(reading.swatches, display))
        return refused(
            SwatchModel::tr("Palettes have colours of the screen, which can not be brought back."));
    reading.error = broken.text();
    reading.isRead = true;
    return reading;
}

QByteArray writeSwatches(const std::vector<Swatch>& swatches, SwatchForm form,
                         const DisplayCall& display, const QString& title) {
    const bool isPalette = form == SwatchForm::Palette;
    const std::string_view head = isPalette ? PaletteHead : OwnHead;
    QByteArray bytes(head.data(), static_cast<int>(head.size()));
    bytes += '\n';
    if (isPalette)
        bytes += "Name: " + swatchName(title).toUtf8() + "\n#\n";
    std::vector<ColorValue> colors;
    for (const Swatch& swatch : swatches)
        colors.push_back(swatch.color);
    const std::vector<QColor> shown =
        isPalette ? shownColors(colors, display) : std::vector<QColor>();
    for (std::size_t i = 0; i < swatches.size(); ++i) {
        bytes += isPalette ? paletteLine(swatches[i], shown[i]) : ownLine(swatches[i]);
        bytes += '\n';
    }
    return bytes;
}

SwatchReading loadSwatches(const QString& path, const DisplayCall& display) {
    const QFileInfo info(path);
    if (info.exists() && !info.isFile()) // a pipe would not answer, and a device not end
        return refused(inFile(path, SwatchModel::tr("This is no file of swatches.")));
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return refused(inFile(path, file.errorString()));
    const QByteArray bytes = file.read(SwatchLimits::Bytes + 1);
    if (bytes.isEmpty() && file.error() != QFileDevice::NoError)
        return refused(inFile(path, file.errorString()));
    if (bytes.size() > SwatchLimits::Bytes)
        return refused(inFile(path, SwatchModel::tr("The file is too large.")));
    SwatchReading reading = readSwatches(bytes, display);
    if (!reading.error.isEmpty())
        reading.error = inFile(path, reading.error);
    return reading;
}

QString saveSwatches(const QString& path, const std::vector<Swatch>& swatches,
                     const DisplayCall& display) {
    const QByteArray bytes =
        writeSwatches(swatches, swatchFormOf(path), display, QFileInfo(path).completeBaseName());
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !flushed(&file) ||
        !file.commit())
        return inFile(path, file.errorString());
    return {};
}

} // namespace Kestrel::UI
