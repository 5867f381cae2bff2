#!/usr/bin/env Rscript
# Writes k-sample.csv beside itself: comparisons of several samples, against which the system's own numbers are tested.
#   Rscript tests/golden/k-sample.R
# The log-rank test, its G-rho relative with rho = 1 (Peto & Peto) and the pairs come from R's package `survival`,
# Tarone-Ware (1977, Biometrika 64, 156) and the trends (Tarone 1975, Biometrika 62, 679) from their definitions, Gehan's
# scores (1965, Biometrika 52, 203) from comparing all pairs of cases, medians from survfit with log-minus-log limits.
suppressPackageStartupMessages(library(survival))

self <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
# Rscript passes blanks in its own path as ~+~.
here <- dirname(normalizePath(gsub("~+~", " ", self, fixed = TRUE)))
data_dir <- file.path(here, "..", "..", "examples", "data")

# 17 significant digits bring every double back unchanged.
digits <- function(x) ifelse(is.na(x), "NA", ifelse(x == round(x), sprintf("%.0f", x), sprintf("%.17g", x)))

chi_square <- function(difference, covariance) {
  k <- length(difference) - 1
  x <- drop(difference[1:k] %*% solve(covariance[1:k, 1:k], difference[1:k]))
  c(chisq = x, p = pchisq(x, k, lower.tail = FALSE))
}
trend <- function(difference, covariance, score) {
  x <- sum(score * difference)^2 / drop(score %*% covariance %*% score)
  c(chisq = x, p = pchisq(x, 1, lower.tail = FALSE))
}

# Weighted sums of observed less expected failures, with their hypergeometric covariance.
weighted <- function(time, status, group, weight) {
  k <- max(group)
  difference <- numeric(k)
  covariance <- matrix(0, k, k)
  for (t in sort(unique(time[status == 1]))) {
    n_g <- tabulate(group[time >= t], k)
    d_g <- tabulate(group[time == t & status == 1], k)
    n <- sum(n_g)
    d <- sum(d_g)
    w <- weight(n)
    difference <- difference + w * (d_g - d * n_g / n)
    if (n > 1)
      covariance <- covariance + w^2 * d * (n - d) / (n - 1) * (diag(n_g / n) - outer(n_g, n_g) / n^2)
  }
  list(difference = difference, covariance = covariance)
}

gehan <- function(time, status, group) {
  shorter <- outer(seq_along(time), seq_along(time), function(i, j)
    status[i] == 1 & (time[i] < time[j] | (time[i] == time[j] & status[j] == 0)))
  score <- colSums(shorter) - rowSums(shorter)
  total <- tapply(score, group, sum)
  n <- length(score)
  x <- (n - 1) * sum(total^2 / table(group)) / sum(score^2)
  list(sums = total, statistic = c(sum_of_squares = sum(score^2), chisq = x,
                                   p = pchisq(x, length(total) - 1, lower.tail = FALSE)))
}

rows <- NULL
add <- function(data, test, quantity, value)
  rows <<- rbind(rows, data.frame(data = data, test = test, quantity = quantity, value = digits(value)))

compare <- function(data, time, status, codes) {
  known <- sort(unique(codes))
  group <- match(codes, known)
  k <- length(known)
  scores <- gehan(time, status, group)
  add(data, "gehan", paste0("sum", 1:k), scores$sums)
  add(data, "gehan", names(scores$statistic), scores$statistic)
  for (test in c("log-rank", "tarone-ware", "peto")) {
    sums <- if (test == "tarone-ware") weighted(time, status, group, sqrt) else {
      fit <- survdiff(Surv(time, status) ~ group, rho = if (test == "peto") 1 else 0)
      add(data, test, paste0("observed", 1:k), fit$obs)
      add(data, test, paste0("expected", 1:k), fit$exp)
      list(difference = fit$obs - fit$exp, covariance = fit$var)
    }
    overall <- chi_square(sums$difference, sums$covariance)
    if (test != "tarone-ware") stopifnot(all.equal(overall[["chisq"]], fit$chisq))
    add(data, test, names(overall), overall)
    by_order <- trend(sums$difference, sums$covariance, 1:k)
    by_code <- trend(sums$difference, sums$covariance, known)
    add(data, test, paste0("order_", names(by_order)), by_order)
    add(data, test, paste0("code_", names(by_code)), by_code)
  }
  pairs <- combn(k, 2)
  p <- apply(pairs, 2, function(both) {
    those <- group %in% both
    x <- survdiff(Surv(time[those], status[those]) ~ group[those])$chisq
    pchisq(x, 1, lower.tail = FALSE)
  })
  names <- apply(pairs, 2, paste, collapse = "-")
  add(data, "pairs", paste0("p", names), p)
  add(data, "pairs", paste0("holm", names), p.adjust(p, "holm"))
  for (g in c(1:k, 0)) { # 0: all of them
    those <- if (g == 0) time else time[group == g]
    add(data, "times", paste0(c("median", "mean", "sd"), g), c(median(those), mean(those), sd(those)))
  }
  medians <- summary(survfit(Surv(time, status) ~ group, conf.type = "log-log"))$table
  for (column in c("median", "0.95LCL", "0.95UCL"))
    add(data, "median", paste0(column, 1:k), medians[, column])
}

veteran <- read.csv(file.path(data_dir, "veteran.csv"))
# By cell type, coded 1 squamous, 2 smallcell, 3 adeno, 4 large.
types <- match(veteran$celltype, c("squamous", "smallcell", "adeno", "large"))
compare("veteran", veteran$time, veteran$status, types)
# Many ties, and codes that are not evenly spaced: whole months, by the Karnofsky score in four classes.
karno <- c(20, 40, 70, 99)[findInterval(veteran$karno, c(0, 35, 55, 75))]
compare("veteran-months", ceiling(veteran$time / 30), veteran$status, karno)

out <- file(file.path(here, "k-sample.csv"), "wb")
writeLines(c("# Comparisons of several samples.",
             "# Data: examples/data/veteran.csv by celltype (1 squamous, 2 smallcell, 3 adeno, 4 large); veteran-months:",
             "# the same in whole months, ceiling(time / 30), by karno below 35 (code 20), 55 (40), 75 (70) and above (99).",
             paste0("# Source: ", R.version$version.string, ", package survival ", packageVersion("survival"), "."),
             "# Definitions and written by: Rscript tests/golden/k-sample.R"), out)
write.table(rows, out, sep = ",", quote = FALSE, row.names = FALSE)
close(out)
