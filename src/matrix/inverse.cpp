/* Inversion: cofactors for affine transforms, an elimination for everything else. */
#include "kxmaths5/matrix.h"

#include "numeric.h"

namespace
{

constexpr int32_t done = 0;
constexpr int32_t singular = 1;

/**
 * The inverse of a 3x3 block by cofactors: the upper left of a KXM4, or all of a KXM3.
 *
 * The block counts as singular when its determinant is next to nothing beside the six terms that it
 * is the sum of, which does not depend on the scale of the block.
 */
template <typename Matrix>
int32_t invert_block(const Matrix &m, float (&inverse)[3][3])
{
    const auto e = [&m](int r, int c) { return kx::wide(m.m[r][c]); };
    const double a00 = e(0, 0), a01 = e(0, 1), a02 = e(0, 2);
    const double a10 = e(1, 0), a11 = e(1, 1), a12 = e(1, 2);
    const double a20 = e(2, 0), a21 = e(2, 1), a22 = e(2, 2);

    // Of the six terms only the first is single.
    const double terms[6] = {
        kx::rounded(a11 * a22 * a00), a10 * a21 * a02,    a12 * a20 * a01,
        -(a11 * a20 * a02),           -(a10 * a22 * a01), -(a21 * a12 * a00),
    };
    double pos = 0.0, neg = 0.0;
    for (const double term : terms) {
        if (term >= 0.0) {
            pos += term;
        } else {
            neg += term; // a NaN comes here, and spoils the sum
        }
    }
    const double det = pos + neg;
    if (!(det < 0.0 || det > 0.0)) {
        return singular; // 0, or a NaN in the block
    }
    const double D = kx::rounded(det);
    if (kx::magnitude(D / (pos - neg)) < 1e-15) {
        return singular;
    }

    const double k = 1.0 / D;
    // The two products of the first element are single; no others are. A negated difference stays
    // one: the difference the other way round would turn the sign of a zero.
    inverse[0][0] = kx::single((kx::rounded(a11 * a22) - kx::rounded(a21 * a12)) * k);
    inverse[0][1] = kx::single(-(a22 * a01 - a21 * a02) * k);
    inverse[0][2] = kx::single((a12 * a01 - a11 * a02) * k);
    inverse[1][0] = kx::single(-(a10 * a22 - a12 * a20) * k);
    inverse[1][1] = kx::single((a22 * a00 - a20 * a02) * k);
    inverse[1][2] = kx::single(-(a12 * a00 - a10 * a02) * k);
    inverse[2][0] = kx::single((a10 * a21 - a11 * a20) * k);
    inverse[2][1] = kx::single(-(a21 * a00 - a20 * a01) * k);
    inverse[2][2] = kx::single((a11 * a00 - a10 * a01) * k);
    return done;
}

/** The inverse of a transform whose last row is taken as 0 0 0 1. */
int32_t invert_affine(const KXM4 &m, KXM4 *out)
{
    float block[3][3];
    if (invert_block(m, block) == singular) {
        return singular;
    }
    const double t0 = kx::wide(m.m[0][3]), t1 = kx::wide(m.m[1][3]), t2 = kx::wide(m.m[2][3]);
    for (int r = 0; r < 3; ++r) {
        // The translation is turned back by the block as it is stored.
        const double turned =
            kx::wide(block[r][0]) * t0 + kx::wide(block[r][1]) * t1 + kx::wide(block[r][2]) * t2;
        out->m[r][0] = block[r][0];
        out->m[r][1] = block[r][1];
        out->m[r][2] = block[r][2];
        out->m[r][3] = kx::single(-turned);
    }
    out->m[3][0] = 0.0f;
    out->m[3][1] = 0.0f;
    out->m[3][2] = 0.0f;
    out->m[3][3] = 1.0f;
    return done;
}

/**
 * Gauss-Jordan elimination by columns. Every step that brings `work` nearer to the unit matrix is
 * done to `result` as well, which starts as the unit matrix and ends as the inverse.
 *
 * Both hold singles, but for one element: the diagonal element that a stage's elimination leaves
 * for the next stays wide for that stage's pivot test, and as its pivot.
 */
class Elimination
{
public:
    explicit Elimination(const KXM4 &m)
    {
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c) {
                work[r][c] = kx::wide(m.m[r][c]);
                result[r][c] = r == c ? 1.0 : 0.0;
            }
        }
    }

    int32_t run()
    {
        for (int stage = 0; stage < 4; ++stage) {
            const int pivot = usable_pivot(stage);
            if (pivot == none) {
                return singular;
            }
            if (pivot != stage) {
                exchange_columns(stage, pivot);
            }
            scale_column(stage);
            for (int c = stage + 1; c < 4; ++c) {
                add_column(stage, c, -work[stage][c]);
            }
        }
        for (int r = 1; r < 4; ++r) {
            for (int c = 0; c < r; ++c) {
                add_column(r, c, -work[r][c]);
            }
        }
        return done;
    }

    void store(KXM4 *out) const
    {
        for (int r = 0; r < 4; ++r) {
            for (int c = 0; c < 4; ++c) {
                out->m[r][c] = kx::single(result[r][c]);
            }
        }
    }

