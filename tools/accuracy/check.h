/* Results held to what a document's tables say. */
#ifndef KX_ACCURACY_CHECK_H
#define KX_ACCURACY_CHECK_H

#include "experiment.h"

#include <regex>

namespace accuracy
{

/**
 * Whether the document's rows hold for these inputs; what doesn't is told on stderr. A row that is
 * missing, or is selected by the filter and measures nothing, doesn't.
 */
bool check(const std::vector<Topic> &topics, std::uint64_t inputs, const std::string &path,
           const std::regex &filter);

} // namespace accuracy

#endif
