#!/usr/bin/env Rscript
# Writes kaplan-meier-<data>.csv beside itself: product-limit estimates of the example data sets by R's package
# `survival`, against which the system's own numbers are tested.
#   Rscript tests/golden/kaplan-meier.R
# The estimate at each distinct time: n at risk just before it, events and censorings at it, survival, Greenwood's
# standard error of the survival itself (survfit gives that of its logarithm), limits on the log(-log) scale at 0.95.
# Where R has no limits or no error (survival 0 or 1), the cell says NA.
suppressPackageStartupMessages(library(survival))

self <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
# Rscript passes blanks in its own path as ~+~.
here <- dirname(normalizePath(gsub("~+~", " ", self, fixed = TRUE)))
data_dir <- file.path(here, "..", "..", "examples", "data")

# 17 significant digits bring every double back unchanged.
digits <- function(x) ifelse(is.na(x), "NA", ifelse(x == round(x), sprintf("%.0f", x), sprintf("%.17g", x)))

estimate <- function(sample, time, event, of) {
  fit <- survfit(Surv(sample[[time]], sample[[event]]) ~ 1, conf.type = "log-log", conf.int = 0.95)
  se <- fit$surv * fit$std.err
  se[is.nan(se)] <- NA
  data.frame(of = of, time = digits(fit$time), n.risk = digits(fit$n.risk), n.event = digits(fit$n.event),
             n.censor = digits(fit$n.censor), survival = digits(fit$surv), std.err = digits(se),
             lower = digits(fit$lower), upper = digits(fit$upper))
}

write_golden <- function(name, time, event, group) {
  data <- read.csv(file.path(data_dir, paste0(name, ".csv")))
  parts <- lapply(sort(unique(as.character(data[[group]])), method = "radix"), function(code)
    estimate(data[data[[group]] == code, ], time, event, code))
  table <- do.call(rbind, c(list(estimate(data, time, event, "all")), parts))
  out <- file(file.path(here, paste0("kaplan-meier-", name, ".csv")), "wb")
  on.exit(close(out))
  writeLines(c(paste0("# Product-limit estimates of examples/data/", name, ".csv: all cases, then each code of ", group, "."),
               paste0("# Source: ", R.version$version.string, ", package survival ", packageVersion("survival"), "."),
               paste0("# survfit(Surv(", time, ", ", event, ") ~ 1, conf.type = \"log-log\", conf.int = 0.95); ",
                      "std.err is survfit's std.err * surv."),
               "# Written by: Rscript tests/golden/kaplan-meier.R"), out)
  write.table(table, out, sep = ",", quote = FALSE, row.names = FALSE)
}

write_golden("leukaemia-6mp", "weeks", "relapse", "group")
write_golden("veteran", "time", "status", "celltype")
write_golden("aml", "time", "status", "group")
