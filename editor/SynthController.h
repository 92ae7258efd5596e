// What the editor asks of the plug-in that owns it.
#pragma once

namespace tolvane {

// The editor's program commands and file menu. The host reaches the same commands by selecting these
// negative program numbers.
enum class EditorCommand : int {
    Recall = -1,       // select the current program again, discarding the edits
    Init = -2,         // the init sound into the edit buffer
    LoadProgram = -3,
    LoadBank = -4,
    LoadMaps = -5,     // the controller maps
    SaveProgram = -6,
    SaveBank = -7,
    SaveMaps = -8,
};
constexpr int kLastEditorCommand = static_cast<int>(EditorCommand::SaveMaps);

class SynthController {
public:
    virtual ~SynthController() = default;
    // Sets a parameter as if the user changed it: the plug-in applies it and reports it to the host.
    virtual void setParameterAutomated(int index, float value) = 0;
    virtual int getProgram() = 0;
    virtual void setProgram(int program) = 0;  // 0..511
    virtual void runCommand(EditorCommand command) = 0;
    virtual void getProgramName(char* name) = 0;
    virtual void setProgramName(const char* name) = 0;
    virtual bool getProgramNameIndexed(int category, int index, char* name) = 0;
    virtual void beginEdit(int index) = 0;
    virtual void endEdit(int index) = 0;
    // Lets the host run its idle work while the editor tracks the mouse.
    virtual void hostIdle() = 0;
    // A file dropped on the editor: loaded as the FILE menu's load command for its kind would load it.
    virtual void loadDroppedFile(const char* path) = 0;
};

}  // namespace tolvane
