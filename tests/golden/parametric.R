#!/usr/bin/env Rscript
# Writes parametric.csv beside itself: exponential, normal and lognormal regressions of right-censored times, with what
# follows from them, and the traces of the iterations, against which the system's own numbers are tested.
#   Rscript tests/golden/parametric.R
# Estimates come from R's package `survival` and from Newton's method on the likelihoods as they are defined, which must
# agree; the iterations from their definitions: Newton's for the exponential model, with the tolerant Cholesky
# factor and inverse of AS 6 and AS 7 (Healy, 1968, Applied Statistics 17, 195-199), and the EM estimate of AS 139
# (Wolynetz, 1979, Applied Statistics 28, 195-206) with the normal tail of AS 66 (Hill, 1973, Applied Statistics 22,
# 424-427).
suppressPackageStartupMessages(library(survival))

self <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
# Rscript passes blanks in its own path as ~+~.
here <- dirname(normalizePath(gsub("~+~", " ", self, fixed = TRUE)))
data_dir <- file.path(here, "..", "..", "examples", "data")

# 17 significant digits bring every double back unchanged.
digits <- function(x)
  ifelse(is.na(x), "NA", ifelse(x == round(x) & abs(x) < 1e15, sprintf("%.0f", x), sprintf("%.17g", x)))
single <- function(x) readBin(writeBin(x, raw(), size = 4), "numeric", length(x), size = 4)
limit <- qnorm(0.975)
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
add_matrix <- function(dataset, run, quantity, m, names = colnames(m), row = seq_len(nrow(m)))
  for (k in seq_len(ncol(m))) add(dataset, run, quantity, m[, k], names[k], row)

cases <- function(time, status, x) {
  x <- as.matrix(x)
  if (is.null(colnames(x))) colnames(x) <- if (ncol(x) > 0) paste0("x", seq_len(ncol(x)))
  list(time = as.numeric(time), status = as.numeric(status), x = x)
}
# Data sets that are shipped nowhere else.
write_data <- function(dataset, d) {
  add(dataset, "data", "time", d$time)
  add(dataset, "data", "status", d$status)
  if (!is.null(d$upper)) add(dataset, "data", "upper", d$upper)
  for (k in seq_len(ncol(d$x))) add(dataset, "data", "covariate", d$x[, k], colnames(d$x)[k])
}

# ---- The tolerant Cholesky factor and its inverse.

# Comparisons with what is not a number are false.
holds <- function(condition) isTRUE(condition)

factor_tolerant <- function(a) {
  p <- nrow(a)
  l <- matrix(0, p, p)
  deficiency <- 0
  for (i in seq_len(p)) for (j in seq_len(i)) {
    w <- a[i, j]
    for (k in seq_len(j - 1)) w <- w - l[i, k] * l[j, k]
    if (j < i) {
      if (holds(l[j, j] == 0)) {
        if (holds(w^2 > abs(a[i, i] * 1e-10))) return(list(status = 2))
      } else l[i, j] <- w / l[j, j]
    } else if (holds(abs(a[i, i] * 1e-5) >= abs(w))) {
      deficiency <- deficiency + 1
    } else if (holds(w < 0)) {
      return(list(status = 2))
    } else l[i, i] <- sqrt(w)
  }
  list(status = 0, l = l, deficiency = deficiency)
}
# NULL where a pivot is not positive.
solve_tolerant <- function(l, u) {
  p <- length(u)
  if (any(sapply(seq_len(p), function(i) holds(l[i, i] <= 0)))) return(NULL)
  for (i in seq_len(p)) {
    for (j in seq_len(i - 1)) u[i] <- u[i] - l[i, j] * u[j]
    u[i] <- u[i] / l[i, i]
  }
  for (i in rev(seq_len(p))) {
    for (j in seq_len(p - i) + i) u[i] <- u[i] - l[j, i] * u[j]
    u[i] <- u[i] / l[i, i]
  }
  u
}
invert_tolerant <- function(l) {
  p <- nrow(l)
  v <- matrix(0, p, p)
  for (r in rev(seq_len(p))) if (l[r, r] != 0) for (s in p:r) {
    x <- if (s == r) 1 / l[r, r] else 0
    for (k in seq_len(p - r) + r) x <- x - l[k, r] * v[k, s]
    v[r, s] <- v[s, r] <- x / l[r, r]
  }
  v
}
matrix_case <- function(name, a, status = 0, deficiency = 0) {
  f <- factor_tolerant(a)
  stopifnot(f$status == status, status != 0 || f$deficiency == deficiency)
  add_matrix("factor", name, "matrix", a, as.character(seq_len(ncol(a))))
  add("factor", name, "status", f$status, row = 0)
  if (status != 0) return(invisible())
  v <- invert_tolerant(f$l)
  kept <- diag(f$l) > 0
  agree(v[kept, kept] %*% a[kept, kept], diag(sum(kept)), 1e-8)
  stopifnot(v[!kept, ] == 0, v[, !kept] == 0)
  add("factor", name, "deficiency", f$deficiency, row = 0)
  add_matrix("factor", name, "factor", f$l, as.character(seq_len(ncol(a))))
  add_matrix("factor", name, "inverse", v, as.character(seq_len(ncol(a))))
}

# ---- The exponential model: log hazard, coefficients and then the constant.

