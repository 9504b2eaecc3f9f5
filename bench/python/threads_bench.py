"""Wall time of eight renders: one thread doing all eight, then eight threads at once.

Not a test: timings depend on the machine and its load. Rendering releases the GIL, so on an idle machine
with N cores the eight threads take about 1/min(N, 8) of the single thread's time. On a busy machine the
CPU column tells more: CPU time over wall time is how many cores the renders kept busy (a render that
held the GIL would keep it at one at most).

    PYTHONPATH=build/native/python /usr/bin/python3 bench/python/threads_bench.py [--repeat 5]
"""

import argparse
import os
import threading
import time

import lettrix

TEXTS = ["Alpha", "Bravo", "Charlie", "Delta", "Echo", "Foxtrot", "Golf", "Hotel"]
SETTINGS = dict(preset="glow", size=160)


def one_thread():
    for text in TEXTS:
        lettrix.render(text, **SETTINGS)


def eight_threads():
    threads = [threading.Thread(target=lettrix.render, args=(t,), kwargs=SETTINGS) for t in TEXTS]
    for t in threads:
        t.start()
    for t in threads:
        t.join()


def best_of(run, repeat):
    """The best wall time of the runs, and the process's CPU time in that run."""
    best = None
    for _ in range(repeat):
        wall, cpu = time.perf_counter(), time.process_time()
        run()
        wall, cpu = time.perf_counter() - wall, time.process_time() - cpu
        if best is None or wall < best[0]:
            best = (wall, cpu)
    return best


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--repeat", type=int, default=5, help="runs of each; the best is shown")
    args = parser.parse_args()
    one_thread()  # fonts and caches warm
    single, single_cpu = best_of(one_thread, args.repeat)
    threaded, threaded_cpu = best_of(eight_threads, args.repeat)
    print(f"cores: {os.cpu_count()}, load average {os.getloadavg()[0]:.1f}, preset {SETTINGS['preset']}, "
          f"size {SETTINGS['size']}, best of {args.repeat}")
    print(f"one thread, 8 renders:  {single * 1000:8.1f} ms wall {single_cpu * 1000:8.1f} ms CPU "
          f"({single_cpu / single:.2f} cores busy)")
    print(f"eight threads at once:  {threaded * 1000:8.1f} ms wall {threaded_cpu * 1000:8.1f} ms CPU "
          f"({threaded_cpu / threaded:.2f} cores busy)")
    print(f"speed-up:               {single / threaded:8.2f}x")


if __name__ == "__main__":
    main()
