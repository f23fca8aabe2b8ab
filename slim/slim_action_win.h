// The Slim button.
#pragma once

#include "base/action_host.h"

/// Lets the user pick documents, asks for confirmation and slims them; reports to the log. Runs
/// on the calling thread until all is done.
void onSlimFiles(WindowHandle owner, const ActionHost& host);
