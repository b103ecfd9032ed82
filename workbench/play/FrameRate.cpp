#include "play/FrameRate.h"

#include <QStringList>

#include <cmath>

namespace Kestrel::Workbench {

std::optional<Base::TimeBase> parseFrameRate(const QString& text) {
    const QStringList parts = text.trimmed().split(QLatin1Char('/'));
    bool valid = false;
    Base::TimeBase base;
    if (parts.size() == 1) {
        const double rate = parts[0].toDouble(&valid);
        if (!valid || !std::isfinite(rate))
            return std::nullopt;
        base = Base::TimeBase(rate);
    } else if (parts.size() == 2) {
        const uint numerator = parts[0].toUInt(&valid);
        bool validDenominator = false;
        const uint denominator = parts[1].toUInt(&validDenominator);
        if (!valid || !validDenominator)
            return std::nullopt;
        base = Base::TimeBase::fromFraction(numerator, denominator);
    }
    const double rate = double(base.rate());
    return rate >= 0.1 && rate <= 1000.0 ? std::make_optional(base) : std::nullopt;
}

QString formatFrameRate(double rate) {
    QString text = QString::number(rate, 'f', 2);
    while (text.endsWith(QLatin1Char('0')))
        text.chop(1);
    if (text.endsWith(QLatin1Char('.')))
        text.chop(1);
    return text;
}

} // namespace Kestrel::Workbench
