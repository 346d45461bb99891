"""The sweep: every city once, whatever comes between."""
import csv
import io
import json
import os
import signal
import subprocess
import unittest

from lab import PATIENCE, SCRIPT, SIMULATOR, STUDY, SWEEP, LabTest, Terminal, until

ENDLESS = STUDY.replace("{ from = 5, to = 15, step = 5 }", "[2000000000]").replace("[-2, 0]", "[7]")
RICH = SCRIPT.replace("tick", "money 1e15\ntick") # a city without money stands still, which is quickly done


def rows(table):
    return list(csv.DictReader(io.StringIO(table)))


class Table(LabTest):
    def test_every_combination_has_its_row_in_the_order_of_the_study(self):
        table = rows(self.swept())
        self.assertEqual(list(table[0]), ["steps", "days", "seed", "city", "day", "money", "demand0", "error"])
        self.assertEqual([(row["steps"], row["days"], row["seed"]) for row in table],
                         [(s, d, n) for s in ("-2", "0") for d in ("5", "10", "15") for n in "123"])

    def test_a_row_holds_what_stats_says(self):
        row = rows(self.swept())[7]
        script = SCRIPT.replace("{seed}", row["seed"]).replace("{steps}", row["steps"]).replace("{days}", row["days"])
        answer = subprocess.run([SIMULATOR], input=script + "stats\n", capture_output=True, text=True).stdout
        stats = json.loads(answer.splitlines()[-1].split(" ", 1)[1], parse_float=str, parse_int=str)
        self.assertEqual((row["day"], row["money"], row["demand0"]),
                         (stats["day"], stats["money"], stats["demand"][0]))
        self.assertEqual((row["city"], row["error"]), ("1", ""))

    def test_days_may_be_the_last_or_all_or_every_so_many(self):
        script = SCRIPT + "new 9\ntick 4\n"
        for days, expected in (('"last"', ["1:5", "2:4"]), ("2", ["1:2", "1:4", "2:2", "2:4"]),
                               ('"all"', ["1:1", "1:2", "1:3", "1:4", "1:5", "2:1", "2:2", "2:3", "2:4"])):
            self.study(f"days = {days}\n{STUDY}", script)
            table = rows(self.swept(out="out" + days.strip('"')))
            self.assertEqual([f"{row['city']}:{row['day']}" for row in table if row["days"] == "5"][:len(expected)],
                             expected)

    def test_a_case_says_several_things(self):
        study = STUDY.split("[parameters]")[0] + """
            [parameters.pace]
            "in no hurry" = { steps = 0, days = 7 }
            "fast, \\"and dear\\"" = { steps = 2, days = 3 }
            """
        self.study(study)
        table = rows(self.swept())
        self.assertEqual([(row["pace"], row["day"]) for row in table],
                         [("in no hurry", "7")] * 3 + [('fast, "and dear"', "3")] * 3)
        self.assertEqual(self.kept(), 6)
        self.study(study.replace("days = 3", "days = 4"))
        self.assertEqual(rows(self.swept())[3]["day"], "4") # the same name, but another city

    def test_fractions_are_said_as_they_are_written(self):
        self.study(STUDY.replace("steps = [-2, 0]", "gift = { from = 0.1, to = 0.7, step = 0.2 }"),
                   SCRIPT.replace("tax 0 {steps}", "money {gift}"))
        self.assertEqual([row["gift"] for row in rows(self.swept())][::9], ["0.1", "0.3", "0.5", "0.7"])

    def test_a_script_that_fails_in_the_middle_has_its_reason_in_the_row(self):
        self.study(STUDY.replace("[-2, 0]", '["-2", "two", "0"]'))
        run = self.sweep()
        self.assertEqual(run.returncode, 0)
        self.assertIn("9 of 27 cities failed", run.stderr)
        for row in rows(self.read("out", "town.csv")):
            failed = row["steps"] == "two"
            self.assertEqual(row["error"], "line 4: 'two' cannot be STEPS of: tax INDEX STEPS" if failed else "")
            self.assertEqual(row["money"] == "", failed)
        self.study(STUDY, "new {seed}\ntax 0 {steps}\nmoney {days}\n")
        self.assertEqual(rows(self.swept(out="other"))[0]["error"], "no day passes in the script")


