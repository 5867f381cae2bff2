#pragma once

#include "host/data/DataSet.h"
#include "host/data/Expression.h"
#include "host/data/ExpressionTokens.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace korvana {

/// The n of a name "vn", which means the variable with that number where no variable has the name; nothing
/// for other names. Numbers that no variable can have count as one of them.
std::optional<int> variableNumberIn(std::string_view name);

/// The first variable that has the name "vn" of another number, counted from 0. With one, v3 could be meant
/// either way, and variables go by their names alone.
std::optional<int> firstMisnumbered(const DataSet& data);

/// What the names in an expression mean.
class ExpressionNames {
public:
    struct Meaning {
        int reference;         ///< a 1-based variable number, or that of a named input
        bool byNumber = false; ///< written as v3
    };

    ExpressionNames(const DataSet& data, std::span<const NamedInput> inputs) : data_(data), inputs_(inputs) {}

    /// What a name, or a text taken for one, means: exact names before those in other letter case, named
    /// inputs before variables except in backquotes, numbers last. Nothing when it is unknown.
    std::optional<Meaning> find(const Token& token) const;

    /// The variable (counted from 0) that it means; nothing for a named input and what is unknown.
    std::optional<int> findVariable(const Token& token) const;

    /// Why a name is unknown.
    /// @param compared  it stands next to a comparison, where a text may be meant
    std::string whyUnknown(const Token& token, bool compared) const;

private:
    std::string whyNoNumber() const;

    const DataSet& data_;
    std::span<const NamedInput> inputs_;
};

} // namespace korvana
