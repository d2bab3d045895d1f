#include <windows.h>
#include <objbase.h>
#include <oaidl.h>

#include <filesystem>
#include <stdexcept>

#include "benchmarks/measurements.h"
#include "benchmarks/measuring.h"
#include "support/handle_win.h"

namespace tlpacscfg::bench {
namespace {

using Library = UniqueHandle<HMODULE, &FreeLibrary>;
using GetClassObject = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);

void require(bool succeeded) {
  if (!succeeded) throw std::runtime_error("The component could not be created.");
}

/// Loads the DLL and creates its object; the DLL is unloaded when the result is dropped.
Library create(const std::wstring& path, REFCLSID classId) {
  Library library(LoadLibraryW(path.c_str()));
  require(static_cast<bool>(library));
  const auto getClassObject = reinterpret_cast<GetClassObject>(
      reinterpret_cast<void*>(GetProcAddress(library.get(), "DllGetClassObject")));
  require(getClassObject != nullptr);
  IClassFactory* factory = nullptr;
  require(
      SUCCEEDED(getClassObject(classId, IID_IClassFactory, reinterpret_cast<void**>(&factory))));
  IDispatch* object = nullptr;
  const HRESULT created =
      factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(&object));
  factory->Release();
  require(SUCCEEDED(created));
  object->Release();
  return library;
}

}  // namespace

void measureCreation(const std::wstring& component, const std::wstring& emptyComponent,
                     int repetitions) {
  CLSID classId{};
  require(SUCCEEDED(CLSIDFromProgID(L"TLPACSCFG.clsConfig", &classId)));
  Library library;
  const auto creation = [&](const std::wstring& path) {
    return Timed{[&] { library = create(path, classId); }, [&] { library.reset(); }};
  };
  compare("creation", 0, repetitions, creation(component), creation(emptyComponent));

  const auto size = [](const std::wstring& file) {
    return static_cast<double>(std::filesystem::file_size(std::filesystem::path(file)));
  };
  record("dll-size", 0, Series::Component, size(component));
  record("dll-size", 0, Series::Baseline, size(emptyComponent));
}

}  // namespace tlpacscfg::bench
