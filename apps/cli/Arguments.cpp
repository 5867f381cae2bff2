#include "apps/cli/Arguments.h"

#include "apps/cli/UsageError.h"
#include "host/data/NameMatch.h"
#include "host/data/NumberText.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <string_view>
#include <system_error>

namespace korvana::cli {
namespace {

bool takesValue(const CLI::Option& option) {
    return option.get_items_expected_max() > 0;
}

bool repeats(const CLI::Option& option) {
    return option.get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
}

/// Whether an option's value is a list with commas.
bool isList(const CLI::Option& option) {
    return option.get_type_name().find("[,") != std::string::npos;
}

/// A separator may be a blank; any other blank value counts as empty.
bool isEmpty(const CLI::Option& option, const std::string& value) {
    return value.empty() || (trimmed(value).empty() && !option.check_lname("separator"));
}

std::string nameOf(const CLI::Option& option) {
    return "--" + option.get_lnames().front();
}

/// A word that is not an option, and what comes before it.
struct Loose {
    std::string word;
    const CLI::Option* after = nullptr; ///< the option whose value comes just before, if any
    std::string value;                  ///< that value
    std::size_t place = 0;              ///< among the arguments
    bool behind = false;                ///< it comes after "--"
    bool option = false;                ///< and would be an option without the "--"
};

class Reader {
public:
    Reader(const CLI::App& app, const std::vector<std::string>& given) : app_(app), given_(given) {}

    Arguments run() {
        for (; at_ < given_.size(); ++at_) {
            const std::string& word = given_[at_];
            if (word == "--") {
                after_ = nullptr;
                for (++at_; at_ < given_.size(); ++at_) {
                    takeLoose(given_[at_]);
                    loose_.back().behind = true;
                    loose_.back().option = namesOption(given_[at_]);
                }
                break;
            }
            if (word.size() > 1 && word.starts_with('-'))
                takeOption(word);
            else
                takeLoose(word);
            if (result_.help) return std::move(result_);
        }
        placeLoose();
        return std::move(result_);
    }

private:
    const CLI::Option* longOption(std::string_view name) const {
        for (const CLI::Option* option : app_.get_options())
            for (const std::string& each : option->get_lnames())
                if (each == name) return option;
        return nullptr;
    }

    const CLI::Option* shortOption(char letter) const {
        for (const CLI::Option* option : app_.get_options())
            for (const std::string& each : option->get_snames())
                if (each.size() == 1 && each[0] == letter) return option;
        return nullptr;
    }

    /// Whether a word names an option, so that it can hardly be meant as a value.
    bool namesOption(const std::string& word) const {
        if (word.starts_with("--")) return longOption(word.substr(2, word.find('=') - 2)) != nullptr;
        return word.size() == 2 && word[0] == '-' && shortOption(word[1]) != nullptr;
    }

    [[noreturn]] void failUnknown(const std::string& word) const {
        const std::string asked = word.substr(0, word.find('='));
        const std::string bare = asked.substr(std::min(asked.find_first_not_of('-'), asked.size()));
        std::vector<std::string_view> names;
        for (const CLI::Option* option : app_.get_options())
            names.insert(names.end(), option->get_lnames().begin(), option->get_lnames().end());
        std::vector<std::string> near = completionsOf(bare, names);
        for (std::string& name : near)
            name.insert(0, "--");
        std::error_code ignored;
        const bool file = std::filesystem::exists(word, ignored);
        throw UsageError("there is no option " + asked +
                             (file ? "; for the file of this name write ./" + word : didYouMean(near)),
                         true);
    }

    void takeOption(const std::string& word) {
        const bool isLong = word.starts_with("--");
        const std::size_t equals = word.find('=');
        const CLI::Option* option =
            isLong ? longOption(word.substr(2, equals == std::string::npos ? equals : equals - 2))
                   : shortOption(word[1]);
        if (option == nullptr) failUnknown(word);
        if (!takesValue(*option)) return takeFlag(*option, word, isLong);
        // --name=value and -ovalue, else the next word.
        std::string value;
        if (isLong && equals != std::string::npos) {
            value = word.substr(equals + 1);
        } else if (!isLong && word.size() > 2) {
            value = word.substr(word[2] == '=' ? 3 : 2);
        } else {
            const bool last = at_ + 1 == given_.size();
            const std::string needs =
                nameOf(*option) + " needs a value: " + nameOf(*option) + " " + option->get_type_name();
            if (last) throw UsageError(needs, true);
            if (namesOption(given_[at_ + 1]) || given_[at_ + 1] == "--")
                throw UsageError(needs + "; what follows it, " + given_[at_ + 1] + ", is no value", true);
            value = given_[++at_];
        }
        takeValue(*option, std::move(value));
    }

    void takeFlag(const CLI::Option& option, const std::string& word, bool isLong) {
        const std::string name = nameOf(option);
        if (isLong && word.size() > name.size())
            throw UsageError(name + " takes no value; leave out '" + word.substr(name.size()) + "'");
        after_ = nullptr;
        if (name == "--help") result_.help = true;
        if (std::find(result_.uniform.begin(), result_.uniform.end(), name) == result_.uniform.end())
            result_.uniform.push_back(name); // giving it twice changes nothing
        if (isLong || word.size() == 2) return;
        const std::string rest = "-" + word.substr(2); // -qo DIR is -q -o DIR
        if (shortOption(rest[1]) == nullptr) failUnknown(word);
        takeOption(rest);
    }

