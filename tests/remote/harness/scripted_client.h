#pragma once

#include <windows.h>

#include <oaidl.h>

#include <functional>
#include <string>
#include <vector>

#include "automation/owned_variant.h"

namespace tlpacscfg::test {

/// Answers a call of a scripted COM object; throws CallFails to make it fail.
using Answers = std::function<OwnedVariant(const std::wstring& method, const DISPPARAMS& passed)>;

/// Thrown by an answer: the call fails with this result.
struct CallFails {
  HRESULT result;
  SCODE scode = 0;
  std::wstring description = {};
};

/// While it lives, TlCommClient.clsTlCommClient is a scripted object in this process. Members that
/// begin with "No" are unknown to it.
class ScriptedClient {
 public:
  explicit ScriptedClient(Answers answers);
  ~ScriptedClient();
  ScriptedClient(const ScriptedClient&) = delete;
  ScriptedClient& operator=(const ScriptedClient&) = delete;

  /// Replaces the answers of all objects, existing and new.
  void answerWith(Answers answers);

  /// "Method(type value, ...)" in the order of the calls and of the parameters; types are those of
  /// the VARIANTs, with & for a reference. The prefix is "get" or "put" for a property, and "do"
  /// for a call without a result. CheckForError is not recorded.
  std::vector<std::wstring> calls() const;
  int objects() const;

  struct State;

 private:
  std::shared_ptr<State> state_;
  DWORD registration_ = 0;
};

/// Arrays as clients build them. Bounds are in the order of the dimensions; in the elements, the
/// first dimension varies fastest.
struct Bound {
  ULONG elements;
  LONG lower = 0;
};
OwnedVariant arrayOfVariants(const std::vector<Bound>& bounds, std::vector<OwnedVariant> elements);
OwnedVariant arrayOfTexts(const std::vector<Bound>& bounds,
                          const std::vector<std::wstring>& elements);
OwnedVariant arrayOfNumbers(const std::vector<Bound>& bounds, const std::vector<LONG>& elements);

OwnedVariant number(LONG value);
OwnedVariant real(double value);
OwnedVariant date(double value);
OwnedVariant null();
OwnedVariant errorCode();

}  // namespace tlpacscfg::test
