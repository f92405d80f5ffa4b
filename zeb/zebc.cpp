#include "ZebC.h"

#include "ZebCPP.h"
#include "zebboundary.h"

#include <algorithm>
#include <cstring>

using namespace ZebCPP;

namespace {

void copyField(const std::string& text, char (&field)[ZEB_INFO_STRING_SIZE])
{
    const size_t n = std::min(text.size(), sizeof(field) - 1);
    std::memcpy(field, text.data(), n);
    field[n] = '\0';
}

} // namespace

extern "C" ZebError_t ZebCameraInfoQuery(const char* idString, ZebCameraInfo* info, uint32_t sizeofInfo)
{
    if (idString == nullptr || info == nullptr)
        return ZebErrorBadParameter;
    if (sizeofInfo != sizeof(ZebCameraInfo))
        return ZebErrorStructSize;
    return guarded([&] {
        CameraPtr camera;
        ZebErrorType err = ZebSystem::GetInstance().GetCameraByID(idString, camera);
        if (err != ZebErrorSuccess)
            return err;
        ZebCameraInfo result{};
        std::string text;
        camera->GetID(text);
        copyField(text, result.cameraId);
        camera->GetExtendedID(text);
        copyField(text, result.cameraIdExtended);
        camera->GetName(text);
        copyField(text, result.cameraName);
        camera->GetModel(text);
        copyField(text, result.modelName);
        camera->GetSerialNumber(text);
        copyField(text, result.serialNumber);
        camera->GetInterfaceID(text);
        copyField(text, result.interfaceId);
        AccessModeType access = AccessModeNone;
        err = camera->GetPermittedAccess(access);
        if (err != ZebErrorSuccess)
            return err;
        result.permittedAccess = access;
        InterfaceType type = InterfaceTypeUnknown;
        camera->GetInterfaceType(type);
        result.interfaceType = type;
        *info = result;
        return ZebErrorSuccess;
    });
}