evaluate_exponential <- function(d, theta) {
  q <- ncol(d$x)
  ones <- cbind(d$x, 1)
  c <- exp(theta[q + 1])
  te <- d$time * exp(drop(d$x %*% theta[seq_len(q)]))
  E <- c(colSums(d$x * d$status), sum(d$status))
  list(L = sum(theta * E) - c * sum(te), U = E - c * colSums(ones * te), I = c * t(ones) %*% (ones * te))
}
check_exponential <- function(d) {
  if (length(d$time) < 1) return(3)
  if (ncol(d$x) < 1) return(4)
  if (any(d$status != 0 & d$status != 1)) return(5)
  if (any(d$time < 0)) return(6)
  if (sum(d$status) == 0) return(7)
  if (sum(d$time) == 0) return(8)
  if (ncol(d$x) + 1 > sum(d$status)) return(9)
  0
}
iterate_exponential <- function(d, criterion, most) {
  criterion <- single(criterion)
  status <- check_exponential(d)
  if (status != 0) return(list(status = status))
  p <- ncol(d$x) + 1
  events <- sum(d$status)
  rate <- log(events / sum(d$time))
  theta <- c(numeric(p - 1), rate)
  negligible <- 1e-12 / c(apply(d$x, 2, sd), 1) # what rounding leaves of 0
  previous <- 0
  trace <- tested <- NULL
  k <- 0
  done <- function(status, V = NULL)
    list(status = status, iterations = k, L0 = events * rate - events, L = now$L, beta = 0 - theta, V = V,
         trace = trace, tested = tested, gradient = now$U)
  for (k in seq_len(most)) {
    now <- evaluate_exponential(d, theta)
    gain <- now$L - previous
    still <- holds(gain >= 0) && holds(gain <= criterion * -previous)
    tested <- c(tested, still)
    previous <- now$L
    trace <- rbind(trace, c(k, now$L, 0 - theta))
    f <- factor_tolerant(now$I)
    step <- if (f$status == 0) solve_tolerant(f$l, now$U)
    if (is.null(step)) return(done(2))
    small <- sapply(seq_len(p), function(j) holds(abs(step[j]) < abs(theta[j]) * criterion))
    if (still && all(small | abs(step) <= negligible)) {
      # Rounding must not decide when it ends.
      stopifnot(gain > 1e-12 * abs(now$L), !any(abs(abs(step) / (abs(theta) * criterion) - 1)[small] < 1e-3))
      return(done(0, invert_tolerant(f$l)))
    }
    theta <- theta + step
  }
  done(1)
}
run_exponential <- function(dataset, name, d, criterion = 1e-4, most = 50, expect = 0, thin = 1) {
  name <- paste("exponential", name)
  r <- iterate_exponential(d, criterion, most)
  if (r$status != expect) {
    print(r)
    stop(dataset, " ", name, ": status ", r$status, ", not ", expect)
  }
  parameters <- c(colnames(d$x), "constant")
  put <- function(quantity, value, of = "", row = 0) add(dataset, name, quantity, value, of, row)
  put("criterion", criterion)
  put("max_iterations", most)
  put("status", r$status)
  if (is.null(r$trace)) return(invisible(r))
  shown <- r$trace[r$trace[, 1] %% thin == 0 | r$trace[, 1] == 1, , drop = FALSE]
  add(dataset, name, "trace_loglik", shown[, 2], row = shown[, 1])
  add(dataset, name, "trace_still", r$tested[shown[, 1]], row = shown[, 1])
  add_matrix(dataset, name, "trace_beta", shown[, -(1:2), drop = FALSE], parameters, shown[, 1])
  put("loglik_null", r$L0)
  agree(r$L0, r$trace[1, 2], 1e-12)
  put("beta", r$beta, parameters)
  if (r$status == 0) {
    fit <- fit_exponential(d)
    # The last step is not made; what is left to go is about it.
    stopifnot(all(abs(r$beta - fit$beta) <= 1.5 * criterion * abs(fit$beta) + 1e-12),
              abs(r$L - fit$loglik) <= criterion * abs(fit$loglik))
    put("iterations", r$iterations)
    put("loglik", r$L)
    put("gradient", r$gradient, parameters)
    put("se", sqrt(diag(r$V)), parameters)
    add_matrix(dataset, name, "covariance", r$V, parameters)
  }
  invisible(r)
}

# The maximum: reported signs, log time.
from_survreg <- function(d, distribution) {
  frame <- data.frame(time = d$time, status = d$status)
  frame$x <- scaled(d)$x
  survreg(if (ncol(d$x) > 0) Surv(time, status) ~ x else Surv(time, status) ~ 1, frame, dist = distribution,
          control = survreg.control(rel.tolerance = 1e-14, iter.max = 200))
}
# Covariates less their means, divided by their standard deviations; and what brings coefficients back.
scaled <- function(d) {
  means <- colMeans(d$x)
  sds <- apply(d$x, 2, sd)
  q <- ncol(d$x)
  back <- diag(q + 1)
  if (q > 0) {
    back[seq_len(q), seq_len(q)] <- diag(1 / sds, q)
    back[q + 1, seq_len(q)] <- -means / sds
  }
  list(x = sweep(sweep(d$x, 2, means), 2, sds, "/"), back = back)
}
fit_exponential <- function(d) {
  s <- scaled(d)
  inside <- list(time = d$time, status = d$status, x = s$x)
  theta <- c(numeric(ncol(d$x)), log(sum(d$status) / sum(d$time)))
  for (k in 1:1000) { # the log-likelihood is concave
    now <- evaluate_exponential(inside, theta)
    step <- solve(now$I, now$U)
    h <- 1
    while (h > 1e-3 && !holds(evaluate_exponential(inside, theta + h * step)$L >= now$L)) h <- h / 2
    theta <- theta + h * step
    if (max(abs(step)) < 1e-12 * max(1, abs(theta))) break
  }
  now <- evaluate_exponential(inside, theta)
  V <- solve(now$I)
  stopifnot(abs(now$U) * sqrt(diag(V)) < 1e-9)
  list(beta = drop(s$back %*% -theta), V = s$back %*% V %*% t(s$back), loglik = now$L, gradient = now$U)
}

# ---- The normal model, for the times or their logarithms.

# Upper tail area of the standard normal distribution after AS 66.
tail_area <- function(x) {
  z <- abs(x)
  y <- z^2 / 2
  near <- 0.5 - z * (0.398942280444 - 0.399903438504 * y /
    (y + 5.75885480458 - 29.8213557808 / (y + 2.62433121679 + 48.6959930692 / (y + 5.92885724438))))
  far <- 0.398942280385 * exp(-y) / (z - 3.8052e-8 + 1.00000615302 / (z + 3.98064794e-4 + 1.98615381364 /
    (z - 0.151679116635 + 5.29330324926 / (z + 4.8385912808 - 15.1508972451 /
      (z + 0.742380924027 + 30.789933034 / (z + 3.99019417011))))))
  area <- ifelse(z <= 1.28, near, far)
  area[z > ifelse(x >= 0, 18.66, 7)] <- 0
  ifelse(x < 0, 1 - area, area)
}
# Density over tail area: its exact value, and as it is iterated with.
hazard_exactly <- function(z) exp(dnorm(z, log = TRUE) - pnorm(z, lower.tail = FALSE, log.p = TRUE))
hazard_iterated <- function(z) {
  area <- tail_area(z)
  ifelse(area > 0, 0.39894228 * exp(-z^2 / 2) / area, z + 1 / z)
}
grid <- seq(-18, 18.6, by = 0.01)
stopifnot(abs(tail_area(grid) / pnorm(grid, lower.tail = FALSE) - 1) < 2e-8, tail_area(18.67) == 0,
          abs(hazard_iterated(grid) / hazard_exactly(grid) - 1) < 3e-8)

