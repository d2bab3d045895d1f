#include "com/identities.h"

#include <initguid.h>

// Made from the IDL: with initguid.h it defines every identifier.
#include "com/tlpacscfg.h"
