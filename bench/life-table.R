# The counterpart of the command line in life-table.sh: reads FILE (columns time, status and maybe weight) with all
# cores, counts the cases into 12 intervals, each as often as its weight says, and computes the cumulative proportion
# surviving with its standard error. Prints both at the last limit, and the seconds that counting and table took.
#   Rscript bench/life-table.R FILE
suppressPackageStartupMessages(library(data.table))
setDTthreads(0)
cases <- fread(commandArgs(TRUE)[1])
seconds <- system.time({
  n <- 12
  step <- max(cases$time) / (n - 1)
  interval <- findInterval(cases$time * (1 + 1e-12), step * seq_len(n - 1)) + 1
  # Withdrawn in the first n places, dying in the next.
  place <- interval + n * cases$status
  counts <- if ("weight" %in% names(cases)) {
    sums <- rowsum(ceiling(cases$weight), place)
    replace(numeric(2 * n), as.integer(rownames(sums)), sums)
  } else tabulate(place, 2 * n)
  withdrawn <- counts[1:n]
  dying <- counts[n + 1:n]
  exposed <- sum(counts) - c(0, cumsum(withdrawn + dying)[-n]) - withdrawn / 2
  q <- ifelse(dying == exposed, (exposed - 0.5) / exposed, pmax(dying, 0.5) / exposed)
  p <- cumprod(c(1, 1 - q[-n]))
  error <- p * sqrt(cumsum(c(0, (q / (exposed * (1 - q)))[-n])))
})[["elapsed"]]
cat(sprintf("%.17g %.17g %.6f\n", p[n], error[n], seconds))
