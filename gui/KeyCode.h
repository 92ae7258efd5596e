// A key as the host reports it: character, virtual key and modifier bits (the layout of the host's key record).
#pragma once

#include <cstdint>

namespace tolvane {

struct KeyCode {
    std::int32_t character = 0;
    unsigned char virt = 0;
    unsigned char modifier = 0;
};

// Virtual keys the toolkit reacts to (others exist and pass through unhandled).
enum VirtualKey : unsigned char {
    kVirtualKeyBack = 1,
    kVirtualKeyTab = 2,
    kVirtualKeyReturn = 4,
    kVirtualKeyEscape = 6,
    kVirtualKeyEnd = 9,
    kVirtualKeyHome = 10,
    kVirtualKeyLeft = 11,
    kVirtualKeyUp = 12,
    kVirtualKeyRight = 13,
    kVirtualKeyDown = 14,
    kVirtualKeyDelete = 22,
    kVirtualKeyEnter = 19,
};

enum KeyModifier : unsigned char {
    kKeyModifierShift = 1,
    kKeyModifierAlternate = 2,
    kKeyModifierCommand = 4,
    kKeyModifierControl = 8,
};

// Mouse button and modifier bits as the drag loops read them.
enum MouseButtons : int {
    kLeftButton = 1,
    kMiddleButton = 2,
    kRightButton = 4,
    kShiftKey = 8,
    kControlKey = 16,
    kAltKey = 32,
};

}  // namespace tolvane
