#!/usr/bin/env Rscript
# Writes cox-time.csv beside itself: Cox regressions whose covariates are expressions of the data and of the time, and the
# traces of the damped Newton iteration, against which the system's own numbers are tested.
#   Rscript tests/golden/cox-time.R
# Ties after Breslow throughout. The likelihood and the iteration come from their definitions, with the risk set built anew
# at the time of every case; estimates, covariances and likelihoods from R's package `survival` as well, by a stratum of
# its own for each risk set and by tt(), which must agree.
suppressPackageStartupMessages(library(survival))

self <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
# Rscript passes blanks in its own path as ~+~.
here <- dirname(normalizePath(gsub("~+~", " ", self, fixed = TRUE)))
data_dir <- file.path(here, "..", "..", "examples", "data")

# 17 significant digits bring every double back unchanged.
digits <- function(x)
  ifelse(is.na(x), "NA", ifelse(x == round(x) & abs(x) < 1e15, sprintf("%.0f", x), sprintf("%.17g", x)))
single <- function(x) readBin(writeBin(x, raw(), size = 4), "numeric", length(x), size = 4)
agree <- function(a, b, tolerance = 1e-9) {
  a <- as.numeric(a)
  b <- as.numeric(b)
  stopifnot(length(a) == length(b), all(abs(a - b) <= tolerance * pmax(1, abs(b))))
}
published <- function(found, printed, decimals) stopifnot(abs(found - printed) <= 0.50001 * 10^-decimals)

rows <- list()
add <- function(dataset, run, quantity, value, of = "", row = seq_along(value))
  rows[[length(rows) + 1]] <<- data.frame(dataset = dataset, run = run, quantity = quantity, of = of, row = row,
                                          value = digits(as.numeric(value)))
# A row per element; `of` names the columns.
add_matrix <- function(dataset, run, quantity, m, names, row = seq_len(nrow(m)))
  for (k in seq_len(ncol(m))) add(dataset, run, quantity, m[, k], names[k], row)

# v: the variables, by name. z: the covariates, each a function of the variables of some cases and of one time, under
# the expression that it stands for.
cases <- function(time, status, v, z, stratum = rep(0, length(time)))
  list(time = as.numeric(time), status = as.numeric(status), stratum = stratum, v = as.list(v), z = z,
       number = seq_along(time))
write_data <- function(dataset, d) {
  add(dataset, "data", "time", d$time)
  add(dataset, "data", "status", d$status)
  if (length(unique(d$stratum)) > 1) add(dataset, "data", "stratum", d$stratum)
  for (name in names(d$v)) add(dataset, "data", "covariate", d$v[[name]], name)
}

# ---- The partial likelihood by its definition.

# Strata in blocks, times descending, censored cases before the events of the same time.
in_order <- function(d) {
  o <- order(-d$stratum, -d$time, d$status)
  list(time = d$time[o], status = d$status[o], stratum = d$stratum[o], v = lapply(d$v, function(x) x[o]), z = d$z,
       number = d$number[o])
}
# The covariates of the cases i at a time, a row per case.
values <- function(d, i, time) {
  v <- lapply(d$v, function(x) x[i])
  z <- vapply(d$z, function(f) suppressWarnings(rep_len(f(v, time), length(i))), numeric(length(i)))
  matrix(z, length(i))
}
# The first of the cases i that ends the evaluation, in their order: one whose covariates have no value, or whose
# predictor is beyond the bound of 75. NULL if none does.
trouble <- function(d, i, time, z, beta) {
  without <- rowSums(!is.finite(z)) > 0
  eta <- drop(z %*% beta)
  beyond <- is.nan(eta) | abs(eta) > 75
  if (!any(without | beyond)) return(NULL)
  at <- which(without | beyond)[1]
  if (without[at])
    list(status = 200, covariate = which(!is.finite(z[at, ]))[1], case = d$number[i[at]], time = time)
  else list(status = 103)
}
evaluate <- function(d, beta) {
  n <- length(d$time)
  p <- length(d$z)
  L <- 0
  U <- numeric(p)
  I <- matrix(0, p, p)
  last <- c(d$stratum[-1] != d$stratum[-n], TRUE)
  falls <- c(d$time[-1] < d$time[-n], TRUE)
  fresh <- TRUE
  for (i in seq_len(n)) {
    if (fresh) {
      first <- i
      E <- numeric(p)
      deaths <- 0
    }
    own <- values(d, i, d$time[i])
    ended <- trouble(d, i, d$time[i], own, beta)
    if (!is.null(ended)) return(ended)
    eta <- sum(own * beta)
    risk <- first:i
    z <- values(d, risk, d$time[i])
    ended <- trouble(d, risk, d$time[i], z, beta)
    if (!is.null(ended)) return(ended)
    if (d$status[i] == 1) {
      deaths <- deaths + 1
      L <- L + eta
      E <- E + own[1, ]
      if (last[i] || falls[i]) {
        w <- exp(drop(z %*% beta))
        S0 <- sum(w)
        S1 <- colSums(w * z)
        S2 <- crossprod(z, w * z)
        U <- U + E - deaths * S1 / S0
        I <- I + deaths * (S2 / S0 - outer(S1 / S0, S1 / S0))
        L <- L - deaths * log(S0)
        E <- numeric(p)
        deaths <- 0
      }
    }
    fresh <- last[i]
  }
  list(status = 0, L = L, U = U, I = I)
}

