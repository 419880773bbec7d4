#include "read_back.h"

#include "failure.h"

#include <algorithm>
#include <cmath>

namespace example
{

namespace
{

float largest_difference(const KXM4 &a, const KXM4 &b)
{
    float largest = 0.0f;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            largest = std::max(largest, std::fabs(a.m[r][c] - b.m[r][c]));
        }
    }
    return largest;
}

KXM4 built_from_columns(const KXPosition &position, const KXV3 &scale)
{
    KXM4 placed, scaled;
    KXM4Position(&placed, nullptr, &position, KX_ORDER_YXZ);
    KXM4Scale(scale.x, scale.y, scale.z, &scaled);
    KXM4Mult(&placed, &scaled, &placed);
    return placed;
}

KXM4 built_from_quaternion(const KXQuat &quaternion, const KXPosition &position)
{
    KXM4 turned, moved;
    KXQuatToMatrix(&quaternion, &turned);
    KXM4Translate(position.x, position.y, position.z, &moved);
    KXM4Mult(&moved, &turned, &moved);
    return moved;
}

std::string angles_and_scale(float x, float y, float z, const KXV3 &scale)
{
    const auto degrees = [](float angle) { return in_degrees(static_cast<double>(angle)); };
    return text_of("X %.6g, Y %.6g, Z %.6g degrees, scale ", degrees(x), degrees(y), degrees(z)) +
           text_of(scale);
}

} // namespace

ReadBack read_back(const KXM4 &placement)
{
    ReadBack read;
    if (KXM4Decompose(&placement, &read.by_rows) != 0) {
        throw Failure("the placement cannot be taken apart: its matrix is singular");
    }
    KXM4MatrixComponents(&placement, &read.by_columns, &read.column_scale);
    KXMatrixToQuat(&placement, &read.quaternion);

    KXM4 composed;
    KXM4Compose(&composed, &read.by_rows);
    const KXM4 from_columns = built_from_columns(read.by_columns, read.column_scale);
    const KXM4 from_quaternion = built_from_quaternion(read.quaternion, read.by_columns);
    read.largest_difference = std::max({largest_difference(composed, placement),
                                        largest_difference(from_columns, placement),
                                        largest_difference(from_quaternion, placement)});
    return read;
}

std::vector<ReportLine> report(const ReadBack &read)
{
    const KXComponents &rows = read.by_rows;
    const KXPosition &columns = read.by_columns;
    const KXQuat &q = read.quaternion;
    return {
        {"read by rows", angles_and_scale(rows.rotateX, rows.rotateY, rows.rotateZ,
                                          {rows.scaleX, rows.scaleY, rows.scaleZ})},
        {"by columns",
         angles_and_scale(columns.rotateX, columns.rotateY, columns.rotateZ, read.column_scale)},
        {"quaternion",
         text_of("(%.6g, %.6g, %.6g, %.6g)", static_cast<double>(q.x), static_cast<double>(q.y),
                 static_cast<double>(q.z), static_cast<double>(q.w))},
        {"built again", text_of("from each of the three: at most %.1e off",
                                static_cast<double>(read.largest_difference))},
    };
}

} // namespace example
