#pragma once

#include "zebtypes.h"

#include <glib.h>

namespace ZebCPP {

// The one translation of libaravis errors into SDK status codes. A null error
// is success.
ZebErrorType zebErrorOf(const GError* error);

// Whether the error means the device stopped answering, so that further calls
// would only wait for the same timeout again.
bool isConnectionLost(const GError* error);

} // namespace ZebCPP
