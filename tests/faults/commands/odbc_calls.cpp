#include "faults/commands/odbc_calls.h"

#include <cctype>
#include <utility>
#include <vector>

#include "odbc/handle.h"
#include "odbc/platform.h"

namespace tlpacscfg::test {
namespace {

OdbcCalls::Listener listener;
std::vector<std::string> verbs;
bool active = false;
bool refusing = false;
int refusedAttribute = 0;
int refusedAttributes = 0;
ConnectCall connectCall;

void notify(OdbcMoment moment) {
  if (!listener) return;
  active = false;
  listener(static_cast<int>(verbs.size()), moment);
  active = true;
}

/// `refused` fails as the database would.
template <class Call, class Refused>
SQLRETURN observed(const std::string& verb, Call call, Refused refused) {
  if (!active) return call();
  verbs.push_back(verb);
  notify(OdbcMoment::Before);
  const SQLRETURN code = std::exchange(refusing, false) ? refused() : call();
  notify(OdbcMoment::After);
  return code;
}

std::string firstWord(const SQLWCHAR* text) {
  std::string word;
  for (; *text >= 'A' && *text <= 'z'; ++text) word += static_cast<char>(std::toupper(*text));
  return word;
}

}  // namespace

OdbcCalls::OdbcCalls(Listener newListener) {
  test::verbs.clear();
  listener = std::move(newListener);
  active = true;
}

OdbcCalls::~OdbcCalls() {
  active = false;
  listener = nullptr;
}

std::string OdbcCalls::verbs() const {
  std::string text;
  for (const std::string& verb : tlpacscfg::test::verbs) text += (text.empty() ? "" : " ") + verb;
  return text;
}

void OdbcCalls::refuseThisCall() { refusing = true; }

RefusedConnectAttribute::RefusedConnectAttribute(int attribute) {
  refusedAttribute = attribute;
  refusedAttributes = 0;
}

RefusedConnectAttribute::~RefusedConnectAttribute() { refusedAttribute = 0; }

int RefusedConnectAttribute::refusals() const { return refusedAttributes; }

const ConnectCall& lastConnectCall() { return connectCall; }

}  // namespace tlpacscfg::test

extern "C" {

SQLRETURN SQL_API __real_SQLExecDirectW(SQLHSTMT statement, SQLWCHAR* text, SQLINTEGER length);
SQLRETURN SQL_API __real_SQLEndTran(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT how);

SQLRETURN SQL_API __real_SQLSetConnectAttrW(SQLHDBC connection, SQLINTEGER attribute,
                                            SQLPOINTER value, SQLINTEGER length);

SQLRETURN SQL_API __real_SQLDriverConnectW(SQLHDBC connection, SQLHWND window, SQLWCHAR* text,
                                           SQLSMALLINT length, SQLWCHAR* completed,
                                           SQLSMALLINT size, SQLSMALLINT* needed,
                                           SQLUSMALLINT completion);

SQLRETURN SQL_API __wrap_SQLDriverConnectW(SQLHDBC connection, SQLHWND window, SQLWCHAR* text,
                                           SQLSMALLINT length, SQLWCHAR* completed,
                                           SQLSMALLINT size, SQLSMALLINT* needed,
                                           SQLUSMALLINT completion) {
  using namespace tlpacscfg;
  test::connectCall = {fromUtf16(odbc::odbcView(text, static_cast<std::size_t>(length))),
                       completion};
  return __real_SQLDriverConnectW(connection, window, text, length, completed, size, needed,
                                  completion);
}

SQLRETURN SQL_API __wrap_SQLExecDirectW(SQLHSTMT statement, SQLWCHAR* text, SQLINTEGER length) {
  using namespace tlpacscfg;
  return test::observed(
      test::firstWord(text), [&] { return __real_SQLExecDirectW(statement, text, length); },
      [&] {
        std::u16string refused = odbc::toOdbc(L"SELECT refused");
        return __real_SQLExecDirectW(statement, odbc::odbcText(refused), SQL_NTS);
      });
}

SQLRETURN SQL_API __wrap_SQLEndTran(SQLSMALLINT type, SQLHANDLE handle, SQLSMALLINT how) {
  return tlpacscfg::test::observed(
      how == SQL_COMMIT ? "commit" : "rollback",
      [&] { return __real_SQLEndTran(type, handle, how); },
      [] { return static_cast<SQLRETURN>(SQL_ERROR); });
}

SQLRETURN SQL_API __wrap_SQLSetConnectAttrW(SQLHDBC connection, SQLINTEGER attribute,
                                            SQLPOINTER value, SQLINTEGER length) {
  using namespace tlpacscfg;
  if (attribute != test::refusedAttribute) {
    return __real_SQLSetConnectAttrW(connection, attribute, value, length);
  }
  ++test::refusedAttributes;
  return SQL_ERROR;
}

}  // extern "C"
