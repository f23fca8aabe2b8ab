#include "app/session.h"

#include <utility>

void replaceInstances(Session& session, std::vector<CdrInstance> instances) {
    session.instances = std::move(instances);
    session.selectedInstance =
        RepairedSelection(session.selectedInstance, session.instances.size());
}

std::wstring signatureLabel(const std::wstring& status) {
    const std::size_t parenthesis = status.find(L'\uFF08');
    return parenthesis == std::wstring::npos ? status : status.substr(parenthesis);
}
