// Rules that other functions' rules are made of.
#ifndef KELVO_TESTS_FAILURE_RULES_H
#define KELVO_TESTS_FAILURE_RULES_H

#include <cstdint>

#include "failure/oracle.h"

namespace kelvo::test::failure {

void load_iris_record(Oracle& oracle);
int load_stabiliser_record(Oracle& oracle);

std::int64_t stop_driver(Oracle& oracle);
std::int64_t step_driver(Oracle& oracle);
std::int64_t switch_filter(Oracle& oracle);
std::int64_t initialise_driver(Oracle& oracle);

}  // namespace kelvo::test::failure

#endif
