#include "app/CommandLine.h"

#include "app/FrameRate.h"

#include <KxUI/Version.h>

#include <QCommandLineParser>

namespace Kestrel::Workbench {

namespace {

CommandLine refusal(const QString& why) {
    CommandLine line;
    line.action = CommandLine::Action::Refuse;
    line.text = why;
    return line;
}

CommandLine answer(const QString& text) {
    CommandLine line;
    line.action = CommandLine::Action::ShowText;
    line.text = text;
    return line;
}

} // namespace

CommandLine parseCommandLine(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Opens folders of numbered frames, plays and scrubs them.\n"
                       "Without an argument it opens its sample."));
    parser.addPositionalArgument(QStringLiteral("paths"),
                                 QStringLiteral("Folders, or files of a shot to open."),
                                 QStringLiteral("[DIR or FILE]..."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption version = parser.addVersionOption();
    const QCommandLineOption fps(QStringLiteral("fps"),
                                 QStringLiteral("Frames per second, as 24, 29.97 or 30000/1001."),
                                 QStringLiteral("RATE"), QStringLiteral("24"));
    const QCommandLineOption tour(
        QStringLiteral("tour"),
        QStringLiteral("Open everything without a screen, save pictures of the window and of each "
                       "widget to OUT, print what was listed, decoded and saved, and end."),
        QStringLiteral("OUT"));
    const QCommandLineOption palette(QStringLiteral("palette"),
                                     QStringLiteral("dark (the default) or light."),
                                     QStringLiteral("NAME"), QStringLiteral("dark"));
    const QCommandLineOption cache(QStringLiteral("cache"),
                                   QStringLiteral("Memory for decoded frames in MiB."),
                                   QStringLiteral("MIB"), QStringLiteral("1024"));
    const QCommandLineOption fresh(
        QStringLiteral("fresh"),
        QStringLiteral("Begin in the built-in workspace, and leave the last one as it was kept."));
    const QCommandLineOption layout(QStringLiteral("layout"),
                                    QStringLiteral("Begin in a saved workspace."),
                                    QStringLiteral("FILE"));
    const QCommandLineOption language(
        QStringLiteral("language"),
        QStringLiteral("Language of the texts, as de; your desktop's if not given."),
        QStringLiteral("NAME"));
    QCommandLineOption robot(
        QStringLiteral("robot"),
        QStringLiteral(
            "Let a robot use the window, as a test: it does what the number SEED makes it "
            "do, prints once a minute what memory is in use, and ends the program."),
        QStringLiteral("SEED:MINUTES"));
    robot.setFlags(QCommandLineOption::HiddenFromHelp);
    QCommandLineOption tourScale(QStringLiteral("tour-scale"), QString(), QStringLiteral("SCALE"),
                                 QStringLiteral("0"));
    tourScale.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions({fps, tour, palette, cache, fresh, layout, language, robot, tourScale});

    if (!parser.parse(arguments))
        return refusal(parser.errorText());
    if (parser.isSet(help))
        return answer(parser.helpText());
    if (parser.isSet(version))
        return answer(QStringLiteral("kxui-workbench " KXUI_VERSION_STRING "\n"));

    CommandLine line;
    line.paths = parser.positionalArguments();
    const auto rate = parseFrameRate(parser.value(fps));
    if (!rate)
        return refusal(QStringLiteral("\"%1\" is no frame rate; use 24, 29.97 or 30000/1001.")
                           .arg(parser.value(fps)));
    line.timeBase = *rate;
    if (parser.isSet(tour) && parser.value(tour).isEmpty())
        return refusal(QStringLiteral("--tour needs a folder to save to."));
    line.tourFolder = parser.value(tour);
    line.tourScale = parser.value(tourScale).toInt();
    const QString name = parser.value(palette);
    if (name != QLatin1String("dark") && name != QLatin1String("light"))
        return refusal(QStringLiteral("\"%1\" is no palette; use dark or light.").arg(name));
    line.darkPalette = name == QLatin1String("dark");
    line.freshWorkspace = parser.isSet(fresh);
    line.layoutFile = parser.value(layout);
    line.language = parser.value(language);
    if (parser.isSet(robot)) {
        const QStringList order = parser.value(robot).split(QLatin1Char(':'));
        bool isSeed = false;
        line.robotSeed = order.first().toUInt(&isSeed);
        line.robotMinutes = order.last().toInt();
        if (order.size() != 2 || !isSeed || line.robotMinutes < 1)
            return refusal(QStringLiteral("\"%1\" is no order for the robot; use SEED:MINUTES.")
                               .arg(parser.value(robot)));
    }
    bool valid = false;
    const uint mebibytes = parser.value(cache).toUInt(&valid);
    if (!valid || mebibytes < 1 || mebibytes > 1024 * 1024)
        return refusal(QStringLiteral("\"%1\" is no cache size; give MiB from 1 to 1048576.")
                           .arg(parser.value(cache)));
    line.cacheBytes = std::size_t(mebibytes) << 20;
    return line;
}

} // namespace Kestrel::Workbench
