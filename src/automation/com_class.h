#pragma once

#include <oaidl.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "automation/com_ptr.h"
#include "automation/owned_variant.h"

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
  /// The number of last parameters that may be left out.
  std::size_t optional;
  std::function<OwnedVariant(const std::shared_ptr<void>& core, Arguments& arguments)> handler;
};

/// What hosts see of one C++ class.
struct ComClass {
  const CLSID& id;
  const IID& interfaceId;
  std::vector<Member> members;
};

/// The COM class of a C++ class: one specialisation for each, beside its member table.
template <class Core>
const ComClass& comClassOf();

/// The COM object that stands for a C++ object: the same one as long as it is referenced.
ComPtr<IDispatch> wrapObject(const std::shared_ptr<void>& core, const ComClass& type);

/// The C++ object; null when the COM object is not one of this DLL and class.
std::shared_ptr<void> unwrapObject(const ComPtr<IUnknown>& object, const ComClass& type);

/// Null for null.
template <class Core>
ComPtr<IDispatch> wrap(const std::shared_ptr<Core>& core) {
  return core ? wrapObject(core, comClassOf<Core>()) : nullptr;
}

}  // namespace tlpacscfg
