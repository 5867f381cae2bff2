#!/usr/bin/env python3
"""Draws samples from each of the four survival distributions that are fitted to life tables, and looks whether the fits
recover the parameters.

    bench/recover.py [SAMPLES [CASES]]          default: 200 samples of 20000 cases from each, always the same

Cases are withdrawn at an exponential time, all that are left at the end of the study. Each sample goes through korvana
life-table with 30 intervals. Printed are, for each distribution, parameter and weighting: the truth; the mean of the
estimates; how far that is off, in standard errors of the mean and in standard errors of one estimate; the standard
deviation of the estimates over their standard error; and in how many of 100 samples the truth lies within two standard
errors. Ends with 1 when a mean is off by more than one standard error of an estimate, that ratio is not within 0.8 and
1.25, or fewer than 80 of 100 intervals hold the truth; of fewer than 100 samples that happens by chance.
"""
import json
import math
import os
import random
import statistics
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor

WEIGHTINGS = 3
INTERVALS = 30
END = 12.0  # of the study
WITHDRAWAL = 0.03  # per unit of time

# The parameters, and the time at which the cumulative hazard is h.
MODELS = {
    "Exponential": ({"lambda": 0.1}, lambda h, l: h / l),
    "Linear Hazard": ({"lambda": 0.05, "gamma": 0.01}, lambda h, l, g: 2 * h / (l + math.sqrt(l * l + 2 * g * h))),
    "Gompertz": ({"lambda": -3.0, "gamma": 0.15}, lambda h, l, g: math.log1p(g * h / math.exp(l)) / g),
    "Weibull": ({"lambda": 0.03, "gamma": 1.5}, lambda h, l, g: (h / l) ** (1 / g)),
}


def draw(path, model, seed, cases):
    truth, time_of = MODELS[model]
    generator = random.Random(f"{model} {seed}")
    with open(path, "w") as file:
        file.write("time,status\n")
        for _ in range(cases):
            death = time_of(generator.expovariate(1), *truth.values())
            leaving = min(generator.expovariate(WITHDRAWAL), END)
            file.write(f"{death!r},1\n" if death < leaving else f"{leaving!r},0\n")


def estimates(path, model):
    """{(parameter, weighting): (estimate, standard error)} of a sample; inadequate fits are not among them."""
    run = subprocess.run(
        ["build/bench/bin/korvana", "life-table", path, "--time", "time", "--censor", "status", "--complete", "1",
         "--censored", "0", "--intervals", str(INTERVALS), "--outputs", "parameters", "--format", "json", "--quiet"],
        check=True, capture_output=True, text=True)
    found = {}
    for sheet in json.loads(run.stdout)["spreadsheets"]:
        if not sheet["title"].endswith(model):
            continue
        for row in sheet["rows"]:
            cells = dict(zip(sheet["columnIds"], row["cells"]))
            for parameter in MODELS[model][0]:
                found[parameter, int(cells["method"])] = cells[parameter], cells[parameter + "Error"]
    return found


def report(label, true, fitted):
    """Prints the line of a parameter and weighting; whether it was recovered."""
    values, errors = zip(*fitted)
    mean, spread, error = statistics.mean(values), statistics.stdev(values), statistics.mean(errors)
    off = mean - true
    within = sum(abs(value - true) <= 2 * its for value, its in fitted) / len(fitted)
    recovered = abs(off) <= error and 0.8 <= spread / error <= 1.25 and within >= 0.8
    print(f"{label:24} {true:8.5g} {mean:10.6g} {off / spread * math.sqrt(len(fitted)):10.2f} {off / error:7.2f} "
          f"{spread / error:6.2f} {100 * within:9.1f}%{'' if recovered else '  <-- not recovered'}", flush=True)
    return recovered


def main():
    os.chdir(os.path.join(os.path.dirname(os.path.realpath(__file__)), ".."))
    samples, cases = [int(given) for given in sys.argv[1:]] + [200, 20000][len(sys.argv) - 1:]
    subprocess.run(["scripts/build.sh", "bench", "korvana", "OZMSurvival"], check=True)
    print(f"{'':24} {'truth':>8} {'mean':>10} {'off/SEmean':>10} {'off/SE':>7} {'SD/SE':>6} {'within 2':>10}")
    recovered = True
    with tempfile.TemporaryDirectory(prefix="korvana-recover.") as folder, ThreadPoolExecutor(os.cpu_count()) as pool:
        def sample(model, seed):
            path = os.path.join(folder, f"{seed}.csv")
            draw(path, model, seed, cases)
            return estimates(path, model)

        for model, (truth, _) in MODELS.items():
            found = list(pool.map(lambda seed, of=model: sample(of, seed), range(samples)))
            for parameter, true in truth.items():
                for weighting in range(1, WEIGHTINGS + 1):
                    label = f"{model}, {parameter}, {weighting}"
                    fitted = [one[parameter, weighting] for one in found if (parameter, weighting) in one]
                    if len(fitted) < samples:
                        print(f"{label}: {samples - len(fitted)} of {samples} samples have no adequate fit")
                        recovered = False
                    recovered = (len(fitted) > 1 and report(label, true, fitted)) and recovered
    sys.exit(not recovered)


if __name__ == "__main__":
    main()
