#include "media/ListedSequence.h"

#include "media/Paths.h"

#include <QByteArray>

#include <algorithm>
#include <limits>

namespace Kestrel::Workbench {

namespace {

/** The number that a lone file carries, so that it stands at its own frame; 1 when it has none. */
Base::Time frameOfLoneFile(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    const std::size_t end = dot == std::string::npos || dot == 0 ? name.size() : dot;
    std::size_t begin = end;
    while (begin > 0 && name[begin - 1] >= '0' && name[begin - 1] <= '9')
        --begin;
    Base::Time frame = 0;
    for (std::size_t i = begin; i < end; ++i) {
        frame = frame * 10 + (name[i] - '0');
        if (frame > std::numeric_limits<std::int32_t>::max())
            return 1;
    }
    return begin == end ? 1 : frame;
}

} // namespace

Sequence sequenceOf(const UI::FileInfo& info) {
    const std::string path = info.rawAbsoluteFilePath().toStdString();
    const std::string folder = parentFolder(path);
    if (!info.isSequence()) {
        const std::string name = info.rawFileName();
        return Sequence(info.fileName(), folder, {{frameOfLoneFile(name), name}});
    }
    std::vector<Sequence::Member> members;
    for (const Base::FrameRange& range : info.presentRanges()) {
        const std::int64_t step = std::max(range.step, 1);
        for (std::int64_t frame = range.first; frame <= range.last; frame += step) {
            const QByteArray file = info.rawFramePath(std::int32_t(frame));
            members.emplace_back(frame, fileNameOf(file.toStdString()));
        }
    }
    return Sequence(info.frameName(), folder, std::move(members));
}

Base::Time timeOf(const Sequence& sequence, const std::string& name) {
    for (const Sequence::Member& member : sequence.members()) {
        if (member.second == name)
            return member.first;
    }
    return Base::InvalidTime;
}

std::string pathOf(const Sequence& sequence) {
    if (sequence.isEmpty())
        return {};
    // A name that is not UTF-8 is only known from its files.
    const bool isKnown = !sequence.title().contains(QChar::ReplacementCharacter);
    const bool isOne = sequence.members().size() == 1;
    return joinPath(sequence.folder(), isOne || !isKnown ? sequence.members().front().second
                                                         : sequence.title().toStdString());
}

} // namespace Kestrel::Workbench
