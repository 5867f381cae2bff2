#!/usr/bin/env Rscript
# Writes life-table.csv beside itself: life tables with the standard errors of their columns, and the survival
# distributions fitted to them, against which the system's own numbers are tested.
#   Rscript tests/golden/life-table.R
# Coefficients come from lm() with weights, their covariance from B diag(V) B' with B = (X'WX)^-1 X'W, that of the
# Weibull parameters, of quantiles (log t) and of survival (log(-log S)) by the delta method, p from
# pf(chi-square / df, df, 32000). Chi-square takes the log-likelihood of a fit rounded to single precision.

self <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
# Rscript passes blanks in its own path as ~+~.
here <- dirname(normalizePath(gsub("~+~", " ", self, fixed = TRUE)))
data_dir <- file.path(here, "..", "..", "examples", "data")

# 17 significant digits bring every double back unchanged.
digits <- function(x)
  ifelse(is.na(x), "NA", ifelse(x == round(x) & abs(x) < 1e15, sprintf("%.0f", x), sprintf("%.17g", x)))
single <- function(x) readBin(writeBin(x, raw(), size = 4), "numeric", length(x), size = 4)
z <- qnorm(0.975)
models <- c("exponential", "linear-hazard", "gompertz", "weibull")

rows <- NULL
add <- function(dataset, quantity, value, model = "", weighting = 0, row = seq_along(value))
  rows <<- rbind(rows, data.frame(dataset = dataset, quantity = quantity, model = model, weighting = weighting,
                                  row = row, value = digits(value)))

# Counts of cases: n limits up to the largest time, or a step if the largest time has 4 to 29 of them. A time on a limit
# begins the next interval.
tabulated <- function(time, complete, n = 12, step = NULL) {
  k <- if (is.null(step)) 0 else floor(max(time) / step + 0.5)
  if (k > 3 && k < 30) n <- k + 1 else step <- max(time) / (n - 1)
  lower <- (seq_len(n) - 1) * step
  interval <- pmin(findInterval(time + time / 1e12, lower + step) + 1, n)
  last <- max(interval)
  list(entering = length(time), lower = lower[1:last], withdrawn = tabulate(interval[complete == 0], last),
       dying = tabulate(interval[complete == 1], last))
}

life_table <- function(counts, corrected) {
  n <- length(counts$lower)
  N <- counts$entering - c(0, cumsum(counts$withdrawn + counts$dying))[1:n]
  R <- min(max(which(N > 0)) + 1, n)
  i <- 1:R
  closed <- seq_len(R - 1)
  L <- counts$lower[i]
  N <- N[i]
  W <- counts$withdrawn[i]
  D <- counts$dying[i]
  h <- c(diff(L), NA)
  E <- N - W / 2
  Q <- ifelse(E == 0, 0, D / E)
  if (corrected) Q <- ifelse(E == 0, 0, ifelse(Q == 1, (E - 0.5) / E, ifelse(Q == 0, 0.5 / E, Q)))
  S <- 1 - Q
  # In double precision: cumprod() has more, and whether P ends on a target hangs on the last bit.
  P <- Reduce(`*`, S, 1, accumulate = TRUE)[i]
  # Greenwood's sum; intervals that nobody survives are left out of it.
  G <- c(0, cumsum(ifelse(S * E > 0, Q / (E * S), 0)))[i]
  density <- P * Q / h
  hazard <- 2 * Q / (h * (1 + S))
  hazard_variance <- ifelse(S < 1, hazard^2 * (1 - (h * hazard / 2)^2) / (E * Q), 0)
  density_se <- ifelse(E * Q > 0, P * Q / h * sqrt(G + S / (E * Q)), 0)
  # The time at which P falls to half of what it is at the start of the interval, by linear interpolation.
  median <- sapply(closed, function(r) {
    half <- P[r] / 2
    if (P[R] > half) return(c(L[R] - L[r], 1, 0))
    j <- which(P[closed] >= half & P[-1] < half)
    # P ends on the target: it is reached where P last fell.
    if (length(j) == 0) j <- max(which(P[closed] > P[-1]))
    j <- j[1]
    time <- approx(P[c(j + 1, j)], L[c(j + 1, j)], half)$y - L[r]
    c(time, 0, if (E[r] > 0 && density[j] > 0) P[r] / (2 * density[j] * sqrt(E[r])) else NA)
  })
  x <- P[-1] / P[closed]
  e <- E[closed]
  d <- D[closed]
  loglik <- sum(ifelse(x < 1, d * log(1 - x), 0), ifelse(x > 0, (e - d) * log(x), 0))
  density_se[R] <- NA
  hazard_variance[R] <- NA
  columns <- list(lower = L, midpoint = L + h / 2, width = h, entering = N, withdrawn = W, exposed = E, dying = D,
                  dead = Q, surviving = S, cumulative = P, density = density, hazard = hazard,
                  se_cumulative = P * sqrt(G), se_density = density_se, se_hazard = sqrt(pmax(hazard_variance, 0)),
                  median = c(median[1, ], NA), median_beyond = c(median[2, ], NA), se_median = c(median[3, ], NA))
  list(R = R, columns = columns, hazard_variance = hazard_variance[closed], loglik = loglik)
}

