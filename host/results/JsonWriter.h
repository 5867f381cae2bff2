#pragma once

#include <ostream>

#include "host/results/ResultsBook.h"

namespace korvana {

/// Everything in the book as one JSON object (UTF-8), numbers at full double precision; empty cells and
/// numbers that are not finite are null. Rows are streamed.
///
///     {"analysis": text, "status": n, "source": text, "notes": [text],
///      "messages": [{"id": n, "text": text, "detail": text, "severity": "note|warning|error"}],
///      "reports": [{"title": text, "lines": [text]}],
///      "spreadsheets": [{"title": text, "notes": [text], "columns": [[heading, heading]],
///                        "rows": [{"heading": text, "cells": [number|text|null]}]}],
///      "charts": [{"title": text, "xAxis": text, "yAxis": text, "kind": "line|step|scatter|histogram",
///                  "series": [{"legend": text, "x": [number], "y": [number], "group": n,
///                              "style": "line|step|markers|histogram",
///                              "role": "estimate|lower|upper|observed|censored"}]}],
///      "iterations": [text]}
void writeJson(const ResultsBook& book, std::ostream& out);

} // namespace korvana
