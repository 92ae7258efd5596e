#include "gui/EditorBase.h"

#include "gui/EditorFrame.h"
#include "gui/EditorHost.h"
#include "gui/Platform.h"

namespace tolvane {
namespace {

std::int32_t knobMode = kCircularKnobMode;

constexpr std::int32_t kPumpInterval = 100;       // ms between two runs of the idle pump
constexpr std::int32_t kPumpNearEnough = 50;      // a run this close to its time goes ahead early
constexpr int kPumpSleep = 4;                     // ms slept by a call that comes too early

std::uint32_t now() {
    Platform* platform = currentPlatform();
    return platform ? platform->tickCount() : 0;
}

}  // namespace

EditorBase::EditorBase(EditorHost* host) : host_(host), nextIdleTime_(now()) {
    if (host_) host_->registerEditor(this);
}

EditorBase::~EditorBase() { destroyFrame(); }

std::int32_t EditorBase::getRect(EditorRect** rect) {
    if (rect) *rect = &rect_;
    return 1;
}

std::int32_t EditorBase::open(void* parentWindow) {
    postUpdate();
    parentWindow_ = parentWindow;
    return 0;
}

void EditorBase::close() {
    destroyFrame();
    parentWindow_ = nullptr;
}

void EditorBase::destroyFrame() {
    if (!frame_) return;
    EditorFrame* frame = frame_;
    frame_ = nullptr;
    frame->release();
}

void EditorBase::idle() {
    if (insideIdle_) return;
    if (frame_) frame_->pumpEvents();
    if (updatePending_) {
        updatePending_ = false;
        update();
    }
    if (frame_) frame_->idle();
}

void EditorBase::update() {}

void EditorBase::postUpdate() { updatePending_ = true; }

std::int32_t EditorBase::onKeyDown(const KeyCode& key) { return frame_ ? frame_->onKeyDown(key) : -1; }

std::int32_t EditorBase::onKeyUp(const KeyCode& key) { return frame_ ? frame_->onKeyUp(key) : -1; }

std::int32_t EditorBase::setKnobMode(std::int32_t mode) {
    knobMode = mode;
    return 1;
}

std::int32_t EditorBase::getKnobMode() { return knobMode; }

bool EditorBase::onWheel(float distance) { return frame_ ? frame_->onWheel(nullptr, Point{0, 0}, distance) : false; }

void EditorBase::setParameter(std::int32_t, float) { postUpdate(); }

void EditorBase::draw(const Rect*) {
    if (frame_) frame_->redrawView(frame_);
}

// Called over and over by drag loops. It runs the editor's idle, one pending paint and the host's idle
// about every 100 ms; calls in between sleep 4 ms so that a loop polling the mouse does not spin.
void EditorBase::idlePump() {
    Platform* platform = currentPlatform();
    std::uint32_t time = now();
    std::int32_t ahead = static_cast<std::int32_t>(nextIdleTime_ - time);
    if (ahead > 0) {
        if (platform) platform->sleep(kPumpSleep);
        if (ahead > kPumpNearEnough) return;
    }
    idle();
    if (frame_) frame_->paintOnePending();
    nextIdleTime_ = time + kPumpInterval;
    insideIdle_ = true;
    if (host_) host_->hostIdle();
    insideIdle_ = false;
}

}  // namespace tolvane
