/*
 * kx_replay [STEPS]
 *
 * Runs the replay, and prints the digest of all states so far after every thousand steps: another
 * platform has the same bits when it prints the same lines, those of digests.txt. Without an
 * argument it makes 10,000 steps.
 */
#include "replay.h"

#include <cstdio>
#include <cstdlib>

int main(int argc, char **argv)
{
    char *end = nullptr;
    const unsigned long steps = argc > 1 ? std::strtoul(argv[1], &end, 10) : 10000;
    if (argc > 2 || (end != nullptr && (*end != '\0' || steps % 1000 != 0 || steps == 0))) {
        std::fprintf(stderr, "usage: kx_replay [STEPS], a multiple of 1000\n");
        return 2;
    }
    replay::Replay replay(replay::seed);
    for (unsigned long step = 1; step <= steps; ++step) {
        replay.step();
        if (step % 1000 == 0) {
            const std::uint64_t digest = replay.digest();
            std::printf("%lu %08lx%08lx\n", step, static_cast<unsigned long>(digest >> 32),
                        static_cast<unsigned long>(digest & 0xffffffffU));
        }
    }
    return 0;
}
