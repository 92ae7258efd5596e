// A delay line of up to two seconds with a read head that glides when the delay changes.
//
// The buffer holds N = (ceil(2 sr / B) + 2) B samples and is used as a ring of N - B samples whose first
// block mirrors its last: every write that ends at N is copied to the start as well, so the three-point
// read below never has to wrap. Each block writes B input samples and then reads B samples along a
// straight path from where the previous block stopped to the position that lies D samples behind the
// new write position. When D is constant the head moves one sample per sample; when D shrinks it moves
// faster and when D grows it slows down (down to standing still), so a delay change bends the pitch
// instead of jumping. Reads use the quadratic B-spline
//   y = 0.5 ((1 - f)^2 b[i] + (2f - 2f^2 + 1) b[i+1] + f^2 b[i+2]),   i = trunc(p), f = p - i,
// which is smooth in p and reproduces a straight line exactly (delayed by D - 0.5 samples).
//
// A block tick that does not follow the last processed one (the line was not pulled in between), a
// reset and clear() empty the buffer and forget the previous delay, so a line that comes back starts
// silent. The buffer is sized when the sample rate or block size changes, never while rendering; its
// capacity covers 192 kHz from the start, so common rate changes do not allocate.
#pragma once

#include <vector>

#include "engine/framework/DspModule.h"

namespace tolvane {

class DelayLine : public DspModule {
public:
    enum Input { kSignal, kSeconds };

    explicit DelayLine(ModuleGraph& graph);

    void updateBlock(int tick) override;
    void compute() override;
    void onReset() override { clear(); }
    void sampleRateChanged() override { resize(); }
    void blockSizeChanged() override { resize(); }

    // Buffer to zero, previous delay unset.
    void clear();

    int bufferLength() const { return static_cast<int>(buffer_.size()); }

private:
    void resize();

    std::vector<float> buffer_;
    int writePosition_ = 0;
    double readPosition_ = 0.0;
    double previousDelay_ = -1.0;
    double maxDelay_ = 0.0;
    bool dirty_ = false;  // something was written since the last clear
};

}  // namespace tolvane