response <- function(d, model) if (model == "lognormal") log(d$time) else d$time
at_parameters <- function(d, model, parameters) {
  q <- ncol(d$x)
  mu <- drop(cbind(d$x, 1) %*% parameters[seq_len(q + 1)])
  (response(d, model) - mu) / parameters[q + 2]
}
loglik_normal <- function(d, model, parameters, log_tail) {
  z <- at_parameters(d, model, parameters)
  events <- d$status == 1
  sum((-log(parameters[ncol(d$x) + 2]) - z^2 / 2 - log(2 * pi) / 2)[events]) + sum(log_tail(z[d$status == 0])) +
    sum(log(between(d, model, parameters)$probability))
}
# Cases between two bounds (status 2), standardised: their probability, mean, and weight in sigma's divisor.
between <- function(d, model, parameters) {
  a <- at_parameters(d, model, parameters)[d$status == 2]
  b <- a + (d$upper - d$time)[d$status == 2] / parameters[ncol(d$x) + 2]
  p <- ifelse(a > 0, pnorm(a, lower.tail = FALSE) - pnorm(b, lower.tail = FALSE), pnorm(b) - pnorm(a))
  mean <- (dnorm(a) - dnorm(b)) / p
  list(probability = p, mean = mean, weight = mean^2 + (b * dnorm(b) - a * dnorm(a)) / p)
}
log_tail_iterated <- function(z) log(pmax(1e-300, tail_area(z)))
log_tail_exactly <- function(z) pnorm(z, lower.tail = FALSE, log.p = TRUE)
# Gradient and observed information by coefficients, constant and sigma.
derivatives <- function(d, model, parameters) {
  z <- at_parameters(d, model, parameters)
  sigma <- parameters[ncol(d$x) + 2]
  events <- d$status == 1
  h <- hazard_exactly(z)
  slope <- h * (h - z)
  by_mean <- ifelse(events, z, h)
  by_sigma <- ifelse(events, z^2 - 1, h * z)
  mean_mean <- ifelse(events, 1, slope)
  mean_sigma <- ifelse(events, 2 * z, z * slope + h)
  sigma_sigma <- ifelse(events, 3 * z^2 - 1, z^2 * slope + 2 * h * z)
  x <- cbind(d$x, 1)
  cross <- colSums(x * mean_sigma)
  list(gradient = c(colSums(x * by_mean), sum(by_sigma)) / sigma,
       information = unname(rbind(cbind(t(x) %*% (x * mean_mean), cross), c(cross, sum(sigma_sigma)))) / sigma^2)
}

# The maximum, by Newton's method where the log-likelihood is concave: in mu / sigma and 1 / sigma.
fit_normal <- function(d, model) {
  q <- ncol(d$x)
  s <- scaled(d)
  inside <- list(time = d$time, status = d$status, x = s$x)
  y <- response(d, model)
  middle <- mean(y)
  spread <- sd(y)
  v <- (y - middle) / spread
  x <- cbind(s$x, 1)
  events <- d$status == 1
  value <- function(g) {
    z <- v * g[q + 2] - drop(x %*% g[seq_len(q + 1)])
    if (g[q + 2] <= 0) return(-Inf)
    sum(log(g[q + 2]) - z[events]^2 / 2) + sum(log_tail_exactly(z[!events]))
  }
  g <- c(numeric(q + 1), 1)
  for (k in 1:500) {
    z <- v * g[q + 2] - drop(x %*% g[seq_len(q + 1)])
    h <- hazard_exactly(z)
    by_z <- ifelse(events, -z, -h)
    by_zz <- ifelse(events, 1, h * (h - z))
    dz <- cbind(-x, v)
    U <- colSums(dz * by_z) + c(numeric(q + 1), sum(events) / g[q + 2])
    I <- t(dz) %*% (dz * by_zz)
    I[q + 2, q + 2] <- I[q + 2, q + 2] + sum(events) / g[q + 2]^2
    step <- solve(I, U)
    h <- 1
    now <- value(g)
    while (h > 1e-3 && !(value(g + h * step) >= now)) h <- h / 2
    g <- g + h * step
    if (max(abs(step)) < 1e-13 * max(1, abs(g))) break
  }
  sigma <- spread / g[q + 2]
  own <- c(g[seq_len(q + 1)] * sigma, sigma)
  own[q + 1] <- own[q + 1] + middle
  there <- derivatives(inside, model, own)
  V <- solve(there$information)
  stopifnot(abs(there$gradient) * sqrt(diag(V)) < 1e-8)

  # The same by R's function; its log-likelihood is of the times.
  fit <- from_survreg(d, if (model == "normal") "gaussian" else "lognormal")
  theirs <- c(coef(fit)[-1], coef(fit)[1], fit$scale)
  se <- sqrt(diag(V))
  agree(own / se, theirs / se, 1e-5)
  stopifnot(max(abs(own - theirs) / se) < 1e-6)
  L <- loglik_normal(inside, model, own, log_tail_exactly)
  agree(L - if (model == "lognormal") sum(log(d$time)[events]) else 0, tail(fit$loglik, 1), 1e-9)
  order <- c(seq_len(q) + 1, 1, q + 2)
  their_V <- vcov(fit)[order, order] * outer(c(rep(1, q + 1), sigma), c(rep(1, q + 1), sigma))
  agree(V / outer(se, se), their_V / outer(se, se), 1e-5)
  back <- rbind(cbind(s$back, 0), c(numeric(q + 1), 1))
  list(beta = drop(back %*% own), V = back %*% V %*% t(back), loglik = L, gradient = there$gradient)
}

# The EM estimate. The start: least squares on the complete cases, sigma's sum of squares divided by their number, or by
# that less the number of coefficients. Cases between two bounds count as complete at their midpoints.
start_em <- function(d, model, divisor) {
  x <- cbind(d$x, 1)[d$status != 0, , drop = FALSE]
  y <- response(d, model)
  if (!is.null(d$upper)) y <- ifelse(d$status == 2, (y + d$upper) / 2, y)
  y <- y[d$status != 0]
  s <- if (ncol(d$x) > 0) scaled(list(x = d$x))$back else diag(1)
  b <- unname(qr.solve(x %*% s, y))
  squares <- sum((y - drop(x %*% s %*% b))^2)
  c(drop(s %*% b), sqrt(squares / (length(y) - if (divisor == "complete") 0 else ncol(x))))
}
iterate_em <- function(d, model, criterion, most, divisor = "complete", start = start_em(d, model, divisor)) {
  q <- ncol(d$x)
  if (criterion >= 1e-5) criterion <- single(criterion)
  y <- response(d, model)
  events <- d$status == 1
  # Inside with scaled covariates, lest the rounding of large ones decides when it ends.
  s <- scaled(d)$back
  x <- cbind(scaled(d)$x, 1)
  square <- qr(x)
  stopifnot(square$rank == q + 1)
  parameters <- start
  own <- drop(solve(s, start[seq_len(q + 1)]))
  trace <- matrix(c(0, start), 1)
  for (k in seq_len(most)) {
    mu <- drop(x %*% own)
    sigma <- parameters[q + 2]
    z <- (y - mu) / sigma
    h <- hazard_iterated(z)
    inside <- between(d, model, parameters)
    w <- ifelse(events, y, mu + sigma * h)
    w[d$status == 2] <- (mu + sigma * replace(z, d$status == 2, inside$mean))[d$status == 2]
    weight <- sum(events) + sum((h * (h - z))[d$status == 0]) + sum(inside$weight)
    own <- unname(qr.coef(square, w))
    new <- c(drop(s %*% own), sqrt(sum((w - mu)^2) / weight))
    change <- abs(new - parameters)
    parameters <- unname(new)
    if (nrow(trace) <= 1000) trace <- rbind(trace, c(k, parameters))
    if (all(change <= criterion)) {
      stopifnot(criterion < 1e-6 || max(change) < criterion * (1 - 1e-6)) # rounding must not decide
      return(list(status = 0, iterations = k, parameters = parameters, trace = trace))
    }
    stopifnot(criterion < 1e-6 || max(change) > criterion * (1 + 1e-6))
  }
  list(status = -1, iterations = most, parameters = parameters, trace = trace)
}
run_em <- function(dataset, model, name, d, criterion = 1e-4, most = 200, expect = 0, divisor = "complete", at = list(),
                   full = TRUE, derived = TRUE) {
  q <- ncol(d$x)
  r <- iterate_em(d, model, criterion, most, divisor)
  name <- paste(model, name)
  if (r$status != expect) stop(dataset, " ", name, ": status ", r$status, " after ", r$iterations)
  parameters <- c(colnames(d$x), "constant", "sigma")
  put <- function(quantity, value, of = "", row = 0) add(dataset, name, quantity, value, of, row)
  put("criterion", criterion)
  put("max_iterations", most)
  put("status", r$status)
  put("iterations", r$iterations)
  shown <- r$trace[r$trace[, 1] <= 8 | r$trace[, 1] %% 10 == 0 | r$trace[, 1] >= r$iterations - 1, , drop = FALSE]
  add_matrix(dataset, name, "trace_beta", shown[, -1, drop = FALSE], parameters, shown[, 1])
  put("beta", r$parameters, parameters)
  put("loglik", loglik_normal(d, model, r$parameters, log_tail_iterated))
  if (!derived) return(invisible(r))
  there <- derivatives(d, model, r$parameters)
  put("gradient", there$gradient, parameters)
  if (!full) return(invisible(r))
  # Inverted where large common parts of covariates do not matter.
  back <- rbind(cbind(scaled(d)$back, 0), c(numeric(q + 1), 1))
  inside <- list(time = d$time, status = d$status, x = scaled(d)$x)
  V <- back %*% solve(derivatives(inside, model, drop(solve(back, r$parameters)))$information) %*% t(back)
  put("se", sqrt(diag(V)), parameters)
  add_matrix(dataset, name, "covariance", V, parameters)
  for (number in seq_along(at)) predict_at(dataset, name, paste0("at", number), d, model, r$parameters, V, at[[number]])
  invisible(r)
}

