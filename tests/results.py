"""How the scripts of the tests tell what came of their cases."""
import pathlib


def report(passed, failed, results=None):
    """Prints the counts, writes them where ./test reads them, and answers the script's exit status."""
    print(f"{passed} passed, {failed} failed")
    if results:
        path = pathlib.Path(results)
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(f'<testsuites tests="{passed + failed}" failures="{failed}"/>\n')
    return 1 if failed or not passed else 0
