/* Vectors, bits and scalars, length units. */
#include "functions.h"

#include <kxmaths5/foundations.h>

namespace
{

void add_vectors(Functions &functions)
{
    functions.add("KXV3Length", [](const Data &in, Results &out, std::size_t i) {
        out.values[i] = KXV3Length(&in.points[i]);
    });
    functions.add("KXV3Normalise", [](const Data &in, Results &out, std::size_t i) {
        KXV3Normalise(&in.points[i], &out.vectors[i]);
    });
    functions.add("KXV3Scale", [](const Data &in, Results &out, std::size_t i) {
        out.vectors[i] = in.points[i];
        KXV3Scale(&out.vectors[i], in.factors[i]);
    });
    functions.add("KXV3Cross", [](const Data &in, Results &out, std::size_t i) {
        KXV3Cross(&in.points[i], &in.other_points[i], &out.vectors[i]);
    });
    functions.add("KXV3Perpendicular", [](const Data &in, Results &out, std::size_t i) {
        KXV3Perpendicular(&in.points[i], &out.vectors[i]);
    });
    functions.add("KXV3Combine", [](const Data &in, Results &out, std::size_t i) {
        KXV3Combine(&in.points[i], &in.other_points[i], &out.vectors[i], in.factors[i], 0.5f);
    });
}

void add_bits_and_scalars(Functions &functions)
{
    functions.add("KXBitCount", [](const Data &in, Results &out, std::size_t i) {
        out.words[i] = KXBitCount(in.words[i]);
    });
    functions.add("KXLSB", [](const Data &in, Results &out, std::size_t i) {
        out.words[i] = KXLSB(in.words[i]);
    });
    functions.add("KXMSB", [](const Data &in, Results &out, std::size_t i) {
        out.words[i] = KXMSB(in.words[i]);
    });
    functions.add("KXInterpolate", [](const Data &in, Results &out, std::size_t i) {
        out.values[i] = KXInterpolate(0.0f, 1.0f, 2.0f, 5.0f, in.factors[i]);
    });
    functions.add("KXDiffTime", [](const Data &in, Results &out, std::size_t i) {
        out.values[i] = KXDiffTime(in.words[i], 12345u);
    });
}

/* Lengths are converted where they stand, so each call is given a copy: else they would grow. */
void add_single_units(Functions &functions)
{
    functions.add("KXChangeUnits", [](const Data &in, Results &out, std::size_t i) {
        out.singles[i] = in.factors[i];
        KXChangeUnits(KX_UNIT_METRE, KX_UNIT_FOOT, &out.singles[i]);
    });
    functions.add("KXP3ChangeUnits", [](const Data &in, Results &out, std::size_t i) {
        out.vectors[i] = in.points[i];
        KXP3ChangeUnits(KX_UNIT_METRE, KX_UNIT_FOOT, &out.vectors[i]);
    });
    functions.add("KXP4ChangeUnits", [](const Data &in, Results &out, std::size_t i) {
        out.homogeneous_points[i] = in.homogeneous_points[i];
        KXP4ChangeUnits(KX_UNIT_METRE, KX_UNIT_FOOT, &out.homogeneous_points[i]);
    });
    functions.add("KXBoxChangeUnits", [](const Data &in, Results &out, std::size_t i) {
        out.boxes[i] = in.boxes[i];
        KXBoxChangeUnits(KX_UNIT_METRE, KX_UNIT_FOOT, &out.boxes[i]);
    });
    functions.add("KXPlaneChangeUnits", [](const Data &in, Results &out, std::size_t i) {
        out.planes[i] = in.triangles[i].plane;
        KXPlaneChangeUnits(KX_UNIT_METRE, KX_UNIT_FOOT, &out.planes[i]);
    });
    functions.add("KXM4ChangeUnits", [](const Data &in, Results &out, std::size_t i) {
        out.matrices[i] = in.affine.rows[i];
        KXM4ChangeUnits(KX_UNIT_METRE, KX_UNIT_FOOT, &out.matrices[i]);
    });
}

/**
 * A whole array of lengths, there and back, so that they stay what they are. The check looks at the
 * way there.
 */
template <typename Record>
void add_array_of_units(Functions &functions, const char *name,
                        void (*change_all)(KXUnit, KXUnit, uint32_t, Record *),
                        void (*change)(KXUnit, KXUnit, Record *), const Record *start)
{
    static Record records[array_count];
    const auto reset = [start] { std::memcpy(records, start, sizeof records); };
    reset();
    const auto run = [change_all] {
        change_all(KX_UNIT_METRE, KX_UNIT_FOOT, array_count, records);
        change_all(KX_UNIT_FOOT, KX_UNIT_METRE, array_count, records);
    };
    const auto check = [change_all, change, start, reset] {
        reset();
        change_all(KX_UNIT_METRE, KX_UNIT_FOOT, array_count, records);
        bool same = true;
        for (std::size_t i = 0; i < array_count; ++i) {
            Record record = start[i];
            change(KX_UNIT_METRE, KX_UNIT_FOOT, &record);
            same = same && std::memcmp(&record, &records[i], sizeof record) == 0;
        }
        reset();
        return same;
    };
    functions.add({name, "record", 2 * array_count, run, check});
}

const KXPlane *planes()
{
    static KXPlane all[array_count];
    for (std::size_t i = 0; i < array_count; ++i) {
        all[i] = data().triangles[i % target_count].plane;
    }
    return all;
}

} // namespace

void add_foundations(Functions &functions)
{
    add_vectors(functions);
    add_bits_and_scalars(functions);
    add_single_units(functions);
    add_array_of_units(functions, "KXP3ChangeNUnits", KXP3ChangeNUnits, KXP3ChangeUnits,
                       points<KXP3>().in);
    add_array_of_units(functions, "KXP4ChangeNUnits", KXP4ChangeNUnits, KXP4ChangeUnits,
                       points<KXP4>().in);
    add_array_of_units(functions, "KXPlaneChangeNUnits", KXPlaneChangeNUnits, KXPlaneChangeUnits,
                       planes());
}
