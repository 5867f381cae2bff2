# The counterpart of the command line in the side-by-side runs: reads FILE (columns time, status) with all cores,
# estimates, and prints for each quartile of the survival function the time at which the estimate first is at or below it
# and the time of the event before.
#   Rscript bench/survfit.R FILE
suppressPackageStartupMessages({
  library(data.table)
  library(survival)
})
setDTthreads(0)
cases <- fread(commandArgs(TRUE)[1])
fit <- survfit(Surv(time, status) ~ 1, data = cases, conf.type = "log-log")
events <- which(fit$n.event > 0)
for (p in c(0.75, 0.5, 0.25)) {
  at <- which(fit$surv[events] <= p)[1]
  cat(sprintf("%.2f,%.17g,%.17g\n", p, if (at > 1) fit$time[events[at - 1]] else 0, fit$time[events[at]]))
}
