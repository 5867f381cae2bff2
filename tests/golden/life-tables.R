#!/usr/bin/env Rscript
# Writes life-tables.csv beside itself: actuarial life tables of the groups of two example data sets, against which the
# system's own are tested.
#   Rscript tests/golden/life-tables.R
# Twelve lower limits from 0 to the largest time of both groups; a time on a limit begins the next interval. With W
# withdrawn and D dying of the N that enter an interval, E = N - W/2 are exposed and D/E of them die; an interval
# without a death is given half a death, one in which all exposed die half a survivor. A group's table ends with the row
# after the last interval that somebody enters; in that row nobody dies and all survive.

self <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
# Rscript passes blanks in its own path as ~+~.
here <- dirname(normalizePath(gsub("~+~", " ", self, fixed = TRUE)))
data_dir <- file.path(here, "..", "..", "examples", "data")
limits <- 12

# 17 significant digits bring every double back unchanged.
digits <- function(x) ifelse(x == round(x), sprintf("%.0f", x), sprintf("%.17g", x))

life_table <- function(data, code, time, complete, lower) {
  # Lowered so that a time on a limit begins its interval however the division rounded.
  interval <- factor(findInterval(time, lower * (1 - 1e-12)), levels = seq_along(lower))
  dying <- as.vector(table(interval[complete == 1]))
  withdrawn <- as.vector(table(interval[complete == 0]))
  leaving <- dying + withdrawn
  entering <- rev(cumsum(rev(leaving)))
  exposed <- entering - withdrawn / 2
  survivors <- exposed - dying
  survivors[dying == exposed] <- 0.5
  survivors[dying == 0] <- exposed[dying == 0] - 0.5
  surviving <- survivors / exposed
  surviving[entering == 0] <- 1
  rows <- seq_len(min(sum(entering > 0) + 1, length(lower)))
  data.frame(data = data, group = code, lower = digits(lower), entering = entering, withdrawn = withdrawn,
             dying = dying, surviving = digits(surviving),
             cumulative = digits(cumprod(c(1, surviving))[seq_along(lower)]))[rows, ]
}

tables_of <- function(name, time, complete, group) {
  sample <- read.csv(file.path(data_dir, paste0(name, ".csv")))
  lower <- seq(0, max(sample[[time]]), length.out = limits)
  do.call(rbind, lapply(split(sample, sample[[group]]), function(part)
    life_table(name, part[[group]][1], part[[time]], part[[complete]], lower)))
}

out <- file(file.path(here, "life-tables.csv"), "wb")
writeLines(c("# Life tables of the groups of examples/data/leukaemia-6mp.csv and aml.csv: 12 lower limits, corrected.",
             paste0("# Source: ", R.version$version.string, "; the formulas stand in the script."),
             "# findInterval, table, cumsum and cumprod over the times.",
             "# Written by: Rscript tests/golden/life-tables.R"), out)
write.table(rbind(tables_of("leukaemia-6mp", "weeks", "relapse", "group"), tables_of("aml", "time", "status", "group")),
            out, sep = ",", quote = FALSE, row.names = FALSE)
close(out)
