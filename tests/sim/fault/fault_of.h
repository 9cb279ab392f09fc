// A fault by its words.
#ifndef KELVO_TESTS_SIM_FAULT_FAULT_OF_H
#define KELVO_TESTS_SIM_FAULT_FAULT_OF_H

#include <gtest/gtest.h>

#include <string>

#include "sim/fault/parse.h"

namespace kelvo::test {

inline sim::fault::Fault fault(const std::string& text) {
  const sim::fault::ParsedFault parsed = sim::fault::parse(text);
  EXPECT_EQ(parsed.error, "") << text;
  return parsed.fault;
}

}  // namespace kelvo::test

#endif
