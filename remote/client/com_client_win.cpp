#include "automation/com_class.h"
#include "automation/com_server.h"
#include "automation/guid_text.h"
#include "automation/member_table.h"
#include "automation/safe_array.h"
#include "client/identity.h"
#include "client/session.h"

namespace tlpacscfg {
namespace {

using client::Session;

constexpr CLSID kClass = guidOf(client::kClassId);

class Methods {
 public:
  /// A method that answers nothing or zero of type `failed` when it fails: it does not raise an
  /// error. Only arguments that do not fit are refused.
  template <class Run>
  Methods& add(const wchar_t* name, std::size_t parameters, VARTYPE failed, Run run) {
    // Parameters have no names.
    table_.rawMethod(name, ++lastId_, MemberTable<Session>::Names(parameters), 0,
                     [=](Session& session, Arguments& arguments) {
                       try {
                         return run(session, arguments);
                       } catch (const ComError&) {
                         throw;
                       } catch (...) {
                         session.noteFailure();
                         return OwnedVariant::zero(failed);
                       }
                     });
    return *this;
  }

  std::vector<Member> members() { return table_.members(); }

 private:
  MemberTable<Session> table_;
  DISPID lastId_ = 0;
};

/// A two-dimensional array (column, row) of texts and Nulls.
OwnedVariant toArray(const Table& table) {
  ArrayBuilder array{table.columns(), table.rows()};
  for (std::size_t row = 0; row < table.rows(); ++row) {
    for (std::size_t column = 0; column < table.columns(); ++column) {
      const Cell cell = table.at(column, row);
      array.append(cell ? OwnedVariant(*cell) : OwnedVariant::zero(VT_NULL));
    }
  }
  return array.take();
}

OwnedVariant toArray(const std::vector<std::wstring>& texts) {
  ArrayBuilder array{texts.size()};
  for (const std::wstring& text : texts) array.append(OwnedVariant(text));
  return array.take();
}

std::wstring text(const Arguments& arguments, std::size_t parameter) {
  return arguments.get<std::wstring>(parameter);
}

std::vector<Member> members() {
  return Methods()
      .add(L"ConnectToService", 4, VT_BOOL,
           [](Session& session, const Arguments& arguments) {
             return OwnedVariant(session.ConnectToService(text(arguments, 0), text(arguments, 1),
                                                          text(arguments, 2), text(arguments, 3)));
           })
      .add(L"DisconnectFromService", 1, VT_EMPTY,
           [](Session& session, const Arguments& arguments) {
             text(arguments, 0);
             session.DisconnectFromService();
             return OwnedVariant();
           })
      .add(L"SQLQueryTable", 2, VT_I4,
           [](Session& session, const Arguments& arguments) {
             return OwnedVariant(session.SQLQueryTable(text(arguments, 0), text(arguments, 1)));
           })
      .add(L"GetTableData", 1, VT_EMPTY,
           [](Session& session, const Arguments& arguments) {
             const Table* const table = session.GetTableData(arguments.get<std::int16_t>(0));
             return table ? toArray(*table) : OwnedVariant();
           })
      .add(L"SQLExecuteText", 2, VT_BOOL,
           [](Session& session, const Arguments& arguments) {
             return OwnedVariant(session.SQLExecuteText(text(arguments, 0), text(arguments, 1)));
           })
      .add(
          L"GetNetworkDirectoryFiles", 7, VT_EMPTY,
          [](Session& session, const Arguments& arguments) {
            return toArray(session.GetNetworkDirectoryFiles(text(arguments, 0), text(arguments, 2),
                                                            {.recurse = arguments.get<bool>(1),
                                                             .sorted = arguments.get<bool>(3),
                                                             .ignoreCase = arguments.get<bool>(4),
                                                             .directories = arguments.get<bool>(5),
                                                             .fullPaths = arguments.get<bool>(6)}));
          })
      .add(L"CheckForError", 0, VT_BSTR,
           [](Session& session, const Arguments&) { return OwnedVariant(session.CheckForError()); })
      .members();
}

const CreatableClass kClasses[] = {
    {kClass, client::kProgId, [] { return wrap(std::make_shared<Session>(client::readSettings)); }},
};

}  // namespace

template <>
const ComClass& comClassOf<Session>() {
  static const ComClass type{kClass, IID_IDispatch, members()};
  return type;
}

const ComServer& comServer() {
  static const ComServer server{
      .name = L"TlCommClient", .classes = kClasses, .missingArray = E_INVALIDARG};
  return server;
}

}  // namespace tlpacscfg
