"""What a sweep has done, kept in its folder line by line, so that no city runs twice.

The first line tells which script, program and figures the outcomes belong to; each other one is a city's
labels, what they say in the script, and its outcome. A line that was cut when the power or the disk ended is taken away again.
"""
import csv
import fcntl
import json
import os


ENCODE = json.JSONEncoder(separators=(",", ":")).encode


class JournalError(Exception):
    pass


class Journal:
    def __init__(self, folder, study, fingerprint, fresh):
        os.makedirs(folder, exist_ok=True)
        self.study = study
        self.lock = open(os.path.join(folder, "lock"), "w")
        try:
            fcntl.flock(self.lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise JournalError(f"another sweep is at work in {folder}") from None
        self.path = os.path.join(folder, "journal")
        self.file = open(self.path, "w+b" if fresh else "a+b", buffering=0)
        self.offsets = {} # of the line of each city that is done
        self.failures = 0
        self.read(fingerprint)

    def read(self, fingerprint):
        self.file.seek(0)
        end = 0
        for line in iter(open(self.file.fileno(), "rb", closefd=False).readline, b""):
            if not line.endswith(b"\n"):
                break
            try:
                if end == 0:
                    known = json.loads(line)
                else:
                    self.note(end, *json.loads(line))
            except (ValueError, TypeError):
                raise JournalError(f"{self.path} is damaged; --fresh begins anew") from None
            end += len(line)
        self.file.truncate(end)
        self.end = end
        if end == 0:
            self.write(fingerprint)
        elif known != fingerprint:
            raise JournalError(f"{self.path} keeps cities of another script, program or table; "
                               "--fresh throws them away, --out takes another folder")

    def note(self, offset, labels, settings, outcome):
        number = self.study.find(labels, settings)
        if number is not None:
            self.offsets[number] = offset
            self.failures += isinstance(outcome, str)

    def write(self, record):
        line = ENCODE(record).encode() + b"\n"
        try:
            written = self.file.write(line)
        except OSError as error:
            raise JournalError(f"{self.path}: {error.strerror}") from None
        if written < len(line):
            raise JournalError(f"{self.path}: the disk is full")
        self.end += written
        return self.end - written

    def add(self, number, outcome):
        record = [self.study.labels(number), self.study.settings(number), outcome]
        self.offsets[number] = self.write(record)
        self.failures += isinstance(outcome, str)

    def write_table(self, path):
        """One row a city and day, in the order of the study; what failed has its reason in the last column."""
        study = self.study
        part = path + ".part"
        try:
            with open(part, "w", newline="") as file, open(self.file.fileno(), "rb", closefd=False) as journal:
                table = csv.writer(file, lineterminator="\n")
                table.writerow([*study.names, "city", "day", *study.keep, "error"])
                for number in range(study.count):
                    journal.seek(self.offsets[number])
                    labels, _, outcome = json.loads(journal.readline())
                    if isinstance(outcome, str):
                        table.writerow([*labels, *[""] * (2 + len(study.keep)), outcome])
                    else:
                        table.writerows([*labels, *row, ""] for row in outcome)
            os.replace(part, path)
        except BaseException:
            if os.path.exists(part):
                os.remove(part)
            raise
