#include "module/regression/timedependent/ExpressionFile.h"

#include "module/resources/Resources.h"
#include "module/resources/TimeDependent.h"
#include "module/survdata/ReportLines.h"

#include <charconv>
#include <string>

namespace ozm::survival {
namespace {

constexpr std::string_view section = "Expressions";
constexpr std::string_view howMany = "HowManyExpressions";
constexpr std::string_view usualName = "NEW.INI";
constexpr std::string_view extension = ".INI";
constexpr std::string_view filter = "*.INI";
constexpr std::size_t longestValue = 1024;

/// As it goes to a file: in one line, without formatting, at most as wide as its field.
std::string CleanText(std::string text, std::size_t width) {
    CAnalysisSupport::Replace8CharGrow(text, '\t', " ");
    CAnalysisSupport::StripFormatting(text);
    return CutTo(TrimmedText(text), width);
}

bool IsHowMany(const std::string& keyword) {
    const DefinedCovariate known[] = {{std::string{howMany}, {}}};
    return FindDefined(known, keyword).has_value();
}

/// The number of expressions that a file says it has; 0 where it says nothing of the kind.
int HowManyIn(CAnalysisSupport& host, const std::string& path) {
    std::string value;
    if (!host.GetInitKeywordPrivate(path, section, howMany, value)) return 0;
    value = TrimmedText(value);
    int number = 0;
    const auto read = std::from_chars(value.data(), value.data() + value.size(), number);
    return read.ec == std::errc{} && read.ptr == value.data() + value.size() ? number : 0;
}

/// Adds what a file has to a list.
class Merging {
public:
    Merging(CAnalysisSupport& host, CAnalysisDialog* window, std::vector<DefinedCovariate>& list)
        : host_(host), window_(window), list_(list) {}

    /// False when there is no room for it.
    bool Add(const std::string& keyword, const std::string& value) {
        const std::string text = TrimmedText(value.substr(0, longestValue));
        DefinedCovariate covariate{CutTo(TrimmedText(keyword), nameWidth), CutTo(text, expressionWidth)};
        cut_ = cut_ || covariate.expression.size() < text.size();
        const auto present = FindDefined(list_, covariate.name);
        if (present && Overwrites()) {
            list_[*present].expression = std::move(covariate.expression);
            return true;
        }
        if (list_.size() == mostDefined) return false;
        list_.push_back(std::move(covariate));
        return true;
    }
    [[nodiscard]] bool AnyCut() const { return cut_; }

private:
    /// Asks the first time.
    bool Overwrites() {
        if (!asked_)
            overwrite_ =
                host_.DisplayInstQuestion(host_.GetLibInstance(), window_, StrTimeOverwrite) == ButtonYes;
        asked_ = true;
        return overwrite_;
    }

    CAnalysisSupport& host_;
    CAnalysisDialog* window_;
    std::vector<DefinedCovariate>& list_;
    bool asked_ = false;
    bool overwrite_ = false;
    bool cut_ = false;
};

} // namespace

bool SaveExpressions(CAnalysisSupport& host, CAnalysisDialog* window,
                     const std::vector<DefinedCovariate>& covariates) {
    if (covariates.empty()) {
        host.DspMessageBox(MessageStyle::Refusal, window, StrTimeNothingToSave, {});
        return false;
    }
    std::string path;
    if (!host.DoFileSaveAsDlg(Text(StrTimeSaveTitle), usualName, extension, path)) return false;
    const auto count = std::to_string(covariates.size());
    bool written =
        host.ClearInitSection(path, section) && host.PutInitKeywordPrivate(path, section, howMany, count);
    for (const DefinedCovariate& each : covariates)
        written = written && host.PutInitKeywordPrivate(path, section, CleanText(each.name, nameWidth),
                                                        CleanText(each.expression, expressionWidth));
    if (!written) host.DspMessageBox(MessageStyle::Refusal, window, StrTimeNotWritten, path);
    return written;
}

bool OpenExpressions(CAnalysisSupport& host, CAnalysisDialog* window,
                     std::vector<DefinedCovariate>& covariates) {
    std::string path;
    if (!host.DoFileOpenDlg(Text(StrTimeOpenTitle), filter, extension, path)) return false;
    std::vector<std::string> keywords;
    if (HowManyIn(host, path) <= 0 || !host.EnumPrivateKeywords(path, section, keywords)) {
        host.DspMessageBox(MessageStyle::Refusal, window, StrTimeNoExpressions, path);
        return false;
    }
    std::vector<DefinedCovariate> merged = covariates;
    Merging merging(host, window, merged);
    bool room = true;
    for (const std::string& keyword : keywords) {
        if (IsHowMany(keyword)) continue;
        std::string value;
        if (host.GetInitKeywordPrivate(path, section, keyword, value))
            room = merging.Add(keyword, value) && room;
    }
    covariates = std::move(merged);
    if (merging.AnyCut()) host.DspMessageBox(MessageStyle::Warning, window, StrTimeTooLong, path);
    if (!room) host.DspMessageBox(MessageStyle::Warning, window, StrTimeTooMany, path);
    return true;
}

} // namespace ozm::survival