# The log-likelihood, its gradient and the information away from the maximum; of the exponential model by the
# coefficients of the log hazard.
elsewhere <- function(dataset, model, d, parameters, derived = TRUE) {
  run <- paste(model, if (derived) "elsewhere" else "tail")
  names <- c(colnames(d$x), "constant", if (model != "exponential") "sigma")
  put <- function(quantity, value) add(dataset, run, quantity, value, names, 0)
  put("beta", parameters)
  value <- function(at) {
    if (model == "exponential") return(evaluate_exponential(d, -at)$L)
    loglik_normal(d, model, at, if (derived) log_tail_exactly else log_tail_iterated)
  }
  add(dataset, run, "loglik", if (model == "exponential") value(parameters) else
    loglik_normal(d, model, parameters, log_tail_iterated), row = 0)
  if (!derived) return(invisible())
  there <- if (model == "exponential") evaluate_exponential(d, -parameters) else derivatives(d, model, parameters)
  gradient <- if (model == "exponential") there$U else there$gradient
  information <- if (model == "exponential") there$I else there$information
  by_difference <- function(f, k) {
    h <- 1e-4 / sqrt(abs(information[k, k]))
    e <- h * (seq_along(parameters) == k)
    (f(parameters + e) - f(parameters - e)) / (2 * h)
  }
  sign <- if (model == "exponential") -1 else 1
  size <- sqrt(abs(diag(information)))
  for (k in seq_along(parameters)) { # finite differences
    agree(sign * by_difference(value, k) / size[k], gradient[k] / size[k], 1e-5)
    slope <- by_difference(function(at)
      if (model == "exponential") evaluate_exponential(d, -at)$U else derivatives(d, model, at)$gradient, k)
    agree(-sign * slope / size / size[k], information[k, ] / size / size[k], 1e-5)
  }
  put("gradient", gradient)
  add_matrix(dataset, run, "information", unname(information), names)
}

# ---- Predictions and residuals.

quartiles <- c(0.75, 0.5, 0.25)
times_to_show <- function(d) unname(quantile(d$time[d$time > 0], c(0.1, 0.25, 0.5, 0.75, 1), type = 1))

# Delta method: of survival on the scale of log(-log S); of times on that of their logarithm, for the normal model,
# whose times may be below 0, also on their own.
predict_at <- function(dataset, run, point, d, model, parameters, V, x) {
  q <- ncol(d$x)
  run <- paste(run, point)
  put <- function(quantity, value, of = "", row = seq_along(value)) add(dataset, run, quantity, value, of, row)
  if (q > 0) put("x", x, colnames(d$x), 0)
  t <- times_to_show(d)
  a <- c(x, 1)
  mu <- sum(a * parameters[seq_len(q + 1)])
  put("location", mu, row = 0)
  VV <- V[seq_len(q + 1), seq_len(q + 1), drop = FALSE]
  put("se_location", sqrt(drop(a %*% VV %*% a)), row = 0)
  if (model == "exponential") {
    se <- sqrt(drop(a %*% V %*% a))
    H <- t * exp(-mu)
    S <- exp(-H)
    se_S <- S * H * se
    se_loglog <- rep(se, length(t))
    quantile <- -log(quartiles) * exp(mu)
    se_quantile <- quantile * se
  } else {
    sigma <- parameters[q + 2]
    y <- if (model == "lognormal") log(t) else t
    score <- (y - mu) / sigma
    se_score <- sapply(score, function(z) sqrt(drop(c(a, z) %*% V %*% c(a, z)))) / sigma
    S <- pnorm(score, lower.tail = FALSE)
    H <- -pnorm(score, lower.tail = FALSE, log.p = TRUE)
    se_S <- dnorm(score) * se_score
    se_loglog <- hazard_exactly(score) / H * se_score
    put("score", score)
    put("se_score", se_score)
    below <- qnorm(1 - quartiles)
    quantile <- mu + sigma * below
    se_quantile <- sapply(below, function(z) sqrt(drop(c(a, z) %*% V %*% c(a, z))))
    if (model == "lognormal") {
      quantile <- exp(quantile)
      se_quantile <- quantile * se_quantile
    }
  }
  put("time", t)
  put("survival", S)
  put("se_survival", se_S)
  put("survival_lower", exp(-H * exp(limit * se_loglog)))
  put("survival_upper", exp(-H * exp(-limit * se_loglog)))
  put("quantile", quantile, row = 100 * quartiles)
  put("se_quantile", se_quantile, row = 100 * quartiles)
  if (model == "normal") {
    put("quantile_lower_own", quantile - limit * se_quantile, row = 100 * quartiles)
    put("quantile_upper_own", quantile + limit * se_quantile, row = 100 * quartiles)
  }
  if (all(quantile > 0)) {
    put("quantile_lower", quantile * exp(-limit * se_quantile / quantile), row = 100 * quartiles)
    put("quantile_upper", quantile * exp(limit * se_quantile / quantile), row = 100 * quartiles)
  }
  invisible(list(quantile = quantile, se_quantile = se_quantile))
}

