#pragma once

#include "host/data/ComputedVariable.h"

#include <CLI/App.hpp>
#include <functional>
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

/// Appends the variables in order; each may use those before it. Throws UsageError.
/// @param afterEach  called after each one, before the next is computed
void define(DataSet& data, const std::vector<Definition>& definitions,
            const std::function<void()>& afterEach);

} // namespace korvana::cli