# Cumulative hazard and its derivatives by the parameters (lambda, gamma), hazard, and the time at which the cumulative
# hazard is H.
cumulative_hazard <- function(model, l, g, t) switch(model, exponential = l * t, "linear-hazard" = l * t + g * t^2 / 2,
  gompertz = exp(l) / g * expm1(g * t), weibull = l * t^g)
hazard_at <- function(model, l, g, t) switch(model, exponential = rep(l, length(t)), "linear-hazard" = l + g * t,
  gompertz = exp(l + g * t), weibull = l * g * t^(g - 1))
gradient <- function(model, l, g, t) switch(model, exponential = t, "linear-hazard" = c(t, t^2 / 2),
  gompertz = c(exp(l) / g * expm1(g * t), exp(l) * (t * exp(g * t) / g - expm1(g * t) / g^2)),
  weibull = c(t^g, l * t^g * log(t)))
# Not a number where the hazard is used up before H.
time_of <- function(model, l, g, H) suppressWarnings(switch(model, exponential = H / l,
  "linear-hazard" = 2 * H / (l + sqrt(l^2 + 2 * g * H)), gompertz = log1p(g * H / exp(l)) / g,
  weibull = (H / l)^(1 / g)))

fit <- function(dataset, table, model, weighting, times, curves) {
  m <- seq_len(table$R - 1)
  column <- lapply(table$columns, `[`, m)
  on_log <- model %in% c("gompertz", "weibull")
  y <- if (on_log) log(column$hazard) else column$hazard
  V <- table$hazard_variance / if (on_log) column$hazard^2 else 1
  w <- switch(weighting, rep(1, length(m)), 1 / V, column$exposed * column$width)
  X <- switch(model, exponential = cbind(rep(1, length(m))), weibull = cbind(1, log(column$midpoint)),
              cbind(1, column$midpoint))
  estimate <- unname(coef(lm(y ~ X - 1, weights = w)))
  # By the QR decomposition of sqrt(W) X.
  B <- qr.coef(qr(sqrt(w) * X), diag(sqrt(w)))
  if (is.null(dim(B))) B <- t(B)
  covariance <- B %*% (V * t(B))
  stopifnot(isTRUE(all.equal(estimate, drop(B %*% y))))
  if (model == "weibull") { # from the regression's intercept and slope
    g <- 1 + estimate[2]
    l <- exp(estimate[1]) / g
    J <- rbind(c(l, -l / g), c(0, 1))
    estimate <- c(l, g)
    covariance <- J %*% covariance %*% t(J)
  }
  l <- estimate[1]
  g <- estimate[2]
  put <- function(quantity, value, ...) add(dataset, quantity, value, model, weighting, ...)
  put("lambda", l, 0)
  put("var_lambda", covariance[1, 1], 0)
  if (model != "exponential") {
    put("gamma", g, 0)
    put("var_gamma", covariance[2, 2], 0)
    put("covariance", covariance[1, 2], 0)
  }
  start <- table$columns$lower
  survival <- exp(-cumulative_hazard(model, l, g, start))
  survival[1] <- 1
  at_midpoint <- exp(-cumulative_hazard(model, l, g, column$midpoint))
  hazard <- hazard_at(model, l, g, column$midpoint)
  p <- pmin(survival[-1] / survival[m], 1 - 1 / (2 * column$exposed))
  inadequate <- (model %in% c("exponential", "weibull") && l < 0) || any(hazard < 0) || any(survival > 1) ||
    any(at_midpoint > 1) || any(survival[m] == 0) || any(p <= 0)
  put("inadequate", as.numeric(inadequate), 0)
  if (inadequate) return(invisible())
  if (curves) {
    put("fitted_hazard", hazard)
    put("fitted_survival", survival)
    put("fitted_density", hazard * at_midpoint)
    put("conditional_survival", p)
  }
  loglik <- sum(column$dying * log(1 - p) + (column$exposed - column$dying) * log(p))
  chisq <- -2 * (single(loglik) - table$loglik)
  df <- table$R - 1 - length(estimate)
  put("loglik", loglik, 0)
  put("chisq", chisq, 0)
  put("df", df, 0)
  put("p", if (df <= 0) 1 else pf(chisq / df, df, 32000, lower.tail = FALSE), 0)
  put("aic", 2 * length(estimate) - 2 * loglik, 0)
  error <- function(t, scale) {
    slope <- gradient(model, l, g, t) / scale
    sqrt(drop(slope %*% covariance %*% slope))
  }
  for (percent in c(75, 50, 25)) {
    H <- -log(percent / 100)
    t <- time_of(model, l, g, H)
    put("quantile", if (is.nan(t)) NA else t, percent)
    # d log t = -dH / (t hazard(t))
    limits <- if (is.nan(t)) c(NA, NA) else t * exp(c(-z, z) * error(t, t * hazard_at(model, l, g, t)))
    put("quantile_lower", limits[1], percent)
    put("quantile_upper", limits[2], percent)
  }
  for (k in seq_along(times)) {
    H <- cumulative_hazard(model, l, g, times[k])
    limits <- exp(-H * exp(c(z, -z) * error(times[k], H)))
    # Where a linear hazard is negative there is no survival, nor where survival would exceed 1.
    if (H < 0 || hazard_at(model, l, g, times[k]) < 0) { H <- NA; limits <- c(NA, NA) }
    put("survival_at", exp(-H), row = k)
    put("survival_at_lower", limits[1], row = k)
    put("survival_at_upper", limits[2], row = k)
  }
}

