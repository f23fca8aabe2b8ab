// The chosen language, on disk and as Windows suggests it.
#pragma once

/// Makes the stored language current, or the one that suits Windows' user interface. Called once,
/// before there is a window.
void initLanguage();

/// Stores the current language in "config.json" in the tool's folder. A failure is silent.
void saveLanguage();
