#pragma once

/// Marks what the support library exports to modules and hosts; everything else is hidden.
#define KORVANA_SUPPORT __attribute__((visibility("default")))
