#!/usr/bin/env Rscript
# Writes tails.csv beside itself: upper tails of the normal, chi-square and F distributions by R, against which the
# system's own are tested.
#   Rscript tests/golden/tails.R
# Chi-square and F values are the quantiles of round probabilities, rounded to single precision (as the system takes
# them) before their tail is computed. Values beyond single precision are left out: F with few denominator degrees of
# freedom has them.

self <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
# Rscript passes blanks in its own path as ~+~.
here <- dirname(normalizePath(gsub("~+~", " ", self, fixed = TRUE)))

# 17 significant digits bring every double back unchanged.
digits <- function(x) ifelse(is.na(x), "NA", sprintf("%.17g", x))
single <- function(x) readBin(writeBin(x, raw(), size = 4), "numeric", length(x), size = 4)

rows <- function(of, x, df1, df2, p)
  data.frame(of = of, x = digits(x), df1 = digits(df1), df2 = digits(df2), p = digits(p))

z <- c(-6.5, -3, -1.3, -1.28, -1, -0.25, 0, 0.1, 0.5, 1, 1.2, 1.28, 1.2800001, 1.5, 2, 3, 5, 7.5, 12, 18.6)
normal <- rows("normal", z, NA, NA, pnorm(z, lower.tail = FALSE))

grid <- expand.grid(p = c(0.99, 0.5, 0.05, 1e-3, 1e-12, 1e-100, 1e-300), df = c(1, 2, 3, 5, 20, 30, 100, 249))
x <- single(qchisq(grid$p, grid$df, lower.tail = FALSE))
chi_square <- rows("chi-square", x, grid$df, NA, pchisq(x, grid$df, lower.tail = FALSE))

df <- c(1, 2, 3, 7, 30, 250, 4000, 32000)
grid <- expand.grid(p = c(0.999999, 0.8, 0.5, 0.3, 0.05, 1e-4, 1e-9, 1e-18, 1e-30), df2 = df, df1 = df)
grid$x <- suppressWarnings(qf(grid$p, grid$df1, grid$df2, lower.tail = FALSE))
grid <- grid[is.finite(grid$x) & grid$x < 3e38, ]
x <- single(grid$x)
f <- rows("F", x, grid$df1, grid$df2, pf(x, grid$df1, grid$df2, lower.tail = FALSE))

out <- file(file.path(here, "tails.csv"), "wb")
writeLines(c("# Upper tails: P(X > x) of the standard normal, chi-square (df1) and F (df1, df2) distribution.",
             paste0("# Source: ", R.version$version.string, "."),
             "# pnorm(x), pchisq(x, df1), pf(x, df1, df2), each with lower.tail = FALSE.",
             "# Written by: Rscript tests/golden/tails.R"), out)
write.table(rbind(normal, chi_square, f), out, sep = ",", quote = FALSE, row.names = FALSE)
close(out)
