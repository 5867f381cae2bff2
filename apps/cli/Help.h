#pragma once

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

namespace korvana::cli {

/// Help texts that keep within 80 columns.
class HelpFormatter final : public CLI::Formatter {
public:
    HelpFormatter();
    std::string make_usage(const CLI::App* app, std::string name) const override;
    std::string make_option_desc(const CLI::Option* option) const override;
    std::string make_group(std::string group, bool isPositional,
                           std::vector<const CLI::Option*> options) const override;
};

} // namespace korvana::cli
