#include "module/resources/Resources.h"

#include "module/resources/Groups.h"
#include "module/resources/KSamples.h"
#include "module/resources/Kaplan.h"
#include "module/resources/LifeTables.h"
#include "module/resources/Regression.h"
#include "module/resources/RegressionResults.h"
#include "module/resources/Shared.h"
#include "module/resources/Startup.h"
#include "module/resources/TimeDependent.h"
#include "module/resources/TwoSamples.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

namespace ozm::survival {
namespace {

// The only place that knows the resources of all analyses.

constexpr std::span<const StringResource> stringTables[] = {
    startupStrings,   sharedStrings,           groupStrings,
    kaplanStrings,    twoSampleStrings,        kSampleStrings,
    lifeTableStrings, regressionStrings,       regressionResultStrings,
    coxResultStrings, parametricResultStrings, timeDependentStrings};

constexpr const DialogTemplate* dialogs[] = {&taskTemplate,
                                             &lifeRawTemplate,
                                             &lifeTableTemplate,
                                             &lifeResultsTemplate,
                                             &kaplanTemplate,
                                             &kaplanResultsTemplate,
                                             &twoTemplate,
                                             &twoResultsTemplate,
                                             &ksTemplate,
                                             &ksResultsTemplate,
                                             &regressionTemplate,
                                             &timeDependentTemplate,
                                             &estimationSpecificationTemplate,
                                             &estimationTemplates[0],
                                             &estimationTemplates[1],
                                             &estimationTemplates[2],
                                             &regressionResultsTemplate};

/// In the library's order of declaration.
constexpr AutomationInterface interfaces[] = {
    startupInterface,    lifeRawInterface,          lifeTableInterface,  lifeResultsInterface,
    kaplanInterface,     kaplanResultsInterface,    twoInterface,        twoResultsInterface,
    ksInterface,         ksResultsInterface,        regressionInterface, timeDependentInterface,
    estimationInterface, regressionResultsInterface};

constexpr std::string_view surMethod[] = {"scSurLifeTablesAndDistributions", "scSurKaplanMeierProductLimit",
                                          "scSurComparingTwoSamples",        "scSurComparingMultipleSamples",
                                          "scSurRegressionModels",           "scSurTimeDependentCovariates"};
constexpr std::string_view surResultsForModel[] = {"scSurExponential", "scSurLinearHazard", "scSurGompertz",
                                                   "scSurWeibull"};
constexpr std::string_view surRegressionModel[] = {"scSurProportionalHazardRegression",
                                                   "scSurExponentialRegression", "scSurLogNormalRegression",
                                                   "scSurNormalRegression"};
constexpr std::string_view surTypeOfInputDataTabs[] = {"scSurRawData", "scSurTableOfSurvivalTimes"};
constexpr AutomationEnumeration enumerations[] = {
    {"SurMethod", surMethod},
    {"SurResultsForModel", surResultsForModel},
    {"SurRegressionModel", surRegressionModel},
    {"SurTypeOfInputDataTabs", surTypeOfInputDataTabs},
};
constexpr TypeLibrary library{"OZMSurvival", "KORVANA Survival Analysis Library", enumerations, interfaces};

/// Whether no two of a list have the same key.
template <class List, class Key>
constexpr bool AllDiffer(const List& list, Key key) {
    for (auto one = std::begin(list); one != std::end(list); ++one)
        for (auto other = std::next(one); other != std::end(list); ++other)
            if (key(*one) == key(*other)) return false;
    return true;
}

constexpr auto numberOf = [](const StringResource& text) { return text.id; };

constexpr auto allStrings = [] {
    constexpr std::size_t count = [] {
        std::size_t sum = 0;
        for (const auto& table : stringTables)
            sum += table.size();
        return sum;
    }();
    std::array<StringResource, count> all{};
    auto next = all.begin();
    for (const auto& table : stringTables)
        next = std::copy(table.begin(), table.end(), next);
    std::ranges::sort(all, {}, numberOf);
    return all;
}();

static_assert(std::ranges::all_of(stringTables,
                                  [](const auto& t) { return std::ranges::is_sorted(t, {}, numberOf); }),
              "the texts of a list stand in the order of their numbers");
static_assert(std::ranges::adjacent_find(allStrings, {}, numberOf) == allStrings.end(),
              "two texts have the same number");
/// Dialogs with one number are forms of one dialog: they have its title and its pages.
constexpr bool AreFormsOfOne(const DialogTemplate& one, const DialogTemplate& other) {
    return one.title == other.title && std::ranges::equal(one.pages, other.pages);
}

static_assert(std::ranges::all_of(dialogs,
                                  [](const DialogTemplate* one) {
                                      return std::ranges::all_of(dialogs, [one](const DialogTemplate* other) {
                                          return one->number != other->number || AreFormsOfOne(*one, *other);
                                      });
                                  }),
              "two dialogs have the same number");
static_assert(std::ranges::all_of(dialogs,
                                  [](const DialogTemplate* dialog) {
                                      return AllDiffer(dialog->controls, [](const auto& c) { return c.id; });
                                  }),
              "two controls of a dialog have the same number");
static_assert(AllDiffer(interfaces, [](const AutomationInterface& i) { return i.name; }) &&
                  std::ranges::all_of(interfaces,
                                      [](const AutomationInterface& i) {
                                          return AllDiffer(i.members, [](const auto& m) { return m.name; });
                                      }),
              "two interfaces, or two members of one, have the same name");
static_assert(std::ranges::all_of(interfaces,
                                  [](const AutomationInterface& i) {
                                      return std::ranges::is_sorted(i.members, {}, &AutomationMember::added);
                                  }),
              "added members stand at the end of their interface");

} // namespace

const ModuleResources& Resources() {
    static constexpr ModuleResources resources{allStrings, dialogs, &library};
    return resources;
}

std::string_view Text(int id) {
    return Resources().String(id);
}

} // namespace ozm::survival
