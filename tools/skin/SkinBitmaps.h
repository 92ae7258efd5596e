// The 24 bitmaps of the editor's skin, resource ids 128 to 151, and what each one is called on disk.
#pragma once

#include <string>
#include <vector>

#include "editor/EditorSkin.h"
#include "gui/BmpImage.h"

namespace tolvane::skin {

struct SkinBitmap {
    int id;
    std::string name;  // the file is resources/<id>-<name>.bmp
    int width;
    int height;
    BmpImage (*draw)();
};

// All 24 bitmaps in id order.
const std::vector<SkinBitmap>& skinBitmaps();

// The knob film strips: 128 frames of kKnobSize x kKnobSize, frame i showing value i / 127.
inline constexpr int kKnobFrames = 128;

BmpImage drawMainKnobStrip();
BmpImage drawModKnobStrip();
BmpImage drawAboutImage();
BmpImage drawDigits();

// The page backgrounds (SkinPages.cpp).
BmpImage drawPage1Background();
BmpImage drawPage2Background();

// After the backgrounds are drawn: every text of a background whose ink would lie under a control of
// that page (where the control would hide it), one line per collision. Empty when the layout is clean.
std::vector<std::string> labelCollisions();

}  // namespace tolvane::skin
