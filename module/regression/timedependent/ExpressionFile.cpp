#include "module/regression/timedependent/ExpressionFile.h"

#include "module/regression/timedependent/CovariateFaults.h"
#include "module/resources/Resources.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/ReportLines.h"

#include <charconv>
#include <string>
#include <utility>

namespace ozm::survival {
namespace {

constexpr std::string_view section = "Expressions";
constexpr std::string_view howMany = "HowManyExpressions";
constexpr std::string_view usualName = "NEW.INI";
constexpr std::string_view extension = ".INI";
constexpr std::string_view filter = "*.INI";
constexpr std::size_t longestValue = 1024;

bool IsHowMany(const std::string& keyword) {
    const DefinedCovariate known[] = {{std::string{howMany}, {}}};
    return FindDefined(known, keyword).has_value();
}

/// The number of expressions that a file says it has; 0 where it says nothing of the kind.
int HowManyIn(CAnalysisSupport& host, const std::string& path) {
    std::string value;
    if (!host.GetInitKeywordPrivate(path, section, howMany, value)) return 0;
    value = CleanText(value);
    int number = 0;
    const auto read = std::from_chars(value.data(), value.data() + value.size(), number);
    return read.ec == std::errc{} && read.ptr == value.data() + value.size() ? number : 0;
}

/// Adds what a file has to a list. Every value costs a pass over the file, so that only those are read that
/// there is room for.
class Merging {
public:
    Merging(CAnalysisSupport& host, CAnalysisDialog* window, const std::string& path,
            const std::vector<DefinedCovariate>& list)
        : host_(host), window_(window), path_(path), list_(list), fromFile_(list.size(), false) {}

    /// `announced`: what the file says it has.
    void TakeAll(const std::vector<std::string>& keywords, int announced);
    /// No expression at all.
    [[nodiscard]] bool NothingThere() const { return !tookAny_ && !noRoom_; }
    [[nodiscard]] std::vector<DefinedCovariate>& List() { return list_; }
    /// What was not taken, by the keywords; empty: everything was.
    [[nodiscard]] std::string WhatIsMissing() const;
    /// Says what was cut and what was left out.
    void Tell() const;

private:
    void Take(const std::string& keyword);

    struct Keywords {
        std::vector<std::string> some;
        std::size_t more = 0;

        void Add(const std::string& keyword) {
            constexpr std::size_t mostNamed = 10;
            constexpr std::size_t longest = 40;
            if (some.size() < mostNamed)
                some.push_back("'" + CutTo(CleanText(keyword), longest) + "'");
            else
                ++more;
        }
        [[nodiscard]] std::string Text() const { return Listed(some, 0, StrAndMore, more); }
    };

    /// Whether names that are there are given new expressions; asks the first time.
    bool Overwrites();
    /// The expression of a keyword, and its name in the list; false where it is left out.
    bool Read(const std::string& keyword, DefinedCovariate& covariate);

