#include "gui/PopupMenuControl.h"

#include <cstring>

#include "gui/BitmapResource.h"
#include "gui/EditorFrame.h"

namespace tolvane {

PopupMenuControl::PopupMenuControl(const Rect& bounds, ControlListener* listener, std::int32_t tag,
                                   BitmapResource* background, BitmapResource* pressedBackground, std::int32_t style)
    : TextDisplay(bounds, listener, tag, background, style), pressedBackground_(pressedBackground) {
    if (pressedBackground_) pressedBackground_->addRef();
}

PopupMenuControl::~PopupMenuControl() {
    removeAllEntries();
    if (pressedBackground_) pressedBackground_->release();
}

std::string PopupMenuControl::shownText(const std::string& text) {
    if (hasPrefix(text, 'M') || hasPrefix(text, 'T') || hasPrefix(text, 'G')) return text.substr(2);
    return text;
}

// ---- entries

bool PopupMenuControl::addEntry(const char* text, std::int32_t index) {
    if (getEntryCount() >= kMaxEntries) return false;
    Entry entry;
    entry.text = text ? text : "";
    if (entry.text.size() > static_cast<std::size_t>(kMaxEntryLength)) entry.text.resize(kMaxEntryLength);
    if (index < 0 || index >= getEntryCount()) {
        entries_.push_back(entry);
    } else {
        entries_.insert(entries_.begin() + index, entry);
        if (current_ >= 0 && index <= current_) ++current_;
    }
    if (current_ < 0) current_ = 0;
    return true;
}

std::int32_t PopupMenuControl::getCurrent(char* buffer, bool countAll) const {
    if (!validIndex(current_)) {
        if (buffer) buffer[0] = '\0';
        return -1;
    }
    if (buffer) std::strcpy(buffer, entries_[current_].text.c_str());
    if (countAll) return current_;
    std::int32_t counted = 0;
    for (std::int32_t i = 0; i < current_; ++i)
        if (isSelectable(entries_[i].text)) ++counted;
    return counted;
}

bool PopupMenuControl::setCurrent(std::int32_t index, bool countAll) {
    std::int32_t raw = -1;
    if (countAll) {
        if (!validIndex(index) || !isSelectable(entries_[index].text)) return false;
        raw = index;
    } else {
        std::int32_t counted = 0;
        for (std::int32_t i = 0; i < getEntryCount() && raw < 0; ++i) {
            if (!isSelectable(entries_[i].text)) continue;
            if (counted == index) raw = i;
            ++counted;
        }
        if (raw < 0) return false;
    }
    current_ = raw;
    value_ = static_cast<float>(raw);
    setDirty(true);
    return true;
}

bool PopupMenuControl::removeEntry(std::int32_t index) {
    if (!validIndex(index)) return false;
    if (entries_[index].submenu) entries_[index].submenu->release();
    entries_.erase(entries_.begin() + index);
    if (index < current_) --current_;
    if (current_ >= getEntryCount()) current_ = getEntryCount() - 1;
    return true;
}

void PopupMenuControl::removeAllEntries() {
    for (Entry& entry : entries_)
        if (entry.submenu) entry.submenu->release();
    entries_.clear();
    current_ = -1;
}

std::int32_t PopupMenuControl::getEntryCount() const { return static_cast<std::int32_t>(entries_.size()); }

void PopupMenuControl::setItemsPerColumn(std::int32_t count) { itemsPerColumn_ = count; }
std::int32_t PopupMenuControl::getItemsPerColumn() const { return itemsPerColumn_; }

void PopupMenuControl::setValue(float value) {
    std::int32_t index = static_cast<std::int32_t>(value);
    if (!validIndex(index)) return;
    current_ = index;
    if (style_ & kMultipleCheckStyle) entries_[index].checked = !entries_[index].checked;
    value_ = value;
    setDirty(true);
}

// ---- drawing and opening

void PopupMenuControl::draw(Canvas& canvas) {
    std::string text = validIndex(current_) ? shownText(entries_[current_].text) : std::string();
    drawText(canvas, text.c_str());
    setDirty(false);
}

void PopupMenuControl::onMouseDown(Canvas& canvas, Point) {
    if (!isMouseEnabled() || !frame_) return;
    lastButtons_ = canvas.getMouseButtons();
    if (!(lastButtons_ & (kLeftButton | kRightButton))) return;
    if (pressedBackground_) {
        BitmapResource* normal = background_;
        background_ = pressedBackground_;
        draw(canvas);
        background_ = normal;
    }
    frame_->setFocusView(this);
    takeFocus(&canvas);
}

void PopupMenuControl::loseFocus(Canvas*) {}

std::vector<MenuItem> PopupMenuControl::buildMenu(std::vector<Owner>& owners) {
    owners.clear();
    std::int32_t nextId = 1;
    return build(nextId, owners);
}

// This menu's ids are reserved before any submenu is built, so a submenu's ids follow all of its parent's.
std::vector<MenuItem> PopupMenuControl::build(std::int32_t& nextId, std::vector<Owner>& owners) {
    const std::int32_t first = nextId;
    const std::int32_t count = getEntryCount();
    nextId += count;
    if (owners.size() < static_cast<std::size_t>(nextId - 1)) owners.resize(static_cast<std::size_t>(nextId - 1));
    const bool columns = itemsPerColumn_ > 0 && count < kColumnBreakLimit;

    std::vector<MenuItem> items(static_cast<std::size_t>(count));
    for (std::int32_t i = 0; i < count; ++i) {
        const Entry& entry = entries_[i];
        MenuItem& item = items[static_cast<std::size_t>(i)];
        item.id = first + i;
        owners[static_cast<std::size_t>(item.id - 1)] = Owner{this, i};
        if (isSeparator(entry.text)) {
            item.separator = true;
            continue;
        }
        item.text = shownText(entry.text);
        item.columnBreak = columns && i > 0 && i % itemsPerColumn_ == 0;
        if (hasPrefix(entry.text, 'M')) {
            item.hasSubmenu = true;
            if (entry.submenu) item.submenu = entry.submenu->build(nextId, owners);
        } else if (hasPrefix(entry.text, 'G')) {
            item.grayed = true;
        } else if (hasPrefix(entry.text, 'T')) {
            item.disabled = true;
        } else if (style_ & kMultipleCheckStyle) {
            item.checked = entry.checked;
        } else if (style_ & kCheckCurrentStyle) {
            item.checked = i == current_;
        }
    }
    return items;
}

void PopupMenuControl::takeFocus(Canvas* canvas) {
    NativeWindow* window = frame_ ? frame_->getNativeWindow() : nullptr;
    std::vector<Owner> owners;
    std::vector<MenuItem> items = buildMenu(owners);
    Point offset = canvas ? canvas->getOffset() : Point{};
    Point where{bounds_.left + offset.h, ((style_ & kPopupAtTopStyle) ? bounds_.top : bounds_.bottom) + offset.v};
    int chosen = window ? window->runPopupMenu(items, where, (lastButtons_ & kRightButton) != 0) : -1;
    if (frame_ && frame_->getFocusView() == this) frame_->setFocusView(nullptr);

    lastResult_ = -1;
    if (chosen > 0 && static_cast<std::size_t>(chosen) <= owners.size()) {
        Owner owner = owners[static_cast<std::size_t>(chosen - 1)];
        // The owner is this menu or one of its submenus, all of which this menu holds references to.
        owner.menu->lastResult_ = owner.index;
        owner.menu->setValue(static_cast<float>(owner.index));
        owner.menu->reportChange(canvas);
    }
    idleWhileTracking();
    setDirty(false);
}

}  // namespace tolvane
