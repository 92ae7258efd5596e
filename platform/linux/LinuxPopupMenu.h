// Popup menus on X11, drawn by us in the editor's menu look (Arial 11 px, amber on dark brown, black
// frame): override-redirect windows with a pointer and keyboard grab and an event loop of their own that
// runs until an item is chosen or the menu is dismissed. Submenus open beside their entry; column breaks
// start new columns.
#pragma once

#include <X11/Xlib.h>
#include <cairo.h>

#include <memory>
#include <vector>

#include "gui/Platform.h"

namespace tolvane {

class LinuxWindow;

class LinuxPopupMenu {
public:
    explicit LinuxPopupMenu(LinuxWindow& owner);
    ~LinuxPopupMenu();
    LinuxPopupMenu(const LinuxPopupMenu&) = delete;
    LinuxPopupMenu& operator=(const LinuxPopupMenu&) = delete;

    // Shows the menu with its top-left corner at `where` (window coordinates); the chosen id, or -1.
    int run(const std::vector<MenuItem>& items, Point where, bool rightButton);

private:
    struct Slot {
        Rect area;  // in the level's window
        int column = 0;
    };
    struct Level {
        const std::vector<MenuItem>* items = nullptr;
        std::vector<Slot> slots;
        Window window = 0;
        cairo_surface_t* surface = nullptr;
        Rect screen;  // the window's rectangle on the root window
        int highlighted = -1;
        std::vector<int> columnEdges;  // x of each column boundary, for the dividing lines
    };

    // Opens a level at a root position; one too wide opens left of alternateRootX instead, one too tall ends
    // at alternateBottom instead (when that is not negative and it fits there), else it is pushed onto the
    // screen and, when keepClear is given, beside that point rather than over it.
    void openLevel(const std::vector<MenuItem>& items, int rootX, int rootY, int alternateRootX, int alternateBottom,
                   const Point* keepClear);
    void closeLevelsFrom(std::size_t index);
    void draw(Level& level);
    void layout(Level& level);
    // Which level and entry lie under a root position; level -1 when none.
    void hit(int rootX, int rootY, int& level, int& entry) const;
    bool selectable(const MenuItem& item) const;
    void highlight(std::size_t level, int entry);
    void moveHighlight(int direction);
    bool grab();

    LinuxWindow& owner_;
    Display* display_;
    std::vector<std::unique_ptr<Level>> levels_;
    int result_ = -1;
    bool done_ = false;
};

}  // namespace tolvane
