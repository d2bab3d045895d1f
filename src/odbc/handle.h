#pragma once

#include <utility>

#include "odbc/error.h"

namespace tlpacscfg::odbc {

/// Owns one ODBC handle of the given type. A connection that is open is closed first.
template <SQLSMALLINT Type>
class Handle {
 public:
  Handle() = default;
  /// Throws the parent's diagnostics as an Error.
  template <SQLSMALLINT ParentType>
  explicit Handle(const Handle<ParentType>& parent) {
    check(SQLAllocHandle(Type, parent.get(), &handle_), ParentType, parent.get());
  }
  Handle(Handle&& other) noexcept : handle_(std::exchange(other.handle_, SQLHANDLE{})) {}
  Handle& operator=(Handle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~Handle() {
    if (handle_ == SQL_NULL_HANDLE) return;
    if constexpr (Type == SQL_HANDLE_DBC) SQLDisconnect(handle_);
    SQLFreeHandle(Type, handle_);
  }

  static Handle root() {
    Handle handle;
    if (!SQL_SUCCEEDED(SQLAllocHandle(Type, SQL_NULL_HANDLE, &handle.handle_))) {
      throw Error(kOdbcFailed, L"HY001: The ODBC environment could not be created.", L"HY001", 0);
    }
    return handle;
  }

  SQLHANDLE get() const { return handle_; }
  /// Throws unless the call on this handle succeeded.
  void verify(SQLRETURN code) const { check(code, Type, handle_); }

 private:
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

using EnvironmentHandle = Handle<SQL_HANDLE_ENV>;
using ConnectionHandle = Handle<SQL_HANDLE_DBC>;
using StatementHandle = Handle<SQL_HANDLE_STMT>;

}  // namespace tlpacscfg::odbc
