"""Runs the cities of a study: on the cores of this machine, or on a Dask cluster.

What becomes of a city is its outcome: a list of rows (number of the city in its script, day, figures), or a
text that says why there are none, or None when the run was killed and tells nothing. Cities depend on nothing
but their values, so that it is the same wherever one runs and however often.
"""
import contextlib
import itertools
import os
import queue
import shutil
import signal
import subprocess
import sys
import threading


class LostCity(Exception):
    """Runs that ended without an outcome."""


class Simulator:
    """orlavane-sim with the script of a study. It can be sent to a Dask worker, which needs nothing of ours."""

    def __init__(self, program, script, study, figures):
        self.program, self.script, self.days = program, script, study.days
        self.columns = [figures.index(name) for name in ["city", "day", *study.keep]]
        self.running = set()
        self.stopped = False

    def run(self, settings):
        options = [word for name, text in settings.items() for word in ("--set", f"{name}={text}")]
        reading, writing = os.pipe()
        with open(reading, "rb", buffering=65536) as table:
            try:
                process = subprocess.Popen([self.program, self.script, "--csv", f"/dev/fd/{writing}", *options],
                                           stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, pass_fds=(writing,))
            finally:
                os.close(writing)
            with process:
                self.running.add(process)
                if self.stopped:
                    process.kill()
                rows = list(self.rows(table))
                error = process.stderr.read().decode(errors="replace").strip()
            self.running.discard(process)
        if process.returncode < 0:
            return None
        if process.returncode > 0:
            return error.replace(f"{self.script}:", "line ", 1)
        return rows or "no day passes in the script"

    def wanted_lines(self, table):
        """Those of the days to keep; the others are forgotten as they come."""
        before = b""
        while lines := table.readlines(65536):
            if self.days != "last":
                pace = 1 if self.days == "all" else self.days
                yield from (line for line in lines if int(line.split(b",", 2)[1]) % pace == 0)
            elif city_of(before) != city_of(lines[-1]): # cities are counted upwards: between equals are no others
                for line in lines:
                    if before and city_of(before) != city_of(line):
                        yield before
                    before = line
            before = lines[-1]
        if self.days == "last" and before:
            yield before

    def rows(self, table):
        table.readline() # their names
        for line in self.wanted_lines(table):
            cells = line.decode().rstrip("\n").split(",")
            yield [cells[column] for column in self.columns]

    def stop(self):
        self.stopped = True
        for process in list(self.running):
            process.kill()


def city_of(line):
    return line.split(b",", 1)[0]


def figure_names(program):
    """What orlavane-sim calls the columns of its table."""
    run = subprocess.run([program, "--csv", "/dev/stdout"], stdin=subprocess.DEVNULL, capture_output=True, text=True)
    if run.returncode != 0 or not run.stdout.startswith("city,day,"):
        raise LostCity(f"{program} does not write a table: {run.stderr.strip()}")
    return run.stdout.split("\n")[0].split(",")


def run_here(simulator, study, numbers):
    """Yields (number, outcome) as the cities end, on every core that we may use."""
    numbers = iter(numbers)
    turn = threading.Lock()
    outcomes = queue.SimpleQueue()

    def work():
        try:
            while not simulator.stopped:
                with turn:
                    number = next(numbers, None)
                if number is None:
                    break
                outcomes.put((number, simulator.run(study.settings(number))))
        except Exception as error:
            outcomes.put(error)
        outcomes.put(None)

    threads = [threading.Thread(target=work) for _ in os.sched_getaffinity(0)]
    try:
        for thread in threads: # Ctrl+C may come while they start
            thread.start()
        ended = 0
        while ended < len(threads):
            outcome = outcomes.get()
            if isinstance(outcome, Exception):
                raise outcome
            if outcome is None:
                ended += 1
            else:
                yield outcome
    finally:
        simulator.stop()
        for thread in filter(threading.Thread.is_alive, threads):
            thread.join()


class OnWorker:
    """Brings program and script to each worker of a cluster, also to one that joins later."""

    def __init__(self, simulator, name, is_ours):
        self.simulator, self.name, self.is_ours = simulator, name, is_ours
        with open(simulator.program, "rb") as program, open(simulator.script, "rb") as script:
            self.program, self.script = program.read(), script.read()

    def setup(self, worker):
        if self.is_ours: # Ctrl+C reaches all processes of the terminal; ours are ended by the sweep
            signal.signal(signal.SIGINT, signal.SIG_IGN)
        folder = os.path.join(worker.local_directory, self.name)
        os.makedirs(folder, exist_ok=True)
        self.folder = folder
        self.simulator.program = os.path.join(folder, "orlavane-sim")
        self.simulator.script = os.path.join(folder, "script.txt")
        for path, content in ((self.simulator.program, self.program), (self.simulator.script, self.script)):
            with open(path + ".part", "wb") as file:
                file.write(content)
            os.chmod(path + ".part", 0o755)
            os.replace(path + ".part", path)

    def teardown(self, worker):
        self.simulator.stop()
        shutil.rmtree(self.folder)


def run_on_worker(name, cities):
    import distributed
    simulator = distributed.get_worker().plugins[name].simulator
    return [(number, simulator.run(settings)) for number, settings in cities]


def run_on_cluster(simulator, study, numbers, count, address, name):
    """As run_here, on the cluster at the address, or on one of our own without an address."""
    import cloudpickle
    import distributed
    cloudpickle.register_pickle_by_value(sys.modules[__name__]) # for workers that know nothing of this file
    with contextlib.ExitStack() as stack:
        is_ours = not address
        if is_ours:
            address = stack.enter_context(distributed.LocalCluster(
                n_workers=len(os.sched_getaffinity(0)), threads_per_worker=1, host="127.0.0.1", dashboard_address=None))
        client = stack.enter_context(distributed.Client(address, timeout=10))
        client.register_worker_plugin(OnWorker(simulator, name, is_ours), name=name)
        cores = max(1, sum(client.ncores().values()))
        bundle = min(32, max(1, count // (8 * cores))) # a task costs a millisecond, a small city ten
        numbers = iter(numbers)
        running = distributed.as_completed()

        def submit():
            cities = [(number, study.settings(number)) for number in itertools.islice(numbers, bundle)]
            if cities:
                running.add(client.submit(run_on_worker, name, cities, pure=False))

        try:
            for _ in range(3 * cores):
                submit()
            for future in running:
                if future.status != "finished":
                    raise LostCity(f"the cluster lost cities: {future.exception()!r}")
                yield from future.result()
                submit()
        finally:
            client.unregister_worker_plugin(name)
