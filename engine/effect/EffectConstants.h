// Named constants of the stereo effect's units.
#pragma once

namespace tolvane::effect {

// Below this magnitude a gain or a level counts as silent.
constexpr float kSilence = 0.00001f;
// Added to the dry signal so that the recursive filters and the feedback never reach denormal numbers.
constexpr float kInputOffset = 0.00001f;

// Sample loops without recursion run in groups of this many samples; block sizes are multiples of it.
constexpr int kGroup = 16;

// Delay lines: the longest and the shortest delay, and the rate their buffers are sized for up front.
constexpr double kMaxDelaySeconds = 2.0;
constexpr double kMinDelaySamples = 3.0;
constexpr float kPreallocatedSampleRate = 192000.0f;

// Diffusion spreads the two delay times by +-d T with d = kSpreadPerDiffusion x diffusion.
constexpr float kSpreadPerDiffusion = 0.5f;
// Modulation amplitude law: A = kDepthSpeedLaw x depth / speed seconds, so that the largest slope of the
// delay time, 2 pi speed A = 4 x 0.0144245 x depth, depends on the depth only.
constexpr float kDepthSpeedLaw = 0.0144245f * 0.63661977f;  // 0.0144245 x 2/pi
constexpr float kSmoothingSeconds = 0.1f;

// Overdrive: the drive factor never goes below this.
constexpr float kMinDrive = 0.01f;

// Cut filters: lowest corner in Hz and highest corner as a fraction of the sample rate.
constexpr float kMinCutHz = 1.0f;
constexpr float kMaxCutFraction = 0.49f;

// Output limiter: linear up to the knee, then approaching the level with equal slope.
constexpr float kLimitLevel = 4.0f;
constexpr float kLimitKnee = 3.6f;

}  // namespace tolvane::effect
