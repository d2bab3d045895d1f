#include "ui/win32/tick_list_accessible.h"

#include <oleacc.h>

#include <optional>

#include "automation/com_error.h"
#include "automation/com_object.h"
#include "automation/com_ptr.h"
#include "automation/module_lock.h"

namespace tlpacscfg::win32 {
namespace {

BSTR newText(const std::wstring& text) {
  const BSTR copy = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (!copy) throw ComError(E_OUTOFMEMORY);
  return copy;
}

VARIANT number(LONG value) {
  VARIANT result{};
  result.vt = VT_I4;
  result.lVal = value;
  return result;
}

// The interfaces are named with __uuidof: two import libraries define IID_IAccessible.

/// Its children have no objects of their own: entry 0 is the child 1.
class TickListAccessible final : public ComObject<IAccessible> {
 public:
  TickListAccessible(HWND list, std::wstring name) : list_(list), name_(std::move(name)) {
    lockServer();
  }

  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
    return answer(parent, [&] {
      return AccessibleObjectFromWindow(list_, static_cast<DWORD>(OBJID_WINDOW), IID_IDispatch,
                                        reinterpret_cast<void**>(parent));
    });
  }
  HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override {
    return answer(count, [&] { *count = entryCount(); });
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
    return answer(object, [&] {
      entryOf(child);
      return S_FALSE;
    });
  }
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
    return answer(name, [&] {
      const auto entry = entryOf(child);
      *name = newText(entry ? textOf(*entry) : name_);
    });
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    return answer(
        role, [&] { *role = number(entryOf(child) ? ROLE_SYSTEM_CHECKBUTTON : ROLE_SYSTEM_LIST); });
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
    return answer(state, [&] {
      const auto entry = entryOf(child);
      LONG flags = STATE_SYSTEM_FOCUSABLE;
      if (!IsWindowVisible(list_)) flags |= STATE_SYSTEM_INVISIBLE;
      if (entry) {
        flags |= STATE_SYSTEM_SELECTABLE;
        if (isTicked(*entry)) flags |= STATE_SYSTEM_CHECKED;
        if (isCurrent(*entry)) flags |= STATE_SYSTEM_SELECTED | STATE_SYSTEM_FOCUSED;
        if (isScrolledOut(*entry)) flags |= STATE_SYSTEM_OFFSCREEN;
      }
      *state = number(flags);
    });
  }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override {
    return answer(child, [&] { return current(child); });
  }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* child) override {
    return answer(child, [&] { return current(child); });
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
    return answer(action, [&] {
      const auto entry = entryOf(child);
      if (!entry) return DISP_E_MEMBERNOTFOUND;
      *action = newText(isTicked(*entry) ? L"Uncheck" : L"Check");
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
    return answer([&] {
      const auto entry = entryOf(child);
      if (!entry) return DISP_E_MEMBERNOTFOUND;
      SendMessageW(list_, kToggleEntry, static_cast<WPARAM>(*entry), 0);
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                        VARIANT child) override {
    if (!left || !top || !width || !height) return E_POINTER;
    return answer([&] {
      const auto entry = entryOf(child);
      RECT place{};
      if (entry) {
        place = placeOf(*entry);
      } else {
        GetClientRect(list_, &place);
      }
      MapWindowPoints(list_, nullptr, reinterpret_cast<POINT*>(&place), 2);
      *left = place.left;
      *top = place.top;
      *width = place.right - place.left;
      *height = place.bottom - place.top;
      return S_OK;
    });
  }
  HRESULT STDMETHODCALLTYPE accHitTest(LONG left, LONG top, VARIANT* child) override {
    return answer(child, [&] {
      POINT at{left, top};
      ScreenToClient(list_, &at);
      RECT client{};
      GetClientRect(list_, &client);
      if (!PtInRect(&client, at)) return S_FALSE;
      const LRESULT entry = SendMessageW(list_, LB_ITEMFROMPOINT, 0, MAKELPARAM(at.x, at.y));
      *child = number(HIWORD(entry) == 0 ? LOWORD(entry) + 1 : CHILDID_SELF);
      return S_OK;
    });
  }

  // A list of check boxes has none of these.
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT, BSTR*) override { return kNone; }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR*) override { return kNone; }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR*) override { return kNone; }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR*, VARIANT, LONG*) override { return kNone; }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR*) override { return kNone; }
  HRESULT STDMETHODCALLTYPE accSelect(LONG, VARIANT) override { return kNone; }
  HRESULT STDMETHODCALLTYPE accNavigate(LONG, VARIANT, VARIANT*) override { return kNone; }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return kNone; }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return kNone; }

  // Assistive technology calls the members of the interface, not their names.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

 private:
  static constexpr HRESULT kNone = DISP_E_MEMBERNOTFOUND;

  ~TickListAccessible() override { unlockServer(); }

  void* interfaceOf(REFIID id) override {
    return id == IID_IDispatch ? static_cast<IDispatch*>(this) : ComObject::interfaceOf(id);
  }

  /// Refuses when the list is gone. `work` returns a result, or nothing for S_OK.
  template <class Work>
  HRESULT answer(Work work) const {
    return guarded([&]() -> HRESULT {
      if (!IsWindow(list_)) return CO_E_OBJNOTCONNECTED;
      if constexpr (std::is_void_v<decltype(work())>) {
        work();
        return S_OK;
      } else {
        return work();
      }
    });
  }

  template <class Value, class Work>
  HRESULT answer(Value* result, Work work) const {
    if (!result) return E_POINTER;
    *result = Value();
    return answer(work);
  }

  LONG entryCount() const { return static_cast<LONG>(SendMessageW(list_, LB_GETCOUNT, 0, 0)); }

  /// None for the list itself. Throws ComError for anything but a child.
  std::optional<LONG> entryOf(const VARIANT& child) const {
    if (child.vt != VT_I4 || child.lVal < 0 || child.lVal > entryCount()) {
      throw ComError(E_INVALIDARG);
    }
    if (child.lVal == CHILDID_SELF) return std::nullopt;
    return child.lVal - 1;
  }

  std::wstring textOf(LONG entry) const {
    const auto index = static_cast<WPARAM>(entry);
    std::wstring text(static_cast<std::size_t>(SendMessageW(list_, LB_GETTEXTLEN, index, 0)),
                      L'\0');
    SendMessageW(list_, LB_GETTEXT, index, reinterpret_cast<LPARAM>(text.data()));
    return text;
  }

  bool isTicked(LONG entry) const {
    return SendMessageW(list_, LB_GETITEMDATA, static_cast<WPARAM>(entry), 0) == 1;
  }

  bool isCurrent(LONG entry) const { return SendMessageW(list_, LB_GETCURSEL, 0, 0) == entry; }

  HRESULT current(VARIANT* child) const {
    const LRESULT entry = SendMessageW(list_, LB_GETCURSEL, 0, 0);
    if (entry < 0) return S_FALSE;
    *child = number(static_cast<LONG>(entry) + 1);
    return S_OK;
  }

  RECT placeOf(LONG entry) const {
    RECT place{};
    SendMessageW(list_, LB_GETITEMRECT, static_cast<WPARAM>(entry),
                 reinterpret_cast<LPARAM>(&place));
    return place;
  }

  bool isScrolledOut(LONG entry) const {
    RECT client{};
    GetClientRect(list_, &client);
    const RECT place = placeOf(entry);
    RECT common{};
    return !IntersectRect(&common, &client, &place);
  }

  HWND list_;
  std::wstring name_;
};

}  // namespace

LRESULT answerAsTickList(HWND list, const std::wstring& name, WPARAM wParam) {
  const auto object = ComPtr<IAccessible>::sharing(new TickListAccessible(list, name));
  return LresultFromObject(__uuidof(IAccessible), wParam, object.get());
}

void announceTick(HWND list, std::size_t entry) {
  NotifyWinEvent(EVENT_OBJECT_STATECHANGE, list, OBJID_CLIENT, static_cast<LONG>(entry) + 1);
}

}  // namespace tlpacscfg::win32
