// The editor's surface: its size, the bitmaps of the skin by resource id, and the look of every control
// that shows text (menus, the program name and the status lines).
#pragma once

#include "gui/Geometry.h"

namespace tolvane {

constexpr int kEditorWidth = 718;
constexpr int kEditorHeight = 310;

namespace skin {

enum Bitmap : int {
    kPage1Background = 128,
    kPage2Background = 129,
    kAboutImage = 130,
    kKnobStrip = 131,
    kModKnobStrip = 132,
    kDigits = 133,              // 0-9 stacked, 10 x 13 each
    kStepSwitch = 134,          // three 18 x 9 images: left pressed, released, right pressed
    kProgramStepSwitches = 135, // the same, in two columns (step down, step up)
    kOnOffSwitch = 136,
    kPageTabsAndFile = 137,
    kBankButtons = 138,
    kProgramCommands = 139,
    kUnisonLegato = 140,
    kWaveforms = 141,
    kQuality = 142,
    kSync = 143,
    kFilterTypes = 144,
    kFilterSlopes = 145,
    kSaturationCurves = 146,
    kEnvelopeCurves = 147,
    kLfoModes = 148,
    kFeedbackRouting = 149,
    kModSources = 150,
    kModTargets = 151,
};

constexpr int kFirstBitmap = kPage1Background;
constexpr int kBitmapCount = 24;

constexpr int kKnobSize = 22;       // knobs are 22 x 22 frames of a vertical strip
constexpr int kDigitWidth = 10;
constexpr int kDigitHeight = 13;
constexpr int kStepSwitchWidth = 18;
constexpr int kStepSwitchHeight = 9;

// Text in the editor's displays: Arial 11 px, amber on dark brown, black outline.
constexpr int kTextFont = 4;
constexpr Color kTextColour{229, 176, 52, 0};
constexpr Color kTextBackColour{51, 34, 0, 0};
constexpr Color kTextFrameColour{0, 0, 0, 0};

}  // namespace skin

// x, y, width, height to a rectangle.
constexpr Rect area(int x, int y, int width, int height) { return Rect{x, y, x + width, y + height}; }

}  // namespace tolvane
