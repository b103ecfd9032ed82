#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

/** \file
    What paths mean as people write them, and how they are shown. Pure functions: no disk is asked,
    the environment neither. Any thread. */
namespace Kestrel::UI::PathText {

/** How a system writes paths: what separates folders, and what paths begin with. */
enum class System { Posix, Windows };
System thisSystem();

/** One component of a path, with the path that leads to it. */
struct Crumb {
    QString text;    ///< on one line, whatever the name is
    QByteArray path; ///< absolute

    bool operator==(const Crumb& other) const { return text == other.text && path == other.path; }
};

/** The components of an absolute path, the root, drive or share first. */
std::vector<Crumb> crumbsOf(const QByteArray& path, System system = thisSystem());

/** A path as a text to be edited, component by component: bytes that mean nothing become
    replacement characters. */
QString shown(const QByteArray& path);

/** The same to be read in a line: control characters and what turns the writing around are
    replaced, too. */
QString readable(const QByteArray& path);

/** The bytes of an edited text. As far as its first components are those of `filled`, a path that
    the text was made from by shown(), their bytes count; the rest is encoded. */
QByteArray typed(const QString& text, const QByteArray& filled, System system = thisSystem());

/** What relative paths count from, and what `~` stands for. */
struct Place {
    QByteArray folder; ///< absolute
    QByteArray home;   ///< absolute; empty where nobody knows
    System system = thisSystem();
};

enum class Refusal {
    None,
    Empty,     ///< blanks alone
    Nul,       ///< a character that no path has
    OtherHost, ///< `file://` and the name of another computer
    NoHome     ///< `~`, and nobody knows
};

struct Meaning {
    QByteArray path; ///< absolute, without steps to itself or upwards; empty where it is refused
    Refusal refusal = Refusal::None;
    bool endsAsFolder = false; ///< by a separator, or a step

    explicit operator bool() const { return refusal == Refusal::None; }
};

/** What a text means. Blanks at both ends do not count, nor quotes around it, nor what follows its
    first line; `~` and `~/` are the home folder; `file:` is an address, in which alone percent
    signs are escapes. An unedited text means its bytes, whatever they are. */
Meaning meaningOf(const QString& text, const QByteArray& filled, const Place& place);

/** The same of bytes. */
Meaning meaningOf(const QByteArray& path, const Place& place);

/** The text that a pasted one leaves in a field: its first line, without the quotes around it, an
    address as the path that it means. */
QString pasted(const QString& text, System system = thisSystem());

/** The path of an address, `file:` and on, with its escapes as bytes; empty for what is none or is
    on another computer. */
QByteArray pathOfAddress(const QString& address, System system = thisSystem());

/** Whether a path stands for itself. */
bool isAbsolute(const QByteArray& path, System system = thisSystem());

/** Whether a text could be meant as an absolute path: it begins with a separator, `~`, a drive or
    `file:`, perhaps in quotes. */
bool looksAbsolute(const QString& text, System system = thisSystem());

/** The folder that an absolute path lies in; a root lies in itself. */
QByteArray parentOf(const QByteArray& path, System system = thisSystem());

/** What stands behind the last separator. */
QByteArray nameOf(const QByteArray& path, System system = thisSystem());

/** A name in a folder. */
QByteArray joined(const QByteArray& folder, const QByteArray& name);

/** The way from `base` to `path`, both absolute and clean: `../plates/a.exr`. The path itself where
    they have nothing in common but a root. */
QByteArray relativeTo(const QByteArray& path, const QByteArray& base, System system = thisSystem());

/** How wide a text is. */
using Measure = std::function<double(const QString&)>;

/** A path that fits into a width: `/mnt/…/comp.exr`. Folders in the middle go first, then those at
    the front, then the middle of the name. */
QString elided(const QString& path, double width, const Measure& measure);

/** The path of a sequence that all of these paths, by their names, are frames of: `a.####.exr`.
    Empty for fewer than two, and where one of them is none. */
QByteArray sequenceOf(const std::vector<QByteArray>& paths, System system = thisSystem());

/** The path with another number for its last version, also in folders that have the same one:
    `/v001/a_v001.exr`. */
QByteArray withVersion(const QByteArray& path, std::int32_t number);

} // namespace Kestrel::UI::PathText
