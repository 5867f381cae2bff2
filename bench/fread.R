# The seconds that data.table::fread takes for a file, with as many threads as it takes by itself.
#   Rscript bench/fread.R FILE
suppressPackageStartupMessages(library(data.table))
file <- commandArgs(trailingOnly = TRUE)[1]
cat(system.time(fread(file, showProgress = FALSE))[["elapsed"]], getDTthreads(), "\n")
