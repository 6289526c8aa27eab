"""Cases that mostly wait, run side by side."""

import unittest
from concurrent.futures import ThreadPoolExecutor


class Together(unittest.TestSuite):
    """A suite whose cases run in a thread each; a result only gathers, which threads may do at once."""

    def run(self, result, debug=False):
        cases = list(self)
        with ThreadPoolExecutor(len(cases)) as threads:
            for done in [threads.submit(case.run, result) for case in cases]:
                done.result()
        return result
