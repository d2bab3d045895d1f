#include <windows.h>

#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <array>
#include <string>

#include "com/com_fixture.h"
#include "harness/machine.h"
#include "support/secret.h"

namespace tlpacscfg::test {
namespace {

constexpr UINT kLength = 40;
/// Only the end is compared: the heap overwrites the beginning of freed memory.
constexpr UINT kCompared = 20;

/// The password is computed, so that no copy of it is in the program.
wchar_t letter(UINT index) { return static_cast<wchar_t>(0x5000 + index * index * 7 % 499); }

wchar_t otherLetter(UINT index) { return static_cast<wchar_t>(letter(index) + 0x1000); }

/// The number of copies of the password's end in the writable memory of this process.
int copiesInMemory(wchar_t (*letterOfPassword)(UINT) = letter) {
  // Static: the program's image is not searched.
  static std::array<wchar_t, 1 << 16> piece;
  int copies = 0;
  MEMORY_BASIC_INFORMATION region{};
  for (const wchar_t* place = nullptr; VirtualQuery(place, &region, sizeof(region)) != 0;) {
    const auto* next = static_cast<const wchar_t*>(region.BaseAddress);
    const auto* const end = next + region.RegionSize / sizeof(wchar_t);
    const bool searched = region.State == MEM_COMMIT && region.Type == MEM_PRIVATE &&
                          region.Protect == PAGE_READWRITE;
    while (searched && next < end) {
      const SIZE_T wanted =
          std::min<SIZE_T>(piece.size(), static_cast<SIZE_T>(end - next)) * sizeof(wchar_t);
      SIZE_T got = 0;
      ReadProcessMemory(GetCurrentProcess(), next, piece.data(), wanted, &got);
      const SIZE_T count = got / sizeof(wchar_t);
      for (SIZE_T i = 0; i + kCompared <= count; ++i) {
        UINT same = 0;
        while (same < kCompared && piece[i + same] == letterOfPassword(kLength - kCompared + same))
          ++same;
        if (same == kCompared) ++copies;
      }
      if (count < piece.size()) break;
      // A copy may span two pieces.
      next += count - (kCompared - 1);
    }
    place = end;
  }
  wipeMemory(piece.data(), sizeof(piece));
  return copies;
}

/// The host's own copy, wiped on destruction.
class HostsPassword {
 public:
  HostsPassword() {
    for (UINT i = 0; i < kLength; ++i) text_[i] = letter(i);
  }
  ~HostsPassword() {
    wipeMemory(text_, kLength * sizeof(wchar_t));
    SysFreeString(text_);
  }
  HostsPassword(const HostsPassword&) = delete;
  HostsPassword& operator=(const HostsPassword&) = delete;

  VARIANT value() const {
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text_;
    return value;
  }
  VARIANT byReference() { return reference(text_); }

 private:
  BSTR text_ = SysAllocStringLen(nullptr, kLength);
};

class PasswordTest : public ComTest {
 protected:
  ~PasswordTest() override { config.put(L"Password", L""); }

  HostObject config = HostObject::create(kConfig);

  /// Looked up before any password is in memory.
  DISPID id = config.idOf(L"Password");

  void put(const VARIANT& value) {
    EXPECT_EQ(nameOf(config.invoke(id, DISPATCH_PROPERTYPUT, {value}, {DISPID_PROPERTYPUT}).result),
              "S_OK");
  }
};

TEST_F(PasswordTest, ThePropertysOwnIsTheOnlyCopyAHostLeavesBehind) {
  ASSERT_EQ(copiesInMemory(), 0);
  {
    const HostsPassword password;
    ASSERT_EQ(copiesInMemory(), 1);
    put(password.value());
    EXPECT_EQ(copiesInMemory(), 2);
  }
  EXPECT_EQ(copiesInMemory(), 1);
}

TEST_F(PasswordTest, AReferenceIsFollowedWithoutACopy) {
  {
    HostsPassword password;
    put(password.byReference());
    VARIANT inner = password.byReference();
    put(reference(inner));
  }
  EXPECT_EQ(copiesInMemory(), 1);
}

TEST_F(PasswordTest, AnotherPasswordTakesTheFirstOnesPlace) {
  put(HostsPassword().value());
  ASSERT_EQ(copiesInMemory(), 1);
  const Argument other(L"x");
  put(other.get());
  EXPECT_EQ(copiesInMemory(), 0);
  put(HostsPassword().value());
  const Argument longer(std::wstring(5000, L'x'));
  put(longer.get());
  EXPECT_EQ(copiesInMemory(), 0);
}

TEST_F(PasswordTest, ReadingItGivesTheHostTheOnlyOtherCopy) {
  put(HostsPassword().value());
  {
    const Outcome outcome = config.invoke(id, DISPATCH_PROPERTYGET, {});
    ASSERT_EQ(outcome.type(), VT_BSTR);
    const BSTR text = outcome.value.get().bstrVal;
    ASSERT_EQ(SysStringLen(text), kLength);
    for (UINT i = 0; i < kLength; ++i) ASSERT_EQ(text[i], letter(i));
    EXPECT_EQ(copiesInMemory(), 2);
    wipeMemory(text, kLength * sizeof(wchar_t));
  }
  EXPECT_EQ(copiesInMemory(), 1);
  DISPPARAMS none{};
  EXPECT_EQ(nameOf(config.get()->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, nullptr,
                                        nullptr, nullptr)),
            "S_OK");
  EXPECT_EQ(copiesInMemory(), 1) << "nobody took the result";
}

TEST_F(PasswordTest, ARefusedOneLeavesTheOldOne) {
  put(HostsPassword().value());
  EXPECT_EQ(nameOf(config.put(L"Password", nullValue()).result), "DISP_E_TYPEMISMATCH");
  EXPECT_EQ(copiesInMemory(), 1);
}

class LastObjectTest : public ComTest {
 protected:
  /// How many copies of a password the driver manager itself keeps: unixODBC keeps none, Wine's own
  /// does.
  static int copiesKeptByDriverManager() {
    std::wstring text = L"DSN=TlTestSite;PWD=";
    text.reserve(text.size() + kLength);
    for (UINT i = 0; i < kLength; ++i) text += otherLetter(i);
    SQLHENV environment = SQL_NULL_HENV;
    SQLHDBC connection = SQL_NULL_HDBC;
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment);
    SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3),
                  0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection);
    EXPECT_TRUE(SQL_SUCCEEDED(SQLDriverConnectW(connection, nullptr, text.data(),
                                                static_cast<SQLSMALLINT>(text.size()), nullptr, 0,
                                                nullptr, SQL_DRIVER_NOPROMPT)));
    SQLDisconnect(connection);
    SQLFreeHandle(SQL_HANDLE_DBC, connection);
    SQLFreeHandle(SQL_HANDLE_ENV, environment);
    wipeMemory(text.data(), text.size() * sizeof(wchar_t));
    return copiesInMemory(otherLetter);
  }
};

TEST_F(LastObjectTest, NothingOfThePasswordIsLeftWhenTheLastObjectHasGone) {
  needDriver(sqliteDriver());
  {
    const HostObject config = HostObject::create(kConfig);
    config.put(L"SQLDSN", L"TlTestSite");
    {
      const HostsPassword password;
      config.put(L"Password", password.value());
    }
    config.call(L"Init");
    EXPECT_GT(copiesInMemory(), 0);
  }
  const int copies = copiesInMemory();
  EXPECT_LE(copies, copiesKeptByDriverManager());
}

}  // namespace
}  // namespace tlpacscfg::test
