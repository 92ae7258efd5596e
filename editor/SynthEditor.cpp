#include "editor/SynthEditor.h"

#include <cstring>

namespace tolvane {
namespace {

void copyLine(char* dst, std::size_t size, const char* src) {
    std::memset(dst, 0, size);
    if (src) std::strncpy(dst, src, size - 1);
}

}  // namespace

SynthEditor::SynthEditor(SynthController& controller) : controller_(controller) {
    for (auto& v : values_) v.store(0.0f, std::memory_order_relaxed);
    for (auto& c : changed_) c.store(false, std::memory_order_relaxed);
}

SynthEditor::~SynthEditor() { close(); }

void SynthEditor::getRect(int& top, int& left, int& bottom, int& right) const {
    top = 0;
    left = 0;
    bottom = kHeight;
    right = kWidth;
}

bool SynthEditor::open(void* /*parentWindow*/) {
    // The window comes with the toolkit; without it there is nothing to open.
    return false;
}

void SynthEditor::close() { open_ = false; }

void SynthEditor::idle() {}

void SynthEditor::setParameter(int index, float value) {
    if (index < 0 || index >= kNumParameters) return;
    values_[static_cast<std::size_t>(index)].store(value, std::memory_order_relaxed);
    changed_[static_cast<std::size_t>(index)].store(true, std::memory_order_release);
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
    copyLine(startup1_, sizeof startup1_, line1);
    copyLine(startup2_, sizeof startup2_, line2);
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

void SynthEditor::editBuffer(ProgramRecord& out) const {
    char name[32];
    programName(name);
    out.setName(name);
    for (int i = 0; i < kNumProgramValues; ++i) out.values[i] = value(i);
}

void SynthEditor::mapValues(float (&out)[kNumMapValues]) const {
    for (int i = 0; i < kNumMapValues; ++i) out[i] = value(kFirstMapParameter + i);
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
