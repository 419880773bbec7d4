/*
 * Operands are chosen by their types and places, so that a function of the catalogue needs no line
 * here. The first of its sharings says which are arrays.
 */
#include "bench.h"

#include "support/catalogue.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>
#include <type_traits>

namespace
{

/** The operand at a place among the records: rays and lines meet half of their targets. */
template <typename Record>
const Record *operands(std::size_t place, bool vertices, bool at_triangles)
{
    const Data &in = data();
    if constexpr (std::is_same_v<Record, KXM4>) {
        return place == 0 ? in.affine.rows : in.general.rows;
    } else if constexpr (std::is_same_v<Record, KXV3>) {
        const KXV3 *const vectors[] = {in.points, in.unit_vectors, in.other_points};
        return vertices ? in.vertices : vectors[std::min<std::size_t>(place, 2)];
    } else {
        // Of each other record there is one array.
        return std::get<const Record *>(
            std::tuple<const KXM3 *, const KXP2 *, const KXP4 *, const KXBox *, const KXTriangle *,
                       const KXPlane *, const KXRay *, const KXLine *, const KXPosition *,
                       const KXComponents *, const KXQuat *, const float *>(
                in.plane_matrices, in.plane_points, in.homogeneous_points, in.boxes, in.triangles,
                in.planes, at_triangles ? in.at_triangles.mixed : in.at_boxes.mixed,
                at_triangles ? in.lines_at_triangles : in.lines_at_boxes, in.positions,
                in.components, in.quaternions, in.factors));
    }
}

template <typename Entry>
bool takes_arrays(const Entry &entry)
{
    return std::strchr(entry.sharings, '#') != nullptr;
}

/** The calls of one function. */
template <typename Result, typename... Arguments>
class Calls
{
public:
    explicit Calls(const catalogue::Entry<Result (*)(Arguments...)> &function)
        : entry(function), items(takes_arrays(entry) ? array_count : 1)
    {
        for (call = 0; call < (takes_arrays(entry) ? 1 : record_count); ++call) {
            values = call;
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
        return array_count;
    }

    template <typename Pointee>
    Pointee *record(std::size_t index, bool vertices)
    {
        using Record = std::remove_const_t<Pointee>;
        const Record *const given =
            operands<Record>(index, vertices, takes_triangle) + (vertices ? 0 : call);
        if constexpr (std::is_const_v<Pointee>) {
            return given;
        } else {
            Memory &own = places[index];
            if (own == nullptr) {
                own = allocate((record_count + items) * sizeof(Record));
            }
            Record *const result = static_cast<Record *>(own.get()) + call;
            outputs.push_back({result, given + 1, sizeof(Record)});
            return result;
        }
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
        const void *start; /**< What a function that works in place starts from. */
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

    catalogue::Entry<Result (*)(Arguments...)> entry;
    std::size_t items;            /**< Records in an output. */
    std::size_t call = 0, values; /**< Which call is made up, and the next of the values for it. */
    std::vector<std::tuple<Arguments...>> calls;
    std::vector<Output> outputs;
    std::array<Memory, sizeof...(Arguments)> places;
    bool in_place;
};

} // namespace

std::vector<Function> all_functions()
{
    std::vector<Function> rows;
    catalogue::for_every_function([&rows](const auto &entry) {
        const bool is_array = takes_arrays(entry);
        rows.push_back({entry.name, is_array ? "record" : "call",
                        is_array ? array_count : record_count, Calls(entry)});
    });
    return rows;
}
