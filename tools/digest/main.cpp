/*
 * kx_digest [--rounding up|down|zero] [--flush]
 *
 * Prints a digest of what each function of the library gives back for the same inputs, and a
 * digest of all of them. Another platform, compiler or level of optimisation has the same bits when
 * it prints the same lines: those of digests.txt. The options set a host's rounding mode, and that
 * subnormals are flushed to zero, around each call.
 */
#include "trial.h"

#include <cstring>

namespace
{

void show(const char *name, std::uint64_t value)
{
    std::printf("%s %08lx%08lx\n", name, static_cast<unsigned long>(value >> 32),
                static_cast<unsigned long>(value & 0xffffffffU));
}

} // namespace

int main(int argc, char **argv)
{
    int rounding = FE_TONEAREST;
    bool flush = false;
    for (int i = 1; i < argc; ++i) {
        bool understood = false;
        if (std::strcmp(argv[i], "--rounding") == 0 && i + 1 < argc) {
            rounding = test::rounding_named(argv[++i]);
            understood = rounding >= 0;
        } else if (std::strcmp(argv[i], "--flush") == 0) {
            flush = understood = true;
        }
        if (!understood) {
            std::fprintf(stderr, "usage: kx_digest [--rounding up|down|zero] [--flush]\n");
            return 2;
        }
    }
    std::uint64_t total = 0;
    catalogue::for_every_function([&](const auto &entry) {
        const std::uint64_t value = test::Trial(entry.name, {rounding, flush}).run(entry);
        show(entry.name, value);
        total = test::mixed(total ^ value) + 1;
    });
    show("total", total);
    return 0;
}
