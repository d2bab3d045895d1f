#include "faults/commands/odbc_calls.h"

#include <utility>

#include "odbc/handle.h"
#include "odbc/platform.h"

namespace tlpacscfg::test {
namespace {

OdbcCalls::Listener listening;
int calls = 0;
bool busy = false;
bool refusing = false;

void tell(OdbcMoment moment) {
  busy = true;
  listening(calls, moment);
  busy = false;
}

/// `refused` fails in the database's own words.
template <class Call, class Refused>
SQLRETURN heard(Call call, Refused refused) {
  if (!listening || busy) return call();
  ++calls;
  tell(OdbcMoment::Before);
  const SQLRETURN code = std::exchange(refusing, false) ? refused() : call();
  tell(OdbcMoment::After);
  return code;
}

}  // namespace

OdbcCalls::OdbcCalls(Listener listener) {
  calls = 0;
  listening = std::move(listener);
}

OdbcCalls::~OdbcCalls() { listening = nullptr; }

int OdbcCalls::count() const { return calls; }

void OdbcCalls::refuseThisCall() { refusing = true; }

}  // namespace tlpacscfg::test

extern "C" {

SQLRETURN SQL_API __real_SQLExecDirectW(SQLHSTMT statement, SQLWCHAR* text, SQLINTEGER length);
SQLRETURN SQL_API __real_SQLEndTran(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT how);

SQLRETURN SQL_API __wrap_SQLExecDirectW(SQLHSTMT statement, SQLWCHAR* text, SQLINTEGER length) {
  using namespace tlpacscfg;
  return test::heard([&] { return __real_SQLExecDirectW(statement, text, length); },
                     [&] {
                       std::u16string nothing = odbc::toOdbc(L"SELECT refused");
                       return __real_SQLExecDirectW(statement, odbc::odbcText(nothing), SQL_NTS);
                     });
}

SQLRETURN SQL_API __wrap_SQLEndTran(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT how) {
  return tlpacscfg::test::heard([&] { return __real_SQLEndTran(type, handle, how); },
                                [] { return static_cast<SQLRETURN>(SQL_ERROR); });
}

}  // extern "C"
