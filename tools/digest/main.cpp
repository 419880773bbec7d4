/*
 * Prints a digest of what each function of the library gives back for one corpus of inputs, and a
 * digest of all of them. Another platform, compiler or level of optimisation has the same bits when
 * it prints the same lines: those of digests.txt.
 */
#include "trial.h"

namespace
{

std::uint64_t total = 0;

void show(const char *name, std::uint64_t value)
{
    std::printf("%s %08lx%08lx\n", name, static_cast<unsigned long>(value >> 32),
                static_cast<unsigned long>(value & 0xffffffffU));
}

void print(const char *name, std::uint64_t value)
{
    show(name, value);
    total = digest::mixed(total ^ value) + 1;
}

struct Digesting {
    template <typename Function>
    void operator()(const catalogue::Entry<Function> &entry) const
    {
        print(entry.name, digest::Trial(entry.name).run(entry));
    }
};

} // namespace

int main()
{
    catalogue::for_every_function(Digesting());
    show("total", total);
    return 0;
}
