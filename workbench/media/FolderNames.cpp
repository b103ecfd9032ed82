#include "media/FolderNames.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <string_view>

namespace Kestrel::Workbench {

namespace {

struct Message {
    Q_DECLARE_TR_FUNCTIONS(FolderNames)
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/** The number of a run of digits; -1 for one that is no frame number. */
Base::Time frameOf(std::string_view digits) {
    Base::Time frame = 0;
    for (const char digit : digits) {
        frame = frame * 10 + (digit - '0');
        if (frame > std::numeric_limits<std::int32_t>::max())
            return -1;
    }
    return digits.empty() ? -1 : frame;
}

} // namespace

FolderNames::FolderNames(std::vector<std::string> names)
    : m_names(std::move(names)) {
    std::sort(m_names.begin(), m_names.end());
}

FolderNames FolderNames::read(const std::string& folder) {
    std::vector<std::string> names;
    if (DIR* stream = ::opendir(folder.c_str())) {
        while (const dirent* entry = ::readdir(stream))
            names.emplace_back(entry->d_name);
        ::closedir(stream);
    }
    return FolderNames(std::move(names));
}

std::vector<Sequence::Member> FolderNames::members(const std::string& hashedName) const {
    // A name may hold hashes of its own; the frame number is taken for the last run that has files.
    std::size_t end = hashedName.rfind('#');
    while (end != std::string::npos) {
        const std::size_t before = hashedName.find_last_not_of('#', end);
        const std::size_t begin = before == std::string::npos ? 0 : before + 1;
        const std::string prefix = hashedName.substr(0, begin);
        const std::string suffix = hashedName.substr(end + 1);
        const std::size_t digits = end - begin + 1;

        std::vector<Sequence::Member> found;
        for (auto name = std::lower_bound(m_names.begin(), m_names.end(), prefix);
             name != m_names.end() && name->compare(0, prefix.size(), prefix) == 0; ++name) {
            if (name->size() <= prefix.size() + suffix.size() ||
                name->compare(name->size() - suffix.size(), suffix.size(), suffix) != 0)
                continue;
            const auto middle = std::string_view(*name).substr(
                prefix.size(), name->size() - prefix.size() - suffix.size());
            const bool fits = (digits == 1 || middle.size() == digits) &&
                              std::all_of(middle.begin(), middle.end(), isDigit);
            if (const Base::Time frame = fits ? frameOf(middle) : -1; frame >= 0)
                found.emplace_back(frame, *name);
        }
        if (!found.empty())
            return found;
        end = begin == 0 ? std::string::npos : hashedName.rfind('#', begin - 1);
    }
    return {};
}

std::string hashedNameOf(const std::string& sequenceText) {
    // Latin-1 carries any bytes there and back.
    static const QRegularExpression form(
        QStringLiteral("^(.*#.*) \\d+-\\d+(?:,\\d+)?(?: \\((?: \\d+-\\d+ )*\\))?$"),
        QRegularExpression::DotMatchesEverythingOption);
    const auto match =
        form.match(QString::fromLatin1(sequenceText.data(), int(sequenceText.size())));
    return match.hasMatch() ? match.captured(1).toLatin1().toStdString() : std::string();
}

QString folderProblem(const std::string& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) != 0) {
        return errno == ENOENT || errno == ENOTDIR
                   ? Message::tr("This folder does not exist.")
                   : Message::tr("This folder cannot be reached: %1.")
                         .arg(QString::fromLocal8Bit(std::strerror(errno)));
    }
    if (!S_ISDIR(status.st_mode))
        return Message::tr("This is not a folder.");
    DIR* stream = ::opendir(folder.c_str());
    if (!stream) {
        return errno == EACCES ? Message::tr("You have no permission to read this folder.")
                               : Message::tr("This folder cannot be read: %1.")
                                     .arg(QString::fromLocal8Bit(std::strerror(errno)));
    }
    ::closedir(stream);
    return {};
}

} // namespace Kestrel::Workbench
