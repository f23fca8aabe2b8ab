// What the toolchain's headers lack of UI Automation: interfaces and identifiers as Windows
// documents them.
#pragma once

#include <windows.h>

#include <oleauto.h>
#include <uiautomationclient.h>
#include <uiautomationcore.h>

// An object behind these is deleted by its own Release, never through an interface.
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
// NOLINTBEGIN(cppcoreguidelines-virtual-class-destructor)

MIDL_INTERFACE("54fcb24b-e18e-47a2-b4d3-eccbe77599a2")
IInvokeProvider : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Invoke() = 0;
};

MIDL_INTERFACE("2acad808-b2d4-452d-a407-91ff1ad167b2")
ISelectionItemProvider : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Select() = 0;
    virtual HRESULT STDMETHODCALLTYPE AddToSelection() = 0;
    virtual HRESULT STDMETHODCALLTYPE RemoveFromSelection() = 0;
    virtual HRESULT STDMETHODCALLTYPE get_IsSelected(BOOL * selected) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_SelectionContainer(IRawElementProviderSimple *
                                                             *container) = 0;
};

MIDL_INTERFACE("fb8b03af-3bdf-48d4-bd36-1a65793be168")
ISelectionProvider : public IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetSelection(SAFEARRAY * *selection) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_CanSelectMultiple(BOOL * can) = 0;
    virtual HRESULT STDMETHODCALLTYPE get_IsSelectionRequired(BOOL * required) = 0;
};

// NOLINTEND(cppcoreguidelines-virtual-class-destructor)

__CRT_UUID_DECL(IInvokeProvider, 0x54fcb24b, 0xe18e, 0x47a2, 0xb4, 0xd3, 0xec, 0xcb, 0xe7, 0x75,
                0x99, 0xa2)
__CRT_UUID_DECL(ISelectionItemProvider, 0x2acad808, 0xb2d4, 0x452d, 0xa4, 0x07, 0x91, 0xff, 0x1a,
                0xd1, 0x67, 0xb2)
__CRT_UUID_DECL(ISelectionProvider, 0xfb8b03af, 0x3bdf, 0x48d4, 0xbd, 0x36, 0x1a, 0x65, 0x79, 0x3b,
                0xe1, 0x68)

namespace uia {

inline constexpr int kAppendRuntimeId = 3;

enum Pattern : PATTERNID { kInvoke = 10000, kSelection = 10001, kSelectionItem = 10010 };

enum Event : EVENTID { kFocusChanged = 20005, kLiveRegionChanged = 20024 };

enum ControlType : CONTROLTYPEID {
    kButtonType = 50000,
    kListItemType = 50007,
    kListType = 50008,
    kStatusBarType = 50017,
    kTabType = 50018,
    kTabItemType = 50019,
    kTextType = 50020,
    kGroupType = 50026,
    kWindowType = 50032,
};

inline constexpr HRESULT kNotAvailable = static_cast<HRESULT>(0x80040201);
inline constexpr HRESULT kInvalidOperation = static_cast<HRESULT>(0x80131509);

}  // namespace uia
