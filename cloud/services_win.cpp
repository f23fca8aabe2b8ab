#include "cloud/services_win.h"

#include "cloud/cache_file_win.h"
#include "cloud/https_win.h"
#include "cloud/settings_win.h"

CloudServices SystemCloudServices() {
    return {IsNetworkEnabled, SetNetworkEnabled, ReadCacheFile, WriteCacheFile, HttpsRequest};
}
