/*
 * Every function of the library, with what a caller may do with its arguments and what it promises.
 * Whatever tries all functions takes them from here.
 */
#ifndef KX_TESTS_CATALOGUE_H
#define KX_TESTS_CATALOGUE_H

#include "promises.h"

#include "kxmaths5.h"

#include <cstdint>
#include <cstring>
#include <tuple>
#include <type_traits>
#include <utility>

namespace catalogue
{

/** What calls of one function may be like, and what holds after them. */
template <typename Function>
struct Entry;

template <typename Result, typename... Arguments>
struct Entry<Result (*)(Arguments...)> {
    const char *name;
    Result (*function)(Arguments...);
    const char *sharings; /**< Separated by spaces; `argument` says what the characters mean. */
    promises::Promise<Result, Arguments...> *promise;
    std::uint32_t word_limit = 0;
    bool has_moved_nans = false;
    bool shared_shows_roundings = false;
    std::uint32_t written = 0xffffffffU;
    int untouched_result = -1;

    /** Words that the function takes by value stay below this; without it they are any. */
    Entry words_below(std::uint32_t limit)
    {
        word_limit = limit;
        return *this;
    }
    /** The function moves floats unchanged, so NaNs must come out as they went in. */
    Entry moves_nans()
    {
        has_moved_nans = true;
        return *this;
    }
    /**
     * In a shared record a coordinate of 0 comes back as nothing but the rounding of a sine, and
     * that is the C library's own. Without zeros it disappears in what is stored.
     */
    Entry shows_roundings_when_shared()
    {
        shared_shows_roundings = true;
        return *this;
    }
    /** Of an output only these words are written: bit 0 is the first. */
    Entry writes(std::uint32_t words)
    {
        written = words;
        return *this;
    }
    /** With this result nothing is written. */
    Entry untouched_on(int result)
    {
        untouched_result = result;
        return *this;
    }
};

#define KX_ENTRY(function, sharings, promise)                                                      \
    catalogue::Entry<decltype(&function)>({#function, &function, sharings, promises::promise})

/** The sharing after this one, or null. */
inline const char *next_sharing(const char *sharing)
{
    const char *const space = std::strchr(sharing, ' ');
    return space == nullptr ? nullptr : space + 1;
}

/**
 * The argument that one character of a sharing asks for. A letter names the record, so that the
 * same letter twice is one record; - is null; . goes by value. # is a count, of which the pointers
 * after it are arrays; 0 is a count of 0. A capital is the vertices of the triangle before it.
 *
 * The maker has `number`, `word`, `count(most)`, of which `most` is false for 0, and
 * `record<Pointee>(index, vertices)`, which gives the address of record number `index`.
 */
template <typename Argument, typename Maker>
Argument argument(char letter, Maker &maker)
{
    if constexpr (std::is_same_v<Argument, float>) {
        return maker.number();
    } else if constexpr (std::is_same_v<Argument, std::uint32_t>) {
        return letter == '#' || letter == '0' ? maker.count(letter == '#') : maker.word();
    } else {
        const bool capital = letter >= 'A' && letter <= 'Z';
        return letter == '-'
                   ? nullptr
                   : maker.template record<std::remove_pointer_t<Argument>>(
                         static_cast<std::size_t>(letter - (capital ? 'A' : 'a')), capital);
    }
}

template <typename... Arguments, typename Maker, std::size_t... Place>
std::tuple<Arguments...> arguments(const char *sharing, Maker &maker, std::index_sequence<Place...>)
{
    // The braces keep the order.
    return std::tuple<Arguments...>{argument<Arguments>(sharing[Place], maker)...};
}

/** All arguments of a call, made from left to right. */
template <typename Result, typename... Arguments, typename Maker>
std::tuple<Arguments...> arguments(const Entry<Result (*)(Arguments...)> &, const char *sharing,
                                   Maker &maker)
{
    return arguments<Arguments...>(sharing, maker, std::index_sequence_for<Arguments...>());
}

/** Calls `visit` with every function's entry. */
template <typename Visit>
void for_every_function(Visit &&visit)
{
    visit(KX_ENTRY(KXV3Length, "a", nothing_more));
    visit(KX_ENTRY(KXV3Normalise, "ab aa", short_is_copied).moves_nans());
    visit(KX_ENTRY(KXV3Scale, "a.", short_stays));
    visit(KX_ENTRY(KXV3Cross, "abc aab", nothing_more));
    visit(KX_ENTRY(KXV3Perpendicular, "ab", nothing_more));
    visit(KX_ENTRY(KXV3Combine, "abc.. aab.. aba.. abb.. aaa..", nothing_more));
    visit(KX_ENTRY(KXBitCount, ".", nothing_more));
    visit(KX_ENTRY(KXLSB, ".", nothing_more));
    visit(KX_ENTRY(KXMSB, ".", nothing_more));
    visit(KX_ENTRY(KXInterpolate, ".....", nothing_more));
    visit(KX_ENTRY(KXDiffTime, "..", nothing_more));
    visit(KX_ENTRY(KXChangeUnits, "..a", nothing_more).words_below(10));
    visit(KX_ENTRY(KXP3ChangeUnits, "..a", nothing_more).words_below(10));
    visit(KX_ENTRY(KXP4ChangeUnits, "..a", nothing_more).words_below(10).writes(0x7));
    visit(KX_ENTRY(KXBoxChangeUnits, "..a", nothing_more).words_below(10));
    visit(KX_ENTRY(KXPlaneChangeUnits, "..a", nothing_more).words_below(10).writes(0x8));
    visit(KX_ENTRY(KXM4ChangeUnits, "..a", nothing_more).words_below(10).writes(0x0888));
    visit(KX_ENTRY(KXP3ChangeNUnits, "..#a ..0-", nothing_more).words_below(10));
    visit(KX_ENTRY(KXP4ChangeNUnits, "..#a ..0-", nothing_more).words_below(10).writes(0x7));
    visit(KX_ENTRY(KXPlaneChangeNUnits, "..#a ..0-", nothing_more).words_below(10).writes(0x8));

    visit(KX_ENTRY(KXM4Determinant, "a", nothing_more));
    visit(KX_ENTRY(KXM3Determinant, "a", nothing_more));
    visit(KX_ENTRY(KXM4Mult, "abc aab aba abb aaa", nothing_more));
    visit(KX_ENTRY(KXM3Mult, "abc aab aba abb aaa", nothing_more));
    visit(KX_ENTRY(KXM43Mult, "abc aab aba abb aaa", nothing_more).writes(0x0777));
    visit(KX_ENTRY(KXM4Unit, "a", nothing_more));
    visit(KX_ENTRY(KXM3Unit, "a", nothing_more));
    visit(KX_ENTRY(KXM4IsUnit, "a", nothing_more));
    visit(KX_ENTRY(KXM3IsUnit, "a", nothing_more));
    visit(KX_ENTRY(KXM4IsOrthogonal, "a", nothing_more));
    visit(KX_ENTRY(KXM4Transpose, "ab aa", nothing_more).moves_nans());
    visit(KX_ENTRY(KXM3Transpose, "ab aa", nothing_more).moves_nans());
    visit(KX_ENTRY(KXM4Add, "abc aab aba abb aaa", nothing_more));
    visit(KX_ENTRY(KXM3Add, "abc aab aba abb aaa", nothing_more));
    visit(KX_ENTRY(KXM4Copy, "ab aa", nothing_more).moves_nans());
    visit(KX_ENTRY(KXM3Copy, "ab aa", nothing_more).moves_nans());
    visit(KX_ENTRY(KXM4Scale, "...a", nothing_more));
    visit(KX_ENTRY(KXM4Translate, "...a", nothing_more));
    visit(KX_ENTRY(KXM4RotateX2, "..a", nothing_more));
    visit(KX_ENTRY(KXM4RotateY2, "..a", nothing_more));
    visit(KX_ENTRY(KXM4RotateZ2, "..a", nothing_more));
    visit(KX_ENTRY(KXM4ShearXY2, ".a", nothing_more));
    visit(KX_ENTRY(KXM4ShearXZ2, ".a", nothing_more));
    visit(KX_ENTRY(KXM4ShearYZ2, ".a", nothing_more));
    visit(KX_ENTRY(KXM3Scale, "..a", nothing_more));
    visit(KX_ENTRY(KXM3Translate, "..a", nothing_more));
    visit(KX_ENTRY(KXM3Rotate2, "..a", nothing_more));
    visit(KX_ENTRY(KXM3P2I0, "abc abb", nothing_more));
    visit(KX_ENTRY(KXM3P2I1, "abc abb", nothing_more));
    visit(KX_ENTRY(KXM4P3I0, "abc abb", nothing_more));
    visit(KX_ENTRY(KXM4P3I1, "abc abb", nothing_more));
    visit(KX_ENTRY(KXM4P4, "abc abb", nothing_more));
    visit(KX_ENTRY(KXM3NP2I0, "a#bc a#bb -0--", nothing_more));
    visit(KX_ENTRY(KXM3NP2I1, "a#bc a#bb -0--", nothing_more));
    visit(KX_ENTRY(KXM4NP3I0, "a#bc a#bb -0--", nothing_more));
    visit(KX_ENTRY(KXM4NP3I1, "a#bc a#bb -0--", nothing_more));
    visit(KX_ENTRY(KXM4NP4, "a#bc a#bb -0--", nothing_more));
    visit(KX_ENTRY(KXM4Inverse, "ab", affine_refusal_writes_nothing));
    visit(KX_ENTRY(KXM3Inverse, "ab aa", nothing_more).untouched_on(1));

    // Two orders more than there are.
    visit(KX_ENTRY(KXM4Orientation, "ab.... aa.... a-.... -b.... --....", both_are_oriented)
              .words_below(8));
    visit(KX_ENTRY(KXM4Position, "abc. aac. a-c. -bc. --c.", both_are_oriented).words_below(8));
    visit(KX_ENTRY(KXM4Decompose, "ab aa", nothing_more).untouched_on(1));
    visit(KX_ENTRY(KXM4Compose, "ab aa", nothing_more));
    visit(KX_ENTRY(KXM3Decompose, "ab", nothing_more).untouched_on(1));
    visit(KX_ENTRY(KXM3Compose, "ab", nothing_more));
    visit(KX_ENTRY(KXM4MatrixComponents, "abc ab- a-c a--", nothing_more));
    visit(KX_ENTRY(KXM3MatrixComponents, "abcde a-cde ab-de abc-e abcd- a----", nothing_more));
    visit(KX_ENTRY(KXGenerateQuat, ".ab", nothing_more));
    visit(KX_ENTRY(KXQuatToMatrix, "ab", nothing_more));
    visit(KX_ENTRY(KXMatrixToQuat, "ab", nothing_more));
    visit(KX_ENTRY(KXM4Projection1, "ab...", nothing_more));

    visit(KX_ENTRY(KXTransformBox, "abc aba", inverted_box_is_copied));
    visit(KX_ENTRY(KXPutPointInBox, "ab", nothing_more).untouched_on(0));
    visit(KX_ENTRY(KXCombineBoxes, "ab aa", nothing_more));
    visit(KX_ENTRY(KXBoxMidPoint, "ab", nothing_more));
    visit(KX_ENTRY(KXBoxDiagonal, "ab", nothing_more));
    visit(KX_ENTRY(KXIsValidBox, "a", nothing_more));
    visit(KX_ENTRY(KXTransformLine, "abc aba", nothing_more));
    visit(KX_ENTRY(KXTransformRay, "abc aba", nothing_more));
    visit(KX_ENTRY(KXRayPointDistance, "ab", nothing_more));
    visit(KX_ENTRY(KXLineIxBox, "abc ab-", without_contact));
    visit(KX_ENTRY(KXRayIxBox, "abc ab-", without_contact));
    visit(KX_ENTRY(KXLineIxTriangle, "abCd", misses_along_plane));
    visit(KX_ENTRY(KXRayIxTriangle, "abCd", misses_along_plane));
    visit(KX_ENTRY(KXPlaneEquation, "abcd aabd abad abbd aaad", refusal_gives_plane_across_x));
    visit(KX_ENTRY(KXRotateInPlane, "ab. aa.", nothing_more).shows_roundings_when_shared());

    visit(KX_ENTRY(KXRange, "ab aa", nothing_more));
    visit(KX_ENTRY(KXBearing, "ab aa", nothing_more));
    visit(KX_ENTRY(KXREAToPoint, "...a", nothing_more));
    visit(KX_ENTRY(KXEAToVector, "..a", nothing_more));
    visit(KX_ENTRY(KXPointsToREA, "abcde aacde", nothing_more));
    visit(KX_ENTRY(KXVectorToEA, "abc", nothing_more));
}

} // namespace catalogue

#endif