# Product-limit and Nelson's estimate at the residual of each case, deaths before censored ones of the same residual.
product_limit <- function(residual, status) {
  values <- sort(unique(residual[status == 1]))
  risk <- sapply(values, function(v) sum(residual >= v))
  deaths <- sapply(values, function(v) sum(residual == v & status == 1))
  steps <- findInterval(residual, values)
  list(km = c(1, cumprod(1 - deaths / risk))[steps + 1], hazard = c(0, cumsum(deaths / risk))[steps + 1])
}

# ---- A model at its maximum, and all that follows from it.

analyse <- function(dataset, model, d, at, every = 1, null = TRUE) {
  q <- ncol(d$x)
  events <- d$status == 1
  put <- function(quantity, value, of = "", row = 0) add(dataset, model, quantity, value, of, row)
  bare <- list(time = d$time, status = d$status, x = d$x[, 0, drop = FALSE])
  if (model == "exponential") {
    fit <- fit_exponential(d)
    if (all(d$time > 0)) {
      theirs <- from_survreg(d, "exponential")
      agree(fit$loglik, theirs$loglik[2], 1e-9)
      s <- scaled(d)$back
      order <- c(seq_len(q) + 1, 1)
      agree(fit$beta / sqrt(diag(fit$V)), drop(s %*% coef(theirs)[order]) / sqrt(diag(fit$V)), 1e-5)
      their_V <- s %*% vcov(theirs)[order, order] %*% t(s)
      se <- sqrt(diag(fit$V))
      agree(fit$V / outer(se, se), their_V / outer(se, se), 1e-5)
    }
    L0 <- sum(events) * log(sum(events) / sum(d$time)) - sum(events)
    parameters <- c(colnames(d$x), "constant")
    here_now <- fit$beta
  } else {
    fit <- fit_normal(d, model)
    without <- fit_normal(bare, model)
    L0 <- without$loglik
    parameters <- c(colnames(d$x), "constant", "sigma")
    put("null_beta", without$beta, c("constant", "sigma"))
  }
  by_time <- function(L) L - if (model == "lognormal") sum(log(d$time[events])) else 0
  put("cases", length(d$time))
  put("events", sum(events))
  put("beta", fit$beta, parameters)
  put("se", sqrt(diag(fit$V)), parameters)
  put("t", fit$beta / sqrt(diag(fit$V)), parameters)
  put("loglik", fit$loglik)
  put("loglik_null", L0)
  put("loglik_time", by_time(fit$loglik))
  put("loglik_null_time", by_time(L0))
  if (all(d$time[events] > 0)) put("sum_log_times", sum(log(d$time[events])))
  put("chisq", 2 * (fit$loglik - L0))
  put("p", pchisq(2 * (fit$loglik - L0), q, lower.tail = FALSE))
  put("akaike", 2 * length(parameters) - 2 * fit$loglik)
  put("akaike_time", 2 * length(parameters) - 2 * by_time(fit$loglik))
  add_matrix(dataset, model, "covariance", fit$V, parameters)
  add_matrix(dataset, model, "correlation", cov2cor((fit$V + t(fit$V)) / 2), parameters)
  points <- c(list(means = colMeans(d$x)), if (length(at) > 0) setNames(at, paste0("at", seq_along(at))))
  for (point in names(points)) {
    found <- predict_at(dataset, model, point, d, model, fit$beta, fit$V, points[[point]])
    # The same quantiles and standard errors from R's own function.
    if (all(d$time > 0)) {
      theirs <- from_survreg(d, c(exponential = "exponential", normal = "gaussian", lognormal = "lognormal")[model])
      new <- data.frame(row.names = 1)
      new$x <- matrix((points[[point]] - colMeans(d$x)) / apply(d$x, 2, sd), 1)
      p <- predict(theirs, new, type = "quantile", p = 1 - quartiles, se.fit = TRUE)
      agree(found$quantile, p$fit, 1e-5)
      agree(found$se_quantile, p$se.fit, 1e-4)
    }
  }
  linear <- drop(cbind(d$x, 1) %*% fit$beta[seq_len(q + 1)])
  residual <- if (model == "exponential") d$time * exp(-linear) else at_parameters(d, model, fit$beta)
  if (model == "exponential") agree(sum(residual), sum(events), 1e-9)
  estimate <- product_limit(residual, d$status)
  shown <- seq(every, length(d$time), by = every)
  add(dataset, model, "linear_predictor", linear[shown], row = shown)
  add(dataset, model, "residual", residual[shown], row = shown)
  add(dataset, model, "residual_km", estimate$km[shown], row = shown)
  add(dataset, model, "residual_hazard", estimate$hazard[shown], row = shown)
  invisible(fit)
}

# Numbers drawn: s = 16807 s mod 2147483647.
s <- 1
drawn <- function(modulus) {
  s <<- (16807 * s) %% 2147483647
  s %% modulus
}
uniform <- function() (drawn(1e6) + 0.5) / 1e6
# Times with shape 1 / spread around exp(location), censored at times of their own.
random_cases <- function(seed, n, covariates, location, spread, follow_up, round_to) {
  s <<- seed
  x <- t(replicate(n, covariates()))
  if (nrow(x) == 1) x <- t(x)
  time <- status <- numeric(n)
  for (i in seq_len(n)) {
    death <- exp(location(x[i, ]) + spread * log(-log(uniform())))
    end <- follow_up * (0.2 + uniform())
    status[i] <- as.numeric(death <= end)
    time[i] <- max(1, round(min(death, end) / round_to)) * round_to
  }
  cases(time, status, x)
}
all_models <- c("exponential", "normal", "lognormal")
em_models <- c("normal", "lognormal")
without <- function(d) list(time = d$time, status = d$status, x = d$x[, 0, drop = FALSE])
# Both criteria, the other start, and the null model.
em_runs <- function(dataset, model, d, most = 200, expect = c(0, 0, 0, 0, 0), at = list()) {
  run_em(dataset, model, "em 1e-4", d, 1e-4, most, expect[1])
  r <- run_em(dataset, model, "em 1e-5", d, 1e-5, most, expect[2], at = at)
  run_em(dataset, model, "em df 1e-5", d, 1e-5, most, expect[3], divisor = "less coefficients", full = FALSE)
  run_em(dataset, model, "em null 1e-4", without(d), 1e-4, most, expect[4], full = FALSE)
  run_em(dataset, model, "em null 1e-5", without(d), 1e-5, most, expect[5], full = FALSE)
  invisible(r)
}
# Where it goes in the end.
em_limit <- function(d, model, fit, most = 20000) {
  r <- iterate_em(d, model, 1e-11, most)
  stopifnot(r$status == 0)
  se <- sqrt(diag(fit$V))
  stopifnot(abs(r$parameters - fit$beta) / se < 1e-5)
}

# ---- Factors and inverses by themselves.

