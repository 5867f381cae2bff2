#pragma once

#include "support/automation/AutomationValue.h"

#include <string_view>

namespace ozm {

class CAnalysisDialog;

/// The members of a dialog that say where the outputs of its actions go (`MemberKind::Routed`). A host keeps
/// their values for each dialog. What cannot be is an exception that says why.
class ResultsRouting {
public:
    virtual ~ResultsRouting() = default;

    virtual AutomationValue Get(const CAnalysisDialog& dialog, std::string_view member) = 0;
    /// Refuses what is no value of the member, and then changes nothing.
    virtual void Put(const CAnalysisDialog& dialog, std::string_view member,
                     const AutomationValue& value) = 0;
    /// A script's action has ended: its outputs, which are in the book, also go where the members say.
    virtual void Route(const CAnalysisDialog& dialog, std::string_view action) = 0;
};

} // namespace ozm
