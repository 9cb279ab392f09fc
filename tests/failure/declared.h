// The functions and objects that the library's headers declare.
#ifndef KELVO_TESTS_FAILURE_DECLARED_H
#define KELVO_TESTS_FAILURE_DECLARED_H

#include <set>
#include <string>

namespace kelvo::test::failure {

using Names = std::set<std::string>;

/// The names before a parenthesis, outside comments.
Names declared_in(const std::string& header);

/// Those of all headers.
Names declared();

/// The objects: what is declared extern, and is no function.
Names declared_objects_in(const std::string& header);
Names declared_objects();

}  // namespace kelvo::test::failure

#endif
