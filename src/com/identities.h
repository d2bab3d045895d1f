#pragma once

#include <guiddef.h>

/// The GUIDs of the type library, its classes and their interfaces.
extern "C" {
extern const GUID LIBID_TLPACSCFG;
extern const GUID CLSID_clsConfig;
extern const GUID DIID__clsConfig;
extern const GUID CLSID_colPACSConfiguration;
extern const GUID DIID__colPACSConfiguration;
extern const GUID CLSID_clsPACSConfiguration;
extern const GUID DIID__clsPACSConfiguration;
extern const GUID CLSID_colWorkstation;
extern const GUID DIID__colWorkstation;
extern const GUID CLSID_clsWorkstation;
extern const GUID DIID__clsWorkstation;
extern const GUID CLSID_Collection;
extern const GUID DIID__Collection;
extern const GUID CLSID_brnkregs;
extern const GUID DIID__brnkregs;
}
