// The entries of the editor's five list menus and the texts their closed menus show.
//
// An entry stands for one option of the parameter (or is a separator). Options without an entry of their
// own (a controller that cannot be offered, a target parameter that cannot be chosen) show the entry that
// means the same thing: the next controller, or "(not assigned)".
#pragma once

#include <string>
#include <vector>

namespace tolvane {

struct MenuTable {
    static constexpr int kSeparator = -1;

    int options = 0;              // N, the number of values of the parameter
    std::vector<int> option;      // by entry position: the option, or kSeparator
    std::vector<std::string> text;    // by entry position: what the open menu shows ("-" for a separator)
    std::vector<std::string> closed;  // by entry position: what the closed menu shows
    std::vector<int> entryOf;     // by option: the entry that shows it
    int itemsPerColumn = -1;      // -1: one column
    int align = 0;                // 0 left, 1 centre

    int entryCount() const { return static_cast<int>(option.size()); }
    // The entry for a parameter value (values outside 0..1 go to the nearest option).
    int entryFor(float value) const;
    // The value sent when an entry is chosen: (option + 0.5) / N.
    float valueOf(int entry) const;
};

namespace menus {
const MenuTable& modSource();    // "Assignable Mod 1-8 Source"
const MenuTable& sensSource();   // "Assignable Mod 1-8 Sens Assign"
const MenuTable& destination();  // "Assignable Mod 1-8 Destination"
const MenuTable& controller();   // "Controller Map 1-16: Control", with the learn entry
const MenuTable& target();       // "Controller Map 1-16: Parameter"
}  // namespace menus

}  // namespace tolvane
