#pragma once
// What a fake host takes from the real one: formulas, and initialisation files, though in memory.

#include "support/services/NullServices.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ozm::test {

/// The host's formulas over variables of these names.
class HostFormulas final : public ExpressionService {
public:
    using Names = std::function<std::vector<std::string>()>;
    explicit HostFormulas(Names names);
    ~HostFormulas() override;
    short COMP(std::string_view text, std::span<const std::string> extraNames,
               std::unique_ptr<CompiledExpression>& compiled, std::string& error) override;
    int RunSpreadsheetFormula(std::span<const double> values, const CompiledExpression& compiled,
                              double& result) override;
    int RunSpreadsheetFormulas(std::span<const std::span<const double>> columns,
                               const CompiledExpression& compiled, std::span<double> results) override;

private:
    struct Data;
    Names names_;
    std::unique_ptr<Data> data_;
};

/// The host's initialisation files, kept in memory.
class HostFiles : public NullFiles {
public:
    std::map<std::string, std::string> files; ///< texts by their paths
    std::string chosen;                       ///< in the file dialogs; empty: they are cancelled
    std::vector<std::string> fileDialogs;     ///< title, default name and extension of those that were shown
    int valuesRead = 0;
    bool failWriting = false;

    bool DoFileOpenDlg(std::string_view title, std::string_view name, std::string_view extension,
                       std::string& path) override;
    bool DoFileSaveAsDlg(std::string_view title, std::string_view name, std::string_view extension,
                         std::string& path) override;
    bool PutInitKeywordPrivate(const std::string& path, std::string_view section, std::string_view keyword,
                               std::string_view value) override;
    bool ClearInitSection(const std::string& path, std::string_view section) override;
    bool GetInitKeywordPrivate(const std::string& path, std::string_view section, std::string_view keyword,
                               std::string& value) override;
    bool EnumPrivateKeywords(const std::string& path, std::string_view section,
                             std::vector<std::string>& keywords) override;
};

} // namespace ozm::test
