#!/usr/bin/env Rscript
# Writes two-sample.csv beside itself: five tests of two samples, against which the system's own numbers are tested.
#   Rscript tests/golden/two-sample.R
# Every test follows its textbook definition, using R's package `survival` where possible. Score sums are those of group
# 1, Cox and Mantel's U is that of group 2, and all p but that of F are two-sided. Sources: Gehan (1965) Biometrika 52,
# 203; Mantel (1967) Biometrics 23, 65; Cox (1964) JRSS B 26, 103; Mantel (1966) Cancer Chemother. Rep. 50, 163; Peto
# and Peto (1972) JRSS A 135, 185.
suppressPackageStartupMessages(library(survival))

self <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
# Rscript passes blanks in its own path as ~+~.
here <- dirname(normalizePath(gsub("~+~", " ", self, fixed = TRUE)))
data_dir <- file.path(here, "..", "..", "examples", "data")

# 17 significant digits bring every double back unchanged.
digits <- function(x) ifelse(is.na(x), "NA", ifelse(x == round(x), sprintf("%.0f", x), sprintf("%.17g", x)))

two_sided <- function(z) 2 * pnorm(-abs(z))

# Scores against their permutation distribution. The scores of all cases sum to 0, so no mean is taken off.
permutation <- function(score, group) {
  stopifnot(abs(sum(score)) < 1e-9)
  n <- length(score)
  score_sum <- sum(score[group == 1])
  squares <- sum(score^2)
  variance <- squares * sum(group == 1) * sum(group == 2) / (n * (n - 1))
  list(score_sum = score_sum, sum_of_squares = squares, variance = variance, statistic = score_sum / sqrt(variance))
}

with_p <- function(test) c(test, p = two_sided(test$statistic))

# How many cases have surely the shorter life, less how many have surely the longer one: all pairs are compared.
gehan <- function(time, status, group) {
  # [i, j]: i failed, and j was still alive then; a case censored at the time of a failure outlives it.
  shorter <- outer(seq_along(time), seq_along(time), function(i, j)
    status[i] == 1 & (time[i] < time[j] | (time[i] == time[j] & status[j] == 0)))
  test <- permutation(colSums(shorter) - rowSums(shorter), group)
  correction <- if (mean(status == 0) < 0.2) 1 else 0.5
  corrected <- (test$score_sum - sign(test$score_sum) * correction) / sqrt(test$variance)
  c(test[c("score_sum", "sum_of_squares", "variance")], uncorrected = test$statistic, statistic = corrected,
    p = two_sided(corrected))
}

# Expected k-th smallest of n unit exponentials: 1/n + ... + 1/(n-k+1), a difference of digamma values.
exponential_order <- function(k, n) digamma(n + 1) - digamma(n - k + 1)

# Tied failures share the mean of their scores. With r failures, the censored cases count as the next, (r+1)-th, one.
cox_f <- function(time, status, group) {
  failed <- status == 1
  r <- sum(failed)
  raw <- exponential_order(rank(time[failed], ties.method = "first"), length(time))
  score <- rep(exponential_order(r + (r < length(time)), length(time)), length(time))
  score[failed] <- ave(raw, time[failed])
  total <- c(sum(score[group == 1]), sum(score[group == 2]))
  failures <- c(sum(failed & group == 1), sum(failed & group == 2))
  mean <- total / failures
  top <- which.max(mean)
  f <- mean[top] / mean[3 - top]
  df <- 2 * failures[c(top, 3 - top)]
  list(t1 = total[1], t2 = total[2], f = f, df1 = df[1], df2 = df[2],
       p = pf(f, df[1], min(df[2], 32000), lower.tail = FALSE))
}

# Observed less expected failures of group 2, with the hypergeometric variance.
cox_mantel <- function(time, status, group) {
  fit <- survdiff(Surv(time, status) ~ group)
  u <- fit$obs[2] - fit$exp[2]
  i <- fit$var[2, 2]
  list(u = u, i = i, c = u / sqrt(i), p = two_sided(u / sqrt(i)))
}

