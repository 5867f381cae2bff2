# The counterpart of the command line in k-sample.sh: reads FILE (columns time, status, arm), compares the groups by the
# log-rank test, and prints chi-square and the seconds that the test itself took.
#   Rscript bench/survdiff.R FILE
suppressPackageStartupMessages({
  library(data.table)
  library(survival)
})
cases <- fread(commandArgs(TRUE)[1])
seconds <- system.time(fit <- survdiff(Surv(time, status) ~ arm, data = cases))[["elapsed"]]
cat(sprintf("%.17g %.6f\n", fit$chisq, seconds))
