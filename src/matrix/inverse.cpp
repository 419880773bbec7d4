/* Inversion: cofactors for affine transforms, an elimination for everything else. */
#include "kxmaths5/matrix.h"

#include "numeric.h"

namespace
{

constexpr int32_t done = 0;
constexpr int32_t singular = 1;

/**
 * The inverse of a transform whose last row is taken as 0 0 0 1, by cofactors of its 3x3 block.
 *
 * The block counts as singular when its determinant is next to nothing beside the six terms that it
 * is the sum of. That does not depend on the scale of the block.
 */
int32_t invert_affine(const KXM4 &m, KXM4 *out)
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
    const KXV3 rows[3] = {
        kx::single(kx::Wide3{(kx::rounded(a11 * a22) - kx::rounded(a21 * a12)) * k,
                             -(a22 * a01 - a21 * a02) * k, (a12 * a01 - a11 * a02) * k}),
        kx::single(kx::Wide3{-(a10 * a22 - a12 * a20) * k, (a22 * a00 - a20 * a02) * k,
                             -(a12 * a00 - a10 * a02) * k}),
        kx::single(kx::Wide3{(a10 * a21 - a11 * a20) * k, -(a21 * a00 - a20 * a01) * k,
                             (a11 * a00 - a10 * a01) * k}),
    };
    const double t0 = e(0, 3), t1 = e(1, 3), t2 = e(2, 3);
    for (int r = 0; r < 3; ++r) {
        const kx::Wide3 row = kx::wide(rows[r]);
        out->m[r][0] = rows[r].x;
        out->m[r][1] = rows[r].y;
        out->m[r][2] = rows[r].z;
        out->m[r][3] = kx::single(-(row.x * t0 + row.y * t1 + row.z * t2));
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
                clear(stage, c);
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

    /** Clears row `stage` of column c, and leaves the next stage its diagonal element wide. */
    void clear(int stage, int c)
    {
        const double f = -work[stage][c];
        const double wide_diagonal = work[c][c] + f * work[c][stage];
        add_column(stage, c, f);
        if (c == stage + 1) {
            work[c][c] = wide_diagonal;
        }
    }

    /** Adds f times column `from` to column c: below row `from` in work, everywhere in result. */
    void add_column(int from, int c, double f)
    {
        for (int r = from + 1; r < 4; ++r) {
            work[r][c] = kx::rounded(work[r][c] + f * work[r][from]);
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
    // All nine elements are the block of a transform of space that does not move anything.
    KXM4 block, inverse;
    KXM4Unit(&block);
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            block.m[r][c] = m->m[r][c];
        }
    }
    const int32_t status = invert_affine(block, &inverse);
    if (status == done) {
        for (int r = 0; r < 3; ++r) {
            for (int c = 0; c < 3; ++c) {
                out->m[r][c] = inverse.m[r][c];
            }
        }
    }
    return status;
}
