#include <initializer_list>
#include <vector>

#include "com/com_fixture.h"

#if defined(__i386__)

/// 32-bit callers compiled by others align the stack for words only, at any place.
namespace tlpacscfg::test {
namespace {

using Word = std::uint32_t;

template <class Pointer>
Word word(Pointer* pointer) {
  return reinterpret_cast<Word>(pointer);
}

/// Calls a function that removes its arguments, with the stack this far below a multiple of 16 when
/// it is entered.
HRESULT callAt(Word below, Word function, const std::vector<Word>& arguments) {
  const Word* first = arguments.data();
  const Word* end = first + arguments.size();
  // The arguments and the return address lie above the place where the function begins.
  const Word room = (below + 16 - (4 * (arguments.size() + 1)) % 16) % 16;
  HRESULT result = E_UNEXPECTED;
  asm volatile(
      "movl %%esp, %%edi\n\t"
      "andl $-16, %%esp\n\t"
      "subl %[room], %%esp\n"
      "1:\n\t"
      "subl $4, %%esi\n\t"
      "pushl (%%esi)\n\t"
      "cmpl %%ecx, %%esi\n\t"
      "ja 1b\n\t"
      "call *%%edx\n\t"
      "movl %%edi, %%esp"
      : "=a"(result), "+S"(end), "+c"(first), "+d"(function)
      : [room] "b"(room)
      : "edi", "memory", "cc");
  return result;
}

class StackAlignmentTest : public ComSiteTest {};

TEST_F(StackAlignmentTest, TheComponentWorksWhereverTheStackBegins) {
  for (const Word below : {0U, 4U, 8U, 12U}) {
    SCOPED_TRACE(below);
    const auto getClassObject = reinterpret_cast<Word>(
        reinterpret_cast<void*>(GetProcAddress(host.component(), "DllGetClassObject")));
    CLSID classId{};
    ASSERT_EQ(CLSIDFromProgID(kConfig, &classId), S_OK);
    ComPtr<IClassFactory> factory;
    ASSERT_EQ(callAt(below, getClassObject,
                     {word(&classId), word(&IID_IClassFactory), word(factory.out())}),
              S_OK);
    ComPtr<IDispatch> object;
    ASSERT_EQ(
        factory->CreateInstance(nullptr, IID_IDispatch, reinterpret_cast<void**>(object.out())),
        S_OK);
    const Word* const methods = *reinterpret_cast<Word**>(object.get());
    const auto call = [&](const wchar_t* name, WORD flags, DISPPARAMS& passed, VARIANT* result) {
      constexpr std::size_t kGetIDsOfNames = 5, kInvoke = 6;
      auto* letters = const_cast<wchar_t*>(name);
      DISPID id = DISPID_UNKNOWN;
      const HRESULT status =
          callAt(below, methods[kGetIDsOfNames],
                 {word(object.get()), word(&IID_NULL), word(&letters), 1, 0, word(&id)});
      if (status != S_OK) return status;
      return callAt(below, methods[kInvoke],
                    {word(object.get()), static_cast<Word>(id), word(&IID_NULL), 0, flags,
                     word(&passed), word(result), 0, 0});
    };
    DISPID put = DISPID_PROPERTYPUT;
    OwnedVariant source(std::wstring_view(L"TlTestSite"));
    VARIANT passed = source.get();
    DISPPARAMS one{&passed, &put, 1, 1}, none{};
    EXPECT_EQ(call(L"SQLDSN", DISPATCH_PROPERTYPUT, one, nullptr), S_OK);
    OwnedVariant answer;
    EXPECT_EQ(call(L"Init", DISPATCH_METHOD, none, answer.out()), S_OK);
    EXPECT_EQ(answer.get().boolVal, VARIANT_TRUE);
  }
}

}  // namespace
}  // namespace tlpacscfg::test

#endif
