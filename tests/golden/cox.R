#!/usr/bin/env Rscript
# Writes cox.csv beside itself: Cox regressions with their residuals, baselines and tests, and the traces of the damped
# Newton iteration, against which the system's own numbers are tested.
#   Rscript tests/golden/cox.R
# Ties after Breslow throughout. Estimates, baselines, residuals and concordance come from R's package `survival`, and
# from their definitions as well, which must agree; the iteration and the test of proportional hazards of Grambsch and
# Therneau (1994, Biometrika 81, 515-526) from their definitions alone.
suppressPackageStartupMessages(library(survival))

self <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
# Rscript passes blanks in its own path as ~+~.
here <- dirname(normalizePath(gsub("~+~", " ", self, fixed = TRUE)))
data_dir <- file.path(here, "..", "..", "examples", "data")

# 17 significant digits bring every double back unchanged.
digits <- function(x)
  ifelse(is.na(x), "NA", ifelse(x == round(x) & abs(x) < 1e15, sprintf("%.0f", x), sprintf("%.17g", x)))
single <- function(x) readBin(writeBin(x, raw(), size = 4), "numeric", length(x), size = 4)
z <- qnorm(0.975)
agree <- function(a, b, tolerance = 1e-9) {
  a <- as.numeric(a)
  b <- as.numeric(b)
  stopifnot(length(a) == length(b), all(abs(a - b) <= tolerance * pmax(1, abs(b))))
}

rows <- list()
add <- function(dataset, run, quantity, value, of = "", row = seq_along(value))
  rows[[length(rows) + 1]] <<- data.frame(dataset = dataset, run = run, quantity = quantity, of = of, row = row,
                                          value = digits(as.numeric(value)))
# A row per element; `of` names the columns.
add_matrix <- function(dataset, run, quantity, m, names = colnames(m), row = seq_len(nrow(m)))
  for (k in seq_len(ncol(m))) add(dataset, run, quantity, m[, k], names[k], row)

# ---- The partial likelihood by its definition: from the largest time down, sums over those at risk.

