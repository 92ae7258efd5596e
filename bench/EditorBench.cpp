// The editor's cost on the host's GUI thread, drawn offscreen: opening the window (building every page,
// widget and control, and the first full paint), and an idle call when nothing changed, or one knob did.
#if defined(TOLVANE_BENCH_EDITOR)

#include <benchmark/benchmark.h>

#include "editor/SynthEditor.h"
#include "host/SynthPlugin.h"
#include "platform/offscreen/OffscreenPlatform.h"

namespace tolvane {
namespace {

vst2::intptr VST_CALL benchHost(vst2::AEffect*, vst2::int32 opcode, vst2::int32, vst2::intptr, void*, float) {
    return opcode == vst2::audioMasterVersion ? 2400 : 0;
}

struct OpenEditor {
    OpenEditor() {
        installPlatform(&platform);
        plugin = new SynthPlugin(benchHost, nullptr);
        effect = plugin->effect();
    }
    ~OpenEditor() {
        effect->dispatcher(effect, vst2::effClose, 0, 0, nullptr, 0.0f);
        installPlatform(nullptr);
    }
    vst2::intptr open() { return effect->dispatcher(effect, vst2::effEditOpen, 0, 0, &parent, 0.0f); }
    void close() { effect->dispatcher(effect, vst2::effEditClose, 0, 0, nullptr, 0.0f); }
    void idle() { effect->dispatcher(effect, vst2::effEditIdle, 0, 0, nullptr, 0.0f); }

    OffscreenPlatform platform;
    SynthPlugin* plugin = nullptr;
    vst2::AEffect* effect = nullptr;
    int parent = 0;
};

// effEditOpen and the first idle, which paints the whole window.
void BM_EditorOpenAndFirstPaint(benchmark::State& state) {
    OpenEditor editor;
    for (auto _ : state) {
        if (editor.open() != 1) state.SkipWithError("the editor did not open");
        editor.idle();
        state.PauseTiming();
        editor.close();
        state.ResumeTiming();
    }
    state.SetLabel("open + first paint");
}
BENCHMARK(BM_EditorOpenAndFirstPaint)->Unit(benchmark::kMillisecond);

void BM_EditorOpen(benchmark::State& state) {
    OpenEditor editor;
    for (auto _ : state) {
        if (editor.open() != 1) state.SkipWithError("the editor did not open");
        state.PauseTiming();
        editor.close();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_EditorOpen)->Unit(benchmark::kMillisecond);

void BM_EditorIdleNothingChanged(benchmark::State& state) {
    OpenEditor editor;
    editor.open();
    editor.idle();
    editor.idle();
    const int passes = editor.platform.window()->drawPasses();
    for (auto _ : state) editor.idle();
    if (editor.platform.window()->drawPasses() != passes) state.SkipWithError("an idle drew something");
    editor.close();
}
BENCHMARK(BM_EditorIdleNothingChanged)->Unit(benchmark::kMicrosecond);

// For comparison: the host moved one knob (the status lines change with it).
void BM_EditorIdleOneKnobChanged(benchmark::State& state) {
    OpenEditor editor;
    editor.open();
    editor.idle();
    float value = 0.0f;
    for (auto _ : state) {
        value = value > 0.9f ? 0.0f : value + 0.05f;
        editor.effect->setParameter(editor.effect, 2, value);
        editor.idle();
    }
    editor.close();
}
BENCHMARK(BM_EditorIdleOneKnobChanged)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tolvane

#endif  // TOLVANE_BENCH_EDITOR
