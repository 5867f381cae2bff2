# The counterpart of the command line in cox-time.sh: reads FILE (columns time, status, x1) with all cores and fits a Cox
# regression with the covariates x1 and x1 log(t) and Breslow's ties. Prints the log-likelihoods and the coefficients,
# and the milliseconds of CPU that coxph() took.
#   Rscript bench/cox-time.R FILE
suppressPackageStartupMessages({
  library(data.table)
  library(survival)
})
setDTthreads(0)
cases <- fread(commandArgs(TRUE)[1], data.table = FALSE)
took <- system.time(fit <- coxph(Surv(time, status) ~ x1 + tt(x1), cases, tt = function(x, t, ...) x * log(t),
                                 ties = "breslow"))
# The last steps of an iteration with halved steps are as long as what is left to go.
cat(sprintf("is logLikelihood %.17g 1e-8\nis nullLogLikelihood %.17g 1e-10\n", fit$loglik[2], fit$loglik[1]),
    sprintf("is %s %.17g 2e-5\n", c("x", "xLogT"), coef(fit)),
    sprintf("took coxph() %.1f\n", 1000 * sum(took[1:2])), sep = "")
