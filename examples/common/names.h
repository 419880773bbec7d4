/* The library's enumerations by the names that a person types. */
#ifndef EXAMPLES_NAMES_H
#define EXAMPLES_NAMES_H

#include <kxmaths5.h>

#include <string>

namespace example
{

/** The unit with a short or a long name, such as "mm" or "millimetre". Throws Failure. */
KXUnit unit_named(const std::string &name);

/** The short name of a unit, such as "mm"; empty for KX_UNIT_NONE. */
std::string unit_symbol(KXUnit unit);

/** The order with a name such as "XYZ", in any case. Throws Failure. */
KXRotationOrder order_named(const std::string &name);

} // namespace example

#endif
