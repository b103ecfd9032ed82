#pragma once

#include <KxUI/curves/KeyCurve.h>

#include <vector>

namespace Kestrel::UI {

/** Whether the same keys are selected. */
bool isSelectionEqual(const std::vector<KeyCurve::Key>& a, const std::vector<KeyCurve::Key>& b);

/** Makes a piece of `keys`, which are those of `curve`, one of slopes of its own: those that it has. */
void setFree(std::vector<KeyCurve::Key>& keys, const KeyCurve& curve, std::size_t piece);

/** Whether a curve takes such a key. */
bool isTaken(const KeyCurve::Key& key);

} // namespace Kestrel::UI
