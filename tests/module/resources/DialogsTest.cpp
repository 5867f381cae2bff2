#include "module/resources/Resources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <string>

namespace ozm::survival {
namespace {

/// The letters that Alt reaches while a page is open, those of controls on all pages among them.
std::string Letters(const DialogTemplate& dialog, std::size_t page) {
    std::string letters;
    const auto add = [&letters](std::string_view text) {
        const std::size_t mark = text.find('&');
        if (mark != std::string_view::npos)
            letters += static_cast<char>(std::tolower(static_cast<unsigned char>(text.at(mark + 1))));
    };
    for (const ControlTemplate& control : dialog.controls) {
        const bool shown =
            control.pages.empty() || std::ranges::find(control.pages, page) != control.pages.end();
        if (!shown) continue;
        add(control.text);
        if (control.kind == ControlKind::RadioGroup)
            for (const ChoiceTemplate& choice : control.choices)
                add(Text(choice.text));
    }
    std::ranges::sort(letters);
    return letters;
}

TEST(Dialogs, ALetterReachesOneControlOnly) {
    for (const DialogTemplate* dialog : Resources().dialogs) {
        for (std::size_t page = 0; page < dialog->pages.size(); ++page) {
            const std::string letters = Letters(*dialog, page);
            EXPECT_FALSE(letters.empty()) << dialog->title;
            EXPECT_EQ(std::ranges::adjacent_find(letters), letters.end())
                << dialog->title << ", " << dialog->pages[page] << ": " << letters;
        }
    }
}

} // namespace
} // namespace ozm::survival
