# The counterpart of the command line in cox.sh: reads FILE (columns time, status, x1, x2, ...) with all cores and fits a
# Cox regression with Breslow's ties. Prints the log-likelihood, and with RUNS the milliseconds of CPU that coxph() and
# its fitting routine alone took, the fastest of so many.
#   Rscript bench/cox.R FILE [RUNS]        default: one run of coxph() alone
suppressPackageStartupMessages({
  library(data.table)
  library(survival)
})
setDTthreads(0)
arguments <- commandArgs(TRUE)
runs <- as.integer(arguments[2])
cases <- fread(arguments[1], data.table = FALSE)
covariates <- setdiff(names(cases), c("time", "status"))
formula <- reformulate(covariates, quote(Surv(time, status)))
milliseconds <- function(code) 1000 * sum(system.time(code)[1:2])
whole <- milliseconds(fit <- coxph(formula, cases, ties = "breslow"))
bare <- NA
if (!is.na(runs)) {
  x <- as.matrix(cases[covariates])
  y <- Surv(cases$time, cases$status)
  rownames(x) <- NULL
  for (run in seq_len(runs)) {
    whole <- min(whole, milliseconds(coxph(formula, cases, ties = "breslow")))
    bare <- min(bare, na.rm = TRUE,
                milliseconds(survival:::coxph.fit(x, y, NULL, NULL, NULL, coxph.control(), NULL, "breslow", NULL,
                                                  resid = FALSE)))
  }
}
# The default criterion leaves off at a part of 1e-4 of the coefficients, where the log-likelihood is flat.
cat(sprintf("is logLikelihood %.17g 1e-6\n", fit$loglik[2]))
if (!is.na(runs)) cat(sprintf("took %s %.1f\n", c("coxph()", "routine"), c(whole, bare)), sep = "")
