#include "app/CommandLine.h"

#include "play/FrameRate.h"

#include <KxUI/Version.h>

#include <QCommandLineParser>

namespace Kestrel::Workbench {

namespace {

QString fpsOption() {
    return QStringLiteral("fps");
}
QString paletteOption() {
    return QStringLiteral("palette");
}
QString cacheOption() {
    return QStringLiteral("cache");
}
QString freshOption() {
    return QStringLiteral("fresh");
}
QString layoutOption() {
    return QStringLiteral("layout");
}
QString languageOption() {
    return QStringLiteral("language");
}

CommandLine answer(const QString& text) {
    CommandLine line;
    line.action = CommandLine::Action::ShowText;
    line.text = text;
    return line;
}

} // namespace

CommandLine CommandLine::refusal(const QString& why) {
    CommandLine line;
    line.action = Action::Refuse;
    line.text = why;
    return line;
}

void addOptions(QCommandLineParser* parser) {
    parser->addPositionalArgument(QStringLiteral("paths"),
                                  QStringLiteral("Folders, or files of a shot to open."),
                                  QStringLiteral("[DIR or FILE]..."));
    parser->addHelpOption();
    parser->addVersionOption();
    parser->addOptions({
        {fpsOption(), QStringLiteral("Frames per second, as 24, 29.97 or 30000/1001."),
         QStringLiteral("RATE"), QStringLiteral("24")},
        {paletteOption(), QStringLiteral("dark (the default) or light."), QStringLiteral("NAME"),
         QStringLiteral("dark")},
        {cacheOption(),
         QStringLiteral(
             "Memory for decoded frames in MiB; as the status line was left if not given."),
         QStringLiteral("MIB"), QStringLiteral("1024")},
        {freshOption(),
         QStringLiteral("Begin in the built-in workspace, and leave the last one as it was kept.")},
        {layoutOption(), QStringLiteral("Begin in a saved workspace."), QStringLiteral("FILE")},
        {languageOption(),
         QStringLiteral("Language of the texts, as de; your desktop's if not given."),
         QStringLiteral("NAME")},
    });
}

CommandLine readOptions(QCommandLineParser* parser, const QStringList& arguments) {
    if (!parser->parse(arguments))
        return CommandLine::refusal(parser->errorText());
    if (parser->isSet(QStringLiteral("help")))
        return answer(parser->helpText());
    if (parser->isSet(QStringLiteral("version")))
        return answer(QStringLiteral("kxui-workbench " KXUI_VERSION_STRING "\n"));

    CommandLine line;
    line.paths = parser->positionalArguments();
    const QString fps = parser->value(fpsOption());
    const auto rate = parseFrameRate(fps);
    if (!rate)
        return CommandLine::refusal(
            QStringLiteral("\"%1\" is no frame rate; use 24, 29.97 or 30000/1001.").arg(fps));
    line.timeBase = *rate;
    const QString name = parser->value(paletteOption());
    if (name != QLatin1String("dark") && name != QLatin1String("light"))
        return CommandLine::refusal(
            QStringLiteral("\"%1\" is no palette; use dark or light.").arg(name));
    line.darkPalette = name == QLatin1String("dark");
    line.freshWorkspace = parser->isSet(freshOption());
    line.layoutFile = parser->value(layoutOption());
    line.language = parser->value(languageOption());
    const QString cache = parser->value(cacheOption());
    bool valid = false;
    const uint mebibytes = cache.toUInt(&valid);
    if (!valid || mebibytes < 1 || mebibytes > 1024 * 1024)
        return CommandLine::refusal(
            QStringLiteral("\"%1\" is no cache size; give MiB from 1 to 1048576.").arg(cache));
    line.cacheBytes = std::size_t(mebibytes) << 20;
    line.isCacheGiven = parser->isSet(cacheOption());
    return line;
}

CommandLine parseCommandLine(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Opens folders of numbered frames, plays and scrubs them.\n"
                       "Without an argument it opens its sample."));
    addOptions(&parser);
    return readOptions(&parser, arguments);
}

} // namespace Kestrel::Workbench
