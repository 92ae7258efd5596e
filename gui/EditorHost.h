// What the editor needs of the plug-in that owns it. The plug-in implements this; the toolkit never sees
// the host interface itself.
#pragma once

#include <cstdint>

namespace tolvane {

class EditorBase;

class EditorHost {
public:
    virtual ~EditorHost() = default;
    // Called once when the editor is constructed: the plug-in keeps it and announces that it has an editor.
    virtual void registerEditor(EditorBase* editor) = 0;
    // A gesture on the parameter with this index starts or ends (the host groups automation with them).
    virtual void beginEdit(std::int32_t index) = 0;
    virtual void endEdit(std::int32_t index) = 0;
    // Lets the host run its own idle work while the editor tracks the mouse.
    virtual void hostIdle() = 0;
};

}  // namespace tolvane
