// The editor's controls as the skin draws them, taken from the editor's layout table: the backgrounds
// frame and label the controls at these places, and the preview draws each control here in a plausible state.
#pragma once

#include <string>
#include <vector>

#include "editor/EditorSkin.h"

namespace tolvane::skin {

enum class ControlKind {
    Knob,        // a 22 x 22 frame of a knob strip
    Button,      // one column of a two-row button bitmap
    Digits,      // digit images of 10 x 13 side by side
    StepSwitch,  // one column of a three-state 18 x 9 switch
    TextArea,    // drawn by the toolkit: a menu, text field or status line in the common text look
};

struct Placement {
    ControlKind kind;
    int x;
    int y;
    int width;
    int height;
    int bitmap = 0;      // resource id, 0 for text areas
    int column = 0;      // image column (x offset) in the bitmap
    double state = 0.0;  // preview: knob value, 1 for a lit button, the number shown by digits
    std::string text;    // preview: text of a text area
};

std::vector<Placement> page1Controls();
std::vector<Placement> page2Controls();
std::vector<Placement> stripControls();  // the common strip and fixed controls, on both pages

}  // namespace tolvane::skin
