// A text display that opens a popup menu of its entries when pressed; the chosen entry becomes current.
//
// Entry texts with a meaning: "-" alone is a separator; "-M" starts a submenu entry, "-T" a title (shown
// disabled), "-G" a greyed entry; the text after the two-character prefix is what is shown.
#pragma once

#include <string>
#include <vector>

#include "gui/Platform.h"
#include "gui/TextDisplay.h"

namespace tolvane {

// Draws owner-drawn menu items. No menu of this toolkit's users sets one, so menus are never owner-drawn.
class MenuItemDrawer;

class PopupMenuControl : public TextDisplay {
public:
    static constexpr int kMaxEntries = 1024;
    static constexpr int kMaxEntryLength = 255;
    // Menus of this many entries or more get no column breaks.
    static constexpr int kColumnBreakLimit = 160;

    PopupMenuControl(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* background,
                     BitmapResource* pressedBackground, std::int32_t style);

    void draw(Canvas& canvas) override;
    void onMouseDown(Canvas& canvas, Point where) override;
    void loseFocus(Canvas* canvas) override;
    void takeFocus(Canvas* canvas) override;
    // The truncated value must be a valid index; it becomes the current entry.
    void setValue(float value) override;

    // index -1 (or past the end) appends.
    virtual bool addEntry(const char* text, std::int32_t index = -1);
    // countAll false: indices leave out separators and titles.
    virtual std::int32_t getCurrent(char* buffer = nullptr, bool countAll = false) const;
    virtual bool setCurrent(std::int32_t index, bool countAll = false);
    virtual bool removeEntry(std::int32_t index);
    virtual void removeAllEntries();
    virtual std::int32_t getEntryCount() const;
    virtual void setItemsPerColumn(std::int32_t count);
    virtual std::int32_t getItemsPerColumn() const;

    // The entry chosen at the last opening (index within this menu), or -1.
    std::int32_t getLastResult() const { return lastResult_; }
    // The entries as the platform gets them, ids assigned in order: this menu's entries first, then each
    // submenu's. owners receives, for id k, the menu and index at owners[k - 1].
    struct Owner {
        PopupMenuControl* menu;
        std::int32_t index;
    };
    std::vector<MenuItem> buildMenu(std::vector<Owner>& owners);

protected:
    ~PopupMenuControl() override;

private:
    struct Entry {
        std::string text;
        bool checked = false;
        PopupMenuControl* submenu = nullptr;
    };

    static bool isSeparator(const std::string& text) { return text == "-"; }
    static bool hasPrefix(const std::string& text, char kind) {
        return text.size() >= 2 && text[0] == '-' && text[1] == kind;
    }
    // Separators and titles cannot be current.
    static bool isSelectable(const std::string& text) { return !isSeparator(text) && !hasPrefix(text, 'T'); }
    static std::string shownText(const std::string& text);
    std::vector<MenuItem> build(std::int32_t& nextId, std::vector<Owner>& owners);
    bool validIndex(std::int32_t index) const { return index >= 0 && index < getEntryCount(); }

    std::vector<Entry> entries_;
    std::int32_t current_ = -1;
    int lastButtons_ = kRightButton;
    std::int32_t itemsPerColumn_ = -1;
    std::int32_t lastResult_ = -1;
    BitmapResource* pressedBackground_ = nullptr;
};

}  // namespace tolvane
