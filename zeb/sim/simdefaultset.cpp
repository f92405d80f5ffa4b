#include "sim/simdescription.h"

namespace ZebCPP {

// One camera for every case the application tells apart: mono and colour
// file-access cameras (revisions 3 and 4), a big-endian register-mode camera,
// an incompatible model and a camera another application holds.
const char* simDefaultCameraSetJson()
{
    return R"json({
  "transportLayers": [
    { "id": "SimGEV", "name": "GigE Vision", "type": "GigEVision", "path": "builtin:SimGigEVision",
      "interfaces": [ { "id": "sim-eth0", "name": "Simulated network card 0" },
                      { "id": "sim-eth1", "name": "Simulated network card 1" } ] },
    { "id": "SimU3V", "name": "USB3 Vision", "type": "USB3Vision", "path": "builtin:SimUSB3Vision",
      "interfaces": [ { "id": "sim-usb0", "name": "Simulated USB host controller" } ] }
  ],
  "cameras": [
    { "id": "DEV_KV1230001", "model": "kvd123MXGE", "serial": "KV1230001", "name": "Inspection mono",
      "interface": "sim-eth0", "bigEndian": true, "firmware": "FW 2.4.1 build 311",
      "mapAccess": "file", "mapRevision": 3, "mapSlots": 4, "mapMaxSize": 1000,
      "pixelColorFilter": true,
      "files": [ { "name": "UserData", "chunkId": 4098, "mode": "ReadWrite", "content": "user notes" },
                 { "name": "Firmware", "chunkId": 4099, "mode": "Write" } ],
      "sensor": { "width": 640, "height": 480, "colorFilter": "None", "seed": 11, "weak": 3, "border": 2 } },
    { "id": "DEV_PM5000002", "model": "pmq5CCX", "serial": "PM5000002", "name": "Line colour",
      "interface": "sim-usb0", "bigEndian": false, "firmware": "FW 3.1.0 build 42",
      "mapAccess": "file", "mapRevision": 4, "mapSlots": 3, "mapMaxSize": 500,
      "pixelColorFilter": false, "filename": false, "fileAccessLengthWritable": false,
      "files": [ { "name": "UserData", "chunkId": 4098, "mode": "ReadWrite" } ],
      "sensor": { "width": 640, "height": 480, "colorFilter": "BayerRG", "seed": 22, "stuck": 0, "weak": 2,
                  "border": 2 } },
    { "id": "DEV_RY1300003", "model": "ryn1300MGE", "serial": "RY1300003", "name": "Register mono",
      "interface": "sim-eth1", "bigEndian": true, "firmware": "FW 1.9.7",
      "mapAccess": "register", "mapRevision": 3, "mapSlots": 3, "mapMaxSize": 2000,
      "pixelColorFilter": false,
      "sensor": { "width": 1280, "height": 1024, "colorFilter": "None", "seed": 33, "weak": 3, "border": 2 } },
    { "id": "DEV_KV0120004", "model": "kvd12MXGE", "serial": "KV0120004", "name": "Old mono",
      "interface": "sim-eth0", "bigEndian": true, "mapAccess": "register",
      "sensor": { "width": 320, "height": 240, "seed": 44 } },
    { "id": "DEV_TB2000005", "model": "tb2MCX", "serial": "TB2000005", "name": "Held elsewhere",
      "interface": "sim-usb0", "bigEndian": false, "permittedAccess": 2,
      "sensor": { "width": 320, "height": 240, "seed": 55 } }
  ]
})json";
}

} // namespace ZebCPP
