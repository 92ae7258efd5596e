#include "editor/WidgetPage.h"

namespace tolvane {

void WidgetPage::show(EditorFrame& frame) {
    if (frame_) return;
    frame_ = &frame;
    for (auto& widget : widgets_) widget->attach(frame);
}

void WidgetPage::hide() {
    if (!frame_) return;
    for (auto& widget : widgets_) widget->detach();
    frame_ = nullptr;
}

}  // namespace tolvane