analyse <- function(dataset, counts, corrected = TRUE, curves = TRUE) {
  table <- life_table(counts, corrected)
  for (column in names(table$columns)) add(dataset, column, table$columns[[column]])
  add(dataset, "loglik_data", table$loglik, row = 0)
  # Without a variance there are no weights.
  if (any(table$hazard_variance <= 0)) return(invisible())
  times <- max(table$columns$lower) * c(0.1, 0.4, 0.9)
  add(dataset, "time", times)
  for (model in models) for (weighting in 1:3) fit(dataset, table, model, weighting, times, curves)
  invisible(table)
}

# Published: men with angina pectoris, years since diagnosis (Parker et al. 1946; Gehan 1969, J. Chronic Diseases 21,
# 629-644).
angina <- list(entering = 2418, lower = 0:15,
               withdrawn = c(0, 39, 22, 23, 24, 107, 133, 102, 68, 64, 45, 53, 33, 27, 23, 30),
               dying = c(456, 226, 152, 171, 135, 125, 83, 74, 51, 42, 43, 34, 18, 9, 6, 0))
published <- analyse("angina-uncorrected", angina, FALSE, curves = FALSE)$columns
stopifnot(round(published$cumulative[2:6], 4) == c(0.8114, 0.7170, 0.6524, 0.5786, 0.5193),
          round(published$cumulative[16], 4) == 0.1429,
          round(published$se_cumulative[c(2, 16)], 4) == c(0.0080, 0.0133),
          round(published$hazard[1:5], 4) == c(0.2082, 0.1235, 0.0944, 0.1199, 0.1080),
          round(published$density[1:2], 4) == c(0.1886, 0.0944))
