#include "com/creatable_classes.h"

#include <memory>

#include "com/com_class.h"
#include "com/identities.h"
#include "host/config.h"
#include "support/brnkregs.h"

namespace tlpacscfg {
namespace {

template <class Core>
ComPtr<IDispatch> create() {
  return wrap(std::make_shared<Core>());
}

const CreatableClass kClasses[] = {
    {CLSID_clsConfig, L"TLPACSCFG.clsConfig", create<clsConfig>},
    {CLSID_brnkregs, L"TLPACSCFG.brnkregs", create<brnkregs>},
};

}  // namespace

std::span<const CreatableClass> creatableClasses() { return kClasses; }

}  // namespace tlpacscfg
