#include "ui/accessible_names.h"

#include <commctrl.h>
#include <oleacc.h>

#include <algorithm>
#include <cwctype>
#include <map>
#include <mutex>
#include <stdexcept>

#include "automation/com_object.h"
#include "automation/com_ptr.h"
#include "ui/window_driver.h"

__CRT_UUID_DECL(IAccPropServices, 0x6e26e776, 0x04f0, 0x495d, 0x80, 0xe4, 0x33, 0x30, 0x35, 0x2e,
                0x31, 0x69)

namespace tlpacscfg::test {
namespace {

bool isOneOf(const ControlFacts& control, std::initializer_list<const wchar_t*> classes) {
  return std::ranges::any_of(classes, [&](const wchar_t* name) {
    return lstrcmpiW(control.className.c_str(), name) == 0;
  });
}

bool isVisible(const ControlFacts& control) { return (control.style & WS_VISIBLE) != 0; }

bool isText(const ControlFacts& control) {
  return isOneOf(control, {WC_STATICW}) && (control.style & SS_TYPEMASK) != SS_ETCHEDFRAME;
}

/// Without the mark of the letter that selects the control.
std::wstring spoken(std::wstring text) {
  std::erase(text, L'&');
  return text;
}

/// Equal for names that sound alike.
std::wstring sound(std::wstring name) {
  std::erase_if(name, [](wchar_t letter) { return std::iswspace(letter) != 0; });
  std::ranges::transform(name, name.begin(), [](wchar_t letter) { return std::towlower(letter); });
  return name;
}

/// The identifiers are private to the library that tells them apart.
bool isRole(const GUID& property) { return property.Data1 == 0xcb905ff2; }
bool isName(const GUID& property) { return property.Data1 == 0x608d3df8; }

}  // namespace

std::wstring accessibleName(std::span<const ControlFacts> siblings, std::size_t control) {
  const ControlFacts& named = siblings[control];
  if (!named.annotation.empty()) return named.annotation;
  if (isOneOf(named, {WC_BUTTONW, WC_STATICW, L"#32770"})) return spoken(named.text);
  for (std::size_t i = control; i > 0; --i) {
    const ControlFacts& before = siblings[i - 1];
    if (isOneOf(before, {WC_STATICW})) return spoken(before.text);
    if (isVisible(before) && (before.style & (WS_TABSTOP | WS_GROUP)) != 0) return {};
  }
  return {};
}

std::vector<std::wstring> nameProblems(const std::vector<std::vector<ControlFacts>>& parts) {
  std::vector<std::wstring> problems;
  std::vector<std::wstring> sounds;
  for (const std::vector<ControlFacts>& siblings : parts) {
    for (std::size_t i = 0; i < siblings.size(); ++i) {
      if (!isVisible(siblings[i]) || isText(siblings[i])) continue;
      const std::wstring name = accessibleName(siblings, i);
      const std::wstring place = std::to_wstring(i) + L", " + siblings[i].className;
      if (name.empty()) {
        problems.push_back(L"no name: " + place);
      } else if (std::ranges::count(sounds, sound(name)) > 0) {
        problems.push_back(L"the name of another control: " + place + L", " + name);
      }
      sounds.push_back(sound(name));
    }
  }
  return problems;
}

/// Shared with the service object, which may outlive the test.
struct AnnotationRecords {
  struct Record {
    std::wstring name;
    LONG role = 0;
  };
  std::mutex mutex;
  std::map<HWND, Record> byWindow;
};

namespace {

class Services final : public ComObject<IAccPropServices> {
 public:
  explicit Services(std::shared_ptr<AnnotationRecords> records) : records_(std::move(records)) {}