    void takeValue(const CLI::Option& option, std::string value) {
        const std::string name = nameOf(option);
        if (isEmpty(option, value))
            throw UsageError(name + " has an empty value: give it one, or leave " + name +
                             " out (a variable of the shell may be without a value)");
        const auto [before, first] = values_.try_emplace(&option, value);
        if (!first && !repeats(option))
            throw UsageError(name + " is given twice, with '" + before->second + "' and with '" + value +
                             "'; give it once" +
                             (isList(option)
                                  ? ", or as a list if both are meant, " + name + " " + before->second + "," +
                                        value + ": " + option.get_description()
                                  : ""));
        result_.uniform.push_back(name + "=" + value);
        after_ = &option;
        value_ = std::move(value);
    }

    void takeLoose(const std::string& word) {
        if (trimmed(word).empty())
            throw UsageError("an argument is empty: it should be " + wanted() +
                             " (a variable of the shell may be without a value)");
        for (const std::string_view dash : {"\u2013", "\u2014", "\u2212"})
            if (word.starts_with(dash))
                throw UsageError("'" + word +
                                 "' begins with a long dash, as texts have them; an option begins with "
                                 "two hyphens: --" +
                                 word.substr(word.starts_with(std::string(dash).append(dash))
                                                 ? 2 * dash.size()
                                                 : dash.size()));
        if (after_ != nullptr && isList(*after_) && (value_.ends_with(',') || word.starts_with(',')))
            failSplitList();
        loose_.push_back({word, after_, value_, at_});
        after_ = nullptr;
    }

    /// What the next loose word should be.
    [[nodiscard]] std::string wanted() const {
        const auto places = app_.get_options([](const CLI::Option* o) { return o->get_positional(); });
        if (loose_.size() >= places.size()) return "an option";
        if (places[loose_.size()]->get_name(true) == "DATA") return "a file or an option";
        const std::string text = places[loose_.size()]->get_description();
        return text.substr(0, text.find(':'));
    }

    /// Reports a list that the shell split at a blank.
    [[noreturn]] void failSplitList() const {
        std::string list = value_;
        std::string written = value_;
        for (std::size_t at = at_; at < given_.size() && (list.ends_with(',') || given_[at].starts_with(','));
             ++at) {
            list += given_[at];
            written += " " + given_[at];
        }
        const std::string name = nameOf(*after_);
        throw UsageError(name + " " + written + ": write a list without blanks, or in quotes: " + name + " " +
                         list);
    }

    /// Gives the loose words to the positional options, or says which is too many.
    void placeLoose() {
        const auto places = app_.get_options([](const CLI::Option* o) { return o->get_positional(); });
        if (loose_.size() > places.size()) failTooMany(places.empty());
        if (!loose_.empty()) result_.uniform.emplace_back("--");
        for (const Loose& each : loose_)
            result_.uniform.push_back(each.word);
    }

    [[noreturn]] void failTooMany(bool noneTaken) const {
        for (const Loose& each : loose_)
            if (each.option)
                throw UsageError("'" + each.word +
                                 "' comes after --, where everything is a file; put options before it: " +
                                 app_.get_name() + " OPTIONS -- FILE");
        // The word to complain about: one after an option's value if there is one, else the second file.
        std::size_t stranger = 1;
        int best = 0;
        for (std::size_t i = 0; i < loose_.size(); ++i) {
            std::error_code ignored;
            const bool file = std::filesystem::exists(loose_[i].word, ignored);
            const int doubt = file ? 0 : loose_[i].after != nullptr ? 2 : i > 0 ? 1 : 0;
            if (doubt > best) stranger = i;
            best = std::max(best, doubt);
        }
        const Loose& wrong = loose_[std::min(stranger, loose_.size() - 1)];
        if (wrong.after != nullptr) {
            const std::string name = nameOf(*wrong.after);
            if (isList(*wrong.after))
                throw UsageError("'" + wrong.word + "' after " + name + " " + wrong.value +
                                 " belongs to no option; separate several names by commas without blanks: " +
                                 name + " " + wrong.value + "," + wrong.word);
            std::string whole = wrong.value;
            for (std::size_t i = wrong.place; i < given_.size() && !given_[i].starts_with("--"); ++i)
                whole += " " + given_[i];
            throw UsageError("'" + wrong.word + "' after " + name + " " + wrong.value +
                             " belongs to no option; put a value with blanks in quotes: " + name + " \"" +
                             whole + "\"");
        }
        if (noneTaken) throw UsageError("'" + wrong.word + "' is one argument too many: it takes none", true);
        const std::string& taken = &wrong == loose_.data() ? loose_[1].word : loose_.front().word;
        const std::string tooMany = "'" + wrong.word + "' is one argument too many besides '" + taken + "'; ";
        if (loose_.back().behind)
            throw UsageError(tooMany + app_.get_name() + " takes one file: " + app_.get_name() +
                             " OPTIONS -- FILE");
        throw UsageError(
            tooMany + "separate several names of one option by commas without blanks, and put a value with "
                      "blanks in quotes");
    }

    const CLI::App& app_;
    const std::vector<std::string>& given_;
    std::size_t at_ = 0;
    Arguments result_;
    std::map<const CLI::Option*, std::string> values_;
    std::vector<Loose> loose_;
    const CLI::Option* after_ = nullptr; ///< the option whose value came just before
    std::string value_;
};

} // namespace

Arguments readArguments(const CLI::App& app, const std::vector<std::string>& given) {
    return Reader(app, given).run();
}

} // namespace korvana::cli
