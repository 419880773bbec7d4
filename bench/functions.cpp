/*
 * Operands are chosen by their types and places, so that a function of the catalogue needs no line
 * here. The first of its sharings says which are arrays.
 */
#include "bench.h"

#include "support/catalogue.h"

#include <array>
#include <cstring>
#include <tuple>
#include <type_traits>

namespace
{

/** Records in an array that a function is given whole. */
constexpr std::size_t array_count = 1000;

/** The operand at a place among the records: rays and lines meet half of their targets. */
template <typename Record>
const Record *operands(std::size_t place, bool vertices, bool at_triangles)
{
    const Data &in = data();
    if constexpr (std::is_same_v<Record, KXM4>) {
        return place == 0 ? in.affine.rows : in.general.rows;
    } else if constexpr (std::is_same_v<Record, KXV3>) {
        return vertices     ? in.vertices
               : place == 0 ? in.points
               : place == 1 ? in.unit_vectors
                            : in.other_points;
    } else {
        // Of each other record there is one array.
        return std::get<const Record *>(std::make_tuple(
            in.plane_matrices, in.plane_points, in.homogeneous_points, in.boxes, in.triangles,
            in.planes, at_triangles ? in.at_triangles.mixed : in.at_boxes.mixed,
            at_triangles ? in.lines_at_triangles : in.lines_at_boxes, in.positions, in.components,
            in.quaternions, in.factors));
    }
}

/** The calls of one function. */
template <typename Entry, typename Function>
class Calls;

template <typename Entry, typename Result, typename... Arguments>
class Calls<Entry, Result (*)(Arguments...)>
{
public:
    explicit Calls(const Entry &function)
        : entry(function), takes_arrays(std::strchr(entry.sharings, '#') != nullptr),
          items(takes_arrays ? array_count : 1)
    {
        for (call = 0; call < (takes_arrays ? 1 : record_count); ++call) {
            values = call;
            counted = false;
            calls.push_back(catalogue::arguments(entry, entry.sharings, *this));
        }
        in_place = outputs.size() == calls.size() && reads_output();
    }

    /* The arguments that a sharing asks for. */

    float number()
    {
        return data().factors[values++ % record_count];
    }

    std::uint32_t word()
    {
        // Any, an order of rotations, or from one length unit to another.
        return entry.word_limit == 0    ? data().words[values++ % record_count]
               : entry.word_limit == 10 ? KX_UNIT_METRE + static_cast<KXUnit>(values++ - call)
                                        : static_cast<KXRotationOrder>(call % 6);
    }

    std::uint32_t count(bool)
    {
        counted = true;
        return array_count;
    }

    template <typename Pointee>
    Pointee *record(std::size_t index, bool vertices)
    {
        using Record = std::remove_const_t<Pointee>;
        constexpr bool is_output = !std::is_const_v<Pointee>;
        // Only outputs are written to.
        Record *const records =
            const_cast<Record *>(operands<Record>(index, vertices, takes_triangle));
        if (vertices || (!is_output && !counted)) {
            return records + (vertices ? 0 : call);
        }
        // An array, or an output: it has a place of its own, and what it starts from.
        Memory &start = starts[index], &own = places[index];
        if (start == nullptr) {
            start = allocate((record_count + items + 1) * sizeof(Record));
            own = allocate((record_count + items) * sizeof(Record));
            for (std::size_t k = 0; k < record_count + items + 1; ++k) {
                static_cast<Record *>(start.get())[k] = records[(k + 1) % record_count];
            }
        }
        Record *const first = static_cast<Record *>(start.get()) + call;
        Record *const result = static_cast<Record *>(own.get()) + call;
        if (is_output) {
            outputs.push_back({result, first, sizeof(Record)});
        }
        return is_output ? result : first;
    }

    void operator()() const
    {
        for (std::size_t i = 0; i < calls.size(); ++i) {
            if (in_place) {
                set(outputs[i], 0);
            }
            std::apply(entry.function, calls[i]);
        }
    }

private:
    struct Output {
        void *at;
        const void *start; /**< One record more than there are. */
        std::size_t bytes; /**< Of a record. */
    };

    /** Starts an output afresh; or from other values, those of the next record. */
    void set(const Output &output, std::size_t shift) const
    {
        const char *const start = static_cast<const char *>(output.start);
        std::memcpy(output.at, start + shift * output.bytes, items * output.bytes);
    }

    /**
     * Whether every call depends on what is in its one output: then that is set before each,
     * or lengths would grow, and boxes would grow in the first run alone.
     */
    bool reads_output() const
    {
        for (std::size_t i = 0; i < calls.size(); ++i) {
            std::uint32_t first[16] = {}, second[16] = {};
            for (auto *words : {first, second}) {
                set(outputs[i], words == second);
                std::apply(entry.function, calls[i]);
                std::memcpy(words, outputs[i].at, outputs[i].bytes);
                for (std::size_t word = 0; word < 16; ++word) {
                    words[word] *= entry.written >> word & 1;
                }
            }
            if (std::memcmp(first, second, sizeof first) == 0) {
                return false;
            }
        }
        return true;
    }

    static constexpr bool takes_triangle = (std::is_same_v<Arguments, const KXTriangle *> || ...);

    Entry entry;
    bool takes_arrays;
    std::size_t items;            /**< Records in an output. */
    std::size_t call = 0, values; /**< Which call is made up, and the next of the values for it. */
    bool counted;                 /**< Whether a count came before, so that pointers are arrays. */
    std::vector<std::tuple<Arguments...>> calls;
    std::vector<Output> outputs;
    std::array<Memory, sizeof...(Arguments)> starts, places;
    bool in_place;
};

} // namespace

std::vector<Function> all_functions()
{
    std::vector<Function> rows;
    catalogue::for_every_function([&rows](const auto &entry) {
        const bool is_array = std::strchr(entry.sharings, '#') != nullptr;
        rows.push_back({entry.name, is_array ? "record" : "call",
                        is_array ? array_count : record_count,
                        Calls<std::decay_t<decltype(entry)>, decltype(entry.function)>(entry)});
    });
    return rows;
}
