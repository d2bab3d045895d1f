#include <objbase.h>

#include <atomic>
#include <functional>
#include <thread>

#include "com/com_fixture.h"

/// The state that the objects share belongs to one thread at a time.
namespace tlpacscfg::test {
namespace {

/// Runs the work on a thread with an apartment of its own.
void inAnotherApartment(const std::function<void()>& work) {
  std::thread([&] {
    EXPECT_EQ(nameOf(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)), "S_OK");
    work();
    CoUninitialize();
  }).join();
}

struct Creation {
  HRESULT result;
  ComPtr<IDispatch> object;
};

CLSID classId(const wchar_t* progId) {
  CLSID id{};
  EXPECT_EQ(nameOf(CLSIDFromProgID(progId, &id)), "S_OK");
  return id;
}

Creation create(const CLSID& id) {
  Creation creation;
  creation.result = CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                     reinterpret_cast<void**>(creation.object.out()));
  return creation;
}

std::wstring takeErrorInfo() {
  ComPtr<IErrorInfo> info;
  BSTR text = nullptr;
  if (GetErrorInfo(0, info.out()) == S_OK) info->GetDescription(&text);
  const std::wstring description(text ? text : L"", SysStringLen(text));
  SysFreeString(text);
  return description;
}

const std::string kWrongThread = nameOf(RPC_E_WRONG_THREAD);
constexpr const wchar_t* kReason = L"The component is in use on another thread";

using ApartmentsTest = ComTest;

TEST_F(ApartmentsTest, AnotherApartmentCreatesNothingWhileAnObjectLives) {
  HostObject config = HostObject::create(kConfig);
  config.put(L"DebugMode", 9);
  inAnotherApartment([] {
    for (const wchar_t* progId : {kConfig, kRegistry}) {
      const Creation refused = create(classId(progId));
      EXPECT_EQ(nameOf(refused.result), kWrongThread);
      EXPECT_FALSE(refused.object);
      EXPECT_EQ(takeErrorInfo(), kReason);
    }
  });
  EXPECT_EQ(config.get(L"DebugMode").number(), 9);
  config.release();
  EXPECT_TRUE(host.mayUnload());
}

TEST_F(ApartmentsTest, AnotherApartmentMayCreateWhenTheLastObjectHasGone) {
  HostObject::create(kConfig).release();
  inAnotherApartment([this] {
    const Creation created = create(classId(kConfig));
    EXPECT_EQ(nameOf(created.result), "S_OK");
    EXPECT_FALSE(host.mayUnload());
  });
  EXPECT_TRUE(host.mayUnload());
  HostObject::create(kConfig);
}

TEST_F(ApartmentsTest, ACallThatArrivesOnAnotherThreadIsRefused) {
  const HostObject config = HostObject::create(kConfig);
  config.put(L"User_ID", 12);
  inAnotherApartment([&] {
    expectRefused(config.put(L"User_ID", 13), RPC_E_WRONG_THREAD, kReason);
    expectRefused(config.get(L"User_ID"), RPC_E_WRONG_THREAD, kReason);
  });
  EXPECT_EQ(config.get(L"User_ID").number(), 12);
}

TEST_F(ApartmentsTest, OfTwoThatCreateAtTheSameTimeOnlyOneSucceeds) {
  // Assertions are not thread-safe.
  std::atomic<int> owners = 0, created = 0, together = 0, otherwise = 0;
  const CLSID id = classId(kConfig);
  const auto tryToCreate = [&] {
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    for (int i = 0; i < 500; ++i) {
      Creation creation = create(id);
      if (creation.object) {
        ++created;
        if (++owners > 1) ++together;
        std::this_thread::yield();
        --owners;
      } else if (creation.result != RPC_E_WRONG_THREAD) {
        ++otherwise;
      }
    }
    CoUninitialize();
  };
  std::thread other(tryToCreate);
  std::thread another(tryToCreate);
  other.join();
  another.join();
  EXPECT_GT(created, 0);
  EXPECT_EQ(together, 0);
  EXPECT_EQ(otherwise, 0);
  EXPECT_TRUE(host.mayUnload());
}

class EnumerationApartmentsTest : public ComSiteTest {};

TEST_F(EnumerationApartmentsTest, ItemsAreNotHandedOutOnAnotherThread) {
  addConfiguration(1);
  const HostObject object = initialised();
  const HostObject records = object.get(L"colPACSConfig").object().get(L"ColPACSConfigs").object();
  const auto items = enumeratorOf(records);
  ASSERT_TRUE(items);
  inAnotherApartment([&] {
    VARIANT item{};
    EXPECT_EQ(nameOf(items->Next(1, &item, nullptr)), kWrongThread);
    ComPtr<IEnumVARIANT> copy;
    EXPECT_EQ(nameOf(items->Clone(copy.out())), kWrongThread);
  });
  VARIANT item{};
  EXPECT_EQ(nameOf(items->Next(1, &item, nullptr)), "S_OK");
  VariantClear(&item);
}

}  // namespace
}  // namespace tlpacscfg::test
