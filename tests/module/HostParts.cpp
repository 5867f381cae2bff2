#include "tests/module/HostParts.h"

#include "host/session/InitFile.h"
#include "host/session/SessionExpressions.h"

#include <utility>

namespace ozm::test {

struct HostFormulas::Data {
    std::vector<std::string> names;
    korvana::SessionParts parts;
    korvana::SessionExpressions formulas{parts};
};

HostFormulas::HostFormulas(Names names) : names_(std::move(names)) {}
HostFormulas::~HostFormulas() = default;

short HostFormulas::COMP(std::string_view text, std::span<const std::string> extraNames,
                         std::unique_ptr<CompiledExpression>& compiled, std::string& error) {
    if (auto names = names_(); data_ == nullptr || data_->names != names) {
        auto data = std::make_unique<Data>();
        data->names = std::move(names);
        korvana::DataSet empty("trial.csv", 0);
        for (const std::string& name : data->names) {
            korvana::Variable variable;
            variable.name = name;
            empty.addVariable(std::move(variable), korvana::Column(0));
        }
        data->parts.data.open(std::move(empty));
        data_ = std::move(data);
    }
    return data_->formulas.COMP(text, extraNames, compiled, error);
}

int HostFormulas::RunSpreadsheetFormula(std::span<const double> values, const CompiledExpression& compiled,
                                        double& result) {
    return data_->formulas.RunSpreadsheetFormula(values, compiled, result);
}

int HostFormulas::RunSpreadsheetFormulas(std::span<const std::span<const double>> columns,
                                         const CompiledExpression& compiled, std::span<double> results) {
    return data_->formulas.RunSpreadsheetFormulas(columns, compiled, results);
}

bool HostFiles::DoFileOpenDlg(std::string_view title, std::string_view name, std::string_view extension,
                              std::string& path) {
    fileDialogs.insert(fileDialogs.end(), {std::string{title}, std::string{name}, std::string{extension}});
    if (!chosen.empty()) path = chosen;
    return !chosen.empty();
}

bool HostFiles::DoFileSaveAsDlg(std::string_view title, std::string_view name, std::string_view extension,
                                std::string& path) {
    return DoFileOpenDlg(title, name, extension, path);
}

bool HostFiles::PutInitKeywordPrivate(const std::string& path, std::string_view section,
                                      std::string_view keyword, std::string_view value) {
    auto file = korvana::InitFile::parse(files[path]);
    const bool written = !failWriting && file.put(section, keyword, value);
    if (written) files[path] = file.bytes();
    return written;
}

bool HostFiles::ClearInitSection(const std::string& path, std::string_view section) {
    auto file = korvana::InitFile::parse(files[path]);
    file.clear(section);
    files[path] = file.bytes();
    return true;
}

bool HostFiles::GetInitKeywordPrivate(const std::string& path, std::string_view section,
                                      std::string_view keyword, std::string& value) {
    ++valuesRead;
    const auto found = korvana::InitFile::parse(files[path]).value(section, keyword);
    if (found) value = *found;
    return found.has_value();
}

bool HostFiles::EnumPrivateKeywords(const std::string& path, std::string_view section,
                                    std::vector<std::string>& keywords) {
    const auto file = korvana::InitFile::parse(files[path]);
    keywords = file.keywords(section);
    return file.hasSection(section);
}

} // namespace ozm::test
