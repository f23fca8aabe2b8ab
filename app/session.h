// What the program knows and works on, whatever its window shows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "cdr/cdr_instance.h"
#include "cloud/services.h"
#include "diagnosis/capture_action.h"
#include "diagnosis/rules.h"
#include "fixes/health/printer_switch.h"

struct Session {
    SignatureRuleBase rules;
    /// Shown on the Cloud page; empty until the signatures are loaded.
    std::wstring signatureStatus;
    LastCapture lastCapture;
    PrinterSwitch printerSwitch;
    CloudServices cloud;
    /// Replaced whole on every refresh.
    std::vector<CdrInstance> instances;
    /// Index into `instances`; -1 when the list is empty.
    std::int32_t selectedInstance = -1;
};

/// Replaces the instance list and keeps the selection valid.
void replaceInstances(Session& session, std::vector<CdrInstance> instances);

/// What the Cloud page shows of a loading status: from its full-width parenthesis on, if it has
/// one.
std::wstring signatureLabel(const std::wstring& status);
