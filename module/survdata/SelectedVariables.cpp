#include "module/survdata/SelectedVariables.h"

#include <algorithm>
#include <string>
#include <utility>

namespace ozm::survival {
namespace {

std::string NameOf(CAnalysisSupport& host, int variable) {
    std::string name;
    (void)host.getvn5(variable, name);
    return name;
}

/// Lists of variables that are measured or counted.
constexpr bool HoldsNumbers(std::size_t list) {
    return list == ListSurvivalTimes || list == ListIntervalLimits || list == ListWithdrawn ||
           list == ListDying;
}

} // namespace

void TakeList(CAnalysisSupport& host, SharedSettings& shared, std::size_t list, std::vector<int> variables) {
    std::vector<std::string> names;
    for (const int variable : variables)
        names.push_back(NameOf(host, variable));
    shared.lists[list] = std::move(variables);
    shared.listNames[list] = std::move(names);
}

void FindListsAgain(CAnalysisSupport& host, SharedSettings& shared) {
    for (std::size_t list = 0; list < shared.lists.size(); ++list) {
        std::vector<int> found;
        for (const std::string& name : shared.listNames[list]) {
            const int variable = host.FindVariable(name);
            // A lookup may also match other letter case or a number in digits.
            if (variable == 0 || NameOf(host, variable) != name) break;
            if (HoldsNumbers(list) && host.HoldsTexts(variable)) break;
            found.push_back(variable);
        }
        if (found.size() != shared.listNames[list].size()) {
            found.clear();
            shared.listNames[list].clear();
        }
        shared.lists[list] = std::move(found);
    }
    if (shared.lists[ListSurvivalTimes].empty()) shared.timeVariables = 0;
}

} // namespace ozm::survival
