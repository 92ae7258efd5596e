// The editor of the LV2 build, created through lv2ui_descriptor the way a host does, in a real X window
// (Xvfb when no display is set): it needs instance access, asks for its fixed size, and writes to the
// ports what the plug-in changed itself, so that the host's controls and automation follow.
#include <dlfcn.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <string>

#include <gtest/gtest.h>
#include <lv2/core/lv2.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/ui/ui.h>

#include "lv2/Lv2Plugin.h"
#include "params/FactoryBank.h"
#include "support/XServerForTests.h"
#include "tools/render/Lv2Host.h"

// Last: Xlib's macros would clash with names in the headers above.
#include <X11/Xlib.h>

namespace tolvane {
namespace {

struct HostSide {
    std::map<std::uint32_t, float> writes;  // port -> last value written by the editor
    int writeCount = 0;
    int width = 0, height = 0;

    static void write(LV2UI_Controller controller, std::uint32_t port, std::uint32_t size, std::uint32_t format,
                      const void* buffer) {
        auto* self = static_cast<HostSide*>(const_cast<void*>(controller));
        if (format != 0 || size != sizeof(float)) return;
        self->writes[port] = *static_cast<const float*>(buffer);
        ++self->writeCount;
    }
    static int resize(LV2UI_Feature_Handle handle, int width, int height) {
        auto* self = static_cast<HostSide*>(handle);
        self->width = width;
        self->height = height;
        return 0;
    }
};

class Lv2Editor : public ::testing::Test {
protected:
    void SetUp() override {
        std::string reason;
        if (!server().start(reason)) GTEST_SKIP() << reason;
        display_ = XOpenDisplay(nullptr);
        ASSERT_NE(display_, nullptr);
        parent_ = XCreateSimpleWindow(display_, DefaultRootWindow(display_), 0, 0, 800, 400, 0, 0, 0);
        XMapWindow(display_, parent_);
        XSync(display_, False);
        module_ = dlopen(TOLVANE_LV2_BINARY, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(module_, nullptr) << dlerror();
        auto entry = reinterpret_cast<const LV2UI_Descriptor* (*)(std::uint32_t)>(dlsym(module_, "lv2ui_descriptor"));
        ASSERT_NE(entry, nullptr);
        descriptor_ = entry(0);
        ASSERT_NE(descriptor_, nullptr);
        std::string error;
        ASSERT_TRUE(host_.load(TOLVANE_LV2_BUNDLE, 44100.0, 512, error)) << error;
    }
    void TearDown() override {
        host_.close();
        if (module_) dlclose(module_);
        if (display_) {
            XDestroyWindow(display_, parent_);
            XCloseDisplay(display_);
        }
    }
    static testing::XServerForTests& server() {
        static testing::XServerForTests instance;
        return instance;
    }

    LV2UI_Handle open(bool instanceAccess, LV2UI_Widget* widget) {
        parentFeature_ = {LV2_UI__parent, reinterpret_cast<void*>(parent_)};
        accessFeature_ = {LV2_INSTANCE_ACCESS_URI, host_.instanceHandle()};
        resize_ = {&side_, &HostSide::resize};
        resizeFeature_ = {LV2_UI__resize, &resize_};
        const LV2_Feature* withAccess[] = {&parentFeature_, &accessFeature_, &resizeFeature_, nullptr};
        const LV2_Feature* withoutAccess[] = {&parentFeature_, &resizeFeature_, nullptr};
        return descriptor_->instantiate(descriptor_, "urn:brindlecot:tolvane2", TOLVANE_LV2_BUNDLE, &HostSide::write,
                                        &side_, widget, instanceAccess ? withAccess : withoutAccess);
    }
    int idle(LV2UI_Handle ui) {
        auto* idleInterface = static_cast<const LV2UI_Idle_Interface*>(descriptor_->extension_data(LV2_UI__idleInterface));
        return idleInterface ? idleInterface->idle(ui) : -1;
    }
    // The host tells the editor the ports' values, as it does after opening it and after each change.
    void sendPorts(LV2UI_Handle ui) {
        for (std::uint32_t port = 0; port < static_cast<std::uint32_t>(kNumParameters); ++port) {
            const float value = host_.control(static_cast<int>(port));
            descriptor_->port_event(ui, port, sizeof(float), 0, &value);
        }
    }

    Display* display_ = nullptr;
    Window parent_ = 0;
    void* module_ = nullptr;
    const LV2UI_Descriptor* descriptor_ = nullptr;
    Lv2Host host_;
    HostSide side_;
    LV2UI_Resize resize_{};
    LV2_Feature parentFeature_{}, accessFeature_{}, resizeFeature_{};
};

TEST_F(Lv2Editor, NeedsInstanceAccessAndWritesThePortsThePluginChangedItself) {
    LV2UI_Widget widget = nullptr;
    EXPECT_EQ(open(false, &widget), nullptr);
    LV2UI_Handle ui = open(true, &widget);
    ASSERT_NE(ui, nullptr);
    EXPECT_NE(widget, nullptr);
    EXPECT_EQ(side_.width, 718);
    EXPECT_EQ(side_.height, 310);
    // One editor per instance; a second one is refused until the first has gone.
    LV2UI_Widget second = nullptr;
    EXPECT_EQ(open(true, &second), nullptr);
    descriptor_->cleanup(ui);
    ui = open(true, &widget);
    ASSERT_NE(ui, nullptr) << "a new editor once the first has gone";

    // The editor writes to the ports what the plug-in changed itself.
    sendPorts(ui);
    EXPECT_EQ(idle(ui), 0);
    EXPECT_EQ(side_.writeCount, 0) << "ports and plug-in agree after opening";

    // A program change by MIDI happens on the audio thread; the next idle reports every value it moved.
    const ProgramRecord before = factoryProgram(kNumPrograms - 1);  // the instance starts on the init program
    int program = 0;
    while (program < kNumDesignedPrograms &&
           std::memcmp(factoryProgram(program).values, before.values, sizeof before.values) == 0)
        ++program;
    ASSERT_LT(program, kNumDesignedPrograms);
    const ProgramRecord after = factoryProgram(program);
    MidiMessage change;
    change.bytes[0] = 0xC0;
    change.bytes[1] = static_cast<std::uint8_t>(program);
    change.size = 2;
    std::string error;
    ASSERT_TRUE(host_.render({change}, 512, [](const float*, const float*, int) { return true; }, error)) << error;
    idle(ui);
    int moved = 0;
    for (int i = 0; i < kNumProgramValues; ++i) {
        if (after.values[i] == before.values[i]) continue;
        ++moved;
        ASSERT_EQ(side_.writes.count(static_cast<std::uint32_t>(i)), 1u) << i;
        EXPECT_EQ(side_.writes[static_cast<std::uint32_t>(i)], after.values[i]) << i;
    }
    EXPECT_GT(moved, 0);
    EXPECT_EQ(side_.writeCount, moved);

    // A knob turned in the editor reaches the port at once.
    static_cast<Lv2Plugin*>(host_.instanceHandle())->plugin().setParameterAutomated(param::FilterCutoff, 0.77f);
    EXPECT_EQ(side_.writes[param::FilterCutoff], 0.77f);
    EXPECT_EQ(side_.writeCount, moved + 1);
    idle(ui);
    EXPECT_EQ(side_.writeCount, moved + 1) << "nothing reported twice";
    descriptor_->cleanup(ui);
}

}  // namespace
}  // namespace tolvane
