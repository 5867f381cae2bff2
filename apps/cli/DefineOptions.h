#pragma once

#include "host/data/ComputedVariable.h"

#include <CLI/App.hpp>
#include <functional>
#include <stop_token>
#include <string>
#include <vector>

namespace korvana::cli {

/// The variables that a user computes from others: --define 'NAME = EXPRESSION', in order.
class DefineOptions {
public:
    void declare(CLI::App& app, const std::string& group);

    /// Checks what can be judged without the data. Throws UsageError.
    [[nodiscard]] std::vector<Definition> read() const;

private:
    std::vector<std::string> texts_;
};

/// Appends the variables in order; each may use those before it. Throws UsageError; ReadingStopped
/// (ReadData.h).
/// @param afterEach  called after each one, before the next is computed
void define(DataSet& data, const std::vector<Definition>& definitions, const std::function<void()>& afterEach,
            const std::stop_token& stop = {});

} // namespace korvana::cli
