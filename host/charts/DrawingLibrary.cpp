#include "host/results/DrawingLibrary.h"

#include "host/charts/ChartRenderer.h"

extern "C" __attribute__((visibility("default"))) korvana::DrawingEntry korvanaDrawChart;

void korvanaDrawChart(const ozm::CChartInfo& info, korvana::PictureFormat format,
                      const korvana::PictureOptions& options, korvana::Picture& picture) {
    picture = korvana::renderChart(info, format, options);
}