class GoesOn(LabTest):
    def test_nothing_runs_twice_after_a_stop(self):
        expected = self.swept(out="whole")
        program = self.counting_program("sleep 0.1")
        for signal_number, status in ((signal.SIGINT, 130), (signal.SIGKILL, -9), (signal.SIGTERM, 130)):
            known = self.kept()
            sweep = self.start(program=program)
            until(lambda: self.kept() >= known + 2)
            sweep.send_signal(signal_number)
            self.assertEqual(sweep.wait(PATIENCE), status)
            self.assertFalse(os.path.exists(self.path("out", "town.csv")))
            if status == 130:
                self.assertIn(f"stopped: {self.kept()} of 18 cities are kept", sweep.stderr.read())
        finished = self.read("out", "journal")
        before = len(self.runs())
        self.assertEqual(self.swept(program=program), expected)
        later = self.runs()[before:]
        self.assertEqual(len(later), 18 - (finished.count("\n") - 1))
        for settings in later:
            wanted = dict(word.split("=") for word in settings.split() if "=" in word)
            self.assertNotIn(json.dumps(wanted, separators=(",", ":")), finished)

        self.swept(program=program)
        self.assertEqual(len(self.runs()), before + len(later))

    def test_a_line_that_was_cut_is_run_again(self):
        expected = self.swept()
        with open(self.path("out", "journal"), "r+") as file:
            file.truncate(len(file.read()) - 5)
        program = self.counting_program()
        with open(program) as wrapper, open(SIMULATOR, "rb") as real: # the same program to the journal
            self.assertNotEqual(wrapper.read().encode(), real.read())
        os.remove(self.path("out", "town.csv"))
        self.assertEqual(self.swept(), expected)
        self.assertEqual(self.kept(), 18)

    def test_more_seeds_add_only_their_cities(self):
        program = self.counting_program()
        self.swept(program=program)
        self.study(STUDY.replace("[1, 2, 3]", "[0, 1, 3, 4]"))
        table = rows(self.swept(program=program))
        self.assertEqual(len(table), 24)
        self.assertEqual(len(self.runs()), 18 + 12)
        self.assertEqual([row["seed"] for row in table[:4]], ["0", "1", "3", "4"])

    def test_cities_of_another_script_are_not_mixed_in(self):
        self.swept()
        self.study(STUDY, SCRIPT + "tick 1\n")
        refused = self.sweep()
        self.assertEqual(refused.returncode, 1)
        self.assertIn("keeps cities of another script, program or table; --fresh throws them away", refused.stderr)
        self.assertEqual(rows(self.swept("--fresh"))[0]["day"], "6")

    def test_a_damaged_journal_is_said_so(self):
        self.swept()
        with open(self.path("out", "journal"), "r+") as file:
            file.seek(200)
            file.write("]]")
        refused = self.sweep()
        self.assertEqual(refused.returncode, 1)
        self.assertIn("journal is damaged; --fresh begins anew", refused.stderr)

    def test_a_city_that_was_killed_is_not_taken_for_done(self):
        program = self.counting_program(f'[[ "$*" == *seed=2* && -e {self.path("deadly")} ]] && kill -9 $$')
        self.write("deadly", "")
        run = self.sweep(program=program)
        self.assertEqual(run.returncode, 1)
        self.assertIn("6 cities were killed while they ran; the same line runs them again", run.stderr)
        os.remove(self.path("deadly"))
        self.assertEqual(len(rows(self.swept(program=program))), 18)
        self.assertEqual(len(self.runs()), 18 + 6)


class Ends(LabTest):
    def simulators(self):
        """Commands of the programs that run a city of this test."""
        commands = []
        for process in filter(str.isdigit, os.listdir("/proc")):
            try:
                with open(f"/proc/{process}/cmdline") as file:
                    commands.append(file.read())
            except OSError:
                pass # it is gone
        return [command for command in commands if "steps=7" in command and "--csv" in command]

    def test_ctrl_c_ends_at_once_and_leaves_nothing_running(self):
        self.study(ENDLESS, RICH)
        for options in ([], ["--yes"]):
            with Terminal(self.command(*options)) as terminal:
                until(self.simulators)
                terminal.type("\x03")
                self.assertEqual(terminal.status(), 130)
                self.assertIn("stopped: 0 of 3 cities are kept, and the same line goes on", terminal.text)
                self.assertNotIn("Traceback", terminal.text)
            self.assertEqual(self.simulators(), [])

    def test_two_sweeps_on_one_folder_do_not_mix(self):
        self.study(ENDLESS, RICH)
        first = self.start()
        until(self.simulators)
        second = self.sweep()
        self.assertEqual(second.returncode, 1)
        self.assertIn(f"another sweep is at work in {self.path('out')}", second.stderr)
        self.assertIsNone(first.poll())
        first.send_signal(signal.SIGINT)
        first.wait(PATIENCE)

    def test_a_full_disk_is_said_so_and_loses_nothing(self):
        self.study(STUDY.replace("to = 15", "to = 100"))
        expected = self.swept(out="whole")
        command = " ".join(self.command())
        full = subprocess.run(["bash", "-c", f"ulimit -f 4; exec {command}"], capture_output=True, text=True,
                              timeout=PATIENCE)
        self.assertEqual(full.returncode, 1)
        self.assertRegex(full.stderr, r"lab/sweep: .*/journal: (the disk is full|File too large)")
        self.assertIn("of 120 cities are kept", full.stderr)
        self.assertNotIn("Traceback", full.stderr)
        self.assertGreater(self.kept(), 20)
        self.assertEqual(self.swept(), expected)

    def test_a_table_that_does_not_fit_leaves_the_one_before(self):
        self.swept()
        self.study(STUDY.replace("to = 15", "to = 100"))
        with open(self.path("out", "town.csv"), "w") as file:
            file.write("old")
        os.symlink("/dev/full", self.path("out", "town.csv.part"))
        full = self.sweep()
        self.assertEqual(full.returncode, 1)
        self.assertIn("No space left on device", full.stderr)
        self.assertEqual(self.read("out", "town.csv"), "old")
        self.assertFalse(os.path.lexists(self.path("out", "town.csv.part")))
        self.assertEqual(len(rows(self.swept())), 120)


