// A knob drawn as one frame of a vertical film strip, chosen by the value.
#pragma once

#include "gui/RotaryKnob.h"

namespace tolvane {

class FilmStripKnob : public RotaryKnob {
public:
    FilmStripKnob(const Rect& bounds, ControlListener* listener, std::int32_t tag, std::int32_t frameCount,
                  std::int32_t frameHeight, BitmapResource* bitmap, Point offset);

    void draw(Canvas& canvas) override;

private:
    std::int32_t frameCount_;
    std::int32_t frameHeight_;
    bool inverse_ = false;
};

}  // namespace tolvane
