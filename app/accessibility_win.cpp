// Screen readers ask on threads of their own. They read a tree that never changes, and what they
// set off is posted to the window: no state is shared but the pointer to the newest tree.
#include "app/accessibility_win.h"

#include <wrl/client.h>

#include <array>
#include <atomic>
#include <new>
#include <type_traits>
#include <utility>

#include "app/uia_interfaces_win.h"
#include "base/handle_win.h"

using Microsoft::WRL::ComPtr;

namespace {

template <typename Function>
void lookUp(HMODULE module, const char* name, Function& function) {
    function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}

// Loaded by name when the first reader asks; the program starts without them.
struct AutomationLibraries {
    LibraryHandle core{LoadLibraryW(L"uiautomationcore.dll")};
    LibraryHandle ole{LoadLibraryW(L"oleaut32.dll")};
    LRESULT(WINAPI* returnProvider)
    (HWND, WPARAM, LPARAM, IRawElementProviderSimple*) = nullptr;
    HRESULT(WINAPI* hostProvider)(HWND, IRawElementProviderSimple**) = nullptr;
    HRESULT(WINAPI* raiseEvent)(IRawElementProviderSimple*, EVENTID) = nullptr;
    /// Came with Windows 8: may be missing.
    HRESULT(WINAPI* disconnect)(IRawElementProviderSimple*) = nullptr;
    BSTR(WINAPI* allocString)(const OLECHAR*, UINT) = nullptr;
    SAFEARRAY*(WINAPI* createVector)(VARTYPE, LONG, ULONG) = nullptr;
    HRESULT(WINAPI* putElement)(SAFEARRAY*, LONG*, void*) = nullptr;

    AutomationLibraries() {
        lookUp(core.get(), "UiaReturnRawElementProvider", returnProvider);
        lookUp(core.get(), "UiaHostProviderFromHwnd", hostProvider);
        lookUp(core.get(), "UiaRaiseAutomationEvent", raiseEvent);
        lookUp(core.get(), "UiaDisconnectProvider", disconnect);
        lookUp(ole.get(), "SysAllocStringLen", allocString);
        lookUp(ole.get(), "SafeArrayCreateVector", createVector);
        lookUp(ole.get(), "SafeArrayPutElement", putElement);
    }
    [[nodiscard]] bool complete() const {
        return returnProvider != nullptr && hostProvider != nullptr && raiseEvent != nullptr &&
               allocString != nullptr && createVector != nullptr && putElement != nullptr;
    }
};

}  // namespace

/// What the window and the elements that readers hold have in common.
struct AutomationShared {
    std::unique_ptr<AutomationLibraries> libraries;
    mutable SRWLOCK lock = SRWLOCK_INIT;
    std::shared_ptr<const AccessibleTree> tree;
    HWND window = nullptr;
    float dpi = 96;

    [[nodiscard]] std::shared_ptr<const AccessibleTree> newest() const {
        const LockGuard locked(lock);
        return tree;
    }
};

