#include "ToolLine.h"

#include <QCommandLineParser>

namespace Kestrel::Workbench {

namespace {

QString tourOption() {
    return QStringLiteral("tour");
}
QString robotOption() {
    return QStringLiteral("robot");
}
QString playOption() {
    return QStringLiteral("play");
}
QString scaleOption() {
    return QStringLiteral("tour-scale");
}

ToolLine refusal(const QString& why) {
    return ToolLine(CommandLine::refusal(why));
}

} // namespace

ToolLine parseToolLine(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Uses the workbench without a user, to show it or to test it."));
    addOptions(&parser);
    QCommandLineOption scale(scaleOption(), QString(), QStringLiteral("SCALE"),
                             QStringLiteral("0"));
    scale.setFlags(QCommandLineOption::HiddenFromHelp);
    parser.addOptions(
        {{tourOption(),
          QStringLiteral("Open everything without a screen, save pictures of the window and of "
                         "each widget to OUT, print what was listed, decoded and saved, and end."),
          QStringLiteral("OUT")},
         {robotOption(),
          QStringLiteral("Let a robot use the window: it does what the number SEED makes it do, "
                         "prints once a minute what memory is in use, and ends the program."),
          QStringLiteral("SEED:MINUTES")},
         {playOption(),
          QStringLiteral(
              "Play what is opened for so many seconds, without a screen, print the rate "
              "reached and what the repaints took, and end."),
          QStringLiteral("SECONDS")},
         scale});

    ToolLine line(readOptions(&parser, arguments));
    if (line.action != CommandLine::Action::Run)
        return line;
    line.tourFolder = parser.value(tourOption());
    line.tourScale = parser.value(scaleOption()).toInt();
    line.playSeconds = parser.value(playOption()).toInt();
    if (parser.isSet(tourOption()) + parser.isSet(robotOption()) + parser.isSet(playOption()) != 1)
        return refusal(
            QStringLiteral("Use one of --tour OUT, --robot SEED:MINUTES and --play SECONDS."));
    if (parser.isSet(playOption()) && line.playSeconds < 1)
        return refusal(QStringLiteral("--play needs a number of seconds, 1 or more."));
    if (parser.isSet(tourOption()) && line.tourFolder.isEmpty())
        return refusal(QStringLiteral("--tour needs a folder to save to."));
    if (parser.isSet(robotOption())) {
        const QString text = parser.value(robotOption());
        const QStringList order = text.split(QLatin1Char(':'));
        bool isSeed = false;
        line.robotSeed = order.first().toUInt(&isSeed);
        line.robotMinutes = order.last().toInt();
        if (order.size() != 2 || !isSeed || line.robotMinutes < 1)
            return refusal(
                QStringLiteral("\"%1\" is no order for the robot; use SEED:MINUTES.").arg(text));
    }
    return line;
}

} // namespace Kestrel::Workbench