class Refusals(LabTest):
    def refused(self, study, reason, script=SCRIPT):
        self.study(study, script)
        run = self.sweep()
        self.assertEqual(run.returncode, 2, study)
        self.assertEqual(run.stderr.count("\n"), 1, run.stderr)
        self.assertIn(reason, run.stderr)
        self.assertFalse(os.path.exists(self.path("out")))

    def test_a_study_that_means_nothing_is_refused_with_its_reason(self):
        plot = '[[plots]]\nname="p"\ntitle="P"\nx="steps"\nx_label="Steps"\ny="money"\ny_label="Money"\n'
        for change, reason in (
                (("seeds", "seed"), "the study: unknown key 'seed'"),
                (("script =", "Script ="), "unknown key 'Script'"),
                (('script = "town.txt"', ""), "'script' is missing"),
                (("town.txt", "nowhere.txt"), "nowhere.txt: No such file or directory"),
                (("[1, 2, 3]", "[]"), "seed: the list is empty"),
                (("[1, 2, 3]", "[1, -2]"), "a seed is a whole number from 0 to 4294967295"),
                (("[1, 2, 3]", "{ from = 0, to = 4294967296 }"), "a seed is a whole number from 0 to 4294967295"),
                (("[1, 2, 3]", "7"), "no list, no range"),
                (("[-2, 0]", "[]"), "steps: the list is empty"),
                (("[-2, 0]", "[-2, -2]"), "steps: a value stands twice in the list"),
                (("[-2, 0]", "[true]"), "steps: True is neither a text nor a number"),
                (("[-2, 0]", "[[1]]"), "steps: [1] is neither a text nor a number"),
                (("[-2, 0]", '["1 # 2"]'), "holds a # or a control character"),
                (("[-2, 0]", '["1\\n2"]'), "holds a # or a control character"),
                (("step = 5", "steps = 5"), "days: unknown key 'steps'"),
                (("step = 5", "step = 0"), "days: a range goes upwards, in steps above 0"),
                (("to = 15", "to = 4"), "days: a range goes upwards"),
                (("to = 15", "to = inf"), "days: a range is made of numbers"),
                (("from = 5, ", ""), "days: a range needs 'from' and 'to'"),
                (("steps =", "step ="), "the script asks for {steps}, which is no parameter"),
                (("[-2, 0]", "[-2, 0]\nhomes = [1]"), "the script never says {homes}"),
                (("[-2, 0]", "[-2, 0]\nseed = [1]"), "'seed' is a column of its own"),
                (('"money"', '"mony"'), "keep: 'mony' is no figure of stats"),
                (('"money"', '"demand0"'), "keep: a figure stands twice in the list"),
                (('"money"', '"day"'), "keep: 'day' is always kept"),
                (('["money", "demand0"]', "[]"), "keep: name the figures to keep in a list"),
                (("seeds", 'days = "first"\nseeds'), 'days: this is "last", "all", or a number above 0'),
                (("seeds", "days = 0\nseeds"), 'days: this is "last", "all", or a number above 0'),
                (("seeds", "seeds = 1\nseeds"), "Cannot overwrite a value"),
                (("step = 5 }", "step = 5 }\n" + plot), "plot 'p': which days? Say so in 'where'"),
                (("step = 5 }", "step = 5 }\n" + plot + "where={days=6}"), "plot 'p': days is never 6"),
                (("step = 5 }", "step = 5 }\n" + plot + "colour='red'"), "plot 'p': unknown key 'colour'"),
                (("step = 5 }", "step = 5 }\n" + plot.replace("money", "jobs")), "plot 'p': 'jobs' is not kept"),
                (("step = 5 }", "step = 5 }\n" + plot.replace('x="steps"\n', "")), "plot 'p': 'x' is missing")):
            with self.subTest(reason=reason, change=change):
                self.assertIn(change[0], STUDY)
                self.refused(STUDY.replace(*change, 1), reason)

    def test_cases_must_say_the_same(self):
        study = STUDY.split("[parameters]")[0] + "[parameters.pace]\n"
        self.refused(study + 'a = { steps = 0, days = 7 }\nb = { steps = 1 }', "each case must say the same names")
        self.refused(study + 'a = { steps = 0, days = 7, seed = 1 }', "{seed} is said twice")

    def test_cities_share_no_file(self):
        self.refused(STUDY, "town.txt:6: the cities of a study run side by side", SCRIPT + " save /tmp/a")

    def test_missing_files_and_programs_are_named(self):
        os.remove(self.path("town.toml"))
        self.assertIn("town.toml", self.sweep().stderr)
        self.study(STUDY)
        run = self.sweep(program=self.path("nothing"))
        self.assertEqual(run.returncode, 2)
        self.assertIn("scripts/build release orlavane-sim makes it", run.stderr)

    def test_what_setup_brings_is_named_when_it_is_missing(self):
        self.study(STUDY.replace("{ from = 5, to = 15, step = 5 }", "[5]") + """\
            [[plots]]
            name = "p"
            title = "P"
            x = "steps"
            x_label = "Steps"
            y = "money"
            y_label = "Money"
            where = { days = 5 }
            """.replace("            ", ""))
        bare = ["/usr/bin/python3", "-S"] # without Debian's packages
        for options, reason in (([], "matplotlib"), (["--no-plots", "--dask"], "distributed")):
            run = subprocess.run([*bare, *self.command(*options)], capture_output=True, text=True, timeout=PATIENCE)
            self.assertEqual(run.returncode, 2)
            self.assertIn(f"this needs {reason}: scripts/setup lab brings it", run.stderr)
        run = subprocess.run([*bare, *self.command("--no-plots")], capture_output=True, text=True, timeout=PATIENCE)
        self.assertEqual(run.returncode, 0, run.stderr)