plain <- matrix(c(4, 2, -1, 0.5, 2, 5, 0.25, 1, -1, 0.25, 3, -0.75, 0.5, 1, -0.75, 2), 4)
matrix_case("plain", plain)
matrix_case("one", matrix(2.25))
zero <- plain
zero[2, ] <- zero[, 2] <- 0
matrix_case("zero", zero, 0, 1)
v <- cbind(c(1, 2, 3, 4), c(1, 0, 1, 0), c(1, 2, 3, 4), c(0, 1, 1, 3))
matrix_case("copy", t(v) %*% v, 0, 1) # exact in whole numbers
matrix_case("twice", t(v[, c(1, 2, 3, 1)]) %*% v[, c(1, 2, 3, 1)], 0, 2)
matrix_case("negative", matrix(c(1, 2, 2, 1), 2), 2)
# At the limits of what counts as zero: a pivot of a millionth, and of a thousandth.
matrix_case("nearly", matrix(c(1, 1, 1, 1 + 2^-20), 2), 0, 1)
matrix_case("barely", matrix(c(1, 1, 1, 1 + 2^-10), 2), 0, 0)
# Below a pivot of zero stands what is not: of 1e-4 with 1 on the diagonal, and of 2e-6.
hidden <- function(w) matrix(c(1, 1, 0, 1, 1, w, 0, w, 1), 3)
matrix_case("hidden", hidden(1e-4), 2)
matrix_case("slight", hidden(2^-19), 0, 1)
# The square of what stands there counts against its own diagonal alone.
matrix_case("hidden-100", matrix(c(1, 10, 0, 10, 100, 5e-5, 0, 5e-5, 1), 3), 2)

# ---- The hazard of the standard normal distribution by itself.

z <- c(-40, -20, -7.5, -3, -1.28, -0.1, 0, 0.3, 1.28, 2, 4.5, 5.999, 6.001, 8, 18, 19, 40, 1000)
add("hazard", "exactly", "z", z)
# Beyond 8 from its continued fraction, to which pnorm() there only comes near.
fraction <- function(z) Reduce(function(f, k) z + k / f, 60:1, z)
stopifnot(abs(fraction(8) / hazard_exactly(8) - 1) < 1e-13)
add("hazard", "exactly", "hazard", ifelse(z < 8, hazard_exactly(z), sapply(z, fraction)))

# ---- Data.

leukaemia <- read.csv(file.path(data_dir, "leukaemia-6mp.csv"))
six_mp <- cases(leukaemia$weeks, leukaemia$relapse, cbind("group" = as.numeric(leukaemia$group == "6-MP")))
r <- analyse("leukaemia", "exponential", six_mp, list(0, 1))
published(r$beta[1], 1.526614, 6)
published(sqrt(r$V[1, 1]), 0.398410, 6)
published(r$loglik, -108.5240, 4)
r <- run_exponential("leukaemia", "1e-4", six_mp)
published(r$L0, -116.7667, 4)
run_exponential("leukaemia", "1e-5", six_mp, 1e-5)
run_exponential("leukaemia", "stopped", six_mp, 1e-4, 3, expect = 1)
r <- analyse("leukaemia", "lognormal", six_mp, list(0, 1))
published(r$beta, c(1.346847, 1.825121, 0.923869), 6)
published(sqrt(diag(r$V))[1:2], c(0.316498, 0.201605), 6)
em_limit(six_mp, "lognormal", r)
analyse("leukaemia", "normal", six_mp, list(0, 1))
for (model in em_models) em_runs("leukaemia", model, six_mp, at = list(0, 1))
run_em("leukaemia", "lognormal", "em stopped", six_mp, 1e-4, 3, expect = -1, full = FALSE)

wbc <- read.csv(file.path(data_dir, "leukaemia-wbc.csv"))
by_wbc <- cases(wbc$weeks, wbc$relapse, cbind("sex" = as.numeric(wbc$sex == "male"), logwbc = wbc$logwbc,
                                              "group" = as.numeric(wbc$group == "6-MP")))
for (model in all_models) analyse("leukaemia-wbc", model, by_wbc, list(c(1, 3, 0), c(0, 2, 1)))
run_exponential("leukaemia-wbc", "1e-4", by_wbc)
for (model in em_models) em_runs("leukaemia-wbc", model, by_wbc, at = list(c(1, 3, 0)))
elsewhere("leukaemia-wbc", "exponential", by_wbc, c(0.2, -0.7, 1, 4))
for (model in em_models) elsewhere("leukaemia-wbc", model, by_wbc, c(0.2, -0.7, 1, 4, 1.5))
# Censored cases whose tail is 0.
elsewhere("leukaemia-wbc", "lognormal", by_wbc, c(0.2, -0.7, 1, 4, 0.02), FALSE)
copied <- by_wbc
copied$x <- cbind(copied$x, copy = by_wbc$x[, "logwbc"])
run_exponential("leukaemia-copy", "1e-4", copied, expect = 2)

aml <- read.csv(file.path(data_dir, "aml.csv"))
maintained <- cases(aml$time, aml$status, cbind("group" = as.numeric(aml$group == "Nonmaintained")))
for (model in all_models) r <- analyse("aml", model, maintained, list(0, 1))
em_limit(maintained, "lognormal", r)
run_exponential("aml", "1e-4", maintained)
run_exponential("aml", "coarse", maintained, 0.1)
for (model in em_models) em_runs("aml", model, maintained, at = list(1))

veteran <- read.csv(file.path(data_dir, "veteran.csv"))
types <- c("smallcell", "adeno", "large")
indicators <- sapply(types, function(type) as.numeric(veteran$celltype == type))
colnames(indicators) <- paste0("celltype=", types)
full <- cases(veteran$time, veteran$status,
              cbind(trt = veteran$trt, indicators, as.matrix(veteran[c("karno", "diagtime", "age", "prior")])))
value <- c(1, 0, 0, 0, 80, 3, 50, 0)
for (model in all_models) analyse("veteran", model, full, list(value, c(2, 1, 0, 0, 30, 12, 65, 10)), every = 4)
run_exponential("veteran", "1e-4", full)
run_exponential("veteran", "1e-5", full, 1e-5)
for (model in em_models) em_runs("veteran", model, full, at = list(value))

# P. Feigl and M. Zelen (1965), Biometrics 21, 826-838: weeks, white blood cells in hundreds, AG positive or negative.
weeks <- c(65, 156, 100, 134, 16, 108, 121, 4, 39, 143, 56, 26, 22, 1, 1, 5, 65,
           56, 65, 17, 7, 16, 22, 3, 4, 2, 3, 8, 4, 3, 30, 4, 43)
cells <- c(23, 7.5, 43, 26, 60, 105, 100, 170, 54, 70, 94, 320, 350, 1000, 1000, 520, 1000,
           44, 30, 40, 15, 90, 53, 100, 190, 270, 280, 310, 260, 210, 790, 1000, 1000)
