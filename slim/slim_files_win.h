// The procedure's files on Windows.
#pragma once

#include "slim/slim_files.h"

/// Files are read while others may read them too but nobody may have them open for writing.
SlimFiles realSlimFiles();
