#pragma once

#include <KxUI/Export.h>
#include <KxUI/base/TimeBase.h>

#include <QMetaType>
#include <QSharedDataPointer>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace Kestrel::UI {

class ValueUnitsData;

/** The units that a number field reads, and may show. Values are kept in a base that the factory
    names; every unit says how its numbers become such values. A plain value whose copies share
    their contents; may be read from any thread. */
class KXUI_EXPORT ValueUnits {
public:
    /** `value = factor * number + offset`, or `2^number` with `powerOfTwo`. */
    struct Unit {
        QString symbol;          ///< shown behind the number, and read
        QStringList aliases;     ///< read, too
        double factor = 1.0;     ///< finite, not 0
        double offset = 0.0;     ///< finite
        bool powerOfTwo = false; ///< factor and offset do not count then
    };

    /** None: numbers are values. */
    ValueUnits();
    ValueUnits(const ValueUnits& other);
    ValueUnits& operator=(const ValueUnits& other);
    ~ValueUnits();

    /** One unit that is shown and read and converts nothing. None for a blank text. */
    static ValueUnits suffix(const QString& text);
    /** Base 1: "%" is a hundredth. */
    static ValueUnits percent();
    /** Base pixels: "px". */
    static ValueUnits pixels();
    /** Base pixels: px, in ("), cm, mm, pt, pc; only px where the resolution is not above 0. */
    static ValueUnits length(double pixelsPerInch);
    /** Base degrees: ° (deg), rad, turn, ' (arcmin), " (arcsec). */
    static ValueUnits angle();
    /** Base a factor of light: "x", and "stops" (stop, ev), each of which doubles it. */
    static ValueUnits stops();
    /** Base frames: f, s, ms; only f where the rate is not above 0. */
    static ValueUnits frames(Base::TimeBase rate);

    /** Adds a unit. Refuses, by false, one without a symbol, with a symbol that an expression would
        not get to (it begins with a digit, a blank or one of + - * / ^ ( ) . , ;), or with a factor
        or an offset that is no use. */
    bool add(const Unit& unit);

    /** Whether there are none, and how many there are. */
    bool isEmpty() const;
    int count() const;
    /** `index` is from 0 to below count(). */
    const Unit& unit(int index) const;

    /** The unit of that symbol or alias, in this case; -1 for none. */
    int indexOf(const QString& symbol) const;
    /** The unit whose symbol or alias, the longest one, the text begins with, and how long that is.
        What differs in case counts where only one unit fits. -1 for none. */
    int match(QStringView text, int* length) const;

    /** What a number in a unit stands for. */
    double toBase(int unit, double number) const;
    /** The number that stands for a value: the shortest within an ulp or two that toBase() makes
        the same value of, where there is one. Not a number, or infinite, where the unit has none
        (stops of a negative factor). */
    double fromBase(int unit, double value) const;
    /** Whether sums of numbers in this unit are sums of what they stand for. */
    bool isLinear(int unit) const;

    /** What stands between a number and the unit's symbol: a no-break space, or nothing before
        signs such as %. */
    static QString separator(const QString& symbol);

    friend KXUI_EXPORT bool operator==(const ValueUnits& a, const ValueUnits& b);
    friend bool operator!=(const ValueUnits& a, const ValueUnits& b) { return !(a == b); }

private:
    QSharedDataPointer<ValueUnitsData> d;
};

} // namespace Kestrel::UI

Q_DECLARE_METATYPE(Kestrel::UI::ValueUnits)
