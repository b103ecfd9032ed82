#pragma once

#include <KxUI/Export.h>
#include <KxUI/charts/IChartColorProvider.h>

#include <memory>
#include <vector>

namespace Kestrel::UI {

class ChartColorProviderPrivate;

/** Eight colours that colour-blind people tell apart (Okabe and Ito, 2008), each made lighter or darker,
    with its hue kept (in OKLab), until it has a contrast of 3 to the background (WCAG 2.1, 1.4.11). */
class KXUI_EXPORT ChartColorProvider : public IChartColorProvider {
public:
    ChartColorProvider();
    ~ChartColorProvider() override;

    /** The colours of the indices, which begin again after the last one; an empty list is ignored. */
    void setPalette(const std::vector<QColor>& colors);

    /** A colour for a key, whatever its index is; an invalid one takes it back. */
    void setColor(const QString& key, const QColor& color);

    QColor color(const QString& key, int index, const QColor& background) override;

    /** The colour as near to `color` that has the contrast of 3 to an opaque background. */
    static QColor visible(const QColor& color, const QColor& background);

private:
    const std::unique_ptr<ChartColorProviderPrivate> d;
};

} // namespace Kestrel::UI
