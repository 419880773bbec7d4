/*
 * Every function of the library, with what a caller may do with its arguments and what it promises
 * to leave alone. Whatever tries all functions takes them from here.
 */
#ifndef KX_TESTS_CATALOGUE_H
#define KX_TESTS_CATALOGUE_H

#include "kxmaths5.h"

#include <cstdint>
#include <cstring>

namespace catalogue
{

/**
 * A sharing has a character for each argument: a letter names the record that stands there, so that
 * the same letter twice is one record; - is null; . goes by value. # is a count, of which the
 * pointers behind it are arrays; 0 is a count of 0. A capital is the vertices of the triangle
 * before it.
 */
template <typename Function>
struct Entry {
    const char *name;
    Function function;
    const char *sharings; /**< Separated by spaces. */
    std::uint32_t word_limit = 0;
    bool has_moved_nans = false;
    bool shared_shows_roundings = false;
    std::uint32_t written = 0xffffffffU;
    int untouched_result = -1;

    /** Words that the function takes by value stay below this; without it they are any. */
    Entry words_below(std::uint32_t limit) const
    {
        Entry entry = *this;
        entry.word_limit = limit;
        return entry;
    }
    /** The function moves floats unchanged, so NaNs must come out as they went in. */
    Entry moves_nans() const
    {
        Entry entry = *this;
        entry.has_moved_nans = true;
        return entry;
    }
    /**
     * In a shared record a coordinate of 0 comes back as nothing but the rounding of a sine, and
     * that is the C library's own. Without zeros it disappears in what is stored.
     */
    Entry shows_roundings_when_shared() const
    {
        Entry entry = *this;
        entry.shared_shows_roundings = true;
        return entry;
    }
    /** Of an output only these words are written: bit 0 is the first. */
    Entry writes(std::uint32_t words) const
    {
        Entry entry = *this;
        entry.written = words;
        return entry;
    }
    /** With this result nothing is written. */
    Entry untouched_on(int result) const
    {
        Entry entry = *this;
        entry.untouched_result = result;
        return entry;
    }
};

template <typename Function>
Entry<Function> entry(const char *name, Function function, const char *sharings)
{
    return {name, function, sharings};
}
#define KX_ENTRY(function, sharings) catalogue::entry(#function, &function, sharings)

/** The sharing behind this one, or null. */
inline const char *next_sharing(const char *sharing)
{
    const char *const space = std::strchr(sharing, ' ');
    return space == nullptr ? nullptr : space + 1;
}

template <typename Visit>
void foundations(Visit &visit)
{
    visit(KX_ENTRY(KXV3Length, "a"));
    visit(KX_ENTRY(KXV3Normalise, "ab aa").moves_nans());
    visit(KX_ENTRY(KXV3Scale, "a."));
    visit(KX_ENTRY(KXV3Cross, "abc aab"));
    visit(KX_ENTRY(KXV3Perpendicular, "ab"));
    visit(KX_ENTRY(KXV3Combine, "abc.. aab.. aba.. abb.. aaa.."));
    visit(KX_ENTRY(KXBitCount, "."));
    visit(KX_ENTRY(KXLSB, "."));
    visit(KX_ENTRY(KXMSB, "."));
    visit(KX_ENTRY(KXInterpolate, "....."));
    visit(KX_ENTRY(KXDiffTime, ".."));
    visit(KX_ENTRY(KXChangeUnits, "..a").words_below(10));
    visit(KX_ENTRY(KXP3ChangeUnits, "..a").words_below(10));
    visit(KX_ENTRY(KXP4ChangeUnits, "..a").words_below(10).writes(0x7));
    visit(KX_ENTRY(KXBoxChangeUnits, "..a").words_below(10));
    visit(KX_ENTRY(KXPlaneChangeUnits, "..a").words_below(10).writes(0x8));
    visit(KX_ENTRY(KXM4ChangeUnits, "..a").words_below(10).writes(0x0888));
    visit(KX_ENTRY(KXP3ChangeNUnits, "..#a ..0-").words_below(10));
    visit(KX_ENTRY(KXP4ChangeNUnits, "..#a ..0-").words_below(10).writes(0x7));
    visit(KX_ENTRY(KXPlaneChangeNUnits, "..#a ..0-").words_below(10).writes(0x8));
}

template <typename Visit>
void matrices(Visit &visit)
{
    visit(KX_ENTRY(KXM4Determinant, "a"));
    visit(KX_ENTRY(KXM3Determinant, "a"));
    visit(KX_ENTRY(KXM4Mult, "abc aab aba abb aaa"));
    visit(KX_ENTRY(KXM3Mult, "abc aab aba abb aaa"));
    visit(KX_ENTRY(KXM43Mult, "abc aab aba abb aaa").writes(0x0777));
    visit(KX_ENTRY(KXM4Unit, "a"));
    visit(KX_ENTRY(KXM3Unit, "a"));
    visit(KX_ENTRY(KXM4IsUnit, "a"));
    visit(KX_ENTRY(KXM3IsUnit, "a"));
    visit(KX_ENTRY(KXM4IsOrthogonal, "a"));
    visit(KX_ENTRY(KXM4Transpose, "ab aa").moves_nans());
    visit(KX_ENTRY(KXM3Transpose, "ab aa").moves_nans());
    visit(KX_ENTRY(KXM4Add, "abc aab aba abb aaa"));
    visit(KX_ENTRY(KXM3Add, "abc aab aba abb aaa"));
    visit(KX_ENTRY(KXM4Copy, "ab aa").moves_nans());
    visit(KX_ENTRY(KXM3Copy, "ab aa").moves_nans());
    visit(KX_ENTRY(KXM4Scale, "...a"));
    visit(KX_ENTRY(KXM4Translate, "...a"));
    visit(KX_ENTRY(KXM4RotateX2, "..a"));
    visit(KX_ENTRY(KXM4RotateY2, "..a"));
    visit(KX_ENTRY(KXM4RotateZ2, "..a"));
    visit(KX_ENTRY(KXM4ShearXY2, ".a"));
    visit(KX_ENTRY(KXM4ShearXZ2, ".a"));
    visit(KX_ENTRY(KXM4ShearYZ2, ".a"));
    visit(KX_ENTRY(KXM3Scale, "..a"));
    visit(KX_ENTRY(KXM3Translate, "..a"));
    visit(KX_ENTRY(KXM3Rotate2, "..a"));
    visit(KX_ENTRY(KXM3P2I0, "abc abb"));
    visit(KX_ENTRY(KXM3P2I1, "abc abb"));
    visit(KX_ENTRY(KXM4P3I0, "abc abb"));
    visit(KX_ENTRY(KXM4P3I1, "abc abb"));
    visit(KX_ENTRY(KXM4P4, "abc abb"));
    visit(KX_ENTRY(KXM3NP2I0, "a#bc a#bb -0--"));
    visit(KX_ENTRY(KXM3NP2I1, "a#bc a#bb -0--"));
    visit(KX_ENTRY(KXM4NP3I0, "a#bc a#bb -0--"));
    visit(KX_ENTRY(KXM4NP3I1, "a#bc a#bb -0--"));
    visit(KX_ENTRY(KXM4NP4, "a#bc a#bb -0--"));
    visit(KX_ENTRY(KXM4Inverse, "ab"));
    visit(KX_ENTRY(KXM3Inverse, "ab aa").untouched_on(1));
}

template <typename Visit>
void orientation(Visit &visit)
{
    // Two orders more than there are.
    visit(KX_ENTRY(KXM4Orientation, "ab.... aa.... a-.... -b.... --....").words_below(8));
    visit(KX_ENTRY(KXM4Position, "abc. aac. a-c. -bc. --c.").words_below(8));
    visit(KX_ENTRY(KXM4Decompose, "ab aa").untouched_on(1));
    visit(KX_ENTRY(KXM4Compose, "ab aa"));
    visit(KX_ENTRY(KXM3Decompose, "ab").untouched_on(1));
    visit(KX_ENTRY(KXM3Compose, "ab"));
    visit(KX_ENTRY(KXM4MatrixComponents, "abc ab- a-c a--"));
    visit(KX_ENTRY(KXM3MatrixComponents, "abcde a-cde ab-de abc-e abcd- a----"));
    visit(KX_ENTRY(KXGenerateQuat, ".ab"));
    visit(KX_ENTRY(KXQuatToMatrix, "ab"));
    visit(KX_ENTRY(KXMatrixToQuat, "ab"));
    visit(KX_ENTRY(KXM4Projection1, "ab..."));
}

template <typename Visit>
void spatial(Visit &visit)
{
    visit(KX_ENTRY(KXTransformBox, "abc aba"));
    visit(KX_ENTRY(KXPutPointInBox, "ab").untouched_on(0));
    visit(KX_ENTRY(KXCombineBoxes, "ab aa"));
    visit(KX_ENTRY(KXBoxMidPoint, "ab"));
    visit(KX_ENTRY(KXBoxDiagonal, "ab"));
    visit(KX_ENTRY(KXIsValidBox, "a"));
    visit(KX_ENTRY(KXTransformLine, "abc aba"));
    visit(KX_ENTRY(KXTransformRay, "abc aba"));
    visit(KX_ENTRY(KXRayPointDistance, "ab"));
    visit(KX_ENTRY(KXLineIxBox, "abc ab-"));
    visit(KX_ENTRY(KXRayIxBox, "abc ab-"));
    visit(KX_ENTRY(KXLineIxTriangle, "abCd"));
    visit(KX_ENTRY(KXRayIxTriangle, "abCd"));
    visit(KX_ENTRY(KXPlaneEquation, "abcd aabd abad abbd aaad"));
    visit(KX_ENTRY(KXRotateInPlane, "ab. aa.").shows_roundings_when_shared());
}

template <typename Visit>
void polar(Visit &visit)
{
    visit(KX_ENTRY(KXRange, "ab aa"));
    visit(KX_ENTRY(KXBearing, "ab aa"));
    visit(KX_ENTRY(KXREAToPoint, "...a"));
    visit(KX_ENTRY(KXEAToVector, "..a"));
    visit(KX_ENTRY(KXPointsToREA, "abcde aacde"));
    visit(KX_ENTRY(KXVectorToEA, "abc"));
}

/** Calls `visit` with every function's entry. */
template <typename Visit>
void for_every_function(Visit &&visit)
{
    foundations(visit);
    matrices(visit);
    orientation(visit);
    spatial(visit);
    polar(visit);
}

} // namespace catalogue

#endif