private:
    static constexpr int none = -1;

    /** The first element from the diagonal on that is large enough; not the largest. */
    int usable_pivot(int stage) const
    {
        for (int c = stage; c < 4; ++c) {
            if (kx::magnitude(work[stage][c]) > kx::tolerance) {
                return c;
            }
        }
        return none;
    }

    void exchange_columns(int stage, int pivot)
    {
        for (int r = stage; r < 4; ++r) {
            const double w = work[r][stage];
            work[r][stage] = work[r][pivot];
            work[r][pivot] = kx::rounded(w); // the wide diagonal element becomes single here
        }
        for (int r = 0; r < 4; ++r) {
            const double o = result[r][stage];
            result[r][stage] = result[r][pivot];
            result[r][pivot] = o;
        }
    }

    void scale_column(int stage)
    {
        const double s = 1.0 / work[stage][stage];
        for (int r = stage + 1; r < 4; ++r) {
            work[r][stage] = kx::rounded(work[r][stage] * s);
        }
        for (int r = 0; r < 4; ++r) {
            result[r][stage] = kx::rounded(result[r][stage] * s);
        }
    }

    /**
     * Adds f times column `from` to column c: below row `from` in work, everywhere in result. Next
     * to `from` this leaves the following stage its diagonal element, which stays wide.
     */
    void add_column(int from, int c, double f)
    {
        for (int r = from + 1; r < 4; ++r) {
            const double sum = work[r][c] + f * work[r][from];
            const bool is_next_diagonal = r == c && c == from + 1;
            work[r][c] = is_next_diagonal ? sum : kx::rounded(sum);
        }
        for (int r = 0; r < 4; ++r) {
            result[r][c] = kx::rounded(result[r][c] + f * result[r][from]);
        }
    }

    double work[4][4];
    double result[4][4];
};

int32_t invert_general(const KXM4 &m, KXM4 *out)
{
    Elimination elimination(m);
    const int32_t status = elimination.run();
    elimination.store(out);
    return status;
}

/** Strictly nearer to 0 0 0 1 than the tolerance counts as affine; so does a NaN. */
bool is_affine(const KXM4 &m)
{
    const double d = kx::rounded(kx::wide(m.m[3][3]) - 1.0);
    return !(kx::magnitude(kx::wide(m.m[3][0])) >= kx::tolerance ||
             kx::magnitude(kx::wide(m.m[3][1])) >= kx::tolerance ||
             kx::magnitude(kx::wide(m.m[3][2])) >= kx::tolerance ||
             kx::magnitude(d) >= kx::tolerance);
}

} // namespace

int32_t KXM4Inverse(const KXM4 *m, KXM4 *out)
{
    return is_affine(*m) ? invert_affine(*m, out) : invert_general(*m, out);
}

int32_t KXM3Inverse(const KXM3 *m, KXM3 *out)
{
    float inverse[3][3];
    const int32_t status = invert_block(*m, inverse);
    if (status == done) {
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                out->m[r][c] = inverse[r][c];
            }
        }
    }
    return status;
}
