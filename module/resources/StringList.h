#pragma once

#include "support/ModuleResources.h"

/// Texts and their numbers in one place: a list of `S(name, number, text)`, ascending by number, becomes a
/// constant `name` with the number, for the code, and a table of texts, for `Resources`. Blanks at the ends
/// are part of the texts: reports rely on them for alignment.
#define OZM_STRINGS(table, list)                                                                             \
    list(OZM_STRING_NUMBER) inline constexpr StringResource table[] = {list(OZM_STRING_ENTRY)}
#define OZM_STRING_NUMBER(name, number, text) inline constexpr int name = number;
#define OZM_STRING_ENTRY(name, number, text) StringResource{number, text},
