// The anonymous submission of a captured stack that no rule explained. Stands above diagnosis/,
// unlike the reader and the transport of this folder.
#pragma once

#include <string>

#include "base/action_host.h"
#include "cloud/services.h"
#include "diagnosis/capture_action.h"

/// What is sent: a JSON text in UTF-8 with CorelDRAW's and the tool's version, the number of the
/// suspect's category, and module and function names from the top of the stack. Frames without a
/// module are left out. Names are not escaped.
std::string SubmissionBody(const LastCapture& capture);

/// Sends the capture, if the network is allowed. Returns the outcome as shown to the user. Blocks
/// for the request.
std::wstring SubmitLastCapture(const LastCapture& capture, const CloudServices& services);

/// The action around `SubmitLastCapture`: needs a capture, and the user's consent.
void OnSubmit(const ActionHost& host, const LastCapture& capture, const CloudServices& services);
