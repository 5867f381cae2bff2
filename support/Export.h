#pragma once

/// Marks what the support library shows to modules and hosts; everything else stays inside.
#define KORVANA_SUPPORT __attribute__((visibility("default")))
