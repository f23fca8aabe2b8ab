// The services of the running program: registry, cache file and WinHTTP.
#pragma once

#include "cloud/services.h"

CloudServices SystemCloudServices();
