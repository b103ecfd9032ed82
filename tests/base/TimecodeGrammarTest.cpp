#include <KxUI/base/Timecode.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <boost/regex.hpp>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <string>

using namespace Kestrel::Base;

namespace {

const char pattern[] = "(^-?\\d+$)|(^-?\\d*[:;.]\\d*$)|(^-?\\d*[:;.]\\d*[:;.]\\d*$)|"
                       "(^-?\\d*[:;.]\\d*[:;.]\\d*[:;.]\\d*$)|(^-?\\d+[hms]$)|(^-?\\d+\\+-?\\d+$)";

// The meaning of an accepted text, step by step and with the C library's readers.
Time meaning(const std::string& text, const TimeBase& base, Timecode::DisplayType type,
             std::int32_t& fieldCount) {
    if (type == Timecode::Frames)
        return std::atoi(text.c_str());
    fieldCount = 4;
    if (type == Timecode::FeetFrames40 || type == Timecode::FeetFrames16) {
        int feet = 0;
        int frames = 0;
        const bool both = std::sscanf(text.c_str(), "%d+%d", &feet, &frames) == 2;
        return both ? feet * (type == Timecode::FeetFrames40 ? 40 : 16) + frames : InvalidTime;
    }

    std::array<std::int32_t, 4> fields{}; // frames first
    bool negative = false;
    if (text.find_first_of(":;.") != std::string::npos) {
        std::size_t at = 0;
        int scale = 1;
        for (auto c = text.rbegin(); c != text.rend(); ++c) {
            if (std::isdigit(*c)) {
                fields[at] += (*c - '0') * scale;
                scale *= 10;
            } else if (*c == '-') {
                negative = true;
            } else {
                ++at;
                scale = 1;
            }
        }
        fieldCount = static_cast<std::int32_t>(at + 1);
    } else {
        const char last = text.back();
        const std::uint32_t scale = last == 'h'   ? 1000000
                                    : last == 'm' ? 10000
                                    : last == 's' ? 100
                                                  : 1;
        fieldCount = last == 'h'   ? 4
                     : last == 'm' ? 3
                     : last == 's' ? 2
                                   : std::min(static_cast<std::int32_t>(text.size() + 1) / 2, 4);
        const auto number = static_cast<std::int32_t>(std::strtol(text.c_str(), nullptr, 10));
        negative = number < 0;
        auto packed =
            static_cast<std::int32_t>(static_cast<std::uint32_t>(std::abs(number)) * scale);
        for (std::int32_t& field : fields) {
            field = packed % 100;
            packed /= 100;
        }
        fields[3] %= 100;
    }
    const auto& [frames, seconds, minutes, hours] = fields;
    if (minutes > 59 || seconds > 59 || frames >= base.roundedFps())
        return InvalidTime;
    const Time count = Timecode::fromFields(base, type == Timecode::DropFrameTimecode, hours,
                                            minutes, seconds, frames);
    return negative ? -count : count;
}

} // namespace

// Every text of up to six of these characters, against the regular expression that defines entry.
class TimecodeGrammarTest : public QObject {
    Q_OBJECT

private slots:
    void everyShortText() {
        const std::string alphabet = "05-:;.hms+x\n";
        const std::size_t longest = 6;
        int accepted = 0;
        std::array<std::size_t, longest> letters{};
        for (std::size_t length = 0; length <= longest; ++length) {
            letters.fill(0);
            std::string text(length, alphabet[0]);
            for (bool more = true; more;) {
                const bool matches = boost::regex_match(text, m_expression);
                accepted += matches;
                if (!agrees(text, matches))
                    QFAIL(qPrintable(QStringLiteral("differs on \"%1\"").arg(text.c_str())));

                more = false;
                for (std::size_t at = 0; at < length && !more; ++at) {
                    letters[at] = (letters[at] + 1) % alphabet.size();
                    text[at] = alphabet[letters[at]];
                    more = letters[at] != 0;
                }
            }
        }
        QVERIFY(accepted > 10000);
    }

    // What format() writes is read by a shortcut; every damaged byte must show.
    void everyFlawInAWrittenText() {
        for (std::size_t at = 0; at < 11; ++at) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string text = "12:34:56:07";
                text[at] = static_cast<char>(byte);
                QVERIFY2(agrees(text, boost::regex_match(text, m_expression)), text.c_str());
            }
        }
    }

    void noTrailingOrEmbeddedExtras() {
        using namespace std::string_view_literals;
        for (const std::string_view text : {"12\n"sv, "\n12"sv, "abc\n12"sv, "1:2\0"sv, "\0"sv,
                                            " 1"sv, "1:2 "sv, "+5"sv, "\xd9\xa1"sv, ""sv})
            QCOMPARE(Timecode::fromString(text, m_base, Timecode::Frames), InvalidTime);
    }

private:
    bool agrees(const std::string& text, bool matches) const {
        if (!matches)
            return Timecode::fromString(text, m_base, Timecode::Frames) == InvalidTime &&
                   Timecode::fromString(text, m_base, Timecode::Timecode) == InvalidTime;
        for (int type = Timecode::Timecode; type <= Timecode::FeetFrames16; ++type) {
            const auto displayType = static_cast<Timecode::DisplayType>(type);
            std::int32_t wantedCount = -1;
            std::int32_t count = -1;
            const Time wanted = meaning(text, m_base, displayType, wantedCount);
            if (Timecode::fromString(text, m_base, displayType, 0, &count) != wanted ||
                count != wantedCount)
                return false;
        }
        return true;
    }

    const boost::regex m_expression{pattern};
    const TimeBase m_base{30, true};
};

KXUI_TEST(TimecodeGrammarTest);

#include "TimecodeGrammarTest.moc"