# ---- The iteration.

# LU factors with scaled partial pivoting; NULL if singular.
factor_lu <- function(A) {
  p <- nrow(A)
  largest <- apply(abs(A), 1, max)
  if (any(largest == 0)) return(NULL)
  scale <- 1 / largest
  permutation <- seq_len(p)
  determinant <- 1
  for (k in seq_len(p)) {
    candidates <- k:p
    size <- scale[candidates] * abs(A[candidates, k])
    if (max(size) == 0) return(NULL)
    pivot <- candidates[which.max(size)]
    if (pivot != k) {
      A[c(k, pivot), ] <- A[c(pivot, k), ]
      scale[c(k, pivot)] <- scale[c(pivot, k)]
      permutation[c(k, pivot)] <- permutation[c(pivot, k)]
      determinant <- -determinant
    }
    determinant <- determinant * A[k, k]
    for (i in seq_len(p - k) + k) {
      A[i, k] <- A[i, k] / A[k, k]
      rest <- seq_len(p - k) + k
      A[i, rest] <- A[i, rest] - A[i, k] * A[k, rest]
    }
  }
  if (!(determinant >= 1e-14)) return(NULL)
  list(lu = A, permutation = permutation)
}
solve_lu <- function(f, b) {
  p <- length(b)
  y <- b[f$permutation]
  for (i in seq_len(p)) for (j in seq_len(i - 1)) y[i] <- y[i] - f$lu[i, j] * y[j]
  for (i in rev(seq_len(p))) {
    for (j in seq_len(p - i) + i) y[i] <- y[i] - f$lu[i, j] * y[j]
    y[i] <- y[i] / f$lu[i, i]
  }
  y
}

# A line before each step and one after the last, on the scale of the data. Every step is at most half of Newton's, and
# the likelihood is tested with its sign.
iterate <- function(d, criterion, most, start) {
  criterion <- single(criterion)
  d <- in_order(d)
  p <- length(d$z)
  beta <- start
  trace <- NULL
  halvings <- NULL
  line <- function(k) trace <<- rbind(trace, c(k, now$L, beta))
  k <- 0
  done <- function(status, V = NULL)
    list(status = status, iterations = k, beta = beta, V = V, L = if (now$status == 0) now$L else NA, L0 = null$L,
         trace = trace, halvings = halvings, gradient = if (status == 0) now$U, ended = now)
  null <- now <- evaluate(d, numeric(p))
  if (null$status != 0) return(done(null$status))
  now <- evaluate(d, beta)
  if (now$status != 0) return(done(now$status))
  repeat {
    k <- k + 1
    line(k)
    old <- now$L
    lu <- factor_lu(now$I)
    if (is.null(lu)) return(done(101))
    step <- solve_lu(lu, now$U)
    beta <- beta + step
    now <- evaluate(d, beta)
    if (now$status != 0) return(done(now$status))
    for (halving in 1:7) {
      step <- step / 2
      beta <- beta - step
      now <- evaluate(d, beta)
      if (now$status != 0) return(done(now$status))
      if (old <= now$L) break
    }
    halvings <- c(halvings, halving)
    if (now$L < old) {
      beta <- beta - step
      step <- 0 * step
      now <- evaluate(d, beta)
      if (k == 1) return(done(103))
    }
    change <- abs(now$L - old)
    if (now$L != 0) change <- change / now$L
    relative <- max(ifelse(step == 0, 0, abs(step / beta)))
    if (criterion > change && criterion > relative) break
    if (k > most) return(done(102))
  }
  line(k + 1)
  done(0, matrix(sapply(seq_len(p), function(j) solve_lu(lu, as.numeric(seq_len(p) == j))), p))
}

