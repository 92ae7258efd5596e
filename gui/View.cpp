#include "gui/View.h"

#include "gui/EditorFrame.h"

namespace tolvane {

View::View(const Rect& bounds) : bounds_(bounds), mouseArea_(bounds) {}

View::~View() = default;

void View::draw(Canvas&) {}

void View::drawRect(Canvas& canvas, const Rect&) { draw(canvas); }

bool View::intersectsUpdate(const Rect& area) const { return bounds_.overlaps(area); }

void View::onMouseDown(Canvas&, Point) {}

void View::redrawIfDirty(Canvas& canvas) {
    if (!isDirty()) return;
    draw(canvas);
    setDirty(false);
}

void View::notify(View*, const char*) {}

std::int32_t View::onKeyDown(const KeyCode&) { return -1; }

std::int32_t View::onKeyUp(const KeyCode&) { return -1; }

bool View::onFilesDropped(const char* const*, std::int32_t, std::int32_t, Point) { return false; }

bool View::onWheel(Canvas*, Point, float) { return false; }

void View::loseFocus(Canvas*) {}

void View::takeFocus(Canvas*) {}

bool View::isDirty() const { return dirty_; }

void View::setDirty(bool dirty) { dirty_ = dirty; }

void View::setMouseEnabled(bool enabled) { mouseEnabled_ = enabled; }

bool View::isMouseEnabled() const { return mouseEnabled_; }

// The mouse area is kept for views that want it; hits are decided by the bounds alone.
bool View::hitTest(Point where) const { return bounds_.contains(where); }

void View::setBounds(const Rect& bounds) {
    bounds_ = bounds;
    setDirty(true);
}

void View::setFrame(EditorFrame* frame) { frame_ = frame; }

void View::setParentView(View* parent) { parentView_ = parent; }

bool View::onRemoved(View*) { return true; }

bool View::onAdded(View*) { return true; }

void View::release() { ReferenceCounted::release(); }

void View::addRef() { ReferenceCounted::addRef(); }

std::int32_t View::getRefCount() const { return ReferenceCounted::getRefCount(); }

}  // namespace tolvane
