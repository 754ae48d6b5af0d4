# What the scripts of the tests share: where programs run, and how to tell what came of the cases.
import os
import pathlib
import resource
import signal
import sys
import unittest

# The build's tests name the one that runs their programs.
WINE = os.environ.get("QL_WINE") or str(pathlib.Path(__file__).resolve().parent.parent / "scripts" / "wine")
NO_LIMIT = resource.RLIM_INFINITY


def windows_path(path):
    return "Z:" + str(path).replace("/", "\\")


# For a process that may let files grow to so many bytes, as on a full disk.
def file_limit(room):
    def limit():
        signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (room, NO_LIMIT))

    return limit


# Prints the counts, writes them where ./test reads them, and answers the script's exit status.
def report(passed, failed, results=None):
    print(f"{passed} passed, {failed} failed")
    if results:
        path = pathlib.Path(results)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(f'<testsuites tests="{passed + failed}" failures="{failed}"/>\n')
    return 1 if failed or not passed else 0


# Runs the unittest cases of the script itself, and answers as report does.
def run_own_cases(results=None):
    suite = unittest.defaultTestLoader.loadTestsFromModule(sys.modules["__main__"])
    done = unittest.TextTestRunner(verbosity=2).run(suite)
    bad = {getattr(test, "test_case", test).id() for test, _ in done.failures + done.errors}
    return report(done.testsRun - len(done.skipped) - len(bad), len(bad), results)
