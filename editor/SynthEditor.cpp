#include "editor/SynthEditor.h"

#include <cstring>

#include "editor/EditorSkin.h"
#include "editor/WidgetFrame.h"
#include "gui/BitmapResource.h"
#include "gui/EditorFrame.h"

namespace tolvane {
namespace {

void copyLine(char* dst, std::size_t size, const char* src) {
    std::memset(dst, 0, size);
    if (src) std::strncpy(dst, src, size - 1);
}

}  // namespace

SynthEditor::SynthEditor(SynthController& controller, EditorHost* host) : EditorBase(host), controller_(controller) {
    for (auto& v : values_) v.store(0.0f, std::memory_order_relaxed);
    for (auto& c : changed_) c.store(false, std::memory_order_relaxed);
    rect_.top = 0;
    rect_.left = 0;
    rect_.bottom = kHeight;
    rect_.right = kWidth;
}

SynthEditor::~SynthEditor() { close(); }

// ---------------------------------------------------------------------------------------------
// The window

std::int32_t SynthEditor::open(void* parentWindow) {
    if (frame_) close();
    EditorBase::open(parentWindow);
    loadBitmaps();

    // Everything the model holds now goes into the widgets as they are built; what changes from here on
    // is marked and reaches them in idle.
    for (auto& c : changed_) c.store(false, std::memory_order_relaxed);
    anyChanged_.store(false, std::memory_order_seq_cst);
    shownNameVersion_ = name_.version();
    shownStatusVersion_ = status_.version();

    auto* frame = new WidgetFrame(*this, parentWindow);
    if (!frame->getNativeWindow()) {
        frame->release();
        releaseBitmaps();
        parentWindow_ = nullptr;
        return 0;
    }
    frame_ = frame;
    char name[32];
    name_.load(name);
    frame->showProgramName(name);
    frame->showStatus(startup1_, startup2_);
    return 1;
}

void SynthEditor::close() {
    destroyFrame();
    releaseBitmaps();
    parentWindow_ = nullptr;
}

WidgetFrame* SynthEditor::widgetFrame() const { return static_cast<WidgetFrame*>(frame_); }

void SynthEditor::selectPage(int page) {
    if (WidgetFrame* frame = widgetFrame()) frame->selectPage(page);
}

void SynthEditor::loadBitmaps() {
    for (int i = 0; i < skin::kBitmapCount; ++i) {
        BitmapResource*& bitmap = bitmaps_[static_cast<std::size_t>(i)];
        if (!bitmap) bitmap = new BitmapResource(skin::kFirstBitmap + i);
    }
}

void SynthEditor::releaseBitmaps() {
    for (BitmapResource*& bitmap : bitmaps_) {
        if (bitmap) bitmap->release();
        bitmap = nullptr;
    }
}

BitmapResource* SynthEditor::bitmap(int resourceId) const {
    const int i = resourceId - skin::kFirstBitmap;
    if (i < 0 || i >= skin::kBitmapCount) return nullptr;
    BitmapResource* bitmap = bitmaps_[static_cast<std::size_t>(i)];
    return bitmap && bitmap->isLoaded() ? bitmap : nullptr;
}

void SynthEditor::idle() {
    if (insideIdle_) return;  // the host's idle, called from a drag, comes back here
    if (WidgetFrame* frame = widgetFrame()) pullChanges(*frame);
    EditorBase::idle();
}

void SynthEditor::pullChanges(WidgetFrame& frame) {
    if (anyChanged_.exchange(false, std::memory_order_acq_rel)) {
        for (int i = 0; i < kNumParameters; ++i)
            if (takeChanged(i)) frame.showValue(i, value(i));
    }
    const std::uint64_t nameVersion = name_.version();
    if (nameVersion != shownNameVersion_) {
        shownNameVersion_ = nameVersion;
        char name[32];
        name_.load(name);
        frame.showProgramName(name);
    }
    const std::uint64_t statusVersion = status_.version();
    if (statusVersion != shownStatusVersion_) {
        shownStatusVersion_ = statusVersion;
        char line1[kStatusTextSize], line2[kStatusTextSize];
        statusLines(line1, line2);
        frame.showStatus(line1, line2);
    }
    frame.showProgramNumber(controller_.getProgram());
}

// Keys go to the control that has the focus (the knob pressed last) and to nothing else: a key that no
// control of this editor wants is the host's.
std::int32_t SynthEditor::onKeyDown(const KeyCode& key) {
    View* focus = frame_ ? frame_->getFocusView() : nullptr;
    return focus ? focus->onKeyDown(key) : -1;
}

std::int32_t SynthEditor::onKeyUp(const KeyCode& key) {
    View* focus = frame_ ? frame_->getFocusView() : nullptr;
    return focus ? focus->onKeyUp(key) : -1;
}

// ---------------------------------------------------------------------------------------------
// The model

void SynthEditor::setParameter(std::int32_t index, float value) {
    if (index < 0 || index >= kNumParameters) return;
    values_[static_cast<std::size_t>(index)].store(value, std::memory_order_relaxed);
    changed_[static_cast<std::size_t>(index)].store(true, std::memory_order_release);
    anyChanged_.store(true, std::memory_order_release);
}

void SynthEditor::showProgram(const ProgramRecord& record, TextWriter writer) {
    char name[32];
    std::memcpy(name, record.name, sizeof name);
    name[31] = 0;
    name_.store(name, writer);
    for (int i = 0; i < kNumProgramValues; ++i) setParameter(i, record.values[i]);
}

void SynthEditor::showControllerMaps(const float (&values)[kNumMapValues]) {
    for (int i = 0; i < kNumMapValues; ++i) setParameter(kFirstMapParameter + i, values[i]);
}

void SynthEditor::showProgramAndMaps(const ProgramRecord& record, const float (&values)[kNumMapValues]) {
    showProgram(record, TextWriter::Other);
    showControllerMaps(values);
}

void SynthEditor::setProgramName(const char* name) { name_.store(name); }

void SynthEditor::setStartupStatus(const char* line1, const char* line2) {
    copyLine(startup1_, kStartupTextLength + 1, line1);
    copyLine(startup2_, kStartupTextLength + 1, line2);
    showStatus(startup1_, startup2_, TextWriter::Other);
}

void SynthEditor::showStatus(const char* line1, const char* line2, TextWriter writer) {
    // Both lines in one record, so that a reader never sees one message's first line with another's second.
    char both[2 * kStatusTextSize] = {};
    if (line1) std::strncpy(both, line1, kStatusTextSize - 1);
    if (line2) std::strncpy(both + kStatusTextSize, line2, kStatusTextSize - 1);
    status_.storeBytes(both, writer);
}

float SynthEditor::value(int index) const {
    if (index < 0 || index >= kNumParameters) return 0.0f;
    return values_[static_cast<std::size_t>(index)].load(std::memory_order_relaxed);
}

void SynthEditor::programName(char (&out)[32]) const { name_.load(out); }

void SynthEditor::statusLines(char* line1, char* line2) const {
    char packed[2 * kStatusTextSize];
    status_.load(packed);
    std::memcpy(line1, packed, kStatusTextSize);
    line1[kStatusTextSize - 1] = 0;
    std::memcpy(line2, packed + kStatusTextSize, kStatusTextSize);
    line2[kStatusTextSize - 1] = 0;
}

bool SynthEditor::takeChanged(int index) {
    if (index < 0 || index >= kNumParameters) return false;
    return changed_[static_cast<std::size_t>(index)].exchange(false, std::memory_order_acquire);
}

}  // namespace tolvane
