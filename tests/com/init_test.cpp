#include <atomic>

#include "com/com_fixture.h"
#include "harness/scratch.h"
#include "support/text.h"

namespace tlpacscfg::test {
namespace {

class InitTest : public ComSiteTest {
 protected:
  HostObject object = HostObject::create(kConfig);
};

/// Releases the object when the host processes its messages next.
class Releaser {
 public:
  explicit Releaser(HostObject& object) {
    object_ = &object;
    released_ = false;
    timer_ = SetTimer(nullptr, 0, USER_TIMER_MINIMUM, release);
  }
  ~Releaser() { KillTimer(nullptr, timer_); }
  Releaser(const Releaser&) = delete;
  Releaser& operator=(const Releaser&) = delete;

  bool released() const { return released_; }

 private:
  static void CALLBACK release(HWND, UINT, UINT_PTR, DWORD) {
    object_->release();
    released_ = true;
  }

  static inline HostObject* object_ = nullptr;
  static inline std::atomic<bool> released_ = false;
  UINT_PTR timer_;
};

TEST_F(InitTest, MissingOfflineDatabaseIsToldAndInitFails) {
  object.put(L"UseOfflineDB", true);
  object.put(L"LocalTaloraDirectory", scratchPath(L"nowhere"));
  Outcome outcome;
  const std::wstring text = textOfBoxShownBy([&] { outcome = object.call(L"Init"); });
  EXPECT_FALSE(outcome.truth());
  EXPECT_EQ(text,
            L"Local configuration database was not set or could not be found.  Cannot load PACS "
            L"configurations in Stand Alone mode");
  EXPECT_FALSE(object.get(L"Initialized").truth());
  EXPECT_TRUE(object.get(L"colPACSConfig").object().isNothing());
}

TEST_F(InitTest, LogFileAndDepthReachTheLog) {
  const std::wstring file = scratchPath(L"component.log");
  object.put(L"LogFile", file);
  object.put(L"DebugMode", L"9");
  object.put(L"SQLDSN", L"TlTestSite");
  EXPECT_TRUE(object.call(L"Init").truth());
  EXPECT_NE(readBytes(file).find(" DEBUG9  [TLPACSCFG] Connecting to database\r\n"),
            std::string::npos);
  object.put(L"LogFile", L"");
}

TEST_F(InitTest, ShowFormAnswersZeroOnceTheListIsClosed) {
  object.put(L"SQLDSN", L"TlTestSite");
  ASSERT_TRUE(object.call(L"Init").truth());
  Outcome code;
  closeWindowShownBy(L"Workstation List", [&] { code = object.call(L"ShowForm"); });
  EXPECT_EQ(code.type(), VT_UI1);
  EXPECT_EQ(code.number(), 0);
}

TEST_F(InitTest, HostMayLetGoOfTheObjectWhileItsWindowIsShown) {
  object.put(L"SQLDSN", L"TlTestSite");
  ASSERT_TRUE(object.call(L"Init").truth());
  IDispatch* const dispatch = object.get();
  const DISPID showForm = object.idOf(L"ShowForm");
  const ULONG references = (dispatch->AddRef(), dispatch->Release());
  ASSERT_EQ(references, 1U);
  const Releaser releaser(object);
  OwnedVariant code;
  DISPPARAMS none{};
  HRESULT status = E_FAIL;
  closeWindowShownBy(
      L"Workstation List",
      [&] {
        status = dispatch->Invoke(showForm, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &none,
                                  code.out(), nullptr, nullptr);
      },
      [&] { return releaser.released(); });
  EXPECT_TRUE(object.isNothing());
  EXPECT_EQ(nameOf(status), "S_OK");
  EXPECT_EQ(code.get().bVal, 0);
  EXPECT_TRUE(host.mayUnload());
}

}  // namespace
}  // namespace tlpacscfg::test
