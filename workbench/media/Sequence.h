#pragma once

#include <KxUI/base/Time.h>

#include <QString>

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Kestrel::Workbench {

/** The files of one shot: which times have a file, and its name. Names are the bytes of the file
    system. */
class Sequence {
public:
    using Member = std::pair<Base::Time, std::string>;

    /** The empty sequence. */
    Sequence() = default;

    /** @param title    what the user sees
        @param folder   the folder's path
        @param members  time and file name, in any order; of two files for one time the first stays
     */
    Sequence(QString title, std::string folder, std::vector<Member> members);

    const QString& title() const { return m_title; }
    const std::string& folder() const { return m_folder; }
    const std::vector<Member>& members() const { return m_members; }
    bool isEmpty() const { return m_members.empty(); }

    /** The first and the last time; InvalidTime when empty. */
    Base::Time firstTime() const;
    Base::Time lastTime() const;

    /** The distance of the frames: more than 1 for a shot rendered on twos or threes. */
    Base::Time step() const { return m_step; }

    /** Times between the first and the last on the step that have no file. */
    Base::Time missingCount() const;

    /** The time whose file is shown at `time`: the time itself, or, between two steps, the step
        before it. Nothing when that file is missing or the time lies outside. */
    std::optional<Base::Time> heldTime(Base::Time time) const;

    /** Where files begin or cease to be there, and the last time. */
    std::set<Base::Time> edits() const;

    /** The path of the file for exactly this time; empty when there is none. */
    std::string path(Base::Time time) const;

private:
    std::vector<Member>::const_iterator find(Base::Time time) const;

    QString m_title;
    std::string m_folder;
    std::vector<Member> m_members;
    Base::Time m_step = 1;
};

} // namespace Kestrel::Workbench
