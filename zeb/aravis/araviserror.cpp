#include "aravis/araviserror.h"

#include <arv.h>

namespace ZebCPP {

namespace {

ZebErrorType deviceError(int code)
{
    switch (code) {
    case ARV_DEVICE_ERROR_WRONG_FEATURE:
        return ZebErrorWrongType;
    case ARV_DEVICE_ERROR_FEATURE_NOT_FOUND:
    case ARV_DEVICE_ERROR_NOT_FOUND:
    case ARV_DEVICE_ERROR_GENICAM_NOT_FOUND:
        return ZebErrorNotFound;
    case ARV_DEVICE_ERROR_NOT_CONNECTED:
        return ZebErrorBadHandle;
    case ARV_DEVICE_ERROR_TIMEOUT:
        return ZebErrorTimeout;
    case ARV_DEVICE_ERROR_INVALID_PARAMETER:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_PARAMETER:
        return ZebErrorBadParameter;
    case ARV_DEVICE_ERROR_NO_STREAM_CHANNEL:
        return ZebErrorResources;
    case ARV_DEVICE_ERROR_NOT_CONTROLLER:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED:
        return ZebErrorInvalidAccess;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED:
        return ZebErrorNotImplemented;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_BAD_ALIGNMENT:
        return ZebErrorInvalidValue;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY:
        return ZebErrorResources;
    default:
        return ZebErrorTransportLayer;
    }
}

ZebErrorType genicamError(int code)
{
    switch (code) {
    case ARV_GC_ERROR_NODE_NOT_FOUND:
        return ZebErrorNotFound;
    case ARV_GC_ERROR_ENUM_ENTRY_NOT_FOUND:
    case ARV_GC_ERROR_OUT_OF_RANGE:
    case ARV_GC_ERROR_INVALID_LENGTH:
        return ZebErrorInvalidValue;
    case ARV_GC_ERROR_READ_ONLY:
        return ZebErrorInvalidAccess;
    case ARV_GC_ERROR_NO_DEVICE_SET:
        return ZebErrorDeviceNotOpen;
    default:
        return ZebErrorInternalFault; // a malformed description: property, pValue, syntax ...
    }
}

} // namespace

ZebErrorType zebErrorOf(const GError* error)
{
    if (error == nullptr)
        return ZebErrorSuccess;
    if (error->domain == ARV_DEVICE_ERROR)
        return deviceError(error->code);
    if (error->domain == ARV_GC_ERROR)
        return genicamError(error->code);
    if (error->domain == G_IO_ERROR)
        return error->code == G_IO_ERROR_TIMED_OUT ? ZebErrorTimeout : ZebErrorTransportLayer;
    return ZebErrorTransportLayer;
}

bool isConnectionLost(const GError* error)
{
    return error != nullptr && error->domain == ARV_DEVICE_ERROR
        && (error->code == ARV_DEVICE_ERROR_TIMEOUT || error->code == ARV_DEVICE_ERROR_NOT_CONNECTED);
}

} // namespace ZebCPP