namespace {

using Shared = std::shared_ptr<AutomationShared>;

int controlTypeOf(Role role) {
    switch (role) {
        case Role::window:
            return uia::kWindowType;
        case Role::tabs:
            return uia::kTabType;
        case Role::tab:
            return uia::kTabItemType;
        case Role::group:
            return uia::kGroupType;
        case Role::list:
        case Role::report:
            return uia::kListType;
        case Role::choice:
        case Role::line:
            return uia::kListItemType;
        case Role::button:
            return uia::kButtonType;
        case Role::status:
            return uia::kStatusBarType;
        case Role::text:
            break;
    }
    return uia::kTextType;
}

bool isChosen(Role role) {
    return role == Role::tab || role == Role::choice;
}

// One element of the tree as readers see it. It names its node by role and number, and finds it in
// whichever tree is the newest.
// Only its last release deletes it.
// NOLINTNEXTLINE(cppcoreguidelines-virtual-class-destructor)
class Element final : public IRawElementProviderSimple,
                      public IRawElementProviderFragment,
                      public IRawElementProviderFragmentRoot,
                      public IInvokeProvider,
                      public ISelectionItemProvider,
                      public ISelectionProvider {
  public:
    Element(Shared shared, Role role, std::uint32_t number)
        : shared_(std::move(shared)), role_(role), number_(number) {}
    Element(const Element&) = delete;
    Element& operator=(const Element&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE get_ProviderOptions(ProviderOptions* options) override {
        *options = ProviderOptions_ServerSideProvider;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetPatternProvider(PATTERNID pattern, IUnknown** provider) override;
    HRESULT STDMETHODCALLTYPE GetPropertyValue(PROPERTYID property, VARIANT* value) override;
    HRESULT STDMETHODCALLTYPE
    get_HostRawElementProvider(IRawElementProviderSimple** provider) override {
        *provider = nullptr;
        if (role_ != Role::window) return S_OK;
        return shared_->libraries->hostProvider(shared_->window, provider);
    }

    HRESULT STDMETHODCALLTYPE Navigate(NavigateDirection direction,
                                       IRawElementProviderFragment** fragment) override;
    HRESULT STDMETHODCALLTYPE GetRuntimeId(SAFEARRAY** id) override;
    HRESULT STDMETHODCALLTYPE get_BoundingRectangle(UiaRect* rect) override;
    HRESULT STDMETHODCALLTYPE GetEmbeddedFragmentRoots(SAFEARRAY** roots) override {
        *roots = nullptr;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetFocus() override { return post(kFocusElement); }
    HRESULT STDMETHODCALLTYPE get_FragmentRoot(IRawElementProviderFragmentRoot** root) override {
        return hand(Role::window, 0, root);
    }

    HRESULT STDMETHODCALLTYPE
    ElementProviderFromPoint(double x, double y, IRawElementProviderFragment** fragment) override;
    HRESULT STDMETHODCALLTYPE GetFocus(IRawElementProviderFragment** fragment) override;

    HRESULT STDMETHODCALLTYPE Invoke() override { return post(kActOnElement); }

    HRESULT STDMETHODCALLTYPE Select() override { return post(kActOnElement); }
    HRESULT STDMETHODCALLTYPE AddToSelection() override { return post(kActOnElement); }
    HRESULT STDMETHODCALLTYPE RemoveFromSelection() override { return uia::kInvalidOperation; }
    HRESULT STDMETHODCALLTYPE get_IsSelected(BOOL* selected) override;
    HRESULT STDMETHODCALLTYPE get_SelectionContainer(IRawElementProviderSimple** list) override;

    HRESULT STDMETHODCALLTYPE GetSelection(SAFEARRAY** selection) override;
    HRESULT STDMETHODCALLTYPE get_CanSelectMultiple(BOOL* can) override {
        *can = FALSE;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_IsSelectionRequired(BOOL* required) override {
        *required = TRUE;
        return S_OK;
    }

  private:
    ~Element() = default;

    // A tree and this element's place in it, -1 when it has gone.
    struct Place {
        std::shared_ptr<const AccessibleTree> tree;
        int index;
        explicit operator bool() const { return index >= 0; }
        [[nodiscard]] const AccessibleNode& node() const { return tree->at(index); }
    };
    [[nodiscard]] Place place() const {
        auto tree = shared_->newest();
        const int index = tree ? findNode(*tree, role_, number_) : -1;
        return {std::move(tree), index};
    }

    template <typename Interface>
    HRESULT hand(Role role, std::uint32_t number, Interface** out) const {
        *out = new (std::nothrow) Element(shared_, role, number);
        return *out != nullptr ? S_OK : E_OUTOFMEMORY;
    }
    template <typename Interface>
    HRESULT handNode(const AccessibleTree& tree, int index, Interface** out) const {
        *out = nullptr;
        if (index < 0) return S_OK;
        return hand(tree.at(index).role, tree.at(index).number, out);
    }

    [[nodiscard]] HRESULT post(UINT message) const;
    [[nodiscard]] std::optional<bool> flagOf(PROPERTYID property, const Place& at) const;
    template <typename Item>
    HRESULT vectorOf(VARTYPE type, const Item* items, ULONG count, SAFEARRAY** array) const;

    Shared shared_;
    Role role_;
    std::uint32_t number_;
    std::atomic<ULONG> references_{1};
};

HRESULT Element::QueryInterface(REFIID id, void** object) {
    *object = nullptr;
    if (id == __uuidof(IUnknown) || id == __uuidof(IRawElementProviderSimple)) {
        *object = static_cast<IRawElementProviderSimple*>(this);
    } else if (id == __uuidof(IRawElementProviderFragment)) {
        *object = static_cast<IRawElementProviderFragment*>(this);
    } else if (id == __uuidof(IRawElementProviderFragmentRoot) && role_ == Role::window) {
        *object = static_cast<IRawElementProviderFragmentRoot*>(this);
    } else if (id == __uuidof(IInvokeProvider) && role_ == Role::button) {
        *object = static_cast<IInvokeProvider*>(this);
    } else if (id == __uuidof(ISelectionItemProvider) && isChosen(role_)) {
        *object = static_cast<ISelectionItemProvider*>(this);
    } else if (id == __uuidof(ISelectionProvider) && (role_ == Role::tabs || role_ == Role::list)) {
        *object = static_cast<ISelectionProvider*>(this);
    }
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
}

HRESULT Element::GetPatternProvider(PATTERNID pattern, IUnknown** provider) {
    *provider = nullptr;
    IID id{};
    if (pattern == uia::kInvoke) id = __uuidof(IInvokeProvider);
    if (pattern == uia::kSelectionItem) id = __uuidof(ISelectionItemProvider);
    if (pattern == uia::kSelection) id = __uuidof(ISelectionProvider);
    // A pattern that this element does not have is no failure.
    void* found = nullptr;
    if (SUCCEEDED(QueryInterface(id, &found))) *provider = static_cast<IUnknown*>(found);
    return S_OK;
}

std::optional<bool> Element::flagOf(PROPERTYID property, const Place& at) const {
    switch (property) {
        case UIA_IsKeyboardFocusablePropertyId:
            return at.node().element.has_value();
        case UIA_HasKeyboardFocusPropertyId:
            return at.index == focusedNode(*at.tree);
        case UIA_IsEnabledPropertyId:
        case UIA_IsControlElementPropertyId:
        case UIA_IsContentElementPropertyId:
            return true;
        case UIA_IsOffscreenPropertyId:
            return role_ == Role::line && at.node().rect.width <= 0;
        default:
            return std::nullopt;
    }
}

HRESULT Element::GetPropertyValue(PROPERTYID property, VARIANT* value) {
    constexpr int kPolite = 1;
    value->vt = VT_EMPTY;
    const Place at = place();
    if (!at) return uia::kNotAvailable;
    if (property == UIA_NamePropertyId) {
        const std::wstring& name = at.node().name;
        value->bstrVal =
            shared_->libraries->allocString(name.c_str(), static_cast<UINT>(name.size()));
        if (value->bstrVal == nullptr) return E_OUTOFMEMORY;
        value->vt = VT_BSTR;
    } else if (property == UIA_ControlTypePropertyId) {
        value->vt = VT_I4;
        value->lVal = controlTypeOf(role_);
    } else if (property == UIA_LiveSettingPropertyId && role_ == Role::status) {
        value->vt = VT_I4;
        value->lVal = kPolite;
    } else if (const std::optional<bool> flag = flagOf(property, at)) {
        value->vt = VT_BOOL;
        value->boolVal = *flag ? VARIANT_TRUE : VARIANT_FALSE;
    }
    return S_OK;
}

HRESULT Element::Navigate(NavigateDirection direction, IRawElementProviderFragment** fragment) {
    *fragment = nullptr;
    const Place at = place();
    if (!at) return uia::kNotAvailable;
    const AccessibleTree& tree = *at.tree;
    switch (direction) {
        case NavigateDirection_Parent:
            return handNode(tree, at.node().parent, fragment);
        case NavigateDirection_NextSibling:
        case NavigateDirection_PreviousSibling:
            if (role_ == Role::window) return S_OK;
            return handNode(tree,
                            siblingOf(tree, at.index, direction == NavigateDirection_NextSibling),
                            fragment);
        case NavigateDirection_FirstChild:
        case NavigateDirection_LastChild:
            return handNode(
                tree, childOf(tree, at.index, direction == NavigateDirection_FirstChild), fragment);
    }
    return E_INVALIDARG;
}

template <typename Item>
HRESULT Element::vectorOf(VARTYPE type, const Item* items, ULONG count, SAFEARRAY** array) const {
    *array = shared_->libraries->createVector(type, 0, count);
    if (*array == nullptr) return E_OUTOFMEMORY;
    for (LONG i = 0; i < static_cast<LONG>(count); ++i) {
        Item item = items[i];
        if constexpr (std::is_pointer_v<Item>) {
            shared_->libraries->putElement(*array, &i, item);
        } else {
            shared_->libraries->putElement(*array, &i, &item);
        }
    }
    return S_OK;
}

HRESULT Element::GetRuntimeId(SAFEARRAY** id) {
    *id = nullptr;
    if (role_ == Role::window) return S_OK;  // the window's own comes from its host
    const std::array<int, 3> parts = {uia::kAppendRuntimeId, static_cast<int>(role_),
                                      static_cast<int>(number_)};
    return vectorOf(VT_I4, parts.data(), parts.size(), id);
}

HRESULT Element::get_BoundingRectangle(UiaRect* rect) {
    *rect = {};
    const Place at = place();
    if (!at) return uia::kNotAvailable;
    POINT origin{};
    ClientToScreen(shared_->window, &origin);
    const RectDip& dip = at.node().rect;
    const double scale = static_cast<double>(shared_->dpi) / 96;
    if (dip.width <= 0) return S_OK;
    *rect = {origin.x + dip.x * scale, origin.y + dip.y * scale, dip.width * scale,
             dip.height * scale};
    return S_OK;
}

HRESULT Element::ElementProviderFromPoint(double x, double y,
                                          IRawElementProviderFragment** fragment) {
    *fragment = nullptr;
    const Place at = place();
    if (!at) return uia::kNotAvailable;
    POINT origin{};
    ClientToScreen(shared_->window, &origin);
    const double scale = static_cast<double>(shared_->dpi) / 96;
    const PointDip point{static_cast<float>((x - origin.x) / scale),
                         static_cast<float>((y - origin.y) / scale)};
    return handNode(*at.tree, nodeAt(*at.tree, point), fragment);
}

HRESULT Element::GetFocus(IRawElementProviderFragment** fragment) {
    *fragment = nullptr;
    const Place at = place();
    if (!at) return uia::kNotAvailable;
    return handNode(*at.tree, focusedNode(*at.tree), fragment);
}

// The reader does not wait for what it sets off: an action may ask questions.
HRESULT Element::post(UINT message) const {
    const Place at = place();
    if (!at) return uia::kNotAvailable;
    const std::optional<ElementId>& element = at.node().element;
    if (!element) return uia::kInvalidOperation;
    PostMessageW(shared_->window, message, static_cast<WPARAM>(element->kind),
                 static_cast<LPARAM>(element->id));
    return S_OK;
}

HRESULT Element::get_IsSelected(BOOL* selected) {
    *selected = FALSE;
    const Place at = place();
    if (!at) return uia::kNotAvailable;
    *selected = at.node().selected ? TRUE : FALSE;
    return S_OK;
}

HRESULT Element::get_SelectionContainer(IRawElementProviderSimple** list) {
    *list = nullptr;
    const Place at = place();
    if (!at) return uia::kNotAvailable;
    return handNode(*at.tree, at.node().parent, list);
}

HRESULT Element::GetSelection(SAFEARRAY** selection) {
    *selection = nullptr;
    const Place at = place();
    if (!at) return uia::kNotAvailable;
    int chosen = childOf(*at.tree, at.index, true);
    while (chosen >= 0 && !at.tree->at(chosen).selected)
        chosen = siblingOf(*at.tree, chosen, true);
    ComPtr<IRawElementProviderSimple> element;
    const HRESULT made = handNode(*at.tree, chosen, element.GetAddressOf());
    if (FAILED(made)) return made;
    IUnknown* const item = element.Get();
    return vectorOf(VT_UNKNOWN, &item, chosen >= 0 ? 1 : 0, selection);
}

ComPtr<IRawElementProviderSimple> elementOf(const Shared& shared, Role role, std::uint32_t number) {
    ComPtr<IRawElementProviderSimple> element;
    element.Attach(new (std::nothrow) Element(shared, role, number));
    return element;
}

}  // namespace

Accessibility::Accessibility() = default;
Accessibility::~Accessibility() = default;

bool Accessibility::isAsked() const {
    return shared_ != nullptr && shared_->libraries->complete();
}

std::shared_ptr<const AccessibleTree> Accessibility::current() const {
    return shared_ ? shared_->newest() : nullptr;
}

IRawElementProviderSimple* Accessibility::root() const {
    return isAsked() ? elementOf(shared_, Role::window, 0).Detach() : nullptr;
}

LRESULT Accessibility::answer(HWND window, WPARAM wParam, LPARAM lParam) {
    if (static_cast<LONG>(lParam) != kAutomationRootId) return 0;
    if (!shared_) {
        shared_ = std::make_shared<AutomationShared>();
        shared_->libraries = std::make_unique<AutomationLibraries>();
        shared_->window = window;
    }
    if (!isAsked()) return 0;
    const auto element = elementOf(shared_, Role::window, 0);
    return shared_->libraries->returnProvider(window, wParam, lParam, element.Get());
}

void Accessibility::publish(const std::shared_ptr<const AccessibleTree>& tree, float dpi) {
    if (!isAsked()) return;
    std::shared_ptr<const AccessibleTree> old = tree;
    {
        const LockGuard locked(shared_->lock);
        shared_->tree.swap(old);
        shared_->dpi = dpi;
    }
    const int focus = focusedNode(*tree);
    if (focus >= 0 && (!old || old->focus != tree->focus)) {
        const auto element = elementOf(shared_, tree->at(focus).role, tree->at(focus).number);
        shared_->libraries->raiseEvent(element.Get(), uia::kFocusChanged);
    }
    if (old && (old->written != tree->written || old->statusText != tree->statusText)) {
        const auto status = elementOf(shared_, Role::status, 0);
        shared_->libraries->raiseEvent(status.Get(), uia::kLiveRegionChanged);
    }
}

void Accessibility::close(HWND window) {
    if (!isAsked()) return;
    {
        const LockGuard locked(shared_->lock);
        shared_->tree.reset();
    }
    shared_->libraries->returnProvider(window, 0, 0, nullptr);
    const auto element = elementOf(shared_, Role::window, 0);
    if (shared_->libraries->disconnect != nullptr) shared_->libraries->disconnect(element.Get());
}
