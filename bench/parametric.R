# The counterpart of the command line in parametric.sh: reads FILE (columns time, status, x1, x2, ...) with all cores and
# fits a parametric regression. Prints the log-likelihood and that of the null model, on the scale of time, and with
# RUNS the milliseconds of CPU that survreg() and its fitting routine alone took, the fastest of so many.
#   Rscript bench/parametric.R FILE exponential|lognormal|normal [RUNS]        default: one run of survreg() alone
suppressPackageStartupMessages({
  library(data.table)
  library(survival)
})
setDTthreads(0)
arguments <- commandArgs(TRUE)
distribution <- c(exponential = "exponential", lognormal = "lognormal", normal = "gaussian")[[arguments[2]]]
runs <- as.integer(arguments[3])
cases <- fread(arguments[1], data.table = FALSE)
covariates <- setdiff(names(cases), c("time", "status"))
formula <- reformulate(covariates, quote(Surv(time, status)))
milliseconds <- function(code) 1000 * sum(system.time(code)[1:2])
whole <- milliseconds(fit <- survreg(formula, cases, dist = distribution))
bare <- NA
if (!is.na(runs)) {
  x <- cbind(1, as.matrix(cases[covariates]))
  rownames(x) <- NULL
  logarithms <- distribution != "gaussian"
  y <- Surv(if (logarithms) log(cases$time) else cases$time, cases$status)
  routine <- survreg.distributions[[if (logarithms && distribution == "exponential") "extreme" else "gaussian"]]
  for (run in seq_len(runs)) {
    whole <- min(whole, milliseconds(survreg(formula, cases, dist = distribution)))
    bare <- min(bare, na.rm = TRUE,
                milliseconds(survreg.fit(x, y, NULL, numeric(nrow(x)), NULL, survreg.control(), routine,
                                         if (distribution == "exponential") 1 else 0, 1, rep(1, nrow(x)), NULL)))
  }
}
cat(sprintf("is %s %.17g 1e-6\n", c("logLikelihood", "nullLogLikelihood"), rev(fit$loglik)), sep = "")
if (!is.na(runs)) cat(sprintf("took %s %.1f\n", c("survreg()", "routine"), c(whole, bare)), sep = "")
