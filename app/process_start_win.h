// What is settled before anything else runs in the program.
#pragma once

/// From here on libraries are loaded from the system's folder only, unless their full path is
/// given. Those of the import table are there already; the program's load configuration sees to
/// them.
void loadLibrariesFromSystemOnly();

/// Removes from this program's environment the paths where the debug-help library would look for
/// symbols by itself: one of them may name a server, and nothing is to be fetched that nobody asked
/// for.
void forgetSymbolPaths();