analyse("angina", angina)
# Nobody enters the last two rows: the table ends with the first of them.
analyse("angina-longer", list(entering = 2418, lower = 0:17, withdrawn = c(angina$withdrawn, 0, 0),
                              dying = c(angina$dying, 0, 0)), curves = FALSE)
# Limits that begin above 0 and are not evenly spaced, counts that are not whole.
analyse("uneven", list(entering = 100, lower = c(0.5, 1, 2, 4, 7, 11, 20), withdrawn = c(1.5, 0, 2, 3.25, 1, 4, 6),
                       dying = c(20.5, 15, 12, 9.75, 4, 3, 0)))
# Half survive to the end: the target of the first median is met on the plateau. No variance where nobody dies.
analyse("plateau", list(entering = 8, lower = 0:4, withdrawn = c(0, 0, 0, 2, 2), dying = c(4, 0, 0, 0, 0)), FALSE)
# Nobody survives the second interval, and nobody enters the third.
analyse("died-out", list(entering = 10, lower = 0:2, withdrawn = c(0, 0, 0), dying = c(4, 6, 0)), FALSE)
# Three intervals: nothing is left of the degrees of freedom of the models with two parameters.
analyse("short", list(entering = 50, lower = c(0, 1, 2), withdrawn = c(3, 2, 5), dying = c(8, 12, 20)), curves = FALSE)

veteran <- read.csv(file.path(data_dir, "veteran.csv"))
analyse("veteran", tabulated(veteran$time, veteran$status))
analyse("veteran-uncorrected", tabulated(veteran$time, veteran$status), FALSE)
analyse("veteran-step", tabulated(veteran$time, veteran$status, step = 50))
leukaemia <- read.csv(file.path(data_dir, "leukaemia-6mp.csv"))
analyse("leukaemia", tabulated(leukaemia$weeks, leukaemia$relapse))
analyse("leukaemia-step", tabulated(leukaemia$weeks, leukaemia$relapse, step = 5), curves = FALSE)

# Weibull, lambda 0.02 and gamma 1.5, at evenly spaced probabilities; every fourth case withdrawn at 0.6 of its time. To
# three decimals, so that the times are the same everywhere.
i <- 1:300
time <- (-log(1 - (i - 0.5) / 300) / 0.02)^(1 / 1.5) * ifelse(i %% 4 == 0, 0.6, 1)
time <- floor(1000 * time + 0.5) / 1000
analyse("weibull", tabulated(time, as.numeric(i %% 4 != 0), n = 20), curves = FALSE)

out <- file(file.path(here, "life-table.csv"), "wb")
writeLines(c("# Life tables, and the survival distributions fitted to them.",
             paste0("# Source: ", R.version$version.string, "; lm, qr, pf; the formulas and data stand in the script."),
             "# Written by: Rscript tests/golden/life-table.R",
             "# Rows count from 1 (0: a single value; quantiles: percent surviving).",
             "# Weightings: 1 equal, 2 by 1/V, 3 by E h."), out)
write.table(rows, out, sep = ",", quote = FALSE, row.names = FALSE)
close(out)
