/*
 * Rows of a function's test: a label, the inputs, and the bits that come of them. A row is tried in
 * every sharing that the function's entry in the catalogue permits for its inputs.
 */
#ifndef KX_TESTS_ROWS_H
#define KX_TESTS_ROWS_H

#include "calls.h"
#include "check.h"

#include <algorithm>
#include <functional>
#include <optional>

namespace test
{

using WordList = std::vector<std::uint32_t>;

template <typename Value>
void append(WordList *words, const Value &value)
{
    static_assert(sizeof(Value) % 4 == 0);
    const auto more = bits_as<Words<Value>>(value);
    words->insert(words->end(), more.begin(), more.end());
}

template <typename Argument>
constexpr std::size_t words_of = sizeof(std::remove_pointer_t<Argument>) / 4;

template <typename Argument>
constexpr bool is_output =
    std::is_pointer_v<Argument> && !std::is_const_v<std::remove_pointer_t<Argument>>;

/** A row has a number for an argument, or the record that it points to. */
template <typename Argument>
using InRow = std::conditional_t<std::is_pointer_v<Argument>,
                                 const std::remove_pointer_t<Argument> &, Argument>;

/** Makes the arguments of a row's call, a maker of `catalogue::argument`. */
struct RowRecords {
    const std::uint32_t *given;
    bool outputs_are_given;
    Areas areas = {};
    std::array<bool, std::tuple_size_v<Areas>> is_given = {};
    bool fits = true; /**< A record that is two inputs has the same words for both. */

    float number()
    {
        return bits_as<float>(word());
    }
    std::uint32_t word()
    {
        return *given++;
    }
    std::uint32_t count(bool any)
    {
        return any ? word() : 0;
    }

    template <typename Pointee>
    Pointee *record(std::size_t index, bool)
    {
        Area &area = areas.at(index);
        if (!area.used) {
            area.used = true;
            area.start = Area::guard + 1; // at addresses that only a float's alignment ties
            area.count = 1;
            area.record_words = words_of<Pointee *>;
            area.words.fill(marker);
        }
        std::uint32_t *const words = area.words.data() + area.start;
        if (outputs_are_given || std::is_const_v<Pointee>) {
            fits = fits && (!is_given[index] || std::equal(words, &area.words[area.end()], given));
            std::copy_n(given, area.record_words, words);
            given += area.record_words;
            is_given[index] = true;
        }
        return reinterpret_cast<Pointee *>(words);
    }
};

/**
 * Calls the function with a row's words, which are the inputs', the result's and the outputs'. A
 * word that is wanted as a marker is not written.
 */
template <typename Result, typename... Arguments>
void check_row(const std::string &label, const catalogue::Entry<Result (*)(Arguments...)> &entry,
               const char *sharing, const std::uint32_t *words, bool outputs_are_given)
{
    RowRecords records = {words, outputs_are_given};
    const auto arguments = catalogue::arguments(entry, sharing, records);
    if (!records.fits) {
        return;
    }
    words += ((outputs_are_given || !is_output<Arguments> ? words_of<Arguments> : 0) + ...);
    Areas wanted = records.areas;
    if constexpr (std::is_void_v<Result>) {
        std::apply(entry.function, arguments);
    } else {
        Result result;
        std::memcpy(&result, words, sizeof result);
        words += sizeof result / 4;
        check_same(label, result, std::apply(entry.function, arguments));
    }
    const auto want = [&](auto argument) {
        if constexpr (is_output<decltype(argument)>) {
            void *const record = moved(argument, records.areas, wanted);
            for (std::size_t i = 0; i < words_of<decltype(argument)>; ++i, ++words) {
                if (record != nullptr && *words != marker) {
                    static_cast<std::uint32_t *>(record)[i] = *words;
                }
            }
        }
    };
    std::apply([&](auto... argument) { (want(argument), ...); }, arguments);
    for (std::size_t n = 0; n < wanted.size(); ++n) {
        const Area &area = records.areas[n];
        const std::string record = label + ", record " + "abcde"[n];
        for (std::size_t i = 0; area.used && i < area.end() + Area::guard; ++i) {
            const std::uint32_t w = wanted[n].words[i], g = area.words[i];
            CHECK_MESSAGE(w == g, record, ", float ", static_cast<int>(i - area.start), ": wanted ",
                          show(w), ", got ", show(g));
        }
    }
}

template <bool outputs_are_given, typename... Row, typename Entry>
auto rows_of_entry(std::tuple<Row...> *, const Entry &entry)
{
    return std::function<void(const std::string &, Row...)>(
        [entry](const std::string &label, Row... row) {
            WordList words;
            (append(&words, row), ...);
            for (const char *s = entry.sharings; s != nullptr; s = catalogue::next_sharing(s)) {
                check_row(label + ", as " + std::string(s, std::strcspn(s, " ")), entry, s,
                          words.data(), outputs_are_given);
            }
        });
}

/** For functions whose outputs are inputs too. */
constexpr bool outputs_are_read = true;

template <bool Is, typename Type>
using IfIs = std::conditional_t<Is, std::tuple<Type>, std::tuple<>>;

/**
 * What checks a row of the function: `check(label, inputs..., result, outputs...)`, without a
 * result where there is none. Where outputs are read too, they are among the inputs, and none is
 * null.
 */
template <bool read_outputs = false, typename Result, typename... Arguments>
auto rows_of(Result (*function)(Arguments...))
{
    using Entry = catalogue::Entry<Result (*)(Arguments...)>;
    std::optional<Entry> found;
    catalogue::for_every_function([&](const auto &entry) {
        if constexpr (std::is_same_v<decltype(entry), const Entry &>) {
            found = entry.function == function ? entry : found;
        }
    });
    using Row = decltype(std::tuple_cat(
        std::declval<IfIs<read_outputs || !is_output<Arguments>, InRow<Arguments>>>()...,
        std::declval<IfIs<!std::is_void_v<Result>, Result>>(),
        std::declval<IfIs<is_output<Arguments>, InRow<Arguments>>>()...));
    return rows_of_entry<read_outputs>(static_cast<Row *>(nullptr), found.value());
}

} // namespace test

#endif
