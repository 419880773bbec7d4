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

#define DIGEST(function, ...) print(#function, digest::Trial(#function).run(function, __VA_ARGS__))
#define DIGEST_ARRAYS(function) print(#function, digest::Trial(#function).run(function))
#define DIGEST_WITH(option, function, ...)                                                         \
    print(#function, digest::Trial(#function).option.run(function, __VA_ARGS__))

/* Two inputs and an output that may be either or both. */
#define ANY_SHARING                                                                                \
    {                                                                                              \
        "abc", "aab", "aba", "abb", "aaa"                                                          \
    }

void foundations()
{
    DIGEST(KXV3Length, {"a"});
    DIGEST_WITH(moves_nans(), KXV3Normalise, {"ab", "aa"});
    DIGEST(KXV3Scale, {"a."});
    DIGEST(KXV3Cross, {"abc", "aab"});
    DIGEST(KXV3Perpendicular, {"ab"});
    DIGEST(KXV3Combine, {"abc..", "aab..", "aba..", "abb..", "aaa.."});
    DIGEST(KXBitCount, {"."});
    DIGEST(KXLSB, {"."});
    DIGEST(KXMSB, {"."});
    DIGEST(KXInterpolate, {"....."});
    DIGEST(KXDiffTime, {".."});
    DIGEST_WITH(words_below(10), KXChangeUnits, {"..a"});
    DIGEST_WITH(words_below(10), KXP3ChangeUnits, {"..a"});
    DIGEST_WITH(words_below(10), KXP4ChangeUnits, {"..a"});
    DIGEST_WITH(words_below(10), KXBoxChangeUnits, {"..a"});
    DIGEST_WITH(words_below(10), KXPlaneChangeUnits, {"..a"});
    DIGEST_WITH(words_below(10), KXM4ChangeUnits, {"..a"});
    DIGEST_ARRAYS(KXP3ChangeNUnits);
    DIGEST_ARRAYS(KXP4ChangeNUnits);
    DIGEST_ARRAYS(KXPlaneChangeNUnits);
}

void matrices()
{
    DIGEST(KXM4Determinant, {"a"});
    DIGEST(KXM3Determinant, {"a"});
    DIGEST(KXM4Mult, ANY_SHARING);
    DIGEST(KXM3Mult, ANY_SHARING);
    DIGEST(KXM43Mult, ANY_SHARING);
    DIGEST(KXM4Unit, {"a"});
    DIGEST(KXM3Unit, {"a"});
    DIGEST(KXM4IsUnit, {"a"});
    DIGEST(KXM3IsUnit, {"a"});
    DIGEST(KXM4IsOrthogonal, {"a"});
    DIGEST_WITH(moves_nans(), KXM4Transpose, {"ab", "aa"});
    DIGEST_WITH(moves_nans(), KXM3Transpose, {"ab", "aa"});
    DIGEST(KXM4Add, ANY_SHARING);
    DIGEST(KXM3Add, ANY_SHARING);
    DIGEST_WITH(moves_nans(), KXM4Copy, {"ab", "aa"});
    DIGEST_WITH(moves_nans(), KXM3Copy, {"ab", "aa"});
    DIGEST(KXM4Scale, {"...a"});
    DIGEST(KXM4Translate, {"...a"});
    DIGEST(KXM4RotateX2, {"..a"});
    DIGEST(KXM4RotateY2, {"..a"});
    DIGEST(KXM4RotateZ2, {"..a"});
    DIGEST(KXM4ShearXY2, {".a"});
    DIGEST(KXM4ShearXZ2, {".a"});
    DIGEST(KXM4ShearYZ2, {".a"});
    DIGEST(KXM3Scale, {"..a"});
    DIGEST(KXM3Translate, {"..a"});
    DIGEST(KXM3Rotate2, {"..a"});
    DIGEST(KXM3P2I0, {"abc", "abb"});
    DIGEST(KXM3P2I1, {"abc", "abb"});
    DIGEST(KXM4P3I0, {"abc", "abb"});
    DIGEST(KXM4P3I1, {"abc", "abb"});
    DIGEST(KXM4P4, {"abc", "abb"});
    DIGEST_ARRAYS(KXM3NP2I0);
    DIGEST_ARRAYS(KXM3NP2I1);
    DIGEST_ARRAYS(KXM4NP3I0);
    DIGEST_ARRAYS(KXM4NP3I1);
    DIGEST_ARRAYS(KXM4NP4);
    DIGEST(KXM4Inverse, {"ab"});
    DIGEST(KXM3Inverse, {"ab", "aa"});
}

void orientation()
{
    // Two orders more than there are.
    DIGEST_WITH(words_below(8), KXM4Orientation,
                {"ab....", "aa....", "a-....", "-b....", "--...."});
    DIGEST_WITH(words_below(8), KXM4Position, {"abc.", "aac.", "a-c.", "-bc.", "--c."});
    DIGEST(KXM4Decompose, {"ab", "aa"});
    DIGEST(KXM4Compose, {"ab", "aa"});
    DIGEST(KXM3Decompose, {"ab"});
    DIGEST(KXM3Compose, {"ab"});
    DIGEST(KXM4MatrixComponents, {"abc", "ab-", "a-c", "a--"});
    DIGEST(KXM3MatrixComponents, {"abcde", "a-cde", "ab-de", "abc-e", "abcd-", "a----"});
    DIGEST(KXGenerateQuat, {".ab"});
    DIGEST(KXQuatToMatrix, {"ab"});
    DIGEST(KXMatrixToQuat, {"ab"});
    DIGEST(KXM4Projection1, {"ab..."});
}

void spatial()
{
    DIGEST(KXTransformBox, {"abc", "aba"});
    DIGEST(KXPutPointInBox, {"ab"});
    DIGEST(KXCombineBoxes, {"ab", "aa"});
    DIGEST(KXBoxMidPoint, {"ab"});
    DIGEST(KXBoxDiagonal, {"ab"});
    DIGEST(KXIsValidBox, {"a"});
    DIGEST(KXTransformLine, {"abc", "aba"});
    DIGEST(KXTransformRay, {"abc", "aba"});
    DIGEST(KXRayPointDistance, {"ab"});
    DIGEST(KXLineIxBox, {"abc", "ab-"});
    DIGEST(KXRayIxBox, {"abc", "ab-"});
    DIGEST_ARRAYS(KXLineIxTriangle);
    DIGEST_ARRAYS(KXRayIxTriangle);
    DIGEST(KXPlaneEquation, {"abcd", "aabd", "abad", "abbd", "aaad"});
    DIGEST(KXRotateInPlane, {"ab.", "aa."});
}

void polar()
{
    DIGEST(KXRange, {"ab", "aa"});
    DIGEST(KXBearing, {"ab", "aa"});
    DIGEST(KXREAToPoint, {"...a"});
    DIGEST(KXEAToVector, {"..a"});
    DIGEST(KXPointsToREA, {"abcde", "aacde"});
    DIGEST(KXVectorToEA, {"abc"});
}

} // namespace

int main()
{
    foundations();
    matrices();
    orientation();
    spatial();
    polar();
    show("total", total);
    return 0;
}
