#include <KxUI/style/StyleMetrics_p.h>

namespace Kestrel::UI::StyleMetrics {

std::optional<int> lengthOf(QStyle::PixelMetric metric) {
    switch (metric) {
    case QStyle::PM_ButtonDefaultIndicator:
    case QStyle::PM_ButtonShiftHorizontal:
    case QStyle::PM_ButtonShiftVertical:
    case QStyle::PM_TabBarTabShiftHorizontal:
    case QStyle::PM_TabBarTabShiftVertical:
    case QStyle::PM_TabBarTabOverlap:
    case QStyle::PM_MenuHMargin:
    case QStyle::PM_ToolBarFrameWidth:
        return 0;
    case QStyle::PM_DefaultFrameWidth:
    case QStyle::PM_MenuPanelWidth:
    case QStyle::PM_TabBarBaseOverlap:
    case QStyle::PM_ComboBoxFrameWidth:
    case QStyle::PM_SpinBoxFrameWidth:
        return 1;
    case QStyle::PM_MenuVMargin:
        return 2;
    case QStyle::PM_ToolTipLabelFrameWidth:
    case QStyle::PM_SliderTickmarkOffset:
        return 4;
    case QStyle::PM_SplitterWidth:
    case QStyle::PM_DockWidgetSeparatorExtent:
        return 5;
    case QStyle::PM_MenuBarItemSpacing:
    case QStyle::PM_TabBarTabVSpace:
    case QStyle::PM_CheckBoxLabelSpacing:
    case QStyle::PM_RadioButtonLabelSpacing:
        return 6;
    case QStyle::PM_SliderLength:
        return HandleLength;
    case QStyle::PM_ScrollBarExtent:
    case QStyle::PM_MenuButtonIndicator:
        return 12;
    case QStyle::PM_IndicatorWidth:
    case QStyle::PM_IndicatorHeight:
    case QStyle::PM_ExclusiveIndicatorWidth:
    case QStyle::PM_ExclusiveIndicatorHeight:
        return IndicatorSide;
    case QStyle::PM_SliderThickness:
    case QStyle::PM_SliderControlThickness:
        return HandleThickness;
    case QStyle::PM_TabBarTabHSpace:
        return 20;
    case QStyle::PM_ScrollBarSliderMin:
        return 24;
    default:
        return {};
    }
}

std::optional<int> hintOf(QStyle::StyleHint hint, int animation) {
    switch (hint) {
    case QStyle::SH_Slider_AbsoluteSetButtons:
        return Qt::LeftButton;
    case QStyle::SH_Slider_PageSetButtons:
        return Qt::NoButton;
    case QStyle::SH_ComboBox_Popup:
    case QStyle::SH_EtchDisabledText:
    case QStyle::SH_DitherDisabledText:
    case QStyle::SH_ScrollBar_Transient:
        return 0;
    case QStyle::SH_SpinBox_StepModifier:
        return Qt::ShiftModifier;
    case QStyle::SH_Widget_Animation_Duration:
        return animation;
    default:
        return {};
    }
}

} // namespace Kestrel::UI::StyleMetrics
