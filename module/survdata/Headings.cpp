#include "module/survdata/Headings.h"

#include "module/resources/Groups.h"
#include "module/resources/Kaplan.h"
#include "module/resources/TwoSamples.h"
#include "module/resources/Resources.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace ozm::survival {
namespace {

struct Line {
    int id;
    std::string_view inFull;
};

constexpr Line shortened[] = {
    {StrKmColCumulative1, "Cumulative"}, {StrTwoColCumulative1, "Cumulative proportion"},
    {StrTwoColCumulative2, "surviving"}, {StrLtEntering, "number entering"},
    {StrLtCensored, "number censored"},  {StrLtDying, "number dying"},
    {StrLtSurviving, "% surviving"},     {StrLtCumulative, "cumulative % surviving"},
};

const Line* Find(int id) {
    const Line* found = std::find_if(std::begin(shortened), std::end(shortened),
                                     [id](const Line& line) { return line.id == id; });
    return found != std::end(shortened) ? found : nullptr;
}

} // namespace

std::string HeadingInFull(int line1, int line2) {
    const Line* first = Find(line1);
    const Line* second = Find(line2);
    if (first == nullptr && second == nullptr) return {};
    std::string heading{first != nullptr ? first->inFull : Text(line1)};
    const std::string_view rest = second != nullptr ? second->inFull : Text(line2);
    heading.erase(heading.find_last_not_of(' ') + 1);
    if (!rest.empty()) heading.append(heading.empty() ? "" : " ").append(rest);
    return heading;
}

} // namespace ozm::survival
