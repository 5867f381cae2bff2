#pragma once

#include "support/automation/TypeLibrary.h"
#include "support/dialogs/DialogTemplate.h"

#include <algorithm>
#include <span>
#include <string_view>

namespace ozm {

/// One text of a string table.
struct StringResource {
    int id = 0;
    std::string_view text;
};

/// The resources of a module: its string table (ascending by number), dialog templates and type library. The
/// object lives as long as the module is loaded.
struct ModuleResources {
    std::span<const StringResource> strings;
    std::span<const DialogTemplate* const> dialogs;
    const TypeLibrary* typeLibrary = nullptr;

    /// The text with this number, empty when there is none.
    [[nodiscard]] std::string_view String(int id) const {
        const auto found =
            std::lower_bound(strings.begin(), strings.end(), id,
                             [](const StringResource& s, int wanted) { return s.id < wanted; });
        return found != strings.end() && found->id == id ? found->text : std::string_view{};
    }
};

} // namespace ozm
