#pragma once

#include <KxUI/kit/ParameterWatchers.h>

#include <QString>
#include <QVariant>

namespace Kestrel::UI {

/** What the library's own parameters answer by themselves, and who watches them. */
struct ParameterFacts {
    QVariant minimum;
    QVariant maximum;
    QVariant defaultValue;
    QString label;
    bool enabled = true;
    ParameterWatchers watchers;

    /** Stores what is another value, and tells. */
    template <class T>
    void set(T& member, const T& value) {
        if (member == value)
            return;
        member = value;
        watchers.tell();
    }

    void setRange(const QVariant& least, const QVariant& most) {
        if (minimum == least && maximum == most)
            return;
        minimum = least;
        maximum = most;
        watchers.tell();
    }
};

} // namespace Kestrel::UI
