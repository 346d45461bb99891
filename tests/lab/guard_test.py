"""What needs the packages of `scripts/setup lab`: studies on Dask clusters, plots, and those of the guide."""
import os
import re
import signal
import subprocess
import sys
import unittest

from lab import PATIENCE, ROOT, SIMULATOR, STUDY, SWEEP, LabTest, until

sys.path.insert(0, os.path.join(ROOT, "lab"))
import plots

import matplotlib.pyplot as plt

PLOT = """
[[plots]]
name = "money"
title = "What taxes bring"
x = "days"
x_label = "Days"
y = ["money", "demand0"]
y_label = ["Money", "Demand for homes"]
lines = "steps"
lines_label = "Steps of tax"
"""


class Cluster(LabTest):
    """A scheduler and workers of its own on loopback."""

    def setUp(self):
        super().setUp()
        self.study(STUDY.replace("[1, 2, 3]", "{ from = 1, to = 12 }"))
        self.expected = self.swept(out="here")
        self.scheduler = self.dask("scheduler", "--host", "127.0.0.1", "--port", "0", "--no-dashboard",
                                   "--scheduler-file", self.path("scheduler.json"))
        until(lambda: self.log_of("scheduler", r"Scheduler at: +(tcp://127.0.0.1:\d+)"))
        self.address = self.log_of("scheduler", r"Scheduler at: +(tcp://127.0.0.1:\d+)")

    def dask(self, kind, *options, name=None):
        with open(self.path(name or kind), "w") as log:
            process = subprocess.Popen([f"/usr/bin/dask-{kind}", *options], stdout=log, stderr=log, cwd=self.folder)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    def worker(self, name):
        worker = self.dask("worker", self.address, "--nthreads", "1", "--no-nanny", "--no-dashboard", "--host",
                           "127.0.0.1", "--local-directory", self.path(name + "-files"), name=name)
        until(lambda: self.log_of(name, "(Registered to)"))
        return worker

    def log_of(self, name, pattern):
        found = re.search(pattern, self.read(name))
        return found and found.group(1)

    def test_a_worker_that_is_killed_in_the_middle_changes_no_byte(self):
        doomed, other = self.worker("doomed"), self.worker("other")
        sweep = self.start("--scheduler", self.address, program=self.counting_program("sleep 0.2"))
        until(lambda: self.kept() >= 6)
        doomed.kill()
        self.assertLess(self.kept(), 60)
        self.worker("late") # it joins while the sweep runs
        self.assertIsNone(sweep.poll())
        self.assertEqual(sweep.wait(PATIENCE), 0, sweep.stderr.read())
        self.assertEqual(self.read("out", "town.csv"), self.expected)
        self.assertGreater(len(self.runs()), 72) # what the killed worker had at hand ran again
        self.assertIsNone(other.poll())
        self.assertFalse(any("orlavane" in name for _, folders, _ in os.walk(self.path("other-files"))
                             for name in folders))

    def test_cities_of_a_lost_cluster_are_kept(self):
        self.worker("only")
        program = self.counting_program("sleep 0.2")
        sweep = self.start("--scheduler", self.address, program=program)
        until(lambda: self.kept() >= 3)
        self.scheduler.kill()
        self.assertEqual(sweep.wait(PATIENCE), 1)
        self.assertRegex(sweep.stderr.read(), r"stopped: \d+ of 72 cities are kept")
        self.assertEqual(self.swept(program=program), self.expected)

    def test_a_cluster_of_its_own_gives_the_same_bytes(self):
        self.assertEqual(self.swept("--dask"), self.expected)

    def test_ctrl_c_ends_a_sweep_on_a_cluster(self):
        self.worker("only")
        sweep = self.start("--scheduler", self.address, program=self.counting_program("sleep 0.2"))
        until(lambda: self.kept() >= 3)
        sweep.send_signal(signal.SIGINT)
        self.assertEqual(sweep.wait(10), 130)
        self.assertNotIn("Traceback", sweep.stderr.read())

    def test_a_scheduler_that_is_not_there_is_said_so(self):
        run = self.sweep("--scheduler", "tcp://127.0.0.1:9")
        self.assertEqual(run.returncode, 1)
        self.assertIn("tcp://127.0.0.1:9", run.stderr.splitlines()[-1])
        self.assertNotIn("Traceback", run.stderr)


class Plots(LabTest):
    def test_the_line_is_the_median_and_the_band_holds_every_seed(self):
        axes = plt.figure().add_subplot()
        rows = [{"x": x, "y": y} for x, y in (("1", "5"), ("1", "1"), ("1", "2"), ("2", "7"), ("2", ""))]
        plots.draw_line(axes, plots.gather(rows, "x", "y"), {"1": 1.0, "2": 2.0}, "all")
        self.assertEqual(axes.lines[0].get_xydata().tolist(), [[1, 2], [2, 7]])
        band = axes.collections[0].get_paths()[0].vertices
        self.assertEqual({y for x, y in band if x == 1}, {1, 5})
        self.assertEqual({y for x, y in band if x == 2}, {7})
        plt.close()

    def test_two_runs_draw_the_same_bytes(self):
        self.study(STUDY + PLOT)
        for out in ("a", "b"):
            self.swept(out=out)
        for kind in ("svg", "png"):
            with open(self.path("a", f"money.{kind}"), "rb") as a, open(self.path("b", f"money.{kind}"), "rb") as b:
                self.assertEqual(a.read(), b.read())

    def test_failed_cities_and_words_on_the_axis_are_drawn_too(self):
        study = STUDY.replace("[-2, 0]", '["two", "0", "1"]') + PLOT.replace('"days"', '"steps"', 1)
        self.study(study.replace('lines = "steps"\nlines_label = "Steps of tax"', "where = { days = 10 }"))
        self.swept()
        self.assertGreater(os.path.getsize(self.path("out", "money.png")), 10000)


class Guide(LabTest):
    def test_its_pictures_are_what_the_studies_draw(self):
        with open(os.path.join(ROOT, "docs/guide.md")) as file:
            shown = set(re.findall(r"pictures/(\w+)\.svg", file.read()))
        studies = os.path.join(ROOT, "lab/studies")
        self.assertEqual({name + ".toml" for name in shown}, {n for n in os.listdir(studies) if n.endswith(".toml")})
        for name in shown:
            out = self.path(name)
            subprocess.run([SWEEP, os.path.join(studies, name + ".toml"), "--out", out, "--program", SIMULATOR],
                           check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            with open(os.path.join(ROOT, f"docs/pictures/{name}.svg")) as file:
                self.assertTrue(file.read() == self.read(name, name + ".svg"), f"{name}.svg: see docs/lab.md")


if __name__ == "__main__":
    unittest.main()
