#pragma once

#include <KxUI/browse/ChooserState_p.h>

#include <QString>

/** \file
    What a file chooser says. Names in it are isolated from the direction of the text around them. */
namespace Kestrel::UI::ChooserTexts {

/** A line under the name. */
struct Notice {
    enum class Kind : std::uint8_t { None, Hint, Warning, Error };

    Kind kind = Kind::None;
    QString text;
    bool offersNextVersion = false;
};

/** What is to be said of the fields while the user types. `createsFolder` is one that would be made;
    empty for none. */
Notice notice(const NameReading& reading, const QString& createsFolder);

/** Why a name cannot be taken. */
QString problem(const NameReading& reading);

/** Why the dialog stays open. */
QString problem(const ChooserState& state, const NameReading& reading);

/** The question of a sheet. */
struct Question {
    QString title;
    QString text;
    QString confirm; ///< the button's, with its letter
};
Question question(ChooserState::Sheet sheet, NameRules::Mode mode, const NameReading& reading,
                  const QString& folder);

/** "1001-1012, 1020 …": the first few ranges. */
QString frames(const std::vector<Base::FrameRange>& ranges, bool hasMore = false);

/** "1001-1100", "1001-1099x2". */
QString range(const Base::FrameRange& frames);

/** Words of buttons and labels that depend on the mode. */
QString acceptButton(NameRules::Mode mode);
QString title(NameRules::Mode mode);
QString nameLabel(NameRules::Mode mode);

} // namespace Kestrel::UI::ChooserTexts