# Nelson and Aalen's cumulative hazard H: 1 - H for a failure, -H for a censored case.
log_rank <- function(time, status, group) {
  fit <- survfit(Surv(time, status) ~ 1)
  with_p(permutation(status - fit$cumhaz[match(time, fit$time)], group))
}

# Kaplan and Meier's S just before and just after the time: S- + S - 1 for a failure, S - 1 for a censored case.
# Without censored cases this is Gehan's test, correction included.
peto <- function(time, status, group) {
  if (all(status == 1)) {
    return(gehan(time, status, group)[c("score_sum", "sum_of_squares", "variance", "statistic", "p")])
  }
  fit <- survfit(Surv(time, status) ~ 1)
  at <- match(time, fit$time)
  with_p(permutation(ifelse(status == 1, c(1, fit$surv)[at], 0) + fit$surv[at] - 1, group))
}

sizes <- function(time, status, group) {
  count <- function(g, s) sum(group == g & status == s)
  list(n1 = sum(group == 1), n2 = sum(group == 2), uncensored1 = count(1, 1), censored1 = count(1, 0),
       uncensored2 = count(2, 1), censored2 = count(2, 0))
}

tests <- list(sample = sizes, gehan = gehan, `cox-f` = cox_f, `cox-mantel` = cox_mantel, `log-rank` = log_rank,
              peto = peto)

compare <- function(data, time, status, code, group1, group2) {
  taken <- code %in% c(group1, group2)
  group <- ifelse(code == group1, 1, 2)[taken]
  do.call(rbind, lapply(names(tests), function(test) {
    value <- unlist(tests[[test]](time[taken], status[taken], group))
    data.frame(data, group1, group2, test, quantity = names(value), value = digits(value), row.names = NULL)
  }))
}

example <- function(name) read.csv(file.path(data_dir, paste0(name, ".csv")))
leukaemia <- example("leukaemia-6mp")
aml <- example("aml")
veteran <- example("veteran")
died <- veteran[veteran$status == 1, ]
# E. T. Lee (1980), Statistical Methods for Survival Data Analysis: ten patients, five under each treatment.
ten <- data.frame(time = c(23, 16, 18, 20, 24, 15, 18, 19, 19, 20), status = c(1, 0, 0, 0, 0, 1, 1, 1, 1, 1),
                  group = rep(c("A", "B"), each = 5))

table <- rbind(
  compare("leukaemia-6mp", leukaemia$weeks, leukaemia$relapse, leukaemia$group, "6-MP", "placebo"),
  compare("aml", aml$time, aml$status, aml$group, "Maintained", "Nonmaintained"),
  compare("veteran", veteran$time, veteran$status, veteran$trt, "1", "2"),
  compare("veteran", veteran$time, veteran$status, veteran$celltype, "squamous", "large"),
  compare("veteran-uncensored", died$time, died$status, died$trt, "1", "2"),
  compare("ten-patients", ten$time, ten$status, ten$group, "A", "B"))

out <- file(file.path(here, "two-sample.csv"), "wb")
writeLines(c("# Five tests of two samples.",
             "# Data: examples/data (leukaemia-6mp: weeks, relapse, group; aml: time, status, group; veteran: time,",
             "# status, trt or celltype; veteran-uncensored: its cases with status 1) and, of E. T. Lee (1980),",
             "# ten-patients: A 23 16+ 18+ 20+ 24+, B 15 18 19 19 20 (+ censored).",
             paste0("# Source: ", R.version$version.string, ", package survival ", packageVersion("survival"),
                    "; definitions in two-sample.R."),
             "# Written by: Rscript tests/golden/two-sample.R"), out)
write.table(table, out, sep = ",", quote = FALSE, row.names = FALSE)
close(out)
