#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "automation/call_results.h"
#include "automation/late_bound.h"
#include "support/runtime_error.h"
#include "support/text.h"

using namespace tlpacscfg;

namespace {

constexpr const wchar_t* kProgId = L"TLPACSCFG.clsConfig";
constexpr const wchar_t* kUsage =
    L"usage: tlpacscfg-host NAME=VALUE ... [--no-form]\n"
    L"Sets the properties of TLPACSCFG.clsConfig, calls Init, and shows the windows unless\n"
    L"--no-form is given.\n";

enum ExitCode { kSucceeded = 0, kFailed = 1, kWrongUsage = 2 };

struct Options {
  std::vector<std::pair<std::wstring, std::wstring>> properties;
  bool showForm = true;
};

std::optional<Options> parse(std::span<wchar_t*> arguments) {
  Options options;
  for (const std::wstring_view argument : arguments) {
    const std::size_t equals = argument.find(L'=');
    if (argument == L"--no-form") {
      options.showForm = false;
    } else if (equals != argument.npos && equals > 0) {
      options.properties.emplace_back(argument.substr(0, equals), argument.substr(equals + 1));
    } else {
      return std::nullopt;
    }
  }
  return options;
}

void print(std::FILE* stream, const std::wstring& text) {
  const std::string bytes = toUtf8(text);
  std::fwrite(bytes.data(), 1, bytes.size(), stream);
  std::fflush(stream);
}

/// Runs a step; when it fails, prints its name and the reason.
template <class Step>
bool succeeds(const std::wstring& what, Step step) {
  try {
    step();
    return true;
  } catch (const RunTimeError& error) {
    print(stderr, what + L" failed: " + error.description() + L" (error " +
                      decimal(error.number()) + L")\n");
    return false;
  }
}

/// Calls a function without arguments and prints its result.
std::wstring callAndPrint(const LateBound& config, const wchar_t* function) {
  std::wstring result = textOf(config.call(function, {}).get());
  print(stdout, std::wstring(function) + L" returned " + result + L"\n");
  return result;
}

bool run(const LateBound& config, const Options& options) {
  for (const auto& property : options.properties) {
    const auto set = [&] {
      config.put(property.first.c_str(), OwnedVariant(property.second).get());
    };
    if (!succeeds(L"Setting " + property.first, set)) return false;
  }
  std::wstring initialized;
  std::wstring shown = L"0";
  return succeeds(L"Init", [&] { initialized = callAndPrint(config, L"Init"); }) &&
         (!options.showForm ||
          succeeds(L"ShowForm", [&] { shown = callAndPrint(config, L"ShowForm"); })) &&
         initialized == L"True" && shown == L"0";
}

class ComApartment {
 public:
  ComApartment() : status_(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~ComApartment() {
    if (SUCCEEDED(status_)) CoUninitialize();
  }
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  HRESULT status_;
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
  const std::optional<Options> options =
      parse(std::span(arguments, static_cast<std::size_t>(count)).subspan(1));
  if (!options) {
    print(stderr, kUsage);
    return kWrongUsage;
  }
  const ComApartment apartment;
  std::optional<LateBound> config;
  if (!succeeds(std::wstring(L"Creating ") + kProgId, [&] { config.emplace(kProgId); })) {
    print(stderr, L"Register the component first: regsvr32 TLPACSCFG.dll\n");
    return kFailed;
  }
  return run(*config, *options) ? kSucceeded : kFailed;
}
