#include "com/classes/collection_class.h"

#include "config/pacs_configuration.h"
#include "workstation/workstation.h"

namespace tlpacscfg {

template <>
const ComClass& comClassOf<KeyedCollection<clsPACSConfiguration>>() {
  static const ComClass type{CLSID_Collection, DIID__Collection,
                             collection_class::members<clsPACSConfiguration>()};
  return type;
}

template <>
const ComClass& comClassOf<KeyedCollection<clsWorkstation>>() {
  static const ComClass type{CLSID_Collection, DIID__Collection,
                             collection_class::members<clsWorkstation>()};
  return type;
}

}  // namespace tlpacscfg
