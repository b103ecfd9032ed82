#pragma once

#include <KxUI/values/LinearSlider.h>

namespace Kestrel::UI {

/** A slider on a strip of 60 by 10 pixels, for rows of parameters: a line that is filled up to the
    value, and a pointer. It has no ticks; everything else is as with a LinearSlider. */
class KXUI_EXPORT TinySlider : public LinearSlider {
    Q_OBJECT

public:
    /** A horizontal slider from 0 to 1 at 0. */
    explicit TinySlider(QWidget* parent = nullptr);
    ~TinySlider() override;
};

} // namespace Kestrel::UI
