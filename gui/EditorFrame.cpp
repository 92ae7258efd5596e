#include "gui/EditorFrame.h"

#include <algorithm>

#include "gui/BitmapResource.h"
#include "gui/Canvas.h"
#include "gui/EditorBase.h"
#include "gui/EditorHost.h"

namespace tolvane {
namespace {

// Keeps a view alive while one of its handlers runs (a handler may remove it from the frame).
class Hold {
public:
    explicit Hold(View* view) : view_(view) {
        if (view_) view_->addRef();
    }
    ~Hold() {
        if (view_) view_->release();
    }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;

private:
    View* view_;
};

}  // namespace

EditorFrame::EditorFrame(const Rect& size, void* parentWindow, EditorBase* editor)
    : View(size), editor_(editor), parentWindow_(parentWindow) {
    frame_ = this;
    if (Platform* platform = currentPlatform())
        window_ = platform->createWindow(parentWindow, size.width(), size.height(), *this);
}

EditorFrame::~EditorFrame() {
    if (window_) window_->setCursor(CursorKind::standard);
    modalView_ = nullptr;
    focusView_ = nullptr;
    removeAllViews(true);
    if (background_) background_->release();
    window_.reset();
}

// ---- drawing

void EditorFrame::draw(Canvas& canvas) {
    firstDrawPending_ = false;
    if (background_) background_->draw(canvas, Rect{0, 0, bounds_.width(), bounds_.height()}, Point{0, 0});
    for (std::size_t i = 0; i < children_.size(); ++i) children_[i]->draw(canvas);
    if (modalView_) modalView_->draw(canvas);
}

void EditorFrame::drawRect(Canvas& canvas, const Rect& area) {
    firstDrawPending_ = false;
    if (background_) background_->draw(canvas, area, Point{area.left, area.top});
    for (std::size_t i = 0; i < children_.size(); ++i)
        if (children_[i]->intersectsUpdate(area)) children_[i]->drawRect(canvas, area);
    if (modalView_ && modalView_->intersectsUpdate(area)) modalView_->drawRect(canvas, area);
}

void EditorFrame::redrawIfDirty(Canvas& canvas) {
    if (!open_) return;
    if (modalView_) {
        modalView_->redrawIfDirty(canvas);
    } else if (isDirty()) {
        draw(canvas);
        setDirty(false);
    } else {
        for (std::size_t i = 0; i < children_.size(); ++i) children_[i]->redrawIfDirty(canvas);
    }
}

void EditorFrame::idle() {
    if (!open_ || firstDrawPending_) return;
    bool anything = modalView_ || isDirty();
    for (std::size_t i = 0; i < children_.size() && !anything; ++i) anything = children_[i]->isDirty();
    if (!anything) return;
    withCanvas([this](Canvas& canvas) { redrawIfDirty(canvas); });
}

void EditorFrame::redrawView(View* view) {
    withCanvas([this, view](Canvas& canvas) {
        if (view != this && containsView(view))
            view->draw(canvas);
        else
            draw(canvas);
    });
}

void EditorFrame::setBackground(BitmapResource* background) {
    if (background) background->addRef();
    if (background_) background_->release();
    background_ = background;
}

// ---- children

bool EditorFrame::addView(View* view) {
    if (!view || view == this || containsView(view)) return false;
    children_.push_back(view);
    view->setFrame(this);
    return true;
}

bool EditorFrame::removeView(View* view, bool releaseView) {
    auto found = std::find(children_.begin(), children_.end(), view);
    if (found == children_.end()) return false;
    children_.erase(found);
    if (modalView_ == view) modalView_ = nullptr;
    if (focusView_ == view) focusView_ = nullptr;
    view->setFrame(nullptr);
    if (releaseView) view->release();
    return true;
}

bool EditorFrame::removeAllViews(bool releaseViews) {
    while (!children_.empty()) removeView(children_.back(), releaseViews);
    return true;
}

bool EditorFrame::containsView(View* view) const {
    return std::find(children_.begin(), children_.end(), view) != children_.end();
}

std::int32_t EditorFrame::getViewCount() const { return static_cast<std::int32_t>(children_.size()); }

View* EditorFrame::getViewAt(std::int32_t index) const {
    if (index < 0 || index >= getViewCount()) return nullptr;
    return children_[static_cast<std::size_t>(index)];
}

View* EditorFrame::lastChildAt(Point where, bool mouseEnabledOnly) const {
    for (std::size_t i = children_.size(); i-- > 0;) {
        View* child = children_[i];
        if (mouseEnabledOnly && !child->isMouseEnabled()) continue;
        if (child->hitTest(where)) return child;
    }
    return nullptr;
}

// ---- modal and focus views

bool EditorFrame::setModalView(View* view) {
    if (view && modalView_) return false;
    View* old = modalView_;
    modalView_ = view;
    if (old) old->onRemoved(this);
    if (view) view->onAdded(this);
    return true;
}

void EditorFrame::setFocusView(View* view) {
    if (view == focusView_) return;
    View* old = focusView_;
    focusView_ = view;
    if (old) old->loseFocus(nullptr);
}

// ---- input

void EditorFrame::onMouseDown(Canvas& canvas, Point where) {
    // A press ends any text editing first.
    if (focusView_) setFocusView(nullptr);
    View* target = nullptr;
    if (modalView_)
        target = modalView_->hitTest(where) ? modalView_ : nullptr;
    else
        target = lastChildAt(where, true);
    if (!target) return;
    Hold hold(target);
    target->onMouseDown(canvas, where);
}

std::int32_t EditorFrame::onKeyDown(const KeyCode& key) {
    if (focusView_) {
        Hold hold(focusView_);
        std::int32_t result = focusView_->onKeyDown(key);
        if (result != -1) return result;
    }
    if (modalView_) {
        Hold hold(modalView_);
        std::int32_t result = modalView_->onKeyDown(key);
        if (result != -1) return result;
    }
    for (std::size_t i = children_.size(); i-- > 0;) {
        if (i >= children_.size()) continue;
        View* child = children_[i];
        Hold hold(child);
        std::int32_t result = child->onKeyDown(key);
        if (result != -1) return result;
    }
    return -1;
}

std::int32_t EditorFrame::onKeyUp(const KeyCode& key) {
    if (focusView_) {
        std::int32_t result = focusView_->onKeyUp(key);
        if (result != -1) return result;
    }
    if (modalView_) {
        std::int32_t result = modalView_->onKeyUp(key);
        if (result != -1) return result;
    }
    for (std::size_t i = children_.size(); i-- > 0;) {
        if (i >= children_.size()) continue;
        std::int32_t result = children_[i]->onKeyUp(key);
        if (result != -1) return result;
    }
    return -1;
}

// A wheel step goes to the modal view while one is shown, else to the view under the pointer (the given
// point when it came with a canvas, the live pointer otherwise), else to the focus view.
bool EditorFrame::onWheel(Canvas* canvas, Point where, float distance) {
    View* target = modalView_;
    if (!target) target = canvas ? lastChildAt(where, true) : nullptr;
    if (!target && !canvas) {
        View* under = viewUnderMouse();
        if (under && under->isMouseEnabled()) target = under;
    }
    if (!target) target = focusView_;
    if (!target) return false;
    Hold hold(target);
    return target->onWheel(canvas, where, distance);
}

bool EditorFrame::onFilesDropped(const char* const* items, std::int32_t count, std::int32_t kind, Point where) {
    if (modalView_ || focusView_) return false;
    View* target = lastChildAt(where, true);
    if (!target) return false;
    Hold hold(target);
    return target->onFilesDropped(items, count, kind, where);
}

View* EditorFrame::viewUnderMouse() {
    Point where;
    getMousePosition(where);
    return lastChildAt(where, false);
}

void EditorFrame::getMousePosition(Point& where) {
    where = window_ && open_ ? window_->mousePosition() : Point{};
}

int EditorFrame::getMouseButtons() { return window_ && open_ ? window_->mouseButtons() : 0; }

void EditorFrame::setCursor(CursorKind kind) {
    if (window_ && open_) window_->setCursor(kind);
}

void EditorFrame::pumpEvents() {
    if (window_ && open_) window_->processEvents();
}

void EditorFrame::paintOnePending() {
    if (window_ && open_) window_->dispatchOnePaint();
}

void EditorFrame::beginEdit(std::int32_t tag) {
    if (editor_ && editor_->getHost()) editor_->getHost()->beginEdit(tag);
}

void EditorFrame::endEdit(std::int32_t tag) {
    if (editor_ && editor_->getHost()) editor_->getHost()->endEdit(tag);
}

std::uint32_t EditorFrame::ticks() const {
    Platform* platform = currentPlatform();
    return editor_ && platform ? platform->tickCount() : 0;
}

// ---- window events

void EditorFrame::windowPaint(GraphicsContext& context, const Rect& area) {
    Canvas canvas(this, &context);
    drawRect(canvas, area);
}

void EditorFrame::windowMouseDown(Point where) {
    addRef();  // the editor may close from inside a handler
    withCanvas([this, where](Canvas& canvas) { onMouseDown(canvas, where); });
    release();
}

// Keys typed into the window follow the same road as keys that come from the host: through the editor,
// which decides which view may have them.
int EditorFrame::windowKeyDown(const KeyCode& key) { return editor_ ? editor_->onKeyDown(key) : onKeyDown(key); }

int EditorFrame::windowKeyUp(const KeyCode& key) { return editor_ ? editor_->onKeyUp(key) : onKeyUp(key); }

void EditorFrame::windowWheel(Point where, float distance) {
    withCanvas([this, where, distance](Canvas& canvas) { onWheel(&canvas, where, distance); });
}

void EditorFrame::windowFilesDropped(const std::vector<std::string>& items, int kind, Point where) {
    if (kind == 1) {
        const char* text = items.empty() ? "" : items[0].c_str();
        onFilesDropped(&text, static_cast<std::int32_t>(items.empty() ? 0 : items[0].size()), 1, where);
        return;
    }
    std::vector<const char*> names;
    for (const std::string& item : items) names.push_back(item.c_str());
    onFilesDropped(names.data(), static_cast<std::int32_t>(names.size()), 0, where);
}

void EditorFrame::windowDestroyed() {
    open_ = false;
    parentWindow_ = nullptr;
}

}  // namespace tolvane