feigl <- cases(weeks, rep(1, 33), cbind(ag = rep(1:0, c(17, 16)), logwbc = log(100 * cells)))
write_data("feigl-zelen", feigl)
for (model in all_models) {
  r <- analyse("feigl-zelen", model, feigl, list(c(1, 9), c(0, 11)))
  if (model != "exponential") next
  published(r$beta, c(1.017627, -0.304406, 5.815475), 6)
  published(sqrt(diag(r$V)), c(0.363664, 0.124356, 1.263173), 6)
}
run_exponential("feigl-zelen", "1e-4", feigl)
# All complete: the start is the estimate, and the divisor is what differs.
for (model in em_models) em_runs("feigl-zelen", model, feigl, at = list(c(1, 9)))

# 16 galaxies: y <= its value where it is a limit. Time is 40 - y.
gx <- c(27.2, 25.4, 27.2, 25.9, 28.8, 25.3, 26.5, 27.1, 28.9, 29.9, 27.0, 29.8, 30.1, 29.7, 28.4, 29.3)
gy <- c(28.5, 26.9, 29.7, 28.1, 30.1, 27.6, 29.0, 29.0, 30.2, 32.4, 28.5, 31.1, 31.9, 32.3, 30.4, 31.8)
limits <- c(3, 4, 6, 7, 10, 14)
galaxies <- cases(round(40 - gy, 1), as.numeric(!(1:16 %in% limits)), cbind(x = gx))
write_data("galaxies", galaxies)
for (model in em_models) {
  r <- analyse("galaxies", model, galaxies, list(26, 29))
  em_limit(galaxies, model, r)
  em_runs("galaxies", model, galaxies, at = list(26))
  if (model == "normal") published(c(40 - r$beta[2], -r$beta[1], r$beta[3]), c(0.1703, 1.0519, 0.3687), 4)
}

# W. Nelson and G. J. Hahn (1972), Technometrics 14, 247-269: hours to failure of 40 motorettes at 150, 170, 190 and
# 220 degrees.
hours <- c(rep(8064, 10), 1764, 2772, 3444, 3542, 3780, 4860, 5196, rep(5448, 3),
           408, 408, 1344, 1344, 1440, rep(1680, 5), 408, 408, 504, 504, 504, rep(528, 5))
failed <- c(rep(0, 10), rep(1, 7), rep(0, 3), rep(1, 5), rep(0, 5), rep(1, 5), rep(0, 5))
motorettes <- cases(log10(hours), failed, cbind(x = 1000 / (273.2 + rep(c(150, 170, 190, 220), each = 10))))
write_data("motorettes", motorettes)
r <- analyse("motorettes", "normal", motorettes, list(1000 / (273.2 + 130), 1000 / (273.2 + 200)))
published(r$beta, c(4.31125, -6.01925, 0.259183), c(5, 5, 6))
em_runs("motorettes", "normal", motorettes, at = list(1000 / (273.2 + 130)))
em_limit(motorettes, "normal", r)
in_hours <- cases(hours, failed, motorettes$x)
write_data("motorettes-hours", in_hours)
natural <- analyse("motorettes-hours", "lognormal", in_hours, list(1000 / (273.2 + 130)))
agree(natural$beta, r$beta * log(10), 1e-8)
analyse("motorettes-hours", "exponential", in_hours, list(1000 / (273.2 + 130)))


# ---- Drawn.

# Three covariates, more than four fifths censored.
heavy <- random_cases(7, 120, function() c(drawn(2), drawn(100) / 25, drawn(41) + 40),
                      function(x) 6 + 0.5 * x[1] - 0.3 * x[2] + 0.01 * x[3], 0.8, 110, 0.5)
stopifnot(mean(heavy$status) < 0.2)
write_data("heavy", heavy)
for (model in all_models) analyse("heavy", model, heavy, list(c(1, 2, 60)), every = 3)
run_exponential("heavy", "1e-4", heavy)
for (model in em_models) em_runs("heavy", model, heavy, at = list(c(1, 2, 60)))

# Six covariates, few distinct times.
ties <- random_cases(11, 150, function() c(drawn(2), drawn(5) - 2, drawn(101) / 16, drawn(41) / 10, drawn(3), drawn(7)),
                     function(x) 2 + 0.4 * x[1] - 0.2 * x[2] + 0.05 * x[3] - 0.3 * x[4] + 0.1 * x[6], 1, 12, 1)
stopifnot(length(unique(ties$time)) < 25)
write_data("ties", ties)
value <- c(1, -1, 2.5, 2, 1, 3)
for (model in all_models) analyse("ties", model, ties, list(value), every = 3)
run_exponential("ties", "1e-4", ties)
run_exponential("ties", "1e-5", ties, 1e-5)
for (model in em_models) em_runs("ties", model, ties, at = list(value))

# One covariate of the two far from 0, moderately (its deviation is 0.005 of its mean) and beyond what a factor tells
# from a constant.
near <- random_cases(23, 80, function() c(drawn(2), drawn(601) / 100), function(x) 2 + 0.5 * x[1] + 0.2 * x[2], 0.7,
                     40, 0.25)
shifted <- function(by) {
  near$x[, 2] <- near$x[, 2] + by
  near
}
write_data("near", near)
for (by in c(0, 350, 1e6)) {
  d <- shifted(by)
  name <- paste0("near", if (by > 0) paste0("+", digits(by)))
  for (model in all_models) {
    r <- analyse(name, model, d, list(c(1, 3 + by)), every = 5)
    unshifted <- if (model == "exponential") fit_exponential(near) else fit_normal(near, model)
    agree(r$beta[1:2], unshifted$beta[1:2], 1e-6)
  }
  run_exponential(name, "1e-4", d, expect = if (by == 1e6) 2 else 0)
  for (model in em_models) if (by > 0) run_em(name, model, "em 1e-5", d, 1e-5, at = list(c(1, 3 + by)))
}
for (model in em_models) em_runs("near", model, near, at = list(c(1, 3)))

# Times of 0, complete and censored, which the exponential model takes, and the normal one.
zeros <- cases(c(0, 0, 0, 1, 2, 2, 3, 5, 7, 8, 11, 13), c(1, 0, 1, 1, 1, 0, 1, 0, 1, 1, 0, 1),
               cbind(x1 = c(3, 1, 2, 2, 1, 3, 2, 1, 0, 1, 0, 0)))
write_data("zeros", zeros)
for (model in c("exponential", "normal")) analyse("zeros", model, zeros, list(1))
run_exponential("zeros", "1e-4", zeros)
em_runs("zeros", "normal", zeros, at = list(1))

# Cases between two bounds: wide and narrow ones, in the middle and in the tails, one of them so narrow that it is
# complete.
x <- c(1:24, 3, 21)
lower <- c(3.1, 5.2, 4.4, 8.3, 6.9, 9, 9.7, 8.8, 12.1, 13.5, 10.4, 14.2, 13.3, 16.7, 15.1, 14.8, 19.2, 17.7, 20.6, 18.9,
           22.4, 19.5, 25.1, 21.8, 9.5, 11)
