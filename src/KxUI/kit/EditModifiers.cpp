#include <KxUI/kit/EditModifiers.h>

#include <cmath>

namespace Kestrel::UI {
namespace {

double coarseFactor = 10.0;
double fineFactor = 0.1;

bool isFactor(double x) {
    return std::isfinite(x) && x > 0.0;
}

} // namespace

double EditModifiers::factor(Qt::KeyboardModifiers modifiers) {
    if (modifiers.testFlag(Qt::ControlModifier))
        return modifiers.testFlag(Qt::ShiftModifier) ? fineFactor * fineFactor : fineFactor;
    return modifiers.testFlag(Qt::ShiftModifier) ? coarseFactor : 1.0;
}

void EditModifiers::set(double coarse, double fine) {
    if (isFactor(coarse))
        coarseFactor = coarse;
    if (isFactor(fine))
        fineFactor = fine;
}

} // namespace Kestrel::UI