run <- function(dataset, name, d, criterion, most = 50, start = numeric(length(d$z)), expect = 0) {
  r <- iterate(d, criterion, most, start)
  if (r$status != expect) {
    print(r)
    stop(dataset, ' ', name, ': status ', r$status, ', not ', expect)
  }
  if (expect == 0) { # what is left to go is about the last step
    maximum <- coef(fit_tightly(d))
    stopifnot(all(abs(r$beta - maximum) <= 1.5 * criterion * abs(maximum) + 1e-12))
  }
  covariates <- names(d$z)
  put <- function(quantity, value, of = "", row = 0) add(dataset, name, quantity, value, of, row)
  put("criterion", criterion)
  put("max_iterations", most)
  put("start", start, covariates)
  put("status", r$status)
  if (r$status == 200) {
    put("without_value", 1, covariates[r$ended$covariate])
    put("without_value_case", r$ended$case)
    put("without_value_time", r$ended$time)
  }
  put("iterations", r$iterations)
  put("loglik_null", if (is.null(r$L0)) NA else r$L0)
  put("loglik", r$L)
  # After a failure, what is held when it ends.
  put("beta", r$beta, covariates)
  if (!is.null(r$trace)) {
    add(dataset, name, "trace_loglik", r$trace[, 2], row = r$trace[, 1])
    if (length(r$halvings) > 0) add(dataset, name, "trace_halvings", r$halvings)
    add_matrix(dataset, name, "trace_beta", r$trace[, -(1:2), drop = FALSE], covariates, r$trace[, 1])
  }
  if (r$status == 0) {
    put("gradient", r$gradient, covariates)
    add_matrix(dataset, name, "covariance", r$V, covariates)
  }
  invisible(r)
}

# One evaluation.
at <- function(dataset, name, d, beta, expect) {
  now <- evaluate(in_order(d), beta)
  stopifnot(now$status == expect)
  add(dataset, name, "at", beta, names(d$z), 0)
  add(dataset, name, "at_status", now$status, row = 0)
  if (now$status == 0) add(dataset, name, "at_loglik", now$L, row = 0)
}

# ---- The fit at the maximum, by a stratum for the risk set of each time of death.

expand <- function(d) {
  sets <- NULL
  for (s in unique(d$stratum)) for (t in unique(d$time[d$status == 1 & d$stratum == s])) {
    risk <- which(d$stratum == s & d$time >= t)
    sets <- rbind(sets, cbind(1 + NROW(sets), d$status[risk] == 1 & d$time[risk] == t, values(d, risk, t)))
  }
  frame <- data.frame(set = sets[, 1], died = sets[, 2], sets[, -(1:2), drop = FALSE])
  names(frame)[-(1:2)] <- paste0("z", seq_along(d$z))
  frame
}
fit_tightly <- function(d, init = numeric(length(d$z)), iterations = 100) {
  frame <- expand(d)
  right <- paste(names(frame)[-(1:2)], collapse = " + ")
  suppressWarnings(coxph(as.formula(paste("Surv(rep(1, nrow(frame)), died) ~", right, "+ strata(set)")), frame,
                         ties = "breslow", init = init,
                         control = coxph.control(eps = 1e-14, toler.chol = 1e-13, iter.max = iterations)))
}

