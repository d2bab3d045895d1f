#include <windows.h>

#include <commctrl.h>
#include <oleacc.h>

#include <gmock/gmock.h>

#include "automation/com_ptr.h"
#include "automation/module_lock.h"
#include "ui/settings/view/settings_fixture.h"

namespace tlpacscfg::test {
namespace {

using enum Control;

VARIANT child(LONG number) {
  VARIANT result{};
  result.vt = VT_I4;
  result.lVal = number;
  return result;
}

/// The open list of accession fields as assistive technology sees it, on a thread of its own.
class TickList {
 public:
  explicit TickList(HWND combo) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    COMBOBOXINFO info{};
    info.cbSize = sizeof(info);
    GetComboBoxInfo(combo, &info);
    window_ = info.hwndList;
    const HRESULT found =
        AccessibleObjectFromWindow(window_, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                   reinterpret_cast<void**>(object.out()));
    if (FAILED(found)) throw std::runtime_error("the list has no accessible object");
  }
  ~TickList() {
    object = nullptr;
    CoUninitialize();
  }
  TickList(const TickList&) = delete;
  TickList& operator=(const TickList&) = delete;

  std::wstring name(LONG entry) const {
    BSTR text = nullptr;
    object->get_accName(child(entry), &text);
    return taken(text);
  }
  std::wstring action(LONG entry) const {
    BSTR text = nullptr;
    object->get_accDefaultAction(child(entry), &text);
    return taken(text);
  }
  LONG role(LONG entry) const {
    VARIANT role{};
    object->get_accRole(child(entry), &role);
    return role.lVal;
  }
  bool has(LONG state, LONG entry) const {
    VARIANT states{};
    object->get_accState(child(entry), &states);
    return (states.lVal & state) != 0;
  }
  LONG focus() const {
    VARIANT entry{};
    return object->get_accFocus(&entry) == S_OK ? entry.lVal : -1;
  }
  RECT place(LONG entry) const {
    LONG left = 0;
    LONG top = 0;
    LONG width = 0;
    LONG height = 0;
    object->accLocation(&left, &top, &width, &height, child(entry));
    return {left, top, left + width, top + height};
  }

  HWND window() const { return window_; }

  ComPtr<IAccessible> object;

 private:
  static std::wstring taken(BSTR text) {
    const std::wstring copy = text ? text : L"";
    SysFreeString(text);
    return copy;
  }