  HRESULT STDMETHODCALLTYPE SetHwndPropStr(HWND control, DWORD object, DWORD child,
                                           MSAAPROPID property, LPCWSTR text) override {
    if (!isControl(object, child) || !isName(property)) return E_INVALIDARG;
    const std::scoped_lock lock(records_->mutex);
    records_->byWindow[control].name = text;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetHwndProp(HWND control, DWORD object, DWORD child,
                                        MSAAPROPID property, VARIANT value) override {
    if (!isControl(object, child) || !isRole(property) || value.vt != VT_I4) return E_INVALIDARG;
    const std::scoped_lock lock(records_->mutex);
    records_->byWindow[control].role = value.lVal;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ClearHwndProps(HWND control, DWORD object, DWORD child,
                                           const MSAAPROPID* properties, int count) override {
    if (!isControl(object, child) || !IsWindow(control)) return E_INVALIDARG;
    const std::scoped_lock lock(records_->mutex);
    auto& record = records_->byWindow[control];
    for (int i = 0; i < count; ++i) {
      if (isName(properties[i])) record.name.clear();
      if (isRole(properties[i])) record.role = 0;
    }
    if (record.name.empty() && record.role == 0) records_->byWindow.erase(control);
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE SetPropValue(const BYTE*, DWORD, MSAAPROPID, VARIANT) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetPropServer(const BYTE*, DWORD, const MSAAPROPID*, int,
                                          IAccPropServer*, AnnoScope) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ClearProps(const BYTE*, DWORD, const MSAAPROPID*, int) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetHwndPropServer(HWND, DWORD, DWORD, const MSAAPROPID*, int,
                                              IAccPropServer*, AnnoScope) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ComposeHwndIdentityString(HWND, DWORD, DWORD, BYTE**, DWORD*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DecomposeHwndIdentityString(const BYTE*, DWORD, HWND*, DWORD*,
                                                        DWORD*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetHmenuProp(HMENU, DWORD, MSAAPROPID, VARIANT) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetHmenuPropStr(HMENU, DWORD, MSAAPROPID, LPCWSTR) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE SetHmenuPropServer(HMENU, DWORD, const MSAAPROPID*, int,
                                               IAccPropServer*, AnnoScope) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ClearHmenuProps(HMENU, DWORD, const MSAAPROPID*, int) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE ComposeHmenuIdentityString(HMENU, DWORD, BYTE**, DWORD*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE DecomposeHmenuIdentityString(const BYTE*, DWORD, HMENU*,
                                                         DWORD*) override {
    return E_NOTIMPL;
  }

 private:
  static bool isControl(DWORD object, DWORD child) {
    return object == static_cast<DWORD>(OBJID_CLIENT) && child == CHILDID_SELF;
  }

  std::shared_ptr<AnnotationRecords> records_;
};

class ServicesFactory final : public ComObject<IClassFactory> {
 public:
  explicit ServicesFactory(std::shared_ptr<AnnotationRecords> records)
      : records_(std::move(records)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** result) override {
    return ComPtr<Services>::sharing(new Services(records_))->QueryInterface(id, result);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  std::shared_ptr<AnnotationRecords> records_;
};

constexpr CLSID kServices = {
    0xb5f8350b, 0x0548, 0x48b1, {0xa6, 0xee, 0x88, 0xbd, 0x00, 0xb4, 0xa5, 0xe7}};

}  // namespace

RecordedAnnotations::RecordedAnnotations() : records_(std::make_shared<AnnotationRecords>()) {
  const auto factory = ComPtr<IClassFactory>::sharing(new ServicesFactory(records_));
  CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  CoRegisterClassObject(kServices, factory.get(), CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                        &registration_);
}

RecordedAnnotations::~RecordedAnnotations() {
  CoRevokeClassObject(registration_);
  CoUninitialize();
}

std::wstring RecordedAnnotations::nameOf(HWND control) const {
  const std::scoped_lock lock(records_->mutex);
  const auto found = records_->byWindow.find(control);
  return found == records_->byWindow.end() ? L"" : found->second.name;
}

LONG RecordedAnnotations::roleOf(HWND control) const {
  const std::scoped_lock lock(records_->mutex);
  const auto found = records_->byWindow.find(control);
  return found == records_->byWindow.end() ? 0 : found->second.role;
}

std::size_t RecordedAnnotations::count() const {
  const std::scoped_lock lock(records_->mutex);
  return records_->byWindow.size();
}

std::vector<ControlFacts> factsOf(HWND window, const RecordedAnnotations& annotations) {
  std::vector<ControlFacts> facts;
  for (HWND control = GetWindow(window, GW_CHILD); control;
       control = GetWindow(control, GW_HWNDNEXT)) {
    std::wstring className(100, L'\0');
    className.resize(static_cast<std::size_t>(GetClassNameW(control, className.data(), 100)));
    facts.push_back({className, textOf(control),
                     static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE)),
                     annotations.nameOf(control)});
  }
  return facts;
}

std::wstring toldName(HWND control) {
  ComPtr<IAccessible> object;
  VARIANT self{};
  self.vt = VT_I4;
  BSTR name = nullptr;
  const HRESULT found =
      AccessibleObjectFromWindow(control, static_cast<DWORD>(OBJID_CLIENT), __uuidof(IAccessible),
                                 reinterpret_cast<void**>(object.out()));
  if (FAILED(found)) throw std::runtime_error("the control has no accessible object");
  object->get_accName(self, &name);
  const std::wstring text = name ? name : L"";
  SysFreeString(name);
  return text;
}

}  // namespace tlpacscfg::test
