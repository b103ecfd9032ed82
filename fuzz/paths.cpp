// Paths as people type them, on both systems, and the completion of what is typed by any keys: what a
// text means is absolute and clean, an unedited text means its bytes, and the list of completions has
// what the text can go on with.

#include <KxUI/browse/Completion_p.h>
#include <KxUI/browse/PathText_p.h>

#include <support/Require.h>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdint>

using namespace Kestrel::UI;
using Kestrel::Fuzz::require;
using PathText::System;

namespace {

double lengthOf(const QString& text) {
    return static_cast<double>(text.size());
}

QByteArray bytesFrom(FuzzedDataProvider& data) {
    return QByteArray::fromStdString(data.ConsumeRandomLengthString(64));
}

void checkMeaning(const QString& text, const QByteArray& filled, System system) {
    const PathText::Place place{system == System::Posix ? "/shots" : "c:/shots", "/home", system};
    const PathText::Meaning meaning = PathText::meaningOf(text, filled, place);
    if (!meaning) {
        require(meaning.path.isEmpty(), "what is refused has no path");
        return;
    }
    require(PathText::isAbsolute(meaning.path, system), "a meaning is absolute");
    const auto crumbs = PathText::crumbsOf(meaning.path, system);
    require(!crumbs.empty() && crumbs.back().path == meaning.path, "crumbs lead there");
    for (const auto& crumb : crumbs)
        require(crumb.text != QLatin1String(".."), "steps are taken");
    require(PathText::meaningOf(meaning.path, place).path == meaning.path, "it means itself");
    const PathText::Meaning again =
        PathText::meaningOf(PathText::shown(meaning.path), meaning.path, place);
    require(again.path == meaning.path, "an unedited text means its bytes");
    const QByteArray way = PathText::relativeTo(meaning.path, place.folder, system);
    require(PathText::meaningOf(way, place).path == meaning.path, "the way leads there");
    for (const double width : {0.0, 7.0, 20.0})
        require(lengthOf(PathText::elided(text, width, lengthOf)) <= std::max(1.0, width),
                "what is cut fits");
}

void checkCompletion(FuzzedDataProvider& data) {
    std::vector<std::string> texts;
    for (int count = data.ConsumeIntegralInRange(0, 6); count > 0; --count)
        texts.push_back(data.ConsumeRandomLengthString(6));
    std::vector<CompletionName> names;
    for (const std::string& text : texts)
        names.push_back({text, data.ConsumeBool()});
    Completion completion;
    completion.setTakesFiles(data.ConsumeBool());
    QString text;
    int cursor = 0;
    const auto take = [&](const Completion::Outcome& outcome) {
        if (!outcome.hasText)
            return;
        text = outcome.text;
        cursor = outcome.cursor;
        require(cursor >= 0 && cursor <= text.size(), "the cursor is in the text");
    };
    while (data.remaining_bytes() > 0) {
        switch (data.ConsumeIntegralInRange(0, 3)) {
        case 0:
            text = QString::fromStdString(data.ConsumeRandomLengthString(8));
            cursor = data.ConsumeIntegralInRange(0, static_cast<int>(text.size()));
            completion.edited(text, cursor);
            break;
        case 1:
            take(completion.setNames(names));
            break;
        case 2:
            completion.giveUp();
            break;
        default:
            take(completion.press(static_cast<Completion::Key>(data.ConsumeIntegralInRange(0, 7))));
        }
        const auto rows = static_cast<int>(completion.matches().rows.size());
        require(completion.current() >= -1 && completion.current() < std::max(rows, 1),
                "a row that there is");
        require(!completion.isOpen() || rows > 0, "no empty list is open");
        require(text.startsWith(completion.folderText()), "the folder is the text's");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    FuzzedDataProvider data(bytes, size);
    const System system = data.ConsumeBool() ? System::Posix : System::Windows;
    const QByteArray filled = bytesFrom(data);
    const QByteArray typed = bytesFrom(data);
    checkMeaning(QString::fromUtf8(typed), {}, system);
    checkMeaning(PathText::shown(filled), filled, system);
    checkMeaning(PathText::shown(filled) + QString::fromUtf8(typed), filled, system);
    checkCompletion(data);
    return 0;
}
