#include "read_back.h"

#include "failure.h"

#include <algorithm>
#include <cmath>

namespace example
{

namespace
{

float largest_difference(const kxm::mat4 &a, const kxm::mat4 &b)
{
    float largest = 0.0f;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            largest = std::max(largest, std::fabs(a(r, c) - b(r, c)));
        }
    }
    return largest;
}

std::string angles_and_scale(float x, float y, float z, const kxm::vec3 &scale)
{
    const auto degrees = [](float angle) { return in_degrees(static_cast<double>(angle)); };
    return text_of("X %.6g, Y %.6g, Z %.6g degrees, scale ", degrees(x), degrees(y), degrees(z)) +
           text_of(scale);
}

} // namespace

ReadBack read_back(const kxm::mat4 &placement)
{
    const auto by_rows = placement.decomposed();
    if (!by_rows) {
        throw Failure("the placement cannot be taken apart: its matrix is singular");
    }
    ReadBack read = {*by_rows, placement.placement(), placement.quaternion(), 0.0f};

    const auto &[position, scale] = read.by_columns;
    const kxm::mat4 from_columns =
        position.matrix(kxm::order::yxz) * kxm::mat4::scale(scale.x, scale.y, scale.z);
    const kxm::mat4 from_quaternion =
        kxm::mat4::translation({position.x, position.y, position.z}) * read.quaternion.matrix();
    read.largest_difference = std::max({largest_difference(by_rows->matrix(), placement),
                                        largest_difference(from_columns, placement),
                                        largest_difference(from_quaternion, placement)});
    return read;
}

std::vector<ReportLine> report(const ReadBack &read)
{
    const kxm::components &rows = read.by_rows;
    const auto &[columns, column_scale] = read.by_columns;
    const kxm::quat &q = read.quaternion;
    return {
        {"read by rows", angles_and_scale(rows.rotateX, rows.rotateY, rows.rotateZ,
                                          {rows.scaleX, rows.scaleY, rows.scaleZ})},
        {"by columns",
         angles_and_scale(columns.rotateX, columns.rotateY, columns.rotateZ, column_scale)},
        {"quaternion",
         text_of("(%.6g, %.6g, %.6g, %.6g)", static_cast<double>(q.x), static_cast<double>(q.y),
                 static_cast<double>(q.z), static_cast<double>(q.w))},
        {"built again", text_of("from each of the three: at most %.1e off",
                                static_cast<double>(read.largest_difference))},
    };
}

} // namespace example