# by_tt: a function that fits the model with tt().
analyse <- function(dataset, d, elsewhere, by_tt = NULL) {
  covariates <- names(d$z)
  p <- length(covariates)
  put <- function(quantity, value, of = "", row = 0) add(dataset, "", quantity, value, of, row)
  fit <- fit_tightly(d)
  beta <- unname(coef(fit))
  V <- unname(vcov(fit))
  ordered <- in_order(d)
  for (more in 1:2) { # two steps of Newton: to the last digits
    now <- evaluate(ordered, beta)
    beta <- beta + solve(now$I, now$U)
  }
  now <- evaluate(ordered, beta)
  agree(beta / sqrt(diag(V)), coef(fit) / sqrt(diag(V)), 1e-7)
  agree(now$L, fit$loglik[2])
  agree(solve(now$I) / sqrt(outer(diag(V), diag(V))), V / sqrt(outer(diag(V), diag(V))), 1e-6)
  V <- solve(now$I)
  V <- (V + t(V)) / 2
  null <- evaluate(ordered, numeric(p))
  agree(null$L, fit$loglik[1])
  if (!is.null(by_tt)) {
    other <- by_tt()
    agree(beta / sqrt(diag(V)), coef(other) / sqrt(diag(V)), 1e-5)
    agree(c(null$L, now$L), other$loglik, 1e-8)
    agree(vcov(other) / sqrt(outer(diag(V), diag(V))), V / sqrt(outer(diag(V), diag(V))), 1e-4)
  }
  put("cases", length(d$time))
  put("events", sum(d$status))
  put("loglik_null", null$L)
  put("loglik", now$L)
  put("beta", beta, covariates)
  put("se", sqrt(diag(V)), covariates)
  add_matrix(dataset, "", "covariance", V, covariates)
  chisq <- c(lr = 2 * (now$L - null$L), score = sum(null$U * solve(null$I, null$U)), wald = drop(beta %*% now$I %*% beta))
  agree(chisq, c(2 * diff(fit$loglik), fit$score, fit$wald.test), 1e-6)
  for (test in names(chisq)) put(paste0(test, "_chisq"), chisq[test])

  there <- evaluate(ordered, elsewhere)
  from_r <- fit_tightly(d, elsewhere, 0)
  agree(there$L, from_r$loglik[1])
  agree(there$U / sqrt(diag(there$I)), colSums(as.matrix(residuals(from_r, "score"))) / sqrt(diag(there$I)), 1e-7)
  agree(vcov(from_r) %*% there$I, diag(p), 1e-5)
  put("elsewhere", elsewhere, covariates)
  put("elsewhere_loglik", there$L)
  put("elsewhere_gradient", there$U, covariates)
  add_matrix(dataset, "", "elsewhere_information", there$I, covariates)
  invisible(list(beta = beta, se = sqrt(diag(V)), loglik = c(null$L, now$L)))
}

# ---- Data.

leukaemia <- read.csv(file.path(data_dir, "leukaemia-6mp.csv"))
leukaemia$rx <- as.numeric(leukaemia$group == "placebo")
six_mp <- cases(leukaemia$weeks, leukaemia$relapse, leukaemia["rx"],
                list("rx" = function(v, t) v$rx, "rx*(T_-10)" = function(v, t) v$rx * (t - 10)))
write_data("leukaemia", six_mp)
r <- analyse("leukaemia", six_mp, c(0.7, 0.05), function()
  coxph(Surv(weeks, relapse) ~ rx + tt(rx), leukaemia, tt = function(x, t, ...) x * (t - 10), ties = "breslow"))
published(r$beta, c(1.514858, -0.008135), 6)
published(r$se, c(0.414500, 0.061282), 6)
published(r$loglik[2], -86.3708, 4)
run("leukaemia", "1e-4", six_mp, 1e-4)
run("leukaemia", "1e-5", six_mp, 1e-5)
# No covariate depends on the time: the regression with fixed covariates.
free <- cases(leukaemia$weeks, leukaemia$relapse, leukaemia["rx"], list("rx" = function(v, t) v$rx))
write_data("leukaemia-fixed", free)
r <- analyse("leukaemia-fixed", free, 0.8)
published(r$beta, 1.509191, 6)
published(r$loglik, c(-93.98505, -86.37962), 5)
run("leukaemia-fixed", "1e-5", free, 1e-5)
# A covariate that is another one, written in another way.
copied <- cases(leukaemia$weeks, leukaemia$relapse, leukaemia["rx"],
                list("rx*T_" = function(v, t) v$rx * t, "T_*rx" = function(v, t) t * v$rx))
