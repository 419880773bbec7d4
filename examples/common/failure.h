/* What a program reports when it can't go on: one clear sentence. */
#ifndef EXAMPLES_FAILURE_H
#define EXAMPLES_FAILURE_H

#include <stdexcept>

namespace example
{

struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace example

#endif
