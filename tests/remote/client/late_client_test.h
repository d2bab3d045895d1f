#pragma once

#include <functional>
#include <string>
#include <vector>

#include "data/tl_comm_client.h"
#include "remote/client/client_fixture.h"
#include "remote/harness/scripted_client.h"

namespace tlpacscfg::test {

using Calls = std::vector<std::wstring>;

/// The answers of a client that works.
OwnedVariant properAnswer(const std::wstring& method);

/// The component with a client object that answers as the test demands.
class LateClientTest : public ClientTest {
 protected:
  LateClientTest();
  ~LateClientTest() override;

  /// Connects, then replaces the answer of one method.
  void connectWith(const std::wstring& method, std::function<OwnedVariant()> answer);

  /// The answer of CheckForError.
  std::wstring error_;

 private:
  OwnedVariant answer(const std::wstring& method) const;

  std::wstring different_;
  std::function<OwnedVariant()> answer_;

 protected:
  ScriptedClient client{
      [this](const std::wstring& method, const DISPPARAMS&) { return answer(method); }};
};

}  // namespace tlpacscfg::test
