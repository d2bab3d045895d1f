#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "automation/call_arguments.h"
#include "automation/com_class.h"
#include "support/scope_exit.h"
#include "support/secret.h"

namespace tlpacscfg {

namespace member_table {

/// The types of the parameters that follow the object.
template <class Function>
struct Signature : Signature<decltype(&Function::operator())> {};
template <class Result, class Core, class... Values>
struct Signature<Result (Core::*)(Values...)> {
  using Types = std::tuple<std::decay_t<Values>...>;
};
template <class Result, class Core, class... Values>
struct Signature<Result (Core::*)(Values...) const> : Signature<Result (Core::*)(Values...)> {};

template <class Types>
struct WithoutFirst;
template <class First, class... Rest>
struct WithoutFirst<std::tuple<First, Rest...>> {
  using Types = std::tuple<Rest...>;
};

/// A lambda names the object as its first parameter; a member function does not.
template <class Function>
using ParameterTypes =
    typename std::conditional_t<std::is_member_function_pointer_v<Function>, Signature<Function>,
                                WithoutFirst<typename Signature<Function>::Types>>::Types;

inline OwnedVariant toVariant(OwnedVariant value) { return value; }
template <class Value>
OwnedVariant toVariant(const Value& value) {
  return OwnedVariant(value);
}
template <class Core>
OwnedVariant toVariant(const std::shared_ptr<Core>& core) {
  return OwnedVariant(wrap(core));
}

/// Passes the object, or the shared_ptr to it if the function takes that.
template <class Function, class Core, class... Values>
OwnedVariant call(const Function& function, const std::shared_ptr<Core>& core, Values&&... values) {
  const auto run = [&](auto&& object) -> OwnedVariant {
    using Result = std::invoke_result_t<const Function&, decltype(object), Values...>;
    if constexpr (std::is_void_v<Result>) {
      std::invoke(function, object, std::forward<Values>(values)...);
      return OwnedVariant();
    } else {
      return toVariant(std::invoke(function, object, std::forward<Values>(values)...));
    }
  };
  if constexpr (std::is_invocable_v<const Function&, Core&, Values...>) {
    return run(*core);
  } else {
    return run(core);
  }
}

}  // namespace member_table

/// Builds the member table of one C++ class. Arguments and results are converted by their C++
/// types; a function may be a member function or a lambda that takes the object first.
template <class Core>
class MemberTable {
 public:
  using Names = std::vector<std::wstring>;

  /// A property stored in a variable: a data member, or the referent of a function of the object.
  template <class Place>
  MemberTable& field(const wchar_t* name, DISPID id, Place place) {
    using Value = std::decay_t<std::invoke_result_t<Place, Core&>>;
    get(name, id, [place](Core& core) { return std::invoke(place, core); });
    return put(name, id,
               [place](Core& core, Value value) { std::invoke(place, core) = std::move(value); });
  }

  /// A text field of which no copies remain in the memory of the component.
  template <class Place>
  MemberTable& secret(const wchar_t* name, DISPID id, Place place) {
    get(name, id, [place](Core& core) { return OwnedVariant(std::invoke(place, core)); });
    members_.push_back({name,
                        id,
                        MemberKind::Put,
                        {L"value"},
                        0,
                        [place](const std::shared_ptr<void>& core, Arguments& arguments) {
                          auto value = arguments.get<std::wstring>(0);
                          const ScopeExit wiping([&] { wipe(value); });
                          std::wstring& kept = std::invoke(place, *static_cast<Core*>(core.get()));
                          wipe(kept);
                          // A move could leave the characters in memory that is not wiped.
                          kept = value;
                          return OwnedVariant();
                        }});
    return *this;
  }

  template <class Function>
  MemberTable& get(const wchar_t* name, DISPID id, Function function) {
    return add(name, id, MemberKind::Get, {}, 0, function);
  }

  template <class Function>
  MemberTable& put(const wchar_t* name, DISPID id, Function function) {
    return add(name, id, MemberKind::Put, {L"value"}, 0, function);
  }

  template <class Function>
  MemberTable& putRef(const wchar_t* name, DISPID id, Function function) {
    return add(name, id, MemberKind::PutRef, {L"value"}, 0, function);
  }

  template <class Function>
  MemberTable& method(const wchar_t* name, DISPID id, const Names& parameters, Function function) {
    return add(name, id, MemberKind::Method, parameters, 0, function);
  }

  /// A method that reads its arguments itself: for by-reference results and optional arguments.
  MemberTable& rawMethod(const wchar_t* name, DISPID id, const Names& parameters,
                         std::size_t optional,
                         std::function<OwnedVariant(Core& core, Arguments& arguments)> function) {
    members_.push_back({name, id, MemberKind::Method, parameters, optional,
                        [function](const std::shared_ptr<void>& core, Arguments& arguments) {
                          return function(*static_cast<Core*>(core.get()), arguments);
                        }});
    return *this;
  }

  std::vector<Member> members() { return std::move(members_); }

 private:
  template <class Function>
  MemberTable& add(const wchar_t* name, DISPID id, MemberKind kind, const Names& parameters,
                   std::size_t optional, Function function) {
    using Types = member_table::ParameterTypes<Function>;
    members_.push_back({name, id, kind, parameters, optional,
                        [function](const std::shared_ptr<void>& core, Arguments& arguments) {
                          return invoke(function, std::static_pointer_cast<Core>(core), arguments,
                                        static_cast<Types*>(nullptr),
                                        std::make_index_sequence<std::tuple_size_v<Types>>());
                        }});
    return *this;
  }

  template <class Function, class... Values, std::size_t... Index>
  static OwnedVariant invoke(const Function& function, const std::shared_ptr<Core>& core,
                             [[maybe_unused]] Arguments& arguments, std::tuple<Values...>*,
                             std::index_sequence<Index...>) {
    // Braces fix the order: the first argument that does not convert is the one reported.
    std::tuple<Values...> values{arguments.get<Values>(Index)...};
    return member_table::call(function, core, std::move(std::get<Index>(values))...);
  }

  std::vector<Member> members_;
};

}  // namespace tlpacscfg
