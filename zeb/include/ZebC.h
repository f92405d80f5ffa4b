#ifndef ZEBC_H
#define ZEBC_H

/* The flat function layer of the camera SDK. */

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Status codes: the values of ZebCPP::ZebErrorType (0 success, -1 ... -18). */
typedef int32_t ZebError_t;
/* Bit set of access modes: 1 full, 2 read, 4 config, 8 exclusive. */
typedef uint32_t ZebAccessMode_t;
/* 0 unknown, 1 GigE Vision, 2 USB3 Vision, 3 Camera Link, 4 CoaXPress, 5 custom. */
typedef int32_t ZebInterfaceType_t;

#define ZEB_INFO_STRING_SIZE 256

/* Description of one camera; the strings are NUL-terminated, cut to fit. */
typedef struct ZebCameraInfo {
    char cameraId[ZEB_INFO_STRING_SIZE];         /* plain camera ID */
    char cameraIdExtended[ZEB_INFO_STRING_SIZE]; /* ID unique across transport layers */
    char cameraName[ZEB_INFO_STRING_SIZE];
    char modelName[ZEB_INFO_STRING_SIZE];
    char serialNumber[ZEB_INFO_STRING_SIZE];
    char interfaceId[ZEB_INFO_STRING_SIZE];
    ZebAccessMode_t permittedAccess;             /* access another open could get now */
    ZebInterfaceType_t interfaceType;
} ZebCameraInfo;

/* Fills *info for the camera with this plain or extended ID. sizeofInfo must be
   sizeof(ZebCameraInfo) (-8 otherwise); a null argument gives -7, an unknown ID
   -3, a system that is not started -2. */
ZebError_t ZebCameraInfoQuery(const char* idString, ZebCameraInfo* info, uint32_t sizeofInfo);

#ifdef __cplusplus
}
#endif

#endif