  HWND window_ = nullptr;
};

constexpr LONG kList = CHILDID_SELF;
constexpr LONG kAccessionId = 1;
constexpr LONG kAccount = 2;
constexpr LONG kVisitId = 20;

class SettingsTickListTest : public SettingsTest {
 protected:
  void editList(const std::function<void(HWND window, HWND combo)>& script) {
    addConsistent(1, L"Default", L"flag11 = 2, string3 = 'Accession ID,Visit ID'");
    edit([&](HWND window) {
      turnTo(window, 3);
      const HWND combo = control(window, cmpAccessionFields);
      SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
      script(window, combo);
      SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
    });
  }
};

TEST_F(SettingsTickListTest, IsAListOfNamedCheckBoxes) {
  editList([](HWND, HWND combo) {
    const TickList list(combo);
    LONG count = 0;
    EXPECT_EQ(list.object->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 20);
    EXPECT_EQ(list.name(kList), L"Accession Dictation Fields");
    EXPECT_EQ(list.role(kList), ROLE_SYSTEM_LIST);
    EXPECT_EQ(list.name(kAccount), L"Account");
    EXPECT_EQ(list.name(kVisitId), L"Visit ID");
    EXPECT_EQ(list.role(kAccount), ROLE_SYSTEM_CHECKBUTTON);
  });
}

TEST_F(SettingsTickListTest, TellsWhichFieldsAreTicked) {
  editList([](HWND, HWND combo) {
    const TickList list(combo);
    EXPECT_TRUE(list.has(STATE_SYSTEM_CHECKED, kAccessionId));
    EXPECT_FALSE(list.has(STATE_SYSTEM_CHECKED, kAccount));
    EXPECT_TRUE(list.has(STATE_SYSTEM_CHECKED, kVisitId));
    EXPECT_FALSE(list.has(STATE_SYSTEM_INVISIBLE, kList));
    SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
    EXPECT_TRUE(list.has(STATE_SYSTEM_INVISIBLE, kList));
  });
}

TEST_F(SettingsTickListTest, ItsDefaultActionTicksAsTheUserDoes) {
  editList([](HWND window, HWND combo) {
    const TickList list(combo);
    EXPECT_EQ(list.action(kAccount), L"Check");
    EXPECT_EQ(list.object->accDoDefaultAction(child(kAccount)), S_OK);
    EXPECT_EQ(list.action(kAccount), L"Uncheck");
    EXPECT_TRUE(list.has(STATE_SYSTEM_CHECKED, kAccount));
    EXPECT_EQ(text(window, cmpAccessionFields), L"Accession ID, Account, Visit ID");
    EXPECT_EQ(list.object->accDoDefaultAction(child(kList)), DISP_E_MEMBERNOTFOUND);
  });
}

TEST_F(SettingsTickListTest, TellsTheCurrentFieldAndWhereEachOneIs) {
  editList([](HWND, HWND combo) {
    SendMessageW(combo, CB_SHOWDROPDOWN, FALSE, 0);
    SendMessageW(combo, CB_SETMINVISIBLE, 5, 0);
    SendMessageW(combo, CB_SHOWDROPDOWN, TRUE, 0);
    const TickList list(combo);
    SendMessageW(combo, CB_SETCURSEL, 1, 0);
    EXPECT_EQ(list.focus(), kAccount);
    EXPECT_TRUE(list.has(STATE_SYSTEM_FOCUSED, kAccount));
    EXPECT_FALSE(list.has(STATE_SYSTEM_FOCUSED, kAccessionId));
    const RECT place = list.place(kAccount);
    EXPECT_EQ(place.top, list.place(kAccessionId).bottom);
    EXPECT_TRUE(list.has(STATE_SYSTEM_OFFSCREEN, kVisitId));
    EXPECT_FALSE(list.has(STATE_SYSTEM_OFFSCREEN, kAccount));
    VARIANT hit{};
    EXPECT_EQ(list.object->accHitTest((place.left + place.right) / 2, place.top + 1, &hit), S_OK);
    EXPECT_EQ(hit.lVal, kAccount);
    EXPECT_EQ(list.object->accHitTest(-5, -5, &hit), S_FALSE);
  });
}

TEST_F(SettingsTickListTest, RefusesWhatIsNoEntryOfTheList) {
  editList([](HWND, HWND combo) {
    const TickList list(combo);
    VARIANT role{};
    for (const LONG number : {-1L, 21L}) {
      EXPECT_EQ(list.object->get_accRole(child(number), &role), E_INVALIDARG) << number;
      EXPECT_EQ(list.object->accDoDefaultAction(child(number)), E_INVALIDARG) << number;
    }
    BSTR text = nullptr;
    EXPECT_EQ(list.object->get_accValue(child(kAccount), &text), DISP_E_MEMBERNOTFOUND);
  });
}

LONG announced = 0;

void CALLBACK hear(HWINEVENTHOOK, DWORD, HWND, LONG, LONG entry, DWORD, DWORD) {
  announced = entry;
}

TEST_F(SettingsTickListTest, AChangedTickIsAnnounced) {
  announced = 0;
  editList([](HWND, HWND combo) {
    const TickList list(combo);
    const HWINEVENTHOOK hook =
        SetWinEventHook(EVENT_OBJECT_STATECHANGE, EVENT_OBJECT_STATECHANGE, nullptr, &hear,
                        GetCurrentProcessId(), 0, WINEVENT_OUTOFCONTEXT);
    EXPECT_EQ(list.object->accDoDefaultAction(child(kAccount)), S_OK);
    waitUntil(
        [] {
          MSG message;
          while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
          return announced == kAccount;
        },
        "the announcement");
    UnhookWinEvent(hook);
  });
}

TEST_F(SettingsTickListTest, AnObjectInUseKeepsTheComponentLoadedAndOutlivesTheWindow) {
  EXPECT_FALSE(serverIsLocked());
  addConsistent(1, L"Default");
  edit([](HWND window) {
    const TickList list(control(window, cmpAccessionFields));
    EXPECT_TRUE(serverIsLocked());
    closeSettings(window);
    LONG count = 0;
    EXPECT_EQ(list.object->get_accChildCount(&count), CO_E_OBJNOTCONNECTED);
  });
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  EXPECT_FALSE(serverIsLocked());
}

}  // namespace
}  // namespace tlpacscfg::test
