// The LV2 binary's two exports: the plug-in's descriptor and its editor's.
#include <new>
#include <string>

#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <lv2/ui/ui.h>

#include "lv2/Lv2Log.h"
#include "lv2/Lv2Plugin.h"
#include "lv2/Lv2Ui.h"

namespace tolvane {
namespace {

Lv2Plugin* self(LV2_Handle handle) { return static_cast<Lv2Plugin*>(handle); }

LV2_Handle instantiate(const LV2_Descriptor*, double rate, const char*, const LV2_Feature* const* features) {
    std::string error;
    try {
        std::unique_ptr<Lv2Plugin> plugin = Lv2Plugin::create(rate, features, error);
        if (plugin) return plugin.release();
    } catch (const std::bad_alloc&) {
        error = "Tolvane2: out of memory";
    }
    Lv2Log(features).error(error.c_str());
    return nullptr;
}

void connectPort(LV2_Handle h, std::uint32_t port, void* data) { self(h)->connectPort(port, data); }
void activate(LV2_Handle h) { self(h)->activate(); }
void run(LV2_Handle h, std::uint32_t frames) { self(h)->run(frames); }
void deactivate(LV2_Handle h) { self(h)->deactivate(); }
void cleanup(LV2_Handle h) { delete self(h); }

LV2_State_Status save(LV2_Handle h, LV2_State_Store_Function store, LV2_State_Handle handle, std::uint32_t,
                      const LV2_Feature* const*) {
    return self(h)->save(store, handle);
}

LV2_State_Status restore(LV2_Handle h, LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle,
                         std::uint32_t, const LV2_Feature* const*) {
    return self(h)->restore(retrieve, handle);
}

const void* extensionData(const char* uri) {
    static const LV2_State_Interface state = {save, restore};
    if (std::string(uri) == LV2_STATE__interface) return &state;
    return nullptr;
}

const LV2_Descriptor kDescriptor = {lv2::kPluginUri, instantiate, connectPort, activate, run,
                                    deactivate,      cleanup,     extensionData};

}  // namespace
}  // namespace tolvane

extern "C" {
LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index == 0 ? &tolvane::kDescriptor : nullptr;
}

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
    return index == 0 ? tolvane::lv2UiDescriptor() : nullptr;
}
}
