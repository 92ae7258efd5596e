// "Filter Type": sixteen codes shown as a filter type (four buttons: lowpass, highpass, band pass, band
// reject) and a slope (four buttons whose pictures follow the type). Code c gives type c div 4 and slope
// c mod 4. Lowpass and highpass light one slope button; band pass and band reject have only two slopes,
// so their slope buttons light in pairs (0 and 1, 2 and 3).
#pragma once

#include "editor/ButtonRow.h"
#include "editor/ParamWidget.h"

namespace tolvane {

class FilterTypeWidget : public ParamWidget {
public:
    static constexpr int kCodes = 16;

    // types and slopes: the two runs of buttons of the layout table.
    FilterTypeWidget(SynthEditor& editor, int index, const layout::Control& types, const layout::Control& slopes);

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;
    void setValue(float value) override;

    int code() const { return 4 * type_ + slope_; }
    const ButtonRow& types() const { return types_; }
    const ButtonRow& slopes() const { return slopes_; }

private:
    static constexpr std::int32_t kSlopeTag = 0x10000;
    static bool paired(int type) { return type >= 2; }
    void show();

    ButtonRow types_;
    ButtonRow slopes_;
    int slopeColumns_;  // the width of a slope picture in the bitmap
    int type_ = 0;
    int slope_ = 0;
};

}  // namespace tolvane
