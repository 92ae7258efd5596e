#include "lv2/Lv2Ui.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

#include <lv2/instance-access/instance-access.h>
#include <lv2/log/log.h>
#include <lv2/urid/urid.h>

#include "gui/EditorFrame.h"
#include "gui/Platform.h"
#include "lv2/Lv2Log.h"
#include "lv2/Lv2Plugin.h"
#include "platform/linux/LinuxPlatform.h"

namespace tolvane {
namespace {

const void* findFeature(const LV2_Feature* const* features, const char* uri) {
    for (int i = 0; features && features[i]; ++i)
        if (std::strcmp(features[i]->URI, uri) == 0) return features[i]->data;
    return nullptr;
}

// The window writes the ports for the plug-in: every report of the editor at once, and in each idle the
// changes that arose elsewhere (controller maps, learning, program change by MIDI), found by comparing
// the plug-in's current values with those seen at the previous idle.
class Lv2Editor : public Lv2PortWriter {
public:
    Lv2Editor(Lv2Plugin& dsp, LV2UI_Write_Function write, LV2UI_Controller controller, const LV2UI_Touch* touch)
        : dsp_(dsp), write_(write), controller_(controller), touch_(touch) {
        for (int i = 0; i < kNumParameters; ++i) {
            seen_[i] = std::numeric_limits<float>::quiet_NaN();
            port_[i] = std::numeric_limits<float>::quiet_NaN();
        }
    }

    void writeParameter(int index, float value) override {
        dsp_.noteEditorWrite(index);
        seen_[index] = value;
        port_[index] = value;
        write_(controller_, static_cast<std::uint32_t>(index), sizeof(float), 0, &value);
    }

    void touchParameter(int index, bool grabbed) override {
        if (touch_) touch_->touch(touch_->handle, static_cast<std::uint32_t>(index), grabbed);
    }

    void portEvent(std::uint32_t port, std::uint32_t size, std::uint32_t format, const void* buffer) {
        if (format != 0 || size != sizeof(float) || port >= static_cast<std::uint32_t>(kNumParameters)) return;
        std::memcpy(&port_[port], buffer, sizeof(float));
    }

    int idle() {
        if (PluginEditor* editor = dsp_.plugin().editor()) editor->idle();
        const SynthEditor& model = dsp_.plugin().synthEditor();
        for (int i = 0; i < kNumParameters; ++i) {
            const float value = model.value(i);
            if (value == seen_[i]) continue;
            seen_[i] = value;
            if (value != port_[i]) writeParameter(i, value);
        }
        return 0;
    }

    Lv2Plugin& dsp() { return dsp_; }

private:
    Lv2Plugin& dsp_;
    LV2UI_Write_Function write_;
    LV2UI_Controller controller_;
    const LV2UI_Touch* touch_;
    float seen_[kNumParameters];  // the plug-in's values at the last idle
    float port_[kNumParameters];  // the ports' values as last written or reported
};

void installWindowPlatform() {
    static const bool installed = (installPlatform(&linuxPlatform()), true);
    (void)installed;
}

LV2UI_Handle instantiate(const LV2UI_Descriptor*, const char*, const char*, LV2UI_Write_Function write,
                         LV2UI_Controller controller, LV2UI_Widget* widget, const LV2_Feature* const* features) {
    Lv2Log log(features);
    auto* dsp = static_cast<Lv2Plugin*>(const_cast<void*>(findFeature(features, LV2_INSTANCE_ACCESS_URI)));
    void* parent = const_cast<void*>(findFeature(features, LV2_UI__parent));
    if (!dsp) {
        log.error("Tolvane2: the editor needs a host that offers instance access (" LV2_INSTANCE_ACCESS_URI
                  "); this host does not, so use its generic controls");
        return nullptr;
    }
    if (!parent) {
        log.error("Tolvane2: the editor needs a parent window from the host (" LV2_UI__parent ")");
        return nullptr;
    }
    auto* touch = static_cast<const LV2UI_Touch*>(findFeature(features, LV2_UI__touch));
    auto* ui = new Lv2Editor(*dsp, write, controller, touch);
    if (!dsp->attachWriter(ui)) {
        log.error("Tolvane2: this instance's editor is already open");
        delete ui;
        return nullptr;
    }
    installWindowPlatform();
    PluginEditor* editor = dsp->plugin().editor();
    EditorFrame* frame = nullptr;
    if (editor && editor->open(parent)) frame = dsp->plugin().synthEditor().getFrame();
    if (!frame || !frame->getNativeWindow()) {
        log.error("Tolvane2: the editor window could not be opened (no X display?)");
        if (editor) editor->close();
        dsp->detachWriter(ui);
        delete ui;
        return nullptr;
    }
    *widget = frame->getNativeWindow()->nativeHandle();
    if (auto* resize = static_cast<const LV2UI_Resize*>(findFeature(features, LV2_UI__resize)))
        resize->ui_resize(resize->handle, SynthEditor::kWidth, SynthEditor::kHeight);
    return ui;
}

void cleanup(LV2UI_Handle handle) {
    auto* ui = static_cast<Lv2Editor*>(handle);
    if (PluginEditor* editor = ui->dsp().plugin().editor()) editor->close();
    ui->dsp().detachWriter(ui);
    delete ui;
}

void portEvent(LV2UI_Handle handle, std::uint32_t port, std::uint32_t size, std::uint32_t format,
               const void* buffer) {
    static_cast<Lv2Editor*>(handle)->portEvent(port, size, format, buffer);
}

int idle(LV2UI_Handle handle) { return static_cast<Lv2Editor*>(handle)->idle(); }

const void* extensionData(const char* uri) {
    static const LV2UI_Idle_Interface idleInterface = {idle};
    if (std::strcmp(uri, LV2_UI__idleInterface) == 0) return &idleInterface;
    return nullptr;
}

const LV2UI_Descriptor kDescriptor = {lv2::kUiUri, instantiate, cleanup, portEvent, extensionData};

}  // namespace

const LV2UI_Descriptor* lv2UiDescriptor() { return &kDescriptor; }

}  // namespace tolvane
