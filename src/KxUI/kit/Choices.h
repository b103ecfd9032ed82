#pragma once

#include <KxUI/Export.h>

#include <QColor>
#include <QIcon>
#include <QList>
#include <QString>
#include <QVariant>

#include <memory>

namespace Kestrel::UI {

class ChoicesPrivate;

/** What the user chooses from in a ChoiceBar or a ChoiceButton: texts with icons, colours and data
    of the host, of which one is on, or any number where the choice is not exclusive. Choices are
    numbered from 0; a number that none has changes nothing, and reads as an empty one. Setters emit
    no signal of an edit, only those of what became another one. Interface thread. */
class KXUI_EXPORT Choices {
public:
    virtual ~Choices();
    Choices(const Choices&) = delete;
    Choices& operator=(const Choices&) = delete;

    /** Appends a choice, which is not on, and returns its number. A letter after `&` chooses it
        together with Alt in a ChoiceBar and by itself in a menu; `&&` shows as `&`. */
    int addChoice(const QString& text, const QIcon& icon = QIcon(),
                  const QVariant& data = QVariant());
    /** Takes a choice away; those after it move up. None is on in place of one that was. */
    void removeChoice(int index);
    /** Takes all of them away. */
    void clearChoices();
    int choiceCount() const;

    /** The text, with its `&`. */
    QString choiceText(int index) const;
    void setChoiceText(int index, const QString& text);
    /** Shown beside the text, or in place of it; null for none. */
    QIcon choiceIcon(int index) const;
    void setChoiceIcon(int index, const QIcon& icon);
    /** What the host keeps with the choice. */
    QVariant choiceData(int index) const;
    void setChoiceData(int index, const QVariant& data);
    /** Shown while the mouse rests on it; where it is empty, the text when that is not shown. */
    QString choiceToolTip(int index) const;
    void setChoiceToolTip(int index, const QString& toolTip);
    /** The colour of its text, changed towards black or white where that could not be read, and of
        the line below it: for channels. Invalid for the palette's. */
    QColor choiceColor(int index) const;
    void setChoiceColor(int index, const QColor& color);
    /** Whether the user can choose it; the host always can. True at first. */
    bool isChoiceEnabled(int index) const;
    void setChoiceEnabled(int index, bool enabled);

    /** The first choice with these data; -1 without one. */
    int findChoice(const QVariant& data) const;

    /** The choice that is on; -1 for none, as at first. The first one that is on where the choice
        is not exclusive. Setting leaves only that one on, and none for -1. */
    int currentIndex() const;
    void setCurrentIndex(int index);
    /** The data of the current one. */
    QVariant currentData() const;

    /** Whether one is on, in rising order together. */
    bool isChoiceChecked(int index) const;
    void setChoiceChecked(int index, bool checked);
    QList<int> checkedChoices() const;

    /** Whether at most one is on, as at first. Becoming so leaves the first one on that is. */
    bool isExclusive() const;
    void setExclusive(bool exclusive);

    /** Whether the user is at it: between editStarted() and editFinished(). */
    bool isEditing() const;

protected:
    /** For the widgets; `data` is theirs. */
    explicit Choices(std::unique_ptr<ChoicesPrivate> data);

    /** Takes an edit back. */
    void takeBack();

    /** What the widgets know of it, too. */
    ChoicesPrivate& choices() const;

private:
    const std::unique_ptr<ChoicesPrivate> d;
};

} // namespace Kestrel::UI
