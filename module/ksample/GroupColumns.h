#pragma once

#include "module/ksample/KsOutput.h"
#include "module/survdata/ResultTable.h"

#include <optional>
#include <string_view>
#include <vector>

namespace ozm::survival {

/// What a column of groups is called: for programs, and in two headings.
struct GroupColumnNames {
    const char* id;
    const char* labelId;
    int heading1;
    int heading2;
};

/// The columns of a table that name a group: its code and, where any group has one, its value label.
class GroupColumns {
public:
    /// Before the table has rows. It keeps the labels, which the table shows until it is written.
    GroupColumns(const KsReportOf& of, ResultTable& table, const GroupColumnNames& names);

    /// Names the group of a row, from 0.
    void Name(std::size_t row, std::size_t group);

private:
    const KsReportOf& of_;
    ResultTable& table_;
    std::vector<std::string> labels_;
    std::vector<std::string_view> shown_;
    ResultTable::Numbers code_;
    std::optional<ResultTable::Marks> label_;
};

} // namespace ozm::survival