write_data("leukaemia-copy", copied)
run("leukaemia-copy", "1e-4", copied, 1e-4, expect = 101)

veteran <- read.csv(file.path(data_dir, "veteran.csv"))
variables <- veteran[c("trt", "prior", "karno")]
of_veteran <- list("trt" = function(v, t) v$trt, "prior" = function(v, t) v$prior, "karno" = function(v, t) v$karno,
                   "karno*log(T_+20)" = function(v, t) v$karno * log(t + 20))
full <- cases(veteran$time, veteran$status, variables, of_veteran)
write_data("veteran", full)
r <- analyse("veteran", full, c(0.1, -0.01, -0.05, 0.01), function()
  coxph(Surv(time, status) ~ trt + prior + karno + tt(karno), veteran, tt = function(x, t, ...) x * log(t + 20),
        ties = "breslow"))
published(r$beta, c(0.015216, -0.009435, -0.123653, 0.021118), 6)
run("veteran", "1e-4", full, 1e-4)
run("veteran", "1e-5", full, 1e-5)
by_cell <- cases(veteran$time, veteran$status, variables, of_veteran[-2],
                 match(veteran$celltype, c("squamous", "smallcell", "adeno", "large")))
write_data("veteran-strata", by_cell)
r <- analyse("veteran-strata", by_cell, c(0.1, -0.05, 0.01), function()
  coxph(Surv(time, status) ~ trt + karno + tt(karno) + strata(celltype), veteran,
        tt = function(x, t, ...) x * log(t + 20), ties = "breslow"))
run("veteran-strata", "1e-4", by_cell, 1e-4)

# Unsorted, with ties among deaths, and of deaths with censored cases, in both strata.
of_tied <- list("a" = function(v, t) v$a, "b*T_" = function(v, t) v$b * t,
                "a*b/(1+T_)" = function(v, t) v$a * v$b / (1 + t))
tied <- cases(c(5, 2, 7, 5, 2, 9, 5, 3, 7, 2, 4, 9, 3, 6, 4, 2, 8, 4),
              c(1, 1, 0, 0, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1, 0, 1, 0, 1),
              list(a = c(3, 1, 4, 1, 5, 9, 2, 6, 5, 3, 5, 8, 9, 7, 9, 3, 2, 3),
                   b = c(0.5, -1.25, 0, 2, 0.75, 1, -0.5, 1.5, -2, 0.25, 0, -1, 1.25, 0.5, -0.75, 2, 1, -1.5)),
              of_tied, c(7, 3, 7, 3, 7, 3, 3, 7, 7, 7, 3, 7, 3, 3, 7, 3, 3, 7))
write_data("tied", tied)
analyse("tied", tied, c(-0.4, 0.1, 0.6))
run("tied", "1e-4", tied, 1e-4)
run("tied", "1e-5", tied, 1e-5)
run("tied", "coarse", tied, 0.1)
# Far from the maximum: steps that are halved more than once.
run("tied", "halved", tied, 1e-4, start = c(-1, 0.3, 1))
# Four iterations are made before the end; a run that goes on starts where they end.
left <- run("tied", "stopped", tied, 1e-4, most = 3, expect = 102)$beta
run("tied", "continued", tied, 1e-4, most = 33, start = left)
# Newton's full step goes beyond the bound; already the start does.
run("tied", "overshot", tied, 1e-4, start = c(1, 0, -1), expect = 103)
run("tied", "guard", tied, 1e-4, start = c(0, 0, 300), expect = 103)

# 240 cases, tied, in three strata: s = 16807 s mod 2147483647 from s = 1, six numbers to a case. The second covariate is
# large beside its spread, the third depends on the time by a threshold.
s <- 1
drawn <- function(modulus) {
  s <<- (16807 * s) %% 2147483647
  s %% modulus
}
n <- 240
x <- matrix(0, n, 3)
time <- status <- stratum <- numeric(n)
for (i in seq_len(n)) {
  x[i, ] <- c(drawn(2), drawn(41) + 40, drawn(5) - 2)
  time[i] <- 1 + floor(drawn(1000) / 25 / (1 + 0.6 * x[i, 1]))
  status[i] <- as.numeric(drawn(5) < 3)
  stratum[i] <- drawn(3) + 1
}
colnames(x) <- c("x1", "x2", "x3")
of_drawn <- list("x1" = function(v, t) v$x1, "x2*log(T_)" = function(v, t) v$x2 * log(t),
                 "x3*(T_>9)" = function(v, t) v$x3 * (t > 9))
