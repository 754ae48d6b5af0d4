"""What the scripts of the tests share: where programs run, and how to tell what came of the cases."""
import os
import pathlib

# The build's tests name the one that runs their programs.
WINE = os.environ.get("QL_WINE") or str(pathlib.Path(__file__).resolve().parent.parent / "scripts" / "wine")


def report(passed, failed, results=None):
    """Prints the counts, writes them where ./test reads them, and answers the script's exit status."""
    print(f"{passed} passed, {failed} failed")
    if results:
        path = pathlib.Path(results)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(f'<testsuites tests="{passed + failed}" failures="{failed}"/>\n')
    return 1 if failed or not passed else 0
