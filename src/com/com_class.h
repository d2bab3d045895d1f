#pragma once

#include <oaidl.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "automation/com_ptr.h"
#include "com/variant.h"

namespace tlpacscfg {

class Arguments;

enum class MemberKind { Get, Put, PutRef, Method };

/// One way to call one member of a class. A property that can be read and written is two of them,
/// with the same name and number.
struct Member {
  std::wstring name;
  DISPID id;
  MemberKind kind;
  /// The value alone for a put.
  std::vector<std::wstring> parameters;
  /// So many of the last parameters may be left out.
  std::size_t optional;
  std::function<Variant(const std::shared_ptr<void>& core, Arguments& arguments)> handler;
};

/// What hosts see of one class of the core.
struct ComClass {
  const CLSID& id;
  const IID& interfaceId;
  std::vector<Member> members;
};

/// The face of a core class: one specialisation for each, beside its member table.
template <class Core>
const ComClass& comClassOf();

/// The object that hosts see of a core object: the same one as long as anybody holds it.
ComPtr<IDispatch> wrapObject(const std::shared_ptr<void>& core, const ComClass& type);

/// Nothing when the object is none of the component's of that class.
std::shared_ptr<void> unwrapObject(const ComPtr<IUnknown>& object, const ComClass& type);

/// Nothing for nothing.
template <class Core>
ComPtr<IDispatch> wrap(const std::shared_ptr<Core>& core) {
  return core ? wrapObject(core, comClassOf<Core>()) : nullptr;
}

}  // namespace tlpacscfg
