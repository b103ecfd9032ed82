#include <KxUI/base/Timecode.h>

#include <support/TestRegistry.h>

#include <QtTest>

#include <boost/regex.hpp>

#include <array>
#include <string>

using namespace Kestrel::Base;

namespace {

const char pattern[] = "(^-?\\d+$)|(^-?\\d*[:;.]\\d*$)|(^-?\\d*[:;.]\\d*[:;.]\\d*$)|"
                       "(^-?\\d*[:;.]\\d*[:;.]\\d*[:;.]\\d*$)|(^-?\\d+[hms]$)|(^-?\\d+\\+-?\\d+$)";
constexpr TimeBase base(30, true);

// Frames makes a time of whatever the grammar accepts.
bool agrees(const std::string& text) {
    static const boost::regex expression(pattern);
    const bool accepted = boost::regex_match(text, expression);
    return (Timecode::fromString(text, base, Timecode::Frames) != InvalidTime) == accepted &&
           (Timecode::fromString(text, base, Timecode::Timecode) == InvalidTime || accepted);
}

} // namespace

// The reader of typed times against the regular expression that defines what may be typed.
class TimecodeGrammarTest : public QObject {
    Q_OBJECT

private slots:
    void everyShortText() {
        const std::string alphabet = "05-:;.hms+x\n";
        for (std::size_t length = 0; length <= 6; ++length) {
            std::array<std::size_t, 6> letters{};
            std::string text(length, alphabet[0]);
            for (bool more = true; more;) {
                if (!agrees(text))
                    QFAIL(text.c_str());
                more = false;
                for (std::size_t at = 0; at < length && !more; ++at) {
                    letters[at] = (letters[at] + 1) % alphabet.size();
                    text[at] = alphabet[letters[at]];
                    more = letters[at] != 0;
                }
            }
        }
    }

    // What format() writes is read by a shortcut; every damaged byte must show.
    void everyFlawInAWrittenText() {
        for (std::size_t at = 0; at < 11; ++at) {
            for (int byte = 0; byte < 256; ++byte) {
                std::string text = "12:34:56:07";
                text[at] = static_cast<char>(byte);
                QVERIFY2(agrees(text), text.c_str());
            }
        }
    }
};

KXUI_TEST(TimecodeGrammarTest);

#include "TimecodeGrammarTest.moc"