    CAnalysisSupport& host_;
    CAnalysisDialog* window_;
    const std::string& path_;
    std::vector<DefinedCovariate> list_;
    std::vector<bool> fromFile_; ///< which of them this file gave
    bool asked_ = false;
    bool overwrite_ = false;
    bool tookAny_ = false;
    bool noRoom_ = false;
    int announced_ = 0;
    int found_ = 0;
    Keywords cutNames_;
    Keywords cutExpressions_;
    Keywords leftOut_;
};

bool Merging::Overwrites() {
    if (!asked_)
        overwrite_ =
            host_.DisplayInstQuestion(host_.GetLibInstance(), window_, StrTimeOverwrite) == ButtonYes;
    asked_ = true;
    return overwrite_;
}

bool Merging::Read(const std::string& keyword, DefinedCovariate& covariate) {
    std::string value;
    if (!host_.GetInitKeywordPrivate(path_, section, keyword, value)) return false;
    const std::string text = CleanText(CutTo(value, longestValue));
    covariate.expression = CutTo(text, expressionWidth);
    if (covariate.expression.empty()) return false;
    if (covariate.expression.size() < text.size()) cutExpressions_.Add(covariate.name);
    if (CharactersOf(CleanText(keyword)) > nameWidth) cutNames_.Add(keyword);
    return true;
}

void Merging::Take(const std::string& keyword) {
    DefinedCovariate covariate{CutTo(CleanText(keyword), nameWidth), {}};
    const auto place = FindDefined(list_, covariate.name);
    const bool again = place && fromFile_[*place];
    if (again || !FaultOfName(covariate.name).empty()) return leftOut_.Add(keyword);
    const std::size_t at = place && Overwrites() ? *place : list_.size();
    if (at >= mostDefined) {
        noRoom_ = true;
        return;
    }
    if (!Read(keyword, covariate)) return leftOut_.Add(keyword);
    tookAny_ = true;
    if (at < list_.size()) {
        list_[at].expression = std::move(covariate.expression);
        fromFile_[at] = true;
    } else {
        list_.push_back(std::move(covariate));
        fromFile_.push_back(true);
    }
}

void Merging::TakeAll(const std::vector<std::string>& keywords, int announced) {
    announced_ = announced;
    for (const std::string& keyword : keywords) {
        if (IsHowMany(keyword)) continue;
        ++found_;
        Take(keyword);
    }
}

std::string Merging::WhatIsMissing() const {
    std::string text;
    // More of them are lines that somebody added.
    if (found_ < announced_)
        text += "\n" + Filled(StrTimeFewer, {FormatCount(announced_), FormatCount(found_)});
    if (!cutNames_.some.empty()) text += "\n" + Filled(StrTimeNamesCut, {cutNames_.Text()});
    if (!leftOut_.some.empty()) text += "\n" + Filled(StrTimeLeftOut, {leftOut_.Text()});
    return text;
}

void Merging::Tell() const {
    const auto warn = [this](int message, const std::string& detail) {
        host_.DspMessageBox(MessageStyle::Warning, window_, message, path_ + detail);
    };
    if (!cutExpressions_.some.empty()) warn(StrTimeTooLong, "\n" + cutExpressions_.Text());
    if (noRoom_) warn(StrTimeTooMany, {});
    if (const std::string missing = WhatIsMissing(); !missing.empty()) warn(StrTimeNotAllTaken, missing);
}

} // namespace

bool SaveExpressions(CAnalysisSupport& host, CAnalysisDialog* window,
                     const std::vector<DefinedCovariate>& covariates) {
    if (covariates.empty()) {
        host.DspMessageBox(MessageStyle::Refusal, window, StrTimeNothingToSave, {});
        return false;
    }
    if (const ListFault fault = FaultOf(covariates); fault.message != 0) {
        host.DspMessageBox(MessageStyle::Refusal, window, fault.message, fault.detail);
        return false;
    }
    std::string path;
    if (!host.DoFileSaveAsDlg(Text(StrTimeSaveTitle), usualName, extension, path)) return false;
    const auto count = std::to_string(covariates.size());
    bool written =
        host.ClearInitSection(path, section) && host.PutInitKeywordPrivate(path, section, howMany, count);
    for (const DefinedCovariate& each : covariates)
        written = written &&
                  host.PutInitKeywordPrivate(path, section, CleanText(each.name), CleanText(each.expression));
    if (!written) host.DspMessageBox(MessageStyle::Refusal, window, StrTimeNotWritten, path);
    return written;
}

bool OpenExpressions(CAnalysisSupport& host, CAnalysisDialog* window,
                     std::vector<DefinedCovariate>& covariates) {
    std::string path;
    if (!host.DoFileOpenDlg(Text(StrTimeOpenTitle), filter, extension, path)) return false;
    std::vector<std::string> keywords;
    Merging merging(host, window, path, covariates);
    const int announced = HowManyIn(host, path);
    if (announced > 0 && host.EnumPrivateKeywords(path, section, keywords))
        merging.TakeAll(keywords, announced);
    if (merging.NothingThere()) {
        host.DspMessageBox(MessageStyle::Refusal, window, StrTimeNoExpressions,
                           path + merging.WhatIsMissing());
        return false;
    }
    covariates = std::move(merging.List());
    merging.Tell();
    return true;
}

} // namespace ozm::survival
