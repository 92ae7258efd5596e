// The OLE drop target of an editor window: takes file lists (shell links resolved to their targets) and
// plain text, and hands them to the window's frame with the drop point.
#pragma once

#include <ole2.h>

#include <string>

namespace tolvane {

class Win32Window;

class Win32DropTarget : public IDropTarget {
public:
    explicit Win32DropTarget(Win32Window& window) : window_(window) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE DragEnter(IDataObject* data, DWORD keys, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragOver(DWORD keys, POINTL point, DWORD* effect) override;
    HRESULT STDMETHODCALLTYPE DragLeave() override;
    HRESULT STDMETHODCALLTYPE Drop(IDataObject* data, DWORD keys, POINTL point, DWORD* effect) override;

private:
    virtual ~Win32DropTarget() = default;

    Win32Window& window_;
    LONG references_ = 1;
    bool acceptable_ = false;
};

// The target of a shell link (".lnk", any case), or the name itself when it is none or cannot be resolved.
std::string resolveShortcut(const std::string& name);

}  // namespace tolvane
