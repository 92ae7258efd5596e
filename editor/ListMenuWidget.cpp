#include "editor/ListMenuWidget.h"

#include "editor/EditorSkin.h"
#include "editor/MenuTables.h"

namespace tolvane {

ListMenuControl::ListMenuControl(const Rect& bounds, ListMenuWidget& owner, std::int32_t tag)
    : PopupMenuControl(bounds, &owner, tag, nullptr, nullptr, kCheckCurrentStyle), owner_(owner) {}

void ListMenuControl::draw(Canvas& canvas) {
    drawText(canvas, owner_.closedText());
    setDirty(false);
}

void ListMenuControl::takeFocus(Canvas* canvas) {
    owner_.fill(*this);
    PopupMenuControl::takeFocus(canvas);
    removeAllEntries();
    setDirty(true);
}

ListMenuWidget::ListMenuWidget(SynthEditor& editor, int index, const MenuTable& table, const Rect& area)
    : ParamWidget(editor, index), table_(table), area_(area), entry_(table.entryFor(value_)) {}

const char* ListMenuWidget::closedText() const { return table_.closed[static_cast<std::size_t>(entry_)].c_str(); }

void ListMenuWidget::attach(EditorFrame& frame) {
    ParamWidget::attach(frame);
    auto* menu = new ListMenuControl(area_, *this, index_);
    applyTextLook(*menu, table_.align);
    menu->setItemsPerColumn(table_.itemsPerColumn);
    menu_ = addControl(menu);
}

void ListMenuWidget::detach() {
    removeControl(menu_);
    ParamWidget::detach();
}

void ListMenuWidget::setValue(float value) {
    value_ = value;
    const int entry = table_.entryFor(value);
    if (entry == entry_) return;
    entry_ = entry;
    if (menu_) menu_->setDirty(true);
}

void ListMenuWidget::fill(ListMenuControl& menu) {
    for (const std::string& text : table_.text) menu.addEntry(text.c_str());
    menu.setCurrent(entry_, true);
    send(value_);
}

void ListMenuWidget::valueChanged(Canvas*, Control* control) {
    if (control != menu_) return;
    const int entry = static_cast<int>(menu_->getValue());
    if (entry < 0 || entry >= table_.entryCount() || table_.option[static_cast<std::size_t>(entry)] < 0) return;
    entry_ = entry;
    send(table_.valueOf(entry));
    menu_->setDirty(true);
}

}  // namespace tolvane