# Strata in blocks, times descending, censored cases before the events of the same time.
in_order <- function(d) {
  o <- order(-d$stratum, -d$time, d$status)
  list(time = d$time[o], status = d$status[o], stratum = d$stratum[o], x = d$x[o, , drop = FALSE])
}
evaluate <- function(d, beta) {
  n <- length(d$time)
  p <- ncol(d$x)
  L <- 0
  U <- numeric(p)
  I <- matrix(0, p, p)
  last <- c(d$stratum[-1] != d$stratum[-n], TRUE)
  falls <- c(d$time[-1] < d$time[-n], TRUE)
  fresh <- TRUE
  for (i in seq_len(n)) {
    if (fresh) {
      S0 <- 0
      S1 <- numeric(p)
      S2 <- matrix(0, p, p)
      E <- numeric(p)
      deaths <- 0
    }
    x <- d$x[i, ]
    eta <- sum(x * beta)
    if (is.nan(eta) || abs(eta) > 250) return(list(status = 103))
    w <- exp(eta)
    S0 <- S0 + w
    S1 <- S1 + w * x
    S2 <- S2 + w * outer(x, x)
    if (d$status[i] == 1) {
      deaths <- deaths + 1
      L <- L + log(w)
      E <- E + x
      if (last[i] || falls[i]) {
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

# Covariates are standardised; a line before each step and one after the last. Every step is at most half of Newton's,
# and the likelihood is tested with its sign.
iterate <- function(d, criterion, most, start = numeric(ncol(d$x))) {
  criterion <- single(criterion)
  d <- in_order(d)
  means <- colMeans(d$x)
  sds <- apply(d$x, 2, sd)
  d$x <- sweep(sweep(d$x, 2, means), 2, sds, "/")
  p <- ncol(d$x)
  beta <- start * sds
  trace <- NULL
  halvings <- NULL
  line <- function(k) trace <<- rbind(trace, c(k, now$L, beta))
  k <- 0
  done <- function(status, V = NULL)
    list(status = status, iterations = k, beta = unname(beta / sds), V = V, L = if (now$status == 0) now$L else NA,
         L0 = null$L, trace = trace, halvings = halvings, gradient = if (status == 0) unname(now$U * sds))
  now <- list(status = 103)
  null <- evaluate(d, numeric(p))
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
  V <- sapply(seq_len(p), function(j) solve_lu(lu, as.numeric(seq_len(p) == j))) / outer(sds, sds)
  done(0, matrix(V, p))
}

run <- function(dataset, name, d, criterion, most = 50, start = numeric(ncol(d$x)), expect = 0, ending_only = FALSE,
                endless = FALSE) {
  r <- iterate(d, criterion, most, start)
  if (r$status != expect) {
    print(r)
    stop(dataset, ' ', name, ': status ', r$status, ', not ', expect)
  }
  if (expect == 0 && !endless) { # what is left to go is about the last step
    maximum <- coef(fit_tightly(d))
    stopifnot(all(abs(r$beta - maximum) <= 1.5 * criterion * abs(maximum) + 1e-12))
  }
  covariates <- colnames(d$x)
  put <- function(quantity, value, of = "", row = 0) add(dataset, name, quantity, value, of, row)
  put("criterion", criterion)
  put("max_iterations", most)
  put("start", start, covariates)
  put("status", r$status)
  if (ending_only) return(invisible(r))
  put("iterations", r$iterations)
  put("loglik_null", r$L0)
  put("loglik", r$L)
  # After a failure, what is held when it ends.
  put("beta", r$beta, covariates)
  if (!is.null(r$trace)) {
    add(dataset, name, "trace_loglik", r$trace[, 2], row = r$trace[, 1])
    if (length(r$halvings) > 0) add(dataset, name, "trace_halvings", r$halvings)
    add_matrix(dataset, name, "trace_beta", r$trace[, -(1:2), drop = FALSE], covariates, r$trace[, 1])
  }
  if (r$status == 0) {
    put("se", sqrt(diag(r$V)), covariates)
    put("gradient", r$gradient, covariates)
    add_matrix(dataset, name, "covariance", r$V, covariates)
  }
  invisible(r)
}

# ---- The fit at the maximum, and what follows from it.

fit_tightly <- function(d, init = numeric(ncol(d$x)), iterations = 100) {
  frame <- data.frame(d$x)
  names(frame) <- paste0("x", seq_len(ncol(d$x)))
  right <- paste(names(frame), collapse = " + ")
  frame$time <- d$time
  frame$status <- d$status
  frame$stratum <- d$stratum
  stratified <- length(unique(d$stratum)) > 1
  formula <- as.formula(paste("Surv(time, status) ~", right, if (stratified) "+ strata(stratum)"))
  suppressWarnings(coxph(formula, frame, ties = "breslow", init = init, x = TRUE, model = TRUE,
                         control = coxph.control(eps = 1e-14, toler.chol = 1e-13, iter.max = iterations)))
}

# Sums over those at risk at each time of death of each stratum.
at_deaths <- function(d, beta) {
  centred <- sweep(d$x, 2, colMeans(d$x))
  w <- exp(drop(centred %*% beta))
  sets <- NULL
  for (s in sort(unique(d$stratum))) for (t in sort(unique(d$time[d$status == 1 & d$stratum == s]))) {
    risk <- d$stratum == s & d$time >= t
    deaths <- sum(d$status == 1 & d$time == t & d$stratum == s)
    S0 <- sum(w[risk])
    sets <- rbind(sets, c(s, t, deaths, S0, colSums(centred[risk, , drop = FALSE] * w[risk]) / S0))
  }
  list(stratum = sets[, 1], time = sets[, 2], deaths = sets[, 3], S0 = sets[, 4], mean = sets[, -(1:4), drop = FALSE])
}

# Cumulative hazard at covariate values x by Breslow's estimator with its standard error; limits of survival on the
# scale of log(-log S).
curve <- function(d, beta, V, sets, x) {
  out <- NULL
  centred <- x - colMeans(d$x)
  r <- exp(sum(centred * beta))
  for (s in unique(sets$stratum)) {
    i <- sets$stratum == s
    h <- sets$deaths[i] / sets$S0[i]
    H <- r * cumsum(h)
    # A column per time.
    q <- apply(rbind((centred - t(sets$mean[i, , drop = FALSE])) * rep(h, each = length(x))), 1, cumsum)
    q <- matrix(q, sum(i))
    se <- r * sqrt(cumsum(sets$deaths[i] / sets$S0[i]^2) + rowSums((q %*% V) * q))
    out <- rbind(out, data.frame(stratum = s, time = sets$time[i], deaths = sets$deaths[i], hazard = r * h,
                                 cumulative_hazard = H, se_cumulative_hazard = se, survival = exp(-H),
                                 se_survival = exp(-H) * se, lower = exp(-H * exp(z * se / H)),
                                 upper = exp(-H * exp(-z * se / H))))
  }
  out
}

# Pairs within strata whose order of failure is known: a death and a later time, or a censored one at the same time.
# The variance is the sum of squares of each case's derivative of the concordance by its weight.
pairs_of <- function(d, eta) {
  n <- length(eta)
  known <- score <- numeric(n)
  count <- c(concordant = 0, discordant = 0, tied_risk = 0, tied_time = 0)
  for (i in which(d$status == 1)) {
    same <- d$stratum == d$stratum[i]
    j <- which(same & (d$time > d$time[i] | (d$time == d$time[i] & d$status == 0)))
    s <- ifelse(eta[i] > eta[j], 1, ifelse(eta[i] < eta[j], 0, 0.5))
    known[i] <- known[i] + length(j)
    score[i] <- score[i] + sum(s)
    known[j] <- known[j] + 1
    score[j] <- score[j] + s
    ties <- same & d$time == d$time[i] & d$status == 1 & seq_len(n) > i
    count <- count + c(sum(s == 1), sum(s == 0), sum(s == 0.5), sum(ties))
  }
  pairs <- sum(known) / 2
  C <- sum(score) / 2 / pairs
  c(concordance = C, se_concordance = sqrt(sum((score - C * known)^2)) / pairs, count)
}

# at: a list of covariate values. Every `every`th case's residuals are written, and every `thin`th time of curves.
analyse <- function(dataset, d, at, elsewhere, every = 1, thin = 1) {
  covariates <- colnames(d$x)
  p <- length(covariates)
  put <- function(quantity, value, of = "", row = 0) add(dataset, "", quantity, value, of, row)
  fit <- fit_tightly(d)
  beta <- unname(coef(fit))
  V <- unname(vcov(fit))
  # Centred, lest large values go beyond the guard.
  ordered <- in_order(d)
  ordered$x <- sweep(ordered$x, 2, colMeans(d$x))
  here_now <- evaluate(ordered, beta)
  agree(here_now$L, fit$loglik[2])
  agree(solve(here_now$I) / sqrt(outer(diag(V), diag(V))), V / sqrt(outer(diag(V), diag(V))), 1e-6)
  stopifnot(all(abs(here_now$U) * sqrt(diag(V)) < 1e-6))
  # Two more steps of Newton: beta and V to the last digits.
  for (more in 1:2) beta <- beta + solve(here_now$I, evaluate(ordered, beta)$U)
  agree(beta / sqrt(diag(V)), coef(fit) / sqrt(diag(V)), 1e-7)
  information <- evaluate(ordered, beta)$I
  V <- solve(information)
  V <- (V + t(V)) / 2

  put("cases", length(d$time))
  put("events", sum(d$status))
  put("mean", colMeans(d$x), covariates)
  put("sd", apply(d$x, 2, sd), covariates)
  put("loglik_null", fit$loglik[1])
  put("loglik", fit$loglik[2])
  put("beta", beta, covariates)
  put("se", sqrt(diag(V)), covariates)
  add_matrix(dataset, "", "covariance", V, covariates)
  add_matrix(dataset, "", "information", information, covariates)
  null <- evaluate(ordered, numeric(p))
  chisq <- c(lr = 2 * (fit$loglik[2] - fit$loglik[1]), score = sum(null$U * solve(null$I, null$U)),
             wald = drop(beta %*% information %*% beta))
  agree(chisq, c(2 * diff(fit$loglik), fit$score, fit$wald.test), 1e-6)
  for (test in names(chisq)) {
    put(paste0(test, "_chisq"), chisq[test])
    put(paste0(test, "_p"), pchisq(chisq[test], p, lower.tail = FALSE))
  }

  there <- evaluate(ordered, elsewhere)
  from_r <- fit_tightly(d, elsewhere, 0)
  agree(there$L, from_r$loglik[1])
  agree(there$U / sqrt(diag(there$I)), colSums(as.matrix(residuals(from_r, "score"))) / sqrt(diag(there$I)), 1e-7)
  agree(vcov(from_r) %*% there$I, diag(p), 1e-5)
  for (k in seq_len(p)) { # finite differences
    h <- 1e-4 / sqrt(there$I[k, k])
    up <- evaluate(ordered, elsewhere + h * (seq_len(p) == k))
    down <- evaluate(ordered, elsewhere - h * (seq_len(p) == k))
    agree((up$L - down$L) / (2 * h) / sqrt(there$I[k, k]), there$U[k] / sqrt(there$I[k, k]), 1e-5)
    agree((down$U - up$U) / (2 * h) / sqrt(diag(there$I)) / sqrt(there$I[k, k]),
          there$I[k, ] / sqrt(diag(there$I)) / sqrt(there$I[k, k]), 1e-5)
  }
  put("elsewhere", elsewhere, covariates)
  put("elsewhere_loglik", there$L)
  put("elsewhere_gradient", there$U, covariates)
  add_matrix(dataset, "", "elsewhere_information", there$I, covariates)

  # Baseline at the means, and survival at given values.
  sets <- at_deaths(d, beta)
  values <- c(list(colMeans(d$x)), at)
  for (number in seq_along(values)) {
    x <- values[[number]]
    own <- curve(d, beta, V, sets, x)
    newdata <- data.frame(t(unname(x)))
    names(newdata) <- paste0("x", seq_len(p))
    strata <- sort(unique(d$stratum))
    name <- if (number == 1) "means" else paste0("at", number - 1)
    if (number > 1) add(dataset, name, "value", x, covariates, 0)
    for (s in strata) {
      if (length(strata) > 1) newdata$stratum <- s
      theirs <- survfit(fit, newdata = newdata, stype = 2, ctype = 1, conf.type = "log-log")
      mine <- own[own$stratum == s, ]
      m <- match(mine$time, theirs$time)
      agree(mine$cumulative_hazard, theirs$cumhaz[m], 1e-7)
      agree(mine$se_cumulative_hazard, theirs$std.err[m], 1e-7)
      agree(mine$lower, theirs$lower[m], 1e-7)
      agree(mine$upper, theirs$upper[m], 1e-7)
      of <- if (length(strata) > 1) s else ""
      shown <- seq(thin, nrow(mine), by = thin)
      columns <- if (number == 1) names(own)[-1] else c("survival", "se_cumulative_hazard", "lower", "upper")
      for (column in columns) add(dataset, name, column, mine[[column]][shown], of, shown)
    }
  }

  # Residuals.
  centred <- sweep(d$x, 2, colMeans(d$x))
  eta <- drop(centred %*% beta)
  H <- mapply(function(s, t) sum((sets$deaths / sets$S0)[sets$stratum == s & sets$time <= t]), d$stratum, d$time)
  martingale <- d$status - H * exp(eta)
  agree(martingale, residuals(fit, "martingale"), 1e-7)
  deviance <- sign(martingale) *
    sqrt(pmax(0, -2 * (martingale + ifelse(d$status == 1, log(d$status - martingale), 0))))
  agree(deviance, residuals(fit, "deviance"), 1e-6)
  shown <- seq(every, length(eta), by = every)
  put("linear_predictor", eta[shown], row = shown)
  put("martingale", martingale[shown], row = shown)
  put("deviance", deviance[shown], row = shown)

  died <- which(d$status == 1)
  died <- died[order(d$stratum[died], d$time[died])]
  set <- mapply(function(s, t) which(sets$stratum == s & sets$time == t), d$stratum[died], d$time[died])
  schoenfeld <- centred[died, , drop = FALSE] - sets$mean[set, , drop = FALSE]
  agree(schoenfeld, residuals(fit, "schoenfeld"), 1e-7)
  scaled <- sweep(schoenfeld %*% V * length(died), 2, beta, "+")
  agree(scaled / rep(sqrt(diag(V)), each = length(died)),
        residuals(fit, "scaledsch") / rep(sqrt(diag(V)), each = length(died)), 1e-5)
  # Deaths by stratum and time, each named by its case.
  shown <- seq(every, length(died), by = every)
  put("schoenfeld_case", died[shown], row = shown)
  add_matrix(dataset, "", "schoenfeld", schoenfeld[shown, , drop = FALSE], covariates, shown)
  add_matrix(dataset, "", "scaled_schoenfeld", scaled[shown, , drop = FALSE], covariates, shown)

  # Proportional hazards: the ranks of the times of death (ties: their mean) against the scaled residuals.
  g <- rank(d$time[died]) - (length(died) + 1) / 2
  sums <- colSums(g * schoenfeld)
  ph <- length(died) * drop(V %*% sums)^2 / (diag(V) * sum(g^2))
  overall <- length(died) * drop(sums %*% V %*% sums) / sum(g^2)
  # The same, from a sum over the scaled residuals.
  agree(ph, colSums(g * scaled)^2 / (length(died) * diag(V) * sum(g^2)))
  put("ph_rho", cor(g, scaled), covariates)
  put("ph_chisq", ph, covariates)
  put("ph_p", pchisq(ph, 1, lower.tail = FALSE), covariates)
  put("ph_overall_chisq", overall)
  put("ph_overall_df", p)
  put("ph_overall_p", pchisq(overall, p, lower.tail = FALSE))
  score <- cox.zph(fit, "rank", terms = FALSE)$table[, "chisq"]
  put("zph_chisq", score[seq_len(p)], covariates)
  # For a single covariate cox.zph repeats its only test as the overall one.
  put("zph_overall_chisq", score[p + 1])

  own <- pairs_of(d, eta)
  theirs <- concordance(fit, keepstrata = FALSE)
  agree(own, c(theirs$concordance, sqrt(theirs$var), theirs$count[c("concordant", "discordant", "tied.x")],
               sum(theirs$count[c("tied.y", "tied.xy")])))
  for (quantity in names(own)) put(quantity, own[quantity])

  # Strata with coefficients of their own.
  if (length(unique(d$stratum)) > 1) {
    total <- 0
    strata <- sort(unique(d$stratum))
    for (s in strata) {
      i <- d$stratum == s
      alone <- fit_tightly(list(time = d$time[i], status = d$status[i], stratum = d$stratum[i],
                                x = d$x[i, , drop = FALSE]))
      gradient <- colSums(as.matrix(residuals(alone, "score")))
      stopifnot(length(gradient) == p, all(abs(gradient) * sqrt(diag(vcov(alone))) < 1e-6))
      put("stratum_cases", sum(i), s)
      put("stratum_events", sum(d$status[i]), s)
      put("stratum_loglik_null", alone$loglik[1], s)
      put("stratum_loglik", alone$loglik[2], s)
      add(dataset, paste("stratum", s), "beta", coef(alone), covariates, 0)
      add(dataset, paste("stratum", s), "se", sqrt(diag(vcov(alone))), covariates, 0)
      total <- total + alone$loglik[2]
    }
    x <- 2 * (total - fit$loglik[2])
    df <- (length(strata) - 1) * p
    put("strata_loglik", total)
    put("strata_chisq", x)
    put("strata_df", df)
    put("strata_p", pchisq(x, df, lower.tail = FALSE))
  }
  invisible(list(beta = beta, se = sqrt(diag(V)), loglik = fit$loglik, information = information, chisq = chisq,
                 concordance = own))
}

cases <- function(time, status, x, stratum = rep(0, length(time))) {
  colnames(x) <- if (is.null(colnames(x))) paste0("x", seq_len(ncol(x))) else colnames(x)
  list(time = time, status = status, stratum = stratum, x = x)
}
# Data sets that are shipped nowhere else.
write_data <- function(dataset, d) {
  add(dataset, "data", "time", d$time)
  add(dataset, "data", "status", d$status)
  if (length(unique(d$stratum)) > 1) add(dataset, "data", "stratum", d$stratum)
  for (k in seq_len(ncol(d$x))) add(dataset, "data", "covariate", d$x[, k], colnames(d$x)[k])
}
published <- function(found, printed, decimals) stopifnot(abs(found - printed) <= 0.50001 * 10^-decimals)

# ---- Data.

hand <- cases(c(1, 1, 6, 6, 8, 9), c(1, 0, 1, 1, 0, 1), cbind(x = c(1, 1, 1, 0, 0, 0)))
write_data("hand", hand)
r <- analyse("hand", hand, list(0, 1), 0.7)
published(r$beta, 1.475285, 6)
published(r$loglik, c(-4.564348, -3.824750), 6)
published(r$information, 0.634168, 6)
# By hand: with r = exp(beta), L = 2 beta - 2 log(r + 3) - log(3 r + 3), and each step is half of Newton's.
by_hand <- function(r, lines) {
  beta <- 0
  for (k in seq_len(lines)) {
    e <- exp(beta)
    agree(r$trace[k, ], c(k, 2 * beta - 2 * log(e + 3) - log(3 * e + 3), beta * sd(hand$x)), 1e-13)
    beta <- beta + (2 - 2 * e / (e + 3) - e / (e + 1)) / (6 * e / (e + 3)^2 + e / (e + 1)^2) / 2
  }
  stopifnot(nrow(r$trace) == lines, all(r$halvings == 1))
}
by_hand(run("hand", "1e-4", hand, 1e-4), 15)
by_hand(run("hand", "1e-5", hand, 1e-5), 18)
agree(r$beta, log((3 + sqrt(33)) / 2), 1e-14)
# Steps that are halved more than once: 6 times, and 4 times twice.
run("hand", "halved", hand, 1e-4, start = 8)
run("hand", "halved-twice", hand, 1e-4, start = -5)
# The first line already is beyond the guard.
run("hand", "guard", hand, 1e-4, start = 600, expect = 103)
# There the likelihood is nearly straight: Newton's full step goes beyond the guard.
run("hand", "overshot", hand, 1e-4, start = 11, expect = 103)

leukaemia <- read.csv(file.path(data_dir, "leukaemia-6mp.csv"))
six_mp <- cases(leukaemia$weeks, leukaemia$relapse, cbind("group" = as.numeric(leukaemia$group == "6-MP")))
r <- analyse("leukaemia", six_mp, list(0, 1), -0.8)
published(r$beta, -1.509191, 6)
published(r$se, 0.409564, 6)
published(r$loglik, c(-93.98505, -86.37962), 5)
run("leukaemia", "1e-4", six_mp, 1e-4)

# The same 42 cases with sex (1 male) and the logarithm of white blood cells: E. J. Freireich et al. (1963), Blood 21,
# 699-716, as tabulated in textbooks. placebo 0 are the cases under 6-MP.
wbc <- matrix(c(
  35, 0, 1, 1.45, 0, 34, 0, 1, 1.47, 0, 32, 0, 1, 2.20, 0, 32, 0, 1, 2.53, 0, 25, 0, 1, 1.78, 0, 23, 1, 1, 2.57, 0,
  22, 1, 1, 2.32, 0, 20, 0, 1, 2.01, 0, 19, 0, 0, 2.05, 0, 17, 0, 0, 2.16, 0, 16, 1, 1, 3.60, 0, 13, 1, 0, 2.88, 0,
  11, 0, 0, 2.60, 0, 10, 0, 0, 2.70, 0, 10, 1, 0, 2.96, 0,  9, 0, 0, 2.80, 0,  7, 1, 0, 4.43, 0,  6, 0, 0, 3.20, 0,
  6, 1, 0, 2.31, 0,  6, 1, 1, 4.06, 0,  6, 1, 0, 3.28, 0, 23, 1, 1, 1.97, 1, 22, 1, 0, 2.73, 1, 17, 1, 0, 2.95, 1,
  15, 1, 0, 2.30, 1, 12, 1, 0, 1.50, 1, 12, 1, 0, 3.06, 1, 11, 1, 0, 3.49, 1, 11, 1, 0, 2.12, 1,  8, 1, 0, 3.52, 1,
  8, 1, 0, 3.05, 1,  8, 1, 0, 2.32, 1,  8, 1, 1, 3.26, 1,  5, 1, 1, 3.49, 1,  5, 1, 0, 3.97, 1,  4, 1, 1, 4.36, 1,
  4, 1, 1, 2.42, 1,  3, 1, 1, 4.01, 1,  2, 1, 1, 4.91, 1,  2, 1, 1, 4.48, 1,  1, 1, 1, 2.80, 1,  1, 1, 1, 5.00, 1),
  ncol = 5, byrow = TRUE)
# Times and endings are those of the shipped data.
stopifnot(sapply(0:1, function(placebo) {
  a <- wbc[wbc[, 5] == placebo, ]
  b <- leukaemia[(leukaemia$group == "placebo") == placebo, ]
  all(sort(a[, 1] + a[, 2] / 10) == sort(b$weeks + b$relapse / 10))
}))
by_sex <- cases(wbc[, 1], wbc[, 2], cbind(placebo = wbc[, 5], logwbc = wbc[, 4]), wbc[, 3])
write_data("leukaemia-wbc", by_sex)
r <- analyse("leukaemia-wbc", by_sex, list(c(0, 3), c(1, 3)), c(0.5, 1))
published(r$beta, c(0.930965, 1.390239), 6)
published(r$se, c(0.471766, 0.337623), 6)
published(-2 * r$loglik[2], 115.120, 3)
run("leukaemia-wbc", "1e-4", by_sex, 1e-4)
run("leukaemia-wbc", "1e-5", by_sex, 1e-5)
unstratified <- cases(wbc[, 1], wbc[, 2], cbind(sex = wbc[, 3], by_sex$x))
r <- analyse("leukaemia-sex", unstratified, list(c(1, 0, 3)), c(0.3, 0.5, 1))
copied <- cases(wbc[, 1], wbc[, 2], cbind(placebo = wbc[, 5], logwbc = wbc[, 4], copy = wbc[, 4]))
run("leukaemia-copy", "1e-4", copied, 1e-4, expect = 101)

aml <- read.csv(file.path(data_dir, "aml.csv"))
maintained <- cases(aml$time, aml$status, cbind("group" = as.numeric(aml$group == "Nonmaintained")))
r <- analyse("aml", maintained, list(0, 1), 0.3)
published(r$beta, 0.9042, 4)
published(r$se, 0.5122, 4)
run("aml", "1e-4", maintained, 1e-4)
run("aml", "1e-5", maintained, 1e-5)
# Four iterations are made before the end; a run that goes on starts where they end.
left <- run("aml", "stopped", maintained, 1e-4, most = 3, expect = 102)$beta
run("aml", "continued", maintained, 1e-4, most = 33, start = left)
run("aml", "coarse", maintained, 0.1)

veteran <- read.csv(file.path(data_dir, "veteran.csv"))
types <- c("smallcell", "adeno", "large")
indicators <- sapply(types, function(type) as.numeric(veteran$celltype == type))
colnames(indicators) <- paste0("celltype=", types)
full <- cases(veteran$time, veteran$status,
              cbind(trt = veteran$trt, indicators, as.matrix(veteran[c("karno", "diagtime", "age", "prior")])))
r <- analyse("veteran", full, list(c(1, 0, 0, 0, 80, 3, 50, 0), c(2, 1, 0, 0, 30, 12, 65, 10)),
             c(0.2, 0.5, 1, 0.3, -0.02, 0.01, -0.005, 0.01), every = 4, thin = 3)
published(r$beta[5], -0.0326217, 7)
published(r$se[5], 0.0055052, 7)
published(r$loglik, c(-505.884, -475.179), 3)
run("veteran", "1e-4", full, 1e-4)
run("veteran", "1e-5", full, 1e-5)
by_cell <- cases(veteran$time, veteran$status, as.matrix(veteran[c("trt", "karno", "age")]),
                 match(veteran$celltype, c("squamous", types)))
analyse("veteran-strata", by_cell, list(c(2, 60, 60)), c(0.1, -0.02, 0.01), every = 4, thin = 3)
run("veteran-strata", "1e-4", by_cell, 1e-4)

# Unsorted, with ties among deaths, and of deaths with censored cases, in both strata.
tied <- cases(c(5, 2, 7, 5, 2, 9, 5, 3, 7, 2, 4, 9, 3, 6, 4, 2, 8, 4),
              c(1, 1, 0, 0, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1, 0, 1, 0, 1),
              cbind(a = c(3, 1, 4, 1, 5, 9, 2, 6, 5, 3, 5, 8, 9, 7, 9, 3, 2, 3),
                    b = c(0.5, -1.25, 0, 2, 0.75, 1, -0.5, 1.5, -2, 0.25, 0, -1, 1.25, 0.5, -0.75, 2, 1, -1.5)),
              c(7, 3, 7, 3, 7, 3, 3, 7, 7, 7, 3, 7, 3, 3, 7, 3, 3, 7))
write_data("tied", tied)
analyse("tied", tied, list(c(1, 0), c(9, -2)), c(-0.4, 0.6))
run("tied", "1e-4", tied, 1e-4)
run("tied", "1e-5", tied, 1e-5)

# 2000 cases, heavily tied: s = 16807 s mod 2147483647 from s = 1, ten numbers to a case.
s <- 1
drawn <- function(modulus) {
  s <<- (16807 * s) %% 2147483647
  s %% modulus
}
n <- 2000
x <- matrix(0, n, 7)
time <- status <- stratum <- numeric(n)
for (i in seq_len(n)) {
  x[i, 1] <- drawn(2)
  x[i, 2] <- drawn(5) - 2
  x[i, 3] <- drawn(101) / 16
  x[i, 4] <- drawn(41) + 40
  x[i, 5] <- drawn(7) / 8 + x[i, 1]
  x[i, 6] <- drawn(10) + 1000000
  x[i, 7] <- if (drawn(3) == 0) 1 else 0
  risk <- 40 + 30 * x[i, 1] - 8 * x[i, 2] + (x[i, 4] - 40) + 25 * x[i, 7]
  time[i] <- 1 + floor(drawn(1000) * 3 / risk)
  status[i] <- if (drawn(5) < 3) 1 else 0
  stratum[i] <- drawn(3) + 1
}
larger <- cases(time, status, x)
value <- c(1, -1, 2.5, 50, 1.5, 1000004, 0)
analyse("larger", larger, list(value), c(0.2, -0.1, 0, 0.01, 0.1, -0.02, 0.3), every = 25, thin = 4)
run("larger", "1e-4", larger, 1e-4)
in_strata <- cases(time, status, x, stratum)
analyse("larger-strata", in_strata, list(value), c(0.2, -0.1, 0, 0.01, 0.1, -0.02, 0.3), every = 25, thin = 4)
run("larger-strata", "1e-4", in_strata, 1e-4)

# The covariate of every death is the smallest of those at risk: the likelihood has no maximum. Far out the information
# is a difference of nearly equal numbers, and steps hang on its last digits: of the longer runs only the ending counts.
monotone <- cases(1:12, as.numeric(1:12 %in% c(1, 3, 5)), cbind(x1 = rep(0:1, 6)))
write_data("monotone", monotone)
run("monotone", "short", monotone, 1e-4, most = 20, expect = 102)
run("monotone", "1e-4", monotone, 1e-4, expect = 102, ending_only = TRUE)
run("monotone", "longer", monotone, 1e-4, most = 200, expect = 101, ending_only = TRUE)

# Here the likelihood rises to 1 without end. Its logarithm still changes by a good part of itself when the coefficient
# changes little: divided by a negative number, that change stops nothing.
separated <- cases(1:4, c(1, 1, 1, 0), cbind(x = 4:1))
write_data("separated", separated)
r <- run("separated", "coarse", separated, 0.1, endless = TRUE)
last <- tail(r$trace[, 2], 2)
stopifnot(abs(diff(last) / last[2]) > 0.1)

# At the maximum from the start: no step is made, and 0 / 0 counts as no change.
even <- cases(c(1, 1, 2, 2), c(1, 1, 0, 0), cbind(x = c(0, 1, 0, 1)))
write_data("even", even)
run("even", "1e-4", even, 1e-4)

out <- file(file.path(here, "cox.csv"), "wb")
writeLines(c("# Cox regressions, ties after Breslow.",
             paste0("# Source: ", R.version$version.string, ", package survival ", packageVersion("survival"),
                    "; definitions and data stand in the script."),
             "# Written by: Rscript tests/golden/cox.R",
             "# run: empty for the maximum; data: the cases; means, at1, at2: curves at these values (of: stratum;",
             "# rows: times of death); stratum S: that one alone; else a damped iteration, its trace standardised.",
             "# Covariance, information: of the column, rows the covariates. Residuals: rows the cases; Schoenfeld:",
             "# the deaths by stratum and time. linear_predictor: covariates less their means over all cases.",
             "# scaled_schoenfeld: deaths * V * residual + beta. ph: Grambsch and Therneau (1994), from these and",
             "# the ranks of the times of death. zph: cox.zph(fit, 'rank') of survival 3 is another test: the score",
             "# test of one x * g(t) (or of all), its information summed over the risk sets, not taken as their",
             "# average; g ranks all times, censored ones too.",
             "# concordance: pairs within strata, equal risks count half, two deaths at one time are left out; its",
             "# standard error from the derivatives by the weights of the cases (infinitesimal jackknife)."),
           out)
write.table(do.call(rbind, rows), out, sep = ",", quote = FALSE, row.names = FALSE)
close(out)
