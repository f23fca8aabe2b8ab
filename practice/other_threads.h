// Hanging because of another thread, which hangs in a library.
#pragma once

#include "practice/handshake.h"

/// Waits for a critical section, or a mutex, that a thread in a plug-in holds.
void SaveDocument(Handshake& handshake);
void ExportDocument(Handshake& handshake);

/// The same as `SaveDocument`, in a process with forty threads more.
void SaveDocumentInACrowd(Handshake& handshake);

/// Waits as a COM call without a message loop does, for a thread in a library that should answer.
void UpdateLinkedObject(Handshake& handshake);