for (in_strata in c(FALSE, TRUE)) {
  dataset <- if (in_strata) "drawn-strata" else "drawn"
  d <- cases(time, status, as.data.frame(x), of_drawn, if (in_strata) stratum else rep(0, n))
  write_data(dataset, d)
  analyse(dataset, d, c(0.3, -0.01, 0.2))
  run(dataset, "1e-4", d, 1e-4)
  run(dataset, "1e-5", d, 1e-5)
}

# What happens at times when nobody dies counts: at 5 a case is censored, and only then a covariate peaks. The
# coefficient of the peak times 16, the largest value then, is the predictor.
peak <- list("x" = function(v, t) v$x, "y/(1+100*(T_-5)^2)" = function(v, t) v$y / (1 + 100 * (t - 5)^2))
peaked <- cases(c(1, 2, 3, 4, 5, 6, 7, 8), c(1, 1, 1, 1, 0, 1, 1, 1),
                list(x = c(1, 0, 1, 1, 0, 0, 1, 0), y = c(1, 3, 2, 4, 1, 16, 2, 5)), peak)
write_data("peak", peaked)
at("peak", "within", peaked, c(0, 4.6875), 0)
at("peak", "beyond", peaked, c(0, 4.6876), 103)
at("peak", "beneath", peaked, c(0, -4.6876), 103)
# The same as an event: the largest value belongs to a case that lives on.
event <- peaked
event$status[5] <- 1
write_data("peak-event", event)
at("peak-event", "within", event, c(0, 4.6875), 0)
at("peak-event", "beyond", event, c(0, 4.6876), 103)
# In strata nobody with a large value is at risk then.
apart <- peaked
apart$stratum <- c(1, 1, 1, 2, 1, 2, 2, 2)
write_data("peak-apart", apart)
at("peak-apart", "beyond", apart, c(0, 4.6876), 0)

# Expressions without a value: at a censored time for a case that lives on; of one case at any time; of one case at its
# own time; for a case of the other stratum, where it does not matter; of all at one time, that case first whose it is.
nowhere <- function(dataset, z, expect = 200, ...) {
  d <- cases(peaked$time, peaked$status, peaked$v, z, ...)
  write_data(dataset, d)
  run(dataset, "1e-4", d, 1e-4, expect = expect)
}
nowhere("no-value-censored", list("y" = function(v, t) v$y,
                                  "x/((T_-5)^2+(y-16)^2)" = function(v, t) v$x / ((t - 5)^2 + (v$y - 16)^2)))
nowhere("no-value-case", list("x*T_" = function(v, t) v$x * t, "1/(y-4)" = function(v, t) 1 / (v$y - 4)))
nowhere("no-value-root", list("sqrt(T_+1-y)" = function(v, t) sqrt(t + 1 - v$y), "1/(T_-4)" = function(v, t) 1 / (t - 4)))
nowhere("no-value-apart", list("x/((T_-5)^2+(y-16)^2)" = function(v, t) v$x / ((t - 5)^2 + (v$y - 16)^2)),
        expect = 0, stratum = apart$stratum)
nowhere("no-value-own", list("1/(T_-5)" = function(v, t) 1 / (t - 5)))

out <- file(file.path(here, "cox-time.csv"), "wb")
writeLines(c("# Cox regressions with covariates that depend on the time, ties after Breslow.",
             paste0("# Source: ", R.version$version.string, ", package survival ", packageVersion("survival"),
                    "; definitions and data stand in the script."),
             "# Written by: Rscript tests/golden/cox-time.R",
             "# run: empty for the maximum; data: the cases; else a damped iteration, on the scale of the data, or",
             "# one evaluation (at).",
             "# of: a covariate, by its expression of the variables and of the time T_. Covariance, information: of",
             "# the column, rows the covariates. without_value: the first evaluation without a value, its case (as",
             "# numbered in the data) and its time."),
           out)
write.table(do.call(rbind, rows), out, sep = ",", quote = FALSE, row.names = FALSE)
close(out)
