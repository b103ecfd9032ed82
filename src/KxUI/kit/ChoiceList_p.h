#pragma once

#include <QColor>
#include <QIcon>
#include <QList>
#include <QString>
#include <QVariant>

#include <vector>

namespace Kestrel::UI {

/** One of the choices. */
struct Choice {
    QString text;
    QIcon icon;
    QVariant data;
    QString toolTip;
    QColor color;
    bool enabled = true;
    bool checked = false;

    /** As it is shown: without the mark of the letter. */
    QString plainText() const;
};

/** The choices, and which of them are on. */
struct ChoiceList {
    std::vector<Choice> all;
    bool exclusive = true;

    int count() const { return static_cast<int>(all.size()); }
    bool has(int index) const { return index >= 0 && index < count(); }
    Choice& at(int index) { return all[static_cast<std::size_t>(index)]; }
    const Choice& at(int index) const { return all[static_cast<std::size_t>(index)]; }

    bool hasIcons() const;
    int current() const;
    QList<int> checked() const;
    /** Leaves only these on, and of them only the first where the choice is exclusive. */
    void setChecked(const QList<int>& indices);
    void check(int index, bool on);

    /** The next one that can be chosen, from `from` on in steps of 1 or -1, without `from`; -1 at
        the end. */
    int next(int from, int step) const;
};

} // namespace Kestrel::UI
