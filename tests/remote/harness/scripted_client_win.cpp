#include <cstring>
#include <memory>
#include <stdexcept>

#include "automation/com_object.h"
#include "automation/com_ptr.h"
#include "remote/harness/scripted_client.h"
#include "support/text.h"

namespace tlpacscfg::test {

struct ScriptedClient::State {
  Answers answers;
  std::vector<std::wstring> names;
  std::vector<std::wstring> calls;
  int objects = 0;
};

namespace {

using State = ScriptedClient::State;

std::wstring typed(const VARIANT& value) {
  switch (value.vt) {
    case VT_BSTR:
      return L"text " + std::wstring(value.bstrVal, SysStringLen(value.bstrVal));
    case VT_BYREF | VT_BSTR:
      return L"text& " + std::wstring(*value.pbstrVal, SysStringLen(*value.pbstrVal));
    case VT_BOOL:
      return std::wstring(L"truth ") + truthWord(value.boolVal != VARIANT_FALSE);
    case VT_I2:
      return L"I2 " + std::to_wstring(value.iVal);
    default:
      return L"type " + std::to_wstring(value.vt);
  }
}

class ScriptedObject final : public ComObject<IDispatch> {
 public:
  explicit ScriptedObject(std::shared_ptr<State> state) : state_(std::move(state)) {
    ++state_->objects;
  }
  ~ScriptedObject() override { --state_->objects; }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                          DISPID* ids) override {
    if (std::wstring_view(names[0]).starts_with(L"No")) return DISP_E_UNKNOWNNAME;
    state_->names.push_back(names[0]);
    ids[0] = static_cast<DISPID>(state_->names.size());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* passed,
                                   VARIANT* result, EXCEPINFO* exception, UINT*) override {
    const std::wstring name = state_->names.at(static_cast<std::size_t>(id - 1));
    note(name, kind, *passed);
    try {
      VARIANT value = state_->answers(name, *passed).release();
      std::memcpy(result, &value, sizeof(value));
      return S_OK;
    } catch (const CallFails& failure) {
      exception->scode = failure.scode;
      exception->bstrDescription = SysAllocString(failure.description.c_str());
      return failure.result;
    }
  }

 private:
  void note(const std::wstring& name, WORD kind, const DISPPARAMS& passed) const {
    if (name == L"CheckForError") return;
    std::wstring call = name + L"(";
    for (UINT i = passed.cArgs; i > 0; --i) {
      call += typed(passed.rgvarg[i - 1]) + (i > 1 ? L", " : L"");
    }
    if (kind == DISPATCH_METHOD) call.insert(0, L"do ");
    if (kind == DISPATCH_PROPERTYGET) call.insert(0, L"get ");
    if (kind == DISPATCH_PROPERTYPUT) call.insert(0, L"put ");
    state_->calls.push_back(call + L")");
  }

  const std::shared_ptr<State> state_;
};

class ScriptedFactory final : public ComObject<IClassFactory> {
 public:
  explicit ScriptedFactory(std::shared_ptr<State> state) : state_(std::move(state)) {}

  HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID id, void** result) override {
    const auto object = ComPtr<IDispatch>::sharing(new ScriptedObject(state_));
    return object->QueryInterface(id, result);
  }
  HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }

 private:
  const std::shared_ptr<State> state_;
};

template <class Element>
OwnedVariant arrayOf(VARTYPE type, const std::vector<Bound>& bounds, std::size_t count,
                     Element element) {
  std::vector<SAFEARRAYBOUND> systemBounds;
  for (const Bound& bound : bounds) systemBounds.push_back({bound.elements, bound.lower});
  SAFEARRAY* const array =
      SafeArrayCreate(type, static_cast<UINT>(systemBounds.size()), systemBounds.data());
  if (array == nullptr) throw std::runtime_error("SafeArrayCreate failed");
  OwnedVariant result;
  VARIANT* const place = result.out();
  place->vt = static_cast<VARTYPE>(VT_ARRAY | type);
  place->parray = array;
  for (std::size_t i = 0; i < count; ++i) {
    element(static_cast<std::byte*>(array->pvData) + i * array->cbElements, i);
  }
  return result;
}

}  // namespace

ScriptedClient::ScriptedClient(Answers answers)
    : state_(std::make_shared<State>(State{std::move(answers), {}, {}, 0})) {
  CLSID classId{};
  if (FAILED(CLSIDFromProgID(L"TlCommClient.clsTlCommClient", &classId))) {
    throw std::runtime_error("The client is not registered.");
  }
  const auto factory = ComPtr<IClassFactory>::sharing(new ScriptedFactory(state_));
  const HRESULT status = CoRegisterClassObject(classId, factory.get(), CLSCTX_INPROC_SERVER,
                                               REGCLS_MULTIPLEUSE, &registration_);
  if (FAILED(status)) throw std::runtime_error("CoRegisterClassObject failed");
}

ScriptedClient::~ScriptedClient() { CoRevokeClassObject(registration_); }

void ScriptedClient::answerWith(Answers answers) { state_->answers = std::move(answers); }

std::vector<std::wstring> ScriptedClient::calls() const { return state_->calls; }

int ScriptedClient::objects() const { return state_->objects; }

OwnedVariant arrayOfVariants(const std::vector<Bound>& bounds, std::vector<OwnedVariant> elements) {
  return arrayOf(VT_VARIANT, bounds, elements.size(), [&](std::byte* place, std::size_t i) {
    const VARIANT value = elements[i].release();
    std::memcpy(place, &value, sizeof(value));
  });
}

OwnedVariant arrayOfTexts(const std::vector<Bound>& bounds,
                          const std::vector<std::wstring>& elements) {
  return arrayOf(VT_BSTR, bounds, elements.size(), [&](std::byte* place, std::size_t i) {
    const BSTR text = SysAllocString(elements[i].c_str());
    std::memcpy(place, &text, sizeof(text));
  });
}

OwnedVariant arrayOfNumbers(const std::vector<Bound>& bounds, const std::vector<LONG>& elements) {
  return arrayOf(VT_I4, bounds, elements.size(), [&](std::byte* place, std::size_t i) {
    std::memcpy(place, &elements[i], sizeof(LONG));
  });
}

OwnedVariant number(LONG value) {
  OwnedVariant result;
  VARIANT* const place = result.out();
  place->vt = VT_I4;
  place->lVal = value;
  return result;
}

OwnedVariant real(double value) {
  OwnedVariant result;
  VARIANT* const place = result.out();
  place->vt = VT_R8;
  place->dblVal = value;
  return result;
}

OwnedVariant date(double value) {
  OwnedVariant result;
  VARIANT* const place = result.out();
  place->vt = VT_DATE;
  place->date = value;
  return result;
}

OwnedVariant null() {
  OwnedVariant result;
  VARIANT* const place = result.out();
  place->vt = VT_NULL;
  return result;
}

OwnedVariant errorCode() {
  OwnedVariant result;
  VARIANT* const place = result.out();
  place->vt = VT_ERROR;
  place->scode = DISP_E_PARAMNOTFOUND;
  return result;
}

}  // namespace tlpacscfg::test
