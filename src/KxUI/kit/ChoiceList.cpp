#include <KxUI/kit/ChoiceList_p.h>

#include <algorithm>

namespace Kestrel::UI {

QString Choice::plainText() const {
    QString plain;
    plain.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&') && ++i == text.size())
            break;
        plain.append(text.at(i));
    }
    return plain;
}

bool ChoiceList::hasIcons() const {
    return std::any_of(all.begin(), all.end(),
                       [](const Choice& choice) { return !choice.icon.isNull(); });
}

int ChoiceList::current() const {
    for (int i = 0; i < count(); ++i) {
        if (at(i).checked)
            return i;
    }
    return -1;
}

QList<int> ChoiceList::checked() const {
    QList<int> on;
    for (int i = 0; i < count(); ++i) {
        if (at(i).checked)
            on.append(i);
    }
    return on;
}

void ChoiceList::setChecked(const QList<int>& indices) {
    for (Choice& choice : all)
        choice.checked = false;
    for (const int index : indices) {
        if (!has(index))
            continue;
        at(index).checked = true;
        if (exclusive)
            return;
    }
}

void ChoiceList::check(int index, bool on) {
    if (!has(index))
        return;
    if (exclusive && on)
        setChecked({index});
    else
        at(index).checked = on;
}

int ChoiceList::next(int from, int step) const {
    for (int i = from + step; has(i); i += step) {
        if (at(i).enabled)
            return i;
    }
    return -1;
}

} // namespace Kestrel::UI