class ManyCities(LabTest):
    def setUp(self):
        super().setUp()
        self.study(STUDY.replace("[1, 2, 3]", "{ from = 1, to = 1000000 }"))

    def test_millions_are_refused_without_a_terminal(self):
        run = self.sweep()
        self.assertEqual(run.returncode, 2)
        self.assertIn("This study has 6000000 cities to run. --yes runs them without being asked.", run.stderr)
        self.assertEqual(self.kept(), 0)

    def test_fresh_forgets_nothing_before_the_answer(self):
        self.study(STUDY)
        self.swept()
        self.study(STUDY.replace("[1, 2, 3]", "{ from = 1, to = 1000000 }"))
        self.assertEqual(self.sweep("--fresh").returncode, 2)
        self.assertEqual(self.kept(), 18)

    def test_millions_are_asked_about_on_a_terminal(self):
        for answer, status in (("n\r", 2), ("\r", 2)):
            with Terminal(self.command()) as terminal:
                until(lambda: terminal.shows("6000000 cities to run. Run them all? [y/N]"))
                terminal.type(answer)
                self.assertEqual(terminal.status(), status)
            self.assertEqual(self.kept(), 0)
        with Terminal(self.command()) as terminal:
            until(lambda: terminal.shows("[y/N]"))
            terminal.type("y\r")
            until(lambda: terminal.shows("of 6000000 cities, "))
            terminal.type("\x03")
            self.assertEqual(terminal.status(), 130)
            self.assertRegex(terminal.text, r"\[\.{30}\] \d+ of 6000000 cities, \d+ (min|h) left")

    def test_yes_asks_nobody(self):
        sweep = self.start("--yes")
        until(lambda: self.kept() > 10)
        sweep.send_signal(signal.SIGINT)
        self.assertEqual(sweep.wait(PATIENCE), 130)


class Bar(LabTest):
    def test_the_simulator_shows_its_bar_on_a_terminal_alone(self):
        self.write("town.txt", "money 1e15\ntick 2000000000\n")
        command = [SIMULATOR, self.path("town.txt"), "--progress"]
        with Terminal(command) as terminal:
            until(lambda: terminal.shows(" of 2000000000 days, "))
            self.assertTrue(terminal.shows("[....") and terminal.shows(" h left"))
        self.write("town.txt", "tick 3\n")
        with Terminal(command) as terminal:
            self.assertEqual(terminal.status(), 0)
            self.assertEqual(terminal.text, "tick 3\r\n")


if __name__ == "__main__":
    unittest.main()
