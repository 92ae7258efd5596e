#include "platform/win32/Win32DropTarget.h"

#include <shlobj.h>
#include <shellapi.h>

#include <vector>

#include "platform/win32/Win32Window.h"

namespace tolvane {
namespace {

constexpr int kMaxName = 1024;

bool offers(IDataObject* data, CLIPFORMAT format) {
    FORMATETC wanted{format, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    return data && data->QueryGetData(&wanted) == S_OK;
}

DWORD effectFor(DWORD keys, bool acceptable) {
    if (!acceptable) return DROPEFFECT_NONE;
    return (keys & MK_CONTROL) ? DROPEFFECT_COPY : DROPEFFECT_MOVE;
}

bool endsWithLink(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    return dot != std::string::npos && lstrcmpiA(name.c_str() + dot, ".lnk") == 0;
}

}  // namespace

std::string resolveShortcut(const std::string& name) {
    if (!endsWithLink(name)) return name;
    std::string resolved = name;
    IShellLinkA* link = nullptr;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                reinterpret_cast<void**>(&link))))
        return resolved;
    IPersistFile* file = nullptr;
    if (SUCCEEDED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void**>(&file)))) {
        std::vector<WCHAR> wide(2048, 0);
        if (MultiByteToWideChar(CP_ACP, 0, name.c_str(), -1, wide.data(), static_cast<int>(wide.size())) > 0 &&
            SUCCEEDED(file->Load(wide.data(), STGM_READ)) &&
            SUCCEEDED(link->Resolve(nullptr, 0x01F40003))) {  // no UI, any match, 500 ms at most
            char target[kMaxName] = {};
            if (SUCCEEDED(link->GetPath(target, kMaxName, nullptr, SLGP_SHORTPATH)) && target[0]) resolved = target;
        }
        file->Release();
    }
    link->Release();
    return resolved;
}

HRESULT STDMETHODCALLTYPE Win32DropTarget::QueryInterface(REFIID id, void** object) {
    if (!object) return E_POINTER;
    if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IDropTarget)) {
        *object = static_cast<IDropTarget*>(this);
        AddRef();
        return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
}

ULONG STDMETHODCALLTYPE Win32DropTarget::AddRef() { return static_cast<ULONG>(InterlockedIncrement(&references_)); }

ULONG STDMETHODCALLTYPE Win32DropTarget::Release() {
    const LONG left = InterlockedDecrement(&references_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
}

HRESULT STDMETHODCALLTYPE Win32DropTarget::DragEnter(IDataObject* data, DWORD keys, POINTL, DWORD* effect) {
    acceptable_ = offers(data, CF_HDROP) || offers(data, CF_TEXT);
    if (effect) *effect = effectFor(keys, acceptable_);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Win32DropTarget::DragOver(DWORD keys, POINTL, DWORD* effect) {
    if (effect) *effect = effectFor(keys, acceptable_);
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Win32DropTarget::DragLeave() {
    acceptable_ = false;
    return S_OK;
}

HRESULT STDMETHODCALLTYPE Win32DropTarget::Drop(IDataObject* data, DWORD keys, POINTL point, DWORD* effect) {
    if (effect) *effect = effectFor(keys, acceptable_);
    if (!data) return S_OK;
    std::vector<std::string> items;
    int kind = 0;
    FORMATETC files{CF_HDROP, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    FORMATETC text{CF_TEXT, nullptr, DVASPECT_CONTENT, -1, TYMED_HGLOBAL};
    STGMEDIUM medium{};
    if (data->GetData(&files, &medium) == S_OK) {
        auto drop = static_cast<HDROP>(medium.hGlobal);
        const UINT count = DragQueryFileA(drop, 0xFFFFFFFF, nullptr, 0);
        for (UINT i = 0; i < count; ++i) {
            char name[kMaxName] = {};
            if (DragQueryFileA(drop, i, name, kMaxName)) items.push_back(resolveShortcut(name));
        }
        ReleaseStgMedium(&medium);
    } else if (data->GetData(&text, &medium) == S_OK) {
        if (const char* block = static_cast<const char*>(GlobalLock(medium.hGlobal))) {
            const SIZE_T size = GlobalSize(medium.hGlobal);
            std::size_t length = 0;
            while (length < size && block[length]) ++length;
            items.emplace_back(block, length);
            GlobalUnlock(medium.hGlobal);
        }
        ReleaseStgMedium(&medium);
        kind = 1;
    }
    acceptable_ = false;
    if (!items.empty()) window_.filesDropped(items, kind, POINT{point.x, point.y});
    return S_OK;
}

}  // namespace tolvane
