// A page of widgets: the ones of one editor page (with its background), or the common strip (without).
// While the page is shown its widgets have their controls on the frame.
#pragma once

#include <memory>
#include <vector>

#include "editor/ParamWidget.h"

namespace tolvane {

class BitmapResource;
class EditorFrame;

class WidgetPage {
public:
    explicit WidgetPage(BitmapResource* background = nullptr) : background_(background) {}
    ~WidgetPage() { hide(); }
    WidgetPage(const WidgetPage&) = delete;
    WidgetPage& operator=(const WidgetPage&) = delete;

    // Takes the widget; it attaches at once while the page is shown.
    template <typename W>
    W* add(std::unique_ptr<W> widget);
    void show(EditorFrame& frame);
    void hide();

    BitmapResource* background() const { return background_; }
    int size() const { return static_cast<int>(widgets_.size()); }
    ParamWidget* at(int position) const {
        return position >= 0 && position < size() ? widgets_[static_cast<std::size_t>(position)].get() : nullptr;
    }

private:
    BitmapResource* background_;
    std::vector<std::unique_ptr<ParamWidget>> widgets_;
    EditorFrame* frame_ = nullptr;
};

template <typename W>
W* WidgetPage::add(std::unique_ptr<W> widget) {
    W* added = widget.get();
    widgets_.push_back(std::move(widget));
    if (frame_) added->attach(*frame_);
    return added;
}

}  // namespace tolvane
