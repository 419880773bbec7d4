/*
 * Any function, in any permitted sharing, with any bits: libFuzzer's entry.
 *
 * An input is the function's number, the sharing's, the environment's, the kind of records to start
 * from, a seed for these, and what all the floats and words of the call are XORed with. The last
 * kind is zeros, so that the input is the floats themselves.
 */
#include "support/calls.h"
#include "support/inputs.h"

#include <cstdio>
#include <cstdlib>
#include <fuzzer/FuzzedDataProvider.h>

namespace
{

class Bytes
{
public:
    Bytes(const std::uint8_t *bytes, std::size_t size) : given(bytes, size), generated("")
    {
        using test::Kind;
        constexpr Kind kinds[] = {Kind::lattice, Kind::ordinary, Kind::boundary, Kind::any_bits,
                                  Kind::moved_nans};
        function = next();
        sharing = next();
        environment = next();
        const std::uint8_t kind = next();
        const char seed[] = {static_cast<char>('a' + next() % 26),
                             static_cast<char>('a' + next() % 26), '\0'};
        structured = kind % 6 < 5;
        generated = test::Inputs(seed);
        generated.use(kinds[kind % 6 % 5]);
    }

    std::uint8_t function, sharing, environment;

    std::uint32_t word()
    {
        const auto altered = given.ConsumeIntegral<std::uint32_t>();
        return structured ? generated.word() ^ altered : altered;
    }

    std::uint32_t below(std::uint32_t limit)
    {
        return ((structured ? generated.below(limit) : 0) + next()) % limit;
    }

    template <typename Record>
    void fill(Record *record)
    {
        if (structured) {
            generated.fill(record);
        } else {
            *record = {};
        }
        alter(record);
    }

    void fill(KXP3 (&vertices)[4], KXTriangle *triangle)
    {
        if (structured) {
            generated.fill(vertices, triangle);
        } else {
            *triangle = {};
            std::fill(std::begin(vertices), std::end(vertices), KXP3{});
        }
        alter(&vertices);
        alter(triangle);
        for (KXTriangleCorner &corner : triangle->corner) {
            corner.vertex &= 3U;
        }
    }

private:
    /** 0 after the last. */
    std::uint8_t next()
    {
        return given.ConsumeIntegral<std::uint8_t>();
    }

    template <typename Record>
    void alter(Record *record)
    {
        std::uint32_t words[sizeof(Record) / 4];
        std::memcpy(words, record, sizeof words);
        for (std::uint32_t &word : words) {
            word ^= given.ConsumeIntegral<std::uint32_t>();
        }
        std::memcpy(record, words, sizeof words);
    }

    FuzzedDataProvider given;
    test::Inputs generated;
    bool structured = false;
};

/** Mostly what a host has by default; the other modes, and flushing, now and then. */
test::Environment environment_of(std::uint8_t number)
{
    constexpr int roundings[] = {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO};
    return number < 192 ? test::Environment()
                        : test::Environment(roundings[number % 4], number % 8 >= 4);
}

unsigned count_functions()
{
    unsigned count = 0;
    catalogue::for_every_function([&count](const auto &) { ++count; });
    return count;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    static const unsigned functions = count_functions();
    Bytes inputs(bytes, size);
    unsigned to_skip = inputs.function % functions;
    catalogue::for_every_function([&](const auto &entry) {
        if (to_skip-- != 0) {
            return;
        }
        unsigned sharings = 0;
        for (const char *s = entry.sharings; s != nullptr; s = catalogue::next_sharing(s)) {
            ++sharings;
        }
        const char *sharing = entry.sharings;
        for (unsigned i = inputs.sharing % sharings; i != 0; --i) {
            sharing = catalogue::next_sharing(sharing);
        }
        test::Environment environment = environment_of(inputs.environment);
        test::CheckedCall<Bytes> call(inputs);
        if (const char *fault = call(entry, sharing, environment)) {
            std::fprintf(stderr, "%s %s %s\n", entry.name, sharing, fault);
            std::abort();
        }
    });
    return 0;
}
