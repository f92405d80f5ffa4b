#pragma once

// The object layer of the camera SDK: include this one header.

#include "camera.h"
#include "feature.h"
#include "featurecontainer.h"
#include "frame.h"
#include "icameralistobserver.h"
#include "iinterfacelistobserver.h"
#include "interface.h"
#include "stream.h"
#include "transportlayer.h"
#include "zebsystem.h"
#include "zebtypes.h"
