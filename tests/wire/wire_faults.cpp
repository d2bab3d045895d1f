
#include "harness/scratch.h"
#include "support/text.h"
#include "wire/stand_in.h"
#include "wire/wire_fixture.h"

namespace tlpacscfg::test {
namespace {

void addFault(const At& at, const std::string& what) {
  tellStandIn("fault", at.json() + "," + what);
}

std::string widthsOf(const SiteTraits& traits) {
  switch (traits.widths) {
    case SiteTraits::Widths::Cut:
      return R"("cut")";
    case SiteTraits::Widths::Refused:
      return R"("refuse")";
    case SiteTraits::Widths::Unlimited:
      break;
  }
  return "null";
}

std::string truth(bool value) { return value ? "true" : "false"; }

}  // namespace

At At::request(int number) { return At(R"("request":)" + std::to_string(number)); }
At At::batch(const std::wstring& beginning) { return At(R"("batch":)" + test::json(beginning)); }
At At::begin() { return At(R"("transaction":"begin")"); }
At At::commit() { return At(R"("transaction":"commit")"); }
At At::rollback() { return At(R"("transaction":"rollback")"); }

void WireTest::storeSite(const SiteTraits& traits) {
  tellStandIn("store", R"("path":)" + json(fromUtf8(scratchUnixPath("site.db"))) +
                           R"(,"traits":{"widths":)" + widthsOf(traits) + R"(,"codePage":)" +
                           truth(traits.codePage) + R"(,"joinsLines":)" + truth(traits.joinsLines) +
                           R"(,"dayFirst":)" + truth(traits.dayFirst) + "}");
}

Probe WireTest::siteProbe() const {
  return Probe(L"Driver={SQLite3};Database=" + fromUtf8(scratchUnixPath("site.db")) + L";");
}

void WireTest::runAtSite(const std::wstring& sql) const {
  tellStandIn("change", R"("sql":)" + json(sql));
}

void WireTest::changeSiteAt(const At& at, const std::wstring& sql) const {
  addFault(at, R"("changes":)" + json(sql));
}

void WireTest::hangUpBefore(const At& at) const { addFault(at, R"("hangsUp":"before")"); }

void WireTest::hangUpAfter(const At& at) const { addFault(at, R"("hangsUp":"after")"); }

void WireTest::hangUpInside(const At& at, Statements answered) const {
  addFault(at, R"("hangsUp":"inside","statements":)" + std::to_string(answered.count));
}

void WireTest::hangUpInside(const At& at, Rows sent) const {
  addFault(at, R"("hangsUp":"inside","rows":)" + std::to_string(sent.count));
}

void WireTest::stallBefore(const At& at) const { addFault(at, R"("stalls":"before")"); }

void WireTest::stallAfter(const At& at) const { addFault(at, R"("stalls":"after")"); }

void WireTest::failAt(const At& at, int number, const std::wstring& text,
                      AfterFailure afterFailure) const {
  const bool undoes = afterFailure == AfterFailure::UndoesTransaction;
  addFault(at, R"("fails":{"number":)" + std::to_string(number) + R"(,"text":)" + json(text) +
                   R"(,"undoes":)" + truth(undoes) + "}");
}

int WireTest::faultsLeft() const { return askStandIn("faultsLeft"); }

void WireTest::restartServer() const { tellStandIn("dropSessions"); }

void WireTest::stopServer() const {
  tellStandIn("stop");
  tellStandIn("dropSessions");
}

void WireTest::startServer() const { tellStandIn("start"); }

void WireTest::waitForSessions(int count) const {
  tellStandIn("waitForSessions", R"("count":)" + std::to_string(count));
}

}  // namespace tlpacscfg::test
