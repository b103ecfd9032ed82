#include <KxUI/browse/ChooserTexts_p.h>

#include <KxUI/browse/NameEdits_p.h>
#include <KxUI/files/FileManager.h>
#include <KxUI/files/FileTexts_p.h>

#include <QCoreApplication>

namespace Kestrel::UI::ChooserTexts {
namespace {

using Mode = NameRules::Mode;
using Sheet = ChooserState::Sheet;

struct Text {
    Q_DECLARE_TR_FUNCTIONS(FileChooserDialog)
};

// A name of its own direction, whatever the language around it.
QString isolated(const QString& name) {
    return QChar(0x2068) + name + QChar(0x2069);
}

QString shown(const std::string& name) {
    return isolated(FileTexts::name(name));
}

int limited(std::int64_t count) {
    return static_cast<int>(std::min<std::int64_t>(count, 0x7fffffff));
}

QString framesProblem(const NameReading& reading) {
    if (reading.problem == NameProblem::FramesNotThere)
        return Text::tr("No frame of this sequence lies in %1.").arg(range(reading.asked.frames));
    return Text::tr("Frames are written as 1001-1100, or 1001-1100x2 for every second one.");
}

QString replacedText(const ReplacedFiles& replaced) {
    if (replaced.frames.empty())
        return Text::tr("This file exists and would be replaced.");
    const QString which = frames(replaced.frames);
    if (replaced.count == 1)
        return Text::tr("Frame %1 exists and would be replaced.").arg(which);
    return Text::tr("%n frames exist and would be replaced (%1).", nullptr, limited(replaced.count))
        .arg(which);
}

QString missingText(const AskedFrames& asked) {
    const QString which = frames(asked.gaps, asked.hasMoreGaps);
    if (asked.missing == 1)
        return Text::tr("Frame %1 is missing").arg(which);
    return Text::tr("%n frames are missing: %1", nullptr, limited(asked.missing)).arg(which);
}

QString lostText(const NameReading& reading, const QString& name, const QString& folder) {
    if (reading.replaced.frames.empty())
        return Text::tr("\u201c%1\u201d exists in \u201c%2\u201d and would be lost.")
            .arg(name, folder);
    if (reading.replaced.count == 1)
        return Text::tr("One frame of \u201c%1\u201d exists in \u201c%2\u201d and would be lost.")
            .arg(name, folder);
    return Text::tr("%n frames of \u201c%1\u201d exist in \u201c%2\u201d and would be lost.",
                    nullptr, limited(reading.replaced.count))
        .arg(name, folder);
}

} // namespace

QString range(const Base::FrameRange& frames) {
    QString text = QString::number(frames.first);
    if (frames.first != frames.last)
        text += QLatin1Char('-') + QString::number(frames.last);
    if (frames.step > 1 && frames.first != frames.last)
        text += QLatin1Char('x') + QString::number(frames.step);
    return text;
}

QString frames(const std::vector<Base::FrameRange>& ranges, bool hasMore) {
    constexpr std::size_t most = 4;
    QStringList texts;
    for (std::size_t i = 0; i < std::min(most, ranges.size()); ++i)
        texts << range(ranges[i]);
    QString text = texts.join(QStringLiteral(", "));
    if (hasMore || ranges.size() > most)
        text += QStringLiteral(" \u2026");
    return text;
}

QString problem(const NameReading& reading) {
    const QString name = shown(reading.culprit);
    switch (reading.problem) {
    case NameProblem::None:
        return {};
    case NameProblem::NotFound:
        return Text::tr("There is no file \u201c%1\u201d in this folder.").arg(name);
    case NameProblem::SeveralNames:
        return Text::tr("Only one name can be given here.");
    case NameProblem::SeveralFolders:
        return Text::tr("All files have to lie in one folder.");
    case NameProblem::Forbidden:
        return Text::tr("The name \u201c%1\u201d has a character that no file name may have.")
            .arg(name);
    case NameProblem::Reserved:
        return Text::tr("The name \u201c%1\u201d is kept for a device.").arg(name);
    case NameProblem::TooLong:
        return Text::tr("The name is too long.");
    case NameProblem::IsFolder:
        return Text::tr("A folder has the name \u201c%1\u201d.").arg(name);
    case NameProblem::NoSequences:
        return Text::tr("A single file is wanted here, not a sequence.");
    case NameProblem::NoSingleFiles:
        return Text::tr("A sequence is wanted here, not a single file.");
    case NameProblem::FramesUnreadable:
    case NameProblem::FramesNotThere:
        return framesProblem(reading);
    }
    return {};
}

QString problem(const ChooserState& state, const NameReading& reading) {
    switch (state.problem()) {
    case ChooserState::Problem::None:
        return {};
    case ChooserState::Problem::Name:
        return problem(reading);
    case ChooserState::Problem::Folder:
        return FileManager::errorText(state.error());
    case ChooserState::Problem::NotWritable:
        return Text::tr("You have no permission to write in this folder.");
    case ChooserState::Problem::NotMade:
        return Text::tr("The folder %1 could not be made: %2")
            .arg(shown(reading.folder), FileManager::errorText(state.error()));
    }
    return {};
}

Notice notice(const NameReading& reading, const QString& createsFolder) {
    using Kind = Notice::Kind;
    // A name that is half typed is nothing to complain about.
    if (reading.problem != NameProblem::None && reading.problem != NameProblem::NotFound)
        return {Kind::Error, problem(reading), false};
    if (reading.replaced.count > 0) {
        const bool hasVersion =
            !reading.targets.empty() && NameEdits::versionOf(reading.targets.front().name);
        return {Kind::Warning, replacedText(reading.replaced), hasVersion};
    }
    if (reading.asked.missing > 0)
        return {Kind::Warning, missingText(reading.asked), false};
    if (!createsFolder.isEmpty())
        return {Kind::Hint, Text::tr("The folder %1 will be made.").arg(isolated(createsFolder)),
                false};
    return {};
}

Question question(Sheet sheet, Mode mode, const NameReading& reading, const QString& folder) {
    if (sheet == Sheet::Replace) {
        const QString name =
            reading.targets.empty() ? QString() : shown(reading.targets.front().name);
        const bool isSequence = !reading.replaced.frames.empty();
        return {isSequence ? Text::tr("Replace files?") : Text::tr("Replace the file?"),
                lostText(reading, name, isolated(folder)), Text::tr("&Replace")};
    }
    if (mode == Mode::SaveFile)
        return {Text::tr("The folder does not answer"),
                Text::tr("It is not known whether the file exists: the folder does not answer."),
                Text::tr("&Save Anyway")};
    return {Text::tr("The folder does not answer"),
            Text::tr("It is not known whether what was chosen exists: the folder does not answer."),
            mode == Mode::OpenFolder ? Text::tr("C&hoose Anyway") : Text::tr("&Open Anyway")};
}

QString acceptButton(Mode mode) {
    switch (mode) {
    case Mode::SaveFile:
        return Text::tr("&Save");
    case Mode::OpenFolder:
        return Text::tr("C&hoose");
    default:
        return Text::tr("&Open");
    }
}

QString title(Mode mode) {
    switch (mode) {
    case Mode::OpenFile:
        return Text::tr("Open");
    case Mode::OpenFiles:
        return Text::tr("Open Files");
    case Mode::SaveFile:
        return Text::tr("Save As");
    case Mode::OpenFolder:
        return Text::tr("Choose a Folder");
    }
    return {};
}

QString nameLabel(Mode mode) {
    return mode == Mode::OpenFolder ? Text::tr("Fol&der:") : Text::tr("&Name:");
}

} // namespace Kestrel::UI::ChooserTexts