code <- c(2, 1, 0, 1, 2, 2, 1, 0, 1, 2, 0, 1, 2, 1, 1, 0, 2, 1, 1, 2, 1, 0, 1, 2, 2, 2)
width <- c(2, 0, 0, 0, 0.03, 5, 0, 0, 0, 200, 0, 0, 1e-4, 0, 0, 0, 3, 0, 0, 1.5, 0, 0, 0, 4, 0.5, 4)
confined <- c(cases(lower, code, cbind(x = x)), list(upper = lower + width))
write_data("confined", confined)
confined$status[width > 0 & width <= 1e-5 * lower] <- 1
stopifnot(sum(confined$status == 2) == 9)
r <- run_em("confined", "normal", "em 1e-5", confined, 1e-5, derived = FALSE)
known <- confined$status == 1
theirs <- survreg(Surv(lower, ifelse(known, lower, ifelse(confined$status == 2, confined$upper, NA)), type = "interval2") ~
                    x, dist = "gaussian", control = survreg.control(rel.tolerance = 1e-14))
beta <- c(coef(theirs)[2:1], theirs$scale)
agree(r$parameters, beta, 1e-4)
agree(iterate_em(confined, "normal", 1e-11, 5000)$parameters, beta, 1e-7)
agree(loglik_normal(confined, "normal", beta, log_tail_exactly), theirs$loglik[2])
add("confined", "normal maximum", "beta", beta, c("x", "constant", "sigma"), 0)
add("confined", "normal maximum", "loglik", theirs$loglik[2], row = 0)

# ---- Endings.

# Times in small units: the log-likelihood is positive, and no test of it is met.
small <- cases(six_mp$time / 1e6, six_mp$status, six_mp$x)
write_data("small", small)
r <- run_exponential("small", "1e-4", small, expect = 1)
stopifnot(r$L > 0, !any(r$tested))
# Nor do tolerances that are not relative fit such units.
run_em("small", "normal", "em 1e-4", small, full = FALSE)
run_em("small", "lognormal", "em 1e-4", small)
run_exponential("small", "most", small, most = 200, expect = 1, thin = 50)

# A coefficient of exactly 0 has no relative step; a negligible one meets the test of the parameters.
balanced <- cases(rep(c(1, 3, 6, 2, 8, 12), 2), rep(c(1, 1, 0, 1, 1, 1), 2),
                  cbind(x = rep(0:1, each = 6), group = rep(0:1, each = 3, times = 2)))
write_data("balanced", balanced)
r <- run_exponential("balanced", "1e-4", balanced)
stopifnot(abs(r$beta[1]) < 1e-14)

# Groups of very different hazard: the first full step goes far beyond, and each that follows comes back by about 1.
# Told by the indicator of the longer times; by that of the shorter ones the information soon looks singular.
apart <- function(times, of_longer = TRUE) {
  short <- c(1, 1.5, 2, 2.5, 3)
  cases(c(short, short * times), rep(1, 10), cbind(x = rep(c(0, 1), each = 5) == as.numeric(of_longer)) * 1)
}
for (times in c(10, 40, 100)) write_data(paste0("apart-", times), apart(times))
write_data("apart-reversed", apart(40, FALSE))
run_exponential("apart-10", "1e-4", apart(10))
run_exponential("apart-40", "1e-4", apart(40))
run_exponential("apart-100", "1e-4", apart(100), most = 50, expect = 1, thin = 10)
run_exponential("apart-100", "longer", apart(100), most = 51, thin = 10)
run_exponential("apart-reversed", "1e-4", apart(40, FALSE), expect = 2)

# No covariate, codes and times that are none, no event, no time, fewer events than parameters; several at once
# in the order of the tests.
one <- function(time, status, x) cases(time, status, cbind(x = x))
ending <- function(name, d, expect) {
  write_data(name, d)
  run_exponential(name, "1e-4", d, expect = expect)
}
ending("no-covariate", cases(c(1, 2, 3), c(1, 1, 0), matrix(0, 3, 0)), 4)
ending("code", one(c(1, 2, -3), c(1, 2, 0), 1:3), 5)
ending("below-0", one(c(1, 2, -3), c(0, 0, 0), 1:3), 6)
ending("no-event", one(c(0, 0, 0), c(0, 0, 0), 1:3), 7)
ending("no-time", one(c(0, 0, 0), c(1, 0, 0), 1:3), 8)
ending("few-events", one(c(1, 2, 3), c(1, 0, 0), c(1, 2, 4)), 9)
ending("enough-events", one(c(1, 2, 3), c(1, 0, 1), c(1, 2, 4)), 0)

# The normal model: a copied covariate (status: -5), and fewer complete cases than coefficients (-4).
for (model in em_models) {
  stopifnot(qr(cbind(copied$x, 1))$rank == 4)
  add("leukaemia-copy", paste(model, "em 1e-4"), "status", -5, row = 0)
}
few <- cases(1:8, c(1, 0, 1, 0, 0, 0, 0, 0), cbind(x1 = c(1, 3, 2, 5, 1, 4, 2, 3), x2 = c(2, 1, 1, 3, 5, 1, 2, 4)))
write_data("few-complete", few)
for (model in em_models) add("few-complete", paste(model, "em 1e-4"), "status", -4, row = 0)

out <- file(file.path(here, "parametric.csv"), "wb")
writeLines(c("# Exponential, normal and lognormal regressions of right-censored times.",
             paste0("# Source: ", R.version$version.string, ", package survival ", packageVersion("survival"),
                    "; definitions and data stand in the script."),
             "# Written by: Rscript tests/golden/parametric.R",
             "# run: data: the cases (status 2: between time and upper); a model's name: its maximum; with means, at1, at2:",
             "# predictions there; with em and a criterion: the EM estimate (null: without covariates; df: starts from a",
             "# sigma whose sum of squares is divided by the complete cases less the coefficients, not by the complete cases),",
             "# predictions after it as before; else an iteration of the exponential model. factor: factors and inverses by",
             "# themselves.",
             "# Coefficients are those of the (log) time. loglik: exponential and normal of the times, lognormal of their",
             "# logarithms; loglik_time: of the times; sum_log_times: over the complete cases. Covariance: of the column,",
             "# rows the parameters; of sigma itself; from the observed information.",
             "# trace: rows the iterations, before each step (exponential) or after it, 0 the start (em: the first 8, every",
             "# 10th and the last two). trace_still: the test of the log-likelihood. gradient, information: by coefficients,",
             "# constant, sigma; of the exponential model by those of the log hazard. elsewhere, tail: at given parameters.",
             "# EM: density 0.39894228 exp(-z^2/2), tail of AS 66; after it loglik with this tail, all else exactly.",
             "# quantile: the time by which a quarter (row 75), half, three quarters (25) have failed. Limits: 95%, delta",
             "# method, of survival for log(-log S), of quantiles for their logarithm; own: for themselves.",
             "# location, linear_predictor: with the constant. score: (y - location) / sigma of time. residual: Cox and Snell's",
             "# (exponential) or standardised; residual_km, residual_hazard: product-limit and Nelson's estimate there."),
           out)
write.table(do.call(rbind, rows), out, sep = ",", quote = FALSE, row.names = FALSE)
close(out)
