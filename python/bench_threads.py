"""Wall time of eight renders: one thread doing all eight, then eight threads at once.

Not a test: timings depend on the machine and its load. Rendering releases the GIL, so on a machine with
N cores the eight threads should take about 1/min(N, 8) of the single thread's time.

    PYTHONPATH=build/native/python /usr/bin/python3 python/bench_threads.py [--repeat 5]
"""

import argparse
import os
import threading
import time

import lettrix

TEXTS = ["Alpha", "Bravo", "Charlie", "Delta", "Echo", "Foxtrot", "Golf", "Hotel"]
SETTINGS = dict(preset="glow", size=120)


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
    times = []
    for _ in range(repeat):
        start = time.perf_counter()
        run()
        times.append(time.perf_counter() - start)
    return min(times)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--repeat", type=int, default=5, help="runs of each; the best is shown")
    args = parser.parse_args()
    one_thread()  # fonts and caches warm
    single = best_of(one_thread, args.repeat)
    threaded = best_of(eight_threads, args.repeat)
    print(f"cores: {os.cpu_count()}, preset {SETTINGS['preset']}, size {SETTINGS['size']}, best of {args.repeat}")
    print(f"one thread, 8 renders:  {single * 1000:8.1f} ms")
    print(f"eight threads at once:  {threaded * 1000:8.1f} ms")
    print(f"speed-up:               {single / threaded:8.2f}x")


if __name__ == "__main__":
    main()
